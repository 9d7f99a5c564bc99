// The label block and the font byte, read and written.
#include <gtest/gtest.h>

#include "typ/label_block.h"
#include "typ/label_bytes.h"

using namespace korvex;

namespace {

// A store whose buffer is pad bytes of 0xEE followed by the given bytes.
model::Store with_bytes(const std::string& bytes, size_t pad = 4) {
    model::Store s;
    s.curf = std::string(pad, '\xee') + bytes;
    return s;
}

std::string S(const char* bytes, size_t n) { return std::string(bytes, n); }

}  // namespace

TEST(LabelBlock, LengthCodeOneByteUpToL125ThenTwoBytes) {
    EXPECT_EQ(typ::length_code(125), "\xff");
    EXPECT_EQ(typ::length_code(126), S("\x02\x02", 2));  // (2*126+5)*2 = 514

    for (int32_t L : {0, 9, 125, 126, 5000}) {
        model::Store s = with_bytes(typ::length_code(L));
        int32_t pos = 4;
        EXPECT_EQ(typ::lengthbyte(s, 0, pos), L);
        EXPECT_EQ(pos, 4 + static_cast<int32_t>(typ::length_code(L).size()));
        // The same code right at the base.
        int32_t first = 0;
        EXPECT_EQ(typ::lengthbyte(s, 4, first), L);
    }
}

TEST(LabelBlock, ThreeByteCodeReadsShortAsWritten) {
    // (2*20000+5)*4 = 160020; the reader takes (160020-40)/8 = 19997.5 -> 19998.
    const std::string code = typ::length_code(20000);
    ASSERT_EQ(code, S("\x14\x71\x02", 3));
    model::Store s = with_bytes(code);
    int32_t pos = 4;
    EXPECT_EQ(typ::lengthbyte(s, 0, pos), 19998);
    EXPECT_EQ(pos, 7);
}

TEST(LabelBlock, ZeroOrMultipleOfEightFirstByte) {
    model::Store s = with_bytes(S("\x00\x08\x00\x00\x00", 5));
    int32_t pos = 4;
    EXPECT_EQ(typ::lengthbyte(s, 0, pos), 0);
    EXPECT_EQ(pos, 4);  // nothing consumed
    pos = 5;
    EXPECT_EQ(typ::lengthbyte(s, 0, pos), 0);
    EXPECT_EQ(pos, 9);  // four bytes consumed
    pos = -1;
    EXPECT_EQ(typ::lengthbyte(s, 0, pos), 0);
    EXPECT_EQ(pos, -1);
}

TEST(LabelBlock, LineBreaksArePipesKeptOnlyInTheLastString) {
    // L = "A\nB" 0 04 "C\r\nD" = 9 -> code 23.
    model::Store s = with_bytes(S("\x17\x02" "A\nB" "\x00\x04" "C\r\nD" "\x00", 12));
    const auto d = typ::decode_labels(s, 2, 2, model::k_polygons, 0, "0x0100");
    EXPECT_EQ(d.lines, "String1=0x02,AB\r\nString2=0x04,C|D\r\n");
    EXPECT_EQ(d.strings, 2);
    EXPECT_EQ(d.next, 2 + 12);
}

// Bytes the text form cannot carry (undefined in the code page, broken
// UTF-8) leave the text, with one report line for the whole load.
TEST(LabelBlock, BytesNoTextCanHoldAreDroppedAndSaidOnce) {
    model::Store s = with_bytes(S("\x17\x02" "Gr\x81n" "\x00\x04" "B\x8Fr\x9D" "\x00", 13));
    s.curf[4] = '\x19';  // L = 10
    const auto d = typ::decode_labels(s, 2, 2, model::k_polygons, 0, "0x0100");
    EXPECT_EQ(d.lines, "String1=0x02,Grn\r\nString2=0x04,Br\r\n");
    EXPECT_EQ(s.loadrep, "Label bytes no text can hold (control bytes, or undefined in code page 1252) were dropped\r\n");

    // What 1252 leaves undefined, 1250 defines (0x8F is \u0179); 0x81 is undefined in both.
    model::Store cz = with_bytes(S("\x17\x12" "Gr\x81n" "\x00\x04" "B\x8Fr\x9D" "\x00", 13));
    cz.curf[4] = '\x19';
    cz.codepage = 1250;
    EXPECT_EQ(typ::decode_labels(cz, 2, 2, model::k_points, 0, "0x02f00").lines,
              "String1=0x12,Grn\r\nString2=0x04,B\x8Fr\x9D\r\n");

    model::Store utf = with_bytes(S("\x11\x04" "Gr\xC3n\xC3\xBC" "\x00", 9));
    utf.codepage = 65001;
    EXPECT_EQ(typ::decode_labels(utf, 2, 2, model::k_lines, 0, "0x01").lines, "String1=0x04,Grn\xC3\xBC\r\n");
    EXPECT_NE(utf.loadrep.find("were dropped"), std::string::npos);

    model::Store clean = with_bytes(S("\x11\x04" "Gr\xFCn\xE9!" "\x00", 9));
    EXPECT_EQ(typ::decode_labels(clean, 2, 2, model::k_lines, 0, "0x01").lines, "String1=0x04,Gr\xFCn\xE9!\r\n");
    EXPECT_EQ(clean.loadrep, "");
}

