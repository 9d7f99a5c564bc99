// A "[_polygon]" section of the text form into a table row.
//
// mkgmap sources bring tabs, "c None" and SubType= lines; the reader
// normalises them and rebuilds the element's own text from the normalised
// pieces, so that text and columns agree.
#include <algorithm>
#include <vector>

#include "text/load_driver.h"
#include "text/polygon_line_reader.h"
#include "typ/curf_access.h"
#include "typ/draw_order.h"

namespace korvex::text {

using namespace reader;

void pgonparse_txt(Store& s, platform::Prompt& ui, const std::string& in, int32_t row, bool batch) {
    std::string section = cut_after_end(in);
    if (chktxt(s, ui, model::k_polygons, row, keys_normalised(section))) return;
    const std::string low_section = typ::lower(section);
    if (has(low_section, "id=") && !has(low_section, "type=")) section = "type=0x0\r\n" + section;
    const bool has_extended = has(low_section, "extendedlabels=");
    const auto r = static_cast<size_t>(row);

    int32_t code = -1;
    std::string rest, xpm;
    LabelChoice label;
    std::vector<std::string> colours, rows;
    bool in_picture = false, rows_closed = false, extended_added = false;
    int cpp = 1, strings = 0;
    s.pg_dayc[r] = "0";
    for (std::string line : split_lines(section)) {
        line = normalise_key(trim(line));
        std::string low = typ::lower(line);
        if (line.empty() || line[0] == ';') {
            if (has(low, ";123") && !xpm.empty()) rows_closed = true;
            if (!in_picture && !line.empty()) rest += line + k_crlf;
            continue;
        }
        if (has(low, "type=") && !has(low, "string")) {
            code = low.rfind("subtype", 0) == 0 ? with_subtype(code < 0 ? 0 : code, line)
                                                : type_value(type_digits_of(line));
            if (const int32_t kept = five_bit_subtype(s, code); kept != code) {
                code = kept;
                line = low.rfind("subtype", 0) == 0 ? "SubType=0x" + typ::hex2(typ::hex(code & 0xff))
                                                    : "Type=0x" + typ::lower(five_digits(code));
            }
            s.pg_typ[r] = "0x" + typ::hex(code >> 8) + typ::hex2(typ::hex(code & 0xff));
            if (s.pg_typ[r].size() == 5) s.pg_typ[r] = "0x0" + s.pg_typ[r].substr(2);
        }
        if (has(low, "[end]")) break;
        if (colour_line(low)) {
            colours.push_back(line);
            in_picture = true;
            continue;
        }
        if (has(low, "string")) {
            ++strings;
            line = fnchkstringtxt(s, line, strings);
            label.offer(s, line);
        } else if (has(low, "xpm=")) {
            xpm = cut_xpm(line);
            cpp = xpm_cpp(xpm);
            in_picture = true;
            continue;
        }
        if (has(low, ";123") && !xpm.empty()) rows_closed = true;
        if (!xpm.empty() && !rows_closed && line[0] == '"' && !has(low, "c ") && !has(low, "cust")) {
            std::string q = line;
            q.erase(std::remove(q.begin(), q.end(), '"'), q.end());
            rows.push_back(q);
            continue;
        }
        if (low.rfind("[_", 0) != 0 && !in_picture && !idle_custom_colour(low)) {
            rest += line + k_crlf;
            if (code >= 0 && !has_extended && !extended_added) {
                rest += std::string("ExtendedLabels=N") + k_crlf;
                extended_added = true;
            }
        }
        if (has(low, "daycustom") && has(low, "#")) s.pg_dayc[r] = byte_swap(hex_run(line, line.find('#') + 1));
    }

    // Canonical colour lines; symbols map rows to palette digits.
    std::vector<std::string> symbols, values;
    colour_table(colours, cpp, symbols, values);
    bool none1 = values.size() > 1 && values[1] == "none";
    bool none3 = values.size() > 3 && values[3] == "none";
    // The transparent colour of a pair stands first: swap pair and pixels.
    if (none1 || none3) {
        std::swap(values[0], values[1]);
        std::swap(symbols[0], symbols[1]);
        if (values.size() >= 4) {
            std::swap(values[2], values[3]);
            std::swap(symbols[2], symbols[3]);
        }
    }
    s.pg_bmp[r] = rows_to_digits(rows, symbols, cpp);

    const bool none0 = !values.empty() && values[0] == "none";
    const bool none2 = values.size() > 2 && values[2] == "none";
    const bool any_none = std::find(values.begin(), values.end(), "none") != values.end();
    int mode;
    const bool solid = has(xpm, "\"0 0") || has(xpm, " 0 0 ");
    if (solid) {
        // A solid polygon has no transparent part: mkgmap's "c None" beside
        // one colour leaves that colour alone.
        if (any_none && values.size() > 1) values.erase(std::remove(values.begin(), values.end(), "none"), values.end());
        mode = values.size() <= 1 ? 6 : 7;
    } else if (values.size() <= 2) {
        mode = any_none ? 14 : 8;
    } else if (none0 && none2) {
        mode = 15;
    } else {
        mode = none0 ? 11 : none2 ? 13 : 9;
    }
    if (mode == 6 || mode == 7) s.pg_bmp[r].clear();

    // Night colours switched off in the load options: the day pair stays.
    if (model::chkl(s, 4) == '0' && (mode & 1)) {
        if (mode == 7) {
            mode = 6;
            values.resize(1);
        } else {
            mode = (mode == 9 || mode == 13) ? 8 : 14;
            values.resize(2);
        }
    }
    // The header says what the columns hold.
    if (!xpm.empty()) xpm = std::string(solid ? "Xpm=\"0 0 " : "Xpm=\"32 32 ") + std::to_string(values.size()) + (solid ? " 0\"" : " 1\"");

    std::vector<std::string> lines;
    for (size_t k = 0; k < values.size(); ++k) lines.push_back(canonical_colour(static_cast<int>(k), values[k]));
    s.pg_col[r] = join(lines);
    s.pg_ncol[r] = static_cast<int16_t>(lines.size());
    s.pg_mode[r] = static_cast<uint8_t>(mode);
    s.pg_xpm[r] = xpm;
    std::string& txt = s.pg_txt[r];
    txt = std::string("[_polygon]") + k_crlf + rest + xpm + k_crlf + s.pg_col[r] + k_crlf;
    yes_no_upper(txt);

    const bool night = lines.size() == 4 || mode == 7;
    std::string& lab = s.pg_lab[r];
    lab.clear();
    lab += static_cast<char>(night ? 1 : 0);
    lab += static_cast<char>(has(s.pg_col[r], "none") ? 1 : 0);
    lab += '#';
    lab += label.shown();
    if (night) ++s.pg_nnight;

    if (!batch && row > 0) {
        draworder_fromtxt(s, ui, in);
        typ::sort_drwlist(s);
    }
}

}  // namespace korvex::text
