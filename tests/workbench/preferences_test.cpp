#include "workbench/preferences.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include "support/path_text.h"

namespace korvex::workbench {
namespace {

namespace fs = std::filesystem;

TEST(Preferences, RefusalsSayTheirMessageAndWriteNothing) {
    const AppSettings st = default_settings("/d");
    const auto refused = [&](auto change) {
        AppSettings target = st;
        Preferences p = pref_from(st);
        change(p);
        platform::ScriptedPrompt ui;
        EXPECT_FALSE(pref_apply(p, target, ui).applied);
        EXPECT_EQ(write_settings(target), write_settings(st));
        return ui.messages;
    };
    using Msgs = std::vector<std::string>;
    EXPECT_EQ(refused([](Preferences& p) { p.label_font_size = 5; }), Msgs{"Font >5 & <30"});
    EXPECT_EQ(refused([](Preferences& p) { p.label_font_size = 30; }), Msgs{"Font >5 & <30"});
    EXPECT_EQ(refused([](Preferences& p) { p.editor_text_size = 17; }), Msgs{"Editor Text Size between 8-16"});
    EXPECT_EQ(refused([](Preferences& p) { p.default_point_size = 65; }), Msgs{"Default size: 1 / 64"});
    EXPECT_EQ(refused([](Preferences& p) { p.mossbit_path = "/nowhere/mossbit"; }),
              Msgs{"Can't locate /nowhere/mossbit"});
    EXPECT_EQ(refused([](Preferences& p) {
                  p.mossbit_path = "";
                  p.dictionary_path = "/nowhere/EN.dic";
              }),
              Msgs{"Can't locate /nowhere/EN.dic"});
}

TEST(Preferences, ApplyWritesValuesAndReportsWhatTheWindowMustRedo) {
    const fs::path dir = fs::temp_directory_path() / "korvex_prefs";
    fs::create_directories(dir);
    const std::string editor = (dir / "theme_editor").string();
    std::ofstream(editor) << "x";

    AppSettings st = default_settings("/d");  // its tool paths under D do not exist: unchanged, they pass
    Preferences p = pref_from(st);
    p.theme_editor_path = editor;
    EXPECT_EQ(p.point_seed, "060");
    EXPECT_EQ(p.polygon_seed, "001");
    EXPECT_EQ(p.custom_icon_scroll, 550);

    p.label_font_size = 12;
    p.editor_text_font = "";
    p.polygon_seed = "0020";
    p.line_seed = "3";
    p.scroll_sensitivity = 250;
    p.custom_icon_scroll = 90;
    p.show_garmin_types = true;
    p.auto_load_path = "/nowhere/auto.typ";
    p.auto_check_duplicates = false;
    EXPECT_TRUE(p.ask_reload_undo);
    EXPECT_EQ(p.history_limit, 200);
    p.ask_reload_undo = false;
    p.history_limit = 0;  // below the least: one step is kept
    platform::ScriptedPrompt ui;
    const PrefOutcome out = pref_apply(p, st, ui);
    EXPECT_TRUE(out.applied);
    EXPECT_TRUE(out.font_changed);
    EXPECT_TRUE(out.reload_asked);
    EXPECT_EQ(ui.messages, (std::vector<std::string>{"Check auto load software", "Please reload TYP file"}));
    EXPECT_EQ(st.label_font_size, 12);
    EXPECT_EQ(st.editor_text_font, "Courier");
    EXPECT_EQ(st.polygon_seed, "20");
    EXPECT_EQ(st.line_seed, "3");
    EXPECT_EQ(st.point_seed, "060");
    EXPECT_EQ(st.scroll_sensitivity, 100);
    EXPECT_EQ(st.custom_icon_size, 250);
    EXPECT_EQ(st.auto_load_path, "");
    EXPECT_EQ(st.no_duplicate_check, 1);
    EXPECT_TRUE(st.show_garmin_types);
    EXPECT_FALSE(st.ask_reload_undo);
    EXPECT_EQ(st.history_limit, 1);
    EXPECT_EQ(p.history_limit, 1);
    EXPECT_EQ(st.theme_editor_path, editor);
    EXPECT_EQ(testing::preferred(st.dictionary_path), testing::preferred("/d/dictionaries/EN.dic"));
    EXPECT_EQ(transparent_colour(st.magenta_transparency), 0xFF11FF);
    EXPECT_EQ(transparent_colour(false), 0xF0F0F0);
}

}  // namespace
}  // namespace korvex::workbench
