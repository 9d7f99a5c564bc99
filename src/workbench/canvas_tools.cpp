#include "workbench/canvas_tools.h"

#include <algorithm>
#include <cstring>

#include "workbench/point_checks.h"
#include "workbench/point_keys.h"
#include "workbench/point_section.h"

namespace korvex::workbench {

namespace {

constexpr const char* k_show_pois = "Please show POIs";

// The rows hold height rows of width keys each.
bool rows_fit(const PointPicture& p) {
    if (static_cast<int>(p.rows.size()) != p.height) return false;
    const size_t full = static_cast<size_t>(p.width) * static_cast<size_t>(p.cpp);
    return std::all_of(p.rows.begin(), p.rows.end(), [&](const std::string& x) { return x.size() == full; });
}

std::string repeated_key(const std::string& key, int n) {
    std::string out;
    out.reserve(key.size() * static_cast<size_t>(std::max(n, 0)));
    for (int i = 0; i < n; ++i) out += key;
    return out;
}

// The transparent key of the picture, a "none" colour added when it has
// none. "" when the colour would break the limit (reported).
std::string transparent_key(PointPicture& p, const std::string& type, BatchReport& report) {
    const int at = none_index(p);
    if (at >= 0) {
        if (!within_colours(p, type, report)) return {};
        return colour_key(p.colour_lines[static_cast<size_t>(at)], p.cpp);
    }
    PointPicture grown = p;
    const std::string key = add_colour(grown, "none");
    if (!within_colours(grown, type, report)) return {};
    p = std::move(grown);
    return key;
}

// A selected point the canvas tools may change: its picture, or false when
// it is passed over (with its reasons in the report).
bool canvas_candidate(const model::Store& s, int32_t r, BatchReport& report, PointPicture& p) {
    std::string why;
    if (chkcanv(s, r, why)) {
        report.add_lines(why);
        return false;
    }
    p = read_point_picture(s, r);
    if (p.width <= 0 || p.height <= 0 || !rows_fit(p)) {
        report.add(s.pt_typ[static_cast<size_t>(r)] + " oops bmp width");
        return false;
    }
    return true;
}

// The picture grown by left, right, top and bottom transparent pixels.
// False (nothing changed) when the size or colour limits stop it.
bool grow_picture(const model::Store& s, int32_t r, const BatchRequest& req, BatchReport& report, PointPicture& p,
                  int left, int right, int top, int bottom) {
    const std::string& type = s.pt_typ[static_cast<size_t>(r)];
    const int w = p.width + left + right, h = p.height + top + bottom;
    if (!within_size(w, h, req.max_size, type, report)) return false;
    const std::string key = transparent_key(p, type, report);
    if (key.empty()) return false;
    const std::string before = repeated_key(key, left), after = repeated_key(key, right), blank = repeated_key(key, w);
    std::vector<std::string> rows;
    rows.reserve(static_cast<size_t>(h));
    rows.insert(rows.end(), static_cast<size_t>(top), blank);
    for (const std::string& x : p.rows) rows.push_back(before + x + after);
    rows.insert(rows.end(), static_cast<size_t>(bottom), blank);
    p.rows = std::move(rows);
    p.width = w;
    p.height = h;
    p.colours = static_cast<int>(p.colour_lines.size());
    p.mode = "16";
    return true;
}

// The walk every canvas tool makes over the selection; change(r, p) edits
// the picture and says whether it is to be written. The count of points
// changed, -1 when the tool stopped before its walk.
template <class Change>
int canvas_walk(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
                const BatchRequest& req, const std::string& title, Change&& change) {
    if (!points_in_view(b)) {
        ui.message(k_show_pois);
        return -1;
    }
    std::vector<int32_t> rows;
    if (!batch_start(s, b, ui, m, req.all, rows)) return -1;
    BatchReport report;
    int changed = 0;
    for (const int32_t r : rows) {
        PointPicture p;
        if (!canvas_candidate(s, r, report, p) || !change(r, p, report)) continue;
        updpoicod(s, ui, r, p);
        ++changed;
    }
    if (changed > 0) s.dirty = true;
    report.show(ui, req.data_folder, k_canvas_report, title);
    return changed;
}

}  // namespace

int adcanvas(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
             const BatchRequest& req, char side) {
    if (side != 'L' && side != 'R' && side != 'U' && side != 'D') return 0;
    const int n = canvas_walk(s, ui, m, b, req, "Add Canvas", [&](int32_t r, PointPicture& p, BatchReport& report) {
        const int w = p.width, h = p.height;
        return grow_picture(s, r, req, report, p, side == 'L' ? w : 0, side == 'R' ? w : 0, side == 'U' ? h : 0,
                            side == 'D' ? h : 0);
    });
    return std::max(n, 0);
}

int adborder(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
             const BatchRequest& req, int n) {
    if (n < 1 || n > 9) return 0;
    const int changed =
        canvas_walk(s, ui, m, b, req, "Add Border", [&](int32_t r, PointPicture& p, BatchReport& report) {
            return grow_picture(s, r, req, report, p, n, n, n, n);
        });
    return std::max(changed, 0);
}

int canvas(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
           const BatchRequest& req, char choice, int amount) {
    if (choice == '\0' || std::strchr(k_canvas_choices, choice) == nullptr) {
        ui.message("Please select spaces");
        return 0;
    }
    if (choice == 'M') return adborder(s, ui, m, b, req, amount);
    return adcanvas(s, ui, m, b, req, choice);
}

int remborder(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
              const BatchRequest& req) {
    const int reduced =
        canvas_walk(s, ui, m, b, req, "Remove White Space", [&](int32_t, PointPicture& p, BatchReport&) {
            const int at = none_index(p);
            if (p.colour_lines.size() < 2 || at < 0) return false;
            const std::string key = colour_key(p.colour_lines[static_cast<size_t>(at)], p.cpp);
            const TrimEdges t = chktrbmp(p.rows, key, p.width);
            // A picture of nothing but transparent pixels keeps its size.
            if (t.width_error || t.all || t.top + t.bottom + t.left + t.right == 0) return false;
            const auto k = static_cast<size_t>(p.cpp);
            std::vector<std::string> rows;
            rows.reserve(static_cast<size_t>(p.height - t.top - t.bottom));
            for (int y = t.top; y < p.height - t.bottom; ++y)
                rows.push_back(p.rows[static_cast<size_t>(y)].substr(static_cast<size_t>(t.left) * k,
                                                                     static_cast<size_t>(p.width - t.left - t.right) * k));
            p.rows = std::move(rows);
            p.width -= t.left + t.right;
            p.height -= t.top + t.bottom;
            return true;
        });
    if (reduced < 0) return 0;
    ui.message("Pois reduced:" + std::to_string(reduced));
    return reduced;
}

}  // namespace korvex::workbench
