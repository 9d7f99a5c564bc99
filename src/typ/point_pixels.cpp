#include "typ/point_pixels.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "model/store.h"

namespace korvex::typ {

namespace {

constexpr int k_bits_per_entry32 = 28;

// Both symbol forms of every byte value, built once.
struct SymbolTable {
    std::array<char, 256> one{};
    std::array<std::array<char, 2>, 256> two{};
    // The one-character symbols of all pixels of a byte at 1, 2 and 4 bits a
    // pixel (8, 4 and 2 of them), lowest bits first.
    std::array<std::array<std::array<char, 8>, 256>, 3> packed{};
    SymbolTable() {
        for (int v = 0; v < 256; ++v) {
            const int c = k_symbol_base + v;
            one[static_cast<size_t>(v)] = static_cast<char>(c >= 255 ? k_symbol_base : c);
            two[static_cast<size_t>(v)] = {static_cast<char>(v / 16 + k_symbol_base),
                                           static_cast<char>(v % 16 + k_symbol_base)};
        }
        for (int k = 0; k < 3; ++k) {
            const int bpp = 1 << k;
            for (int v = 0; v < 256; ++v)
                for (int x = 0; x < 8 / bpp; ++x)
                    packed[static_cast<size_t>(k)][static_cast<size_t>(v)][static_cast<size_t>(x)] =
                        one[static_cast<size_t>((v >> (x * bpp)) & ((1 << bpp) - 1))];
        }
    }
};

const SymbolTable& symbols() {
    static const SymbolTable table;
    return table;
}

uint8_t byte_at(std::string_view data, int64_t i) {
    return i >= 0 && static_cast<size_t>(i) < data.size() ? static_cast<uint8_t>(data[static_cast<size_t>(i)]) : 0;
}

// The two hex digits of every byte value.
struct HexPairs {
    std::array<std::array<char, 2>, 256> pair{};
    constexpr HexPairs() {
        for (int v = 0; v < 256; ++v)
            pair[static_cast<size_t>(v)] = {"0123456789ABCDEF"[v >> 4], "0123456789ABCDEF"[v & 15]};
    }
};
constexpr HexPairs k_hex_pairs;

char* put_hex_byte(char* p, int v) {
    std::memcpy(p, k_hex_pairs.pair[static_cast<size_t>(v & 0xff)].data(), 2);
    return p + 2;
}

// Writes the canonical symbol of colour index v; returns the end.
char* put_symbol(char* p, int v, int cpp) {
    const auto& t = symbols();
    if (cpp == 2) {
        if (v < 0 || v > 255) v = 0;
        const auto& sym = t.two[static_cast<size_t>(v)];
        p[0] = sym[0];
        p[1] = sym[1];
        return p + 2;
    }
    *p = v >= 0 && v <= 255 ? t.one[static_cast<size_t>(v)] : static_cast<char>(k_symbol_base);
    return p + 1;
}

}  // namespace

int point_bpp(int n, int mode) {
    // Mode 16 keeps value n free for the transparent pixel.
    const int values = n + (mode == k_mode_transparent ? 1 : 0);
    if (values < 2) return 1;
    if (values < 4) return 2;
    if (values < 16) return 4;
    return 8;
}

int64_t point_pixel_bytes(int w, int h, int n, int mode) {
    const int64_t row = (static_cast<int64_t>(w) * point_bpp(n, mode) + 7) / 8;
    return row * h;
}

int64_t point_palette_bytes(int n, int mode) {
    if (mode == k_mode_alpha) return (static_cast<int64_t>(n) * k_bits_per_entry32 + 7) / 8;
    return 3LL * n;
}

int fnzero_sz(int w, int h) {
    const int64_t area = static_cast<int64_t>(w) * h;
    if (w > 16) return area > 0 ? std::max<int>(1, static_cast<int>(area / w)) : 0;
    return static_cast<int>(area / 8) - 1;
}

void append_symbol(std::string& out, int v, int cpp) {
    char sym[2];
    out.append(sym, static_cast<size_t>(put_symbol(sym, v, cpp) - sym));
}

int symbol_width(int colours) { return colours >= model::cpp_limit ? 2 : 1; }

int alph(std::string_view data, int64_t bit) {
    int v = 0;
    for (int k = 0; k < 4; ++k) {
        const int64_t b = bit + k;
        if (byte_at(data, b / 8) >> (b % 8) & 1) v |= 1 << k;
    }
    return v;
}

namespace {

// Entry k of a palette from the record bytes.
PaletteEntry palette_entry(std::string_view data, int k, int mode) {
    PaletteEntry e;
    if (mode == k_mode_alpha) {
        // Entries are 3.5 bytes: odd entries start in the middle of a byte.
        const int64_t bit = static_cast<int64_t>(k) * k_bits_per_entry32;
        const int64_t first = bit / 8;
        const int shift = static_cast<int>(bit % 8);
        uint64_t v = 0;
        if (first >= 0 && static_cast<size_t>(first) + 5 <= data.size()) {
            const auto* b = reinterpret_cast<const uint8_t*>(data.data()) + first;
            for (int j = 0; j < 5; ++j) v |= static_cast<uint64_t>(b[j]) << (8 * j);
        } else {
            for (int j = 0; j < 5; ++j) v |= static_cast<uint64_t>(byte_at(data, first + j)) << (8 * j);
        }
        v >>= shift;
        e.b = static_cast<uint8_t>(v & 0xff);
        e.g = static_cast<uint8_t>((v >> 8) & 0xff);
        e.r = static_cast<uint8_t>((v >> 16) & 0xff);
        e.alpha = static_cast<int>((v >> 24) & 0xf);
    } else {
        e.b = byte_at(data, 3LL * k);
        e.g = byte_at(data, 3LL * k + 1);
        e.r = byte_at(data, 3LL * k + 2);
    }
    return e;
}

// Colour lines of `count` entries, entry(k) giving each. Written through a
// pointer into room sized for the longest line: this runs for every colour of
// every icon of a file.
template <class Entry>
void write_palette_lines(std::string& out, size_t count, int mode, Entry&& entry) {
    constexpr size_t k_longest_line = 48;  // quote, symbol, " c #RRGGBB\"", " alpha=" and an int, CR LF
    const int cpp = symbol_width(static_cast<int>(count));
    const size_t start = out.size();
    out.resize(start + count * k_longest_line);
    char* p = out.data() + start;
    for (size_t k = 0; k < count; ++k) {
        const PaletteEntry e = entry(k);
        *p++ = '"';
        p = put_symbol(p, static_cast<int>(k), cpp);
        if (e.none) {
            std::memcpy(p, " c none\"\r\n", 10);
            p += 10;
            continue;
        }
        std::memcpy(p, " c #", 4);
        p += 4;
        p = put_hex_byte(p, e.r);
        p = put_hex_byte(p, e.g);
        p = put_hex_byte(p, e.b);
        *p++ = '"';
        if (mode == k_mode_alpha) {
            std::memcpy(p, " alpha=", 7);
            p = std::to_chars(p + 7, p + 7 + 11, e.alpha).ptr;
        }
        *p++ = '\r';
        *p++ = '\n';
    }
    out.resize(static_cast<size_t>(p - out.data()));
}

}  // namespace

std::vector<PaletteEntry> read_palette(std::string_view data, int n, int mode) {
    std::vector<PaletteEntry> pal(static_cast<size_t>(std::max(0, n)));
    for (int k = 0; k < n; ++k) pal[static_cast<size_t>(k)] = palette_entry(data, k, mode);
    return pal;
}

void append_palette_lines(std::string& out, const std::vector<PaletteEntry>& pal, int mode) {
    write_palette_lines(out, pal.size(), mode, [&pal](size_t k) { return pal[k]; });
}

void append_record_palette(std::string& out, std::string_view data, int n, int mode) {
    n = std::max(0, n);
    const size_t count = static_cast<size_t>(n) + (mode == k_mode_transparent ? 1 : 0);
    write_palette_lines(out, count, mode, [&](size_t k) {
        if (k < static_cast<size_t>(n)) return palette_entry(data, static_cast<int>(k), mode);
        PaletteEntry none;
        none.none = true;
        return none;
    });
}

std::string palette_lines(const std::vector<PaletteEntry>& pal, int mode) {
    std::string out;
    append_palette_lines(out, pal, mode);
    return out;
}

std::string alphacols(std::string_view data, int n) {
    return palette_lines(read_palette(data, n, k_mode_alpha), k_mode_alpha);
}

void append_rows(std::string& out, std::string_view data, int w, int h, int n, int mode, int cpp) {
    if (h <= 0) return;
    w = std::max(w, 0);
    const int bpp = point_bpp(n, mode);
    const size_t row_bytes = (static_cast<size_t>(w) * static_cast<size_t>(bpp) + 7) / 8;
    const unsigned mask = (1u << bpp) - 1;
    const size_t line = static_cast<size_t>(w) * (cpp == 2 ? 2 : 1) + 2;
    const auto& t = symbols();
    // A whole byte's symbols are copied at once; the last copy of a row may
    // run up to 7 characters on, into room the next row overwrites or the
    // slack cut off at the end.
    constexpr size_t k_slack = 8;
    const size_t start = out.size();
    const size_t total = line * static_cast<size_t>(h);
    out.resize(start + total + k_slack);
    char* p = out.data() + start;
    const auto* bytes = reinterpret_cast<const uint8_t*>(data.data());
    const int per_byte = 8 / bpp;
    const auto& packed = t.packed[bpp == 1 ? 0 : bpp == 2 ? 1 : 2];
    for (int y = 0; y < h; ++y) {
        const size_t base = row_bytes * static_cast<size_t>(y);
        if (base + row_bytes <= data.size()) {
            const uint8_t* row = bytes + base;
            if (cpp == 2 && bpp == 8) {
                for (int x = 0; x < w; ++x, p += 2) std::memcpy(p, t.two[row[x]].data(), 2);
            } else if (cpp == 2) {
                for (int x = 0; x < w; ++x) {
                    const size_t bit = static_cast<size_t>(x) * static_cast<size_t>(bpp);
                    const auto& sym = t.two[(row[bit >> 3] >> (bit & 7)) & mask];
                    *p++ = sym[0];
                    *p++ = sym[1];
                }
            } else if (bpp == 8) {
                for (int x = 0; x < w; ++x) *p++ = t.one[row[x]];
            } else {
                char* const row_end = p + w;
                auto copy_row = [&]<size_t Per>() {
                    for (size_t i = 0; p < row_end; ++i, p += Per) std::memcpy(p, packed[row[i]].data(), Per);
                };
                if (per_byte == 2)
                    copy_row.template operator()<2>();
                else if (per_byte == 4)
                    copy_row.template operator()<4>();
                else
                    copy_row.template operator()<8>();
                p = row_end;
            }
        } else {
            // A short buffer: the missing bytes read as 0.
            for (int x = 0; x < w; ++x) {
                const int64_t bit = static_cast<int64_t>(x) * bpp;
                p = put_symbol(p, (byte_at(data, static_cast<int64_t>(base) + (bit >> 3)) >> (bit & 7)) & static_cast<int>(mask), cpp);
            }
        }
        *p++ = '\r';
        *p++ = '\n';
    }
    out.resize(start + total);
}

std::string drawbmp(std::string_view data, int w, int h, int n, int mode, int cpp) {
    std::string out;
    append_rows(out, data, w, h, n, mode, cpp);
    return out;
}

bool pixels_within_palette(std::string& rows, int colours, int cpp) {
    if (colours <= 0 || colours >= 256) return false;
    bool changed = false;
    const int step = cpp == 2 ? 2 : 1;
    for (size_t k = 0; k + static_cast<size_t>(step) <= rows.size();) {
        if (rows[k] == '\r' || rows[k] == '\n') {
            ++k;
            continue;
        }
        const int hi = static_cast<uint8_t>(rows[k]) - k_symbol_base;
        const int v = step == 2 ? hi * 16 + (static_cast<uint8_t>(rows[k + 1]) - k_symbol_base) : hi;
        if (v >= colours) {
            put_symbol(rows.data() + k, 0, cpp);
            changed = true;
        }
        k += static_cast<size_t>(step);
    }
    return changed;
}

uint32_t fnpoi32(std::string_view line) {
    // The colour digits follow the last "#"; "none" is white and fully transparent.
    uint32_t r = 0xff, g = 0xff, b = 0xff;
    int alpha = 0;
    const size_t hash = line.rfind('#');
    const size_t quote = line.rfind('"');
    const bool none = hash == std::string_view::npos;
    if (!none) {
        auto digit = [](char c) {
            if (c >= '0' && c <= '9') return c - '0';
            if (c >= 'a' && c <= 'f') return c - 'a' + 10;
            if (c >= 'A' && c <= 'F') return c - 'A' + 10;
            return -1;
        };
        uint32_t v = 0;
        size_t k = hash + 1;
        int digits = 0;
        for (; k < line.size() && digits < 6 && digit(line[k]) >= 0; ++k, ++digits) v = v * 16 + static_cast<uint32_t>(digit(line[k]));
        r = (v >> 16) & 0xff;
        g = (v >> 8) & 0xff;
        b = v & 0xff;
    }
    // alpha= stands behind the closing quote of the value.
    const size_t from = quote == std::string_view::npos ? 0 : quote;
    const size_t a = line.find("alpha=", from);
    if (a != std::string_view::npos) {
        size_t k = a + 6;
        while (k < line.size() && line[k] == ' ') ++k;
        for (; k < line.size() && line[k] >= '0' && line[k] <= '9'; ++k) alpha = alpha * 10 + (line[k] - '0');
        alpha = std::min(alpha, 15);
    } else if (none) {
        alpha = 15;
    }
    return b | (g << 8) | (r << 16) | (static_cast<uint32_t>(alpha) << 24);
}

std::string alphacol32(const std::vector<uint32_t>& entries) {
    const size_t n = entries.size();
    std::string out(static_cast<size_t>(point_palette_bytes(static_cast<int>(n), k_mode_alpha)), '\0');
    // Two entries fill seven bytes; an odd last one takes four, its top
    // nibble 0.
    char* p = out.data();
    for (size_t k = 0; k < n; k += 2, p += 7) {
        uint64_t v = entries[k] & 0x0fffffff;
        if (k + 1 < n) v |= static_cast<uint64_t>(entries[k + 1] & 0x0fffffff) << k_bits_per_entry32;
        const size_t bytes = k + 1 < n ? 7 : 4;
        for (size_t i = 0; i < bytes; ++i) p[i] = static_cast<char>((v >> (8 * i)) & 0xff);
    }
    return out;
}

std::string compressibmp(const std::vector<uint8_t>& values, int w, int h, int bpp) {
    const int64_t row_bytes = (static_cast<int64_t>(w) * bpp + 7) / 8;
    std::string out(static_cast<size_t>(row_bytes * h), '\0');
    const int mask = (1 << bpp) - 1;
    for (int y = 0; y < h; ++y) {
        char* row = out.data() + row_bytes * y;
        const uint8_t* v = values.data() + static_cast<size_t>(y) * static_cast<size_t>(w);
        if (bpp == 8) {
            std::copy(v, v + w, reinterpret_cast<uint8_t*>(row));
            continue;
        }
        for (int x = 0; x < w; ++x) {
            const int bit = x * bpp;
            row[bit >> 3] = static_cast<char>(static_cast<uint8_t>(row[bit >> 3]) | ((v[x] & mask) << (bit & 7)));
        }
    }
    return out;
}

std::vector<uint8_t> pixel_values(std::string_view rows, int w, int h, int cpp, const std::vector<int>& remap,
                                  std::vector<BadPixel>* bad) {
    std::vector<uint8_t> out(static_cast<size_t>(w) * static_cast<size_t>(std::max(0, h)), 0);
    const int colours = static_cast<int>(remap.size());
    size_t pos = 0;
    for (int y = 0; y < h && pos < rows.size(); ++y) {
        size_t end = pos;
        while (end < rows.size() && rows[end] != '\r' && rows[end] != '\n') ++end;
        const std::string_view row = rows.substr(pos, end - pos);
        uint8_t* dst = out.data() + static_cast<size_t>(y) * static_cast<size_t>(w);
        const int present = std::min<int>(w, static_cast<int>(row.size()) / cpp);
        for (int x = 0; x < present; ++x) {
            int v;
            if (cpp == 2) {
                const int hi = static_cast<uint8_t>(row[2 * x]) - k_symbol_base;
                const int lo = static_cast<uint8_t>(row[2 * x + 1]) - k_symbol_base;
                v = lo < 0 || lo > 15 || hi < 0 ? -1 : hi * 16 + lo;
            } else {
                v = static_cast<uint8_t>(row[x]) - k_symbol_base;
            }
            if (v < 0 || v >= colours) {
                if (bad) bad->push_back({y + 1, x + 1, v});
                v = 0;
            }
            dst[x] = static_cast<uint8_t>(colours ? remap[static_cast<size_t>(v)] : 0);
        }
        // A line break is CR LF or a lone LF.
        pos = end;
        if (pos < rows.size() && rows[pos] == '\r') ++pos;
        if (pos < rows.size() && rows[pos] == '\n') ++pos;
    }
    return out;
}

}  // namespace korvex::typ