TEST(LabelBlock, EmptyStringIsStillAStringLine) {
    model::Store s = with_bytes(S("\x05\x01\x00", 3));  // L = 0
    const auto d = typ::decode_labels(s, 0, 4, model::k_lines, 0, "");
    EXPECT_EQ(d.lines, "String1=0x01,\r\n");
    EXPECT_EQ(d.next, 7);
}

TEST(LabelBlock, LanguageAbove46LosesFortySevenAndPointsReportIt) {
    model::Store s = with_bytes(S("\x07\x50" "x\x00", 4));
    auto d = typ::decode_labels(s, 0, 4, model::k_lines, 0, "0x0100");
    EXPECT_EQ(d.lines, "String1=0x21,x\r\n");
    EXPECT_EQ(s.loadrep, "");

    d = typ::decode_labels(s, 0, 4, model::k_points, 33, "0x2f01");
    EXPECT_EQ(d.lines, "String1=0x21,x\r\n");
    EXPECT_EQ(s.loadrep, " &5 lang>&h2e size:33\r\n");
}

TEST(LabelBlock, DisplayLabelPrefersLanguageThenDefaultThenFirstAscii) {
    // "Eins" in 0x02, "Null" in 0x00, "Four" in 0x04.
    const std::string body = S("Eins\x00\x00Null\x00\x04" "Four", 16);
    const std::string block = typ::length_code(static_cast<int32_t>(body.size())) + S("\x02", 1) + body + S("\x00", 1);
    model::Store s = with_bytes(block);
    s.opt.langid = 4;
    EXPECT_EQ(typ::decode_labels(s, 0, 4, model::k_polygons, 0, "").label, "'Four'");
    s.opt.langid = 0x19;
    EXPECT_EQ(typ::decode_labels(s, 0, 4, model::k_polygons, 0, "").label, "'Null'");
    model::Store t = with_bytes(S("\x0d\x02" "Eins\x00", 7));
    t.opt.langid = 0x19;
    EXPECT_EQ(typ::decode_labels(t, 0, 4, model::k_polygons, 0, "").label, "'Eins'");
}

TEST(LabelBlock, LengthPastTheEndStopsAtTheBuffer) {
    model::Store s = with_bytes(S("\xff\x04" "ab", 4));  // claims 125 bytes
    const auto d = typ::decode_labels(s, 0, 4, model::k_points, 0, "");
    EXPECT_EQ(d.lines, "String1=0x04,ab\r\n");
    EXPECT_LE(d.next, static_cast<int32_t>(s.curf.size()) + 1);
    EXPECT_EQ(s.loadrep, "");
}

TEST(FontByte, NightPrintsItsColourUnderTheDayKey) {
    // SmallFont (2) + Night (16); colour stored blue, green, red.
    model::Store s = with_bytes(S("\x12\x30\x20\x10", 4));
    const auto f = typ::chk_fontcc(s, 4, true, true, model::k_polygons, "0x0100");
    EXPECT_EQ(f.lines, "ExtendedLabels=Y\r\nFontStyle=SmallFont\r\nCustomColor=Night\r\nDaycustomColor:#102030\r\n");
    EXPECT_EQ(f.consumed, 4);
    EXPECT_EQ(f.colours, "302010");
    EXPECT_TRUE(f.day_line);
}

