#include "integration/map_families.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "integration/family_fixture.h"
#include "platform/mac_platform.h"
#include "platform/reg_text.h"
#include "platform/shell_link.h"
#include "support/path_text.h"

namespace korvex::integration {
namespace {

using platform::Hive;

std::string tdb_bytes(int pid, int fid, const std::string& name) {
    std::string b = "P";
    b += '\0';
    b += '\0';
    for (int v : {pid, fid}) b += static_cast<char>(v & 255), b += static_cast<char>(v >> 8);
    b += std::string(2, '\0') + name + '\0' + "tail";
    return b;
}

const Family* row_named(const FamilyList& list, const std::string& name) {
    for (const Family& f : list.rows())
        if (f.name == name) return &f;
    return nullptr;
}

TEST(RegText, ReadsWineFilesAndExportsIntoOneTree) {
    platform::RegistryTree t;
    platform::read_reg_text(
        "WINE REGISTRY Version 2\n"
        "[Software\\\\Garmin\\\\MapSource\\\\Families\\\\A] 1700000000\n"
        "#time=1d\n"
        "\"TYP\"=\"C:\\\\maps\\\\a \\\"b\\\".typ\"\r\n"
        "\"Count\"=dword:0000001f\n"
        "\"Raw\"=hex:41,42,\\\n  43\n"
        "\"Wide\"=hex(2):43,00,3a,00,5c,00,00,00\n"
        "\"Latin\"=hex(2):ff,00,00,01,00,00\n"
        "\"Expand\"=str(2):\"%ProgramData%\\\\x\"\n"
        "@=\"default\"\n"
        "\"Ignored\n"
        "REGEDIT4\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Garmin\\MapSource\\Families\\B]\n"
        "\"TYP\"=\"D:\\\\b.typ\"\n",
        t);
    const std::string a = "software\\garmin\\MAPSOURCE\\families\\a\\";
    EXPECT_EQ(t.value(a, "typ").value_or("?"), "C:\\maps\\a \"b\".typ");
    EXPECT_EQ(t.value(a, "Count").value_or("?"), "31");
    EXPECT_EQ(t.value(a, "Raw").value_or("?"), "ABC");
    EXPECT_EQ(t.value(a, "Wide").value_or("?"), "C:\\");
    // One byte a character: the last of Latin-1 stays, the first beyond it is a "?".
    EXPECT_EQ(t.value(a, "Latin").value_or(""), "\xFF?");
    EXPECT_EQ(t.value(a, "Expand").value_or("?"), "%ProgramData%\\x");
    EXPECT_EQ(t.value(a, "").value_or("?"), "default");
    EXPECT_EQ(t.values(a).size(), 7u);
    EXPECT_EQ(t.value("SOFTWARE\\Garmin\\MapSource\\Families\\B", "TYP").value_or("?"), "D:\\b.typ");
    // Sub-keys are the direct ones, in the case they were written.
    EXPECT_EQ(t.subkeys("Software\\Garmin\\MapSource\\Families"), (std::vector<std::string>{"A", "B"}));
    EXPECT_TRUE(t.subkeys("Software\\Garmin\\MapSource\\Families\\A").empty());
    EXPECT_TRUE(t.subkeys("Software\\Garmin\\Nothing").empty());
}

// Cut anywhere, a registry file is read without a fault, and a cut one never holds a key the whole one lacks.
TEST(RegText, EveryTruncationReadsSafely) {
    const std::string full = bytes_of(testing::source_dir() + "/tests/data/wine_prefix/system.reg");
    ASSERT_FALSE(full.empty());
    const std::string families = "Software\\Wow6432Node\\Garmin\\MapSource\\Families";
    platform::RegistryTree whole;
    platform::read_reg_text(full, whole);
    for (size_t n = 0; n <= full.size(); ++n) {
        platform::RegistryTree t;
        platform::read_reg_text(std::string_view(full).substr(0, n), t);
        for (const std::string& k : t.subkeys(families)) EXPECT_TRUE(whole.has_key(families + "\\" + k)) << n;
    }
}

TEST(RegText, ThirtyTwoBitViewComesFirst) {
    platform::ScriptedMapPlatform sys;
    sys.hklm.set("SOFTWARE\\Garmin\\Installed\\Native", "TDB", "n.tdb");
    EXPECT_EQ(sys.reg_subkeys(Hive::local_machine, "SOFTWARE\\Garmin\\Installed\\"), std::vector<std::string>{"Native"});
    sys.hklm.set("SOFTWARE\\Wow6432Node\\Garmin\\Installed\\Wow", "TDB", "w.tdb");
    EXPECT_EQ(sys.reg_subkeys(Hive::local_machine, "SOFTWARE\\Garmin\\Installed\\"), std::vector<std::string>{"Wow"});
    EXPECT_EQ(platform::wow64_key("SYSTEM\\x"), "SYSTEM\\x");
}

#ifndef _WIN32  // a Wine prefix is read from Linux and macOS only
TEST(WinePaths, DrivesMapIntoThePrefixWhateverTheCase) {
    WinePrefixCopy w;
    const std::string p = w.prefix.string();
    EXPECT_EQ(platform::wine_local_path(p, "c:\\GARMIN\\coast\\coast.tdb"), p + "/drive_c/Garmin/Coast/Coast.TDB");
    EXPECT_EQ(platform::wine_local_path(p, "C:\\Garmin\\New\\x.typ"), p + "/drive_c/Garmin/New/x.typ");
    EXPECT_EQ(platform::wine_local_path(p, "Z:\\home\\u\\a.typ"), "/home/u/a.typ");
    EXPECT_EQ(platform::wine_local_path(p, "relative.typ"), "relative.typ");
    EXPECT_EQ(platform::wine_local_path(p, "1:\\x.typ"), "1:\\x.typ") << "a drive is a letter";
    EXPECT_EQ(platform::wine_windows_path(p, p + "/drive_c/Garmin/a.typ"), "C:\\Garmin\\a.typ");
    EXPECT_EQ(platform::wine_windows_path(p, "/home/u/a.typ"), "Z:\\home\\u\\a.typ");
    // A dosdevices link for c: wins over drive_c.
    fs::create_directories(w.prefix / "dosdevices");
    fs::create_directory_symlink(w.prefix / "drive_c", w.prefix / "dosdevices/c:");
    EXPECT_EQ(platform::wine_local_path(p, "C:\\windows"), p + "/dosdevices/c:/windows");
}

#endif

TEST(TdbHeader, NeedsThePRecordAndItsNineBytes) {
    const std::string good = tdb_bytes(0x0102, 0x04D2, "Alpine");
    const auto h = tdb_header(good);
    ASSERT_TRUE(h);
    EXPECT_EQ(h->pid, 0x0102);
    EXPECT_EQ(h->fid, 0x04D2);
    EXPECT_EQ(h->name, "Alpine");
    EXPECT_FALSE(tdb_header("Q" + good.substr(1)));
    EXPECT_FALSE(tdb_header(good.substr(0, 8)));
    // Nine bytes: the numbers without a name.
    ASSERT_TRUE(tdb_header(good.substr(0, 9)));
    EXPECT_EQ(tdb_header(good.substr(0, 9))->name, "");
    EXPECT_FALSE(get_tdb("/nonexistent/x.tdb"));
}

TEST(MapXml, IdsAndTypAreEachOptional) {
    const MapXml all = map_xml_text("<ID>700</ID><TYP>a.typ</TYP><SUBPRODUCT><ID>3</ID></SUBPRODUCT>");
    EXPECT_EQ(all.fid.value_or(-1), 700);
    EXPECT_EQ(all.pid.value_or(-1), 3);
    EXPECT_EQ(all.typ, "a.typ");
    // The product id is the first ID behind SUBPRODUCT, not the first ID.
    const MapXml sub_first = map_xml_text("<SUBPRODUCT><ID>5</ID></SUBPRODUCT>");
    EXPECT_EQ(sub_first.fid.value_or(-1), 5);
    EXPECT_EQ(sub_first.pid.value_or(-1), 5);
    const MapXml none = map_xml_text("<ID>x</ID><TYP>open");
    EXPECT_FALSE(none.fid);
    EXPECT_FALSE(none.pid);
    EXPECT_EQ(none.typ, "");
}

#ifndef _WIN32  // a Wine prefix is read from Linux and macOS only
TEST(WinePrefix, ListsTwoFamiliesOnceAndTheProgramDataMap) {
    WinePrefixCopy w;
    const platform::WinePlatform sys(w.prefix.string());
    EXPECT_TRUE(sys.bit64());
    EXPECT_EQ(sys.env("AppData"), "C:\\users\\tester\\AppData\\Roaming");
    const FamilyList list = read_families(sys);
    ASSERT_EQ(list.rows().size(), 3u);  // Alpine Trails under FamiliesNT again is dropped
    const Family* alpine = row_named(list, "Alpine Trails");
    const Family* coast = row_named(list, "Coast");
    const Family* lakes = row_named(list, "Lakes");
    ASSERT_TRUE(alpine && coast && lakes);
    EXPECT_EQ(alpine->tag, "");
    EXPECT_EQ(alpine->pid, 0x0102);
    EXPECT_EQ(alpine->fid, 0x04D2);
    EXPECT_EQ(alpine->typ, w.alpine_typ().string());
    EXPECT_FALSE(alpine->current);
    // A relative TYP lies beside the TDB; the TDB was named in lower case.
    EXPECT_EQ(coast->typ, (w.prefix / "drive_c/Garmin/Coast/coast.typ").string());
    EXPECT_EQ(coast->tdb, (w.prefix / "drive_c/Garmin/Coast/Coast.TDB").string());
    EXPECT_TRUE(coast->current);
    EXPECT_EQ(row_text(*coast), "(*)Coast," + coast->tdb + "," + coast->typ);
    EXPECT_EQ(list.current, "Mapsource: Coast");
    EXPECT_EQ(lakes->source, k_maps_folder_source);
    EXPECT_EQ(lakes->fid, 700);
    EXPECT_EQ(lakes->pid, 3);
    EXPECT_EQ(lakes->typ, (w.prefix / "drive_c/ProgramData/Garmin/Maps/Lakes/lakes.typ").string());
}

TEST(WinePrefix, ClearcacheEmptiesBothTileCachesAndKeepsTheirFolders) {
    WinePrefixCopy w;
    const platform::WinePlatform sys(w.prefix.string());
    EXPECT_EQ(clearcache(sys), 2);
    const fs::path local = w.prefix / "drive_c/users/tester/AppData/Local/Garmin/BaseCamp/TileCache";
    EXPECT_FALSE(fs::exists(local / "tile0001.dat"));
    EXPECT_TRUE(fs::exists(local / "keep/.keep"));
    EXPECT_FALSE(fs::exists(w.prefix / "drive_c/users/tester/AppData/Roaming/Garmin/Mapsource/TileCache/tile0001.dat"));
    EXPECT_EQ(clearcache(sys), 0);
    EXPECT_EQ(clearcache(platform::ScriptedMapPlatform{}), 0);  // no AppData: nothing to look at
}

TEST(WinePrefix, ImportRunsTheRegeditOfThePrefix) {
    WinePrefixCopy w;
    std::vector<std::string> argv_seen;
    std::string prefix_seen;
    platform::WinePlatform sys(w.prefix.string(), [&](const std::vector<std::string>& argv, const auto& env) {
        argv_seen = argv;
        prefix_seen = env.at(0).second;
        return 0;
    });
    const fs::path reg = w.prefix / "drive_c/tmp.reg";
    put_bytes(reg, "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Garmin\\MapSource\\Families\\N]\r\n\"TYP\"=\"C:\\\\n.typ\"\r\n");
    EXPECT_TRUE(sys.import_reg(reg.string()));
    EXPECT_EQ(argv_seen, (std::vector<std::string>{"wine", "regedit", "C:\\tmp.reg"}));
    EXPECT_EQ(prefix_seen, w.prefix.string());
    EXPECT_EQ(sys.reg_value(Hive::local_machine, "SOFTWARE\\Garmin\\MapSource\\Families\\N", "TYP").value_or(""),
              "C:\\n.typ");
    platform::WinePlatform failing(w.prefix.string(), [](const auto&, const auto&) { return 1; });
    EXPECT_FALSE(failing.import_reg(reg.string()));
}

TEST(WinePrefix, RunningMapProgramsAreWindowsProgramsInTheProcessList) {
    TempTree proc("proc");
    put_bytes(proc.root / "101/cmdline", std::string("C:\\Garmin\\BaseCamp.exe\0-x\0", 26));
    put_bytes(proc.root / "102/cmdline", std::string("/usr/bin/korvex\0/home/Garmin/a.typ\0", 35));
    put_bytes(proc.root / "self/cmdline", std::string("mapsource.exe", 13));
    const auto lines = platform::wine_process_lines(proc.root.string());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].substr(0, 23), "C:\\Garmin\\BaseCamp.exe ");
}
#endif

