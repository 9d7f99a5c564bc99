// The draw-order workbench without a window: the layer cells, setting and
// inserting levels, giving selected polygons levels, separate entries,
// redundant entries and duplicates, and that a change reaches the saved TYP
// and the text.
#include <gtest/gtest.h>

#include "support/harness.h"
#include "text/load_driver.h"
#include "typ/draw_order.h"
#include "workbench/browser.h"
#include "workbench/draw_order_layers.h"
#include "workbench/draw_order_model.h"
#include "workbench/draw_order_ops.h"

using namespace korvex;
using namespace korvex::workbench;

namespace {

using korvex::testing::english_messages;

std::string polygon(const std::string& type, const std::string& comment = "") {
    return "[_polygon]\r\nType=" + type + "\r\n" + comment + "Xpm=\"0 0 1 0\"\r\n\"1 c #102030\"\r\n[end]\r\n";
}

// Polygons 0x01, 0x02, 0x03, 0x10f03 and 0x05 (which has no level), and a
// placeholder 0x50 at level 2.
const char* const k_draw = "[_drawOrder]\r\nType=0x01,1\r\nType=0x02,1\r\nType=0x50,2\r\nType=0x03,3\r\n"
                           "Type=0x10f03,3\r\n[end]\r\n";

model::Store polygon_sample(platform::ScriptedPrompt& ui, const std::string& draw = k_draw) {
    model::Store s;
    model::newproject(s);
    const std::string text = "[_id]\r\nFID=1\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n" + draw +
                             polygon("0x01") + polygon("0x02") + polygon("0x03") + polygon("0x10f03") + polygon("0x05");
    text::load_txt(s, ui, "sample.txt", text, false, false);
    s.dirty = false;
    return s;
}

std::string list(const model::Store& s) { return s.drwlist; }

struct Snapshot {
    std::string drwlist;
    std::vector<std::string> pg_drw, pg_txt;
    bool dirty;
    explicit Snapshot(const model::Store& s) : drwlist(s.drwlist), pg_drw(s.pg_drw), pg_txt(s.pg_txt), dirty(s.dirty) {}
    bool operator==(const Snapshot&) const = default;
};

LevelTarget row(int32_t r) { return LevelTarget{r, -1}; }

}  // namespace

TEST(DrawOrderLayers, EntriesInOrderPlaceholdersPaddingAndTheNoLevelGroupLast) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    ASSERT_EQ(s.pg_n, 5);
    EXPECT_EQ(list(s), " 0001,1 0002,1 0050,2 0003,3 10F03,3");
    const LayerLayout l = refresh_draworders(s, 3);
    ASSERT_EQ(l.layers.size(), 4u);
    // level 1: two polygons and a blank; level 2: a placeholder and two
    // blanks; level 3: two polygons and a blank; the no-level group: 0x05.
    EXPECT_EQ(l.layers[0].cell, 0);
    EXPECT_EQ(l.layers[1].cell, 3);
    EXPECT_EQ(l.layers[2].cell, 6);
    EXPECT_EQ(l.layers[3].cell, 9);
    EXPECT_EQ(l.layers[3].level, 0);
    ASSERT_EQ(l.cells.size(), 10u);
    EXPECT_EQ(l.cells[0].row, 0);
    EXPECT_EQ(l.cells[1].row, 1);
    EXPECT_EQ(l.cells[2].kind, LayerCellKind::blank);
    EXPECT_EQ(l.cells[2].level, 1);
    EXPECT_EQ(l.cells[3].kind, LayerCellKind::placeholder);
    EXPECT_EQ(l.cells[3].code, "0050");
    EXPECT_EQ(l.cells[7].row, 3);  // 0x10f03
    EXPECT_EQ(l.cells[9].row, 4);
    EXPECT_EQ(l.cells[9].level, 0);
    EXPECT_EQ(no_level_text(s), "0005,0 ");

    // One column: no blanks at all; a file without polygons shows its placeholders.
    EXPECT_EQ(refresh_draworders(s, 1).cells.size(), 6u);
    model::Store only;
    only.drwlist = " 004B,1";
    const LayerLayout p = refresh_draworders(only, 0);
    ASSERT_EQ(p.cells.size(), 1u);
    EXPECT_EQ(p.cells[0].kind, LayerCellKind::placeholder);
}

