#include "workbench/label_pixel.h"

#include <algorithm>

#include "workbench/point_checks.h"
#include "workbench/point_section.h"

namespace korvex::workbench {

namespace {

constexpr const char* k_need_pois = "Please show POIs";

std::string label_key(int cpp) { return cpp == 2 ? "$$" : "$"; }

// The last key of a row, "" for a row shorter than a key.
std::string_view last_key(const std::string& row, int cpp) {
    const auto k = static_cast<size_t>(cpp);
    return row.size() < k ? std::string_view() : std::string_view(row).substr(row.size() - k);
}

void set_last_key(std::string& row, const std::string& key) { row.replace(row.size() - key.size(), key.size(), key); }

// The transparent key of a point's picture, "" without one.
std::string none_key(const PointPicture& p) {
    const int at = none_index(p);
    return at < 0 ? std::string() : colour_key(p.colour_lines[static_cast<size_t>(at)], p.cpp);
}

// The selection of a label-pixel tool, after its refusals and prompts.
bool label_pixel_rows(const model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
                      const BatchRequest& req, std::vector<int32_t>& rows) {
    if (!points_in_view(b)) {
        ui.message(k_need_pois);
        return false;
    }
    return batch_start(s, b, ui, m, req.all, rows);
}

}  // namespace

int adpixel(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
            const BatchRequest& req) {
    std::vector<int32_t> rows;
    if (!label_pixel_rows(s, ui, m, b, req, rows)) return 0;
    BatchReport report;
    int added = 0;
    for (const int32_t r : rows) {
        const auto row = static_cast<size_t>(r);
        std::string why;
        if (chkcanv(s, r, why)) {
            report.add_lines(why);
            continue;
        }
        PointPicture p = read_point_picture(s, r);
        const std::string none = none_key(p);
        if (s.pt_mode[row] != 1 || none.empty() || p.rows.empty()) continue;
        const std::string key = label_key(p.cpp);
        // The last column must be free, and the pixel's colour must show.
        const bool free = std::all_of(p.rows.begin(), p.rows.end(),
                                      [&](const std::string& x) { return last_key(x, p.cpp) == none; });
        if (!free || key == none) {
            report.add(s.pt_typ[row]);
            continue;
        }
        set_last_key(p.rows[p.rows.size() / 4], key);
        updpoicod(s, ui, r, p);
        ++added;
    }
    report.show(ui, req.data_folder, k_label_pixel_report, "Add POI Label Pixel");
    ui.message("Pixels added:" + std::to_string(added));
    if (added > 0) s.dirty = true;
    return added;
}

int rempxl(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
           const BatchRequest& req) {
    std::vector<int32_t> rows;
    if (!label_pixel_rows(s, ui, m, b, req, rows)) return 0;
    int removed = 0;
    for (const int32_t r : rows) {
        std::string why;
        if (chkcanv(s, r, why)) continue;
        PointPicture p = read_point_picture(s, r);
        const std::string none = none_key(p);
        if (none.empty()) continue;
        const std::string key = label_key(p.cpp);
        int counted = 0;
        size_t kept = 0;
        bool finished = true;
        for (size_t y = 0; y < p.rows.size() && finished; ++y) {
            const std::string_view last = last_key(p.rows[y], p.cpp);
            if (last == key) {
                ++counted;
                kept = y;
            } else if (last != none) {
                finished = false;
            }
        }
        if (!finished || counted != 1) continue;
        set_last_key(p.rows[kept], none);
        updpoicod(s, ui, r, p);
        ++removed;
    }
    ui.message("Pixels removed : " + std::to_string(removed));
    if (removed > 0) s.dirty = true;
    return removed;
}

}  // namespace korvex::workbench
