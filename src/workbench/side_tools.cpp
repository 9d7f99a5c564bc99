#include "workbench/side_tools.h"

#include <filesystem>

#include "platform/files.h"
#include "typ/curf_access.h"
#include "typ/sort_types.h"
#include "workbench/row_ops.h"

namespace korvex::workbench {

namespace {

constexpr std::string_view k_editor_name = "forvane.exe";

bool names_editor(const std::string& path) {
    const std::string low = typ::lower(path);
    return low.size() >= k_editor_name.size() && low.ends_with(k_editor_name) &&
           (low.size() == k_editor_name.size() || low[low.size() - k_editor_name.size() - 1] == '/' ||
            low[low.size() - k_editor_name.size() - 1] == '\\');
}

// Rows first .. end - 1 of a class in index order; true when they moved.
bool sort_range(model::Store& s, int cls, int32_t first, int32_t end) {
    if (end - first < 2) return false;
    const std::vector<int32_t> order = typ::sort_types(s, cls, first, end);
    bool moved = false;
    for (size_t k = 0; k < order.size(); ++k) moved = moved || order[k] != first + static_cast<int32_t>(k);
    if (moved) permute_rows(s, cls, first, order);
    return moved;
}

}  // namespace

bool load_style_editor(std::string& path, platform::Prompt& ui, platform::FileDialog& dialogs,
                       platform::Launcher& launcher) {
    if (!names_editor(path) || !platform::file_exists(path)) {
        const std::string folder = path.empty() ? std::string() : std::filesystem::path(path).parent_path().string();
        const std::string chosen = dialogs.open_file("Please find a Forvane.exe file.", {"Forvane (Forvane.exe)"}, folder);
        if (chosen.empty()) return false;
        if (!names_editor(chosen)) {
            ui.message("Please locate Style Editor.Settings --> Preferences");
            return false;
        }
        path = chosen;
    }
    return launcher.open(path);
}

bool sort_search_categories(model::Store& s, platform::Prompt& ui) {
    if (s.pg_n + s.ln_n + s.ln_nact + s.pt_n + s.pt_nx == 0) {
        ui.message("No data.");
        return false;
    }
    bool moved = sort_range(s, model::k_polygons, 0, s.pg_n);
    moved = sort_range(s, model::k_lines, 0, s.ln_n) || moved;
    moved = sort_range(s, model::k_lines, s.ln_n, s.ln_n + s.ln_nact) || moved;
    moved = sort_range(s, model::k_points, 0, s.pt_n) || moved;
    moved = sort_range(s, model::k_points, s.pt_n, s.pt_n + s.pt_nx) || moved;
    if (moved) s.dirty = true;
    return moved;
}

}  // namespace korvex::workbench