TEST(DrawOrderLayers, TheBrowserShowsLayerCellsAndGetMdrwTranslatesTheSelection) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    Browser b;
    b.set_class(model::k_polygons);
    b.opt.draworder_view = true;
    b.set_layer_columns(3);
    ASSERT_TRUE(b.build_grid(s));
    EXPECT_EQ(b.geometry().L, 400);
    EXPECT_EQ(b.cell_count(), 10);
    EXPECT_EQ(b.row_of(2), -1);
    b.click(0, false, false);
    b.click(2, true, false);         // a blank is no target
    b.click(3, true, false);         // the placeholder is
    b.click(7, true, false, true);   // the secondary list joins
    const auto t = get_mdrw(b, s);
    ASSERT_EQ(t.size(), 2u);
    EXPECT_EQ(t[0].row, -1);
    EXPECT_EQ(t[0].entry, 2);
    EXPECT_EQ(t[1].row, 3);
    b.no_multi();
    b.set_current(1);
    ASSERT_EQ(get_mdrw(b, s).size(), 1u);
    EXPECT_EQ(get_mdrw(b, s)[0].row, 1);

    // The icon view: cells are rows and a target is the whole type.
    b.opt.draworder_view = false;
    ASSERT_TRUE(b.build_grid(s));
    EXPECT_EQ(b.cell_count(), 5);
    b.select_all();
    const auto all = get_mdrw(b, s);
    ASSERT_EQ(all.size(), 5u);
    EXPECT_EQ(all[4].entry, -1);
    b.set_class(model::k_lines);
    EXPECT_TRUE(get_mdrw(b, s).empty());
}

TEST(DrawOrderSort, TiesKeepTheirOrder) {
    model::Store s;
    s.drwlist = "  0009,2  0003,1 0007,2 0001,1 ";
    sort_draworder(s);
    EXPECT_EQ(s.drwlist, " 0003,1 0001,1 0009,2 0007,2");
    s.drwlist = " 0005,4";
    sort_draworder(s);
    EXPECT_EQ(s.drwlist, " 0005,4");
}

TEST(DrawOrderSetLevel, ChangesTheEntryOrTheTypeAndReachesTypAndText) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    EXPECT_TRUE(mlev(s, ui, english_messages(), model::k_polygons, {row(0), row(4)}, 3));
    EXPECT_EQ(list(s), " 0002,1 0050,2 0001,3 0003,3 10F03,3 0005,3");
    EXPECT_EQ(s.pg_drw[0], "Type=0001,3");
    EXPECT_EQ(s.pg_drw[4], "Type=0005,3");
    EXPECT_TRUE(s.dirty);
    EXPECT_EQ(ui.statuses.back(), "Sorting Draworders ...");
    EXPECT_NE(std::find(ui.statuses.begin(), ui.statuses.end(), "Setting draworder to 3"), ui.statuses.end());

    // Level 0 puts a polygon into the no-level group, never into the list.
    EXPECT_TRUE(mlev(s, ui, english_messages(), model::k_polygons, {row(1)}, 0));
    EXPECT_EQ(list(s), " 0050,2 0001,3 0003,3 10F03,3 0005,3");
    EXPECT_EQ(s.pg_drw[1], "Type=0002,0");
    EXPECT_EQ(no_level_text(s), "0002,0 ");

    // A save holds the new levels, renumbered to be consecutive, and so does the text.
    const std::string typ_bytes = korvex::testing::encode(s, ui);
    // The polygon without a level is named in the save's report.
    EXPECT_NE(s.loadrep.find("No draworder for pgon\r\n0x0200:no draworder\r\n"), std::string::npos) << s.loadrep;
    model::Store back;
    korvex::testing::decode_bytes(back, ui, typ_bytes);
    EXPECT_EQ(typ::polygon_level(back, 0), "2");
    EXPECT_EQ(typ::polygon_level(back, 4), "2");
    const std::string text = korvex::testing::text_of(s, ui);
    EXPECT_NE(text.find("Type=0x01,3\r\n"), std::string::npos);
    EXPECT_NE(text.find("Type=0x05,3\r\n"), std::string::npos);
    EXPECT_EQ(text.find("Type=0x02,"), std::string::npos);
}

