// A "[_line]" section of the text form into a table row.
//
// LineWidth= is read like lwidth(=, since every mkgmap source gives the width
// of its solid lines with it. Two solid colours without a border are the day
// and the night colour, as mkgmap compiles them.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "text/load_driver.h"
#include "text/polygon_line_reader.h"
#include "typ/curf_access.h"

namespace korvex::text {

using namespace reader;

namespace {

constexpr int k_max_width = 31;
const std::string k_row_ones(32, '1');
const std::string k_row_zeros(32, '0');

}  // namespace

void pollineparse(Store& s, platform::Prompt& ui, const std::string& in, int32_t row, bool batch) {
    (void)batch;
    const std::string section = cut_after_end(in);
    if (chktxt(s, ui, model::k_lines, row, keys_normalised(section))) return;
    const auto r = static_cast<size_t>(row);
    s.ln_bmp[r].clear();
    s.ln_col[r].clear();
    s.ln_xpm[r].clear();
    s.ln_ncol[r] = 0;
    s.ln_wid[r] = 0;
    s.ln_bord[r] = 0;
    s.ln_mode[r] = 0;
    s.ln_code[r] = 0;
    s.ln_act[r] = s.curclass == model::k_active_lines ? "40" : "";
    s.ln_dayc[r] = "0";
    const std::string low_section = typ::lower(section);
    const bool has_bitmap = has(low_section, "\"32");
    // An active line needs the long header, also when applied alone.
    if (has(low_section, "activity=") && s.hdr_len < k_active_header) {
        s.hdr_len = k_active_header;
        s.hdr_caption = " " + typ::hex(k_active_header);
    }

    int32_t code = 0;
    std::string rest, xpm, type_text;
    LabelChoice label;
    std::vector<std::string> colours, rows;
    bool bad_header = false, rows_closed = false, width_seen = false;
    int cpp = 1, strings = 0;
    for (std::string line : split_lines(section)) {
        line = normalise_key(trim(line));
        const std::string low = typ::lower(line);
        if (line.empty()) continue;
        // The ruler under the rows ends them; one of a picture in comments does not.
        if (has(low, ";123") && !xpm.empty()) rows_closed = true;
        if (line[0] == ';') {
            rest += line + k_crlf;
            continue;
        }
        if (has(low, "xpm=") && count_quotes(line) < 2) model::note_once(s, "Lines: missing quotes:" + line);
        if (has(low, "activity=")) {
            rest += line + k_crlf;
            s.ln_act[r] = activity_code(line.substr(line.find('=') + 1));
            continue;
        }
        if (has(low, "type=") && !has(low, "string")) {
            code = low.rfind("subtype", 0) == 0 ? with_subtype(code, line) : type_value(type_digits_of(line));
            if (const int32_t kept = five_bit_subtype(s, code); kept != code) {
                code = kept;
                line = low.rfind("subtype", 0) == 0 ? "SubType=0x" + typ::hex2(typ::hex(code & 0xff))
                                                    : "Type=0x" + typ::lower(five_digits(code));
            }
            type_text = "0x" + typ::lower(five_digits(code));
            rest += line + k_crlf;
            continue;
        }
        if (has(low, "[end]")) break;
        const bool lwidth = has(low, "lwidth(") || low.rfind("linewidth", 0) == 0;
        const bool border = low.rfind("borderwidth", 0) == 0;
        if (lwidth || border) {
            const size_t eq = line.find('=');
            if (eq == std::string::npos) {
                model::note_once(s, "No lwidth(");
                return;
            }
            if (has_bitmap) continue;
            int v = static_cast<int>(std::strtol(line.c_str() + eq + 1, nullptr, 10));
            const std::string key = line.substr(0, eq + 1);
            if (lwidth) {
                width_seen = true;
                if (v < 1) {
                    model::note_once(s, type_text + " lwidth( set to 1");
                    v = 1;
                } else if (v > k_max_width) {
                    model::note_once(s, type_text + " lwidth( (>31) Reset to 31 max");
                    v = k_max_width;
                    s.ln_bord[r] = 0;
                }
                s.ln_wid[r] = static_cast<int16_t>(v);
            } else {
                if (v > k_max_width) {
                    model::note_once(s, type_text + " Borderwidth (>31) Reset to 31 max");
                    v = k_max_width;
                }
                s.ln_bord[r] = static_cast<int16_t>(std::max(0, v));
                v = s.ln_bord[r];
            }
            rest += key + std::to_string(v) + k_crlf;
            continue;
        }
        if (line[0] == '"' && (has(low, "c ") || has(low, "c\t")) && !has(low, "xpm=")) {
            if (count_quotes(line) < 2 && !has(low, "tring")) model::note_once(s, "Lines: missing quotes: " + line);
            if (colour_line(low)) colours.push_back(line);
            continue;
        }
        if (has(low, "xpm=")) {
            xpm = cut_xpm(line);
            const size_t q1 = xpm.find('"');
            std::string inner = q1 == std::string::npos ? "" : xpm.substr(q1 + 1);
            int fields = 0;
            bool in_field = false;
            for (char c : inner) {
                const bool part = c != ' ' && c != '"';
                if (part && !in_field) ++fields;
                in_field = part;
            }
            if (fields < 4) bad_header = true;
            if (!width_seen) cpp = xpm_cpp(xpm);
            continue;
        }
        if (!xpm.empty() && !rows_closed && line[0] == '"') {
            std::string q = line;
            q.erase(std::remove(q.begin(), q.end(), '"'), q.end());
            rows.push_back(q);
            continue;
        }
        if (line[0] == '"') continue;
        if (has(low, "string")) {
            ++strings;
            line = fnchkstringtxt(s, line, strings);
            label.offer(s, line);
            rest += line + k_crlf;
            continue;
        }
        if (has(low, "useorientation") || has(low, "extendedlabels") || has(low, "fontstyle") ||
            (has(low, "customcolor") && !idle_custom_colour(low))) {
            if (has(low, "daycustom") && has(low, "#")) s.ln_dayc[r] = byte_swap(hex_run(line, line.find('#') + 1));
            rest += line + k_crlf;
        }
    }

    s.ln_code[r] = code;
    s.ln_lab[r] = "0x" + typ::lower(five_digits(code)) + "#" + label.shown();

    std::vector<std::string> symbols, values;
    colour_table(colours, cpp, symbols, values);
    // A line stores its transparent colour second (polygons first): a text
    // with "0 c none" or "2 c none" has its pairs and pixels swapped.
    auto none_of = [&](size_t k) { return values.size() > k && values[k] == "none"; };
    if (values.size() >= 2 && ((none_of(0) && !none_of(1)) || (none_of(2) && !none_of(3) && !none_of(1)))) {
        std::swap(values[0], values[1]);
        std::swap(symbols[0], symbols[1]);
        if (values.size() >= 4) {
            std::swap(values[2], values[3]);
            std::swap(symbols[2], symbols[3]);
        }
    }
    // A line record holds 31 rows at most; the mode byte has no room for more.
    if (rows.size() > k_max_width) rows.resize(k_max_width);
    const bool xpm_ok = !xpm.empty() && !bad_header;
    if (!xpm_ok) rows.clear();
    const bool bitmap = !rows.empty() && has_bitmap;
    if (bitmap) {
        s.ln_bmp[r] = rows_to_digits(rows, symbols, cpp);
        s.ln_wid[r] = 0;
        s.ln_bord[r] = 0;
    } else {
        const int wid = s.ln_wid[r], bord = s.ln_bord[r];
        std::string& text = s.ln_bmp[r];
        for (int k = 0; k < 2 * bord + wid; ++k) {
            if (k) text += k_crlf;
            text += (k < bord || k >= bord + wid) ? k_row_ones : k_row_zeros;
        }
    }

    // Scheme from the colours; a bitmap adds its rows above the low 3 bits.
    auto none_at = [&](size_t k) { return values.size() > k && values[k] == "none"; };
    const auto nones = static_cast<int>(std::count(values.begin(), values.end(), "none"));
    int scheme;
    if (values.size() <= 1) {
        scheme = 6;
    } else if (values.size() == 2) {
        scheme = nones ? 6 : (bitmap || s.ln_bord[r] > 0) ? 0 : 7;
    } else if (nones == 0) {
        scheme = 1;
    } else if (nones >= 2) {
        scheme = 7;
    } else {
        scheme = (none_at(2) || none_at(3)) ? 5 : 3;
    }
    // Night colours switched off in the load options: the day colours stay.
    if (model::chkl(s, 5) == '0' && (scheme & 1)) {
        if (!bitmap && (scheme == 3 || scheme == 7)) {
            scheme = 6;
            values.resize(1);
        } else {
            scheme = (scheme == 1 || scheme == 5) ? 0 : 6;
            values.resize(2);
        }
    }
    const int nrows = bitmap ? static_cast<int>(rows.size()) : 0;
    s.ln_mode[r] = static_cast<uint8_t>(nrows * 8 + scheme);

    std::vector<std::string> lines;
    for (size_t k = 0; k < values.size(); ++k) lines.push_back(canonical_colour(static_cast<int>(k), values[k]));
    s.ln_col[r] = join(lines);
    s.ln_ncol[r] = static_cast<int16_t>(lines.size());

    // mkgmap keeps a line's bitmap upright unless the text says otherwise.
    if (!has(typ::lower(rest), "useorientation=")) rest += std::string("UseOrientation=N") + k_crlf;
    if (!xpm_ok) {
        model::note_once(s, type_text + " Line xpm error. Click on line to fix.");
        s.ln_bmp[r].clear();
    }
    // The header says what the columns hold.
    if (bitmap)
        xpm = "Xpm=\"32 " + std::to_string(nrows) + " " + std::to_string(lines.size()) + " 1\"";
    else
        xpm = "Xpm=\"0 0 " + std::to_string(lines.size()) + " 0\"";
    s.ln_xpm[r] = xpm;
    std::string& txt = s.ln_txt[r];
    txt = std::string("[_line]") + k_crlf + rest + xpm + k_crlf + s.ln_col[r] + k_crlf;
    yes_no_upper(txt);
}

}  // namespace korvex::text
