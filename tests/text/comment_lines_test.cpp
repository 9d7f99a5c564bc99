// A line starting with ";" is a comment wherever it stands in a section: an
// old picture, colour or key kept in one is never read, written or encoded
// as the real thing.
#include <gtest/gtest.h>

#include "support/harness.h"
#include "text/load_driver.h"
#include "text/panel_apply.h"
#include "text/text_writer.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

std::string commented_text() { return read_bytes(source_dir() + "/tests/data/interop/commented-pictures.txt"); }

void load(model::Store& s, platform::Prompt& ui, const std::string& text) {
    model::newproject(s);
    text::load_txt(s, ui, "x.txt", text, false, false);
}

// The sections of a text by their marker, comments and the decoder's
// labels-off keys left out, so a text and its TYP compare.
std::vector<std::string> keys_and_pictures(const std::string& text) {
    std::vector<std::string> out;
    std::string cur;
    for (const std::string& line : lines_of(text)) {
        if (line.empty() || line[0] == ';' || line == "CustomColor=No" || line.rfind("ExtendedLabels=", 0) == 0) continue;
        if (line.rfind("[_", 0) == 0) cur = line.substr(0, line.find(']') + 1) + "\n";
        else if (!cur.empty()) cur += line + "\n";
        if (line == "[end]" && !cur.empty()) {
            if (cur.rfind("[_id]", 0) != 0 && cur.rfind("[_drawOrder]", 0) != 0) out.push_back(cur);
            cur.clear();
        }
    }
    return out;
}

TEST(CommentLines, OldPicturesAndKeysInCommentsNeverCountInTextOrTyp) {
    model::Store s;
    platform::ScriptedPrompt ui;
    load(s, ui, commented_text());
    ASSERT_EQ(s.pg_n, 1);
    ASSERT_EQ(s.ln_n, 1);
    ASSERT_EQ(s.pt_n, 1);
    // The real pictures: a solid polygon, a 2-row line of day and night, a
    // 2x1 point of two colours and no night.
    EXPECT_EQ(s.pg_xpm[0], "Xpm=\"0 0 1 0\"");
    EXPECT_EQ(s.ln_xpm[0], "Xpm=\"32 2 4 1\"");
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"2 1 2 1\" Colormode=0");
    EXPECT_EQ(s.pt_nncol[0], 0);
    EXPECT_EQ(s.pt_lab[0][0], '\0');

    const std::string written = text_of(s, ui);
    const std::vector<std::string> want = {
        "[_polygon]\nType=0x01\nFontStyle=NoLabel\nXpm=\"0 0 1 0\"\n\"1 c #80FF80\"\n[end]\n",
        "[_line]\nType=0x20\nFontStyle=NoLabel\nUseOrientation=N\nXpm=\"32 2 4 1\"\n\"0 c #C0803F\"\n\"1 c none\"\n"
        "\"2 c #945A19\"\n\"3 c none\"\n\"11110000000000001111000000000000\"\n\"11110000000000001111000000000000\"\n[end]\n",
        "[_point]\nType=0x02f06\nFontStyle=NoLabel\nDayXpm=\"2 1 2 1\" Colormode=0\n\"$ c #FF0000\"\n\"% c #0000FF\"\n"
        "\"$%\"\n[end]\n"};
    EXPECT_EQ(keys_and_pictures(written), want);
    // The comments stay in the text, where the author put them.
    EXPECT_NE(written.find("; Xpm=\"0 0 2 0\"\r\n; \"a c #C0803F\"\r\n;Xpm=\"32 32 2 1\"\r\nFontStyle=NoLabel"),
              std::string::npos);
    EXPECT_NE(written.find(";NightXpm=\"2 1 1 1\"\r\n"), std::string::npos);

    // Text again, and the TYP: the hidden labels stay hidden.
    model::Store again;
    load(again, ui, written);
    EXPECT_EQ(text_of(again, ui), written);
    model::Store back;
    decode_bytes(back, ui, encode(s, ui));
    std::vector<std::string> decoded = keys_and_pictures(text_of(back, ui));
    for (std::string& e : decoded) {
        const size_t at = e.find("FontStyle=Nolabel");
        if (at != std::string::npos) e.replace(at, 17, "FontStyle=NoLabel");
    }
    ASSERT_EQ(decoded.size(), 3u);
    EXPECT_EQ(decoded[0], want[0]);
    EXPECT_NE(decoded[1].find("FontStyle=NoLabel\n"), std::string::npos) << decoded[1];
    EXPECT_EQ(decoded[2], want[2]);
}

// The code panel of such a point checks its real picture, not the old one.
TEST(CommentLines, ThePanelCheckReadsTheRealPictureOfAPoint) {
    model::Store s;
    platform::ScriptedPrompt ui;
    load(s, ui, commented_text());
    const std::string panel = text::create_code(s, 1, model::k_points, false);
    EXPECT_EQ(panel.find("NightXpm"), panel.find(";NightXpm") + 1);
    std::string wrong = panel;
    wrong.replace(wrong.find("\"$%\""), 4, "\"$%$\"");
    const text::PanelApply refused = text::parsetext(s, ui, wrong, model::k_points, 0, false);
    EXPECT_FALSE(refused.ok);
    EXPECT_EQ(refused.caption, "BMP width =3 XPM says:2");
    const text::PanelApply r = text::parsetext(s, ui, panel, model::k_points, 0, false);
    EXPECT_TRUE(r.ok) << r.caption;
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"2 1 2 1\" Colormode=0");
    EXPECT_EQ(s.pt_nncol[0], 0);
}

}  // namespace

namespace {

// Markers named in a file's notes are no sections, however the note is
// written; a marker behind text on a key line still splits.
TEST(CommentLines, MarkersInCommentLinesDoNotSplitTheFile) {
    model::Store s;
    platform::ScriptedPrompt ui;
    load(s, ui,
         "[_id]\nFID=7\n[end]\n;Section [_LINE]\n  ; an old [_point] kept\n;[_polygon]\n"
         "[_line]\nType=0x01\nLineWidth=2\nXpm=\"0 0 1 0\"\n\"1 c #FF0000\"\n[end]\n");
    EXPECT_EQ(s.ln_n, 1);
    EXPECT_EQ(s.pt_n, 0);
    EXPECT_EQ(s.pg_n, 0);
    EXPECT_EQ(s.loadrep, "");
}

}  // namespace
