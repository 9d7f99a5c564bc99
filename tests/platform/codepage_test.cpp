#include "platform/codepage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The POSIX and Windows conversions must agree: these are the places where
// the system functions would differ if left to themselves (look-alike
// replacements, pass-through of unassigned bytes, characters beyond the
// first plane, a broken double-byte sequence).
namespace korvex::platform {
namespace {

const std::vector<int> k_single_byte_pages = {1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};

// Every byte a page assigns comes back as itself; an unassigned one reads as
// U+FFFD and never as a control character.
TEST(CodepageTables, AssignedBytesRoundTripAndNoneDecodesToAControl) {
    for (int cp : k_single_byte_pages) {
        for (int b = 0x80; b <= 0xFF; ++b) {
            const std::string byte(1, static_cast<char>(b));
            const std::u32string w = bytes_to_wide(byte, cp);
            ASSERT_EQ(w.size(), 1u) << cp << " byte " << b;
            EXPECT_FALSE(w[0] >= 0x80 && w[0] <= 0x9F) << cp << " byte " << b;
            if (w[0] != 0xFFFD) EXPECT_EQ(wide_to_bytes(w, cp), byte) << cp << " byte " << b;
        }
    }
}

// Vietnamese and Hebrew text keeps its last letter, which could take a mark.
TEST(CodepageTables, TheLastLetterOfAComposingPageIsKept) {
    EXPECT_EQ(bytes_to_wide("\xE0 a", 1258), U"\u00E0 a");
    EXPECT_EQ(bytes_to_wide("\xE0", 1255), U"\u05D0");
    EXPECT_EQ(bytes_to_wide("\xD4", 1255), U"\u05F0");
}

TEST(CodepageTables, WesternLeavesItsFiveHolesUndefined) {
    std::vector<int> holes;
    for (int b = 0x80; b <= 0xFF; ++b)
        if (bytes_to_wide(std::string(1, static_cast<char>(b)), 1252) == U"\uFFFD") holes.push_back(b);
    EXPECT_EQ(holes, (std::vector<int>{0x81, 0x8D, 0x8F, 0x90, 0x9D}));
    // One bad byte costs one replacement; what follows still decodes.
    EXPECT_EQ(bytes_to_wide("a\x81\xE4", 1252), U"a\uFFFD\u00E4");
}

// A character outside the page is one "?", never a look-alike.
TEST(CodepageTables, OutsideThePageIsOneQuestionMark) {
    const struct {
        std::u32string text;
        int cp;
        std::string bytes;
    } cases[] = {
        {U"\u0100x", 1252, "?x"},         // A with macron: best fit would be "A"
        {U"\uFF21", 1252, "?"},           // fullwidth A
        {U"\u221E", 1251, "?"},           // infinity: best fit would be "8"
        {U"\u0081", 1252, "?"},           // a C1 control
        {U"a\U0001F600b", 1252, "a?b"},   // beyond the first plane: one "?", not two
        {U"\U0001F600", 932, "?"},
        {U"\u00E4\u0416", 1251, "?\xC6"},
    };
    for (const auto& c : cases) EXPECT_EQ(wide_to_bytes(c.text, c.cp), c.bytes) << c.cp;
}

TEST(CodepageTables, DoubleBytePagesDecodePairsAndReplaceBrokenOnes) {
    EXPECT_EQ(bytes_to_wide("\x82\xA0", 932), U"\u3042");
    EXPECT_EQ(wide_to_bytes(U"\u3042", 932), "\x82\xA0");
    EXPECT_EQ(bytes_to_wide("a\x82", 932), U"a\uFFFD");        // lead byte at the end
    EXPECT_EQ(bytes_to_wide("\x82 x", 932), U"\uFFFD x");      // a trail byte that is none
    EXPECT_EQ(bytes_to_wide("\xB1", 932), U"\uFF71");          // half-width katakana: one byte
    EXPECT_EQ(recode("\xC4\xE3", 936, 65001), "\xE4\xBD\xA0");  // a Chinese character through UTF-8
}

}  // namespace
}  // namespace korvex::platform

// UTF-8 at the edges of what it may hold: the surrogates (never characters,
// each end of their range), the last character, and the lead bytes from F5
// on, which are never valid. A bad sequence is one replacement a byte.
TEST(Utf8Edges, SurrogatesAndTheTopAreReplacedAndTheirNeighboursKept) {
    const std::string rep = "\xEF\xBF\xBD";
    struct Case {
        const char* name;
        std::u32string wide;
        std::string utf8;  // what the character is written as
    };
    for (const Case& c : {Case{"below the surrogates", U"\uD7FF", "\xED\x9F\xBF"},
                          Case{"first surrogate", std::u32string(1, 0xD800), rep},
                          Case{"last surrogate", std::u32string(1, 0xDFFF), rep},
                          Case{"above the surrogates", U"\uE000", "\xEE\x80\x80"},
                          Case{"last character", U"\U0010FFFF", "\xF4\x8F\xBF\xBF"}}) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(korvex::platform::wide_to_bytes(c.wide, 65001), c.utf8);
    }
    EXPECT_EQ(korvex::platform::bytes_to_wide("\xED\xBF\xBF", 65001), std::u32string(3, 0xFFFD));
    EXPECT_EQ(korvex::platform::bytes_to_wide("\xED\x9F\xBF", 65001), U"\uD7FF");
    EXPECT_EQ(korvex::platform::bytes_to_wide("\xF4\x8F\xBF\xBF", 65001), U"\U0010FFFF");
    for (const char* lead : {"\xF5", "\xF7", "\xFF"})
        EXPECT_EQ(korvex::platform::bytes_to_wide(std::string(lead) + "\x80\x80\x80", 65001), std::u32string(4, 0xFFFD)) << lead;
}
