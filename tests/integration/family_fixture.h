// A copy of the test Wine prefix (with TYP files put in place) and a
// session over it, for the map-family tests.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "integration/family_typ.h"
#include "platform/files.h"
#include "platform/wine_platform.h"
#include "support/harness.h"

namespace korvex::integration {

namespace fs = std::filesystem;

inline std::string sample_typ() { return testing::source_dir() + "/data/samples/sample.typ"; }

inline void put_bytes(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string bytes_of(const fs::path& path) { return platform::read_file(path.string()).value_or(""); }

struct TempTree {
    fs::path root;
    explicit TempTree(const std::string& what) {
        static int made = 0;
        root = fs::temp_directory_path() /
               ("korvex_" + what + "_" + std::to_string(::getpid()) + "_" + std::to_string(++made));
        fs::remove_all(root);
        fs::create_directories(root);
    }
    ~TempTree() { fs::remove_all(root); }
};

// The prefix of tests/data with the families' TYP files installed:
// Alpine's "I0000123.TYP", Coast's "coast.typ", Lakes' "lakes.typ".
struct WinePrefixCopy {
    TempTree tree{"wine"};
    fs::path prefix = tree.root / "prefix";
    WinePrefixCopy() {
        fs::copy(testing::source_dir() + "/tests/data/wine_prefix", prefix, fs::copy_options::recursive);
        const std::string typ = bytes_of(sample_typ());
        put_bytes(alpine_typ(), typ);
        put_bytes(prefix / "drive_c/Garmin/Coast/coast.typ", typ);
        put_bytes(prefix / "drive_c/ProgramData/Garmin/Maps/Lakes/lakes.typ", typ);
    }
    fs::path alpine_typ() const { return prefix / "drive_c/Garmin/Alpine/I0000123.TYP"; }
};

// A session with a data folder of its own.
struct FamilyBench {
    TempTree data{"families_data"};
    model::Store s;
    workbench::AppSettings settings;
    Messages msgs;
    platform::ScriptedPrompt ui{platform::Answer::yes};
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{testing::k_fixed_stamp};
    workbench::RecordingView view;
    workbench::Session session{s, settings, msgs, ui, dialogs, launcher, clock, data.root.string(), view};
    FamilyBench() {
        fs::create_directories(data.root / "system");
        session.start();
    }
    FamilyTools tools(platform::MapPlatform& sys, platform::FileSystem& fs = platform::real_file_system()) {
        return FamilyTools{s, session, ui, sys, clock, data.root.string(), fs};
    }
    // Opens a copy of the sample as the project.
    std::string open_sample(const std::string& name = "mine.typ") {
        const std::string path = (data.root / name).string();
        fs::copy_file(sample_typ(), path);
        EXPECT_TRUE(session.open_path(path));
        ui.messages.clear();
        ui.questions.clear();
        return path;
    }
};

}  // namespace korvex::integration
