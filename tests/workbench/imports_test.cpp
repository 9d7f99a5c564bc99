// The style import (.krvx) and map themes (.kmtf).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "ops_fixture.h"
#include "workbench/theme.h"
#include "workbench/type_key.h"

namespace korvex::workbench {
namespace {

using test::OpsFixture;

TEST(StyleImport, WantedNewTypesAreMadeAndSortedOthersLeftAlone) {
    OpsFixture f;
    f.load(test::polygon("0x03", "Three") + test::point("0x2f05", "cafe"), model::k_points);
    const std::string krvx =
        "<Korvex>\r\n<2/>\r\n<Points>0x2f06,amenity=yes</Points>\r\n<Points>2f05,amenity=yes</Points>\r\n"
        "<Points>2a00,shop=no</Points>\r\n<Points>2a01,shop=false</Points>\r\n<Points>2f06,tourism=hotel</Points>\r\n"
        "<Points>0x300,x=yes</Points>\r\n"
        "<0/>\r\n<Polygons>0x01,landuse=residential</Polygons>\r\n<1/>\r\n<Lines>0x16,\thighway=*</Lines>\r\n";
    EXPECT_EQ(f.ops.import_krv_text(krvx), 3);
    EXPECT_EQ(f.s.pt_n, 2);
    EXPECT_EQ(f.s.pt_typ[1], "02F06");
    EXPECT_NE(f.s.pt_lab[1].find("#'amenity'"), std::string::npos);
    EXPECT_NE(f.s.pt_xpm[1].find("16 16"), std::string::npos);
    EXPECT_EQ(f.s.pg_n, 2);
    EXPECT_EQ(f.s.pg_typ[0], "0x0100");  // sorted in front of 0x03
    EXPECT_EQ(f.s.pg_lab[0].substr(3), "'residential'");
    EXPECT_EQ(f.s.pg_drw[0], "Type=0001,1");
    EXPECT_NE(f.s.drwlist.find("0001,1"), std::string::npos);
    EXPECT_EQ(f.s.ln_n, 1);
    EXPECT_EQ(f.s.ln_code[0], 0x1600);
    EXPECT_EQ(f.ui.messages.back(),
              "Added Polygons:1 Lines:1 Points:1\r\n\r\nTo sort icons please save as TYP and reload");
    EXPECT_TRUE(f.s.dirty);
    EXPECT_EQ(f.s.curclass, model::k_points);  // the view stays
}

TEST(StyleImport, NotInStyleMarksTheListedElementsOnce) {
    OpsFixture f;
    const std::string bare = "[_polygon]\r\nType=0x05\r\nXpm=\"0 0 1 0\"\r\n\"1 c #00FF00\"\r\n[end]\r\n";
    f.load(test::polygon("0x03", "Three") + bare + test::polygon("0x07", "Seven"));
    const std::string krvx = "<0/>\r\nNOT in STYLE\r\n0x03, 0x05\r\n";
    EXPECT_EQ(f.ops.import_krv_text(krvx), 0);
    EXPECT_EQ(f.ui.messages.back(), "No new icons added");
    EXPECT_EQ(f.s.pg_lab[0].substr(3), "'NOT in STYLE Three'");
    // A polygon without a label gets one, in front of its Xpm line.
    const std::string& txt = f.s.pg_txt[1];
    EXPECT_LT(txt.find("String1=0x00,NOT in STYLE"), txt.find("Xpm="));
    EXPECT_EQ(f.s.pg_lab[2].substr(3), "'Seven'");
    EXPECT_TRUE(f.s.dirty);
    const std::string once = f.text();
    f.ops.import_krv_text(krvx);
    EXPECT_EQ(f.text(), once);
}

TEST(StyleImport, PolygonsWaitForThePolygonView) {
    OpsFixture f;
    f.load("");
    f.host.layers = true;
    EXPECT_EQ(f.ops.import_krv_text("<0/>\r\n<Polygons>0x01,landuse=yes</Polygons>\r\n"), 0);
    EXPECT_EQ(f.ui.messages.front(), "Please show all polygons");
    EXPECT_EQ(f.s.pg_n, 0);
}

const char* const k_theme =
    "<?xml version=\"1.0\"?>\n<THEME NAME=\"Sample\">\n<StyleList>\n"
    "<Style Field=\"MAP_FOREST_CLR\"><Color Day=\"#4CA04C\"/></Style>\n"
    "<Style Field=\"MAP_LAKE_CLR\"><Color Day=\"#3C78C8\" Night=\"#1E3C64\"/></Style>\n"
    "<Style Field=\"MAP_TRAIL_CLR\" Scale=\"3\" Border=\"1\"><Color Day=\"#8B4513\" Night=\"#FFFFFF\"/></Style>\n"
    "<Style Field=\"MAP_STREET_CLR\" Scale=\"2\"><Color Day=\"#FFFFFF\"/></Style>\n"
    "<Style Field=\"MAP_NOWHERE_CLR\"><Color Day=\"#000000\"/></Style>\n"
    "</StyleList>\n</THEME>\n";
const char* const k_table = "; a note\nFOREST,50\nLAKE,3c,3d\nTRAIL,1,16\nSTREET,1,06\n";

TEST(Theme, StylesBecomeSectionsThroughTheTable) {
    const std::string t = theme_text(k_theme, k_table);
    EXPECT_EQ(t.find("[_drawOrder]\r\nType=0x50,0\r\nType=0x3c,0\r\nType=0x3d,0\r\n[end]\r\n"), 0u);
    EXPECT_NE(t.find("[_polygon]\r\nType=0x50\r\nString1=0x0,FOREST\r\nExtendedLabels=Y\r\nCustomColor=No\r\n"
                     "Xpm=\"0 0 2 0\"\r\n\"0 c #4CA04C\"\r\n\"1 c none\"\r\n[end]"),
              std::string::npos);
    EXPECT_NE(t.find("\"0 c #3C78C8\"\r\n\"1 c #1E3C64\""), std::string::npos);
    // A trail is dashed and twice its scale wide; other lines four times.
    EXPECT_NE(t.find("Type=0x16\r\nString1=0x0,TRAIL\r\nExtendedLabels=Y\r\nCustomColor=No\r\nlwidth(=6\r\nBorderwidth=1\r\n"
                     "Xpm=\"32 4 2 1\""),
              std::string::npos);
    EXPECT_NE(t.find("lwidth(=8\r\nBorderwidth=0\r\nXpm=\"0 0 1 0\""), std::string::npos);
    EXPECT_EQ(t.find("NOWHERE"), std::string::npos);
    // A line style without a scale counts as scale 1.
    const std::string unscaled = theme_text(
        "<THEME><StyleList><Style Field=\"MAP_STREET_CLR\"><Color Day=\"#FFFFFF\"/></Style></StyleList></THEME>", k_table);
    EXPECT_NE(unscaled.find("Type=0x06\r\nString1=0x0,STREET\r\nExtendedLabels=Y\r\nCustomColor=No\r\nlwidth(=4\r\n"),
              std::string::npos)
        << unscaled;
    EXPECT_EQ(theme_text("<THEME></THEME>", k_table), "");
}

TEST(Theme, LoadReplacesTheProjectAndNamesItAfterTheTheme) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / ("korvex_theme_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
    fs::create_directories(dir);
    std::ofstream(dir / "look.kmtf") << k_theme;
    std::ofstream(dir / "tdat") << k_table;
    OpsFixture f;
    f.load(test::polygon("0x03", "Three") + test::point("0x2f05", "p"));
    EXPECT_FALSE(loadtheme(f.s, f.ui, (dir / "look.kmtf").string(), {(dir / "none").string()}, "D"));
    EXPECT_EQ(f.ui.messages.back(), "Cannot find T data in D");
    EXPECT_FALSE(loadtheme(f.s, f.ui, (dir / "gone.kmtf").string(), {(dir / "tdat").string()}, "D"));
    EXPECT_EQ(f.ui.messages.back(), "Cannot locate list");
    EXPECT_EQ(f.s.pg_n, 1);

    ASSERT_TRUE(loadtheme(f.s, f.ui, (dir / "look.kmtf").string(), {(dir / "none").string(), (dir / "tdat").string()}, "D"));
    EXPECT_EQ(f.s.pg_n, 3);
    EXPECT_EQ(f.s.ln_n, 2);
    EXPECT_EQ(f.s.pt_n, 0);  // no extra points: the points go too
    EXPECT_EQ(f.s.pg_drw[0], "Type=0050,1");
    EXPECT_EQ(f.s.curfile, (dir / "look.typ").string());
    const int16_t widths[] = {f.s.ln_wid[0], f.s.ln_wid[1]};
    EXPECT_EQ(widths[0] + widths[1], 8);  // the dashed trail has a bitmap, the street is 8 wide

    // Beside extra points the points and extra points stay, and save with
    // the theme; the rest of the old file goes as with any new project.
    f.load(test::polygon("0x03", "Three") + test::point("0x2f05", "p") +
           "[_point]\r\nID=0x11b01\r\nString1=0x04,x\r\nXpm=\"2 1 1 1\"\r\n\"! c #FF0000\"\r\n\"!!\"\r\n[end]\r\n");
    ASSERT_EQ(f.s.pt_nx, 1);
    f.s.hdr_caption = " a4";
    f.s.hdr_len = 0xa4;
    f.s.codepage = 1250;
    f.s.curf = "old bytes";
    f.s.fid = "77";
    f.s.loadrep = "a note of the old file\r\n";
    const model::Store before = f.s;
    ASSERT_TRUE(loadtheme(f.s, f.ui, (dir / "look.kmtf").string(), {(dir / "tdat").string()}, "D"));
    EXPECT_EQ(f.ui.messages.back(), "Merging with Extra Points");
    EXPECT_EQ(f.s.pg_n, 3);
    EXPECT_EQ(f.s.ln_n, 2);
    EXPECT_EQ(f.s.pt_n, 1);
    EXPECT_EQ(f.s.pt_nx, 1);
    EXPECT_EQ(f.s.pt_typ, before.pt_typ);
    EXPECT_EQ(f.s.pt_bmp, before.pt_bmp);
    EXPECT_EQ(f.s.pt_lab, before.pt_lab);
    EXPECT_EQ(f.s.hdr_len, 0xa4);
    EXPECT_EQ(f.s.codepage, 1250);
    EXPECT_EQ(f.s.curf, "");
    EXPECT_EQ(f.s.fid, "");
    EXPECT_EQ(f.s.loadrep, "");
    model::Store saved;
    testing::decode_bytes(saved, f.ui, testing::encode(f.s, f.ui));
    EXPECT_EQ(saved.pt_n, 1);
    EXPECT_EQ(saved.pt_nx, 1);
    EXPECT_EQ(saved.pg_n, 3);
    fs::remove_all(dir);
}

}  // namespace
}  // namespace korvex::workbench
