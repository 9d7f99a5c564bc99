// Every corpus element opened in the editor and applied leaves the project
// as it was: untouched, and also with its picture rewritten from the working
// copy, which must give the same text and the same TYP bytes.
#include <gtest/gtest.h>

#include "editor/editor_apply.h"
#include "editor/element_open.h"
#include "support/harness.h"
#include "text/load_driver.h"
#include "text/text_writer.h"

namespace korvex::editor {
namespace {

struct Element {
    int cls;
    int32_t row;
};

std::vector<Element> elements(const model::Store& s) {
    std::vector<Element> out;
    for (int32_t i = 0; i < s.pg_n; ++i) out.push_back({0, i});
    for (int32_t i = 0; i < s.ln_n; ++i) out.push_back({1, i});
    for (int32_t i = 0; i < s.ln_nact; ++i) out.push_back({3, s.ln_n + i});
    for (int32_t i = 0; i < s.pt_n; ++i) out.push_back({2, i});
    for (int32_t i = 0; i < s.pt_nx; ++i) out.push_back({4, s.pt_n + i});
    return out;
}

int32_t local(const model::Store& s, const Element& el) {
    return el.cls == 3 ? el.row - s.ln_n : el.cls == 4 ? el.row - s.pt_n : el.row;
}

void check_file(const std::string& path, bool rewrite_pictures) {
    model::Store s;
    platform::ScriptedPrompt ui;
    if (path.size() > 4 && path.substr(path.size() - 4) == ".txt") {
        model::newproject(s);
        ASSERT_TRUE(text::load_txt(s, ui, path, testing::read_bytes(path), false, true)) << path;
    } else {
        testing::decode_bytes(s, ui, testing::read_bytes(path));
    }
    const std::string text_before = testing::text_of(s, ui);
    const std::string bytes_before = testing::encode(s, ui);
    int failures = 0;
    for (const Element& el : elements(s)) {
        const std::string code_before = text::create_code(s, local(s, el) + 1, el.cls, false);
        OpenRequest r;
        r.curclass = el.cls;
        r.row = el.row;
        EditorSession e = open_element(s, r);
        // A point of one colour is rewritten as two (the editor's own rule,
        // pinned by the apply tests): its text could not stay.
        const bool one_colour_point = (el.cls == 2 || el.cls == 4) && !e.truecolour && e.ncols() == 1;
        if (rewrite_pictures && !one_colour_point) e.eddirty = true;
        s.dirty = false;
        const ApplyOutcome out = apply(s, e, ui);
        ASSERT_TRUE(out.committed) << path << " class " << el.cls << " row " << el.row
                                   << (ui.messages.empty() ? "" : ": " + ui.messages.back());
        if (!rewrite_pictures) {
            EXPECT_FALSE(s.dirty) << path << " row " << el.row << " " << out.note << (ui.messages.empty() ? "" : ui.messages.back());
        }
        const std::string code_after = text::create_code(s, local(s, el) + 1, el.cls, false);
        if (code_after != code_before && ++failures <= 3)
            ADD_FAILURE() << path << " class " << el.cls << " row " << el.row << "\n"
                          << testing::first_difference(code_before, code_after);
    }
    EXPECT_EQ(failures, 0) << path;
    EXPECT_TRUE(testing::first_difference(text_before, testing::text_of(s, ui)).empty()) << path;
    EXPECT_TRUE(testing::encode(s, ui) == bytes_before) << path;
}

std::vector<std::string> corpus_files() {
    std::vector<std::string> files = testing::files_with(testing::corpus_dir() + "/typ", ".typ");
    for (const std::string& t : testing::corpus_texts()) files.push_back(t);
    return files;
}

TEST(EditorCorpus, ApplyWithoutChangesKeepsTextAndBytes) {
    const std::vector<std::string> files = corpus_files();
    if (files.empty()) GTEST_SKIP() << "no corpus";
    for (const std::string& f : files) check_file(f, false);
}

// Files made to hurt the decoder open in the editor and apply without harm.
TEST(EditorCorpus, HostileFilesOpenAndApply) {
    for (const std::string& path : testing::files_with(testing::source_dir() + "/tests/data/fuzz/typ", ".typ")) {
        model::Store s;
        platform::ScriptedPrompt ui;
        testing::decode_bytes(s, ui, testing::read_bytes(path));
        for (const Element& el : elements(s)) {
            OpenRequest r;
            r.curclass = el.cls;
            r.row = el.row;
            EditorSession e = open_element(s, r);
            e.eddirty = true;
            apply(s, e, ui);
        }
        testing::encode(s, ui);
    }
}

TEST(EditorCorpus, TrueColourPointsRewrittenKeepTheirPixels) {
    model::Store s;
    platform::ScriptedPrompt ui;
    model::newproject(s);
    ASSERT_TRUE(text::load_txt(s, ui, "t.txt", testing::read_bytes(testing::source_dir() + "/tests/data/interop/true-colour.txt"), false, true));
    const std::string before = testing::text_of(s, ui);
    for (int32_t row = 0; row < s.pt_n; ++row) {
        EditorSession e = open_element(s, {2, row, {}, k_transparent_magenta});
        e.eddirty = true;
        ASSERT_TRUE(apply(s, e, ui).committed);
    }
    EXPECT_EQ(testing::first_difference(before, testing::text_of(s, ui)), "");
    EditorSession e = open_element(s, {2, 0, {}, k_transparent_magenta});
    ASSERT_TRUE(e.truecolour);
    EXPECT_EQ(e.surface.at(1, 0), rgb(0, 0xFF, 0));
    EXPECT_EQ(e.surface.at(3, 2), rgb(0x65, 0x43, 0x21));
}

TEST(EditorCorpus, PicturesRewrittenFromTheWorkingCopyKeepTextAndBytes) {
    const std::vector<std::string> files = corpus_files();
    if (files.empty()) GTEST_SKIP() << "no corpus";
    for (const std::string& f : files) check_file(f, true);
}

}  // namespace
}  // namespace korvex::editor
