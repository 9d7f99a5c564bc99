#include "workbench/report_file.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "support/harness.h"

namespace fs = std::filesystem;
using korvex::platform::ScriptedPrompt;
using korvex::workbench::show_report;

// The report lands in its file under the data folder and in the viewer; a
// file that cannot be written still leaves the report shown.
TEST(ReportFile, WrittenUnderTheDataFolderAndShownEvenWhenTheFileFails) {
    const fs::path d = fs::temp_directory_path() / ("korvex_report_" + std::to_string(::getpid()));
    fs::remove_all(d);
    fs::create_directories(d / "system" / "bin");
    ScriptedPrompt ui;
    const std::string text = "UNUSED COLOURS: Lines\r\n2 0x00002 %\r\n";
    const std::string path = show_report(ui, d.string(), "system/bin/colorcheck.txt", "Unused colours", text);
    EXPECT_EQ(path, (d / "system" / "bin" / "colorcheck.txt").string());
    EXPECT_EQ(korvex::testing::read_bytes(path), text);
    EXPECT_EQ(show_report(ui, d.string(), "missing/linecheck.txt", "Lines", "None found."), "");
    ASSERT_EQ(ui.reports.size(), 2u);
    EXPECT_EQ(ui.reports[0].title, "Unused colours");
    EXPECT_EQ(ui.reports[0].text, text);
    EXPECT_EQ(ui.reports[1].text, "None found.");
    fs::remove_all(d);
}
