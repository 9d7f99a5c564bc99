// File > Open TYP in Map…: the session opens a container's TYP as the
// project, names the map and subfile in the caption, and Save puts the
// encoder's bytes back into the container.
#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

#include "integration/img_container.h"
#include "integration/map_typ.h"
#include "platform/files.h"
#include "support/harness.h"
#include "support/img_builder.h"
#include "workbench/session.h"

namespace fs = std::filesystem;
namespace platform = korvex::platform;
namespace workbench = korvex::workbench;
namespace integration = korvex::integration;
namespace model = korvex::model;

// Answers the question about another family as told, yes to all else.
struct FamilyPrompt : platform::ScriptedPrompt {
    platform::Answer family = platform::Answer::yes;
    platform::Answer yes_no_cancel(const std::string& text) override {
        if (text.find("family id") == std::string::npos) return ScriptedPrompt::yes_no_cancel(text);
        questions.push_back(text);
        return family;
    }
};

struct MapTypSession : ::testing::Test {
    void SetUp() override {
        dir = fs::temp_directory_path() / ("korvex-maptyp-" + std::to_string(::getpid()));
        fs::remove_all(dir);
        fs::create_directories(dir / "system");
        map = (dir / "gmapsupp.img").string();
        fs::copy_file(korvex::testing::source_dir() + "/tests/data/img/gmapsupp.img", map);
        session.start();
    }
    void TearDown() override { fs::remove_all(dir); }

    bool open_map(const std::string& path, integration::TypChoice choose = nullptr) {
        dialogs.script(path);
        return integration::open_typ_in_map(session, ui, dialogs, settings, choose);
    }
    std::string subfile(const std::string& path, size_t i) {
        std::string error, out;
        auto c = integration::read_container(path, error);
        EXPECT_TRUE(c) << error;
        if (c) {
            EXPECT_TRUE(integration::read_subfile(*c, i, out, error));
        }
        return out;
    }

    fs::path dir;
    std::string map;
    model::Store s;
    workbench::AppSettings settings;
    integration::Messages msgs;
    FamilyPrompt ui;
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{korvex::testing::k_fixed_stamp};
    workbench::RecordingView view;
    workbench::Session session{s, settings, msgs, ui, dialogs, launcher, clock, (dir / "data").string(), view};
};

TEST_F(MapTypSession, SaveWritesTheEditedTypIntoTheMapAndSaveAsMakesItAFile) {
    const std::string before = korvex::testing::read_bytes(map);
    ASSERT_TRUE(open_map(map));
    EXPECT_EQ(dialogs.calls.back().filters, "Map files (*.img)");
    EXPECT_EQ(s.curfile, map + ":0XSAMPLE.TYP");
    EXPECT_NE(view.caption.find(map + ":0XSAMPLE.TYP"), std::string::npos) << view.caption;
    EXPECT_EQ(s.fid, "4242");
    ASSERT_GT(s.pg_n, 1);
    const std::string tiles = subfile(map, 1) + subfile(map, 2) + subfile(map, 3);

    // An edit: the first polygon goes; Save writes the map, not a file of
    // the caption's name.
    s.pg_typ[0] = s.pg_typ[1];
    session.set_dirty(true);
    ASSERT_TRUE(session.save(workbench::k_save));
    EXPECT_FALSE(s.dirty);
    EXPECT_EQ(ui.messages.back(), "File: \r\n" + map + ":0XSAMPLE.TYP\r\n saved.");
    EXPECT_EQ(ui.last_progress, 100);
    EXPECT_NE(korvex::testing::read_bytes(map), before);
    EXPECT_EQ(subfile(map, 4), s.curf);
    EXPECT_EQ(subfile(map, 1) + subfile(map, 2) + subfile(map, 3), tiles);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator{}), 2);  // system and the map

    // Save As proposes the subfile's name beside the map; the project is
    // then that file, and Save no longer touches the map.
    const std::string as_file = (dir / "mine.typ").string();
    dialogs.script(as_file);
    ASSERT_TRUE(session.save(workbench::k_save_as));
    EXPECT_EQ(dialogs.calls.back().start, (dir / "0XSAMPLE.TYP").string());
    EXPECT_EQ(s.curfile, as_file);
    EXPECT_EQ(session.typ_holder(), nullptr);
    const std::string map_now = korvex::testing::read_bytes(map);
    session.set_dirty(true);
    ASSERT_TRUE(session.save(workbench::k_save));
    EXPECT_EQ(korvex::testing::read_bytes(map), map_now);
}

