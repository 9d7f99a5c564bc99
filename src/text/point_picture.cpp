// Pictures of a point section: heads, colour tables, rows and their symbols.
#include "text/point_picture.h"

#include <algorithm>

#include "typ/curf_access.h"
#include "typ/point_pixels.h"

namespace korvex::text {

namespace point_text {

namespace {

using typ::lower;
using typ::upper;

// One colour line as the decoder writes it: '"' symbol " c #RRGGBB" '"'
// [" alpha=" a], or '"' symbol " c none" '"'. An eight-digit value is
// #RRGGBBAA, whose AA mkgmap stores as alpha 15 - AA / 16.
struct Colour {
    std::string value;  // "#RRGGBB" or "none"
    int alpha = -1;
};

Colour read_colour(std::string_view line, int cpp) {
    Colour c;
    size_t p = std::min(line.size(), static_cast<size_t>(1 + cpp));
    while (p < line.size() && line[p] == ' ') ++p;
    if (p < line.size() && (line[p] == 'c' || line[p] == 'C') && p + 1 < line.size() && line[p + 1] == ' ') {
        p += 2;
    } else {
        const size_t at = typ::find_caseless(line, "c ", 1);
        p = at == std::string_view::npos ? line.size() : at + 2;
    }
    size_t close = line.find('"', p);
    if (close == std::string_view::npos) close = line.size();
    const std::string_view value = trim_view(line.substr(p, close - p));
    if (lower(value) == "none") {
        c.value = "none";
    } else {
        c.value = upper(value);
        if (c.value.size() == 9 && c.value[0] == '#') {
            c.alpha = 15 - static_cast<int>(typ::hex_value(c.value.substr(7, 1)));
            c.value.resize(7);
        }
    }
    if (close < line.size()) {
        // "canalalpha=" is an older spelling of "alpha=".
        const std::string behind = lower(line.substr(close + 1));
        const size_t a = behind.find("alpha");
        if (a != std::string::npos) {
            size_t k = behind.find('=', a);
            int v = 0;
            bool any = false;
            for (k = k == std::string::npos ? behind.size() : k + 1; k < behind.size() && behind[k] == ' '; ++k) {}
            for (; k < behind.size() && behind[k] >= '0' && behind[k] <= '9'; ++k, any = true) v = std::min(v * 10 + (behind[k] - '0'), 15);
            if (any) c.alpha = v;
        }
    }
    return c;
}

void append_colour_line(std::string& out, int index, int cpp, const Colour& c) {
    out += '"';
    typ::append_symbol(out, index, cpp);
    out += " c ";
    out += c.value;
    out += '"';
    if (c.alpha >= 0 && c.value != "none") {
        out += " alpha=";
        out += std::to_string(c.alpha);
    }
    out += k_crlf;
}

}  // namespace

std::string_view trim_view(std::string_view t) {
    size_t a = 0, b = t.size();
    while (a < b && (t[a] == ' ' || t[a] == '\t' || t[a] == '\r' || t[a] == '\n')) ++a;
    while (b > a && (t[b - 1] == ' ' || t[b - 1] == '\t' || t[b - 1] == '\r' || t[b - 1] == '\n')) --b;
    return t.substr(a, b - a);
}

bool holds(std::string_view text, std::string_view word) { return text.find(word) != std::string_view::npos; }

bool is_hex(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

Head read_head(std::string_view line) {
    Head h;
    const size_t q = line.find('"');
    h.key = std::string(trim_view(line.substr(0, q)));
    // A point's day picture is "DayXpm=" however the text names it.
    if (lower(h.key) == "xpm=") h.key = "DayXpm=";
    if (q == std::string_view::npos) return h;
    const size_t close = line.find('"', q + 1);
    const std::string_view inner = line.substr(q + 1, close == std::string_view::npos ? std::string_view::npos : close - q - 1);
    h.has_blank = holds(trim_view(inner), " ");
    size_t k = 0;
    for (int& f : h.field) {
        while (k < inner.size() && inner[k] == ' ') ++k;
        if (k >= inner.size() || inner[k] < '0' || inner[k] > '9') break;
        int v = 0;
        for (; k < inner.size() && inner[k] >= '0' && inner[k] <= '9'; ++k) v = std::min(v * 10 + (inner[k] - '0'), 1 << 20);
        f = v;
    }
    const size_t cm = typ::find_caseless(line, "mode=");
    if (cm != std::string_view::npos)
        for (size_t i = cm + 5; i < line.size() && line[i] >= '0' && line[i] <= '9'; ++i) h.mode += line[i];
    return h;
}

std::string head_text(const Head& h, int w, int height, int colours, int cpp, const std::string& mode) {
    std::string out = h.key;
    out += '"' + std::to_string(w) + ' ' + std::to_string(height) + ' ' + std::to_string(colours) + ' ' +
           std::to_string(cpp) + "\" Colormode=" + mode;
    return out;
}

std::string canonical_table(const Picture& p, PointSymbols& symbols, int& mode, int& none_at, int& count) {
    std::vector<Colour> read;
    read.reserve(p.colours.size());
    bool alpha = false, none = false;
    none_at = -1;
    for (const std::string_view line : p.colours) {
        std::string symbol(line.substr(1, static_cast<size_t>(p.cpp)));
        symbol.resize(static_cast<size_t>(p.cpp), ' ');
        symbols.add(symbol);
        read.push_back(read_colour(line, p.cpp));
        alpha = alpha || read.back().alpha >= 0;
        if (read.back().value == "none") {
            if (none_at < 0) none_at = static_cast<int>(read.size()) - 1;
            none = true;
        }
    }
    if (!alpha && !none && p.head.mode == "16" && !p.colours.empty()) {
        read.push_back(Colour{"none", -1});
        none_at = static_cast<int>(read.size()) - 1;
        none = true;
        ++symbols.count;
    }
    // A table with alpha states it on every colour, 0 for opaque.
    if (!alpha && !none && p.head.mode == "32" && !read.empty()) alpha = true;
    if (alpha)
        for (Colour& c : read)
            if (c.alpha < 0) c.alpha = 0;
    mode = alpha ? 2 : none ? 1 : 0;
    count = static_cast<int>(read.size());
    std::string out;
    out.reserve(read.size() * 24);
    const int cpp = typ::symbol_width(static_cast<int>(read.size()));
    for (size_t k = 0; k < read.size(); ++k) append_colour_line(out, static_cast<int>(k), cpp, read[k]);
    return out;
}

std::string old_style_table(const std::vector<std::string_view>& rows, int& mode) {
    std::string out;
    for (const std::string_view row : rows) {
        for (size_t h = row.find('#'); h != std::string::npos; h = row.find('#', h + 1)) {
            size_t n = 0;
            while (h + 1 + n < row.size() && is_hex(row[h + 1 + n]) && n < 8) ++n;
            if (n < 6) continue;
            out += "\"#" + upper(row.substr(h + 1, 6)) + '"';
            if (n == 8) {
                out += " alpha=" + std::to_string(typ::hex_value(row.substr(h + 8, 1)));
                mode = 2;
            }
            out += k_crlf;
        }
    }
    return out;
}

std::vector<std::string> unknown_symbols(const std::vector<std::string_view>& rows, const PointSymbols& symbols) {
    std::vector<std::string> found;
    std::vector<bool> seen(65536, false);
    const auto cpp = static_cast<size_t>(symbols.cpp);
    for (const std::string_view row : rows)
        for (size_t x = 0; x + cpp <= row.size(); x += cpp) {
            if (symbols.find(row.data() + x) >= 0) continue;
            const auto k = static_cast<size_t>(PointSymbols::key(row.data() + x, symbols.cpp));
            if (!seen[k]) found.emplace_back(row.substr(x, cpp));
            seen[k] = true;
        }
    return found;
}

}  // namespace point_text

using point_text::holds;

void PointSymbols::add(std::string_view symbol) {
    const size_t keys = cpp == 2 ? 65536 : 256;
    if (index.size() < keys) index.resize(keys, -1);
    if (static_cast<int>(symbol.size()) >= cpp) {
        int16_t& slot = index[static_cast<size_t>(key(symbol.data(), cpp))];
        if (slot < 0) slot = static_cast<int16_t>(count);
    }
    ++count;
}

namespace {

// One row of pixels in canonical symbols and CR LF appended to out, which
// is grown once for the row.
void append_row(std::string& out, std::string_view row, const PointSymbols& symbols, int out_cpp) {
    const auto cpp = static_cast<size_t>(symbols.cpp);
    const size_t pixels = row.size() / cpp;
    const size_t at = out.size();
    out.resize(at + pixels * static_cast<size_t>(out_cpp) + 2);
    char* o = out.data() + at;
    const int fallback = std::max(symbols.fallback, 0);
    for (size_t x = 0; x + cpp <= row.size(); x += cpp) {
        int v = symbols.find(row.data() + x);
        if (v < 0) v = fallback;
        if (out_cpp == 1) {
            *o++ = static_cast<char>(v + typ::k_symbol_base);
        } else {
            *o++ = static_cast<char>(v / 16 + typ::k_symbol_base);
            *o++ = static_cast<char>(v % 16 + typ::k_symbol_base);
        }
    }
    *o++ = '\r';
    *o = '\n';
}

}  // namespace

std::string convert_txtbmp(std::string_view rows, const PointSymbols& symbols, int colours) {
    const int out_cpp = typ::symbol_width(colours);
    const auto cpp = static_cast<size_t>(symbols.cpp);
    std::string out;
    out.reserve(rows.size() / cpp * static_cast<size_t>(out_cpp) + 16);
    size_t pos = 0;
    while (pos < rows.size()) {
        size_t end = rows.find('\n', pos);
        if (end == std::string_view::npos) end = rows.size();
        std::string_view row = rows.substr(pos, end - pos);
        if (!row.empty() && row.back() == '\r') row.remove_suffix(1);
        append_row(out, row, symbols, out_cpp);
        pos = end + 1;
    }
    return out;
}

namespace point_text {

std::string convert_rows(const std::vector<std::string_view>& rows, const PointSymbols& symbols, int colours) {
    const int out_cpp = typ::symbol_width(colours);
    size_t size = 0;
    for (const std::string_view r : rows) size += r.size() / static_cast<size_t>(symbols.cpp) * static_cast<size_t>(out_cpp) + 2;
    std::string out;
    out.reserve(size);
    for (const std::string_view r : rows) append_row(out, r, symbols, out_cpp);
    return out;
}

}  // namespace point_text

std::string fncoltxt(Store& s, const std::string& colourlines, int32_t row, bool night) {
    std::string out;
    int k = 0;
    typ::for_each_line(colourlines, [&](std::string_view line) {
        const size_t c = line.find(" c");
        out += '"';
        typ::append_symbol(out, k++, 2);
        out += ' ';
        out += c == std::string_view::npos ? line : line.substr(c + 1);
        out += k_crlf;
    });
    std::string& rows = night ? s.pt_nbmp[static_cast<size_t>(row)] : s.pt_bmp[static_cast<size_t>(row)];
    std::string wide;
    wide.reserve(rows.size() * 2);
    for (const char ch : rows) {
        const auto c = static_cast<unsigned char>(ch);
        if (c < 14) {
            wide += ch;
        } else {
            typ::append_symbol(wide, c - typ::k_symbol_base, 2);
        }
    }
    rows = std::move(wide);
    return out;
}

}  // namespace korvex::text
