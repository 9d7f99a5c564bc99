#include "workbench/codepage_tools.h"

#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/native_path.h"
#include "text/codepage_repair.h"
#include "workbench/report_file.h"

namespace korvex::workbench {

namespace {

bool check_labels(model::Store& s, platform::Prompt& ui, const std::string& data_folder, int mode) {
    const bool utf8 = mode == text::k_repair_in_utf8;
    const int needed = utf8 ? 65001 : 1252;
    if (s.codepage != needed) {
        ui.message("Not codepage " + std::to_string(needed));
        return false;
    }
    std::string report;
    bool repaired = false;
    for (int cls : {model::k_polygons, model::k_lines, model::k_points}) {
        const text::CpRepair r = text::correct_cp(s, ui, cls, mode);
        report += r.report;
        repaired = repaired || r.repaired;
    }

    const std::string relative = utf8 ? k_report_65001 : k_report_1252;
    const std::filesystem::path path = platform::native_path(data_folder) / relative;
    std::error_code ec;
    std::filesystem::create_directories(path.parent_path(), ec);
    if (!repaired) {
        // The report replaces the one of the last run, even when clean.
        std::string error;
        if (!platform::write_file_atomic(platform::utf8_path(path), report, &error))
            ui.message("Cannot write " + platform::utf8_path(path) + ": " + error);
        ui.message("No errors found.");
        return false;
    }
    ui.message("Found & fixed errors.");
    s.dirty = true;
    show_report(ui, data_folder, relative, utf8 ? "Check 65001 labels" : "Check 1252 labels", report);
    return true;
}

}  // namespace

bool check_labels_65001(model::Store& s, platform::Prompt& ui, platform::Launcher& /*launcher*/,
                        const std::string& data_folder) {
    return check_labels(s, ui, data_folder, text::k_repair_in_utf8);
}

bool check_labels_1252(model::Store& s, platform::Prompt& ui, platform::Launcher& /*launcher*/,
                       const std::string& data_folder) {
    return check_labels(s, ui, data_folder, text::k_repair_in_1252);
}

}  // namespace korvex::workbench
