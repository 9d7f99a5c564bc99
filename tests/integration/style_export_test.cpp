// Style rules for mkgmap: types as mkgmap names them, the value from the
// label, one rule or a chain with continue, the refusals and the copy.
#include <gtest/gtest.h>

#include "integration/style_export.h"
#include "support/harness.h"
#include "text/load_driver.h"

using namespace korvex;
using namespace korvex::integration;

namespace {

model::Store style_project(platform::ScriptedPrompt& ui) {
    model::Store s;
    model::newproject(s);
    const std::string xpm = "Xpm=\"0 0 1 0\"\r\n\"1 c #102030\"\r\n";
    const std::string text =
        "[_id]\r\nFID=1\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n"
        "[_polygon]\r\nType=0x10f00\r\nString1=0x04,Golf course\r\n" + xpm + "[end]\r\n"
        "[_polygon]\r\nType=0x4b\r\nString1=0x04,Jim's  back ground \r\n" + xpm + "[end]\r\n"
        "[_polygon]\r\nType=0x04\r\nSubType=0x01\r\n" + xpm + "[end]\r\n"
        "[_polygon]\r\nType=0x10000\r\n" + xpm + "[end]\r\n"
        "[_line]\r\nType=0x0a\r\nString1=0x04,Track\r\n" + xpm + "[end]\r\n"
        "[_line]\r\nType=0x10101\r\n" + xpm + "[end]\r\n"
        "[_point]\r\nType=0x2a00\r\nString1=0x04,Food\r\nDayXpm=\"1 1 1 1\"\r\n\"! c #FF0000\"\r\n\"!\"\r\n[end]\r\n"
        "[_point]\r\nType=0x2a01\r\nDayXpm=\"1 1 1 1\"\r\n\"! c #FF0000\"\r\n\"!\"\r\n[end]\r\n"
        "[_point]\r\nType=0x11500\r\nDayXpm=\"1 1 1 1\"\r\n\"! c #FF0000\"\r\n\"!\"\r\n[end]\r\n";
    text::load_txt(s, ui, "p.txt", text, false, false);
    return s;
}

}  // namespace

TEST(StyleExport, TypesAsMkgmapNamesThem) {
    platform::ScriptedPrompt ui;
    model::Store s = style_project(ui);
    ASSERT_EQ(s.pg_n, 4);
    ASSERT_EQ(s.ln_n, 2);
    ASSERT_EQ(s.pt_n, 3);
    EXPECT_EQ(mkgmap_type(s, model::k_polygons, 0), "0x10f00");
    EXPECT_EQ(mkgmap_type(s, model::k_polygons, 1), "0x4b");
    EXPECT_EQ(mkgmap_type(s, model::k_polygons, 2), "");  // a plain type with a subtype
    EXPECT_EQ(mkgmap_type(s, model::k_polygons, 3), "0x10000");  // the first extended type
    EXPECT_EQ(mkgmap_type(s, model::k_lines, 0), "0x0a");
    EXPECT_EQ(mkgmap_type(s, model::k_lines, 1), "0x10101");
    EXPECT_EQ(mkgmap_type(s, model::k_points, 0), "0x2a00");
    EXPECT_EQ(mkgmap_type(s, model::k_points, 1), "0x2a01");
    EXPECT_EQ(mkgmap_type(s, model::k_points, 2), "0x11500");
    EXPECT_EQ(mkgmap_type(s, model::k_points, 9), "");
}

TEST(StyleExport, TheValueComesFromTheLabelAsOneWord) {
    platform::ScriptedPrompt ui;
    model::Store s = style_project(ui);
    EXPECT_EQ(default_value(s, model::k_polygons, 0), "Golf_course");
    EXPECT_EQ(default_value(s, model::k_polygons, 1), "Jims__back_ground");
    EXPECT_EQ(default_value(s, model::k_polygons, 2), "");
    EXPECT_EQ(default_value(s, model::k_lines, 0), "Track");
    EXPECT_EQ(default_value(s, model::k_points, 0), "Food");
    EXPECT_EQ(default_tag(model::k_lines), "highway");
    EXPECT_EQ(default_tag(model::k_points), "?");
    EXPECT_EQ(osm_tags().front(), "aeroway");
    EXPECT_EQ(osm_tags().back(), "?");
    EXPECT_EQ(osm_tags().size(), 22u);
}

TEST(StyleExport, OneRuleOrAChainThatLetsTheNextRun) {
    platform::ScriptedPrompt ui;
    model::Store s = style_project(ui);
    StyleCode c = create_code(s, ui, model::k_polygons, {0}, "leisure", "golf", "22");
    EXPECT_TRUE(c.ok);
    EXPECT_EQ(c.text, "leisure=golf [0x10f00 resolution 22]\r\n");
    c = create_code(s, ui, model::k_points, {2, 0, 1}, "amenity", "fast food", "24");
    EXPECT_EQ(c.text,
              "amenity='fast food' [0x11500 resolution 24 continue ]\r\n"
              "amenity='fast food' [0x2a00 resolution 24 continue ]\r\n"
              "amenity='fast food' [0x2a01 resolution 24]\r\n");
    // No resolution: the rule goes without one; an unnamed type becomes a comment.
    c = create_code(s, ui, model::k_polygons, {2, 1}, "natural", "wood", "");
    EXPECT_EQ(c.text, "# 0x0401: mkgmap has no style type for it\r\nnatural=wood [0x4b]\r\n");
    EXPECT_TRUE(ui.messages.empty());
}

TEST(StyleExport, RefusalsAndTheCopy) {
    platform::ScriptedPrompt ui;
    model::Store s = style_project(ui);
    EXPECT_FALSE(create_code(s, ui, model::k_polygons, {0}, "?", "golf", "22").ok);
    EXPECT_EQ(ui.messages.back(), "? = golf");
    EXPECT_FALSE(create_code(s, ui, model::k_polygons, {0}, "leisure", "  ", "22").ok);
    EXPECT_EQ(ui.messages.back(), "leisure=?");

    platform::MemoryClipboard clip;
    clip.set_text("before");
    EXPECT_FALSE(copy_code(clip, ui, " \r\n"));
    EXPECT_EQ(ui.messages.back(), "Click Create Code");
    EXPECT_EQ(clip.text(), "before");
    EXPECT_TRUE(copy_code(clip, ui, "leisure=golf [0x10f00 resolution 22]\r\n"));
    EXPECT_EQ(ui.messages.back(), "Text copied");
    EXPECT_EQ(clip.unicode_text(), "leisure=golf [0x10f00 resolution 22]\r\n");
}