TEST(FontByte, DayAndNightPointKeepsBothColours) {
    model::Store s = with_bytes(S("\x1c\x01\x02\x03\x04\x05\x06", 7));
    const auto f = typ::chk_fontcc(s, 4, true, true, model::k_points, "");
    EXPECT_EQ(f.lines,
              "ExtendedLabels=Y\r\nFontStyle=Large\r\nCustomColor=DayAndNight\r\n"
              "DaycustomColor:#030201\r\nNightcustomColor:#060504\r\n");
    EXPECT_EQ(f.consumed, 7);
    EXPECT_EQ(f.colours, "010203040506");
}

TEST(FontByte, PointColoursWithOpacityAreABitStream) {
    // 0x3b: Normal, DayAndNight, opacity. Two 28-bit colours, lowest bit first.
    uint64_t bits = 0x11 | (0x22ull << 8) | (0x33ull << 16) | (5ull << 24);
    bits |= (0x44ull | (0x55ull << 8) | (0x66ull << 16) | (7ull << 24)) << 28;
    std::string bytes(1, '\x3b');
    for (int k = 0; k < 7; ++k) bytes += static_cast<char>((bits >> (8 * k)) & 0xff);
    model::Store s = with_bytes(bytes);
    const auto f = typ::chk_fontcc(s, 4, true, true, model::k_points, "");
    EXPECT_EQ(f.lines,
              "ExtendedLabels=Y\r\nFontStyle=Normal\r\nCustomColor=DayAndNight\r\n"
              "DaycustomColor:#332211\r\nNightcustomColor:#665544\r\n");
    EXPECT_EQ(f.consumed, 8);
}

TEST(FontByte, UnknownCustomValueStopsALineAndIsReported) {
    model::Store s = with_bytes(S("\x20\x01\x02\x03", 4));
    const auto f = typ::chk_fontcc(s, 4, true, true, model::k_lines, "0x0100");
    EXPECT_TRUE(f.stopped);
    EXPECT_FALSE(f.day_line);
    EXPECT_EQ(f.consumed, 1);
    EXPECT_EQ(s.loadrep, "Unknown CC format @0x0100 4 value:&20\r\n");

    model::Store t = with_bytes("");
    EXPECT_EQ(typ::chk_fontcc(t, 4, false, true, model::k_lines, "").lines, "ExtendedLabels=N\r\n");
}

TEST(EncodeLabels, FirstStringOfALanguageWinsAndPipesBecomeCrLf) {
    model::Store s;
    const auto e = typ::encode_labels(s,
                                      "[_polygon]\r\nType=0x01\r\nString1=0x04,First\r\nString2=0x04,Second\r\n"
                                      "String3=0x02,Zwei|Zeilen\r\nFontStyle=SmallFont\r\nCustomColor=Night\r\n"
                                      "DaycustomColor:#102030\r\n",
                                      model::k_polygons);
    EXPECT_EQ(e.block, S("\x2b\x04" "First\x00\x02" "Zwei\r\nZeilen\x00", 22));
    EXPECT_EQ(e.font, S("\x12\x30\x20\x10", 4));
    // The dropped string is said once, however many labels drop one.
    const std::string said = "A label had a second string of one language: the first was kept, the second dropped\r\n";
    EXPECT_EQ(s.loadrep, said);
    typ::encode_labels(s, "String1=0x02,Eins\r\nString2=0x02,Zwei\r\n", model::k_lines);
    EXPECT_EQ(s.loadrep, said);
    model::Store single;
    typ::encode_labels(single, "String1=0x04,One\r\nString2=0x02,Eins\r\n", model::k_points);
    EXPECT_EQ(single.loadrep, "");

    // And back: the last string keeps its line break.
    model::Store r = with_bytes(e.block + e.font);
    const auto d = typ::decode_labels(r, 0, 4, model::k_polygons, 0, "");
    EXPECT_EQ(d.lines, "String1=0x04,First\r\nString2=0x02,Zwei|Zeilen\r\n");
    const auto f = typ::chk_fontcc(r, d.next, true, true, model::k_polygons, "");
    EXPECT_EQ(f.lines, "ExtendedLabels=Y\r\nFontStyle=SmallFont\r\nCustomColor=Night\r\nDaycustomColor:#102030\r\n");
}

