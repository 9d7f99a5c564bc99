// "Auto check Draworder Duplicates": a TYP whose draw order lists a type
// twice loses the later entry when opened, and says so; with the setting off
// the file's draw order stays as it is.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "support/harness.h"
#include "text/load_driver.h"
#include "workbench/session.h"

using namespace korvex;
using namespace korvex::workbench;
namespace fs = std::filesystem;

namespace {

std::string typ_with_duplicate() {
    platform::ScriptedPrompt ui;
    model::Store s;
    model::newproject(s);
    const std::string xpm = "Xpm=\"0 0 1 0\"\r\n\"1 c #102030\"\r\n[end]\r\n";
    text::load_txt(s, ui, "d.txt",
                   "[_id]\r\nFID=1\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n[_polygon]\r\nType=0x01\r\n" + xpm +
                       "[_polygon]\r\nType=0x02\r\n" + xpm,
                   false, false);
    s.drwlist = " 0001,1 0002,2 0001,3";
    return korvex::testing::encode(s, ui);
}

size_t grid_builds(const RecordingView& view) { return static_cast<size_t>(std::count(view.calls.begin(), view.calls.end(), "grid")); }

// Notes, with each message, how often the grid had been built.
struct GridWatchingPrompt : platform::ScriptedPrompt {
    const RecordingView* view = nullptr;
    std::vector<size_t> grids_before;
    void message(const std::string& text) override {
        grids_before.push_back(view ? grid_builds(*view) : 0);
        ScriptedPrompt::message(text);
    }
};

struct Opened {
    model::Store s;
    GridWatchingPrompt ui;
    size_t grids = 0;  // builds of the grid in all
};

void open(Opened& o, bool auto_check) {
    const fs::path dir = fs::temp_directory_path() / ("korvex_duplicates_" + std::to_string(::getpid()));
    fs::create_directories(dir / "system");
    const std::string path = (dir / "dup.typ").string();
    std::ofstream(path, std::ios::binary) << typ_with_duplicate();
    AppSettings settings;
    settings.no_duplicate_check = auto_check ? 0 : 1;
    integration::Messages msgs;
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{korvex::testing::k_fixed_stamp};
    RecordingView view;
    o.ui.view = &view;
    Session session{o.s, settings, msgs, o.ui, dialogs, launcher, clock, dir.string(), view};
    session.start();
    EXPECT_TRUE(session.open_path(path));
    o.grids = grid_builds(view);
    o.ui.view = nullptr;
    fs::remove_all(dir);
}

}  // namespace

TEST(DrawOrderAfterLoad, DuplicatesGoWhenTheSettingAsks) {
    Opened on;
    open(on, true);
    EXPECT_EQ(on.s.drwlist, " 0001,1 0002,2");
    EXPECT_EQ(on.s.pg_drw[0], "Type=0001,1");
    EXPECT_TRUE(on.s.dirty);
    ASSERT_FALSE(on.ui.messages.empty());
    EXPECT_EQ(on.ui.messages.back(), "Found and removed duplicates :\r\n\r\n0001,3");
    EXPECT_EQ(on.ui.grids_before.back(), on.grids);  // told over the loaded grid

    Opened off;
    open(off, false);
    EXPECT_EQ(off.s.drwlist, " 0001,1 0002,2 0001,3");
    EXPECT_FALSE(off.s.dirty);
}
