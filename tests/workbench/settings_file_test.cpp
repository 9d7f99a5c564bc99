#include "workbench/settings_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/environment.h"
#include "support/harness.h"
#include "workbench/data_folder.h"
#include "support/path_text.h"

namespace korvex::workbench {
namespace {

namespace fs = std::filesystem;

fs::path fresh_dir(const std::string& name) {
    const fs::path dir = fs::temp_directory_path() / ("korvex_settings_" + name);
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir;
}

// The text with line n (from 1) replaced.
std::string with_line(const std::string& text, int n, const std::string& value) {
    auto lines = testing::lines_of(text);
    lines.at(n - 1) = value;
    std::string out;
    for (const auto& l : lines) out += l + "\r\n";
    return out;
}

TEST(SettingsFile, LimitsOnLoad) {
    const AppSettings base = default_settings("/d");
    const std::string text = write_settings(base);
    const platform::FixedFontList fonts({"Arial", "DejaVu Sans"});
    const auto read_with = [&](int line, const std::string& value, std::vector<std::string>* notes = nullptr) {
        return read_settings(with_line(text, line, value), base, &fonts, notes);
    };
    EXPECT_EQ(read_with(65, "100").custom_icon_size, 250);
    EXPECT_EQ(read_with(65, "9999").custom_icon_size, 1500);
    EXPECT_EQ(read_with(65, " 700 ").custom_icon_size, 700);
    std::vector<std::string> notes;
    const AppSettings lang = read_with(25, "47", &notes);
    EXPECT_EQ(lang.langsel, 0);
    EXPECT_EQ(lang.langname, "unspecified");
    EXPECT_EQ(notes, std::vector<std::string>{"Load Langsel=47"});
    EXPECT_EQ(read_with(25, "46").langsel, 46);
    EXPECT_EQ(read_with(42, "12G4").polygon_seed, "1");
    EXPECT_EQ(read_with(43, " ").line_seed, "1");
    EXPECT_EQ(read_with(42, "0a100").polygon_seed, "0a100");
    EXPECT_EQ(read_with(14, "90").hdr_default, 110);
    EXPECT_EQ(read_with(26, "3").label_options, 0);
    EXPECT_EQ(read_with(27, "100").label_font_size, 8);
    EXPECT_EQ(read_with(28, "Missing Font").label_font, "Arial");
    EXPECT_EQ(read_with(28, "dejavu sans").label_font, "dejavu sans");
    EXPECT_EQ(read_with(21, "Missing Font").editor_font, "");
    EXPECT_EQ(read_with(31, "99").background, k_white);
    EXPECT_EQ(read_with(31, "255").background, 255);
    EXPECT_EQ(read_with(35, "16").default_point_size, 32);
    EXPECT_EQ(read_with(35, "64").default_point_size, 64);
    EXPECT_EQ(read_with(36, "3").mode36, 0);
    EXPECT_EQ(read_with(39, "2").editor_grid, false);
    EXPECT_EQ(read_with(71, "100").window_width, 8400);
    EXPECT_EQ(read_with(76, "3").extra_page_size, 10);
    EXPECT_EQ(read_with(82, "").region, "0");
    EXPECT_EQ(read_with(87, "400").split_pos, 0);
    EXPECT_EQ(read_with(87, "600").split_pos, 600);
    EXPECT_EQ(read_with(90, "0").scroll_sensitivity, 1);
    EXPECT_EQ(read_with(99, "ab").langname, "unspecified");
    EXPECT_EQ(read_with(100, "29").editor_text_size, 10);
    EXPECT_EQ(read_with(101, " ").editor_text_font, "Courier");
    EXPECT_EQ(read_with(123, "11").max_canvas_poi, 64);
    // The undo settings behind the numbered lines: off by 0, the steps from 1 to 10000.
    EXPECT_FALSE(read_with(129, "0").ask_reload_undo);
    EXPECT_TRUE(read_with(129, "2").ask_reload_undo);
    EXPECT_EQ(read_with(130, "0").history_limit, 200);
    EXPECT_EQ(read_with(130, "1").history_limit, 1);
    EXPECT_EQ(read_with(130, "10000").history_limit, 10000);
    EXPECT_EQ(read_with(130, "10001").history_limit, 200);
    EXPECT_EQ(read_with(18, "1e30").class_in_view, 2);  // unreadable numbers keep the default
}

TEST(SettingsFile, WriteReadWriteIsIdenticalAndHiddenEntriesStayHidden) {
    AppSettings st = default_settings("/d");
    st.recent[0] = "/maps/a.typ";
    st.recent[3] = "/maps/b b.txt";
    st.last_text_path = "/maps/b b.txt";
    st.background = 12345.5;
    st.window_left = -3000;
    st.show_garmin_types = true;
    st.spare23 = "two\r\nlines";
    st.codepage_text = "1250 Cent.European";
    st.extra_page_size = 0;
    const std::string text = write_settings(st);
    const auto lines = testing::lines_of(text);
    ASSERT_EQ(lines.size(), 130u);
    EXPECT_EQ(lines[2], " ");  // entry 1, hidden
    EXPECT_EQ(lines[22], "two  lines");
    EXPECT_EQ(lines[28], "WWW");
    EXPECT_EQ(lines[29], "1250");
    EXPECT_EQ(lines[75], "10");
    EXPECT_EQ(lines[30], "12345.5");
    EXPECT_EQ(lines[64], "660");
    EXPECT_EQ(lines[127], "1");
    EXPECT_EQ(lines[128], "1");    // asks before changes only a reload undoes
    EXPECT_EQ(lines[129], "200");  // undo steps kept

    const AppSettings back = read_settings(text, default_settings("/other"));
    EXPECT_EQ(back.recent[0], "/maps/a.typ");
    EXPECT_EQ(back.recent[1], "");
    EXPECT_EQ(back.recent[3], "/maps/b b.txt");
    EXPECT_EQ(testing::preferred(back.dictionary_path), testing::preferred("/d/dictionaries/EN.dic"));
    EXPECT_EQ(write_settings(back), text);
}

TEST(SettingsFile, ShortOrHostileTextKeepsDefaults) {
    const AppSettings base = default_settings("/d");
    const AppSettings st = read_settings("cvrs\r\n/x.typ\r\n\r\n", base);
    EXPECT_EQ(st.recent[0], "/x.typ");
    EXPECT_EQ(st.recent[1], "");
    EXPECT_EQ(st.hdr_default, 91);
    EXPECT_EQ(st.custom_icon_size, 660);
    EXPECT_EQ(st.point_seed, "060");
    EXPECT_EQ(st.polygon_seed, "00100");
    EXPECT_EQ(st.langname, "unspecified");
    EXPECT_EQ(write_settings(read_settings("", base)), write_settings(base));
    const AppSettings junk = read_settings(std::string(300, '\n') + "\xff\x00-9e999\n", base);
    EXPECT_EQ(junk.custom_icon_size, 660);
}

TEST(SettingsFile, LocationSaveFailureAndReset) {
    const fs::path d = fresh_dir("d"), prog = fresh_dir("prog");
    EXPECT_EQ(settings_path(d.string(), prog.string()), (prog / "6.dat").string());
    std::ofstream(d / "flg") << "1001";
    const std::string path = settings_path(d.string(), prog.string());
    EXPECT_EQ(path, (d / "6.dat").string());

    integration::Messages msgs;
    platform::ScriptedPrompt ui;
    AppSettings st = default_settings(d.string());
    AppSettings loaded = st;
    EXPECT_FALSE(loaddata(path, loaded));
    st.language_file = (d / "gone.lan").string();
    st.logs_on = true;
    ASSERT_TRUE(savedata(path, st, false, msgs, ui));
    ASSERT_TRUE(loaddata(path, loaded));
    EXPECT_TRUE(loaded.logs_on);
    EXPECT_EQ(loaded.language_file, "");  // a language file that has gone

    platform::FaultyFileSystem full(platform::FaultyFileSystem::Op::write, ENOSPC);
    EXPECT_FALSE(savedata(path, st, false, msgs, ui, full));
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0].rfind("Data cannot be saved.Check permission.\r\n\r\nPlease Run as Administrator", 0), 0u);