TEST(EncodeLabels, FontSpellingsAndColourKeysAsAuthorsWroteThem) {
    model::Store s;
    // mkgmap spellings; CustomColor missing, so the colour keys decide.
    auto e = typ::encode_labels(s, "FontStyle=LargeFont\r\nDayCustomColor=#ff0000\r\nNightCustomColor=#00ff00\r\n",
                                model::k_points);
    EXPECT_FALSE(e.has_block());
    EXPECT_EQ(e.font, S("\x1c\x00\x00\xff\x00\xff\x00", 7));
    e = typ::encode_labels(s, "FontStyle=NormalFont\r\nCustomColor=No\r\n", model::k_lines);
    EXPECT_EQ(e.font, "\x03");
    e = typ::encode_labels(s, "String1=0x04,\r\nCustomColor=No\r\n", model::k_lines);
    EXPECT_EQ(e.block, S("\x07\x04 \x00", 4));  // an empty text is a blank
    EXPECT_FALSE(e.has_font());
}

TEST(EncodeLabels, PreferredLanguageFirstSetsPlainAndEnglishApart) {
    model::Store s;
    s.opt.strorder = true;
    s.opt.langid = 0x19;
    EXPECT_EQ(typ::strorder(s, "Type=0x01\r\nString1=0x00,a\r\nString2=0x19,b\r\nString3=0x04,c"),
              "Type=0x01\r\nString2=0x19,b\r\nString1=0x2f,a\r\nString3=0x33,c");
    const auto e = typ::encode_labels(s, "String1=0x00,a\r\nString2=0x19,b\r\n", model::k_polygons);
    EXPECT_EQ(e.block, S("\x0d\x19" "b\x00\x2f" "a\x00", 7));
    s.opt.strorder = false;
    EXPECT_EQ(typ::strorder(s, "String1=0x00,a\r\nString2=0x19,b"), "String1=0x00,a\r\nString2=0x19,b");
}

TEST(EncodeLabels, Utf8CodepageConvertsOnlyTextThatIsNotUtf8) {
    model::Store s;
    s.codepage = 65001;
    auto e = typ::encode_labels(s, "String1=0x02,Br\xc3\xbc" "cke\r\n", model::k_lines);
    EXPECT_EQ(e.block.substr(2, 7), "Br\xc3\xbc" "cke");
    e = typ::encode_labels(s, "String1=0x02,Br\xfc" "cke\r\n", model::k_lines);
    EXPECT_EQ(e.block.substr(2, 7), "Br\xc3\xbc" "cke");
    // Blanks around the key do not move the text; ASCII stays as it is.
    e = typ::encode_labels(s, "  String1 = 0x04 ,Bridge |x \r\n", model::k_lines);
    EXPECT_EQ(e.block, S("\x1b\x04" "Bridge \r\nx \x00", 14));
}

TEST(EncodeLabels, GetlangReadsTheDigitsBehindTheX) {
    EXPECT_EQ(typ::getlang("String1=0x19,x"), 0x19);
    EXPECT_EQ(typ::getlang("string2=0X4,text with x"), 4);
    EXPECT_EQ(typ::getlang("String3=0x2F,a"), 0x2f);
}

TEST(EncodeLabels, CodePageBytesAreWrittenAsTheyStand) {
    // The loaders warn of UTF-8 in a 1252 string; the writer keeps its bytes.
    model::Store s;
    s.codepage = 1252;
    EXPECT_EQ(typ::encode_labels(s, "String1=0x02,F\xe4hre\r\n", model::k_lines).block, S("\x0f\x02" "F\xe4hre\x00", 8));
    EXPECT_EQ(typ::encode_labels(s, "String1=0x02,F\xc3\xa4hre\r\n", model::k_lines).block.substr(2, 6), "F\xc3\xa4hre");
}

// A byte 1252 leaves undefined goes, as do bytes below 32, while its letters
// stay; under 65001 valid UTF-8 stays whole.
TEST(LabelBlock, BytesATextCannotCarryAreDropped) {
    model::UndefinedBytes western, utf8;
    std::string label = "Gr\x81n\x01";
    EXPECT_TRUE(typ::drop_unwritable_bytes(label, 1252, western));
    EXPECT_EQ(label, "Grn");
    std::string western_word = "Gr\xE4n";  // a letter of 1252, no UTF-8
    EXPECT_FALSE(typ::drop_unwritable_bytes(western_word, 1252, western));
    EXPECT_EQ(western_word, "Gr\xE4n");
    std::string fahre = "F\xC3\xA4hre";
    EXPECT_FALSE(typ::drop_unwritable_bytes(fahre, 65001, utf8));
    EXPECT_EQ(fahre, "F\xC3\xA4hre");
}
