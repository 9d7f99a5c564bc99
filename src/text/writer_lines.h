// Line-level helpers shared by the section writers: splitting an element's
// text into lines, key tests on lower-cased lines, and the per-line rewrites
// every class applies (string conversion, the 0x2F language, type digits).
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"

namespace korvex::text::detail {

using model::Store;

inline constexpr std::string_view crlf = "\r\n";
inline constexpr std::string_view ruler = ";12345678901234567890123456789012";

// Calls fn(line) for each line of text; CR LF and lone LF both end a line,
// the CR is not part of the line.
template <typename Fn>
void for_each_line(std::string_view text, Fn&& fn) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        size_t stop = end;
        if (stop > pos && text[stop - 1] == '\r') --stop;
        fn(text.substr(pos, stop - pos));
        pos = end + 1;
    }
}

std::string lower(std::string_view s);
std::string_view trim(std::string_view s);
bool contains(std::string_view hay, std::string_view needle);
bool starts_with_ci(std::string_view s, std::string_view prefix);
// needle in lower case.
bool contains_ci(std::string_view hay, std::string_view needle);

// Appends each non-empty row of rows, quoted, with CR LF.
void append_rows(std::string& out, std::string_view rows);

// How the section writers treat strings.
struct LineOptions {
    bool to_utf8 = false;  // re-encode String texts from their language's page to UTF-8
    // UTF-8 of each byte of a single-byte page, built on first use: a save
    // recodes thousands of strings and opening a converter each time costs
    // more than the rest of the writer.
    std::map<int, std::array<std::string, 256>> utf8_of_byte;
};

// A "String" line: the language 0x2F written as 0x00, and the text converted
// when asked. Other lines come back unchanged.
std::string string_line(const Store& s, std::string_view line, LineOptions& opt);
bool is_string_line(std::string_view lowered);

// The writer puts its own ruler behind the rows; one kept in an element's text
// would stand in front of them and end the picture for a reader.
bool is_ruler(std::string_view line);
bool is_end_marker(std::string_view lowered);

// Type= digits: three get "00" behind (an extended type without subtype), four
// ending in "00" lose them (a plain type), and digits are lower case. Lines
// without "0x" digits stay as they are.
std::string repair_type_line(std::string_view line);

// Merges a "SubType=0xSS" line into the Type line text before it: the type
// digits are cut to the type (3 of 5, 2 of 4) and the subtype digits appended.
std::string merge_subtype(std::string_view type_line, std::string_view subtype_line);

// Hex digits behind the first "x" of a line (empty when none).
std::string_view hex_digits_after_x(std::string_view line);

// Calls fn(raw, line, lowered) for each line of an element's own text that a
// section carries: blank lines and rulers are left out, and "[end]" ends the
// text. line is raw trimmed.
template <typename Fn>
void for_each_key_line(std::string_view text, Fn&& fn) {
    bool ended = false;
    for_each_line(text, [&](std::string_view raw) {
        if (ended) return;
        std::string_view line = trim(raw);
        if (line.empty() || is_ruler(line)) return;
        std::string lo = lower(line);
        if (is_end_marker(lo)) {
            ended = true;
            return;
        }
        fn(raw, line, lo);
    });
}

// Keeps an element's Type= line among its lines and merges a SubType= line
// into it, whichever of the two stands first.
class TypeLine {
public:
    explicit TypeLine(std::vector<std::string>& lines) : lines_(lines) {}
    void subtype(std::string_view line);
    void type(std::string line);
    // A Type= (digits repaired) or SubType= line; false for any other.
    bool take(std::string_view line, std::string_view lowered);
    // A SubType= that found no Type= is kept as it stood.
    void finish();

private:
    std::vector<std::string>& lines_;
    int index_ = -1;
    std::string pending_;
};

// What a section does with a line no rule of its own took: a String line is
// converted, any other kept as it stands.
void keep_line(const Store& s, std::vector<std::string>& lines, std::string_view raw, std::string_view line,
               std::string_view lowered, LineOptions& opt);

// Joins lines with CR LF, no line end after the last.
std::string join_lines(const std::vector<std::string>& lines);

}  // namespace korvex::text::detail
