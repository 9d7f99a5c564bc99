// Label strings between code pages: which page a language uses, and the
// conversions used when strings enter the tables or leave them as UTF-8.
#pragma once

#include <string>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

inline const std::string bom = "\xEF\xBB\xBF";

// The code page number of UTF-8.
inline constexpr int k_utf8 = 65001;

// Code page of a string language byte.
int lang_cp(const Store& s, int id);

// Code page of the first "0xNN" language (0 to 48) found in text.
int text_cp(const Store& s, const std::string& text);

// Windows character set of a code page, for text widgets (0 when unknown).
int cp_charset(int cp);

// bytes of page cp to wide text, and wide text to bytes of s.cvcp (a byte below
// 16 keeps its value).
std::u32string bytes_to_wide(const std::string& bytes, int cp);
std::string wide_to_cp(const Store& s, const std::u32string& text);
std::string wide_to_utf8(const std::u32string& text);

// Brings one string from a TYP file into the tables (lang: the language digits
// "04"; key: the String key for the report). Counts short strings and notes
// UTF-8 bytes in a Western string (s.walk). With codepage 65001 it recodes the
// UTF-8 into the language's page and sets s.cvcp; the label decoder keeps
// UTF-8 strings as they are and does not call it then.
std::string loadutf8(Store& s, const std::string& text, const std::string& lang, const std::string& key);

// From a string of page cp to UTF-8 bytes; "" becomes one blank.
std::string saveasutf8(const std::string& text, int cp);

// UTF-8 bytes to bytes of s.cvcp (1252 by default).
std::string utf8_to_cp(const Store& s, const std::string& text);

// The number in front of the first blank of a code-page list entry.
int cp(const std::string& listentry);

}  // namespace korvex::typ
