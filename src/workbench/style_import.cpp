// The style import of ElementOps: a ".krvx" file of the types a map style
// uses, made into new elements, and the types it does not use, marked.
#include <optional>
#include <unordered_set>

#include "platform/files.h"
#include "text/string_lines.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "typ/type_range.h"
#include "workbench/draworder_entries.h"
#include "workbench/element_ops.h"
#include "workbench/element_rows.h"
#include "workbench/message_ids.h"
#include "workbench/new_sections.h"
#include "workbench/sort_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

constexpr int k_import_point_side = 16;
constexpr int k_import_level = 1;
constexpr const char* k_not_in_style = "NOT in STYLE";

std::string trim_line(const std::string& t) {
    const size_t a = t.find_first_not_of(" \r\n");
    if (a == std::string::npos) return {};
    return t.substr(a, t.find_last_not_of(" \r\n") - a + 1);
}

std::vector<std::string> split_at(const std::string& t, char sep) {
    std::vector<std::string> out;
    size_t pos = 0;
    for (size_t p; (p = t.find(sep, pos)) != std::string::npos; pos = p + 1) out.push_back(t.substr(pos, p - pos));
    out.push_back(t.substr(pos));
    return out;
}

void replace_all(std::string& t, const std::string& from, const std::string& to) {
    for (size_t p = t.find(from); p != std::string::npos; p = t.find(from, p + to.size())) t.replace(p, from.size(), to);
}

int class_of_word(const std::string& word) {
    const std::string w = typ::lower(trim_line(word));
    if (w == "points") return model::k_points;
    if (w == "lines") return model::k_lines;
    if (w == "polygons") return model::k_polygons;
    return -1;
}

// The second value of a type line: a tag whose value is yes, true or "*"
// (or any value but no and false) asks for the element; the label is the
// value, or the key where the value only says yes.
bool wanted(const std::string& value, std::string& label) {
    const size_t eq = value.find('=');
    if (eq == std::string::npos) return false;
    std::string v = trim_line(value.substr(eq + 1));
    v = v.substr(0, v.find("</"));
    const std::string low = typ::lower(v);
    if (low.empty() || low == "no" || low == "false") return false;
    label = low == "yes" || low == "true" || low == "*" ? trim_line(value.substr(0, eq)) : v;
    return true;
}

}  // namespace

bool ElementOps::import_krv(platform::FileDialog& dialogs, const std::string& start) {
    if (blocked()) return false;
    const std::string path = dialogs.open_file("Open File", {"Korvex Import File (*.krvx)"}, start);
    if (path.empty() || path.find('*') != std::string::npos) return false;
    std::string error;
    const auto text = platform::read_file(path, &error);
    if (!text) {
        ui_.message(path + " doesn't exist");
        return false;
    }
    return import_krv_text(*text) > 0;
}

// The elements of a type in the list get "NOT in STYLE" in their label.
bool ElementOps::mark_not_in_style(int cls, const std::string& list) {
    std::unordered_set<int32_t> codes;
    for (const std::string& item : split_at(list, ',')) {
        const int32_t code = type_code(trim_line(item));
        if (code >= 0) codes.insert(code);
    }
    bool changed = false;
    for (int32_t row = first_row(s_, cls); row < end_row(s_, cls); ++row) {
        if (!codes.count(row_type_code(s_, cls, row))) continue;
        // The element's text in the form the readers take for this project.
        std::string section = text::strings_to_pages(
            s_, text::convert(s_, text::create_code(s_, row - first_row(s_, cls) + 1, cls, true) + "[end]\r\n"));
        if (section.find(k_not_in_style) != std::string::npos) continue;
        std::string out;
        bool done = false;
        size_t pos = 0;
        while (pos < section.size()) {
            size_t end = section.find('\n', pos);
            end = end == std::string::npos ? section.size() : end + 1;
            std::string piece = section.substr(pos, end - pos);
            pos = end;
            const std::string low = typ::lower(trim_line(piece));
            if (!done && low.rfind("string", 0) == 0 && piece.find(',') != std::string::npos) {
                piece.insert(piece.find(',') + 1, std::string(k_not_in_style) + " ");
                done = true;
            } else if (!done && low.find("xpm=") != std::string::npos && low[0] != ';') {
                out += "String1=0x00," + std::string(k_not_in_style) + " \r\n";
                done = true;
            }
            out += piece;
        }
        if (!done) continue;
        parse_into(s_, ui_, cls, row, out);
        changed = true;
    }
    return changed;
}

