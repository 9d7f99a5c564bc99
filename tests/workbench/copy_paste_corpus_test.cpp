// Every corpus file, its elements copied one by one and pasted into a new
// project, saves to a TYP that means the same as the file's own: decoded,
// both print the same elements and the same order of layers.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "ops_fixture.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/type_key.h"

namespace korvex::workbench {
namespace {

using namespace korvex::testing;

std::vector<std::string> corpus_files() {
    std::vector<std::string> files;
    if (!corpus_dir().empty()) {
        files = files_with(corpus_dir() + "/typ", ".typ");
        for (const auto& f : files_with(corpus_dir() + "/txt", ".txt")) files.push_back(f);
    }
    return corpus_params(std::move(files));
}

// A text and a TYP of one project share a stem: the extension tells them apart.
std::string name_of(const ::testing::TestParamInfo<std::string>& info) {
    const std::string ext = std::filesystem::path(info.param).extension().string();
    return file_param_name(info.param) + (ext.size() > 1 ? "_" + ext.substr(1) : std::string());
}

// An active line is told apart by its activity as well.
std::string section_key(const std::vector<std::string>& section) {
    for (const std::string& l : section)
        if (typ::lower(l).rfind("activity=", 0) == 0) return typ::lower(l);
    return {};
}

// The decoded text with its draw order told by what it means: the levels of
// the polygons that exist, in their order, numbered from 1. Entries of types
// without a polygon hold no element and are left out. Of two elements of one
// class and type only the first counts: the paste keeps the first and is told
// not to replace it by the second.
std::string meaning(const std::string& text) {
    std::set<int32_t> polygons;
    std::vector<std::pair<int, int32_t>> layers;  // level, code
    std::string rest;
    bool in_order = false;
    std::vector<std::string> section;
    std::set<std::pair<std::string, int32_t>> seen;
    auto flush = [&] {
        if (section.empty()) return;
        std::string marker = typ::lower(section[0]);
        int32_t code = -1;
        for (const std::string& l : section) {
            const std::string low = typ::lower(l);
            if (low.rfind("type=", 0) == 0) {
                code = type_code(low.substr(5));
                break;
            }
        }
        const bool active = std::any_of(section.begin(), section.end(), [](const std::string& l) {
            return typ::lower(l).rfind("activity=", 0) == 0;
        });
        if (active) marker += section_key(section);
        if (seen.insert({marker, code}).second) {
            if (marker.rfind("[_polygon]", 0) == 0) polygons.insert(code);
            for (const std::string& l : section) rest += l + "\n";
        }
        section.clear();
    };
    for (const std::string& line : lines_of(without_comments(text))) {
        const std::string low = typ::lower(line);
        if (low.rfind("[_", 0) == 0) flush();
        if (low == "[_draworder]") {
            in_order = true;
            continue;
        }
        if (in_order) {
            if (low == "[end]") {
                in_order = false;
            } else if (low.rfind("type=", 0) == 0) {
                const size_t comma = low.find(',');
                std::string digits = low.substr(7, comma - 7);
                // "0x05" is a type of the list's own form, "0x4b00" type and subtype.
                layers.emplace_back(std::atoi(low.c_str() + comma + 1), type_code(digits));
            }
            continue;
        }
        if (low.rfind("[_", 0) == 0 || !section.empty()) {
            section.push_back(line);
            if (low == "[end]") flush();
            continue;
        }
        rest += line + "\n";
    }
    flush();
    // Types of one level are drawn together: their order in the list means nothing.
    std::sort(layers.begin(), layers.end());
    std::string order;
    int previous = -1, rank = 0;
    for (const auto& [level, code] : layers) {
        if (!polygons.count(code)) continue;
        if (level != previous) ++rank;
        previous = level;
        order += five_digits(code) + "," + std::to_string(rank) + "\n";
    }
    return "[_drawOrder]\n" + order + "[end]\n" + rest;
}

// The meaning of a project: what its TYP decodes to.
std::string typ_meaning(model::Store& s) {
    platform::ScriptedPrompt ui;
    const std::string bytes = encode(s, ui);
    EXPECT_FALSE(bytes.empty());
    model::Store back;
    decode_bytes(back, ui, bytes);
    if (back.pid == "0") back.pid = "1";
    if (back.fid.empty() || back.fid == "0") back.fid = "1";
    return meaning(text_of(back, ui, text::k_kind_utf8));
}

class CopyPasteCorpus : public ::testing::TestWithParam<std::string> {};

TEST_P(CopyPasteCorpus, EachElementPastedIntoANewProjectSavesToTheSameMeaning) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    const std::string path = GetParam();
    test::OpsFixture from;
    model::newproject(from.s);
    platform::ScriptedPrompt quiet;
    if (path.ends_with(".typ")) {
        decode_bytes(from.s, quiet, read_bytes(path));
    } else {
        text::load_txt(from.s, quiet, path, read_bytes(path), false, false);
    }
    if (from.s.pid == "0") from.s.pid = "1";
    if (from.s.fid.empty() || from.s.fid == "0") from.s.fid = "1";

    // The new project takes the header of the file; elements come by the clipboard.
    test::OpsFixture to;
    model::newproject(to.s);
    to.ui = platform::ScriptedPrompt(platform::Answer::no);
    to.s.fid = from.s.fid;
    to.s.pid = from.s.pid;
    to.s.codepage = from.s.codepage;
    to.s.utf8txt = from.s.utf8txt;
    to.s.hdr_len = from.s.hdr_len;
    to.s.hdr_caption = from.s.hdr_caption;
    platform::MemoryClipboard& clipboard = from.clip;
    int pasted = 0;
    for (const int cls : {model::k_polygons, model::k_lines, model::k_points, model::k_active_lines}) {
        from.s.curclass = to.s.curclass = cls;
        for (int32_t row = first_row(from.s, cls); row < end_row(from.s, cls); ++row) {
            ASSERT_TRUE(from.ops.mcopy({row})) << cls << " " << row;
            to.clip.set_unicode_text(clipboard.unicode_text());
            // A second element of a type is not pasted over the first.
            const bool made = to.ops.mpaste() >= 0;
            ASSERT_TRUE(made || to.ui.messages.back().rfind("Not replaced:", 0) == 0)
                << cls << " " << row << ": " << to.ui.messages.back();
            ++pasted;
        }
    }
    EXPECT_EQ(first_difference(typ_meaning(from.s), typ_meaning(to.s)), "") << pasted << " elements pasted";
}

INSTANTIATE_TEST_SUITE_P(Files, CopyPasteCorpus, ::testing::ValuesIn(corpus_files()), name_of);

}  // namespace
}  // namespace korvex::workbench
