// Byte accessors over the file buffer and the small hex helpers the record
// codecs share. A read past the end gives 0 and, once a load, a report line.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

void note_overrun(Store& s, int64_t pos);

inline int curf_byte(Store& s, int64_t pos) {
    if (pos >= 0 && static_cast<uint64_t>(pos) < s.curf.size())
        return static_cast<unsigned char>(s.curf[static_cast<size_t>(pos)]);
    note_overrun(s, pos);
    return 0;
}

inline int curf_u16(Store& s, int64_t pos) { return curf_byte(s, pos) | (curf_byte(s, pos + 1) << 8); }

inline int32_t curf_u24(Store& s, int64_t pos) {
    return curf_byte(s, pos) | (curf_byte(s, pos + 1) << 8) | (curf_byte(s, pos + 2) << 16);
}

// Unsigned 32 bits; offsets of 2 GiB and more stay positive.
inline int64_t curf_u32(Store& s, int64_t pos) {
    return static_cast<int64_t>(static_cast<uint32_t>(curf_u24(s, pos)) |
                                (static_cast<uint32_t>(curf_byte(s, pos + 3)) << 24));
}

// The offset field of a 3-byte index record.
inline int32_t bit1(Store& s, int64_t pos) { return curf_byte(s, pos); }

// Stores one byte; a position past the end grows the buffer with zeros.
void head(Store& s, int64_t pos, int value);

// Four little-endian bytes at pos. Narrower index fields are written with it
// too: records go in rising order, so the next one overwrites the spill.
void put_head4(Store& s, int64_t value, int64_t pos);

// "0a1b" -> bytes 0a 1b.
std::string hexasc(std::string_view hex);

// One hex digit is padded to two; longer texts stay.
std::string hex2(std::string_view text);

// Upper-case hex without leading zeros ("0" for zero).
std::string hex(int64_t value);

// Eight "0"/"1" characters, lowest bit first.
std::string Dec2Binary(int value);

// The same eight characters without a string of their own: pictures print
// thousands of them.
std::string_view binary8(int value);

// Stores bytes at pos, growing the buffer with zeros as head() does.
void put_block(Store& s, int64_t pos, std::string_view bytes);

// Pads to six digits, then swaps the first and third pair: RRGGBB <-> BBGGRR.
std::string rgbswap(std::string_view text);

// One palette line to the three record bytes: what follows the last "#",
// byte-swapped; ff ff ff when there is no "#" ("none").
std::string fnkl(std::string_view xpmline);

// "#RRGGBB" of a record colour: the three bytes blue, green, red at pos.
std::string colour_at(Store& s, int64_t pos);

// A palette line of the text form: quote, digit, " c ", value, quote.
void append_palette_line(std::string& out, int digit, std::string_view value);

// Value of hex digits; stops at the first non-digit.
int64_t hex_value(std::string_view digits);

// Several needles (lower case, at most eight) looked for in one walk of a
// text, ASCII case ignored: key lines are tested for many words at once. The
// walk jumps by the last byte of a window as long as the shortest needle.
class CaselessNeedles {
public:
    CaselessNeedles(std::initializer_list<std::string_view> needles);
    // First place of each needle in text, in the order given; npos if absent.
    void find_first(std::string_view text, size_t* at) const;

private:
    std::string_view needles_[8];
    size_t count_ = 0;
    size_t window_ = 0;         // length of the shortest needle
    uint8_t shift_[256] = {};   // by the window's last byte: places no needle can start
};

// The lines joined by CR LF, without one after the last.
inline std::string join_lines(const std::vector<std::string>& lines) {
    std::string out;
    for (size_t k = 0; k < lines.size(); ++k) {
        if (k) out += "\r\n";
        out += lines[k];
    }
    return out;
}

// Calls f with each line of text that is not empty, without its CR LF.
template <class F>
void for_each_line(std::string_view text, F&& f) {
    size_t at = 0;
    while (at <= text.size()) {
        size_t end = text.find('\n', at);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(at, end - at);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (!line.empty()) f(line);
        at = end + 1;
    }
}

// Upper-case/lower-case copies.
std::string lower(std::string_view s);
std::string upper(std::string_view s);

// Position of needle (given in lower case) in text, ASCII case ignored; npos
// when absent. Spares the lower() copy of a whole line for one look-up.
size_t find_caseless(std::string_view text, std::string_view needle, size_t from = 0);
inline bool contains_caseless(std::string_view text, std::string_view needle) {
    return find_caseless(text, needle) != std::string_view::npos;
}

// The word (lower case) stands in text just before end, ASCII case ignored.
inline bool word_before(std::string_view text, size_t end, std::string_view word) {
    if (end < word.size() || end > text.size()) return false;
    for (size_t k = 0, p = end - word.size(); k < word.size(); ++k, ++p) {
        char c = text[p];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
        if (c != word[k]) return false;
    }
    return true;
}

}  // namespace korvex::typ
