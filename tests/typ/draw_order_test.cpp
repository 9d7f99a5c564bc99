// The draw order section: levels, zero records, subtype masks, and the list
// that ties polygons to levels.
#include <gtest/gtest.h>

#include "platform/prompt.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"
#include "typ/header.h"
#include "support/harness.h"

#include <map>

using namespace korvex;

namespace {

constexpr int64_t k_at = 8;  // the section starts behind a few filler bytes

// Reads records given as hex texts of five bytes each.
std::string read(std::initializer_list<const char*> records, int recsize = 5) {
    model::Store s;
    s.curf = std::string(k_at, '\xee');
    for (const char* r : records) s.curf += typ::hexasc(r);
    typ::read_draworder(s, k_at, static_cast<int64_t>(s.curf.size()) - k_at, recsize);
    return s.drwlist;
}

model::Store with_polygons(std::initializer_list<const char*> types) {
    model::Store s;
    model::procredim(s, model::k_polygons, static_cast<int32_t>(types.size()) + 1);
    for (const char* t : types) s.pg_typ[static_cast<size_t>(s.pg_n++)] = t;
    return s;
}

}  // namespace

TEST(DrawOrderRead, LeadingZeroRecordIsAnEntryOfTypeZero) {
    EXPECT_EQ(read({"0000000000", "0100000000"}), " 0000,1 0001,1");
}

TEST(DrawOrderRead, SecondOfTwoZeroRecordsIsAnEntryAThirdStepsAgain) {
    EXPECT_EQ(read({"0100000000", "0000000000", "0000000000", "0200000000"}), " 0001,1 0000,2 0002,2");
    EXPECT_EQ(read({"0100000000", "0000000000", "0000000000", "0000000000", "0200000000"}),
              " 0001,1 0000,2 0002,3");
}

TEST(DrawOrderRead, SubtypeMaskGivesExtendedTokens) {
    EXPECT_EQ(read({"1020000000"}), " 11005,1");           // bit 5
    EXPECT_EQ(read({"1000000100"}), " 11010,1");           // bit 16, second half
    EXPECT_EQ(read({"0d01000100"}), " 10D00,1 10D10,1");  // as in a real file
}

TEST(DrawOrderRead, ZeroRecordSizeAndHugeLengthEndQuickly) {
    EXPECT_EQ(read({"0100000000"}, 0), " 0001,1");
    model::Store s;
    s.curf = std::string(k_at, '\xee') + typ::hexasc("0200000000");
    typ::read_draworder(s, k_at, 0xffffffffLL, 1);
    EXPECT_EQ(s.drwlist.substr(0, 7), " 0002,1");
    typ::read_draworder(s, 1LL << 40, 100, 5);  // offset past the end
    EXPECT_EQ(s.drwlist, "");
}

TEST(DrawOrderLevels, PolygonsFindTheirLevelOrAreReported) {
    model::Store s = with_polygons({"0x4B00", "0x10F03", "0x1005", "0x0100"});
    s.drwlist = " 004B,3 10F03,2";
    for (int32_t n = 0; n < s.pg_n; ++n) typ::assign_level(s, n);
    EXPECT_EQ(s.pg_drw[0], "Type=004B,3");
    EXPECT_EQ(typ::polygon_level(s, 0), "3");
    EXPECT_EQ(s.pg_drw[1], "Type=10F03,2");
    EXPECT_EQ(s.pg_drw[2], "Type=1005,0");
    EXPECT_EQ(typ::polygon_level(s, 2), "");
    EXPECT_EQ(s.pg_drw[3], "Type=0001,0");
    EXPECT_EQ(s.loadrep, "0x1005 pgon<&100 with subtype can't have draworder\r\n");
}

TEST(DrawOrderLevels, CompletionAddsMissingPolygonsAtLevelOneAndSorts) {
    model::Store s = with_polygons({"0x4B00", "0x0300", "0x1005"});
    s.drwlist = " 004B,2 10F03,1";
    typ::complete_draworder(s);
    EXPECT_EQ(s.drwlist, " 0003,1 10F03,1 004B,2");
    EXPECT_EQ(s.pg_drw[1], "Type=0003,1");
}

