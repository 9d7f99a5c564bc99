#include "workbench/batch_frame.h"

#include <algorithm>

#include "model/crlf.h"
#include "workbench/message_ids.h"
#include "workbench/report_file.h"
#include "workbench/selection.h"

namespace korvex::workbench {

int max_size(const AppSettings& settings) {
    const int v = settings.max_canvas_poi > 0 ? settings.max_canvas_poi : k_max_size_default;
    // A point record holds width and height in a byte each.
    return std::clamp(v, k_max_size_least, 255);
}

bool points_in_view(const Browser& b) { return b.cls() == model::k_points || b.cls() == model::k_extra_points; }

std::vector<int32_t> batch_rows(const model::Store& s, const Browser& b, bool all) {
    std::vector<int32_t> rows;
    if (all) {
        const int32_t first = b.cls() == model::k_extra_points ? s.pt_n : b.cls() == model::k_active_lines ? s.ln_n : 0;
        const int32_t n = class_count(s, b.cls());
        rows.reserve(static_cast<size_t>(std::max(n, 0)));
        for (int32_t k = 0; k < n; ++k) rows.push_back(first + k);
        return rows;
    }
    std::unordered_set<int32_t> seen;
    auto take = [&](int cell) {
        const int32_t r = b.row_of(cell);
        if (r >= 0 && seen.insert(r).second) rows.push_back(r);
    };
    for_each_cell(b.sel1(), take);
    for_each_cell(b.sel2(), take);
    return rows;
}

bool batch_selection(const model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
                     bool all, std::vector<int32_t>& rows) {
    rows.clear();
    if (class_count(s, b.cls()) <= 0) {
        ui.message(m.get_msg(m_no_data));
        return false;
    }
    rows = batch_rows(s, b, all);
    if (rows.empty()) {
        ui.message(m.get_msg(m_ctrl_select) + m.get_msg(m_select_hint));
        return false;
    }
    return true;
}

bool confirm_no_undo(const model::Store& s, platform::Prompt& ui, const integration::Messages& m) {
    if (!s.opt.ask_reload_undo) return true;
    ui.message(m.get_msg(m_reload_to_undo));
    return ui.yes_no_cancel(m.get_msg(m_continue)) == platform::Answer::yes;
}

bool batch_start(const model::Store& s, const Browser& b, platform::Prompt& ui, const integration::Messages& m,
                 bool all, std::vector<int32_t>& rows) {
    if (!batch_selection(s, b, ui, m, all, rows)) return false;
    if (confirm_no_undo(s, ui, m)) return true;
    rows.clear();
    return false;
}

void BatchReport::add(const std::string& line) {
    if (seen_.insert(line).second) lines_.push_back(line);
}

void BatchReport::add_lines(const std::string& lines) {
    size_t pos = 0;
    while (pos < lines.size()) {
        size_t nl = lines.find('\n', pos);
        if (nl == std::string::npos) nl = lines.size();
        std::string line = lines.substr(pos, nl - pos);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) add(line);
        pos = nl + 1;
    }
}

std::string BatchReport::text() const {
    std::string out = "Excluded:";
    out += k_crlf;
    for (const std::string& line : lines_) {
        out += line;
        out += k_crlf;
    }
    return out;
}

void BatchReport::show(platform::Prompt& ui, const std::string& data_folder, const std::string& relative,
                       const std::string& title) const {
    if (!empty()) show_report(ui, data_folder, relative, title, text());
}

bool within_colours(const PointPicture& p, const std::string& type, BatchReport& report) {
    if (static_cast<int>(p.colour_lines.size()) <= k_max_colours) return true;
    report.add(type + " colours exceeds 255");
    return false;
}

bool within_size(int width, int height, int max, const std::string& type, BatchReport& report) {
    if (width <= max && height <= max) return true;
    report.add(type + " Max width/height set to " + std::to_string(max) + ".Change in Settings");
    return false;
}

}  // namespace korvex::workbench
