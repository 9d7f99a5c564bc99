// Font conversion: the four options on one section, the colour form, the
// runs over a selection and over classes with their refusals and report,
// the font list and the next free String line.
#include <gtest/gtest.h>

#include "integration/font_conversion.h"
#include "support/harness.h"
#include "text/load_driver.h"

using namespace korvex;
using namespace korvex::integration;

namespace {

using korvex::testing::english_messages;

const std::string k_head = "[_polygon]\r\nType=0x01\r\nString1=0x04,Wood\r\n";
const std::string k_xpm = "Xpm=\"0 0 1 0\"\r\n\"1 c #102030\"\r\n";

std::string converted(std::string section, int option, const std::string& style = "SmallFont",
                      SectionChange* change = nullptr) {
    const SectionChange c = convert_font(section, option, style);
    if (change) *change = c;
    return section;
}

model::Store project(platform::ScriptedPrompt& ui, const std::string& more = "") {
    model::Store s;
    model::newproject(s);
    const std::string text =
        "[_id]\r\nFID=1\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n"
        "[_drawOrder]\r\nType=0x01,1\r\nType=0x02,1\r\n[end]\r\n"
        "[_polygon]\r\nType=0x01\r\nString1=0x04,Wood\r\nExtendedLabels=Y\r\nFontStyle=Large\r\n" + k_xpm + "[end]\r\n"
        "[_polygon]\r\nType=0x02\r\nString1=0x04,Lake\r\n" + k_xpm + "[end]\r\n"
        "[_line]\r\nType=0x01\r\nString1=0x04,Road\r\nXpm=\"0 0 1 0\"\r\n\"1 c #000000\"\r\n[end]\r\n"
        "[_point]\r\nType=0x2a00\r\nString1=0x04,Food\r\nExtendedLabels=Y\r\nFontStyle=SmallFont\r\n"
        "DayXpm=\"1 1 1 1\"\r\n\"! c #FF0000\"\r\n\"!\"\r\n[end]\r\n" + more;
    text::load_txt(s, ui, "p.txt", text, false, false);
    s.dirty = false;
    return s;
}

}  // namespace

TEST(FontSection, AddPutsExtendedLabelsAndStyleBeforeThePictureInThatOrder) {
    SectionChange c;
    EXPECT_EQ(converted(k_head + k_xpm, k_font_add, "SmallFont", &c),
              k_head + "ExtendedLabels=Y\r\nFontStyle=SmallFont\r\n" + k_xpm);
    EXPECT_TRUE(c.changed);
    EXPECT_FALSE(c.had);
    // An ExtendedLabels=N becomes Y and the style goes before a DayXpm or NightXpm head.
    EXPECT_EQ(converted(k_head + "ExtendedLabels=N\r\nNightXpm=\"0 0 1 0\"\r\n", k_font_add_if_none, "Large"),
              k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\nNightXpm=\"0 0 1 0\"\r\n");
    // A section without a picture takes the lines before its [end], or at its end.
    EXPECT_EQ(converted(k_head + "[end]\r\n", k_font_add, "Normal"),
              k_head + "ExtendedLabels=Y\r\nFontStyle=Normal\r\n[end]\r\n");
    EXPECT_EQ(converted("Type=0x01", k_font_add, "Normal"), "Type=0x01\r\nExtendedLabels=Y\r\nFontStyle=Normal");
}

TEST(FontSection, ExistingStylesByOption) {
    const std::string styled = k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\n" + k_xpm;
    SectionChange c;
    // Add if none leaves a styled element; Add and Replace replace in place.
    EXPECT_EQ(converted(styled, k_font_add_if_none, "SmallFont", &c), styled);
    EXPECT_FALSE(c.changed);
    EXPECT_TRUE(c.had);
    const std::string small = k_head + "ExtendedLabels=Y\r\nFontStyle=SmallFont\r\n" + k_xpm;
    EXPECT_EQ(converted(styled, k_font_add), small);
    EXPECT_EQ(converted(styled, k_font_replace_only), small);
    // Replace leaves an element without a style alone.
    EXPECT_EQ(converted(k_head + k_xpm, k_font_replace_only, "Large", &c), k_head + k_xpm);
    EXPECT_FALSE(c.changed);
    // A key-like text behind the picture head is a colour line, never a key.
    const std::string tail = k_head + k_xpm + "\"fontstyle=x\"\r\n";
    EXPECT_EQ(converted(tail, k_font_replace_only), tail);
}

