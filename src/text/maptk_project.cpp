// A MapTK project is a flat list of keys under "[poi]", "[polyline]" and
// "[polygon]"; pictures come as "color=" and "line=" keys. Each section is
// gathered, then written as one text-form section when it closes, because
// the picture header needs its size and colour count.
#include "text/maptk_project.h"

#include <algorithm>
#include <vector>

#include "model/crlf.h"
#include "platform/files.h"
#include "text/load_driver.h"
#include "text/replace_all.h"
#include "typ/curf_access.h"

namespace korvex::text {

namespace {

// Symbols a pixel beyond this many colours: two characters.
constexpr size_t k_one_char_colours = 64;
constexpr int k_symbols_a_char = 64;

enum class Kind { none, polygon, line, point };

struct Section {
    Kind kind = Kind::none;
    std::string marker;
    std::string lines;  // keys and copied lines, CR LF after each
    std::string type;
    std::vector<std::string> colours;  // unquoted: symbol, " c #", digits
    std::vector<std::string> rows;     // unquoted
    size_t width = 0;
    std::vector<std::string> draworder;
    int strings = 0;
};

// A quoted picture line, with the project's ",0x" turned into " c #".
std::string picture_text(std::string_view rest) {
    std::string v(rest);
    replace_all(v, ",0x", " c #");
    return v;
}

std::string quoted(const std::string& v) { return "\"" + v + "\""; }

std::string trim_blanks(std::string_view t) {
    size_t a = 0, b = t.size();
    while (a < b && (t[a] == ' ' || t[a] == '\t')) ++a;
    while (b > a && (t[b - 1] == ' ' || t[b - 1] == '\t')) --b;
    return std::string(t.substr(a, b - a));
}

unsigned char code_of(const std::string& colour) { return colour.empty() ? 0 : static_cast<unsigned char>(colour[0]); }

// The symbol of the colour for blank pixels: one above the highest in use;
// past "~" (or on the quote) the first printable code not in use.
char blank_symbol(const std::vector<std::string>& colours) {
    unsigned char high = 0;
    for (const std::string& c : colours) high = std::max(high, code_of(c));
    const int next = high + 1;
    if (next <= '~' && next != '"') return static_cast<char>(next);
    for (int k = '!'; k <= '~'; ++k) {
        if (k == '"') continue;
        const bool used = std::any_of(colours.begin(), colours.end(), [&](const std::string& c) { return code_of(c) == k; });
        if (!used) return static_cast<char>(k);
    }
    return static_cast<char>(next);
}

// Two-character symbols for a table of 65 and more colours: lead plus index
// div 64, lead plus index mod 64, lead being the first colour's code.
void two_char_symbols(Section& sec) {
    const int lead = code_of(sec.colours.front());
    std::vector<std::string> symbol(256);
    std::vector<std::string> fresh;
    for (size_t i = 0; i < sec.colours.size(); ++i) {
        const int k = static_cast<int>(i);
        std::string two;
        two += static_cast<char>(lead + k / k_symbols_a_char);
        two += static_cast<char>(lead + k % k_symbols_a_char);
        const unsigned char old = code_of(sec.colours[i]);
        if (symbol[old].empty()) symbol[old] = two;
        fresh.push_back(two + sec.colours[i].substr(std::min<size_t>(1, sec.colours[i].size())));
    }
    // A pixel of no colour is transparent: the blank colour is the last one.
    const std::string none = fresh.back().substr(0, 2);
    for (std::string& row : sec.rows) {
        std::string wide;
        wide.reserve(row.size() * 2);
        for (char c : row) {
            const std::string& s = symbol[static_cast<unsigned char>(c)];
            wide += s.empty() ? none : s;
        }
        row = std::move(wide);
    }
    sec.colours = std::move(fresh);
}

void close_section(Section& sec, PrjTranslation& t, std::string& out) {
    if (sec.kind == Kind::none) return;
    size_t width = sec.width;
    size_t height = sec.rows.size();
    if (sec.kind == Kind::line && sec.colours.size() == 1) {
        // One colour: a solid line as wide as the picture is high.
        sec.lines += std::string("Useorientation=N") + k_crlf;
        sec.lines += "lwidth(=" + std::to_string(height) + k_crlf;
        sec.lines += std::string("BorderWidth=0") + k_crlf;
        sec.rows.clear();
        width = height = 0;
    } else if (!sec.colours.empty() && std::any_of(sec.rows.begin(), sec.rows.end(), [](const std::string& r) {
                   return r.find(' ') != std::string::npos;
               })) {
        // Only a picture with blank pixels gets the transparent colour: an
        // extra colour in a full two-colour picture would read as a night
        // colour, and mkgmap refuses a line or polygon of three colours.
        const char blank = blank_symbol(sec.colours);
        sec.colours.push_back(std::string(1, blank) + " c none");
        for (std::string& row : sec.rows) std::replace(row.begin(), row.end(), ' ', blank);
    }
    size_t cpp = sec.colours.empty() ? 0 : 1;
    if (sec.colours.size() > k_one_char_colours) {
        two_char_symbols(sec);
        cpp = 2;
    }
    const bool point = sec.kind == Kind::point;
    std::string header;
    if (point && sec.colours.empty()) {
        header = "DayXpm=\"1 1 0 0\"";
        sec.rows.clear();
    } else {
        header = std::string(point ? "DayXpm=" : "Xpm=") + "\"" + std::to_string(width) + " " + std::to_string(height) +
                 " " + std::to_string(sec.colours.size()) + " " + std::to_string(cpp) + "\"";
        if (cpp != 0) header += " Colormode=" + std::to_string(cpp * 16);
    }
    out += sec.marker + k_crlf + sec.lines + header + k_crlf;
    for (const std::string& c : sec.colours) out += quoted(c) + k_crlf;
    for (const std::string& r : sec.rows) out += quoted(r) + k_crlf;
    out += std::string("[end]") + k_crlf;
    if (!sec.type.empty())
        for (const std::string& level : sec.draworder) t.draworder += "Type=" + sec.type + "," + level + k_crlf;
    sec = Section{};
}

// "[poi]" to "[_point]", "[polyline]" to "[_line]", "[polygon]" to "[_polygon]".
Kind section_kind(const std::string& low, std::string& marker) {
    if (low == "[poi]") marker = "[_point]";
    else if (low == "[polyline]") marker = "[_line]";
    else if (low == "[polygon]") marker = "[_polygon]";
    else return Kind::none;
    return low == "[poi]" ? Kind::point : low == "[polyline]" ? Kind::line : Kind::polygon;
}

const char* const k_font_styles[] = {"default", "NoLabel", "SmallFont", "Normal", "Large"};

}  // namespace

void parse_prj(PrjTranslation& t, platform::Prompt& ui, std::string_view block, std::string& out) {
    const size_t total = static_cast<size_t>(std::count(block.begin(), block.end(), '\n')) + 1;
    Section sec;
    bool in_id = false;  // an "[_id]" section opened for the identifiers
    auto close_id = [&] {
        if (in_id) out += std::string("[end]") + k_crlf;
        in_id = false;
    };
    size_t pos = 0, count = 0;
    while (pos <= block.size()) {
        size_t nl = block.find('\n', pos);
        if (nl == std::string_view::npos) nl = block.size();
        std::string_view raw = block.substr(pos, nl - pos);
        pos = nl + 1;
        if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
        ++count;
        if (count % 100 == 0) ui.progress(static_cast<int>(static_cast<double>(count) / static_cast<double>(total) * 50 + 20));
        const size_t lead = raw.find_first_not_of(" \t");
        if (lead == std::string_view::npos) continue;
        const std::string line(raw.substr(lead));
        const std::string low = typ::lower(line);
        auto rest = [&](size_t from) { return line.size() > from ? line.substr(from) : std::string(); };

        if (low[0] == '[') {
            std::string marker;
            const Kind kind = section_kind(trim_blanks(low), marker);
            if (kind != Kind::none || trim_blanks(low) == "[end]") {
                close_id();
                close_section(sec, t, out);
                sec.kind = kind;
                sec.marker = marker;
                continue;
            }
        }
        if (low.rfind("familyid=", 0) == 0 || low.rfind("product=", 0) == 0) {
            const bool fid = low[0] == 'f';
            const std::string value = trim_blanks(rest(fid ? 9 : 8));
            const std::string key = fid ? "FID=" + value : "ProductCode=" + (value.empty() ? std::string("1") : value);
            if (sec.kind == Kind::none && !in_id) {
                out += std::string("[_id]") + k_crlf;
                in_id = true;
            }
            (sec.kind == Kind::none ? out : sec.lines) += key + k_crlf;
            continue;
        }
        if (sec.kind == Kind::none) {
            close_id();
            out += line + k_crlf;
            continue;
        }
        if (low.rfind("type=", 0) == 0) {
            sec.type = trim_blanks(rest(5));
            sec.lines += line + k_crlf;
        } else if (low.rfind("textsize=", 0) == 0) {
            const std::string n = trim_blanks(rest(9));
            const bool known = n.size() == 1 && n[0] >= '0' && n[0] <= '4';
            sec.lines += std::string("FontStyle=") + (known ? k_font_styles[n[0] - '0'] : n.c_str()) + k_crlf;
            if (typ::lower(sec.lines).find("extendedlabels=") == std::string::npos)
                sec.lines += std::string("ExtendedLabels=Y") + k_crlf;
        } else if (low.rfind("textcolor=", 0) == 0) {
            sec.lines += "DaycustomColor:#" + rest(12) + k_crlf;
        } else if (low.rfind("string=", 0) == 0) {
            sec.lines += "String" + std::to_string(++sec.strings) + "=0x" + rest(7) + k_crlf;
        } else if (low.rfind("color=", 0) == 0) {
            sec.colours.push_back(picture_text(rest(6)));
        } else if (low.rfind("line=", 0) == 0) {
            // Blanks at the end of a row are pixels.
            sec.rows.push_back(picture_text(raw.substr(lead + 5)));
            sec.width = sec.rows.back().size();
        } else if (low.rfind("draworder=", 0) == 0) {
            sec.draworder.push_back(trim_blanks(rest(10)));
        } else {
            sec.lines += line + k_crlf;
        }
    }
    close_id();
    close_section(sec, t, out);
}

void finish_prj(PrjTranslation& t, std::string& out) {
    if (trim_blanks(t.draworder).empty()) return;
    out += std::string("[_drawOrder]") + k_crlf + trim_blanks(t.draworder) + "[end]" + k_crlf;
}

std::string translate_prj(platform::Prompt& ui, std::string_view project, size_t block_size) {
    PrjTranslation t;
    std::string out, carry;
    for (size_t at = 0; at < project.size() || !carry.empty();) {
        const size_t take = std::min(block_size, project.size() - at);
        carry.append(project.substr(at, take));
        at += take;
        std::string block;
        if (at < project.size()) {
            // Only whole sections go to the translator; the tail waits.
            const size_t end = typ::lower(carry).rfind("[end]");
            if (end == std::string::npos) continue;
            block = carry.substr(0, end + 5);
            carry.erase(0, end + 5);
        } else {
            block = std::move(carry);
            carry.clear();
        }
        if (!block.empty()) parse_prj(t, ui, block, out);
    }
    finish_prj(t, out);
    return out;
}

bool load_prj_data(Store& s, platform::Prompt& ui, const std::string& path, std::string_view project, size_t block_size) {
    std::string text = translate_prj(ui, project, block_size);
    const bool loaded = load_txt(s, ui, path, std::move(text), true, true);
    s.dirty = true;
    return loaded;
}

bool loadprj(Store& s, platform::Prompt& ui, const std::string& path) {
    if (!platform::file_exists(path)) {
        ui.message(path + " doesn't exist");
        return false;
    }
    std::string error;
    const auto data = platform::read_file(path, &error);
    if (!data) {
        ui.message("Cannot read " + path + ": " + error);
        return false;
    }
    return load_prj_data(s, ui, path, *data);
}

}  // namespace korvex::text
