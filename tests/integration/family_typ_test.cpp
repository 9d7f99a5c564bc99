#include "integration/family_typ.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "integration/family_fixture.h"
#include "typ/curf_access.h"

namespace korvex::integration {
namespace {

using platform::Answer;

int u16_at(const std::string& b, size_t at) {
    return static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8;
}

#ifndef _WIN32  // a Wine prefix is read from Linux and macOS only
// The bench, the prefix and its family list.
struct Families {
    FamilyBench b;
    WinePrefixCopy w;
    platform::WinePlatform sys{w.prefix.string(), [this](const auto&, const auto&) {
                                   ++imports;
                                   return import_status;
                               }};
    int imports = 0;
    int import_status = 0;
    FamilyList list = read_families(sys);
    Family& row(const std::string& name) {
        for (Family& f : list.rows())
            if (f.name == name) return f;
        throw std::runtime_error(name);
    }
};
#endif

TEST(BackupName, CopyFirstThenNumbersUntilFree) {
    TempTree t("backup");
    const std::string typ = (t.root / "I0001.TYP").string();
    EXPECT_EQ(backup_name(typ), (t.root / "I0001_copy.typ").string());
    put_bytes(t.root / "I0001_copy.typ", "");
    EXPECT_EQ(backup_name(typ), (t.root / "I0001_1.typ").string());
    put_bytes(t.root / "I0001_1.typ", "");
    EXPECT_EQ(backup_name(typ), (t.root / "I0001_2.typ").string());
    // A gap is filled: _1 free again, _2 taken.
    fs::remove(t.root / "I0001_1.typ");
    put_bytes(t.root / "I0001_2.typ", "");
    EXPECT_EQ(backup_name(typ), (t.root / "I0001_1.typ").string());
}

TEST(Addreg, KeyFollowsTheSystemAndTheTag) {
    Family f;
    f.name = "Alpine Trails";
    EXPECT_EQ(addreg_text(f, "C:\\maps\\a.typ", true),
              "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Garmin\\MapSource\\Families\\Alpine Trails]\r\n"
              "\"TYP\"=\"C:\\\\maps\\\\a.typ\"\r\n");
    f.tag = "NT:";
    EXPECT_NE(addreg_text(f, "x", false).find("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Garmin\\MapSource\\FamiliesNT\\Alpine"),
              std::string::npos);
    f.tag = "P:";
    EXPECT_NE(addreg_text(f, "x", false).find("\\Products\\"), std::string::npos);
}

#ifndef _WIN32  // a Wine prefix is read from Linux and macOS only
TEST(ReplaceTyp, BacksUpWritesFamilyIdsAndRestoresTheProjectsOwn) {
    Families F;
    const std::string mine = F.b.open_sample();
    F.b.s.fid = "77";
    F.b.s.pid = "5";
    Family& alpine = F.row("Alpine Trails");
    const std::string old = bytes_of(alpine.typ);
    auto t = F.b.tools(F.sys);
    F.b.ui.script(Answer::yes);  // replace
    F.b.ui.script(Answer::no);   // not the current file
    EXPECT_EQ(add_or_replace_typ(t, alpine), Upload::replaced);

    const std::string backup = (F.w.prefix / "drive_c/Garmin/Alpine/I0000123_copy.typ").string();
    EXPECT_TRUE(bytes_of(backup) == old);
    const std::string now = bytes_of(alpine.typ);
    EXPECT_EQ(u16_at(now, 47), 0x04D2);
    EXPECT_EQ(u16_at(now, 49), 0x0102);
    EXPECT_EQ(F.b.s.fid, "77");
    EXPECT_EQ(F.b.s.pid, "5");
    EXPECT_EQ(F.b.s.curfile, mine);
    ASSERT_EQ(F.b.ui.questions.size(), 2u);
    EXPECT_EQ(F.b.ui.questions[0], "File exists.\r\n\r\n" + alpine.typ + "\r\n\r\nReplace this file?");
    EXPECT_EQ(F.b.ui.questions[1], "Make this your current TYP file?");
    const auto& m = F.b.ui.messages;
    EXPECT_EQ(m.front(), "Backed up " + alpine.typ + " as " + backup);
    EXPECT_NE(std::find(m.begin(), m.end(), "TYP file has been replaced."), m.end());
    EXPECT_EQ(m.back(), "Click on Mapsource/Basecamp , then CTRL G 2x.");
    // The tile caches went with it.
    EXPECT_FALSE(fs::exists(F.w.prefix / "drive_c/users/tester/AppData/Roaming/Garmin/Mapsource/TileCache/tile0001.dat"));

    // Again: the first backup stays, the next is _1.
    F.b.ui.messages.clear();
    F.b.ui.script(Answer::yes);
    F.b.ui.script(Answer::yes);  // now it is the current file
    EXPECT_EQ(add_or_replace_typ(t, alpine), Upload::replaced);
    EXPECT_TRUE(bytes_of(backup) == old);
    EXPECT_TRUE(bytes_of(F.w.prefix / "drive_c/Garmin/Alpine/I0000123_1.typ") == now);
    EXPECT_EQ(F.b.s.curfile, alpine.typ);
    EXPECT_EQ(F.b.session.map_tag(), "Alpine Trails");
    EXPECT_NE(F.b.view.caption.find("[Alpine Trails]"), std::string::npos);
}

TEST(ReplaceTyp, AFailedWriteLeavesTheFamilysTypAndTheIds) {
    // The disk fills during the backup, then during the save behind a
    // backup that was written whole.
    for (const bool backup_fits : {false, true}) {
        SCOPED_TRACE(backup_fits);
        Families F;
        F.b.open_sample();
        F.b.s.fid = "77";
        F.b.s.pid = "5";
        Family& coast = F.row("Coast");
        const std::string old = bytes_of(coast.typ);
        platform::FaultyFileSystem full(platform::FaultyFileSystem::Op::write, ENOSPC,
                                        backup_fits ? old.size() + 100 : 100);
        auto t = F.b.tools(F.sys, full);
        EXPECT_EQ(add_or_replace_typ(t, coast), Upload::none);
        EXPECT_TRUE(bytes_of(coast.typ) == old);
        EXPECT_EQ(F.b.s.fid, "77");
        EXPECT_EQ(F.b.s.pid, "5");
        EXPECT_EQ(fs::exists(F.w.prefix / "drive_c/Garmin/Coast/coast_copy.typ"), backup_fits);
        EXPECT_EQ(F.b.ui.messages.back().rfind("Cannot save ", 0), 0u) << F.b.ui.messages.back();
        for (const auto& m : F.b.ui.messages) EXPECT_NE(m, "TYP file has been replaced.");
        EXPECT_TRUE(fs::exists(F.w.prefix / "drive_c/users/tester/AppData/Roaming/Garmin/Mapsource/TileCache/tile0001.dat"));
    }
}

TEST(ReplaceTyp, RefusalsSayWhyAndChangeNothing) {
    struct Case {
        const char* name;
        std::function<void(Families&, Family&)> arrange;
        std::string message;  // "" for a silent stop
    };
    const std::vector<Case> cases = {
        {"installed", [](Families&, Family& f) { f.tag = "I:"; }, "No current support."},
        {"nothing open", [](Families& F, Family&) { F.b.session.file_new(); },
         "Please open the TYP file you want to upload to this Family."},
        {"text", [](Families& F, Family&) { F.b.s.curfile = (F.b.data.root / "mine.txt").string(); },
         "Please save as TYP first."},
        {"absent", [](Families&, Family& f) { fs::remove(f.typ); }, ""},
        {"answer no", [](Families& F, Family&) { F.b.ui.script(Answer::no); }, ""},
        {"dirty, cancel", [](Families& F, Family&) {
             F.b.s.dirty = true;
             F.b.ui.script(Answer::yes);
             F.b.ui.script(Answer::cancel);
         }, ""},
        {"map program runs, no", [](Families& F, Family&) {
             F.b.ui.script(Answer::yes);
             F.b.ui.script(Answer::no);
         }, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Families F;
        F.b.open_sample();
        Family f = F.row("Alpine Trails");
        c.arrange(F, f);
        const std::string before = bytes_of(f.typ);
        const std::string curfile = F.b.s.curfile;
        platform::ScriptedMapPlatform running;
        platform::MapPlatform& sys = std::string(c.name).starts_with("map") ? static_cast<platform::MapPlatform&>(running)
                                                                             : F.sys;
        running.titles = {"Garmin BaseCamp - Alpine"};
        auto t = F.b.tools(sys);
        EXPECT_EQ(add_or_replace_typ(t, f), Upload::none);
        if (!c.message.empty()) EXPECT_EQ(F.b.ui.messages, std::vector<std::string>{c.message});
        if (std::string(c.name) == "absent") EXPECT_EQ(F.b.ui.messages.at(0), "Cannot locate " + f.typ);
        if (std::string(c.name).starts_with("map"))
            EXPECT_EQ(F.b.ui.questions.back(),
                      "Type in use by another program, ie Mapsource/Basecamp.\r\n\r\nWill try & close this down. "
                      "This may take 10 secs.\r\n\r\nTry again?");
        EXPECT_TRUE(bytes_of(f.typ) == before);
        EXPECT_EQ(F.b.s.curfile, curfile);
        EXPECT_FALSE(fs::exists(F.w.prefix / "drive_c/Garmin/Alpine/I0000123_copy.typ"));
    }
}

TEST(AddTyp, AFamilyWithoutTypIsPointedAtTheOpenFileThroughTheRegistry) {
    Families F;
    const std::string mine = F.b.open_sample();
    Family& alpine = F.row("Alpine Trails");
    alpine.typ.clear();
    auto t = F.b.tools(F.sys);
    // Dirty: the file on disk is not what the user sees.
    F.b.s.dirty = true;
    EXPECT_EQ(add_or_replace_typ(t, alpine), Upload::none);
    EXPECT_EQ(F.b.ui.messages, std::vector<std::string>{"Please save TYP file."});
    EXPECT_EQ(F.imports, 0);
    F.b.s.dirty = false;
    // The user declines the import: nothing is imported, the row stays.
    F.b.ui.script(Answer::no);
    EXPECT_EQ(add_or_replace_typ(t, alpine), Upload::none);
    EXPECT_EQ(F.imports, 0);
    EXPECT_EQ(alpine.typ, "");
    // regedit fails: said so, and the row stays.
    F.import_status = 1;
    EXPECT_EQ(add_or_replace_typ(t, alpine), Upload::none);
    EXPECT_EQ(F.b.ui.messages.back(), "Cannot import " + (F.b.data.root / "tmp.reg").string());
    EXPECT_EQ(alpine.typ, "");
    F.import_status = 0;
    F.imports = 0;
    EXPECT_EQ(add_or_replace_typ(t, alpine), Upload::added);
    EXPECT_EQ(F.imports, 1);
    EXPECT_EQ(alpine.typ, mine);
    const std::string reg = bytes_of(F.b.data.root / "tmp.reg");
    EXPECT_NE(reg.find("\\Wow6432Node\\Garmin\\MapSource\\Families\\Alpine Trails]\r\n\"TYP\"=\"Z:" ), std::string::npos);
    EXPECT_EQ(row_text(alpine), "Alpine Trails," + alpine.tdb + "," + mine);
}

TEST(AddTyp, AProgramDataMapNeedsNoRegistry) {
    Families F;
    const std::string mine = F.b.open_sample();
    Family& lakes = F.row("Lakes");
    lakes.typ.clear();
    auto t = F.b.tools(F.sys);
    EXPECT_EQ(add_or_replace_typ(t, lakes), Upload::added);
    EXPECT_EQ(lakes.typ, mine);
    EXPECT_EQ(F.imports, 0);
    EXPECT_FALSE(fs::exists(F.b.data.root / "tmp.reg"));
    EXPECT_TRUE(F.b.ui.questions.empty());
}

TEST(OpenFamilyTyp, RowsThatCannotOpenSayWhy) {
    struct Case {
        std::string tdb, typ, message;
    };
    const std::vector<Case> cases = {
        {"???", "x.typ", "Map has no tdb file and needs to be reinstalled."},
        {"a.tdb", "", "No TYP file found.\r\nUse 'Mossbit' to create a TYP file."},
        {"a.tdb", "/maps/style.img", "/maps/style.img not a TYP file."},
        {"a.tdb", "/nonexistent/a.typ", "Cannot locate /nonexistent/a.typ"},
    };
    for (const Case& c : cases) {
        FamilyBench b;
        const std::string mine = b.open_sample();
        platform::ScriptedMapPlatform sys;
        auto t = b.tools(sys);
        Family f;
        f.name = "F";
        f.tdb = c.tdb;
        f.typ = c.typ;
        EXPECT_FALSE(open_family_typ(t, f));
        EXPECT_EQ(b.ui.messages, std::vector<std::string>{c.message});
        EXPECT_EQ(b.s.curfile, mine);
    }
}

TEST(OpenFamilyTyp, OpensNamedAfterTheFamilyAndAnInstalledRowToo) {
    Families F;
    F.b.open_sample();
    F.b.s.dirty = true;
    Family coast = F.row("Coast");
    coast.tag = "I:";
    auto t = F.b.tools(F.sys);
    F.b.ui.script(Answer::cancel);  // keep the edits
    EXPECT_FALSE(open_family_typ(t, coast));
    EXPECT_TRUE(F.b.s.dirty);
    F.b.ui.script(Answer::no);  // drop them
    ASSERT_TRUE(open_family_typ(t, coast));
    EXPECT_EQ(F.b.s.curfile, coast.typ);
    EXPECT_EQ(F.b.session.map_tag(), "Coast");
    EXPECT_TRUE(F.b.s.from_family);
    EXPECT_GT(F.b.s.pg_n + F.b.s.ln_n + F.b.s.pt_n, 0);
    // An installed family is opened but not changed.
    F.b.ui.messages.clear();
    EXPECT_EQ(add_or_replace_typ(t, coast), Upload::none);
    EXPECT_EQ(F.b.ui.messages, std::vector<std::string>{"No current support."});
}

TEST(OpenFamilyTyp, TheFirstSaveOfAMapsOwnTypKeepsACopyOnce) {
    Families F;
    auto t = F.b.tools(F.sys);
    ASSERT_TRUE(open_family_typ(t, F.row("Alpine Trails")));
    const std::string original = bytes_of(F.w.alpine_typ());
    const fs::path copy = F.w.prefix / "drive_c/Garmin/Alpine/I0000123_copy.typ";
    EXPECT_TRUE(F.b.session.save_in_place());
    EXPECT_TRUE(bytes_of(copy) == original);
    EXPECT_NE(std::find(F.b.ui.messages.begin(), F.b.ui.messages.end(), "\r\n\r\nCreated a copy:" + copy.string()),
              F.b.ui.messages.end());
    EXPECT_FALSE(F.b.s.from_family);
    put_bytes(copy, "kept");
    F.b.s.from_family = true;  // a second open from the list
    EXPECT_TRUE(F.b.session.save_in_place());
    EXPECT_EQ(bytes_of(copy), "kept");
    // Coast's TYP is not named like a map's own: no copy.
    ASSERT_TRUE(open_family_typ(t, F.row("Coast")));
    EXPECT_TRUE(F.b.session.save_in_place());
    EXPECT_FALSE(fs::exists(F.w.prefix / "drive_c/Garmin/Coast/coast_copy.typ"));
}
#endif

TEST(MapRunning, TitlesOfTheMapProgramsInAnyCase) {
    platform::ScriptedMapPlatform sys;
    EXPECT_FALSE(map_running(sys));
    for (const char* title : {"BaseCamp", "MAPSOURCE - x", "c:\\program files\\garmin\\x.exe"}) {
        sys.titles = {"Editor", title};
        EXPECT_TRUE(map_running(sys)) << title;
    }
    sys.titles = {"Base camp", "map source"};
    EXPECT_FALSE(map_running(sys));
}

}  // namespace
}  // namespace korvex::integration
