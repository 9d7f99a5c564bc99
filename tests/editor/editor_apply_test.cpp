// Opening and applying elements of a small project: edits reach the
// element's text and columns, refusals say their message and change nothing.
#include <gtest/gtest.h>

#include "editor/canvas.h"
#include "editor/editor_apply.h"
#include "editor/element_open.h"
#include "editor/label_panel.h"
#include "editor/palette_edit.h"
#include "editor/tools.h"
#include "text/load_driver.h"
#include "text/text_writer.h"
#include "typ/draw_order.h"
#include "variants_fixture.h"

namespace korvex::editor {
namespace {

using variants::has;

const char* k_apply_project =
    "[_id]\nFID=7\nCodePage=1252\n[end]\n"
    "[_drawOrder]\nType=0x01,1\nType=0x02,2\nType=0x03,3\n[end]\n"
    "[_polygon]\nType=0x01\nString1=0x04,Wood\nXpm=\"32 32 2 1\"\n\"0 c #00FF00\"\n\"1 c none\"\n"
    "\"00000000000000000000000000000000\"\n"
    "[end]\n"
    "[_polygon]\nType=0x02\nXpm=\"0 0 1 0\"\n\"0 c #0000FF\"\n[end]\n"
    "[_line]\nType=0x05\nLineWidth=3\nBorderWidth=1\nXpm=\"0 0 2 0\"\n\"0 c #FF0000\"\n\"1 c #000000\"\n[end]\n"
    "[_line]\nType=0x06\nLineWidth=2\nBorderWidth=0\nXpm=\"0 0 1 0\"\n\"0 c #00FF00\"\n[end]\n"
    "[_line]\nType=0x07\nLineWidth=2\nBorderWidth=2\nXpm=\"0 0 2 0\"\n\"0 c #0000FF\"\n\"1 c #FFFFFF\"\n[end]\n"
    "[_point]\nType=0x2f\nSubType=0x01\nString1=0x04,Pub\nExtendedLabels=Y\nFontStyle=SmallFont\n"
    "DayXpm=\"4 2 2 1\" Colormode=16\n\"! c #FFFFFF\"\n\"  c none\"\n\"!!  \"\n\"  !!\"\n[end]\n"
    "[_point]\nType=0x30\nDayXpm=\"2 1 1 1\" Colormode=0\n\"! c #000000\"\n\"!!\"\n[end]\n";

struct ApplyProject {
    model::Store s;
    platform::ScriptedPrompt ui;
    ApplyProject() {
        model::newproject(s);
        const bool ok = text::load_txt(s, ui, "t.txt", k_apply_project, false, true);
        EXPECT_TRUE(ok);
        s.dirty = false;
    }
    EditorSession open(int cls, int32_t row) {
        OpenRequest r;
        r.curclass = cls;
        r.row = row;
        return open_element(s, r);
    }
    std::string code(int cls, int32_t row) { return text::create_code(s, row + 1, cls, false); }
};

TEST(EditorOpen, FillsTheWorkingCopyFromTheElement) {
    ApplyProject p;
    ASSERT_EQ(p.s.pt_n, 2);
    EditorSession e = p.open(2, 0);
    EXPECT_EQ(e.width, 4);
    EXPECT_EQ(e.height, 2);
    EXPECT_EQ(e.ncols(), 2);
    EXPECT_EQ(e.palette.colour(2), k_transparent_magenta);
    EXPECT_EQ(e.pixels.at(0, 0), 0);
    EXPECT_EQ(e.pixels.at(3, 0), 1);
    EXPECT_EQ(e.type_field, "02F");
    EXPECT_EQ(e.subtype_field, "01");
    ASSERT_EQ(e.labels.labels.size(), 1u);
    EXPECT_EQ(e.labels.labels[0].language, 4);
    EXPECT_EQ(e.labels.labels[0].text, "Pub");
    EXPECT_TRUE(e.labels.extendedlabels);
    EXPECT_EQ(e.labels.fontstyle_index, 2);
    EXPECT_EQ(e.undo.level(), 0);

    EditorSession pg = p.open(0, 0);
    EXPECT_EQ(pg.width, 32);
    EXPECT_EQ(pg.draworder, "1");
    // The reader puts a polygon's transparent colour first.
    EXPECT_EQ(pg.palette.colours, (std::vector<uint32_t>{k_transparent_magenta, rgb(0, 255, 0)}));
    EXPECT_EQ(pg.pixels.at(31, 0), 1);
    EditorSession ln = p.open(1, 0);
    EXPECT_TRUE(ln.solid);
    EXPECT_EQ(ln.lwidth, 3);
    EXPECT_EQ(ln.border, 1);
    // A group of one is its element alone; two make a group.
    OpenRequest one{0, 1, {1}};
    EXPECT_EQ(open_element(p.s, one).curclass, 0);
    OpenRequest two{0, 1, {1, 0}};
    const EditorSession g = open_element(p.s, two);
    EXPECT_EQ(g.curclass, k_polygon_group);
    EXPECT_EQ(g.row, 0);
    EXPECT_EQ(g.sel1, ",0,1,");
}

TEST(EditorApply, DrawingLabelsAndFontsReachTheText) {
    ApplyProject p;
    EditorSession e = p.open(2, 0);
    ToolEngine t(e, p.ui);
    e.curcol = 1;
    t.press(0, 1, false);
    t.release(0, 1);
    e.labels.labels[0].text = "Inn|Bar";
    e.labels.labels.push_back({2, 0x05, "Gasthaus"});
    e.labels.fontstyle_index = 4;
    ASSERT_TRUE(set_font_colours(e, true, p.ui));
    e.labels.daylabelcolour = rgb(0x12, 0x34, 0x56);
    const ApplyOutcome out = apply(p.s, e, p.ui);
    ASSERT_TRUE(out.committed);
    EXPECT_TRUE(p.s.dirty);
    const std::string code = p.code(2, 0);
    EXPECT_TRUE(has(code, "\"$$%%\"\r\n\"$%$$\"")) << code;
    EXPECT_EQ(p.s.pt_bmp[0], "$$%%\r\n$%$$\r\n");
    EXPECT_TRUE(has(code, "String1=0x04,Inn|Bar")) << code;
    EXPECT_TRUE(has(code, "String2=0x05,Gasthaus")) << code;
    EXPECT_TRUE(has(code, "FontStyle=Large")) << code;
    EXPECT_TRUE(has(code, "DaycustomColor:#123456")) << code;
    EXPECT_TRUE(has(out.note, "Edited:0x02F01 (Inn|Bar)")) << out.note;
    EXPECT_TRUE(has(out.note, "Changed Font colours")) << out.note;
}

TEST(EditorApply, TypeChangesAndTheirRefusals) {
    ApplyProject p;
    const std::string before = p.code(2, 0);
    EditorSession e = p.open(2, 0);
    e.subtype_field = "20";
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Choose subtype : 0 - &1F");
    e.subtype_field = "";
    e.type_field = "30";
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Type exists.");
    e.type_field = "0";
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    e.type_field = "zz";
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Unknow type");
    EXPECT_EQ(p.code(2, 0), before);
    EXPECT_FALSE(p.s.dirty);

    e.type_field = "2E";
    e.subtype_field = " 3 ";
    const ApplyOutcome out = apply(p.s, e, p.ui);
    ASSERT_TRUE(out.committed);
    EXPECT_TRUE(out.type_changed);
    EXPECT_EQ(p.s.pt_typ[0], "02E03");
    EXPECT_TRUE(has(out.note, "From 02F01 to 2E03")) << out.note;

    // A type past its neighbour moves the row: the tables stay in type order.
    EditorSession m = p.open(2, 0);
    m.type_field = "31";
    m.subtype_field = "00";
    const ApplyOutcome moved = apply(p.s, m, p.ui);
    ASSERT_TRUE(moved.committed);
    EXPECT_EQ(moved.row, 1);
    EXPECT_EQ(p.s.pt_typ[1], "03100");
    EXPECT_EQ(p.s.pt_typ[0], "03000");
}

TEST(EditorApply, PolygonDrawOrderAndLineWidths) {
    ApplyProject p;
    EditorSession e = p.open(0, 0);
    e.draworder = "3";
    ApplyOutcome out = apply(p.s, e, p.ui);
    ASSERT_TRUE(out.committed);
    EXPECT_TRUE(out.drawdirty);
    EXPECT_EQ(typ::polygon_level(p.s, 0), "3");
    EXPECT_TRUE(has(p.s.drwlist, "0001,3")) << p.s.drwlist;
    EXPECT_TRUE(has(out.note, "Edited draworder from 1 to 3")) << out.note;

    // A subtype with a draw order on a plain type is refused.
    EditorSession sub = p.open(0, 1);
    sub.subtype_field = "01";
    EXPECT_FALSE(apply(p.s, sub, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(),
              "This polygon with a type <&100 and a subtype>0 can't have a draworder.\r\nSet draworder to 'none' or subtype  to '0'.");
    sub.subtype_field = "20";
    EXPECT_FALSE(apply(p.s, sub, p.ui).committed);

    // One colour, transparent: refused.
    EditorSession one = p.open(0, 1);
    one.palette.colours[0] = one.transparentcolour;
    EXPECT_FALSE(apply(p.s, one, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "One colour polygons can't have transparency.Add an extra colour.");

    EditorSession ln = p.open(1, 0);
    ln.lwidth = 0;
    EXPECT_FALSE(apply(p.s, ln, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Line Height must be at least 1");
    ln.lwidth = 30;
    ln.border = 1;
    EXPECT_FALSE(apply(p.s, ln, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "lwidth( + 2 x Border can't be more than 31");
    ln.lwidth = 29;
    ASSERT_TRUE(apply(p.s, ln, p.ui).committed);
    EXPECT_EQ(p.s.ln_wid[0], 29);
    EXPECT_EQ(p.s.ln_bord[0], 1);
    ln = p.open(1, 0);
    ln.lwidth = 31;
    ln.border = 0;
    EXPECT_TRUE(apply(p.s, ln, p.ui).committed);
}

TEST(EditorApply, ASolidLineTakesABitmapForTheTools) {
    ApplyProject p;
    EditorSession ln = p.open(1, 0);
    p.ui.script(platform::Answer::no);
    EXPECT_FALSE(convert_to_bitmap(ln, p.ui));
    EXPECT_EQ(p.ui.questions.back(), "Using this tool you will not be able to alter border or line heights.\r\nContinue?");
    EXPECT_TRUE(ln.solid);
    ASSERT_TRUE(convert_to_bitmap(ln, p.ui));
    EXPECT_EQ(ln.height, 5);  // border 1, line 3, border 1
    EXPECT_EQ(ln.pixels.at(7, 0), 1);
    EXPECT_EQ(ln.pixels.at(7, 2), 0);
    EXPECT_EQ(ln.pixels.at(7, 4), 1);
    ToolEngine t(ln, p.ui);
    t.press(0, 2, true);
    t.release(0, 2);
    ASSERT_TRUE(apply(p.s, ln, p.ui).committed);
    EXPECT_TRUE(has(p.s.ln_xpm[0], "\"32 5 2 1\"")) << p.s.ln_xpm[0];
    EXPECT_EQ(p.s.ln_bmp[0].substr(0, 34 * 3), "11111111111111111111111111111111\r\n00000000000000000000000000000000\r\n10000000000000000000000000000000\r\n");
}

TEST(EditorApply, PointSizeBoxesAndGroups) {
    ApplyProject p;
    EditorSession e = p.open(2, 1);
    e.width_box = 0;
    ASSERT_TRUE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(e.width_box, 2);  // restored
    e.width_box = 5;
    EXPECT_FALSE(apply(p.s, e, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Please click resize.");

    // A new size: the rows behind a comment in the picture go with the old picture.
    p.s.pt_txt[0] += ";size:4\r\n";  // as a decoded file has it
    EditorSession grown = p.open(2, 0);
    ASSERT_TRUE(adb(grown, 1, p.ui));
    ASSERT_TRUE(apply(p.s, grown, p.ui).committed);
    EXPECT_EQ(p.s.pt_bmp[0], "%%%%%%\r\n%$$%%%\r\n%%%$$%\r\n%%%%%%\r\n");
    EXPECT_TRUE(has(p.code(2, 0), "\"6 4 2 1\"")) << p.code(2, 0);

    // One colour is written as two: "$" white and unused, the pixels "%".
    EditorSession one = p.open(2, 1);
    one.eddirty = true;
    ASSERT_TRUE(apply(p.s, one, p.ui).committed);
    const std::string code = p.code(2, 1);
    EXPECT_TRUE(has(code, "\"2 1 2 1\"")) << code;
    EXPECT_TRUE(has(code, "\"$ c #FFFFFF\"\r\n\"% c #000000\"\r\n\"%%\"")) << code;

    // A colour of a polygon group reaches every member; pictures stay each their own.
    OpenRequest r{0, 0, {0, 1}};
    EditorSession g = open_element(p.s, r);
    g.palette.set(1, rgb(1, 2, 3));
    g.eddirty = true;
    ASSERT_TRUE(apply(p.s, g, p.ui).committed);
    EXPECT_TRUE(has(p.s.pg_col[0], "#010203")) << p.s.pg_col[0];
    EXPECT_TRUE(has(p.s.pg_col[1], "#010203")) << p.s.pg_col[1];
    EXPECT_TRUE(p.s.pg_bmp[1].empty());
}

TEST(LabelPanel, StylesLanguagesAndCaptions) {
    EXPECT_EQ(fncombo3("sMaLlFoNt"), "SmallFont");
    EXPECT_EQ(fncombo3("huge"), "Default");
    EXPECT_EQ(fndlang("0x1f,abc"), 31);
    EXPECT_EQ(language_codepage(0, 1250), 1250);
    EXPECT_EQ(language_codepage(25, 1252), 1251);
    EXPECT_EQ(language_codepage(20, 1252), 1250);
    EXPECT_EQ(language_codepage(32, 1252), 1250);
    EXPECT_EQ(language_codepage(33, 1252), 1252);
    EXPECT_EQ(language_codepage(25, 65001), 65001);
    EXPECT_EQ(chktxt4("80"), 0xFFFFFFu);      // 000080: dark, white caption
    EXPECT_EQ(chktxt4("ffff00"), 0u);
    EXPECT_EQ(slot_to_box("one|two"), "one\r\ntwo");
    EXPECT_EQ(box_to_slot("one\r\ntwo"), "one|two");
    EXPECT_EQ(slot_to_box("aaaaaaaaaaaaaaaaaaaaaaaaaaaaa bbbbbbbbbbbb"), "aaaaaaaaaaaaaaaaaaaaaaaaaaaaa\r\nbbbbbbbbbbbb");
    EXPECT_EQ(slot_to_box("cccccccccccccccccccccccccccccccccccccccc"), "cccccccccccccccccccccccccccccc\r\ncccccccccc");

    platform::ScriptedPrompt ui;
    EditorSession e;
    e.labels.labels = {{1, 4, "A"}, {2, 5, "B"}};
    EXPECT_FALSE(set_font_colours(e, true, ui));
    EXPECT_EQ(ui.messages.back(), "Font colours require the extended option ticked.");
    e.labelchanged = true;
    EXPECT_EQ(choose_language(e, 1, "A2\r\nx"), "B");
    EXPECT_EQ(e.labels.labels[0].text, "A2|x");
    EXPECT_FALSE(e.labelchanged);
    set_extended_labels(e, true);
    e.labels.fontstyle_index = 3;
    set_extended_labels(e, false);
    EXPECT_EQ(e.labels.fontstyle_index, 0);
    EXPECT_EQ(font_lines(e.labels, true), "ExtendedLabels=N\r\n");
}

TEST(LabelPanel, ALabelColourClickTakesNothingOnCancelOrWithAFilterPanelOpen) {
    EditorSession e;
    const uint32_t before = e.labels.daylabelcolour;
    int asked = 0;
    const auto cancel = [&](uint32_t) {
        ++asked;
        return int64_t{-1};
    };
    EXPECT_FALSE(set_label_colour(e, false, false, std::nullopt, cancel));
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(set_label_colour(e, false, true, rgb(9, 9, 9), cancel));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(e.labels.daylabelcolour, before);
    EXPECT_FALSE(e.eddirty);
    EXPECT_EQ(e.changes1, 0);
}

TEST(LabelPanel, PastedUtf8TakesTheLanguagesPage) {
    platform::ScriptedPrompt ui;
    std::string bytes;
    EXPECT_FALSE(mut8("  \r\n", 1252, 4, "English", ui, bytes));
    EXPECT_EQ(ui.messages.back(), "No text to paste");
    ASSERT_TRUE(mut8(" Caf\xC3\xA9 ", 1252, 4, "English", ui, bytes));
    EXPECT_EQ(bytes, "Caf\xE9");
    ASSERT_TRUE(mut8("\xD0\x94\xD0\xB0", 1252, 0x19, "Russian", ui, bytes));  // page 1251
    EXPECT_EQ(bytes, "\xC4\xE0");
    const size_t said = ui.messages.size();
    ASSERT_TRUE(mut8("\xD0\x94\xD0\xB0", 1252, 4, "English", ui, bytes));
    EXPECT_EQ(bytes, "??");
    ASSERT_EQ(ui.messages.size(), said + 1);
    EXPECT_EQ(ui.messages.back(), " Clipboard Text does not match language?\r\nChange English");
    ASSERT_TRUE(mut8("\xD0\x94", 65001, 4, "English", ui, bytes));
    EXPECT_EQ(bytes, "\xD0\x94");
}

TEST(LabelPanel, MarginsAndCanvasDoubling) {
    platform::ScriptedPrompt ui;
    EditorSession e;
    e.curclass = 2;
    e.palette.colours = {0, 0xFFFFFF};
    resize_picture(e, 100, 100);
    EXPECT_FALSE(adb(e, 15, ui));
    EXPECT_EQ(ui.messages.back(), "No transp. Please add a transparent color");
    e.palette.colours.push_back(e.transparentcolour);
    EXPECT_FALSE(adb(e, 15, ui));
    EXPECT_EQ(ui.messages.back(), "Too big> 130");
    EXPECT_EQ(e.width, 100);
    EXPECT_TRUE(adb(e, 14, ui));
    EXPECT_EQ(e.width, 128);
    EXPECT_EQ(e.pixels.at(0, 0), 2);
    EXPECT_EQ(e.pixels.at(14, 14), 0);

    EditorSession d;
    d.curclass = 2;
    d.palette.colours = {0, d.transparentcolour};
    resize_picture(d, 2, 1);
    d.pixels.set(0, 0, 0);
    ASSERT_TRUE(adcvs(d, 'L', ui));
    EXPECT_EQ(d.width, 4);
    EXPECT_EQ(d.pixels.values(), (std::vector<uint8_t>{1, 1, 0, 0}));
    ASSERT_TRUE(adcvs(d, 'D', ui));
    EXPECT_EQ(d.height, 2);
    EXPECT_EQ(d.pixels.at(2, 0), 0);
    EXPECT_EQ(d.pixels.at(2, 1), 1);
    d.has_night_bitmap = true;
    EXPECT_FALSE(adcvs(d, 'R', ui));
    EXPECT_EQ(ui.messages.back(), "Deselect night bitmap.");

    // The dialog's answer: a margin must be all digits, a side one letter.
    d.has_night_bitmap = false;
    for (const char* answer : {"M2x", "M", "X", "LR", ""}) {
        EXPECT_FALSE(add_canvas(d, answer, ui)) << answer;
        EXPECT_EQ(d.width, 4) << answer;
    }
    EXPECT_TRUE(add_canvas(d, "M1", ui));
    EXPECT_EQ(d.width, 6);
}

TEST(EditorApply, CheckOrderPlaceholderAndTheNote) {
    ApplyProject p;
    // An empty type box: a point asks for its range, another class calls
    // the type invalid; an extended type that is no hex number only takes
    // the focus.
    EditorSession pt = p.open(2, 1);
    pt.type_field = "";
    EXPECT_FALSE(apply(p.s, pt, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Select range: 1 - 7F or 100 - 17F");
    EditorSession pg = p.open(0, 1);
    pg.type_field = " ";
    EXPECT_FALSE(apply(p.s, pg, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Invalid type.");
    EditorSession ext = p.open(2, 1);
    ext.curclass = 4;
    ext.type_field = "1g";
    const size_t said = p.ui.messages.size();
    const ApplyOutcome refused = apply(p.s, ext, p.ui);
    EXPECT_FALSE(refused.committed);
    EXPECT_EQ(refused.focus, "type");
    EXPECT_EQ(p.ui.messages.size(), said);

    // A new type that stands as a placeholder in the draw order asks first.
    const std::string drw = p.s.drwlist;
    EditorSession moved = p.open(0, 1);
    moved.type_field = "03";
    p.ui.script(platform::Answer::no);
    EXPECT_FALSE(apply(p.s, moved, p.ui).committed);
    EXPECT_EQ(p.ui.questions.back(), "Draworder will replace existing placeholder.\r\nContinue?");
    EXPECT_EQ(p.s.drwlist, drw);
    EXPECT_EQ(p.s.pg_typ[1], "0x0200");

    // The from-to line comes again after a change of colours or mode.
    EditorSession e = p.open(2, 1);
    ASSERT_EQ(add_colour(e, p.ui, 0xFFFFFF, 0), 2);
    e.type_field = "32";
    const ApplyOutcome out = apply(p.s, e, p.ui);
    ASSERT_TRUE(out.committed);
    const std::string from_to = "From 03000 to 3200\r\n";
    const size_t first = out.note.find(from_to);
    ASSERT_NE(first, std::string::npos) << out.note;
    const size_t again = out.note.find(from_to, first + 1);
    ASSERT_NE(again, std::string::npos) << out.note;
    EXPECT_LT(out.note.find("Changed number of colours"), again);
    EXPECT_LT(out.note.find("Changed type number from 0x03000"), again);
}

TEST(EditorApply, GroupsTakeOnlyTheirEditsAndReportLinesWithoutBorder) {
    ApplyProject p;
    // A polygon group skips the checks of one polygon's type and draw order.
    OpenRequest pr{0, 0, {0, 1}};
    EditorSession pg = open_element(p.s, pr);
    pg.subtype_field = "01";  // with a draw order, refused for one polygon
    pg.palette.set(2, rgb(9, 9, 9));
    pg.eddirty = true;
    ASSERT_TRUE(apply(p.s, pg, p.ui).committed);
    EXPECT_EQ(p.s.pg_typ[0], "0x0100");

    // A line group needs a transparent colour.
    OpenRequest lr{1, 0, {0, 1, 2}};
    EditorSession g = open_element(p.s, lr);
    ASSERT_EQ(g.curclass, k_line_group);
    g.palette.set(1, rgb(1, 2, 3));
    g.eddirty = true;
    EXPECT_FALSE(apply(p.s, g, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "One colour needs to become tansparent. Please select.");
    g.palette.set(2, g.transparentcolour);
    g.lwidth = 9;  // widths are one line's, never the group's
    ASSERT_TRUE(apply(p.s, g, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Could not update border colours for 1 highways.");
    EXPECT_TRUE(has(p.s.ln_col[0], "#010203")) << p.s.ln_col[0];
    EXPECT_FALSE(has(p.s.ln_col[1], "#010203")) << p.s.ln_col[1];
    EXPECT_TRUE(has(p.s.ln_col[2], "#010203")) << p.s.ln_col[2];
    EXPECT_TRUE(has(p.s.ln_col[2], "none")) << p.s.ln_col[2];
    EXPECT_EQ(p.s.ln_wid[2], 2);

    // A first line without border: no member takes the colours.
    OpenRequest nr{1, 1, {1, 2}};
    EditorSession n = open_element(p.s, nr);
    n.palette.colours = {rgb(4, 5, 6), n.transparentcolour};
    n.eddirty = true;
    ASSERT_TRUE(apply(p.s, n, p.ui).committed);
    EXPECT_EQ(p.ui.messages.back(), "Cannot apply border colours for all. No border found");
    EXPECT_FALSE(has(p.s.ln_col[2], "#040506")) << p.s.ln_col[2];
}

// Active lines: two of Walking with a border, one of Walking without (its
// second colour is its night colour), one bitmap of Walking, one of Cycling.
const char* k_active =
    "[_id]\nFID=7\nCodePage=1252\n[end]\n"
    "[_line]\nActivity=Walking\nType=0x05\nLineWidth=3\nBorderWidth=1\nXpm=\"0 0 2 0\"\n\"0 c #FF0000\"\n\"1 c #000000\"\n[end]\n"
    "[_line]\nActivity=Walking\nType=0x06\nLineWidth=2\nBorderWidth=2\nXpm=\"0 0 2 0\"\n\"0 c #00FF00\"\n\"1 c #FFFFFF\"\n[end]\n"
    "[_line]\nActivity=Walking\nType=0x07\nLineWidth=2\nXpm=\"0 0 2 0\"\n\"0 c #0000FF\"\n\"1 c #000080\"\n[end]\n"
    "[_line]\nActivity=Walking\nType=0x08\nXpm=\"32 1 2 1\"\n\"0 c #111111\"\n\"1 c #222222\"\n\"00000000000000001111111111111111\"\n[end]\n"
    "[_line]\nActivity=Cycling\nType=0x06\nLineWidth=2\nBorderWidth=1\nXpm=\"0 0 2 0\"\n\"0 c #00FF00\"\n\"1 c #FFFFFF\"\n[end]\n";

TEST(EditorApply, ActiveLinesAreTypedAndBorderedWithinTheirActivity) {
    model::Store s;
    platform::ScriptedPrompt ui;
    model::newproject(s);
    ASSERT_TRUE(text::load_txt(s, ui, "a.txt", k_active, false, true));
    ASSERT_EQ(s.ln_nact, 5);
    ASSERT_EQ(s.ln_act[4], "50");
    s.dirty = false;
    auto open = [&](int32_t k) { return open_element(s, OpenRequest{3, s.ln_n + k, {}}); };
    const auto col = [&](int32_t k) { return s.ln_col[static_cast<size_t>(s.ln_n + k)]; };

    // A type is taken only within the activity: 0x05 is Walking's, free for Cycling.
    EditorSession walk = open(1);
    walk.type_field = "05";
    EXPECT_FALSE(apply(s, walk, ui).committed);
    EXPECT_EQ(ui.messages.back(), "Type exists.");
    EditorSession cycle = open(4);
    cycle.type_field = "05";
    ASSERT_TRUE(apply(s, cycle, ui).committed);
    EXPECT_EQ(s.ln_code[static_cast<size_t>(s.ln_n + 4)], 0x500);
    s.dirty = false;

    // The tick asks; No ends the apply with nothing written.
    ApplyForm tick;
    tick.apply_border = true;
    const std::vector<std::string> cols_before(s.ln_col.begin(), s.ln_col.end());
    EditorSession e = open(0);
    e.palette.set(2, rgb(0x12, 0x34, 0x56));
    e.eddirty = true;
    ui.script(platform::Answer::no);
    EXPECT_FALSE(apply(s, e, ui, tick).committed);
    EXPECT_EQ(ui.questions.back(), "Apply Border Color to ALL Walking?");
    EXPECT_EQ(std::vector<std::string>(s.ln_col.begin(), s.ln_col.end()), cols_before);
    EXPECT_FALSE(s.dirty);

    // Yes: the bordered lines of Walking take the colour; the one without a
    // border keeps its night colour, the bitmap its own, Cycling is another activity.
    ui.script(platform::Answer::yes);
    const ApplyOutcome out = apply(s, e, ui, tick);
    ASSERT_TRUE(out.committed);
    EXPECT_TRUE(out.others_changed);
    EXPECT_TRUE(s.dirty);
    EXPECT_TRUE(has(col(0), "\"1 c #123456\"")) << col(0);
    EXPECT_TRUE(has(col(1), "\"0 c #00FF00\"\r\n\"1 c #123456\"")) << col(1);
    EXPECT_TRUE(has(col(2), "#000080")) << col(2);
    EXPECT_TRUE(has(col(3), "#222222")) << col(3);
    EXPECT_TRUE(has(col(4), "#FFFFFF")) << col(4);
    EXPECT_EQ(ui.messages.back(), "Could not update border colours for 2 highways.");
    EXPECT_EQ(s.ln_bord[static_cast<size_t>(s.ln_n + 1)], 2);

    // A transparent second colour, or no tick: no question, no other line changes.
    const size_t asked = ui.questions.size();
    EditorSession t = open(0);
    t.palette.set(2, t.transparentcolour);
    t.eddirty = true;
    ASSERT_TRUE(apply(s, t, ui, tick).committed);
    EditorSession plain = open(0);
    plain.palette.set(2, rgb(1, 1, 1));
    plain.eddirty = true;
    ASSERT_TRUE(apply(s, plain, ui).committed);
    EXPECT_EQ(ui.questions.size(), asked);
    EXPECT_TRUE(has(col(1), "#123456")) << col(1);
}

}  // namespace
}  // namespace korvex::editor
