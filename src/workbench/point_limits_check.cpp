#include "workbench/point_limits_check.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "text/point_picture.h"
#include "workbench/element_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

bool has_caseless(std::string_view text, std::string_view word) {
    if (word.size() > text.size()) return false;
    for (size_t i = 0; i + word.size() <= text.size(); ++i) {
        size_t k = 0;
        while (k < word.size() && (text[i + k] | 0x20) == word[k]) ++k;
        if (k == word.size()) return true;
    }
    return false;
}

// What one picture's head and colour lines say.
struct PictureFacts {
    int width = 0, height = 0;
    int opaque = 0;          // colour lines that are not "none"
    bool transparent = false;
    bool no_palette = false; // bare "#RRGGBB" lines, one a pixel
};

// A colour line: '"' symbol " c #RRGGBB" '"' [alpha], '"' symbol " c none" '"',
// or a bare '"#RRGGBB"' of a picture without palette.
void read_colour_line(std::string_view line, PictureFacts& f) {
    if (line.size() > 1 && line[1] == '#' && line.find(" c ") == std::string_view::npos) {
        f.no_palette = true;
        ++f.opaque;
    } else if (line.find('#') == std::string_view::npos && has_caseless(line, "none")) {
        f.transparent = true;
    } else {
        ++f.opaque;
    }
}

void read_head_line(std::string_view line, PictureFacts& f) {
    const text::point_text::Head h = text::point_text::read_head(line);
    f.width = h.field[0] < 0 ? 0 : h.field[0];
    f.height = h.field[1] < 0 ? 0 : h.field[1];
}

// The day picture from pt_xpm and the lines of pt_col in front of a
// "NightXpm=" head; the night picture from that head on.
void read_point(const model::Store& s, int32_t r, PictureFacts& day, PictureFacts& night, bool& has_night) {
    read_head_line(s.pt_xpm[static_cast<size_t>(r)], day);
    std::string_view t = s.pt_col[static_cast<size_t>(r)];
    PictureFacts* into = &day;
    has_night = false;
    while (!t.empty()) {
        const size_t nl = t.find('\n');
        std::string_view line = t.substr(0, nl);
        t = nl == std::string_view::npos ? std::string_view() : t.substr(nl + 1);
        while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
        if (!line.empty() && line.front() == '"') {
            read_colour_line(line, *into);
        } else if (has_caseless(line, "nightxpm")) {
            has_night = true;
            into = &night;
            read_head_line(line, night);
        }
    }
}

// max_size 0: the size is not judged (a night picture has the day's).
void judge(const PictureFacts& f, const char* which, int cls, const std::string& type, int max_size, Findings& out) {
    const std::string pic = std::string(which) + " picture ";
    if (f.opaque > k_max_point_colours)
        out.push_back({cls, type, k_check_colours_over_255,
                       pic + "has " + std::to_string(f.opaque) + " colours, above 255"});
    if (max_size > 0 && (f.width > max_size || f.height > max_size))
        out.push_back({cls, type, k_check_over_max_size,
                       pic + "is " + std::to_string(f.width) + " x " + std::to_string(f.height) +
                           ", bigger than the Max Size setting of " + std::to_string(max_size)});
    if (f.no_palette)
        out.push_back({cls, type, k_check_true_colour, pic + "is true colour: a colour of its own a pixel, no palette"});
    if (f.transparent && f.opaque > k_old_unit_colours)
        out.push_back({cls, type, k_check_old_units,
                       pic + "has " + std::to_string(f.opaque) +
                           " colours and a transparent one: units that show 254 colours cannot show it"});
}

}  // namespace

Findings chk_point_limits(const model::Store& s, int max_size) {
    Findings out;
    for (int cls : {model::k_points, model::k_extra_points}) {
        const auto rows = static_cast<int32_t>(std::min(s.pt_col.size(), s.pt_xpm.size()));
        const int32_t end = std::min(end_row(s, cls), rows);
        for (int32_t r = first_row(s, cls); r < end; ++r) {
            PictureFacts day, night;
            bool has_night = false;
            read_point(s, r, day, night, has_night);
            const std::string type = row_type_text(s, cls, r);
            judge(day, "day", cls, type, max_size, out);
            if (has_night) judge(night, "night", cls, type, 0, out);
        }
    }
    return out;
}

}  // namespace korvex::workbench
