// A main window for the window tests: its own data folder, and scripted
// answers, file dialogs, launcher, clock and clipboard, so that nothing of
// the user's desktop or settings takes part.
#pragma once

#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "gui/main_window.h"
#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/file_dialog.h"
#include "platform/launcher.h"
#include "platform/prompt.h"
#include "support/harness.h"

namespace korvex::testing {

// The bundled samples the window tests open.
inline const std::string k_samples = source_dir() + "/data/samples/";

struct WindowFixture {
    QTemporaryDir home;
    platform::MapEnvironment env;
    platform::ScriptedPrompt prompt;
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{{2024, 5, 17, 13, 45, 30}};
    platform::MemoryClipboard clipboard;
    std::unique_ptr<gui::MainWindow> w;

    // fallback: the answer to every question a test did not script.
    explicit WindowFixture(platform::Answer fallback) : prompt(fallback) {
        const std::string dir = home.path().toStdString();
        env.set("HOME", dir);
        env.set("XDG_DATA_HOME", dir + "/data");
    }

    // The scripted services over the fixture's folder.
    gui::WindowServices services() {
        gui::WindowServices sv;
        sv.prompt = &prompt;
        sv.dialogs = &dialogs;
        sv.launcher = &launcher;
        sv.clock = &clock;
        sv.env = &env;
        sv.clipboard = &clipboard;
        sv.program_folder = home.path().toStdString();
        return sv;
    }

    // Makes the window, shows it at the size and waits until it is on screen.
    void show(const gui::WindowServices& sv, int width, int height) {
        w = std::make_unique<gui::MainWindow>(sv);
        w->resize(width, height);
        w->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(w.get()));
    }

    // A file in the fixture's folder.
    std::string path(const std::string& name) const { return home.filePath(QString::fromStdString(name)).toStdString(); }
};

}  // namespace korvex::testing
