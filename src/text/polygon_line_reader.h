// Reading one polygon or line section of the text form into a table row.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"
#include "model/crlf.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Reads a "[_polygon]" section into row (which must exist). batch false also
// feeds the section to draworder_fromtxt and sorts drwlist.
void pgonparse_txt(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch);

// Reads a "[_line]" section into row (ln_n + k for an active line).
void pollineparse(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch);

// The first n lines of a CR LF colour-line list.
std::string reducl(const std::string& colours, int n);

// Activity code ("40".."52") of an Activity= value; "40" when no name matches.
std::string activity_code(const std::string& value);

// The header length of a file with active lines.
inline constexpr int32_t k_active_header = 174;

// Pieces shared by the two readers.
namespace reader {

bool has(std::string_view text, std::string_view word);
bool blank(char c);
std::string trim(std::string_view t);
// The hex digits right behind position at (blanks skipped).
std::string hex_run(std::string_view t, size_t at);
// Lines at CR LF or LF, without their ends.
std::vector<std::string> split_lines(std::string text);
// Blanks around the first "=" of a key line dropped.
std::string normalise_key(const std::string& line);
// The section with every key line normalised, for the section test.
std::string keys_normalised(const std::string& section);
// Text behind "[end]" cut.
std::string cut_after_end(const std::string& section);
int count_quotes(std::string_view t);
// A quoted colour line: "c " and a "#" behind it, or "none" (lower-cased line).
bool colour_line(const std::string& low);
// The symbol of a colour line, cpp characters, trimmed unless only blanks.
std::string colour_symbol(const std::string& line, int cpp);
// "#RRGGBB" in capitals, or "none".
std::string colour_value(const std::string& line);
// Symbols and values of a section's colour lines, four at most: a polygon or
// line has a day and a night pair and no more.
void colour_table(const std::vector<std::string>& colours, int cpp, std::vector<std::string>& symbols,
                  std::vector<std::string>& values);
// Quote, digit k, " c ", value, quote.
std::string canonical_colour(int k, const std::string& value);
// Lines joined by CR LF.
std::string join(const std::vector<std::string>& lines);
// Six digits reversed by pairs: text order to file byte order.
std::string byte_swap(std::string digits);
// "=n"/"=y" of key lines in capitals; labels and comments untouched.
void yes_no_upper(std::string& t);
// Rows of symbols to "0"/"1" by each colour's place in its pair.
std::string rows_to_digits(const std::vector<std::string>& rows, const std::vector<std::string>& symbols, int cpp);
// The label the grid shows, chosen from the String lines as for a decoded
// record: the preferred language, else language 0, else the first string
// that starts with a plain character; quoted, "" without one.
struct LabelChoice {
    std::string preferred, zero, first;
    void offer(const Store& s, const std::string& line);
    std::string shown() const;
};
// Characters a pixel of an Xpm line; a " 2\"" becomes " 1\"".
int xpm_cpp(std::string& xpm);
// The Xpm line cut behind its last quote.
std::string cut_xpm(std::string xpm);
// The code (type << 8 | subtype) of Type= digits.
int32_t type_value(const std::string& digits);
// Hex digits of a code, at least five, in capitals.
std::string five_digits(int32_t code);
// The code with the subtype of a SubType= line.
int32_t with_subtype(int32_t code, const std::string& line);
// The digits of a Type= line.
std::string type_digits_of(const std::string& line);
// A code whose subtype is above 0x1f keeps the subtype's low five bits, as
// mkgmap reads it (0x2f20 is 0x2f00); the load report says so.
int32_t five_bit_subtype(Store& s, int32_t code);
// A CustomColor= line (lower-cased) whose value is none of No, Day, Night and
// DayAndNight: mkgmap goes by the colour keys alone, and so does the encoder
// without this line.
bool idle_custom_colour(const std::string& low);

}  // namespace reader

}  // namespace korvex::text
