#include "text/encoding.h"
// STUB: to be implemented
namespace korvex::text {
int lang_cp(const Store& s, int) { return s.codepage; }
int text_cp(const Store& s, const std::string&) { return s.codepage; }
int cp_charset(int) { return 0; }
std::u32string bytes_to_wide(const std::string& b, int) { return std::u32string(b.begin(), b.end()); }
std::string wide_to_cp(const Store&, const std::u32string& t) { return std::string(t.begin(), t.end()); }
std::string wide_to_utf8(const std::u32string& t) { return std::string(t.begin(), t.end()); }
std::string loadutf8(Store&, const std::string& text, const std::string&, const std::string&) { return text; }
std::string saveasutf8(const std::string& text, int) { return text; }
std::string utf8_to_cp(const Store&, const std::string& text) { return text; }
int cp(const std::string&) { return 0; }
}
