// The commit writes through the text: the element's full section is
// patched where the working copy differs and read back by the class reader,
// so columns and text cannot drift apart.
#include "editor/element_commit.h"

#include <algorithm>
#include <cctype>

#include "editor/ascii_case.h"
#include "editor/editor_apply.h"
#include "editor/element_text.h"
#include "editor/label_panel.h"
#include "editor/palette_file.h"
#include "editor/point_pictures.h"
#include "text/point_reader.h"
#include "text/polygon_line_reader.h"
#include "text/text_writer.h"
#include "typ/draw_order.h"

namespace korvex::editor {

namespace {

// The night picture behind the day one: written from the working copy,
// added when it is new, gone when the night was dropped. A night that shows
// the day pixels keeps its lines while it still does.
void patch_night(std::vector<std::string>& lines, const EditorSession& e) {
    const int n = find_key(lines, {"nightxpm="});
    const int end = picture_end(lines, n);
    if (n >= 0 && e.night_shares_day && e.bmpmode != 0) {
        const PointPicture day = day_picture(e), night = night_picture(e);
        if (day.palette == night.palette && day.pixels == night.pixels && day.surface == night.surface) return;
    }
    const std::vector<std::string> block = night_lines(e, n >= 0 ? lines[static_cast<size_t>(n)] : std::string());
    int at = n;
    if (n >= 0) {
        lines.erase(lines.begin() + n, lines.begin() + end);
    } else {
        const int x = xpm_line(lines);
        at = x < 0 ? static_cast<int>(lines.size()) : picture_end(lines, x);
    }
    lines.insert(lines.begin() + at, block.begin(), block.end());
}

}  // namespace

int32_t local_row(const model::Store& s, int cls, int32_t row) {
    if (cls == model::k_active_lines) return row - s.ln_n;
    if (cls == model::k_extra_points) return row - s.pt_n;
    return row;
}

std::string original_text(const model::Store& s, int cls, int32_t row) {
    const auto r = static_cast<size_t>(row);
    if (cls == model::k_polygons) return s.pg_txt[r];
    if (cls == model::k_points || cls == model::k_extra_points) return s.pt_txt[r];
    return s.ln_txt[r];
}

std::string patched_section(model::Store& s, const EditorSession& e, int cls, int32_t row, const Patch& p) {
    std::vector<std::string> lines = section_lines(text::create_code(s, local_row(s, cls, row) + 1, cls, false));
    if (!p.labels) {
        // The String lines as the element's own text holds them: the panel's
        // form may show them converted for the eye.
        const std::vector<std::string> own = section_lines(original_text(s, cls, row));
        std::vector<std::string> strings;
        for (const std::string& l : own)
            if (find_key({l}, {"string"}) == 0) strings.push_back(l);
        const int at = remove_keys(lines, {"string"});
        if (at >= 0) lines.insert(lines.begin() + at, strings.begin(), strings.end());
    }
    const bool line = cls == model::k_lines || cls == model::k_active_lines;
    if (p.picture || p.colours_only) {
        const int x = xpm_line(lines);
        if (x >= 0) {
            const int end = picture_end(lines, x);
            std::vector<std::string> block;
            if (p.picture) {
                block = picture_lines(e, lines[static_cast<size_t>(x)]);
            } else {
                // Colours only: the member keeps its head and rows.
                block.push_back(lines[static_cast<size_t>(x)]);
                const std::vector<std::string> colours = colour_block(e);
                block.insert(block.end(), colours.begin(), colours.end());
                int k = x + 1;
                while (k < end && lines[static_cast<size_t>(k)].find(" c ") != std::string::npos) ++k;
                block.insert(block.end(), lines.begin() + k, lines.begin() + end);
            }
            lines.erase(lines.begin() + x, lines.begin() + end);
            lines.insert(lines.begin() + x, block.begin(), block.end());
        }
        if (p.picture && (cls == model::k_points || cls == model::k_extra_points)) patch_night(lines, e);
    }
    const auto before_xpm = [&]() {
        const int x = xpm_line(lines);
        return x < 0 ? static_cast<int>(lines.size()) : x;
    };
    if (p.type) {
        const int at = remove_keys(lines, {"type=", "subtype="});
        const std::string t = "Type=0x" + type_code(e);
        lines.insert(lines.begin() + (at < 0 ? std::min<int>(1, static_cast<int>(lines.size())) : at), t);
    }
    if (p.labels) {
        int at = remove_keys(lines, {"string"});
        if (at < 0) {
            at = find_key(lines, {"subtype=", "type="});
            at = at < 0 ? std::min<int>(1, static_cast<int>(lines.size())) : at + 1;
            const int st = find_key(lines, {"subtype="});
            if (st >= at) at = st + 1;
        }
        const std::vector<std::string> add = section_lines(string_lines(e.labels));
        lines.insert(lines.begin() + at, add.begin(), add.end());
    }
    if (p.fonts) {
        int at = remove_keys(lines, {"extendedlabels=", "fontstyle=", "customcolor=", "daycustomcolor", "nightcustomcolor"});
        if (at < 0) at = before_xpm();
        const std::vector<std::string> add = section_lines(font_lines(e.labels, line));
        lines.insert(lines.begin() + at, add.begin(), add.end());
    }
    if (p.widths && line) {
        int at = remove_keys(lines, {"linewidth=", "lwidth(=", "borderwidth="});
        if (at < 0) at = before_xpm();
        lines.insert(lines.begin() + at, {"LineWidth=" + std::to_string(e.lwidth), "BorderWidth=" + std::to_string(e.border)});
    }
    if (p.orient && line) {
        int at = remove_keys(lines, {"useorientation="});
        if (at < 0) at = before_xpm();
        lines.insert(lines.begin() + at, std::string("UseOrientation=") + (e.orient ? "Y" : "N"));
    }
    return join_section(lines);
}

std::string border_section(model::Store& s, int cls, int32_t row, uint32_t colour) {
    std::vector<std::string> lines = section_lines(text::create_code(s, local_row(s, cls, row) + 1, cls, false));
    const int x = xpm_line(lines);
    if (x < 0) return join_section(lines);
    int seen = 0;
    for (int k = x + 1; k < picture_end(lines, x); ++k) {
        std::string& l = lines[static_cast<size_t>(k)];
        if (l.find(" c ") == std::string::npos || l.empty() || l[0] != '"') continue;
        if (++seen == 2) {
            l = "\"1 c #" + hex6(colour) + "\"";
            break;
        }
    }
    return join_section(lines);
}

// Reads a section into the row, as the text panel does.
void reparse(model::Store& s, platform::Prompt& ui, int cls, int32_t row, const std::string& section) {
    const auto r = static_cast<size_t>(row);
    // The section's strings are bytes of their pages already, as the tables
    // hold them, whatever encoding the open text came in.
    struct Keep {
        model::Store& s;
        bool utf8txt;
        ~Keep() { s.utf8txt = utf8txt; }
    } keep{s, s.utf8txt};
    s.utf8txt = false;
    if (cls == model::k_polygons) {
        if (!s.pg_lab[r].empty() && s.pg_lab[r][0] == 1 && s.pg_nnight > 0) --s.pg_nnight;
        text::pgonparse_txt(s, ui, section, row, true);
    } else if (cls == model::k_points || cls == model::k_extra_points) {
        const auto night_rows = static_cast<int32_t>(std::count(s.pt_nbmp[r].begin(), s.pt_nbmp[r].end(), '\n'));
        s.pt_nnight = std::max(0, s.pt_nnight - night_rows);
        text::poiparse(s, ui, section, row, false);
    } else {
        // The decoder heads a line "[_line] "; the reader writes it bare.
        // The head is kept as it was, so an apply changes no more than it must.
        const std::string head = s.ln_txt[r].substr(0, s.ln_txt[r].find("\r\n"));
        const int shown = s.curclass;
        s.curclass = cls;
        text::pollineparse(s, ui, section, row, false);
        s.curclass = shown;
        std::string& txt = s.ln_txt[r];
        const size_t end = txt.find("\r\n");
        if (head.rfind("[_line]", 0) == 0 && txt.compare(0, end, "[_line]") == 0) txt.replace(0, end, head);
    }
}

// The polygon's draw order: its token in drwlist and its pg_drw entry.
void set_level(model::Store& s, int32_t row, const std::string& level) {
    typ::assign_level(s, row);
    std::string drw = s.pg_drw[static_cast<size_t>(row)];
    const size_t eq = drw.find('='), comma = drw.find(',');
    if (eq == std::string::npos || comma == std::string::npos) return;
    const std::string code = drw.substr(eq + 1, comma - eq - 1);
    // Tokens of this code go; a level above 0 comes back as one token.
    std::string kept;
    std::string upcode = upper_trim(code);
    if (upcode.size() == 5 && upcode[0] == '0') upcode.erase(0, 1);
    size_t p = 0;
    const std::string& list = s.drwlist;
    while (p < list.size()) {
        while (p < list.size() && list[p] == ' ') ++p;
        size_t e = list.find(' ', p);
        if (e == std::string::npos) e = list.size();
        if (e > p) {
            const std::string tok = list.substr(p, e - p);
            std::string tc = upper_trim(tok.substr(0, tok.find(',')));
            if (tc.size() == 5 && tc[0] == '0') tc.erase(0, 1);
            if (tc != upcode) kept += " " + tok;
        }
        p = e;
    }
    const int lv = std::atoi(level.c_str());
    if (lv > 0) kept += " " + upcode + "," + std::to_string(lv);
    s.drwlist = kept;
    typ::sort_drwlist(s);
    typ::assign_level(s, row);
}

}  // namespace korvex::editor
