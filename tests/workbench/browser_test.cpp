#include "workbench/browser.h"

#include <gtest/gtest.h>

#include "support/harness.h"
#include "workbench/selection.h"

using namespace korvex;
using workbench::Browser;
using workbench::Mark;
using workbench::OpenWhat;

namespace {

constexpr int k_T = 195;  // "WW" of an 8-point label font at 15 twips a pixel

model::Store& sample() {
    static model::Store s;
    static bool loaded = false;
    if (!loaded) {
        platform::ScriptedPrompt ui;
        korvex::testing::decode_bytes(s, ui, korvex::testing::read_bytes(korvex::testing::source_dir() + "/data/samples/sample.typ"));
        loaded = true;
    }
    return s;
}

// A browser on a class of the sample with n cells of empty rows.
void show(Browser& b, const model::Store& s, int cls) {
    b.set_class(cls);
    b.chg_icn(2, k_T);
    ASSERT_TRUE(b.build_grid(s));
}

std::vector<std::string> labels(Browser& b, const model::Store& s) {
    std::vector<std::string> out;
    for (int k = 0; k < b.cell_count(); ++k) out.push_back(b.label(s, k).text);
    return out;
}

}  // namespace

TEST(BrowserGeometry, SizesRowsAndScrollFollowTheIconTable) {
    model::Store empty;
    Browser b;
    show(b, empty, model::k_polygons);
    EXPECT_EQ(b.cell_count(), 0);
    EXPECT_EQ(b.rows(9000), 1);  // an empty class still has one row
    EXPECT_EQ(b.canvas_height(9000), 2 * (900 + 3 * k_T + 50));
    EXPECT_EQ(b.scroll_range(9000, 100000), 0);

    b.chg_icn(0, k_T);
    EXPECT_EQ(b.geometry().S, 300);
    EXPECT_EQ(b.geometry().H, k_T);
    EXPECT_EQ(b.geometry().P, 545);
    EXPECT_EQ(b.geometry().L, 100);
    EXPECT_EQ(b.geometry().top, 100);
    b.chg_icn(4, k_T);
    EXPECT_EQ(b.geometry().S, 1230);
    EXPECT_EQ(b.geometry().H, 4 * k_T);

    b.set_custom_size(5000);  // limited to 1500
    b.chg_icn(5, k_T);
    EXPECT_EQ(b.custom_size(), 1500);
    EXPECT_EQ(b.geometry().S, 4500);
    EXPECT_EQ(b.geometry().H, 3 * k_T);
    b.set_custom_size(500);  // 7 label lines fit, but the value is not above 600
    EXPECT_EQ(b.geometry().S, 1500);
    EXPECT_EQ(b.geometry().H, 7 * k_T);
    b.set_custom_size(100);
    EXPECT_EQ(b.custom_size(), 250);
    b.chg_icn(9, k_T);
    EXPECT_EQ(b.icon_index(), 0);

    b.chg_icn(2, k_T);  // pitch 900 + 45 twips
    EXPECT_EQ(b.columns(9000), 9);
    EXPECT_EQ(b.columns(500), 1);
    EXPECT_EQ(b.geometry_px(1.0).S, 60);
    EXPECT_EQ(b.geometry_px(2.0).S, 120);
    EXPECT_EQ(Browser::to_px(195, 1.25), 16);

    model::Store many;
    many.pt_n = 20000;
    many.pt_lab.resize(20000);
    many.pt_nbmp.resize(20000);
    show(b, many, model::k_points);
    EXPECT_EQ(b.scroll_range(9000, 1000), 32766);
    EXPECT_TRUE(workbench::drop_size_for_many(b, many, k_T));
    EXPECT_EQ(b.icon_index(), 0);
    EXPECT_FALSE(workbench::drop_size_for_many(b, many, k_T));
}

