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