// Scripted registries, one source at a time.
struct ScriptedMaps {
    TempTree tree{"scripted_maps"};
    platform::ScriptedMapPlatform sys{tree.root.string()};
    // A TDB on the scripted C: drive.
    std::string tdb(const std::string& win_path, int pid, int fid) {
        put_bytes(sys.local_path(win_path), tdb_bytes(pid, fid, "x"));
        return win_path;
    }
};

TEST(FamilySources, EachRegistrySourceGivesItsTag) {
    ScriptedMaps m;
    const char* names[] = {"Fam", "FamNT", "Prod", "Inst"};
    for (int i = 0; i < 4; ++i)
        m.sys.hklm.set(std::string(k_family_keys[i]) + names[i], "TDB",
                       m.tdb("C:\\maps\\" + std::string(names[i]) + "\\m.tdb", 10 + i, 20 + i));
    for (int i = 0; i < 4; ++i) {
        FamilyList one;
        get_regvals(m.sys, i, one);
        ASSERT_EQ(one.rows().size(), 1u) << i;
        EXPECT_EQ(one.rows()[0].tag, k_family_tags[i]);
        EXPECT_EQ(one.rows()[0].name, names[i]);
        EXPECT_EQ(one.rows()[0].pid, 10 + i);
    }
    // A family of PID 0 is still one family, whichever source lists it twice.
    m.sys.hklm.set(std::string(k_family_keys[0]) + "Zero", "TDB", m.tdb("C:\\maps\\Zero\\z.tdb", 0, 7));
    m.sys.hklm.set(std::string(k_family_keys[1]) + "Zero", "TDB", m.tdb("C:\\maps\\Zero\\z.tdb", 0, 7));
    FamilyList twice;
    get_regvals(m.sys, 0, twice);
    get_regvals(m.sys, 1, twice);
    EXPECT_EQ(std::count_if(twice.rows().begin(), twice.rows().end(), [](const Family& f) { return f.name == "Zero"; }), 1);
    FamilyList none;
    get_regvals(m.sys, 5, none);
    get_regvals(m.sys, -1, none);
    EXPECT_TRUE(none.rows().empty());
}