TEST(BrowserCells, ClassesOffsetActiveAndExtraRowsPageExtrasAndAddNightCells) {
    const model::Store& s = sample();
    Browser b;
    show(b, s, model::k_active_lines);
    ASSERT_EQ(b.cell_count(), 1);
    EXPECT_EQ(b.row_of(0), s.ln_n);
    EXPECT_EQ(b.row_of(1), -1);
    show(b, s, model::k_extra_points);
    ASSERT_EQ(b.cell_count(), 1);
    EXPECT_EQ(b.row_of(0), s.pt_n);

    model::Store extras;
    extras.pt_n = 3;
    extras.pt_nx = 25;
    b.opt.extra_page_size = 4;  // raised to 10
    show(b, extras, model::k_extra_points);
    EXPECT_EQ(b.extra_pages(extras), (std::vector<std::string>{"1 - 10", "11 - 20", "21 - 25"}));
    b.set_extra_page(2);
    ASSERT_TRUE(b.build_grid(extras));
    ASSERT_EQ(b.cell_count(), 5);
    EXPECT_EQ(b.row_of(0), 23);

    // Sample night elements: 10 of the 13 polygons; points 8 (fuel), 10
    // (parking), 11 (hospital) and 12 (information).
    show(b, s, model::k_points);
    EXPECT_EQ(b.cell_count(), 20);
    b.opt.show_night = true;
    ASSERT_TRUE(b.build_grid(s));
    EXPECT_EQ(b.cell_count(), 24);
    EXPECT_EQ(b.row_of(8), 8);
    EXPECT_FALSE(b.night_cell(8));
    EXPECT_EQ(b.row_of(9), 8);
    EXPECT_TRUE(b.night_cell(9));
    EXPECT_EQ(b.row_of(10), 9);
    EXPECT_EQ(b.row_of(11), 10);
    EXPECT_TRUE(b.night_cell(12));
    EXPECT_EQ(b.row_of(13), 11);
    EXPECT_EQ(b.label(s, 9).text, "");
    EXPECT_EQ(b.row_of(23), 19);
    show(b, s, model::k_polygons);
    EXPECT_EQ(b.cell_count(), 23);
}

TEST(BrowserSelection, ClicksCtrlShiftAndSelectAllKeepTheCommaLists) {
    model::Store s;
    s.ln_n = 8;
    s.ln_lab.assign(8, "0x00100#");
    Browser b;
    show(b, s, model::k_lines);

    EXPECT_TRUE(b.click(2, false, false));
    EXPECT_EQ(b.current_cell(), 2);
    EXPECT_EQ(b.sel1(), "");
    EXPECT_FALSE(b.click(5, true, false));
    EXPECT_EQ(b.sel1(), ",5,");
    EXPECT_FALSE(b.click(5, true, false));  // the only selected cell: no lone comma
    EXPECT_EQ(b.sel1(), "");
    b.click(5, true, false);
    b.click(1, true, false);
    b.click(3, true, false);
    b.click(1, true, false);
    EXPECT_EQ(b.sel1(), ",5,3,");
    EXPECT_EQ(b.mark(3), Mark::primary);
    EXPECT_EQ(b.mark(1), Mark::none);

    b.click(7, true, false, true);  // Ctrl + right: the secondary list
    b.click(4, true, false, true);
    EXPECT_EQ(b.sel2(), ",7,4,");
    EXPECT_EQ(b.mark(4), Mark::secondary);

    // Shift from the last clicked cell (4) to 6: cells of sel2 leave it.
    b.click(6, false, true);
    EXPECT_EQ(b.sel1(), ",4,5,6,");
    EXPECT_EQ(b.sel2(), ",7,");
    EXPECT_EQ(b.current_cell(), 2);

    b.click(6, false, false);
    EXPECT_EQ(b.sel1(), "");
    EXPECT_EQ(b.sel2(), "");
    b.click(1, false, true);
    const std::string upward = b.sel1();
    b.click(1, false, false);
    b.click(6, false, true);
    EXPECT_EQ(upward, ",1,2,3,4,5,6,");
    EXPECT_EQ(b.sel1(), upward);
    EXPECT_EQ(b.selected_rows(), (std::vector<int32_t>{1, 2, 3, 4, 5, 6}));

    b.select_all();
    EXPECT_EQ(b.sel1(), ",0,1,2,3,4,5,6,7,");
    EXPECT_TRUE(b.multi());
    b.click(0, false, false, true);  // a right click selects as a plain click
    EXPECT_EQ(b.sel1(), "");
    EXPECT_FALSE(b.multi());
    EXPECT_EQ(b.selected_rows(), (std::vector<int32_t>{0}));

    std::string list;
    workbench::list_add(list, 12);
    workbench::list_add(list, 2);
    workbench::list_remove(list, 2);
    EXPECT_EQ(list, ",12,");
    workbench::list_remove(list, 12);
    EXPECT_EQ(list, "");
}