TEST(DrawOrderSetLevel, ALayerCellMovesOnlyItsEntryAndAWholeTypeCollapses) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui, "[_drawOrder]\r\nType=0x01,1\r\nType=0x02,2\r\n[end]\r\n");
    // A text load drops a second level of a type; the duplicate option adds one.
    s.drwlist = " 0001,1 0002,2 0001,4";
    refresh_levels(s);
    // The cell of 0x01's second level (entry 2) moves to 3; its first stays.
    EXPECT_TRUE(mlev(s, ui, english_messages(), model::k_polygons, {LevelTarget{0, 2}}, 3));
    EXPECT_EQ(list(s), " 0001,1 0002,2 0001,3");
    EXPECT_EQ(s.pg_drw[0], "Type=0001,1\r\nType=0001,3");
    // From the icon view the polygon has one level afterwards.
    EXPECT_TRUE(mlev(s, ui, english_messages(), model::k_polygons, {row(0)}, 2));
    EXPECT_EQ(list(s), " 0001,2 0002,2");
    EXPECT_EQ(s.pg_drw[0], "Type=0001,2");
}

TEST(DrawOrderSetLevel, RefusalsAndNoOpsChangeNothing) {
    platform::ScriptedPrompt ui;
    model::Store empty;
    EXPECT_FALSE(mlev(empty, ui, english_messages(), model::k_polygons, {row(0)}, 2));
    EXPECT_EQ(ui.messages.back(), "No data.");

    model::Store s = polygon_sample(ui);
    const Snapshot before(s);
    ui.messages.clear();
    EXPECT_FALSE(mlev(s, ui, english_messages(), model::k_polygons, {}, 2));
    EXPECT_FALSE(mlev(s, ui, english_messages(), model::k_lines, {row(0)}, 2));
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_TRUE(Snapshot(s) == before);
}

TEST(DrawOrderSetLevel, TheDecodersCommentFollowsTheLevel) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    s.pg_txt[0] = "[_polygon]\r\nType=0x01\r\n;draworder:1\r\nExtendedLabels=N\r\nXpm=\"0 0 1 0\"\r\n";
    mlev(s, ui, english_messages(), model::k_polygons, {row(0)}, 7);
    EXPECT_EQ(s.pg_txt[0], "[_polygon]\r\nType=0x01\r\n;draworder:7\r\nExtendedLabels=N\r\nXpm=\"0 0 1 0\"\r\n");
    mlev(s, ui, english_messages(), model::k_polygons, {row(0)}, 0);
    EXPECT_EQ(s.pg_txt[0], "[_polygon]\r\nType=0x01\r\nExtendedLabels=N\r\nXpm=\"0 0 1 0\"\r\n");
}

TEST(DrawOrderInsertLayer, RaisesTheLayerAndAboveAndGivesTheSelectionTheFreedLevel) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    EXPECT_TRUE(insert_lower_layer(s, ui, english_messages(), 1, {}));
    EXPECT_EQ(list(s), " 0001,2 0002,2 0050,3 0003,4 10F03,4");

    // Below layer 3 (now 4) the polygon 0x02 gets a layer of its own.
    EXPECT_TRUE(insert_lower_layer(s, ui, english_messages(), 4, {row(1)}));
    EXPECT_EQ(list(s), " 0001,2 0050,3 0002,4 0003,5 10F03,5");
    EXPECT_EQ(s.pg_drw[1], "Type=0002,4");
    EXPECT_EQ(s.pg_drw[2], "Type=0003,5");

    const Snapshot before(s);
    EXPECT_FALSE(insert_lower_layer(s, ui, english_messages(), 0, {row(1)}));
    EXPECT_EQ(ui.messages.back(), "Layer must be > 0 ");
    EXPECT_TRUE(Snapshot(s) == before);
}

