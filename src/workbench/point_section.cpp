#include "workbench/point_section.h"

#include <algorithm>

#include "model/crlf.h"
#include "text/point_picture.h"
#include "typ/curf_access.h"
#include "workbench/element_rows.h"

namespace korvex::workbench {

namespace {



// Calls f(line) for each non-empty line of text, without its line end.
template <class F>
void each_text_line(std::string_view text, F&& f) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t nl = text.find('\n', pos);
        if (nl == std::string_view::npos) nl = text.size();
        std::string_view line = text.substr(pos, nl - pos);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (!line.empty()) f(line);
        pos = nl + 1;
    }
}

bool is_head(std::string_view line) { return typ::find_caseless(line, "xpm=") != std::string_view::npos; }

// The element's keys in front of its day head: pt_txt is those keys, the
// head and the colour tables.
std::string keys_in_front(const model::Store& s, int32_t r) {
    const auto row = static_cast<size_t>(r);
    const std::string& txt = s.pt_txt[row];
    const std::string tail = s.pt_xpm[row] + k_crlf + s.pt_col[row];
    if (!s.pt_xpm[row].empty() && txt.size() >= tail.size() && txt.ends_with(tail))
        return txt.substr(0, txt.size() - tail.size());
    std::string out;
    bool head = false;
    each_text_line(txt, [&](std::string_view line) {
        head = head || is_head(line);
        if (!head) {
            out += line;
            out += k_crlf;
        }
    });
    if (out.empty()) out = "[_point]\r\nType=0x" + s.pt_typ[row] + "\r\n";
    return out;
}

}  // namespace

std::string colour_key(std::string_view line, int cpp) {
    if (line.size() < 1 + static_cast<size_t>(cpp)) return {};
    return std::string(line.substr(1, static_cast<size_t>(cpp)));
}

bool is_none_colour(std::string_view line) {
    return typ::find_caseless(line, " none") != std::string_view::npos;
}

bool has_alpha(std::string_view line) { return typ::find_caseless(line, "alpha") != std::string_view::npos; }

int none_index(const PointPicture& p) {
    for (size_t i = 0; i < p.colour_lines.size(); ++i)
        if (is_none_colour(p.colour_lines[i])) return static_cast<int>(i);
    return -1;
}

PointPicture read_point_picture(const model::Store& s, int32_t r) {
    PointPicture p;
    if (r < 0 || static_cast<size_t>(r) >= s.pt_xpm.size()) return p;
    const auto row = static_cast<size_t>(r);
    const std::string& xpm = s.pt_xpm[row];
    if (xpm.empty()) return p;
    const text::point_text::Head head = text::point_text::read_head(xpm);
    p.key = head.key;
    p.width = std::max(head.field[0], 0);
    p.height = std::max(head.field[1], 0);
    p.colours = std::max(head.field[2], 0);
    p.cpp = head.field[3] == 2 ? 2 : 1;
    p.mode = head.mode.empty() ? "0" : head.mode;
    bool night = false;
    each_text_line(s.pt_col[row], [&](std::string_view line) {
        night = night || is_head(line);
        if (night) {
            p.night += line;
            p.night += k_crlf;
        } else {
            p.colour_lines.emplace_back(line);
        }
    });
    if (night)
        each_text_line(s.pt_nbmp[row], [&](std::string_view line) {
            p.night += '"';
            p.night += line;
            p.night += '"';
            p.night += k_crlf;
        });
    each_text_line(s.pt_bmp[row], [&](std::string_view line) { p.rows.emplace_back(line); });
    return p;
}

PointPicture read_night_picture(const model::Store& s, int32_t r) {
    PointPicture p;
    if (r < 0 || static_cast<size_t>(r) >= s.pt_col.size()) return p;
    const auto row = static_cast<size_t>(r);
    bool night = false;
    each_text_line(s.pt_col[row], [&](std::string_view line) {
        if (!night && is_head(line)) {
            night = true;
            const text::point_text::Head head = text::point_text::read_head(line);
            p.key = head.key;
            p.width = std::max(head.field[0], 0);
            p.height = std::max(head.field[1], 0);
            p.colours = std::max(head.field[2], 0);
            p.cpp = head.field[3] == 2 ? 2 : 1;
            p.mode = head.mode.empty() ? "0" : head.mode;
        } else if (night) {
            p.colour_lines.emplace_back(line);
        }
    });
    if (night) each_text_line(s.pt_nbmp[row], [&](std::string_view line) { p.rows.emplace_back(line); });
    return p;
}

std::string picture_text(const PointPicture& p) {
    std::string out;
    size_t size = 64 + p.night.size();
    for (const std::string& c : p.colour_lines) size += c.size() + 2;
    for (const std::string& x : p.rows) size += x.size() + 4;
    out.reserve(size);
    out += p.key;
    out += '"' + std::to_string(p.width) + ' ' + std::to_string(p.height) + ' ' + std::to_string(p.colours) + ' ' +
           std::to_string(p.cpp) + "\" Colormode=" + p.mode;
    out += k_crlf;
    for (const std::string& c : p.colour_lines) {
        out += c;
        out += k_crlf;
    }
    for (const std::string& x : p.rows) {
        out += '"';
        out += x;
        out += '"';
        out += k_crlf;
    }
    out += p.night;
    return out;
}

void updpoicod(model::Store& s, platform::Prompt& ui, int32_t r, const PointPicture& p) {
    if (r < 0 || static_cast<size_t>(r) >= s.pt_txt.size()) return;
    std::string section = keys_in_front(s, r);
    section += picture_text(p);
    section += "[end]";
    section += k_crlf;
    // The labels are the row's own bytes already: a UTF-8 text's strings
    // were converted when it was loaded and must not be converted twice.
    const bool utf8 = s.utf8txt;
    s.utf8txt = false;
    parse_into(s, ui, model::k_points, r, section);
    s.utf8txt = utf8;
}

}  // namespace korvex::workbench
