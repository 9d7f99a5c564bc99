// The text we write is fed to mkgmap, the OSM map compiler, run as a black
// box: it must compile without an error or a warning, and the TYP it makes
// must decode to the same elements as the file we started from.
#include <gtest/gtest.h>

#include "interop/mkgmap_support.h"
#include "support/every_form.h"
#include "text/load_driver.h"

using namespace korvex;
using namespace korvex::testing;
using namespace korvex::testing::interop;

namespace {

std::vector<std::string> inputs() {
    std::vector<std::string> files = files_with(source_dir() + "/data/samples", ".typ");
    files.push_back(k_every_form);
    if (!corpus_dir().empty())
        for (auto& f : files_with(corpus_dir() + "/typ", ".typ")) files.push_back(f);
    return files;
}

// A file as we decode it, in what mkgmap knows of it, and our text of it.
Source source_of(const std::string& path, model::Store& ours) {
    platform::ScriptedPrompt ui;
    decode_bytes(ours, ui, typ_bytes(path));
    if (ours.fid == "0") ours.fid = "1";
    if (ours.pid == "0") ours.pid = "1";
    // mkgmap knows neither active routing nor extra points.
    ours.ln_nact = 0;
    ours.pt_nx = 0;
    return {file_param_name(path), text_of(ours, ui), ours.fid, std::to_string(ours.codepage)};
}

// All files in one mkgmap run, on first use.
const Compiled& compiled_together() {
    static const Compiled c = mkgmap_files(inputs(), source_of);
    return c;
}

class Mkgmap : public ::testing::TestWithParam<std::string> {};

TEST_P(Mkgmap, CompilesOurTextCleanlyToTheSameElements) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store ours, theirs;
    const Source source = source_of(GetParam(), ours);
    const Compiled c = run_of(compiled_together(), source);
    EXPECT_EQ(c.status, 0) << c.log;
    EXPECT_EQ(complaints(c.log), "");
    const std::string& typ = c.typ.at(source.name);
    ASSERT_FALSE(typ.empty()) << c.log;

    decode_bytes(theirs, ui, typ);
    EXPECT_EQ(theirs.pg_n, ours.pg_n);
    EXPECT_EQ(theirs.ln_n, ours.ln_n);
    EXPECT_EQ(theirs.pt_n, ours.pt_n);
    const auto a = elements(source.text);
    const auto b = elements(text_of(theirs, ui));
    ASSERT_EQ(a.size(), b.size());
    dump_painted(fs::path(GetParam()).stem().string(), a, b);
    for (size_t k = 0; k < a.size(); ++k) {
        if (mkgmap_scrambles(a[k]))
            EXPECT_EQ(first_difference(keys_only(painted(a[k])), keys_only(painted(b[k]))), "") << "element " << k;
        else
            EXPECT_EQ(first_difference(painted(a[k]), painted(b[k])), "") << "element " << k;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, Mkgmap, ::testing::ValuesIn(inputs()), file_test_name);

// Hand-made texts of shapes the corpus lacks: what we write of them compiles
// cleanly, and mkgmap's TYP paints what our own TYP of the text paints.
std::vector<std::string> hand_made() { return files_with(source_dir() + "/tests/data/interop", ".txt"); }

Source hand_made_source(const std::string& path, model::Store& s) {
    platform::ScriptedPrompt ui;
    model::newproject(s);
    text::load_txt(s, ui, path, read_bytes(path), false, false);
    return {file_param_name(path), text_of(s, ui), s.fid, std::to_string(s.codepage)};
}

const Compiled& hand_made_together() {
    static const Compiled c = mkgmap_files(hand_made(), hand_made_source);
    return c;
}

class MkgmapHandMade : public ::testing::TestWithParam<std::string> {};

TEST_P(MkgmapHandMade, OurTextOfItCompilesCleanlyToWhatWeMakeOfIt) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store s;
    const Source source = hand_made_source(GetParam(), s);
    const std::string ours = encode(s, ui);
    ASSERT_FALSE(ours.empty());

