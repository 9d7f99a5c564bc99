#include "typ/label_block.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/codepage.h"
#include "typ/curf_access.h"
#include "typ/encoding.h"
#include "typ/label_bytes.h"

namespace korvex::typ {

namespace {

// Language bytes above this are stored with 47 added; the reader takes it off.
constexpr int k_lang_limit = 46;
constexpr int k_lang_shift = 47;
constexpr char k_pipe = '|';

const char* const k_styles[] = {"Default", "Nolabel", "SmallFont", "Normal", "Large"};
const char* const k_custom[] = {"No", "Day", "Night", "DayAndNight"};

std::string hex_byte(int v) {
    static const char* const k_hex = "0123456789ABCDEF";
    return {k_hex[(v >> 4) & 15], k_hex[v & 15]};
}

// Lines without their CR LF; the last piece is kept even when empty so that
// join() gives the text back.
std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> out;
    size_t start = 0;
    for (;;) {
        const size_t lf = text.find('\n', start);
        std::string line = text.substr(start, lf == std::string::npos ? std::string::npos : lf - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        out.push_back(std::move(line));
        if (lf == std::string::npos) break;
        start = lf + 1;
    }
    return out;
}

std::string_view trim_view(std::string_view t) {
    size_t a = 0, b = t.size();
    while (a < b && (t[a] == ' ' || t[a] == '\t' || t[a] == '\r' || t[a] == '\n')) ++a;
    while (b > a && (t[b - 1] == ' ' || t[b - 1] == '\t' || t[b - 1] == '\r' || t[b - 1] == '\n')) --b;
    return t.substr(a, b - a);
}

// A trimmed key line whose "string" (any case) stands in front of its "=".
bool is_string_key(std::string_view line) {
    const size_t key = find_caseless(line, "string");
    const size_t eq = line.find('=');
    return key != std::string_view::npos && eq != std::string_view::npos && key < eq;
}

// A "String" key line: not a comment, and "string" stands in front of "=".
bool is_string_line(std::string_view line) {
    const std::string_view t = trim_view(line);
    if (t.empty() || t[0] == ';') return false;
    return is_string_key(t);
}

// The two hex digits behind the first "x" (any case) behind the "=" at eq.
int getlang_of(std::string_view line, size_t eq) {
    size_t x = eq == std::string_view::npos ? 0 : eq;
    while (x < line.size() && line[x] != 'x' && line[x] != 'X') ++x;
    if (x == line.size()) return 0;
    return static_cast<int>(hex_value(line.substr(x + 1, 2)));
}

// A label's text as the block holds it: CR and LF of the text line dropped,
// "|" a line break.
void append_label_text(std::string& out, std::string_view text) {
    size_t k = 0;
    while (k < text.size()) {
        size_t j = k;
        while (j < text.size() && text[j] != '|' && text[j] != '\r' && text[j] != '\n') ++j;
        out.append(text.data() + k, j - k);
        if (j < text.size() && text[j] == '|') out += "\r\n";
        k = j + 1;
    }
}

// Bytes that belong to a string: all but control bytes (0), and CR and LF,
// which become "|".
constexpr unsigned k_plain = 1, k_line_break = 2;
struct TextBytes {
    unsigned char kind[256]{};
    constexpr TextBytes() {
        for (int b = 0; b < 256; ++b) kind[b] = b == 10 || b == 13 ? k_line_break : b >= 32 ? k_plain : 0;
    }
};
constexpr TextBytes k_text_byte;

int read_lang(Store& s, int64_t pos) {
    int lang = curf_byte(s, pos);
    if (lang > k_lang_limit) lang -= k_lang_shift;
    return lang;
}

// Bits of the custom colour stream of points with opacity: lowest bit first.
int stream_bits(Store& s, int64_t base, int64_t bit, int count) {
    int v = 0;
    for (int k = 0; k < count; ++k) {
        const int64_t b = bit + k;
        if (curf_byte(s, base + b / 8) & (1 << (b % 8))) v |= 1 << k;
    }
    return v;
}

// Three record bytes, blue green red, from the value of a custom colour key.
std::string colour_bytes(std::string_view value) {
    std::string_view v = trim_view(value);
    const size_t hash = v.rfind('#');
    if (hash != std::string_view::npos) v = v.substr(hash + 1);
    std::string digits = "#";
    digits += v;
    return fnkl(digits);
}

// The value behind a key's first ":" or "=".
std::string_view key_value(std::string_view line) {
    size_t p = 0;
    while (p < line.size() && line[p] != ':' && line[p] != '=') ++p;
    return p == line.size() ? std::string_view() : line.substr(p + 1);
}

// The string as the file's code page wants it: under 65001 a string that is
// not UTF-8 is taken as text of its language's page; otherwise the table
// already holds the page's bytes.
std::string to_file_page(const Store& s, const std::string& t, int lang) {
    if (s.codepage < k_utf8) return t;
    // Plain ASCII is UTF-8 as it stands; the full check decodes the string.
    bool ascii = true;
    for (char c : t) ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    if (ascii || platform::is_valid_utf8(t)) return t;
    return saveasutf8(t, lang_cp(s, lang));
}

}  // namespace

int32_t lengthbyte(Store& s, int64_t base, int32_t& position) {
    if (position < 0) return 0;
    const int64_t at = base + position;
    const int first = curf_byte(s, at);
    if (first == 0) return 0;
    double value = 0;
    if (first & 1) {
        value = (first - 5) / 2.0;
        position += 1;
    } else if (first & 2) {
        value = (curf_u16(s, at) - 10) / 4.0;
        position += 2;
    } else if (first & 4) {
        // The writer's 3-byte value is 8 L + 20; reading it this way comes out
        // 2.5 short. Kept: blocks of that size do not occur.
        value = (curf_u24(s, at) - 40) / 8.0;
        position += 3;
    } else {
        position += 4;
        return 0;
    }
    const double rounded = std::nearbyint(value);  // ties to even
    return rounded < 0 ? 0 : static_cast<int32_t>(rounded);
}

std::string length_code(int32_t L) {
    int64_t v = 2 * static_cast<int64_t>(L < 0 ? 0 : L) + 5;
    if (v > 255) v *= 2;
    if (v > 65534) v *= 2;
    std::string out(1, static_cast<char>(v & 0xff));
    if (v > 255) out += static_cast<char>((v >> 8) & 0xff);
    if (v > 65535) out += static_cast<char>((v >> 16) & 0xff);
    return out;
}

//   length code | language | text [0 language text]... | 0
DecodedLabels decode_labels(Store& s, int64_t record, int32_t offset, int cls, int32_t record_size,
                            const std::string& /*type*/) {
    DecodedLabels d;
    int32_t pos = offset;
    int32_t L = lengthbyte(s, record, pos);
    const int64_t lang_at = record + pos;
    const auto size = static_cast<int64_t>(s.curf.size());
    // Never walk further than the buffer holds.
    const int64_t room = size - lang_at - 2;
    if (room < 0) L = 0;
    else if (L > room) L = static_cast<int32_t>(room);
    // Blocks of well-formed records never share bytes, so together they hold at most
    // the file; records that overlap could otherwise read it many times over.
    s.walk.label_bytes += L;
    if (s.walk.label_bytes > size + 65536) {
        model::note_once(s, "Labels larger than the file can hold: read as empty");
        L = 0;
    }
    const int64_t last = lang_at + L + 1;  // the terminator

    // A block inside the buffer (all but hostile files) is read straight from
    // it; otherwise every byte goes through the checked reader.
    const bool inside = lang_at >= 0 && last < size;
    const auto* bytes = reinterpret_cast<const unsigned char*>(s.curf.data());
    auto byte_at = [&](int64_t at) { return inside ? static_cast<int>(bytes[at]) : curf_byte(s, at); };

    // The display label candidates, as places in d.lines.
    struct Span {
        size_t at = 0, len = 0;
        bool set = false;
    } preferred, deflt, fallback;

    auto language = [&](int64_t at) {
        const int raw = curf_byte(s, at);
        const int lang = read_lang(s, at);
        if (raw > k_lang_limit && cls == model::k_points)
            model::note_once(s, " &" + hex(at) + " lang>&h2e size:" + std::to_string(record_size));
        return lang;
    };

    d.lines.reserve(static_cast<size_t>(L) + 48);
    auto emit = [&](const std::string& str, int lang) {
        static const char* const k_hex = "0123456789ABCDEF";
        // Language digits: upper-case hex, at least two.
        std::string digits;
        if (lang > 0xff) digits = hex(lang);
        else digits = {k_hex[(lang >> 4) & 15], k_hex[lang & 15]};
        char number[16];
        const auto made = std::to_chars(number, number + sizeof number, d.strings + 1);
        const auto number_len = static_cast<size_t>(made.ptr - number);
        std::string_view text = str;
        std::string loaded;
        if (s.codepage < k_utf8) {
            std::string key = "String";
            key.append(number, number_len);
            loaded = loadutf8(s, str, digits, key);
            text = loaded;
        }
        // A damaged block can hold bytes no text can carry; they go, said once.
        std::string kept;
        if (std::any_of(text.begin(), text.end(), [&](char c) { return static_cast<unsigned char>(c) >= 0x80 || static_cast<unsigned char>(c) < 32; })) {
            kept = text;
            if (drop_unwritable_bytes(kept, s.codepage, s.walk.undefined)) {
                model::note_once(s, "Label bytes no text can hold (control bytes, or undefined in code page " +
                                        std::to_string(s.codepage) + ") were dropped");
                text = kept;
            }
        }
        size_t n = text.size();
        while (n > 0 && text[n - 1] == ' ') --n;
        // "StringN=0xDD,text" CR LF, written in one piece.
        const size_t old = d.lines.size();
        d.lines.resize(old + 6 + number_len + 3 + digits.size() + 1 + n + 2);
        char* w = d.lines.data() + old;
        auto put = [&w](const char* from, size_t count) {
            std::memcpy(w, from, count);
            w += count;
        };
        put("String", 6);
        put(number, number_len);
        put("=0x", 3);
        put(digits.data(), digits.size());
        put(",", 1);
        const Span here{static_cast<size_t>(w - d.lines.data()), n, true};
        put(text.data(), n);
        put("\r\n", 2);
        ++d.strings;
        if (lang == s.opt.langid) preferred = here;
        if (lang == 0) deflt = here;
        if (!fallback.set && n > 0 && static_cast<unsigned char>(text[0]) < 127) fallback = here;
    };

    int lang = language(lang_at);
    std::string str;
    bool pending = false;
    for (int64_t at = lang_at + 1; at <= last; ++at) {
        if (inside) {
            // The run of text bytes up to the next control byte, in one piece.
            int64_t end = at;
            unsigned kinds = 0;
            for (unsigned kind; end <= last && (kind = k_text_byte.kind[bytes[end]]) != 0; ++end) kinds |= kind;
            if (end > at) {
                const size_t from = str.size();
                str.append(reinterpret_cast<const char*>(bytes + at), static_cast<size_t>(end - at));
                if (kinds & k_line_break)
                    for (size_t k = from; k < str.size(); ++k)
                        if (str[k] == '\n' || str[k] == '\r') str[k] = k_pipe;
                pending = true;
                at = end;
                if (at > last) break;
            }
        }
        int b = byte_at(at);
        if (b == 10 || b == 13) b = k_pipe;
        if (b < 32) {
            // The terminator leaves the last string open, so that it keeps its
            // line breaks (an empty one is written too); a zero inside the
            // block ends a string.
            if (at == last) {
                pending = true;
                break;
            }
            std::erase(str, k_pipe);
            emit(str, lang);
            str.clear();
            pending = false;
            ++at;
            if (at > last) break;
            lang = language(at);
            continue;
        }
        str += static_cast<char>(b);
        pending = true;
    }
    if (pending) {
        // Each pair of pipes, left to right, becomes one.
        size_t w = 0;
        for (size_t k = 0; k < str.size();) {
            if (str[k] == k_pipe && k + 1 < str.size() && str[k + 1] == k_pipe) {
                str[w++] = k_pipe;
                k += 2;
            } else {
                str[w++] = str[k++];
            }
        }
        str.resize(w);
        emit(str, lang);
    }
    d.next = pos + 1 + L + 1;

    const Span& label = preferred.set ? preferred : deflt.set ? deflt : fallback;
    // Quoted for the browser.
    if (label.set && label.len > 0) {
        d.label.reserve(label.len + 2);
        d.label += '\'';
        d.label.append(d.lines, label.at, label.len);
        d.label += '\'';
    }
    return d;
}

//   font byte | [day colour BGR] | [night colour BGR]
DecodedFont chk_fontcc(Store& s, int64_t pos, bool hasfont, bool custom, int cls,
                       const std::string& name) {
    DecodedFont f;
    if (!hasfont) {
        f.lines = "ExtendedLabels=N\r\n";
        return f;
    }
    const int b = curf_byte(s, pos);
    const int style = (b & 7);
    f.lines.reserve(128);
    f.lines = "ExtendedLabels=Y\r\nFontStyle=";
    if (style < 5) f.lines += k_styles[style];
    f.lines += "\r\n";
    f.consumed = 1;
    if (!custom) return f;

    // Points mark colours with an opacity nibble by a font byte of 33 or more.
    const bool opacity = cls == model::k_points && b >= 33;
    const int value = opacity ? (b >> 3) & 3 : (b >> 3) & 7;
    const std::string_view cname = value <= 3 ? k_custom[value] : "";
    f.lines += "CustomColor=";
    f.lines += cname;
    f.lines += "\r\n";

    if (cname.empty() || value > 3) {
        if (cls == model::k_lines) {
            model::note_once(s, "Unknown CC format @" + name + " " + hex(pos) + " value:&" + hex(b));
            f.stopped = true;
            return f;
        }
        if (cls == model::k_points) {
            model::note_once(s, " Unknown POI CColor &h" + hex(value));
            f.stopped = true;
            return f;
        }
    }

    auto colour_at = [&](int k) {
        if (opacity) {
            const int64_t bit = 28 * static_cast<int64_t>(k);
            const int blue = stream_bits(s, pos + 1, bit, 8);
            const int green = stream_bits(s, pos + 1, bit + 8, 8);
            const int red = stream_bits(s, pos + 1, bit + 16, 8);
            return hex_byte(red) + hex_byte(green) + hex_byte(blue);
        }
        const int64_t at = pos + 1 + 3 * static_cast<int64_t>(k);
        return hex_byte(curf_byte(s, at + 2)) + hex_byte(curf_byte(s, at + 1)) + hex_byte(curf_byte(s, at));
    };

    const int colours = value == 3 ? 2 : value > 0 ? 1 : 0;
    if (value > 0) {
        // A Night value prints its one colour under the day key, as the writer
        // reads it back.
        const std::string day = colour_at(0);
        f.day_line = true;
        f.lines += "DaycustomColor:#";
        f.lines += day;
        f.lines += "\r\n";
        f.colours = rgbswap(day);
    }
    if (value == 3) {
        const std::string night = colour_at(1);
        f.lines += "NightcustomColor:#";
        f.lines += night;
        f.lines += "\r\n";
        if (cls == model::k_points) f.colours += rgbswap(night);
    }
    if (opacity) f.consumed += 3 * colours + (colours + 1) / 2;
    else f.consumed += 3 * colours;

    if (cls == model::k_polygons && cname.empty()) {
        std::string rep = " Pgon Custom cols >3 ie" + name + " " + std::to_string(value);
        if (value > 3) rep += " CC=" + std::to_string(value);
        model::note_once(s, rep);
    }
    return f;
}

std::string strorder(const Store& s, const std::string& text) {
    const int pref = s.opt.langid;
    if (!s.opt.strorder || pref == 0) return text;
    std::vector<std::string> lines = split_lines(text);
    std::vector<size_t> slots;
    std::vector<std::string> first, rest;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (!is_string_line(lines[i])) continue;
        slots.push_back(i);
        std::string line = lines[i];
        const int lang = getlang(line);
        if (lang == pref) {
            first.push_back(line);
            continue;
        }
        // Set plain and English strings apart from the preferred ones.
        if (pref != 4 && (lang == 0 || lang == 4)) {
            const size_t x = lower(line).find("=0x");
            if (x != std::string::npos) {
                size_t end = x + 3;
                while (end < line.size() && std::isxdigit(static_cast<unsigned char>(line[end]))) ++end;
                line.replace(x + 3, end - x - 3, lang == 0 ? "2f" : "33");
            }
        }
        rest.push_back(line);
    }
    first.insert(first.end(), rest.begin(), rest.end());
    for (size_t k = 0; k < slots.size(); ++k) lines[slots[k]] = first[k];
    return join_lines(lines);
}