TEST(FamilySources, MissingTdbRowsStayAsQuestionMarksAndAreNeverMerged) {
    ScriptedMaps m;
    const std::string key = k_family_keys[0];
    m.sys.hklm.set(key + "Gone", "TDB", "C:\\maps\\gone.tdb");
    m.sys.hklm.set(key + "Gone2", "TDB", "C:\\maps\\gone2.tdb");
    m.sys.hklm.set(key + "NoTdb", "TYP", "C:\\maps\\x.typ");
    put_bytes(m.sys.local_path("C:\\maps\\bad.tdb"), "Q not a header");
    m.sys.hklm.set(key + "Bad", "TDB", "C:\\maps\\bad.tdb");
    const FamilyList list = read_families(m.sys);
    ASSERT_EQ(list.rows().size(), 4u);
    for (const Family& f : list.rows()) EXPECT_EQ(f.tdb, k_no_tdb) << f.name;
    EXPECT_EQ(row_named(list, "NoTdb")->typ, m.sys.local_path("C:\\maps\\x.typ"));
}

TEST(FamilySources, TypComesFromTheValueElseTheTdbFolderPreferringI0) {
    ScriptedMaps m;
    const std::string key = k_family_keys[0];
    m.sys.hklm.set(key + "Named", "TDB", m.tdb("C:\\a\\a.tdb", 1, 1));
    m.sys.hklm.set(key + "Named", "TYP c:\\a\\style.typ", "");
    m.sys.hklm.set(key + "Folder", "TDB", m.tdb("C:\\b\\b.tdb", 2, 2));
    put_bytes(m.sys.local_path("C:\\b\\aaa.typ"), "x");
    put_bytes(m.sys.local_path("C:\\b\\I0000777.TYP"), "x");
    m.sys.hklm.set(key + "Plain", "TDB", m.tdb("C:\\c\\c.tdb", 3, 3));
    put_bytes(m.sys.local_path("C:\\c\\zzz.typ"), "x");
    m.sys.hklm.set(key + "Empty", "TDB", m.tdb("C:\\d\\d.tdb", 4, 4));
    const FamilyList list = read_families(m.sys);
    EXPECT_EQ(row_named(list, "Named")->typ, m.sys.local_path("C:\\a\\style.typ"));
    EXPECT_EQ(fs::path(row_named(list, "Folder")->typ).filename(), "I0000777.TYP");
    EXPECT_EQ(fs::path(row_named(list, "Plain")->typ).filename(), "zzz.typ");
    EXPECT_EQ(row_named(list, "Empty")->typ, "");
}