TEST(DrawOrderDuplicates, LaterTokensOfATypeGoAndAreListedUnlessQuiet) {
    model::Store s;
    platform::ScriptedPrompt ui;
    s.drwlist = " 004B,1 10F03,2 004b,3 0001,3 10F03,4";
    EXPECT_EQ(typ::find_duplicates(s, ui, true), "004b,3 10F03,4");
    EXPECT_EQ(s.drwlist, " 004B,1 10F03,2 0001,3");
    EXPECT_TRUE(ui.messages.empty());

    EXPECT_EQ(typ::find_duplicates(s, ui, true), "");
    EXPECT_EQ(s.drwlist, " 004B,1 10F03,2 0001,3");
    EXPECT_TRUE(ui.messages.empty());
    typ::find_duplicates(s, ui, false);
    s.drwlist += " 0001,5";
    typ::find_duplicates(s, ui, false);
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"None found.", "Found and removed duplicates :\r\n\r\n0001,5"}));
}

TEST(DrawOrderWrite, SubtypesOfOneTypeShareARecord) {
    model::Store s;
    platform::ScriptedPrompt ui;
    s.drwlist = " 0001,1 11005,1 11010,1 004B,1";
    const auto levels = typ::getdraworder(s, ui, true);
    ASSERT_EQ(levels.size(), 1u);
    EXPECT_EQ(levels[0], (std::vector<std::string>{"0100000000", "1020000100", "4B00000000"}));
    EXPECT_TRUE(ui.messages.empty());
}

TEST(DrawOrderWrite, GappedLevelsAreScaledDownWithAMessage) {
    model::Store s;
    platform::ScriptedPrompt ui;
    s.curf.assign(120, '\0');
    s.drwlist = " 0001,1 0002,5 0003,9";
    EXPECT_EQ(typ::save_draworder(s, ui, 100, true), 125);
    EXPECT_EQ(s.curf.substr(100, 25), typ::hexasc("01000000000000000000020000000000000000000300000000"));
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::drw), 100);
    EXPECT_EQ(typ::curf_byte(s, typ::hdr::drw_recsize), 5);
    EXPECT_EQ(typ::curf_u32(s, typ::hdr::drw_len), 25);
    EXPECT_EQ(ui.messages, std::vector<std::string>{"A Draworder has been scaled down in the saved TYP file."});

    // And it reads back as levels 1, 2, 3.
    typ::read_draworder(s, 100, 25, 5);
    EXPECT_EQ(s.drwlist, " 0001,1 0002,2 0003,3");
}

TEST(DrawOrderWrite, NoPairLeavesTheFieldsZeroAndWarnsOnFileSave) {
    model::Store s = with_polygons({"0x0100"});
    platform::ScriptedPrompt ui;
    s.curf.assign(120, '\xaa');
    EXPECT_EQ(typ::save_draworder(s, ui, 100, true), 100);
    EXPECT_EQ(s.curf.substr(81, 10), std::string(10, '\0'));
    EXPECT_EQ(ui.messages, std::vector<std::string>{"Polygons have no draworder."});
    platform::ScriptedPrompt quiet;
    typ::save_draworder(s, quiet, 100, false);
    EXPECT_TRUE(quiet.messages.empty());
}

namespace {

// Per level: the plain types and the subtype masks of extended types.
using Levels = std::vector<std::map<std::string, uint32_t>>;

Levels levels_of(model::Store& s, int64_t at, int64_t len) {
    Levels out(1);
    bool step = true;
    for (int64_t p = at; p + 5 <= at + len; p += 5) {
        const auto type = typ::hex2(typ::hex(typ::curf_byte(s, p)));
        const auto mask = static_cast<uint32_t>(typ::curf_u32(s, p + 1));
        if (type == "00" && mask == 0 && !step) {
            out.emplace_back();
            step = true;
            continue;
        }
        step = false;
        out.back()[(mask ? "x" : "") + type] |= mask;
    }
    return out;
}

}  // namespace

TEST(DrawOrderCorpus, ReadAndWrittenSectionsHoldTheSameLevels) {
    const std::string dir = korvex::testing::corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    int checked = 0;
    for (const std::string& file : korvex::testing::files_with(dir + "/typ", ".typ")) {
        model::Store s;
        s.curf = korvex::testing::read_bytes(file);
        const int64_t at = typ::curf_u32(s, typ::hdr::drw), len = typ::curf_u32(s, typ::hdr::drw_len);
        if (len == 0) continue;
        typ::read_draworder(s, at, len, typ::curf_byte(s, typ::hdr::drw_recsize));
        const Levels before = levels_of(s, at, len);

        platform::ScriptedPrompt ui;
        model::Store w;
        w.drwlist = s.drwlist;
        w.curf.assign(200, '\0');
        const int64_t end = typ::save_draworder(w, ui, 100, true);
        EXPECT_EQ(levels_of(w, 100, end - 100), before) << file;
        EXPECT_TRUE(ui.messages.empty()) << file;
        ++checked;
    }
    EXPECT_GE(checked, 10);
}