TEST(DrawOrderGiveSelected, EachOrSameAndItsRefusals) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    EXPECT_TRUE(drawsel(s, ui, english_messages(), model::k_polygons, {row(4), row(0), LevelTarget{-1, 2}},
                        DrawselMode::each, 5));
    EXPECT_EQ(list(s), " 0002,1 0050,2 0003,3 10F03,3 0005,5 0001,6");
    EXPECT_EQ(s.pg_drw[4], "Type=0005,5");
    EXPECT_EQ(s.pg_drw[0], "Type=0001,6");
    EXPECT_TRUE(drawsel(s, ui, english_messages(), model::k_polygons, {row(2), row(3)}, DrawselMode::same, 1));
    EXPECT_EQ(list(s), " 0002,1 0003,1 10F03,1 0050,2 0005,5 0001,6");

    const Snapshot before(s);
    ui.messages.clear();
    EXPECT_FALSE(drawsel(s, ui, english_messages(), model::k_lines, {row(0)}, DrawselMode::same, 1));
    EXPECT_FALSE(drawsel(s, ui, english_messages(), model::k_polygons, {}, DrawselMode::same, 1));
    EXPECT_FALSE(drawsel(s, ui, english_messages(), model::k_polygons, {row(0)}, DrawselMode::none, 1));
    ASSERT_EQ(ui.messages.size(), 3u);
    EXPECT_EQ(ui.messages[0], "Please Select Polygons");
    EXPECT_EQ(ui.messages[1], "Please select.\r\n\r\nCTRL/SHFT  (CTRL A) (Esc = cancel)");
    EXPECT_EQ(ui.messages[2], "Please select.No draworder. ");
    EXPECT_TRUE(Snapshot(s) == before);
}

TEST(DrawOrderSeparateEntry, RulesInOrderAndWhatEachStores) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    const Snapshot before(s);
    struct Case {
        EdpolRequest r;
        const char* says;
    } refused[] = {
        {{"60", "", "0"}, "Draworder can't be 0."},
        {{"60", "", "x"}, "Invalid Draworder"},
        {{"60", "", "100"}, "Invalid Draworder"},  // beyond max(99, polygons)
        {{"6g", "", "2"}, "Invalid type.6g"},
        {{"60", "zz", "2"}, "Invalid type.zz"},
        {{"10f", "20", "2"}, "SubTypes must be between 0 and 1F."},
        {{"60", "1", "2"}, "Garmin TYP format does not support draworders for types < &100 with subtypes > 0."},
        {{"01", "", "4"}, "0x01 has a Draworder."},       // a polygon that has a level
        {{"50", "", "2", true}, "0x50 has a Draworder."},  // the same pair stands
    };
    for (const Case& c : refused) {
        EXPECT_FALSE(edpol(s, ui, english_messages(), c.r)) << c.says;
        EXPECT_EQ(ui.messages.back(), c.says);
        EXPECT_TRUE(Snapshot(s) == before) << c.says;
    }

    // A new placeholder, an extended type, and a polygon of the no-level group.
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"0x60", "", "1"}));
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"10f", "4", "2"}));
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"5", "", "3"}));
    EXPECT_EQ(list(s), " 0001,1 0002,1 0060,1 0050,2 10F04,2 0003,3 10F03,3 0005,3");
    EXPECT_EQ(s.pg_drw[4], "Type=0005,3");
    // With the duplicate option a polygon gets a second level.
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"01", "", "4", true}));
    EXPECT_EQ(s.pg_drw[0], "Type=0001,1\r\nType=0001,4");
    // A placeholder of the type is replaced, and the user is told.
    ui.messages.clear();
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"50", "", "5"}));
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Draworder will replace existing placeholder."});
    EXPECT_EQ(list(s), " 0001,1 0002,1 0060,1 10F04,2 0003,3 10F03,3 0005,3 0001,4 0050,5");
    // An edit replaces its entry in place, even with the pair it had.
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"61", "", "1", false, 2}));
    EXPECT_EQ(list(s), " 0001,1 0002,1 0061,1 10F04,2 0003,3 10F03,3 0005,3 0001,4 0050,5");
    // 99 is the top level while there are no more polygons than that.
    ASSERT_LE(s.pg_n, 99);
    EXPECT_TRUE(edpol(s, ui, english_messages(), {"62", "", "99"}));
    EXPECT_EQ(list(s), " 0001,1 0002,1 0061,1 10F04,2 0003,3 10F03,3 0005,3 0001,4 0050,5 0062,99");

    // A placeholder survives a save and a load.
    model::Store back;
    korvex::testing::decode_bytes(back, ui, korvex::testing::encode(s, ui));
    EXPECT_NE(back.drwlist.find(" 0061,1"), std::string::npos);
    EXPECT_NE(back.drwlist.find(" 0050,5"), std::string::npos);
}