TEST(FontSection, RemoveDropsTheStyleAndKeepsExtendedLabelsOnlyForCustomColours) {
    EXPECT_EQ(converted(k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\n" + k_xpm, k_font_remove),
              k_head + "ExtendedLabels=N\r\n" + k_xpm);
    const std::string coloured = k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\nCustomColor=Day\r\n"
                                          "DaycustomColor:#FF0000\r\n" + k_xpm;
    EXPECT_EQ(converted(coloured, k_font_remove),
              k_head + "ExtendedLabels=Y\r\nCustomColor=Day\r\nDaycustomColor:#FF0000\r\n" + k_xpm);
    // "CustomColor=No" is no colour.
    EXPECT_EQ(converted(k_head + "ExtendedLabels=Y\r\nFontStyle=Nolabel\r\nCustomColor=No\r\n" + k_xpm, k_font_remove),
              k_head + "ExtendedLabels=N\r\nCustomColor=No\r\n" + k_xpm);
    SectionChange c;
    EXPECT_EQ(converted(k_head + k_xpm, k_font_remove, "", &c), k_head + k_xpm);
    EXPECT_FALSE(c.changed);
}

TEST(FontSection, ColourFormReplacesOrAddsTheThreeLines) {
    const std::string three = "CustomColor=DayAndNight\r\nDaycustomColor:#112233\r\nNightcustomColor:#FFFF00\r\n";
    std::string s = k_head + k_xpm;
    EXPECT_TRUE(convert_colours(s, k_colours_if_none, "112233", "ffff00").changed);
    EXPECT_EQ(s, k_head + "ExtendedLabels=Y\r\n" + three + "FontStyle=default\r\n" + k_xpm);

    // Existing colours: option 1 leaves them, option 0 puts the new ones in their place.
    std::string old = k_head + "ExtendedLabels=N\r\nFontStyle=Large\r\nCustomColor=Day\r\nDaycustomColor:#FF0000\r\n"
                               "String2=0x02,Holz\r\n" + k_xpm;
    std::string kept = old;
    const SectionChange c = convert_colours(kept, k_colours_if_none, "112233", "FFFF00");
    EXPECT_FALSE(c.changed);
    EXPECT_TRUE(c.had);
    EXPECT_TRUE(convert_colours(old, k_colours_all, "112233", "FFFF00").changed);
    EXPECT_EQ(old, k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\n" + three + "String2=0x02,Holz\r\n" + k_xpm);

    // "customcolor=no" counts as none, so option 1 replaces it.
    std::string no = k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\ncustomcolor=no\r\n" + k_xpm;
    EXPECT_TRUE(convert_colours(no, k_colours_if_none, "112233", "FFFF00").changed);
    EXPECT_EQ(no, k_head + "ExtendedLabels=Y\r\nFontStyle=Large\r\n" + three + k_xpm);
}

TEST(FontConversion, SelectionRunChangesTheRowsCountsAndEncodes) {
    platform::ScriptedPrompt ui;
    model::Store s = project(ui);
    FontRequest r;
    r.mode = k_fonts_selection;
    r.option = k_font_add;
    r.style = "Normal";
    FontCounts c;
    ASSERT_TRUE(fontconv(s, ui, english_messages(), r, model::k_polygons, {1}, &c));
    EXPECT_EQ(c.polygons, 1);
    EXPECT_EQ(c.total(), 1);
    EXPECT_TRUE(s.dirty);
    EXPECT_EQ(font_style_of(s.pg_txt[0]), "Large");   // not selected
    EXPECT_EQ(font_style_of(s.pg_txt[1]), "Normal");
    EXPECT_EQ(ui.messages.back(), "Changes made:\r\n\r\nPolygons: 1\r\nLines: 0\r\nPoints: 0");

    // The saved TYP carries the new font byte.
    model::Store back;
    korvex::testing::decode_bytes(back, ui, korvex::testing::encode(s, ui));
    EXPECT_EQ(font_style_of(back.pg_txt[1]), "Normal");
}

TEST(FontConversion, ClassRunsFollowTheBoxesAndTheColourFormSetsTheColumns) {
    platform::ScriptedPrompt ui;
    model::Store s = project(ui);
    FontRequest r;
    r.mode = k_fonts_classes;
    r.option = k_font_remove;
    r.select_all = true;
    r.polygons = r.points = true;
    FontCounts c;
    ASSERT_TRUE(fontconv(s, ui, english_messages(), r, model::k_lines, {}, &c));
    EXPECT_EQ(c.polygons, 1);
    EXPECT_EQ(c.points, 1);
    EXPECT_EQ(c.lines, 0);
    EXPECT_EQ(font_style_of(s.pt_txt[0]), "");

    FontRequest colours;
    colours.mode = k_fonts_colours;
    colours.option = k_colours_all;
    colours.select_all = true;
    colours.points = colours.lines = true;
    colours.day = "112233";
    colours.night = "445566";
    ASSERT_TRUE(fontconv(s, ui, english_messages(), colours, model::k_polygons, {}, &c));
    EXPECT_EQ(c.lines, 1);
    EXPECT_EQ(c.points, 1);
    EXPECT_EQ(s.ln_dayc[0], "332211");
    EXPECT_EQ(s.pt_cc[0], "332211665544");
    model::Store back;
    korvex::testing::decode_bytes(back, ui, korvex::testing::encode(s, ui));
    EXPECT_NE(back.pt_txt[0].find("NightcustomColor:#445566"), std::string::npos);
    EXPECT_NE(back.ln_txt[0].find("DaycustomColor:#112233"), std::string::npos);
}

TEST(FontConversion, RefusalsAndReportNotesChangeNothing) {
    platform::ScriptedPrompt ui;
    model::Store s = project(ui);
    const std::vector<std::string> before = s.pg_txt;
    FontRequest r;
    EXPECT_FALSE(fontconv(s, ui, english_messages(), r, model::k_polygons, {}));
    EXPECT_EQ(ui.messages.back(), "Tick Select All\r\n\r\nCTRL/SHFT  (CTRL A) (Esc = cancel)");
    r.style.clear();
    EXPECT_FALSE(fontconv(s, ui, english_messages(), r, model::k_polygons, {0}));
    EXPECT_EQ(ui.messages.back(), "No Font selected");
    EXPECT_EQ(s.pg_txt, before);
    EXPECT_FALSE(s.dirty);

    // Replace where every element has a style, and where none has one.
    FontRequest rep;
    rep.option = k_font_replace_only;
    rep.style = "Large";
    ASSERT_TRUE(fontconv(s, ui, english_messages(), rep, model::k_polygons, {0}));
    EXPECT_NE(ui.messages.back().find("All selected elements already have Fonts\r\nSelect Add Font if no Font exists."),
              std::string::npos);
    EXPECT_FALSE(s.dirty);  // Large was Large already
    ASSERT_TRUE(fontconv(s, ui, english_messages(), rep, model::k_polygons, {1}));
    EXPECT_NE(ui.messages.back().find("Cannot find Font information."), std::string::npos);
}

TEST(FontList, OneLineARowNamedByItsTypeWithItsStyleOrADash) {
    platform::ScriptedPrompt ui;
    model::Store s = project(ui);
    EXPECT_EQ(font_list(s, model::k_polygons), "FONTLIST for Polygons\r\n\r\n0x0100,Large\r\n0x0200, - \r\n");
    EXPECT_EQ(font_list(s, model::k_points), "FONTLIST for Points\r\n\r\n0x02a00,SmallFont\r\n");
    EXPECT_EQ(font_list(s, model::k_lines), "FONTLIST for Lines\r\n\r\n0x00100, - \r\n");
    EXPECT_EQ(font_list(s, model::k_extra_points), "");
    // Active lines have a list of their own and stay out of the lines'.
    model::Store act = project(ui, "[_line]\r\nType=0x100\r\nActivity=Walking\r\nString1=0x04,Walk\r\n"
                                   "ExtendedLabels=Y\r\nFontStyle=Normal\r\nXpm=\"0 0 1 0\"\r\n\"1 c #000000\"\r\n[end]\r\n");
    ASSERT_EQ(act.ln_nact, 1);
    EXPECT_EQ(font_list(act, model::k_lines), "FONTLIST for Lines\r\n\r\n0x00100, - \r\n");
    EXPECT_EQ(font_list(act, model::k_active_lines), "FONTLIST for Lines\r\n\r\n0x10000,Normal\r\n");
}

TEST(AddString, TakesTheFirstFreeNumberAndTheSelectedText) {
    const std::string text = "[_point]\r\nType=0x2a00\r\nString1=0x04,Food\r\nstring2=0x02,Essen\r\nMensa\r\n";
    const size_t at = text.find("Mensa");
    const StringInsertion in = mads(text, at, at + 5, 0x0f);
    EXPECT_EQ(in.text, "[_point]\r\nType=0x2a00\r\nString1=0x04,Food\r\nstring2=0x02,Essen\r\nString3=0x0F,Mensa\r\n");
    EXPECT_EQ(in.text.substr(0, in.caret), text.substr(0, at) + "String3=0x0F,Mensa");
    // A gap is filled first; no selection inserts an empty text at the caret.
    const StringInsertion gap = mads("String2=0x04,A\r\n", 0, 0, 4);
    EXPECT_EQ(gap.text, "String1=0x04,String2=0x04,A\r\n");
    // Positions beyond the text are held to it.
    EXPECT_EQ(mads("ab", 7, 3, 0).text, "abString1=0x00,");
}
