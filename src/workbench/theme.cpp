#include "workbench/theme.h"

#include <cctype>
#include <set>
#include <utility>

#include "model/crlf.h"
#include "platform/files.h"
#include "text/load_driver.h"
#include "typ/curf_access.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

// Trails and one extended type are drawn dashed, railways and one other striped.
const std::set<int32_t> k_dashed = {0x1600, 0x1080c};
const std::set<int32_t> k_striped = {0x1400, 0x10c00};
constexpr int k_dashed_width = 2;
constexpr int k_other_width = 4;

std::string trim_white(const std::string& t) {
    const size_t a = t.find_first_not_of(" \t\r\n");
    if (a == std::string::npos) return {};
    return t.substr(a, t.find_last_not_of(" \t\r\n") - a + 1);
}

std::vector<std::string> split_by(const std::string& t, const std::string& sep) {
    std::vector<std::string> out;
    size_t pos = 0;
    for (size_t p; (p = t.find(sep, pos)) != std::string::npos; pos = p + sep.size()) out.push_back(t.substr(pos, p - pos));
    out.push_back(t.substr(pos));
    return out;
}

void erase_all(std::string& t, const std::string& what) {
    for (size_t p = t.find(what); p != std::string::npos; p = t.find(what, p)) t.erase(p, what.size());
}

// A colour behind a "#": up to a blank or "/>"; "0" when there is none.
std::string colour_value(const std::string& piece) {
    size_t end = piece.find_first_of(" \t\r\n");
    const size_t close = piece.find("/>");
    if (close < end) end = close;
    const size_t gt = piece.find('>');
    if (gt < end) end = gt;
    std::string v = trim_white(piece.substr(0, end));
    return v.empty() ? std::string("0") : v;
}

// The number behind "KEY=" in an entry's head; -1 without one.
int attribute(const std::string& entry, const std::string& key) {
    const size_t head_end = entry.find('>');
    const size_t at = entry.find(key + "=");
    if (at == std::string::npos || at > head_end) return -1;
    size_t p = at + key.size() + 1;
    while (p < entry.size() && entry[p] == ' ') ++p;
    int v = 0;
    bool any = false;
    while (p < entry.size() && std::isdigit(static_cast<unsigned char>(entry[p]))) {
        v = v * 10 + (entry[p++] - '0');
        any = true;
        if (v > 999) break;
    }
    return any ? v : -1;
}

std::string colour_line(int k, const std::string& c) {
    return "\"" + std::to_string(k) + " c " + (c == "0" || c.empty() ? std::string("none") : "#" + c) + "\"" + k_crlf;
}

std::string line_picture(int32_t code, const std::string& c1, const std::string& c2, int colours) {
    const std::string second = c2 == "0" ? std::string("none") : c2;
    if (k_dashed.count(code)) {
        const std::string a = "\"00000000110000000000000011000000\"\r\n", b = "\"00000001110000000000000111000000\"\r\n";
        return "Xpm=\"32 4 2 1\"\r\n" + colour_line(0, second) + colour_line(1, c1) + a + b + b + a;
    }
    if (k_striped.count(code)) {
        const std::string zero = "\"" + std::string(32, '0') + "\"\r\n";
        const std::string stripe = "\"00000000000000001111111111111111\"\r\n";
        return "Xpm=\"32 6 2 1\"\r\n" + colour_line(0, second) + colour_line(1, c1) + zero + stripe + stripe + stripe +
               stripe + zero;
    }
    std::string out = "Xpm=\"0 0 " + std::to_string(colours) + " 0\"" + k_crlf + colour_line(0, c1);
    if (colours > 1) out += colour_line(1, c2);
    return out;
}

// The point tables and the header state they are saved with.
void swap_point_tables(model::Store& a, model::Store& b) {
    std::swap(a.pt_col, b.pt_col);
    std::swap(a.pt_bmp, b.pt_bmp);
    std::swap(a.pt_nbmp, b.pt_nbmp);
    std::swap(a.pt_txt, b.pt_txt);
    std::swap(a.pt_typ, b.pt_typ);
    std::swap(a.pt_lab, b.pt_lab);
    std::swap(a.pt_cc, b.pt_cc);
    std::swap(a.pt_xpm, b.pt_xpm);
    std::swap(a.pt_len, b.pt_len);
    std::swap(a.pt_ncol, b.pt_ncol);
    std::swap(a.pt_nncol, b.pt_nncol);
    std::swap(a.pt_mode, b.pt_mode);
    std::swap(a.pt_n, b.pt_n);
    std::swap(a.pt_nx, b.pt_nx);
    std::swap(a.pt_nnight, b.pt_nnight);
    std::swap(a.blocks, b.blocks);
    std::swap(a.hdr_len, b.hdr_len);
    std::swap(a.hdr_caption, b.hdr_caption);
    std::swap(a.codepage, b.codepage);
    std::swap(a.utf8txt, b.utf8txt);
}

}  // namespace

