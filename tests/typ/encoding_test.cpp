#include "typ/encoding.h"

#include <gtest/gtest.h>

namespace korvex::typ {
namespace {

// "Привет" in cp1251 and in UTF-8.
const std::string k_privet_1251 = "\xCF\xF0\xE8\xE2\xE5\xF2";
const std::string k_privet_utf8 = "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82";

TEST(LangCp, TableRowsInOrder) {
    Store s;
    s.codepage = 1250;
    EXPECT_EQ(lang_cp(s, 28), 1250);  // the first row that names it wins
    EXPECT_EQ(lang_cp(s, 0x19), 1251);
    EXPECT_EQ(lang_cp(s, 23), 1253);
    EXPECT_EQ(lang_cp(s, 37), 932);
    EXPECT_EQ(lang_cp(s, 4), 1252);
    EXPECT_EQ(lang_cp(s, 0), 1250);
}

TEST(LangCp, UnspecifiedLanguageOfUtf8ProjectUsesListPage) {
    Store s;
    s.codepage = 65001;
    s.opt.list_codepage = 1251;
    EXPECT_EQ(lang_cp(s, 0), 1251);
    s.opt.list_codepage = 65001;
    EXPECT_EQ(lang_cp(s, 0), 65001);
}

TEST(TextCp, FirstLanguageFoundDecides) {
    Store s;
    s.codepage = 1252;
    EXPECT_EQ(text_cp(s, "String1=0x19,x"), 1251);
    EXPECT_EQ(text_cp(s, "no language"), 1252);
}

TEST(Cp, NumberInFrontOfFirstBlank) {
    EXPECT_EQ(cp("1252 Western"), 1252);
    EXPECT_EQ(cp("65001"), 65001);
    EXPECT_EQ(cp_charset(1251), 204);
    EXPECT_EQ(cp_charset(1252), 1);
}

TEST(SaveAsUtf8, EmptyTextIsOneBlank) { EXPECT_EQ(saveasutf8("", 1252), " "); }

TEST(SaveAsUtf8, RecodesFromThePage) {
    EXPECT_EQ(saveasutf8(k_privet_1251, 1251), k_privet_utf8);
    EXPECT_EQ(saveasutf8("B\xE4""ckerei", 1252), "B\xC3\xA4""ckerei");
}

TEST(Utf8ToCp, UsesLastConversionPage) {
    Store s;
    s.cvcp = 1251;
    EXPECT_EQ(utf8_to_cp(s, k_privet_utf8), k_privet_1251);
    s.cvcp = 0;  // none yet: Western
    EXPECT_EQ(utf8_to_cp(s, "\xC3\xA4"), "\xE4");
}

TEST(WideToCp, ControlCharactersKeepTheirBytes) {
    Store s;
    s.cvcp = 1252;
    EXPECT_EQ(wide_to_cp(s, U"a\r\n\u00e4"), "a\r\n\xE4");
    EXPECT_EQ(wide_to_utf8(U"\u00e4"), "\xC3\xA4");
    EXPECT_EQ(bytes_to_wide(k_privet_1251, 1251), U"\u041f\u0440\u0438\u0432\u0435\u0442");
}

TEST(LoadUtf8, Utf8InWesternStringIsNotedOnce) {
    Store s;
    s.codepage = 1252;
    EXPECT_EQ(loadutf8(s, "B\xC3\xA4""ckerei", "04", "String1"), "B\xC3\xA4""ckerei");
    EXPECT_TRUE(s.walk.wrongly_parsed);
    EXPECT_EQ(s.walk.wrong_example, "String1(B\xC3\xA4""ckerei 04)");
    loadutf8(s, "\xC3\xA9t\xC3\xA9", "04", "String2");
    EXPECT_EQ(s.walk.wrong_example, "String1(B\xC3\xA4""ckerei 04)");
}

TEST(LoadUtf8, PortugueseAndPlainStringsAreNotSuspect) {
    Store s;
    s.codepage = 1252;
    loadutf8(s, "S\xC3\xA3o", "10", "String1");
    loadutf8(s, "ab", "04", "String1");
    EXPECT_FALSE(s.walk.wrongly_parsed);
    EXPECT_EQ(s.walk.short_strings, 1);
}

TEST(LoadUtf8, OnlyLanguagesOfTheWesternPageAreCheckedForUtf8) {
    Store s;
    s.codepage = 1252;
    // 0x1A and 0x11 are Baltic and Central European; "1a" in lower case too.
    loadutf8(s, "R\xC3\xAB", "1a", "String1");
    loadutf8(s, "R\xC3\xAB", "11", "String1");
    loadutf8(s, "R\xC3\xAB", " 11", "String1");
    EXPECT_FALSE(s.walk.wrongly_parsed);
    loadutf8(s, "R\xC3\xAB", "2F", "String1");
    EXPECT_TRUE(s.walk.wrongly_parsed);
}

TEST(LoadUtf8, TwelfthShortStringIsReportedOnce) {
    Store s;
    s.codepage = 1252;
    for (int i = 0; i < 11; ++i) loadutf8(s, "a", "04", "String1");
    EXPECT_EQ(s.loadrep, "");
    loadutf8(s, "b", "04", "String2");
    loadutf8(s, "long enough", "04", "String3");
    EXPECT_EQ(s.loadrep, "Check 'String1 etc ' String2\r\n");
}

TEST(LoadUtf8, Utf8ProjectRecodesIntoLanguagePage) {
    Store s;
    s.codepage = 65001;
    EXPECT_EQ(loadutf8(s, k_privet_utf8, "19", "String1"), k_privet_1251);
    EXPECT_EQ(s.cvcp, 1251);
}

}  // namespace
}  // namespace korvex::typ
