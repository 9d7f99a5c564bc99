#include "editor/element_text.h"

#include <algorithm>
#include <cctype>

#include "editor/canvas.h"
#include "editor/palette_file.h"
#include "editor/point_picture_text.h"
#include "editor/point_pictures.h"
#include "model/store.h"

namespace korvex::editor {

namespace {

std::string low_trim(const std::string& l) {
    size_t p = 0;
    while (p < l.size() && (l[p] == ' ' || l[p] == '\t')) ++p;
    std::string out = l.substr(p);
    std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

std::string colour_value(const Palette& p, int entry, uint32_t marker) {
    return p.transparent(entry, marker) ? std::string("none") : "#" + hex6(p.colour(entry));
}

}  // namespace

std::vector<std::string> section_lines(const std::string& text) {
    std::vector<std::string> out;
    size_t p = 0;
    while (p < text.size()) {
        size_t e = text.find('\n', p);
        if (e == std::string::npos) e = text.size();
        std::string l = text.substr(p, e - p);
        if (!l.empty() && l.back() == '\r') l.pop_back();
        p = e + 1;
        const std::string low = low_trim(l);
        if (low.rfind("[end]", 0) == 0) break;
        if (low.rfind(";12345678901234567890123456789012", 0) == 0) continue;
        out.push_back(std::move(l));
    }
    return out;
}

std::string join_section(const std::vector<std::string>& lines) {
    std::string out;
    for (const std::string& l : lines) out += l + "\r\n";
    out += "[end]\r\n";
    return out;
}

int find_key(const std::vector<std::string>& lines, std::initializer_list<const char*> keys) {
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string low = low_trim(lines[i]);
        for (const char* k : keys)
            if (low.rfind(k, 0) == 0) return static_cast<int>(i);
    }
    return -1;
}

int remove_keys(std::vector<std::string>& lines, std::initializer_list<const char*> keys) {
    int first = -1;
    for (size_t i = 0; i < lines.size();) {
        const std::string low = low_trim(lines[i]);
        bool hit = false;
        for (const char* k : keys) hit = hit || low.rfind(k, 0) == 0;
        if (hit) {
            if (first < 0) first = static_cast<int>(i);
            lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
    return first;
}

int xpm_line(const std::vector<std::string>& lines) { return find_key(lines, {"xpm=", "dayxpm="}); }

int picture_end(const std::vector<std::string>& lines, int xpm) {
    if (xpm < 0) return -1;
    // Comment lines may stand among the colour lines and rows (a decoded
    // file notes the picture's size there): the block runs to its last quoted line.
    int end = xpm + 1;
    for (int i = xpm + 1; i < static_cast<int>(lines.size()); ++i) {
        const std::string& l = lines[static_cast<size_t>(i)];
        if (!l.empty() && l[0] == '"')
            end = i + 1;
        else if (l.empty() || l[0] != ';')
            break;
    }
    return end;
}

std::string changecode(const std::string& column, const std::string& key, const std::string& newline) {
    std::vector<std::string> parts;
    size_t p = 0;
    while (p <= column.size()) {
        size_t e = column.find("\r\n", p);
        if (e == std::string::npos) e = column.size();
        std::string l = column.substr(p, e - p);
        if (l.find(key) != std::string::npos) l = newline;
        if (!l.empty()) parts.push_back(std::move(l));
        p = e + 2;
    }
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) out += (i ? "\r\n" : "") + parts[i];
    return out;
}

std::vector<std::string> colour_block(const EditorSession& e) {
    std::vector<std::string> out;
    const int cls = e.store_class();
    const uint32_t m = e.transparentcolour;
    if (cls == model::k_points || cls == model::k_extra_points) return point_colour_lines(canvas_picture(e), m);
    int k = 0;
    for (int i = 1; i <= e.ncols(); ++i) out.push_back("\"" + std::to_string(k++) + " c " + colour_value(e.palette, i, m) + "\"");
    for (int i = 1; i <= e.nightpal.ncols(); ++i)
        out.push_back("\"" + std::to_string(k++) + " c " + colour_value(e.nightpal, i, m) + "\"");
    return out;
}

std::vector<std::string> picture_lines(const EditorSession& e, const std::string& old_xpm) {
    const size_t q = old_xpm.find('"');
    std::string key = q == std::string::npos ? std::string("Xpm=") : old_xpm.substr(0, q);
    const int cls = e.store_class();
    const bool point = cls == model::k_points || cls == model::k_extra_points;
    const int n = e.ncols() + (point ? 0 : e.nightpal.ncols());
    if (point) return point_picture_lines(day_picture(e), old_xpm, e.width, e.height, e.transparentcolour);
    std::string head;
    if (e.solid || e.width == 0) {
        head = key + "\"0 0 " + std::to_string(n) + " 0\"";
    } else {
        head = key + "\"32 " + std::to_string(e.height) + " " + std::to_string(n) + " 1\"";
    }
    std::vector<std::string> out{head};
    const std::vector<std::string> colours = colour_block(e);
    out.insert(out.end(), colours.begin(), colours.end());
    if (!(e.solid || e.width == 0)) {
        const std::string rows = pixel_rows(e);
        size_t p = 0;
        while (p < rows.size()) {
            const size_t end = rows.find("\r\n", p);
            out.push_back("\"" + rows.substr(p, end - p) + "\"");
            p = end + 2;
        }
    }
    return out;
}

std::vector<std::string> night_lines(const EditorSession& e, const std::string& old_head) {
    if (e.bmpmode == 0) return {};
    return point_picture_lines(night_picture(e), old_head.empty() ? std::string("NightXpm=") : old_head, e.width, e.height,
                               e.transparentcolour);
}

}  // namespace korvex::editor