std::string theme_text(const std::string& theme, const std::string& table_text) {
    const std::string upper = typ::upper(theme);
    const size_t list_at = upper.find("<STYLELIST");
    if (list_at == std::string::npos) return {};
    std::string list = upper.substr(list_at + 10);
    erase_all(list, "MAP_");
    erase_all(list, "_CLR");
    erase_all(list, "\"");

    std::vector<std::pair<std::string, std::string>> table;
    for (std::string line : split_by(table_text, "\n")) {
        line = trim_white(line);
        const size_t comma = line.find(',');
        if (line.empty() || line[0] == ';' || comma == std::string::npos) continue;
        table.emplace_back(typ::upper(trim_white(line.substr(0, comma))), line.substr(comma + 1));
    }

    std::string order = "[_drawOrder]\r\n", polygons, lines;
    std::set<std::pair<bool, int32_t>> made;
    const std::vector<std::string> entries = split_by(list, "<STYLE FIELD");
    for (size_t k = 1; k < entries.size(); ++k) {
        const std::string& e = entries[k];
        const size_t eq = e.find('='), gt = e.find('>');
        if (eq == std::string::npos || gt == std::string::npos || gt < eq) continue;
        std::string name = e.substr(eq + 1, gt - eq - 1);
        name = trim_white(name.substr(0, name.find("SCALE")));
        name = trim_white(name.substr(0, name.find("BORDER")));
        std::string types;
        for (const auto& [n, t] : table)
            if (n == name) {
                types = t;
                break;
            }
        if (name.empty() || types.empty()) continue;
        std::string c1 = "0", c2 = "0";
        const std::vector<std::string> colour_parts = split_by(e, "<COLOR");
        if (colour_parts.size() > 1) {
            const std::vector<std::string> hashes = split_by(colour_parts[1], "#");
            if (hashes.size() > 1) c1 = colour_value(hashes[1]);
            if (hashes.size() > 2) c2 = colour_value(hashes[2]);
        }
        const int colours = c2 == "0" ? 1 : 2;
        std::vector<std::string> items = split_by(types, ",");
        const bool is_line = !items.empty() && trim_white(items[0]) == "1";
        if (is_line) items.erase(items.begin());
        const int scale = attribute(e, "SCALE"), border = attribute(e, "BORDER");
        for (const std::string& item : items) {
            std::string digits = trim_white(item);
            if (digits.size() > 1 && digits[0] == '0' && (digits[1] == 'X')) digits.erase(0, 2);
            const int32_t code = type_code(digits);
            if (code < 0 || !made.insert({is_line, code}).second) continue;
            std::string section = std::string(is_line ? "[_line]" : "[_polygon]") + k_crlf;
            section += "Type=0x" + typ::lower(digits) + k_crlf;
            section += "String1=0x0," + name + k_crlf + "ExtendedLabels=Y\r\nCustomColor=No\r\n";
            if (is_line) {
                const int width = std::max(1, scale) * (k_dashed.count(code) ? k_dashed_width : k_other_width);
                section += "lwidth(=" + std::to_string(width) + k_crlf;
                section += "Borderwidth=" + std::to_string(std::max(0, border)) + k_crlf;
                section += line_picture(code, c1, c2, colours);
                lines += section + "[end]\r\n";
            } else {
                section += "Xpm=\"0 0 2 0\"\r\n" + colour_line(0, c1) + colour_line(1, c2);
                polygons += section + "[end]\r\n";
                order += "Type=0x" + typ::lower(digits) + ",0\r\n";
            }
        }
    }
    return order + "[end]\r\n" + polygons + lines;
}

void theme_newproject(model::Store& s) {
    if (s.pt_nx == 0) {
        model::newproject(s);
        return;
    }
    // The points stay beside the extra points, with what their saving needs:
    // a header long enough, the code page of their labels and the label blocks.
    model::Store kept;
    swap_point_tables(kept, s);
    model::newproject(s);
    swap_point_tables(kept, s);
}

bool loadtheme(model::Store& s, platform::Prompt& ui, const std::string& path, const std::vector<std::string>& tables,
               const std::string& data_folder) {
    std::optional<std::string> table;
    for (const std::string& t : tables)
        if (!t.empty() && platform::file_exists(t) && (table = platform::read_file(t))) break;
    if (!table) {
        ui.message("Cannot find T data in " + data_folder);
        return false;
    }
    const auto theme = platform::read_file(path);
    if (!theme) {
        ui.message("Cannot locate list");
        return false;
    }
    const std::string text = theme_text(*theme, *table);
    if (text.empty()) {
        ui.message("No data.");
        return false;
    }
    if (s.pt_nx > 0) ui.message("Merging with Extra Points");
    theme_newproject(s);
    text::polgon_txt(s, ui, text);
    text::polline_txt(s, ui, text);
    const size_t dot = path.rfind('.');
    s.curfile = (dot == std::string::npos ? path : path.substr(0, dot)) + ".typ";
    s.dirty = true;
    return true;
}

}  // namespace korvex::workbench