TEST(BrowserSelection, ExtraPointsOnlyMoveTheCurrentElement) {
    const model::Store& s = sample();
    Browser b;
    show(b, s, model::k_extra_points);
    b.click(0, true, false);
    b.click(0, false, true);
    EXPECT_EQ(b.sel1(), "");
    EXPECT_EQ(b.current_row(), s.pt_n);
}

TEST(BrowserLabels, LabelOptionsPerClassOnTheSample) {
    const model::Store& s = sample();
    Browser b;
    show(b, s, model::k_polygons);
    EXPECT_EQ(labels(b, s)[0], "0x0100,1 'Residential area'");
    EXPECT_EQ(labels(b, s)[12], "0x10f03,3 'Scree'");
    EXPECT_EQ(b.layer_text(s, 12), "3");
    b.opt.label_option = 1;
    EXPECT_EQ(labels(b, s)[0], "'Residential area'");
    b.opt.label_option = 2;
    EXPECT_EQ(labels(b, s)[0], "0x0100,1");

    b.opt.label_option = 0;
    show(b, s, model::k_lines);
    EXPECT_EQ(labels(b, s)[0], "0x00100 'Motorway'");
    EXPECT_EQ(labels(b, s)[11], "0x1010b 'Cliff'");
    EXPECT_EQ(b.tooltip(s, 0), " Dbl Click to edit ");
    show(b, s, model::k_active_lines);
    EXPECT_EQ(labels(b, s)[0], "0x00100 'Hiking route'");
    EXPECT_EQ(b.tooltip(s, 0), "Dbl Click to Edit  (Hiking) ");
    show(b, s, model::k_points);
    EXPECT_EQ(labels(b, s)[0], "0x02a00 'Restaurant'");
    EXPECT_EQ(labels(b, s)[19], "0x11501 'Shelter'");
    show(b, s, model::k_extra_points);
    EXPECT_EQ(labels(b, s)[0], "0x11b01 'Signpost'");  // hex as every other type
    b.opt.extra_hex = true;
    EXPECT_EQ(labels(b, s)[0], "0x11b01 'Signpost'");

    // Day custom colours: the hospital "#C01818", the nature reserve "#2E7D32".
    show(b, s, model::k_points);
    EXPECT_EQ(b.label(s, 11).colour, 0x000000u);
    b.opt.show_font_colours = true;
    EXPECT_EQ(b.label(s, 11).colour, 0xC01818u);
    EXPECT_EQ(b.label(s, 0).colour, 0x000000u);
    show(b, s, model::k_polygons);
    EXPECT_EQ(b.label(s, 4).colour, 0x2E7D32u);

    model::Store t;
    t.pg_n = 2;
    t.pg_typ = {"0x0100", "0x0200"};
    t.pg_lab = {std::string("\0\0#'A'", 6), std::string("\0\0#", 3)};
    t.pg_txt = {"[_polygon]\r\nFontStyle=NoLabel\r\n", "String1=0x00,NOT in STYLE x\r\n"};
    t.pg_drw = {"", ""};
    b.opt.nolabel_grey = true;
    b.opt.show_not_in_style = true;
    show(b, t, model::k_polygons);
    b.opt.label_option = 1;
    EXPECT_EQ(labels(b, t)[1], "0x0200");  // no text: the type stays readable
    b.opt.label_option = 0;
    EXPECT_TRUE(b.label(t, 0).grey);
    EXPECT_EQ(b.label(t, 0).colour, 0x808080u);
    EXPECT_FALSE(b.label(t, 1).grey);
    EXPECT_FALSE(b.not_in_style(t, 0));
    EXPECT_TRUE(b.not_in_style(t, 1));
    EXPECT_EQ(workbench::list_elements(t, model::k_polygons), "0x0100\t'A'\r\n0x0200\t\r\n");
    EXPECT_EQ(workbench::list_class_name(model::k_extra_points), "extrapois");
}