TEST(FamilySources, AShortcutStandsForTheTdb) {
    ScriptedMaps m;
    const std::string target = m.tdb("C:\\real\\r.tdb", 9, 99);
    m.sys.shortcuts.push_back({m.sys.local_path("C:\\maps\\r.lnk"), m.sys.local_path(target)});
    m.sys.hklm.set(std::string(k_family_keys[0]) + "Linked", "TDB", "C:\\maps\\r.lnk");
    const FamilyList list = read_families(m.sys);
    ASSERT_EQ(list.rows().size(), 1u);
    EXPECT_EQ(list.rows()[0].tdb, m.sys.local_path(target));
    EXPECT_EQ(list.rows()[0].fid, 99);
}

TEST(FamilySources, ShortcutFileGivesItsLocalBasePath) {
    // Header, no id list, a LinkInfo with a local base path and a suffix.
    std::string lnk(0x4C, '\0');
    lnk[0] = 0x4C;
    lnk[0x14] = 2;
    std::string info(28, '\0');
    const std::string base = "C:\\real\\";
    const std::string suffix = "r.tdb";
    auto put32 = [&](std::string& b, size_t at, uint32_t v) {
        for (int i = 0; i < 4; ++i) b[at + i] = static_cast<char>(v >> (8 * i));
    };
    put32(info, 0, static_cast<uint32_t>(28 + base.size() + 1 + suffix.size() + 1));
    put32(info, 8, 1);
    put32(info, 16, 28);
    put32(info, 24, static_cast<uint32_t>(28 + base.size() + 1));
    info += base + '\0' + suffix + '\0';
    EXPECT_EQ(platform::shell_link_target(lnk + info), "C:\\real\\r.tdb");
    // Cut anywhere short of its end, the link gives nothing (and no fault).
    const std::string whole = lnk + info;
    for (size_t n = 0; n < whole.size(); ++n) EXPECT_EQ(platform::shell_link_target(whole.substr(0, n)), "") << n;
    EXPECT_EQ(platform::shell_link_target("not a link"), "");
}

