#include "text/maptk_project.h"

#include <gtest/gtest.h>

#include "../support/harness.h"

namespace korvex::text {
namespace {

using platform::ScriptedPrompt;

std::string translated(const std::string& project, size_t block = k_prj_block) {
    ScriptedPrompt ui;
    return translate_prj(ui, project, block);
}

TEST(MaptkTranslation, EveryKeyBecomesItsTextFormLine) {
    const std::string project =
        "familyid=3511\n"
        "product=\n"
        "[polygon]\n"
        "type=0x01\n"
        "string=04,Town\n"
        "STRING=02,Stadt\n"
        "textsize=2\n"
        "textcolor=0x101010\n"
        "draworder=2\n"
        "color=a,0xff0000\n"
        "line=a a\n"
        "line= a \n"
        "[end]\n";
    EXPECT_EQ(translated(project),
              "[_id]\r\nFID=3511\r\nProductCode=1\r\n[end]\r\n"
              "[_polygon]\r\ntype=0x01\r\nString1=0x04,Town\r\nString2=0x02,Stadt\r\n"
              "FontStyle=SmallFont\r\nExtendedLabels=Y\r\nDaycustomColor:#101010\r\n"
              "Xpm=\"3 2 2 1\" Colormode=16\r\n\"a c #ff0000\"\r\n\"b c none\"\r\n\"aba\"\r\n\"bab\"\r\n[end]\r\n"
              "[_drawOrder]\r\nType=0x01,2\r\n[end]\r\n");
    // A stated product stays; a section that has its ExtendedLabels keeps it;
    // the numbering of strings starts again in each section.
    EXPECT_EQ(translated("product=7\n[poi]\ntype=0x2f06\nExtendedLabels=N\ntextsize=4\nstring=04,x\n"
                         "[poi]\ntextsize=0\nstring=04,y\n"),
              "[_id]\r\nProductCode=7\r\n[end]\r\n"
              "[_point]\r\ntype=0x2f06\r\nExtendedLabels=N\r\nFontStyle=Large\r\nString1=0x04,x\r\n"
              "DayXpm=\"1 1 0 0\"\r\n[end]\r\n"
              "[_point]\r\nFontStyle=default\r\nExtendedLabels=Y\r\nString1=0x04,y\r\nDayXpm=\"1 1 0 0\"\r\n[end]\r\n");
}

TEST(MaptkTranslation, ClosingRulesShapeThePicture) {
    // One colour: a solid line as wide as the rows were many.
    EXPECT_EQ(translated("[polyline]\ntype=0x02\ncolor=b,0x0000ff\nline=bbbb\nline=bbbb\nline=bbbb\n[end]\n"),
              "[_line]\r\ntype=0x02\r\nUseorientation=N\r\nlwidth(=3\r\nBorderWidth=0\r\n"
              "Xpm=\"0 0 1 1\" Colormode=16\r\n\"b c #0000ff\"\r\n[end]\r\n");
    // Two colours keep their rows; the blank colour only comes with blanks.
    EXPECT_EQ(translated("[polyline]\ncolor=a,0x00ff00\ncolor=b,0x000000\nline=abab\n[end]\n"),
              "[_line]\r\nXpm=\"4 1 2 1\" Colormode=16\r\n\"a c #00ff00\"\r\n\"b c #000000\"\r\n"
              "\"abab\"\r\n[end]\r\n");
    EXPECT_EQ(translated("[polygon]\ncolor=a,0x00ff00\nline=a a \nline=aaaa\n[end]\n"),
              "[_polygon]\r\nXpm=\"4 2 2 1\" Colormode=16\r\n\"a c #00ff00\"\r\n\"b c none\"\r\n"
              "\"abab\"\r\n\"aaaa\"\r\n[end]\r\n");
    // 64 colours and the blank make 65: two characters a pixel from the
    // first colour's code, the blank last.
    std::string project = "[poi]\n";
    for (int i = 0; i < 64; ++i) project += "color=" + std::string(1, static_cast<char>('0' + i)) + ",0x000000\n";
    project += "line=0o \n";
    const std::string out = translated(project);
    EXPECT_NE(out.find("DayXpm=\"3 1 65 2\" Colormode=32\r\n\"00 c #000000\"\r\n\"01 c #000000\"\r\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find("\"0o c #000000\"\r\n\"10 c none\"\r\n\"000o10\"\r\n[end]"), std::string::npos) << out;
    // 63 colours and the blank stay at one character; "p" is one above "o".
    project = "[poi]\n";
    for (int i = 0; i < 63; ++i) project += "color=" + std::string(1, static_cast<char>('0' + i)) + ",0x000000\n";
    EXPECT_NE(translated(project + "line= \n").find("DayXpm=\"1 1 64 1\" Colormode=16\r\n"), std::string::npos);
    // Past "~" the blank takes the first free code.
    EXPECT_NE(translated("[polygon]\ncolor=~,0x000000\ncolor=!,0x111111\nline=~ \n").find("\"# c none\""), std::string::npos);
}

TEST(MaptkTranslation, BlocksAreCutBehindTheLastEnd) {
    const std::string project =
        "familyid=1\n[polygon]\ntype=0x01\ndraworder=1\ncolor=a,0xff0000\nline=a\n[end]\n"
        "[polygon]\ntype=0x02\ndraworder=3\ncolor=a,0x00ff00\nline=a\n[end]\n"
        "[poi]\ntype=0x2f06\n[end]\n";
    const std::string whole = translated(project);
    EXPECT_EQ(translated(project, 20), whole);
    EXPECT_EQ(whole.substr(whole.find("[_drawOrder]")), "[_drawOrder]\r\nType=0x01,1\r\nType=0x02,3\r\n[end]\r\n");
}

TEST(MaptkLoad, SampleProjectFillsTheTables) {
    model::Store s;
    model::newproject(s);
    ScriptedPrompt ui;
    ASSERT_TRUE(loadprj(s, ui, testing::source_dir() + "/tests/data/maptk/sample.prj"));
    EXPECT_TRUE(ui.messages.empty()) << ui.messages.front();
    EXPECT_TRUE(s.dirty);
    EXPECT_EQ(s.fid, "3511");
    EXPECT_EQ(s.pid, "1");
    ASSERT_EQ(s.pg_n, 2);
    ASSERT_EQ(s.ln_n, 2);
    ASSERT_EQ(s.pt_n, 2);
    EXPECT_EQ(s.drwlist, " 4B00,1 0001,2");
    // Polygons: one colour on a transparent ground.
    EXPECT_EQ(s.pg_mode[0], 14);
    EXPECT_EQ(s.pg_col[0], "\"0 c none\"\r\n\"1 c #FF0000\"");
    EXPECT_EQ(s.pg_bmp[0].substr(0, 32), "11110000111100001111000011110000");
    // The one-colour line is solid, three pixels wide.
    EXPECT_EQ(s.ln_code[0], 0x200);
    EXPECT_EQ(s.ln_mode[0], 6);
    EXPECT_EQ(s.ln_wid[0], 3);
    EXPECT_EQ(s.ln_bord[0], 0);
    EXPECT_EQ(s.ln_ncol[1], 2);
    // 70 colours with no blank pixel; the colourless point has no table.
    EXPECT_EQ(s.pt_ncol[0], 70);
    EXPECT_EQ(s.pt_xpm[0], "DayXpm=\"10 7 70 2\" Colormode=32");
    EXPECT_EQ(s.pt_ncol[1], 0);

    model::Store none;
    ScriptedPrompt quiet;
    EXPECT_FALSE(loadprj(none, quiet, "/nonexistent/x.prj"));
    EXPECT_EQ(quiet.messages, std::vector<std::string>{"/nonexistent/x.prj doesn't exist"});
}

}  // namespace
}  // namespace korvex::text