TEST(BrowserSearch, FindsStringsAndTypesFromTheLastHitThenNotFound) {
    const model::Store& s = sample();
    Browser b;
    show(b, s, model::k_points);
    EXPECT_EQ(b.search(s, " ", false, false).msg, 0);
    EXPECT_EQ(b.search(s, " s ", false, false).msg, 247);

    auto r = b.search(s, "  ING", false, false);  // Camping, Parking, Drinking water
    EXPECT_EQ(r.cell, 3);
    EXPECT_EQ(r.count, "(1)");
    EXPECT_EQ(b.search(s, "ing", false, false).cell, 10);
    r = b.search(s, "ing", false, false);
    EXPECT_EQ(r.cell, 14);
    EXPECT_EQ(r.count, "(3)");
    EXPECT_EQ(b.current_cell(), 14);
    r = b.search(s, "ing", false, false);
    EXPECT_FALSE(r.found);
    EXPECT_EQ(r.msg, 14);
    EXPECT_EQ(b.search(s, "ing", false, false).cell, 3);  // round again from the top

    EXPECT_EQ(b.search(s, "stelle", false, false).cell, 8);   // any String line: "Tankstelle"
    EXPECT_EQ(b.search(s, "stelle", false, false).cell, 9);   // "Bushaltestelle"
    EXPECT_EQ(b.search(s, "0x3002", false, false).cell, 11);  // the Type= value
    EXPECT_EQ(b.search(s, "parking", true, false).msg, 14);   // types only
    EXPECT_EQ(b.search(s, "6616", true, false).cell, 17);
    EXPECT_EQ(b.search(s, "parking", false, true).msg, 14);   // no default type names ship

    show(b, s, model::k_extra_points);
    EXPECT_EQ(b.search(s, "72449", false, false).cell, 0);
    b.opt.extra_hex = true;
    EXPECT_EQ(b.search(s, "0x11B01", false, false).cell, 0);
    EXPECT_EQ(b.search(s, "11b02", false, false).msg, 14);
}

TEST(BrowserMenus, ContextMenuFlagsAndDoubleClickDecisions) {
    const model::Store& s = sample();
    Browser b;
    show(b, s, model::k_points);
    b.click(3, false, false, true);
    auto m = b.menu_flags(s);
    EXPECT_TRUE(m.create_copy && m.paste && m.search_poi_type && m.mkgmap_code && m.subtypes);
    EXPECT_EQ(m.create_copy_caption, "Create Copy Next Type From 0x00060)");
    b.click(4, true, false);
    m = b.menu_flags(s);
    EXPECT_FALSE(m.create_copy);
    EXPECT_TRUE(m.mkgmap_code);  // rules for the selection
    show(b, s, model::k_extra_points);
    m = b.menu_flags(s);
    EXPECT_FALSE(m.paste || m.create_copy || m.subtypes || m.search_poi_type || m.mkgmap_code);

    show(b, s, model::k_points);
    EXPECT_EQ(b.double_click(s, 2, true, false).what, OpenWhat::nothing);
    EXPECT_EQ(b.double_click(s, 2, false, false).what, OpenWhat::icon_editor);
    b.opt.edit_text_on_dblclick = true;
    EXPECT_EQ(b.double_click(s, 2, false, false).row, 2);
    EXPECT_EQ(b.double_click(s, 2, false, false).what, OpenWhat::text_editor);
    b.opt.edit_text_on_dblclick = false;
    show(b, s, model::k_active_lines);
    EXPECT_EQ(b.double_click(s, 0, false, false).what, OpenWhat::text_editor);

    // Polygons 4 and 6 (nature reserve, cemetery) have two colours; 0 has night colours.
    show(b, s, model::k_polygons);
    b.click(4, true, false);
    b.click(6, true, false);
    auto d = b.double_click(s, 6, false, false);
    EXPECT_EQ(d.what, OpenWhat::multi_edit);
    EXPECT_EQ(d.rows, (std::vector<int32_t>{4, 6}));
    b.click(0, true, false);
    d = b.double_click(s, 6, false, false);
    EXPECT_EQ(d.what, OpenWhat::refused);
    EXPECT_EQ(d.before + "/" + std::to_string(d.msg), "0x0100/213");
    b.select_all();
    EXPECT_EQ(b.double_click(s, 6, false, false).msg, 114);

    model::Store t;  // two-colour lines of 2 and 3 rows
    t.ln_n = 2;
    t.ln_lab = {"0x00100#", "0x00200#"};
    t.ln_mode = {2 * 8 + 6, 3 * 8 + 6};
    show(b, t, model::k_lines);
    b.select_all();
    EXPECT_EQ(b.double_click(t, 0, false, false).msg, 113);
}