    const Compiled c = run_of(hand_made_together(), source);
    EXPECT_EQ(c.status, 0) << c.log;
    EXPECT_EQ(complaints(c.log), "");
    const std::string& typ = c.typ.at(source.name);
    ASSERT_FALSE(typ.empty()) << c.log;
    model::Store theirs, mine;
    decode_bytes(theirs, ui, typ);
    decode_bytes(mine, ui, ours);
    const auto a = elements(text_of(mine, ui));
    const auto b = elements(text_of(theirs, ui));
    ASSERT_EQ(a.size(), b.size());
    for (size_t k = 0; k < a.size(); ++k) EXPECT_EQ(first_difference(painted(a[k]), painted(b[k])), "") << "element " << k;
}

INSTANTIATE_TEST_SUITE_P(Files, MkgmapHandMade, ::testing::ValuesIn(hand_made()), file_test_name);

// A label damaged in the TYP (a byte that code page 1252 leaves undefined):
// the text we write of it still compiles.
TEST(MkgmapDamagedLabel, TheTextOfADamagedLabelCompiles) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store s;
    model::newproject(s);
    text::load_txt(s, ui, "x.txt",
                   "[_id]\nProductCode=1\nFID=7\nCodePage=1252\n[end]\n[_line]\nType=0x01\nString1=0x04,GrQQn\n"
                   "LineWidth=2\nXpm=\"0 0 1 0\"\n\"1 c #FF0000\"\n[end]\n",
                   false, false);
    std::string typ = encode(s, ui);
    const size_t at = typ.find("GrQQn");
    ASSERT_NE(at, std::string::npos);
    typ[at + 2] = '\x81';
    model::Store damaged;
    decode_bytes(damaged, ui, typ);
    const std::string text = text_of(damaged, ui);
    EXPECT_NE(text.find("String1=0x04,GrQn\r\n"), std::string::npos) << text;
    Compiled c = mkgmap_all({{"damaged", text, "7", "1252"}});
    EXPECT_EQ(c.status, 0) << c.log;
    EXPECT_EQ(complaints(c.log), "");
}

// A point whose pixel names a colour past its table (a damaged record): the
// pixel takes a defined colour, so the text we write of it still compiles.
TEST(MkgmapDamagedPicture, TheTextOfAPixelPastItsColourTableCompiles) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store s;
    model::newproject(s);
    text::load_txt(s, ui, "x.txt",
                   "[_id]\nProductCode=1\nFID=7\nCodePage=1252\n[end]\n[_point]\nType=0x2f00\n"
                   "DayXpm=\"4 1 3 1\" Colormode=0\n\"$ c #FF0000\"\n\"% c #00FF00\"\n\"& c #0000FF\"\n\"$%&&\"\n[end]\n",
                   false, false);
    std::string typ = encode(s, ui);
    // The palette (blue, green, red bytes) and the one pixel byte 0 1 2 2.
    const std::string pixels("\x00\x00\xFF\x00\xFF\x00\xFF\x00\x00\xA4", 10);
    const size_t at = typ.find(pixels);
    ASSERT_NE(at, std::string::npos);
    typ[at + 9] = '\xE4';  // 0 1 2 3: colour 3 is past the table
    model::Store damaged;
    decode_bytes(damaged, ui, typ);
    const std::string text = text_of(damaged, ui);
    EXPECT_NE(text.find("\"$%&$\""), std::string::npos) << text;
    EXPECT_NE(damaged.loadrep.find("past their colour table"), std::string::npos) << damaged.loadrep;
    Compiled c = mkgmap_all({{"damaged", text, "7", "1252"}});
    EXPECT_EQ(c.status, 0) << c.log;
    EXPECT_EQ(complaints(c.log), "");
}

}  // namespace