// Another family id: Cancel writes nothing, Yes puts the map's id into the
// TYP (and the field), No writes the TYP as it is.
TEST_F(MapTypSession, AnotherFamilyIdIsAskedAboutAndTheAnswerDecides) {
    ASSERT_TRUE(open_map(map));
    const std::string before = korvex::testing::read_bytes(map);
    std::string error;
    auto fid_in_map = [&] { return integration::read_container(map, error)->subfiles[4].fid; };

    s.fid = "77";
    session.set_dirty(true);
    ui.family = platform::Answer::cancel;
    EXPECT_FALSE(session.save(workbench::k_save));
    ASSERT_EQ(ui.questions.size(), 1u);
    EXPECT_NE(ui.questions[0].find("family id (FID) 77 is not the map's 4242"), std::string::npos);
    EXPECT_EQ(korvex::testing::read_bytes(map), before);
    EXPECT_TRUE(s.dirty);

    ui.family = platform::Answer::yes;
    ASSERT_TRUE(session.save(workbench::k_save));
    EXPECT_EQ(fid_in_map(), 4242);
    EXPECT_EQ(s.fid, "4242");
    EXPECT_EQ(subfile(map, 4), s.curf);

    s.fid = "77";
    session.set_dirty(true);
    ui.family = platform::Answer::no;
    ASSERT_TRUE(session.save(workbench::k_save));
    EXPECT_EQ(fid_in_map(), 77);
    EXPECT_EQ(s.fid, "77");
    EXPECT_EQ(ui.questions.size(), 3u);
}

TEST_F(MapTypSession, SeveralTypsAreChosenAndCancelKeepsTheOpenProject) {
    std::string second = korvex::testing::read_bytes(korvex::testing::source_dir() + "/data/samples/sample.typ");
    second[0x2f] = 9;  // family 9
    second[0x30] = 0;
    const std::string two = (dir / "two.img").string();
    ASSERT_TRUE(korvex::samples::build_img(two, 9, {{"00000001", "TYP", korvex::samples::typ_stub(1, 1, 600)},
                                                    {"00000009", "TYP", second}}));
    ASSERT_TRUE(open_map(map));
    std::vector<std::string> offered;
    auto cancel = [&](const std::string&, const std::vector<integration::ImgSubfile>& typs) {
        for (const auto& t : typs) offered.push_back(integration::subfile_line(t));
        return -1;
    };
    EXPECT_FALSE(open_map(two, cancel));
    EXPECT_EQ(offered, (std::vector<std::string>{"00000001.TYP  600 bytes  FID 1  PID 1",
                                                 "00000009.TYP  5837 bytes  FID 9  PID 1"}));
    EXPECT_EQ(s.curfile, map + ":0XSAMPLE.TYP");
    ASSERT_TRUE(open_map(two, [](const std::string&, const std::vector<integration::ImgSubfile>&) { return 1; }));
    EXPECT_EQ(s.curfile, two + ":00000009.TYP");
    EXPECT_EQ(s.fid, "9");
}

TEST_F(MapTypSession, AMapThatCannotBeOpenedIsSaidAndTheProjectStays) {
    ASSERT_TRUE(open_map(map));
    const int32_t polygons = s.pg_n;
    const std::string no_typ = korvex::testing::source_dir() + "/tests/data/img/no-typ.img";
    const std::string sample = korvex::testing::source_dir() + "/data/samples/sample.typ";
    const std::string cut = (dir / "cut.img").string();
    platform::write_file_atomic(cut, korvex::testing::read_bytes(map).substr(0, 0x2000));
    for (const auto& [path, says] : {std::pair{no_typ, std::string(" holds no TYP file.")},
                                     std::pair{sample, std::string(" is not a Garmin map file")},
                                     std::pair{cut, std::string(" is truncated: 0XSAMPLE.TYP")}}) {
        ui.messages.clear();
        EXPECT_FALSE(open_map(path));
        ASSERT_EQ(ui.messages.size(), 1u);
        EXPECT_EQ(ui.messages[0].rfind(path + says, 0), 0u) << ui.messages[0];
        EXPECT_EQ(s.curfile, map + ":0XSAMPLE.TYP");
        EXPECT_EQ(s.pg_n, polygons);
        EXPECT_NE(session.typ_holder(), nullptr);
    }
    // Cancel in the file dialog does nothing at all.
    EXPECT_FALSE(open_map(""));
    EXPECT_EQ(s.curfile, map + ":0XSAMPLE.TYP");
}