TEST(FamilySources, MapsFolderRowsFromXmlOrTdbOrNeither) {
    ScriptedMaps m;
    m.sys.environment.push_back({"ProgramData", "C:\\ProgramData"});
    const fs::path maps = m.sys.local_path("C:\\ProgramData\\Garmin\\Maps");
    put_bytes(maps / "A/a.xml", "<ID>10</ID><SUBPRODUCT><ID>1</ID></SUBPRODUCT>");
    put_bytes(maps / "A/a.tdb", tdb_bytes(50, 60, "A"));
    put_bytes(maps / "A/I0000001.typ", "x");
    put_bytes(maps / "B/b.tdb", tdb_bytes(51, 61, "B"));
    put_bytes(maps / "C/readme.txt", "no map here");
    const FamilyList list = read_families(m.sys);
    ASSERT_EQ(list.rows().size(), 3u);
    const Family* a = row_named(list, "A");
    EXPECT_EQ(a->fid, 10);  // the XML wins over the TDB
    EXPECT_EQ(a->pid, 1);
    EXPECT_EQ(fs::path(a->typ).filename(), "I0000001.typ");
    EXPECT_EQ(row_named(list, "B")->fid, 61);
    EXPECT_EQ(row_named(list, "C")->tdb, k_cant_find_tdb);
    EXPECT_EQ(row_named(list, "C")->typ, "");
}

