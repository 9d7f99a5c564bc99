#include <gtest/gtest.h>

#include "typ/curf_access.h"

using namespace korvex;

TEST(CurfAccess, ReadsPastTheEndGiveZeroAndOneReportLine) {
    model::Store s;
    s.curf = std::string("\x01\x02\x03", 3);
    EXPECT_EQ(typ::curf_u16(s, 1), 0x0302);
    EXPECT_EQ(typ::curf_byte(s, 3), 0);
    EXPECT_EQ(typ::curf_byte(s, 100), 0);
    EXPECT_EQ(typ::curf_u32(s, -5), 0);
    EXPECT_EQ(s.loadrep, "3 Error,access byte beyond length of curf file\r\n");
}

TEST(CurfAccess, U32StaysPositiveAboveTwoGiB) {
    model::Store s;
    s.curf = std::string("\xff\xff\xff\xff", 4);
    EXPECT_EQ(typ::curf_u32(s, 0), 4294967295LL);
}

TEST(CurfAccess, PaletteLineToRecordBytes) {
    EXPECT_EQ(typ::fnkl("\"0 c #FF8000\""), std::string("\x00\x80\xff", 3));
    EXPECT_EQ(typ::fnkl("\"1 c none\""), std::string("\xff\xff\xff", 3));
    // A palette symbol that is itself "#" is skipped by taking the last "#".
    EXPECT_EQ(typ::fnkl("\"# c #102030\" alpha=7"), std::string("\x30\x20\x10", 3));
    EXPECT_EQ(typ::rgbswap("ABC"), "BC0A00");
    EXPECT_EQ(typ::hexasc("0a1b"), std::string("\x0a\x1b", 2));
    EXPECT_EQ(typ::Dec2Binary(6), "01100000");
    EXPECT_EQ(typ::hex2("F"), "0F");
}

TEST(CurfAccess, PutHead4SpillsIntoTheNextRecord) {
    model::Store s;
    typ::put_head4(s, 0x0102, 2);
    typ::put_head4(s, 0x0304, 4);
    EXPECT_EQ(s.curf, std::string("\0\0\x02\x01\x04\x03\0\0", 8));
}

TEST(CurfAccess, CaselessFindTakesTheNeedleInLowerCase) {
    EXPECT_EQ(typ::find_caseless("Type=0x01", "type"), 0u);
    EXPECT_EQ(typ::find_caseless("DayCustomColor:#ff", "customco"), 3u);
    EXPECT_EQ(typ::find_caseless("abcABC", "abc", 1), 3u);
    EXPECT_EQ(typ::find_caseless("Strin", "string"), std::string_view::npos);
    // Only ASCII letters fold; other bytes compare as they are.
    EXPECT_EQ(typ::find_caseless("\xc4x", "\xe4x"), std::string_view::npos);
    EXPECT_TRUE(typ::contains_caseless("FontStyle=SmallFont", "small"));
    // Needles with a byte of one case only, from a start, up to the very end.
    EXPECT_EQ(typ::find_caseless("[End] x [eND]", "[end]", 1), 8u);
    EXPECT_EQ(typ::find_caseless("Activ=activity=", "activity="), 6u);
    EXPECT_EQ(typ::find_caseless("xpm xpM", "xpm", 1), 4u);
    EXPECT_EQ(typ::find_caseless("xpm", "xpm", 1), std::string_view::npos);
    EXPECT_EQ(typ::find_caseless("ab", "b", 5), std::string_view::npos);
}

TEST(CurfAccess, BinaryDigitsAndBlockWrites) {
    EXPECT_EQ(typ::binary8(0x81), "10000001");
    EXPECT_EQ(typ::binary8(0x1fe), "01111111");  // only the low byte counts
    EXPECT_EQ(typ::Dec2Binary(-1), "11111111");

    model::Store s;
    typ::put_block(s, 2, std::string("\x01\x02", 2));
    EXPECT_EQ(s.curf, std::string("\0\0\x01\x02", 4));
    typ::put_block(s, 1, "\x09");
    EXPECT_EQ(s.curf, std::string("\0\x09\x01\x02", 4));
}

TEST(CurfAccess, PaletteDigitsSkipQuotesAndBlanksAndPadInFront) {
    EXPECT_EQ(typ::fnkl("\"0 c #12 34 56\""), std::string("\x56\x34\x12", 3));
    EXPECT_EQ(typ::fnkl("#123"), std::string("\x23\x01\x00", 3));
    EXPECT_EQ(typ::fnkl("#1234567"), std::string("\x56\x34\x12", 3));
    EXPECT_EQ(typ::fnkl("#"), std::string(3, '\0'));
}

TEST(CurfAccess, CaselessNeedlesGiveEachFirstPlaceInOneWalk) {
    const typ::CaselessNeedles keys{"string", "fontstyle", "st", "customco"};
    size_t at[4];
    keys.find_first("FontStyle=String", at);
    EXPECT_EQ(at[0], 10u);
    EXPECT_EQ(at[1], 0u);
    EXPECT_EQ(at[2], 4u);  // "St" of "Style", the first of two
    EXPECT_EQ(at[3], std::string_view::npos);
    keys.find_first("strin", at);
    EXPECT_EQ(at[0], std::string_view::npos);
    EXPECT_EQ(at[2], 0u);

    // Words of different lengths, repeated letters, matches at both ends.
    const typ::CaselessNeedles font{"fontstyle", "customco"};
    size_t f[2];
    font.find_first("ccustomcoo x FontStylE", f);
    EXPECT_EQ(f[0], 13u);
    EXPECT_EQ(f[1], 1u);
    font.find_first("customc fontstyl", f);
    EXPECT_EQ(f[0], std::string_view::npos);
    EXPECT_EQ(f[1], std::string_view::npos);
}