TEST(DrawOrderRedundant, ListsPlaceholdersButTheBackgroundAndRemovesTheTicked) {
    platform::ScriptedPrompt ui;
    model::Store s =
        polygon_sample(ui, "[_drawOrder]\r\nType=0x4b,1\r\nType=0x01,1\r\nType=0x50,2\r\nType=0x51,4\r\n[end]\r\n");
    auto items = redund(s, ui, english_messages(), 0);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].caption, "0050 (d2)");
    EXPECT_EQ(items[1].caption, "0051 (d4)");
    EXPECT_TRUE(remove_entries(s, ui, english_messages(), {items[1].entry}));
    EXPECT_EQ(list(s), " 0001,1 004B,1 0050,2");
    EXPECT_TRUE(s.dirty);

    const Snapshot before(s);
    EXPECT_FALSE(remove_entries(s, ui, english_messages(), {}));
    EXPECT_EQ(ui.messages.back(), "Not Found.");
    EXPECT_TRUE(Snapshot(s) == before);

    // Mode 1: the selected entries lose their draw order.
    items = redund(s, ui, english_messages(), 1, {row(0)});
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].caption, "0001 (d1)");
    EXPECT_TRUE(remove_entries(s, ui, english_messages(), {items[0].entry}));
    EXPECT_EQ(list(s), " 004B,1 0050,2");
    EXPECT_EQ(s.pg_drw[0], "Type=0001,0");

    model::Store none = polygon_sample(ui, "[_drawOrder]\r\nType=0x4b,1\r\nType=0x01,1\r\n[end]\r\n");
    EXPECT_TRUE(redund(none, ui, english_messages(), 0).empty());
    EXPECT_EQ(ui.messages.back(), "None found.");
}

TEST(DrawOrderDuplicateCheck, LaterEntriesOfATypeGoAndThePolygonsFollow) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    s.drwlist = " 0001,1 0002,1 0001,3";
    refresh_levels(s);
    EXPECT_EQ(s.pg_drw[0], "Type=0001,1\r\nType=0001,3");
    EXPECT_TRUE(check_duplicates(s, ui));
    EXPECT_EQ(s.drwlist, " 0001,1 0002,1");
    EXPECT_EQ(s.pg_drw[0], "Type=0001,1");
    EXPECT_EQ(ui.messages.back(), "Found and removed duplicates :\r\n\r\n0001,3");
    EXPECT_FALSE(check_duplicates(s, ui));
    EXPECT_EQ(ui.messages.back(), "None found.");
}

TEST(DrawOrderView, ShowingNeedsPolygonsAndADrawOrder) {
    platform::ScriptedPrompt ui;
    model::Store s = polygon_sample(ui);
    EXPECT_TRUE(can_show_draworders(s, ui, english_messages()));
    s.drwlist = " ";
    EXPECT_FALSE(can_show_draworders(s, ui, english_messages()));
    EXPECT_EQ(ui.messages.back(), "Polygons have no draworder");
    model::Store none;
    none.drwlist = " 0001,1";
    EXPECT_FALSE(can_show_draworders(none, ui, english_messages()));
}

TEST(DrawOrderModel, TypeTextOfACode) {
    EXPECT_EQ(code_type_text("004B"), "0x4B");
    EXPECT_EQ(code_type_text("10F03"), "0x10F03");
}