    bool reset_done = false;
    ui.script(platform::Answer::no);
    EXPECT_FALSE(mreset(path, reset_done, msgs, ui));
    EXPECT_TRUE(mreset(path, reset_done, msgs, ui));
    EXPECT_EQ(ui.questions, (std::vector<std::string>{"Are you sure?", "Are you sure?"}));
    EXPECT_TRUE(reset_done);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(fs::exists(path + "old"));
    EXPECT_EQ(ui.messages.back(),
              "You must exit and restart.\r\n\r\nPrevious settings have been saved as:\r\n" + path + "old");
    EXPECT_TRUE(savedata(path, st, reset_done, msgs, ui));
    EXPECT_FALSE(fs::exists(path));
}

TEST(SettingsFile, CopiesWhatTheCodecsReadIntoTheStore) {
    AppSettings st;
    st.langsel = 0x19;
    st.langname = "0x19 Dutch";
    st.show_offsets = false;
    st.show_garmin_types = true;
    st.codepage_text = "1250";
    st.lang_default = 1;
    model::Store s;
    settings_to_store(st, s);
    EXPECT_EQ(s.opt.langid, 0x19);
    EXPECT_EQ(s.opt.langname, "0x19 Dutch");
    EXPECT_FALSE(s.opt.show_offsets);
    EXPECT_TRUE(s.opt.show_garmin_types);
    EXPECT_EQ(s.opt.list_codepage, 1250);
    EXPECT_TRUE(s.opt.strorder);
}

