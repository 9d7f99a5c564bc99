// Type numbers, the walk to a free one, and keeping rows in type order.
#include "workbench/type_key.h"

#include <gtest/gtest.h>

#include "ops_fixture.h"
#include "typ/curf_access.h"
#include "workbench/row_ops.h"
#include "workbench/sort_rows.h"

namespace korvex::workbench {
namespace {

using test::OpsFixture;

TEST(TypeKey, TextFormsNameTheSameCodes) {
    EXPECT_EQ(type_code("0x2e00"), 0x2e00);
    EXPECT_EQ(type_code("2E"), 0x2e00);        // up to three digits: no subtype
    EXPECT_EQ(type_code("0x115"), 0x11500);    // as mkgmap sources mean it
    EXPECT_EQ(type_code("10f03"), 0x10f03);
    EXPECT_EQ(type_code("Type=0x 2f05"), 0x2f05);
    EXPECT_EQ(type_code("none"), -1);
    EXPECT_EQ(type_key(0x10f03), 0x10f * 32 + 3);
    EXPECT_EQ(five_digits(0x2e00), "02e00");
    EXPECT_EQ(drw_code(0x500), "0005");
    EXPECT_EQ(drw_code(0x10f03), "10F03");
    bool can_have = true;
    EXPECT_EQ(drw_code(0x2e05, &can_have), "2E05");
    EXPECT_FALSE(can_have);
}

TEST(TypeKey, NextFreeNumberStepsTypesThenSubtypes) {
    OpsFixture f;
    f.load(test::polygon("0x01", "a") + test::polygon("0x03", "b"));
    // Seed "00100" is type 1: taken, so the walk goes on to type 2.
    EXPECT_EQ(nwtypnumber(f.s, "00100", model::k_polygons), "00200");
    EXPECT_EQ(nwtypnumber(f.s, "003", model::k_polygons), "00400");  // short seeds get "00" behind
    EXPECT_EQ(nwtypnumber(f.s, "0", model::k_polygons), "");  // zero is 1: type 0, subtype 1, no polygon
    EXPECT_TRUE(type_exists(f.s, "0x0300", model::k_polygons));
    EXPECT_FALSE(type_exists(f.s, "0x0300", model::k_lines));

    // From 0xff01 on every subtype is tried; 0xff20 jumps by 224 to 0x10000.
    f.load(test::polygon("0x10000", "a") + test::polygon("0x10001", "b"));
    EXPECT_EQ(nwtypnumber(f.s, "10000", model::k_polygons), "10002");
    std::string body;
    for (int sub = 0; sub < 32; ++sub) body += test::polygon("0x100" + std::string(sub < 16 ? "0" : "") + typ::hex(sub), "x");
    f.load(body);
    EXPECT_EQ(nwtypnumber(f.s, "10000", model::k_polygons), "10100");

    // A free number the class may not take gives none.
    EXPECT_EQ(nwtypnumber(f.s, "08000", model::k_polygons), "");
    EXPECT_EQ(nwtypnumber(f.s, "03000", model::k_lines), "");
}

TEST(TypeKey, PointNumbersWalkSubtypesFromTheSeed) {
    OpsFixture f;
    f.load("");
    EXPECT_EQ(next_point_type(f.s, "060"), "06000");
    EXPECT_EQ(next_point_type(f.s, "0"), "06000");     // a zero seed is "060"
    EXPECT_EQ(next_point_type(f.s, "300"), "06000");   // beyond 0x200 too
    EXPECT_EQ(next_point_type(f.s, "02f"), "02f00");
    f.load(test::point("0x6000", "a") + test::point("0x601f", "b") + test::point("0x6001", "c"));
    EXPECT_EQ(next_point_type(f.s, "060"), "06002");
    std::string body;
    for (int sub = 0; sub < 32; ++sub) body += test::point("0x60" + std::string(sub < 16 ? "0" : "") + typ::hex(sub), "x");
    f.load(body);
    EXPECT_EQ(next_point_type(f.s, "060"), "06100");
    const std::vector<int> none = subtypes(f.s, 0x6000, model::k_points);
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(subtypes(f.s, 0x6100, model::k_points).size(), 32u);
}

TEST(TypeKey, ReplacetypeRewritesTheTypeAndDropsSubType) {
    const std::string s = "[_point]\r\nType=0x2f\r\nSubType=0x05\r\nString1=0x04,SubType=x\r\n[end]\r\n";
    EXPECT_EQ(replacetype(s, "06001"), "[_point]\r\nType=0x06001\r\nString1=0x04,SubType=x\r\n[end]\r\n");
    EXPECT_EQ(replacetype("[_line]\r\n[end]\r\n", "00200"), "[_line]\r\nType=0x00200\r\n[end]\r\n");
    EXPECT_EQ(replacetype("[_point]\r\nID=0x12\r\n", "00013", true), "[_point]\r\nID=0x00013\r\n");
}

// Each row of a table is marked in every column by its number, so a move
// shows in any column that was left behind.
void mark_rows(model::Store& s, int table) {
    for_each_column(s, table, [](auto& col) {
        using T = typename std::remove_reference_t<decltype(col)>::value_type;
        for (size_t r = 0; r < col.size(); ++r) {
            if constexpr (std::is_same_v<T, std::string>)
                col[r] = std::to_string(r);
            else
                col[r] = static_cast<T>(r);
        }
    });
}

std::vector<std::string> row_marks(model::Store& s, int table, int32_t row) {
    std::vector<std::string> marks;
    for_each_column(s, table, [&](auto& col) {
        using T = typename std::remove_reference_t<decltype(col)>::value_type;
        if constexpr (std::is_same_v<T, std::string>)
            marks.push_back(col[static_cast<size_t>(row)]);
        else
            marks.push_back(std::to_string(col[static_cast<size_t>(row)]));
    });
    return marks;
}

TEST(RowOps, EveryColumnMovesWithItsRow) {
    for (int table : {model::k_polygons, model::k_lines, model::k_points}) {
        model::Store s;
        if (table == model::k_polygons) s.pg_n = 5;
        if (table == model::k_lines) s.ln_n = 5;
        if (table == model::k_points) s.pt_n = 5;
        fit_columns(s, table);
        mark_rows(s, table);
        Swap(s, table, 1, 3);
        EXPECT_EQ(row_marks(s, table, 1), std::vector<std::string>(row_marks(s, table, 1).size(), "3")) << table;
        permute_rows(s, table, 0, {4, 3, 2, 1, 0});
        EXPECT_EQ(row_marks(s, table, 0), std::vector<std::string>(row_marks(s, table, 0).size(), "4")) << table;
        EXPECT_EQ(row_marks(s, table, 3), std::vector<std::string>(row_marks(s, table, 3).size(), "3")) << table;
        // rows now hold 4 1 2 3 0; a new row at 2 pushes 2 3 0 up
        insert_row(s, table, 2);
        EXPECT_EQ(row_marks(s, table, 3), std::vector<std::string>(row_marks(s, table, 3).size(), "2")) << table;
        EXPECT_EQ(row_marks(s, table, 2)[0], "") << table;
        erase_rows(s, table, {0, 2, 5});
        for (int32_t r = 0; r < 3; ++r)
            EXPECT_EQ(row_marks(s, table, r), std::vector<std::string>(row_marks(s, table, r).size(), std::to_string(r + 1)))
                << table << " row " << r;
    }
}

std::vector<std::string> polygon_types(const model::Store& s) {
    return std::vector<std::string>(s.pg_typ.begin(), s.pg_typ.begin() + s.pg_n);
}

TEST(SortRows, StableByKeyAndTheFollowedRowIsTracked) {
    OpsFixture f;
    f.load(test::polygon("0x10f03", "a") + test::polygon("0x05", "b") + test::polygon("0x03", "tie1") +
           test::polygon("0x03", "tie2") + test::polygon("0x0501", "c"));
    const int32_t moved = sort_types(f.s, model::k_polygons, 0);
    EXPECT_EQ(polygon_types(f.s), (std::vector<std::string>{"0x0300", "0x0300", "0x0500", "0x0501", "0x10F03"}));
    EXPECT_EQ(f.s.pg_lab[0].substr(3), "'tie1'");  // ties keep their order
    EXPECT_EQ(f.s.pg_lab[1].substr(3), "'tie2'");
    EXPECT_EQ(moved, 4);
    // Already sorted: nothing moves, the followed row stays.
    EXPECT_EQ(sort_types(f.s, model::k_polygons, 2), 2);

    // One row out of place at the end (a new element) goes behind its equals.
    f.load(test::polygon("0x01", "a") + test::polygon("0x03", "first") + test::polygon("0x05", "c") +
           test::polygon("0x03", "last"));
    EXPECT_EQ(sort_types(f.s, model::k_polygons, 3), 2);
    EXPECT_EQ(f.s.pg_lab[1].substr(3), "'first'");
    EXPECT_EQ(f.s.pg_lab[2].substr(3), "'last'");
    EXPECT_EQ(f.s.pg_lab[3].substr(3), "'c'");
}

TEST(SortRows, SwapTypesWalksToItsPlaceAndStopsAtAnEqualKey) {
    OpsFixture f;
    f.load(test::polygon("0x01", "a") + test::polygon("0x03", "b") + test::polygon("0x05", "c") +
           test::polygon("0x07", "d"));
    f.s.pg_typ[3] = "0x0300";  // renumbered from 7 to 3: left past 5, stops at the equal 3
    EXPECT_EQ(swap_types(f.s, model::k_polygons, 3), 2);
    EXPECT_EQ(polygon_types(f.s), (std::vector<std::string>{"0x0100", "0x0300", "0x0300", "0x0500"}));
    EXPECT_EQ(f.s.pg_lab[2].substr(3), "'d'");
    f.s.pg_typ[0] = "0x0600";  // right past both 3s and the 5
    EXPECT_EQ(swap_types(f.s, model::k_polygons, 0), 3);
    EXPECT_EQ(f.s.pg_lab[3].substr(3), "'a'");
    f.s.pg_typ[1] = "";  // unset: never moved
    EXPECT_EQ(swap_types(f.s, model::k_polygons, 1), 1);
}

TEST(SortRows, ActiveLinesKeepTheirPlaceUnlessSortedByActivity) {
    OpsFixture f;
    f.load(test::line("0x02", "b") + test::line("0x01", "a") + test::line("0x100", "w2", "Activity=Cycling\r\n") +
           test::line("0x100", "w1", "Activity=Walking\r\n"));
    ASSERT_EQ(f.s.ln_n, 2);
    ASSERT_EQ(f.s.ln_nact, 2);
    sort_types(f.s, model::k_lines);
    EXPECT_EQ(f.s.ln_code[0], 0x100);
    EXPECT_EQ(f.s.ln_act[2], "50");  // the active lines are not type-sorted
    EXPECT_EQ(sort_active(f.s, 2), 3);
    EXPECT_EQ(f.s.ln_act[2], "40");
    EXPECT_EQ(f.s.ln_act[3], "50");
    // A renumbered active line stays among its activity's lines.
    f.s.ln_code[3] = 0x50;
    EXPECT_EQ(swap_types(f.s, model::k_active_lines, 3), 3);
    EXPECT_EQ(f.s.ln_act[3], "50");
}

}  // namespace
}  // namespace korvex::workbench