TEST(FamilySources, ARegistryFamilyInTheMapsFolderTooIsListedOnce) {
    ScriptedMaps m;
    const fs::path maps = m.sys.local_path("c:\\programdata\\garmin\\maps");
    put_bytes(maps / "Same/s.tdb", tdb_bytes(5, 6, "S"));
    m.sys.hklm.set(std::string(k_family_keys[1]) + "Same", "TDB", "c:\\programdata\\garmin\\maps\\Same\\s.tdb");
    const FamilyList list = read_families(m.sys);
    ASSERT_EQ(list.rows().size(), 1u);
    EXPECT_EQ(list.rows()[0].tag, "NT:");
}

TEST(FamilySources, CurrentMapsOfBothProgramsAreMarked) {
    ScriptedMaps m;
    m.sys.hklm.set(std::string(k_family_keys[0]) + "One", "TDB", m.tdb("C:\\1\\1.tdb", 1, 1));
    m.sys.hklm.set(std::string(k_family_keys[0]) + "Two", "TDB", m.tdb("C:\\2\\2.tdb", 2, 2));
    m.sys.hklm.set(std::string(k_family_keys[0]) + "Three", "TDB", m.tdb("C:\\3\\3.tdb", 3, 3));
    m.sys.hkcu.set("SOFTWARE\\Garmin\\Mapsource\\Settings", "MRUProduct", "one");
    m.sys.hkcu.set("SOFTWARE\\Garmin\\Basecamp\\Settings", "MRUProduct", "2");
    const FamilyList list = read_families(m.sys);
    EXPECT_TRUE(row_named(list, "One")->current);
    EXPECT_TRUE(row_named(list, "Two")->current);
    EXPECT_FALSE(row_named(list, "Three")->current);
    EXPECT_EQ(list.current, "Mapsource: one  Basecamp 2");
}

TEST(MacMaps, GmapBundlesOfUserAndMachineAreListed) {
    TempTree t("mac");
    const std::string home = "/Users/tester";
    const fs::path user = t.root.string() + home + "/Library/Application Support/Garmin/Maps";
    const fs::path machine = t.root / "Library/Application Support/Garmin/Maps";
    put_bytes(user / "Hills.gmap/Info.xml", "<ID>300</ID><TYP>hills.typ</TYP><SUBPRODUCT><ID>2</ID></SUBPRODUCT>");
    put_bytes(user / "Hills.gmap/hills.typ", "x");
    put_bytes(user / "Hills.gmap/hills.tdb", tdb_bytes(2, 300, "Hills"));
    put_bytes(machine / "Roads.gmap/Info.xml", "<ID>400</ID><SUBPRODUCT><ID>4</ID></SUBPRODUCT>");
    put_bytes(machine / "Roads.gmap/Product1/x.img", "x");
    const platform::MacMapPlatform sys(home, t.root.string());
    const FamilyList list = read_families(sys);
    ASSERT_EQ(list.rows().size(), 2u);
    EXPECT_EQ(list.rows()[0].name, "Hills");
    EXPECT_EQ(testing::preferred(list.rows()[0].typ), testing::preferred((user / "Hills.gmap/hills.typ").string()));
    EXPECT_EQ(list.rows()[1].name, "Roads");
    EXPECT_EQ(list.rows()[1].tdb, k_cant_find_tdb);
    EXPECT_EQ(list.rows()[1].fid, 400);
}

}  // namespace
}  // namespace korvex::integration
