#include "workbench/browser.h"

#include <algorithm>
#include <cmath>

#include "workbench/cell_label.h"
#include "workbench/selection.h"

namespace korvex::workbench {

namespace {

// Label heights of the fixed sizes, in text heights T, and their sides.
constexpr int k_sides[5] = {300, 615, 900, 1100, 1230};
constexpr int k_label_lines[5] = {1, 2, 3, 4, 4};
constexpr int k_row_gap = 50;
constexpr int k_margin = 100, k_draworder_margin = 400;
constexpr int k_cell_gap_px = 3;

bool night_polygon(const model::Store& s, int32_t row) {
    const auto r = static_cast<size_t>(row);
    return r < s.pg_lab.size() && !s.pg_lab[r].empty() && s.pg_lab[r][0] == 1;
}

bool night_point(const model::Store& s, int32_t row) {
    const auto r = static_cast<size_t>(row);
    return (r < s.pt_lab.size() && !s.pt_lab[r].empty() && s.pt_lab[r][0] == 1) ||
           (r < s.pt_nbmp.size() && !s.pt_nbmp[r].empty());
}

}  // namespace

Browser::Browser() { chg_icn(icon_, text_height_); }

void Browser::set_class(int cls) {
    if (cls < model::k_polygons || cls > model::k_extra_points) cls = model::k_polygons;
    if (cls == cls_) return;
    cls_ = cls;
    no_multi();
    cells_.clear();
    marks_.clear();
    current_ = -1;
    anchor_ = -1;
    last_hit_ = -1;
    hits_ = 0;
    last_search_.clear();
}

void Browser::chg_icn(int index, int text_height) {
    if (index < 0 || index > 5) index = 0;
    const int T = std::max(1, text_height);
    icon_ = index;
    text_height_ = T;
    if (index < 5) {
        geo_.S = k_sides[index];
        geo_.H = k_label_lines[index] * T;
    } else {
        geo_.S = 3 * custom_;
        int H = geo_.S / T * T;
        if (H < T) H = T;
        if (H > 2 * T && custom_ > 600) H = 3 * T;
        geo_.H = H;
    }
    geo_.P = geo_.S + geo_.H + k_row_gap;
    geo_.L = opt.draworder_view && cls_ == model::k_polygons ? k_draworder_margin : k_margin;
    geo_.top = k_margin;
}

void Browser::set_custom_size(int value) {
    custom_ = std::clamp(value, k_custom_min, k_custom_max);
    if (icon_ == 5) chg_icn(icon_, text_height_);
}

int Browser::to_px(int twips, double device_pixel_ratio) {
    return static_cast<int>(std::lround(twips * device_pixel_ratio / k_twips_per_pixel));
}

Geometry Browser::geometry_px(double device_pixel_ratio) const {
    const double r = device_pixel_ratio;
    return Geometry{to_px(geo_.S, r), to_px(geo_.H, r), to_px(geo_.P, r), to_px(geo_.L, r), to_px(geo_.top, r)};
}

int Browser::columns(int width) const {
    const double pitch = geo_.S + k_cell_gap_px * k_twips_per_pixel;
    // Ties go to the even number, as the rounding of the original grid did.
    const double c = std::nearbyint(width / pitch - 1.0);
    return c < 1.0 ? 1 : static_cast<int>(c);
}

int Browser::rows(int width) const {
    const int count = std::max(1, cell_count());
    const int c = columns(width);
    return (count + c - 1) / c;
}

int Browser::canvas_height(int width) const {
    const int count = std::max(1, cell_count());
    return (count / columns(width) + 2) * geo_.P;
}

int Browser::scroll_range(int width, int visible_height) const {
    return std::clamp(canvas_height(width) - visible_height, 0, k_scroll_limit);
}

int Browser::extra_page_size() const { return std::max(k_extra_page_min, opt.extra_page_size); }

void Browser::set_extra_page(int page) { extra_first_ = std::max(0, page) * extra_page_size(); }

std::vector<std::string> Browser::extra_pages(const model::Store& s) const {
    std::vector<std::string> pages;
    const int size = extra_page_size();
    for (int32_t first = 0; first < s.pt_nx; first += size)
        pages.push_back(std::to_string(first + 1) + " - " + std::to_string(std::min<int32_t>(first + size, s.pt_nx)));
    return pages;
}

bool Browser::build_grid(const model::Store& s) {
    if (building_) return false;
    building_ = true;
    geo_.L = opt.draworder_view && cls_ == model::k_polygons ? k_draworder_margin : k_margin;
    cells_.clear();
    int32_t first = 0, count = class_count(s, cls_);
    if (cls_ == model::k_active_lines) first = s.ln_n;
    if (cls_ == model::k_extra_points) {
        if (extra_first_ >= count) extra_first_ = 0;
        first = s.pt_n + extra_first_;
        count = std::min(count - extra_first_, extra_page_size());
    }
    const bool night_polygons = opt.show_night && cls_ == model::k_polygons;
    const bool night_points = opt.show_night && cls_ == model::k_points;
    cells_.reserve(static_cast<size_t>(count) + 10);
    layers_ = LayerLayout{};
    if (layer_view()) {
        layers_ = refresh_draworders(s, layer_columns_);
        for (const LayerCell& c : layers_.cells) cells_.push_back(Cell{c.row, false});
        count = 0;
    }
    for (int32_t k = 0; k < count; ++k) {
        const int32_t row = first + k;
        cells_.push_back(Cell{row, false});
        if ((night_polygons && night_polygon(s, row)) || (night_points && night_point(s, row)))
            cells_.push_back(Cell{row, true});
    }

    // The lists keep what still exists, so a rebuild after an edit keeps them.
    marks_.assign(cells_.size(), 0);
    auto keep = [&](std::string& list, uint8_t bit) {
        std::string kept = ",";
        for_each_cell(list, [&](int cell) {
            if (cell < cell_count() && !(marks_[static_cast<size_t>(cell)] & bit)) {
                marks_[static_cast<size_t>(cell)] |= bit;
                kept += std::to_string(cell) + ",";
            }
        });
        list = kept == "," ? std::string() : kept;
    };
    keep(sel1_, 1);
    keep(sel2_, 2);
    if (current_ >= cell_count()) current_ = -1;
    if (anchor_ >= cell_count()) anchor_ = -1;
    building_ = false;
    return true;
}

int32_t Browser::row_of(int cell) const {
    return cell >= 0 && cell < cell_count() ? cells_[static_cast<size_t>(cell)].row : -1;
}

bool Browser::night_cell(int cell) const { return cell >= 0 && cell < cell_count() && cells_[static_cast<size_t>(cell)].night; }

int Browser::cell_of_row(int32_t row) const {
    for (int k = 0; k < cell_count(); ++k)
        if (cells_[static_cast<size_t>(k)].row == row) return k;
    return -1;
}

int32_t class_count(const model::Store& s, int cls) {
    switch (cls) {
        case model::k_polygons: return s.pg_n;
        case model::k_lines: return s.ln_n;
        case model::k_points: return s.pt_n;
        case model::k_active_lines: return s.ln_nact;
        case model::k_extra_points: return s.pt_nx;
        default: return 0;
    }
}

bool drop_size_for_many(Browser& b, const model::Store& s, int text_height) {
    if (class_count(s, b.cls()) <= k_many_elements || b.icon_index() < 2) return false;
    b.chg_icn(0, text_height);
    return true;
}

std::string list_class_name(int cls) {
    static const char* const k_names[5] = {"polygons", "lines", "points", "activeroutes", "extrapois"};
    return cls >= 0 && cls < 5 ? k_names[cls] : k_names[0];
}

std::string list_elements(const model::Store& s, int cls) {
    int32_t first = 0;
    if (cls == model::k_active_lines) first = s.ln_n;
    if (cls == model::k_extra_points) first = s.pt_n;
    std::string out;
    const int32_t count = class_count(s, cls);
    for (int32_t k = 0; k < count; ++k) {
        const int32_t row = first + k;
        out += type_text(s, cls, row);
        out += '\t';
        out += label_text(s, cls, row);
        out += "\r\n";
    }
    return out;
}

}  // namespace korvex::workbench
