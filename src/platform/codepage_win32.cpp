// The code pages through the conversion functions of Windows. Compiled on
// Windows only; elsewhere this file is empty.
//
// Windows converts more generously than iconv: a single-byte page passes
// its unassigned bytes through as C1 controls or private-use characters,
// and a character outside a page becomes a look-alike ("best fit"). Both are
// turned off or undone here, so a label reads and writes the same on every
// system.
#ifdef _WIN32

#include <windows.h>

#include "platform/codepage_system.h"

namespace korvex::platform {

namespace {

constexpr char32_t k_win_replacement = 0xFFFD;

struct PageKind {
    bool known = false;
    bool single_byte = false;
};

PageKind page_kind(int cp) {
    CPINFO info {};
    if (cp <= 0 || !IsValidCodePage(static_cast<UINT>(cp)) || !GetCPInfo(static_cast<UINT>(cp), &info)) return {};
    return {true, info.MaxCharSize == 1};
}

bool is_surrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// What iconv leaves undefined in a single-byte page and Windows assigns.
bool unassigned_in_single_byte(char32_t c) { return (c >= 0x80 && c <= 0x9F) || (c >= 0xE000 && c <= 0xF8FF); }

// One UTF-16 sequence to its character; a broken one to the replacement.
char32_t from_utf16(const wchar_t* w, int n) {
    if (n == 1 && !is_surrogate(w[0])) return w[0];
    if (n == 2 && w[0] >= 0xD800 && w[0] < 0xDC00 && w[1] >= 0xDC00 && w[1] <= 0xDFFF)
        return 0x10000 + ((static_cast<char32_t>(w[0]) - 0xD800) << 10) + (static_cast<char32_t>(w[1]) - 0xDC00);
    return k_win_replacement;
}

// Decodes one character of n bytes; the replacement when the page has none.
char32_t decode_one(UINT cp, const char* p, int n) {
    wchar_t w[4];
    const int got = MultiByteToWideChar(cp, MB_ERR_INVALID_CHARS, p, n, w, 4);
    return got > 0 ? from_utf16(w, got) : k_win_replacement;
}

// The slow way, for text with undecodable bytes: a character at a time, so
// that one bad byte costs one replacement and the rest still decodes.
std::u32string decode_each(UINT cp, const std::string& bytes, bool single_byte) {
    std::u32string out;
    out.reserve(bytes.size());
    const size_t n = bytes.size();
    for (size_t i = 0; i < n;) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        if (b < 0x80) {
            out += static_cast<char32_t>(b);
            ++i;
            continue;
        }
        if (!single_byte && IsDBCSLeadByteEx(cp, b) && i + 1 < n) {
            const char32_t c = decode_one(cp, bytes.data() + i, 2);
            if (c != k_win_replacement) {
                out += c;
                i += 2;
                continue;
            }
        }
        char32_t c = decode_one(cp, bytes.data() + i, 1);
        if (single_byte && unassigned_in_single_byte(c)) c = k_win_replacement;
        out += c;
        ++i;
    }
    return out;
}

}  // namespace

std::optional<std::u32string> system_bytes_to_wide(const std::string& bytes, int cp) {
    const PageKind kind = page_kind(cp);
    if (!kind.known) return std::nullopt;
    if (bytes.empty()) return std::u32string();
    const UINT page = static_cast<UINT>(cp);
    const int in_len = static_cast<int>(bytes.size());
    std::wstring w(bytes.size(), L'\0');
    const int got = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), in_len, w.data(), in_len);
    if (got <= 0) return decode_each(page, bytes, kind.single_byte);
    std::u32string out;
    out.reserve(static_cast<size_t>(got));
    for (int i = 0; i < got; ++i) {
        const bool pair = i + 1 < got && w[i] >= 0xD800 && w[i] < 0xDC00;
        char32_t c = from_utf16(&w[i], pair ? 2 : 1);
        if (pair) ++i;
        if (kind.single_byte && unassigned_in_single_byte(c)) c = k_win_replacement;
        out += c;
    }
    return out;
}

std::optional<std::string> system_wide_to_bytes(const std::u32string& text, int cp) {
    const PageKind kind = page_kind(cp);
    if (!kind.known) return std::nullopt;
    if (text.empty()) return std::string();
    // Characters no page of ours holds become "?" before Windows sees them:
    // beyond the first plane a pair of halves would give two.
    std::wstring w;
    w.reserve(text.size());
    for (char32_t c : text) {
        const bool outside = c > 0xFFFF || is_surrogate(c) || (kind.single_byte && unassigned_in_single_byte(c));
        w += outside ? L'?' : static_cast<wchar_t>(c);
    }
    const UINT page = static_cast<UINT>(cp);
    const int in_len = static_cast<int>(w.size());
    const int room = in_len * 4;
    std::string out(static_cast<size_t>(room), '\0');
    int got = WideCharToMultiByte(page, WC_NO_BEST_FIT_CHARS, w.data(), in_len, out.data(), room, "?", nullptr);
    // The few pages that take no flags (the stateful ones) refuse them.
    if (got <= 0 && GetLastError() == ERROR_INVALID_FLAGS)
        got = WideCharToMultiByte(page, 0, w.data(), in_len, out.data(), room, nullptr, nullptr);
    if (got <= 0) return std::nullopt;
    out.resize(static_cast<size_t>(got));
    return out;
}

}  // namespace korvex::platform

#endif
