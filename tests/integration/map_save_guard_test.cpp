#include "integration/map_save_guard.h"

#include <gtest/gtest.h>

#include "integration/family_fixture.h"

namespace korvex::integration {
namespace {

using platform::Answer;

bool warned(const platform::ScriptedPrompt& ui) {
    return ui.questions.size() == 1 && ui.questions[0].rfind("Type in use by another program, ie Mapsource/Basecamp.", 0) == 0 &&
           ui.questions[0].find("Try again?") != std::string::npos;
}

TEST(MapSaveGuard, WarnsOnlyWhenAMapProgramHoldsTheFileAndWaitsAtMostTenSeconds) {
    const int forever = 1000;
    const int all_passes = k_lock_wait_ms / k_lock_pass_ms;
    struct Case {
        const char* what;
        bool running;
        int locked;  // lock tests that find the file held
        Answer answer;
        bool goes_on, warns;
        int pauses;
    } cases[] = {
        {"held, but no map program", false, forever, Answer::yes, true, false, 0},
        {"map program, file free", true, 0, Answer::no, true, false, 0},
        {"free at the first retest", true, 1, Answer::yes, true, true, 0},
        {"free after two pauses", true, 3, Answer::yes, true, true, 2},
        {"free at the last retest", true, all_passes + 1, Answer::yes, true, true, all_passes},
        {"never free: the wait ends", true, forever, Answer::yes, true, true, all_passes},
        {"No stops the save", true, forever, Answer::no, false, true, 0},
        {"Cancel stops the save", true, forever, Answer::cancel, false, true, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        FamilyBench b;
        platform::ScriptedMapPlatform sys;
        if (c.running) sys.titles = {"Explorer", "BaseCamp"};
        sys.locked_tests = c.locked;
        b.ui.script(c.answer);
        int pauses = 0, waited = 0;
        EXPECT_EQ(map_save_guard(sys, b.session, b.ui, "x.typ", [&](int ms) { ++pauses, waited += ms; }), c.goes_on);
        EXPECT_EQ(warned(b.ui), c.warns);
        EXPECT_EQ(pauses, c.pauses);
        EXPECT_LE(waited, k_lock_wait_ms);
    }
}

// The window's Save goes through the guard: a refusal leaves the file on
// disk and the project unsaved; a save to a new name is not guarded.
TEST(MapSaveGuard, SaveOverAHeldFileWritesOnlyAfterYes) {
    FamilyBench b;
    const std::string path = b.open_sample();
    const std::string before = bytes_of(path);
    platform::ScriptedMapPlatform sys;
    sys.titles = {"MapSource"};
    int pauses = 0;
    b.session.set_save_guard([&](const std::string& p) {
        return map_save_guard(sys, b.session, b.ui, p, [&](int) { ++pauses; });
    });
    b.s.fid = "4321";
    b.session.set_dirty(true);

    for (const Answer refusal : {Answer::no, Answer::cancel}) {
        sys.locked_tests = 1000;
        b.ui.questions.clear();
        b.ui.script(refusal);
        EXPECT_FALSE(b.session.save_in_place());
        EXPECT_TRUE(warned(b.ui));
        EXPECT_TRUE(bytes_of(path) == before);
        EXPECT_TRUE(b.s.dirty);
    }

    sys.locked_tests = 2;
    b.ui.questions.clear();
    b.ui.script(Answer::yes);
    EXPECT_TRUE(b.session.save_in_place());
    EXPECT_TRUE(warned(b.ui));
    EXPECT_EQ(pauses, 1);
    EXPECT_FALSE(bytes_of(path) == before);
    EXPECT_FALSE(b.s.dirty);

    // A new file is held by nobody: not even its lock is tested.
    sys.locked_tests = 1000;
    sys.lock_tests = 0;
    b.ui.questions.clear();
    b.dialogs.script((b.data.root / "new.typ").string());
    EXPECT_TRUE(b.session.save(workbench::k_save_as));
    EXPECT_EQ(sys.lock_tests, 0);
    EXPECT_TRUE(b.ui.questions.empty());
}

#ifndef _WIN32  // a Wine prefix is read from Linux and macOS only
// Wine keeps a descriptor for each file a Windows program holds: one open
// here is found, the same file closed or a missing one is not.
TEST(WineLock, AFileIsHeldWhileAProcessHasItOpen) {
    TempTree t("lock");
    const fs::path typ = t.root / "held.typ";
    put_bytes(typ, "x");
    {
        std::ifstream held(typ);
        EXPECT_TRUE(platform::file_open_in_process((t.root / "." / "held.typ").string()));
    }
    EXPECT_FALSE(platform::file_open_in_process(typ.string()));
    EXPECT_FALSE(platform::file_open_in_process((t.root / "gone.typ").string()));
}

TEST(UploadTileCaches, TheMisspelledMapSourceFolderIsNotFound) {
    WinePrefixCopy w;
    const platform::WinePlatform sys(w.prefix.string());
    const fs::path users = w.prefix / "drive_c/users/tester/AppData";
    const fs::path basecamp = users / "Local/Garmin/BaseCamp/TileCache";
    // Both caches exist, yet only BaseCamp's is found.
    auto found = upload_tile_caches(sys);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(fs::equivalent(found[0], basecamp));
    // A folder of that very spelling is found.
    fs::create_directories(users / "Roaming/Garmin/Mapource/TileCache");
    found = upload_tile_caches(sys);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_TRUE(fs::equivalent(found[0], users / "Roaming/Garmin/Mapource/TileCache"));
    fs::remove_all(users / "Roaming/Garmin/Mapource");
    fs::remove_all(basecamp);
    EXPECT_TRUE(upload_tile_caches(sys).empty());
    EXPECT_TRUE(upload_tile_caches(platform::ScriptedMapPlatform{}).empty());  // no AppData
}

// Without BaseCamp's cache the test before the upload finds nothing, so the
// replace leaves MapSource's tiles; with it both caches are emptied.
TEST(UploadTileCaches, ReplaceClearsTheCachesOnlyWhenTheTestFoundOne) {
    for (const bool basecamp : {true, false}) {
        SCOPED_TRACE(basecamp);
        FamilyBench b;
        WinePrefixCopy w;
        platform::WinePlatform sys(w.prefix.string(), [](const auto&, const auto&) { return 0; });
        const fs::path users = w.prefix / "drive_c/users/tester/AppData";
        if (!basecamp) fs::remove_all(users / "Local/Garmin/BaseCamp");
        FamilyList list = read_families(sys);
        Family* coast = nullptr;
        for (Family& f : list.rows())
            if (f.name == "Coast") coast = &f;
        ASSERT_NE(coast, nullptr);
        b.open_sample();
        auto t = b.tools(sys);
        b.ui.script(Answer::yes);
        b.ui.script(Answer::no);
        ASSERT_EQ(add_or_replace_typ(t, *coast), Upload::replaced);
        EXPECT_NE(fs::exists(users / "Roaming/Garmin/Mapsource/TileCache/tile0001.dat"), basecamp);
        EXPECT_EQ(b.ui.messages.back(), "Click on Mapsource/Basecamp , then CTRL G 2x.");
    }
}
#endif

}  // namespace
}  // namespace korvex::integration