int getlang(const std::string& line) { return getlang_of(line, line.find('=')); }

EncodedLabels encode_labels(Store& s, const std::string& element_text, int /*cls*/) {
    EncodedLabels e;
    std::string body;
    int first_lang = -1;
    bool seen[256] = {};
    bool font_set = false;
    int fontval = 0;
    int custom = -1;  // not stated
    bool has_day = false, has_night = false;
    std::string day, night;

    std::string ordered;
    std::string_view text = element_text;
    if (s.opt.strorder && s.opt.langid != 0) {
        ordered = strorder(s, element_text);
        text = ordered;
    }

    auto one_line = [&](std::string_view raw) {
        // Picture lines (quoted) are most of a point's text and hold no key.
        size_t first = 0;
        while (first < raw.size() && (raw[first] == ' ' || raw[first] == '\t')) ++first;
        if (first == raw.size() || raw[first] == '"') return;
        const std::string_view line = trim_view(raw);
        if (line.empty() || line[0] == ';') return;
        // A String line has "string" in front of its "=" (the word cannot
        // reach over it); its text is not looked at for other keys.
        constexpr size_t none = std::string_view::npos;
        const size_t eq = line.find('=');
        static const CaselessNeedles k_keys{"string", "fontstyle", "customco"};
        size_t at[3] = {none, none, none};
        bool string_key = eq != none && word_before(line, 6, "string");
        if (!string_key) {
            k_keys.find_first(line, at);
            string_key = eq != none && at[0] < eq;
        }
        if (string_key) {
            const size_t comma = line.find(',');
            if (comma == std::string_view::npos) return;
            const int lang = getlang_of(line, eq) & 0xff;
            if (seen[lang]) {
                // The first string of a language wins; real files hold such
                // blocks, so the drop is said, once for the whole file.
                model::note_once(s, "A label had a second string of one language: the first was kept, the second dropped");
                return;
            }
            seen[lang] = true;
            // The text runs on to the end of the untrimmed line.
            const std::string_view value = raw.substr(static_cast<size_t>(line.data() - raw.data()) + comma + 1);
            if (first_lang < 0) {
                first_lang = lang;
            } else {
                body += '\0';
                body += static_cast<char>(lang);
            }
            if (s.codepage < k_utf8) {
                const size_t from = body.size();
                append_label_text(body, value);
                if (body.size() == from) body += ' ';  // an empty text is a blank
            } else {
                std::string t;
                t.reserve(value.size());
                for (char c : value)
                    if (c != '\r' && c != '\n') t += c;
                if (t.empty()) t.push_back(' ');
                append_label_text(body, to_file_page(s, t, lang));
            }
        } else if (at[1] != none) {
            const std::string_view v = key_value(line);
            font_set = true;
            if (contains_caseless(v, "nolabel")) fontval = 1;
            else if (contains_caseless(v, "small")) fontval = 2;
            else if (contains_caseless(v, "normal")) fontval = 3;
            else if (contains_caseless(v, "large")) fontval = 4;
            else fontval = 0;
        } else if (at[2] != none) {
            if (contains_caseless(line, "daycustomco")) {
                has_day = true;
                day = colour_bytes(key_value(line));
            } else if (contains_caseless(line, "nightcustomco")) {
                has_night = true;
                night = colour_bytes(key_value(line));
            } else {
                const std::string_view v = key_value(line);
                if (contains_caseless(v, "dayandnight")) custom = 3;
                else if (contains_caseless(v, "night")) custom = 2;
                else if (contains_caseless(v, "day")) custom = 1;
                else if (contains_caseless(v, "no")) custom = 0;
            }
        }
    };
    // An element's text holds its keys in front of the picture head; behind
    // it stand only colour lines (hundreds in a point), so the walk ends there.
    for (size_t start = 0;;) {
        const size_t lf = text.find('\n', start);
        std::string_view raw = text.substr(start, lf == std::string_view::npos ? std::string_view::npos : lf - start);
        if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
        // A head kept in a comment (an old picture beside the new) is no head.
        const size_t lead = raw.find_first_not_of(" \t");
        const bool comment = lead != std::string_view::npos && raw[lead] == ';';
        if (!comment && raw.find('"') != std::string_view::npos && contains_caseless(raw, "xpm=")) break;
        one_line(raw);
        if (lf == std::string_view::npos) break;
        start = lf + 1;
    }

    if (first_lang >= 0) {
        e.block = length_code(static_cast<int32_t>(body.size()));
        e.block.reserve(e.block.size() + body.size() + 2);
        e.block += static_cast<char>(first_lang);
        e.block += body;
        e.block += '\0';
    }

    // Without a usable CustomColor value the colour keys that stand decide.
    if (custom < 0) custom = (has_day ? 1 : 0) + (has_night ? 2 : 0);
    const std::string zero(3, '\0');
    std::string colours;
    if (custom == 1) colours = has_day ? day : has_night ? night : zero;
    // Night: its one colour may stand under either key (the decoder prints it
    // under the day key).
    if (custom == 2) colours = has_night ? night : has_day ? day : zero;
    if (custom == 3) colours = (has_day ? day : zero) + (has_night ? night : zero);

    if (font_set || custom > 0) {
        e.font = std::string(1, static_cast<char>(fontval + 8 * custom));
        e.font += colours;
    }
    return e;
}

}  // namespace korvex::typ
