#include "typ/encoding.h"

#include <cstdio>
#include <cstdlib>

#include "platform/codepage.h"

namespace korvex::typ {

namespace {

constexpr unsigned char k_utf8_lead_latin = 195;  // first byte of UTF-8 for U+00C0..U+00FF
constexpr int k_default_page = 1252;
constexpr int k_short_strings_warn = 12;

bool is_valid_page(int cp) { return cp > 0 && cp != 65001; }

std::string upper_ascii(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

// Control characters (the "|" line breaks of labels arrive as 13, 10) must
// survive whatever the page makes of them.
std::string encode_page(const std::u32string& text, int page) {
    std::string out;
    std::u32string run;
    auto flush = [&] {
        if (!run.empty()) out += platform::wide_to_bytes(run, page);
        run.clear();
    };
    for (char32_t c : text) {
        if (c < 16) {
            flush();
            out += static_cast<char>(c);
        } else {
            run += c;
        }
    }
    flush();
    return out;
}

// The value of the language digits; the label reader gives two hex digits,
// anything else goes the long way.
int lang_number(const std::string& digits) {
    auto value = [](char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    };
    if (digits.size() == 2 && value(digits[0]) >= 0 && value(digits[1]) >= 0)
        return value(digits[0]) * 16 + value(digits[1]);
    return static_cast<int>(std::strtol(digits.c_str(), nullptr, 16));
}

}  // namespace

int lang_cp(const Store& s, int id) {
    switch (id) {
    case 0:
        // A UTF-8 project still shows its strings through the page picked in
        // the list, when that is a real single-page choice.
        if (s.codepage == 65001 && is_valid_page(s.opt.list_codepage)) return s.opt.list_codepage;
        return s.codepage;
    case 17: case 18: case 19: case 20: case 21: case 24: case 28: case 29: case 30:
        return 1250;
    case 23:
        return 1253;
    case 41:
        return 1256;
    case 25: case 32: case 33: case 34: case 42: case 43:
        return 1251;
    case 26: case 27: case 31:
        return 1257;
    case 22:
        return 1254;
    case 36:
        return 949;
    case 37:
        return 932;
    case 38:
        return 936;
    case 39:
        return 950;
    case 40:
        return 874;
    default:
        return 1252;
    }
}

int text_cp(const Store& s, const std::string& text) {
    char key[5];
    for (int b = 0; b <= 48; ++b) {
        std::snprintf(key, sizeof key, "0x%02X", b);
        if (text.find(key) != std::string::npos) return lang_cp(s, b);
    }
    return lang_cp(s, 0);
}

int cp_charset(int cp) {
    switch (cp) {
    case 874: return 222;
    case 932: return 128;
    case 936: return 134;
    case 949: return 129;
    case 950: return 136;
    case 1250: return 238;
    case 1251: return 204;
    case 1252: return 1;
    case 1253: return 161;
    case 1254: return 162;
    case 1255: return 177;
    case 1256: return 178;
    case 1257: return 186;
    case 1258: return 163;
    default: return 0;
    }
}

std::u32string bytes_to_wide(const std::string& bytes, int cp) { return platform::bytes_to_wide(bytes, cp); }

std::string wide_to_cp(const Store& s, const std::u32string& text) { return encode_page(text, s.cvcp); }

std::string wide_to_utf8(const std::u32string& text) { return platform::wide_to_bytes(text, 65001); }

std::string loadutf8(Store& s, const std::string& text, const std::string& lang, const std::string& key) {
    const bool short_string = text.size() < 3;
    if (short_string) ++s.walk.short_strings;
    if (!text.empty() && s.codepage >= 65001) {
        int page = text_cp(s, "0x" + upper_ascii(lang));
        s.cvcp = page == 0 ? k_default_page : page;
        return wide_to_cp(s, platform::bytes_to_wide(text, 65001));
    }
    if (lang_cp(s, lang_number(lang)) == k_default_page) {
        const bool has_lead = text.find(static_cast<char>(k_utf8_lead_latin)) != std::string::npos;
        // Many near-empty strings hint at a label block read wrongly; said
        // once, when the twelfth turns up.
        if (short_string && s.walk.short_strings == k_short_strings_warn)
            model::note_once(s, "Check 'String1 etc ' " + key);
        if (lang != "10" && has_lead) {
            if (!s.walk.wrongly_parsed) s.walk.wrong_example = key + "(" + text + " " + lang + ")";
            s.walk.wrongly_parsed = true;
        }
    }
    return text;
}

std::string saveasutf8(const std::string& text, int cp) {
    if (text.empty()) return " ";
    return platform::wide_to_bytes(platform::bytes_to_wide(text, cp), 65001);
}

std::string utf8_to_cp(const Store& s, const std::string& text) {
    return encode_page(platform::bytes_to_wide(text, 65001), s.cvcp == 0 ? k_default_page : s.cvcp);
}

int cp(const std::string& listentry) {
    const std::string number = listentry.substr(0, listentry.find(' '));
    return static_cast<int>(std::strtol(number.c_str(), nullptr, 10));
}

}  // namespace korvex::typ
