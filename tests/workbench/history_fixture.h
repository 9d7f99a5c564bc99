// A session with element operations that record into its history, and the
// table of recordable operations that the undo suites run: each kind does
// one random change of its sort to the open project (or nothing when the
// project has nothing it could change). Add a kind here and every suite
// over the table takes it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/launcher.h"
#include "support/harness.h"
#include "workbench/element_ops.h"
#include "workbench/session.h"
#include "ops_fixture.h"

namespace korvex::workbench::test {

// A data folder of its own under the temp folder.
struct HistoryFolder {
    std::filesystem::path root;
    HistoryFolder();
    ~HistoryFolder();
};

struct HistoryBench {
    HistoryFolder dir;
    model::Store s;
    AppSettings settings;
    integration::Messages msgs;
    platform::ScriptedPrompt ui{platform::Answer::yes};
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{testing::k_fixed_stamp};
    RecordingView view;
    Session session{s, settings, msgs, ui, dialogs, launcher, clock, dir.root.string(), view};
    platform::MemoryClipboard clip;
    ScriptedDialogs element_dialogs;
    RecordingHost host;
    ElementOps ops{s, ui, clip, msgs, settings, element_dialogs, host};

    HistoryBench();
    History& history() { return session.history(); }

    // Opens a copy of a file (TYP or text) as the project.
    bool open(const std::string& path);
    // What a save would write: the TYP bytes, then the text; the project is
    // left as it is.
    std::string saved();
};

using Rng = std::mt19937;

struct OpKind {
    const char* name;
    std::function<void(HistoryBench&, Rng&)> run;
};

// The code panel's text of a row, as the window fills it (curclass and
// curel set to the row).
std::string panel_of(HistoryBench& b, int cls, int32_t row);

// The text with its first line starting with key ending in value instead.
std::string with_line(const std::string& text, const std::string& key, const std::string& value);

// Every kind of change the workbench records.
const std::vector<OpKind>& recorded_kinds();

}  // namespace korvex::workbench::test
