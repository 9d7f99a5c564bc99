#include "integration/messages.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/harness.h"

namespace korvex::integration {
namespace {

namespace fs = std::filesystem;

fs::path fresh_dir(const std::string& name) {
    const fs::path dir = fs::temp_directory_path() / ("korvex_messages_" + name);
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

void put(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

TEST(Messages, BuiltinCatalogueKeepsExactTextsAndBreaks) {
    EXPECT_EQ(builtin_msg_count(), 255);
    const Messages m;
    EXPECT_EQ(m.get_msg(2), "Save changes before exiting?");
    EXPECT_EQ(m.get_msg(23), "Created  ");
    EXPECT_EQ(m.get_msg(161), "  .");
    EXPECT_EQ(m.get_msg(225), "Double Click on Polygo  n and set draworder to 'none'.");
    EXPECT_EQ(m.get_msg(237), "\r\n\r\n0x00 and other labels may convert to '?\?\?' - see manual");
    EXPECT_EQ(m.get_msg(219), "Cannot find a valid Garmin type number.\r\nChange base value in Preference.\r\n\r\nSee Manual");
    EXPECT_EQ(builtin_msg(34), "Will try & close this down. This may take 10 secs.$$Try again?");
    for (int n : {0, 1, 17, 278, -5}) EXPECT_EQ(m.get_msg(n), "") << n;
}

TEST(Messages, LanguageFileReplacesMessagesAndCaptions) {
    // The block has seven lines (the rest of the marker's line counts): 9 is beyond
    // them; a number given twice keeps its last line.
    const std::string lan =
        "intro\r\n<messages>\r\n3:erst\r\n3:Keine Daten. # a note\r\n2:Zeile eins$Zeile zwei\r\n4:vier\r\n9:lost\r\n"
        "<end of messages>\r\n"
        "mfile=ignored: before the marker\r\n"
        "<language>\r\nmlanguage=Test\r\nmcustom=Eigene\r\ncustom=Frei # comment\r\nmfile=Datei\r\n"
        "btnapply=Anwenden\r\nmexit=\r\nmhelp= # only a comment\r\ncombo3= a, ,b ,c,\r\n";
    Messages m;
    m.apply_lang_text("test.lan", lan);
    EXPECT_EQ(m.lanfile(), "test.lan");
    EXPECT_EQ(m.get_msg(3), "Keine Daten. ");
    EXPECT_EQ(m.get_msg(2), "Zeile eins\r\nZeile zwei");
    EXPECT_EQ(m.get_msg(4), "vier");
    EXPECT_EQ(m.get_msg(9), "Unknow type");  // beyond the block: English
    EXPECT_EQ(m.get_msg(10), "Please load a TYP file.");

    EXPECT_EQ(m.caption("mfile"), "Datei");
    EXPECT_EQ(m.caption("mcustom"), "Eigene");
    EXPECT_EQ(m.caption("custom"), "Frei ");
    EXPECT_EQ(m.caption("btnapplyX"), "Anwenden");
    EXPECT_EQ(Messages::caption_margin("btnapplyX"), 7);
    EXPECT_EQ(Messages::caption_margin("getclipY"), 17);
    EXPECT_EQ(m.caption("mexit"), "");  // empty value: the built-in caption stays
    EXPECT_EQ(m.caption("mhelp"), " ");
    EXPECT_EQ(m.caption("msave"), "");
    EXPECT_EQ(m.fill_list("combo3"), (std::vector<std::string>{"a", "b", "c"}));

    m.use_english();
    EXPECT_EQ(m.lanfile(), "");
    EXPECT_EQ(m.get_msg(3), "No data.");
    EXPECT_EQ(m.caption("mfile"), "");
    EXPECT_EQ(m.activities().size(), 6u);
    EXPECT_EQ(m.activities()[5], "Mountain Biking");
}

TEST(Messages, MissingFileChangesNothing) {
    Messages m;
    m.apply_lang_text("a.lan", "<messages>\n3:x\n\n<end of messages>");
    EXPECT_FALSE(m.apply_lang(""));
    EXPECT_FALSE(m.apply_lang("/nonexistent/x.lan"));
    EXPECT_EQ(m.get_msg(3), "x");
    EXPECT_EQ(m.lanfile(), "a.lan");
}

TEST(Messages, LanguageMenuFromFoldersAndEnglishFileCaptions) {
    const fs::path a = fresh_dir("a"), b = fresh_dir("b");
    put(a / "one.lan", "<language>\r\nmlanguage=Eins\r\n");
    put(a / "none.lan", "<language>\r\nmfile=x\r\n");
    put(a / "notes.txt", "mlanguage=Text\n");
    put(b / "ONE.lan", "mlanguage=Hidden\n");
    put(b / "two.LAN", "mlanguage=Zwei\n");
    put(b / "english", "<language>\nmfile=File (own)\n");
    const auto menu = loadlanguages({a.string(), "", b.string(), (a / "gone").string()});
    ASSERT_EQ(menu.size(), 2u);
    EXPECT_EQ(menu[0].name, "Eins");
    EXPECT_EQ(menu[0].path, (a / "one.lan").string());
    EXPECT_EQ(menu[1].name, "Zwei");

    Messages m;
    ASSERT_TRUE(m.apply_lang(menu[1].path));
    m.use_english({a.string(), b.string()});
    EXPECT_EQ(m.caption("mfile"), "File (own)");
    EXPECT_EQ(m.lanfile(), "");
}

TEST(Messages, BundledGermanFileTranslatesTheSessionMessages) {
    const std::string folder = testing::source_dir() + "/data/languages";
    const auto menu = loadlanguages({folder});
    ASSERT_EQ(menu.size(), 1u);
    EXPECT_EQ(menu[0].name, "Deutsch");
    Messages m;
    ASSERT_TRUE(m.apply_lang(menu[0].path));
    for (int n : {3, 10, 15, 16, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 162, 171, 172, 173, 228, 238, 239, 247,
                  250, 255, 256, 257, 259}) {
        EXPECT_NE(m.get_msg(n), builtin_msg(n)) << n;
    }
    EXPECT_EQ(m.get_msg(3), "Keine Daten.");
    EXPECT_EQ(m.get_msg(277), "Add 1 transparent colour");  // untranslated: English
    EXPECT_EQ(m.caption("mfile"), "Datei");
    EXPECT_EQ(m.caption("btnapplyX"), "Änderungen übernehmen");
}

TEST(Messages, GetlangReadsTwoHexDigitsBehindTheX) {
    EXPECT_EQ(getlang("0x2e Irish"), 0x2e);
    EXPECT_EQ(getlang("0x7 Dutch"), 7);
    EXPECT_EQ(getlang("no digits"), 0);
    EXPECT_EQ(getlang("x"), 0);
}

}  // namespace
}  // namespace korvex::integration