TEST(DataFolder, PlatformLocationSubFoldersAndMarker) {
#ifdef _WIN32
    GTEST_SKIP() << "XDG_DATA_HOME and ~/.local/share are the Linux locations; Windows uses AppData";
#endif
    const fs::path home = fresh_dir("home");
    platform::MapEnvironment env({{"HOME", home.string()}});
    EXPECT_EQ(data_folder_path(env, "/prog"), (home / ".local/share/Halden/krv6").string());
    env.set("XDG_DATA_HOME", "relative/ignored");
    EXPECT_EQ(data_folder_path(env, "/prog"), (home / ".local/share/Halden/krv6").string());
    env.set("XDG_DATA_HOME", (home / "xdg").string());
    EXPECT_EQ(data_folder_path(env, "/prog"), (home / "xdg/Halden/krv6").string());
    EXPECT_EQ(data_folder_path(platform::MapEnvironment(), "/prog"), "/prog");

    const DataFolder first = prepare_data_folder(env, "/prog");
    EXPECT_TRUE(first.ok);
    EXPECT_TRUE(first.first_start);
    for (const char* sub : {"txt", "pal", "typ", "system/bin", "themes", "languages", "logs", "dictionaries"})
        EXPECT_TRUE(fs::is_directory(fs::path(first.path) / sub)) << sub;
    EXPECT_EQ(testing::read_bytes(under(first.path, "flg")), "1001");
    EXPECT_FALSE(prepare_data_folder(env, "/prog").first_start);
}

TEST(Fonts, FontsDatRoundTripAndCheckValue) {
    const std::vector<std::string> names{"Arial", "Courier New"};
    const std::string text = platform::write_fonts_dat(names);
    EXPECT_EQ(text, "1234\r\n2\r\nArial\r\nCourier New\r\n");
    EXPECT_EQ(platform::read_fonts_dat(text), names);
    EXPECT_FALSE(platform::read_fonts_dat("1233\r\n0\r\n"));
    EXPECT_FALSE(platform::read_fonts_dat("1234\r\n3\r\nArial\r\n"));
    EXPECT_FALSE(platform::read_fonts_dat("1234\r\n99999999999\r\n"));
}

}  // namespace
}  // namespace korvex::workbench
