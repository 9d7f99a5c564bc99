#include "workbench/element_rows.h"

#include <algorithm>
#include <unordered_set>

#include "model/row_watch.h"
#include "text/point_reader.h"
#include "text/polygon_line_reader.h"
#include "typ/curf_access.h"
#include "workbench/draworder_entries.h"
#include "workbench/row_ops.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

// The key of a line without blanks, lower case.
std::string squeezed_lower(std::string_view line) {
    std::string out;
    for (char c : line)
        if (c != ' ' && c != '\t' && c != '\r') out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

int32_t night_rows(const std::string& rows) { return static_cast<int32_t>(std::count(rows.begin(), rows.end(), '\n')); }

// The night counters without what the row holds.
void forget_night(model::Store& s, int table, int32_t row) {
    const auto r = static_cast<size_t>(row);
    if (table == model::k_polygons && r < s.pg_lab.size() && !s.pg_lab[r].empty() && s.pg_lab[r][0] == 1 &&
        s.pg_nnight > 0)
        --s.pg_nnight;
    if (table == model::k_points && r < s.pt_nbmp.size()) s.pt_nnight = std::max(0, s.pt_nnight - night_rows(s.pt_nbmp[r]));
}

}  // namespace

int32_t section_code(const std::string& section) {
    int32_t code = -1;
    typ::for_each_line(section, [&](std::string_view line) {
        const std::string low = squeezed_lower(line);
        if (low.empty() || low[0] == ';' || low[0] == '"') return;
        if (low.rfind("subtype=", 0) == 0) {
            if (code >= 0) code = text::reader::with_subtype(code, std::string(line));
            return;
        }
        if (code < 0 && (low.rfind("type=", 0) == 0 || low.rfind("id=", 0) == 0)) {
            const size_t eq = low.find('=');
            code = type_code(low.substr(eq + 1));
        }
    });
    return code;
}

std::string section_activity(const std::string& section) {
    std::string code;
    typ::for_each_line(section, [&](std::string_view line) {
        if (!code.empty()) return;
        const std::string low = squeezed_lower(line);
        if (low.rfind("activity=", 0) == 0) code = text::activity_code(std::string(line.substr(line.find('=') + 1)));
    });
    return code;
}

void parse_into(model::Store& s, platform::Prompt& ui, int cls, int32_t row, const std::string& section) {
    const int table = table_of(cls);
    model::note_changing(s, table, row);
    forget_night(s, table, row);
    // The line reader gives an active line its default activity from the class on show.
    const int shown = s.curclass;
    s.curclass = cls;
    switch (table) {
    case model::k_polygons: text::pgonparse_txt(s, ui, section, row, true); break;
    case model::k_lines: text::pollineparse(s, ui, section, row, true); break;
    default: text::poiparse(s, ui, section, row, true); break;
    }
    s.curclass = shown;
}

int32_t newpoishuffle(model::Store& s) {
    const int32_t row = s.pt_n;
    insert_row(s, model::k_points, row);
    ++s.pt_n;
    return row;
}

int32_t append_element(model::Store& s, platform::Prompt& ui, int cls, const std::string& section) {
    if (cls == model::k_points) {
        const int32_t row = newpoishuffle(s);
        parse_into(s, ui, cls, row, section);
        return row;
    }
    const int32_t row = end_row(s, cls);
    insert_row(s, cls, row);
    switch (cls) {
    case model::k_polygons: ++s.pg_n; s.pg_ni = s.pg_n; break;
    case model::k_lines: ++s.ln_n; break;
    case model::k_active_lines: ++s.ln_nact; break;
    case model::k_extra_points: ++s.pt_nx; break;
    default: break;
    }
    if (cls == model::k_polygons && s.pg_drw.size() < static_cast<size_t>(s.pg_n) + 1) s.pg_drw.resize(static_cast<size_t>(s.pg_n) + 1);
    parse_into(s, ui, cls, row, section);
    return row;
}

int32_t addpolygon(model::Store& s, platform::Prompt& ui, const std::string& section, int level) {
    const int32_t row = append_element(s, ui, model::k_polygons, section);
    const int32_t code = row_type_code(s, model::k_polygons, row);
    bool can_have = true;
    drw_code(code, &can_have);
    if (!can_have) level = 0;
    s.pg_drw[static_cast<size_t>(row)] = drw_entry(code, level);
    add_draworder(s, code, level);
    return row;
}

int32_t create_newline(model::Store& s, platform::Prompt& ui, const std::string& section, bool active) {
    return append_element(s, ui, active ? model::k_active_lines : model::k_lines, section);
}

int32_t new_poi(model::Store& s, platform::Prompt& ui, const std::string& section) {
    return append_element(s, ui, model::k_points, section);
}

int32_t new_extrapoi(model::Store& s, platform::Prompt& ui, const std::string& section) {
    return append_element(s, ui, model::k_extra_points, section);
}

std::string row_type_text(const model::Store& s, int cls, int32_t row) {
    return "0x" + five_digits(row_type_code(s, cls, row));
}

std::vector<std::string> remove_elements(model::Store& s, int cls, std::vector<int32_t> rows) {
    const int32_t first = first_row(s, cls), end = end_row(s, cls);
    rows.erase(std::remove_if(rows.begin(), rows.end(), [&](int32_t r) { return r < first || r >= end; }), rows.end());
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::vector<std::string> types;
    if (rows.empty()) return types;
    const int table = table_of(cls);
    std::unordered_set<int32_t> gone;
    for (const int32_t r : rows) {
        types.push_back(row_type_text(s, cls, r));
        forget_night(s, table, r);
        gone.insert(row_type_code(s, cls, r));
    }
    erase_rows(s, cls, rows);
    const auto k = static_cast<int32_t>(rows.size());
    switch (cls) {
    case model::k_polygons: s.pg_n -= k; s.pg_ni = s.pg_n; break;
    case model::k_lines: s.ln_n -= k; break;
    case model::k_active_lines: s.ln_nact -= k; break;
    case model::k_points: s.pt_n -= k; break;
    case model::k_extra_points: s.pt_nx -= k; break;
    default: break;
    }
    fit_columns(s, table);
    if (cls == model::k_polygons) {
        // A type another polygon still has keeps its layer.
        for (int32_t r = 0; r < s.pg_n; ++r) gone.erase(row_type_code(s, cls, r));
        remove_draworders(s.drwlist, gone);
        remove_draworders(s.walk.no_level_types, gone);
    }
    return types;
}

}  // namespace korvex::workbench