int ElementOps::import_krv_text(const std::string& raw) {
    if (blocked()) return 0;
    std::string text = raw;
    for (char& c : text)
        if (c == '\t') c = ' ';
    replace_all(text, "  ", " ");
    replace_all(text, "  ", " ");
    int cls = s_.curclass;
    bool not_in_style = false, marked = false, stopped = false;
    int made[3] = {0, 0, 0};
    std::string seen = ",";
    std::vector<std::pair<int32_t, int>> levels;
    const IconColours colours = icon_colours(settings_);
    // The types of each class, looked up once and kept up to date.
    std::optional<TypeIndex> known[3];
    auto exists = [&](int kind, int32_t code) {
        if (!known[kind]) known[kind].emplace(s_, kind);
        return known[kind]->has(code);
    };
    for (const std::string& raw_line : split_at(text, '\n')) {
        const std::string line = trim_line(raw_line);
        if (line.empty() || stopped) continue;
        if (line.find("<Korvex>") != std::string::npos) continue;
        if (line.find("<2/>") != std::string::npos) cls = model::k_points;
        if (line.find("<1/>") != std::string::npos) cls = model::k_lines;
        if (line.find("<0/>") != std::string::npos) cls = model::k_polygons;
        if (line.find("/>") != std::string::npos && line.find('>') == line.find("/>") + 1) continue;
        if (line.find(k_not_in_style) != std::string::npos) {
            not_in_style = true;
            continue;
        }
        if (not_in_style) {
            marked = mark_not_in_style(cls, line) || marked;
            continue;
        }
        const size_t gt = line.find('>');
        if (gt == std::string::npos) continue;
        std::string word = line.substr(0, gt);
        if (!word.empty() && word[0] == '<') word.erase(0, 1);
        const int kind = class_of_word(word) >= 0 ? class_of_word(word) : cls;
        const std::vector<std::string> values = split_at(line.substr(gt + 1), ',');
        std::string type = trim_line(values[0].substr(0, values[0].find("</")));
        if (type.size() > 1 && type[0] == '0' && (type[1] == 'x' || type[1] == 'X')) type.erase(0, 2);
        const int32_t code = type_code(type);
        const std::string key = std::to_string(kind) + ":" + std::to_string(code) + ",";
        if (code < 0 || seen.find("," + key) != std::string::npos) continue;
        seen += key;
        std::string label;
        if (values.size() < 2 || !wanted(values[1], label)) continue;
        const std::string digits = five_digits(code);
        if (!typ::chktype(digits, kind).empty() || exists(kind, code)) continue;
        if (kind == model::k_polygons && host_.draworder_view()) {
            ui_.message("Please show all polygons");
            stopped = true;
            continue;
        }
        // The file is UTF-8; its labels go in as the project keeps them.
        if (kind == model::k_points) {
            new_poi(s_, ui_, as_project(new_point_section(digits, label, k_import_point_side, k_import_point_side, false, colours)));
        } else if (kind == model::k_lines) {
            create_newline(s_, ui_, as_project(new_line_section(digits, "", label, colours)), false);
        } else {
            // The level goes into the list once for all polygons, with one sort.
            const int32_t row = append_element(s_, ui_, kind, as_project(new_polygon_section(digits, label, colours)));
            bool can_have = true;
            drw_code(code, &can_have);
            const int level = can_have ? k_import_level : 0;
            s_.pg_drw[static_cast<size_t>(row)] = drw_entry(code, level);
            levels.emplace_back(code, level);
        }
        known[kind]->add(code, 0);
        ++made[kind];
    }
    add_draworders(s_, levels);
    const int total = made[0] + made[1] + made[2];
    if (total == 0) {
        ui_.message("No new icons added");
        if (marked) host_.tables_changed(-1);
        return 0;
    }
    for (const int c : {model::k_polygons, model::k_lines, model::k_points}) sort_types(s_, c);
    ui_.message("Added Polygons:" + std::to_string(made[0]) + " Lines:" + std::to_string(made[1]) +
                " Points:" + std::to_string(made[2]) + "\r\n\r\n" + msg(m_sort_after_import));
    host_.tables_changed(-1);
    return total;
}

}  // namespace korvex::workbench
