#include "typ/draw_order.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <sstream>
#include <string_view>

#include "typ/curf_access.h"
#include "typ/header.h"

namespace korvex::typ {

namespace {

constexpr int k_record = 5;        // type byte and a 32-bit subtype mask
constexpr int k_mask_bits = 32;
constexpr int k_missing_level = 2;  // a token without a level

using Token = DrawToken;

// Calls f with each blank-separated word of the list, in order.
template <class F>
void for_each_word(std::string_view list, F&& f) {
    size_t pos = 0;
    while (pos < list.size()) {
        while (pos < list.size() && std::isspace(static_cast<unsigned char>(list[pos]))) ++pos;
        size_t end = pos;
        while (end < list.size() && !std::isspace(static_cast<unsigned char>(list[end]))) ++end;
        if (end == pos) break;
        f(list.substr(pos, end - pos));
        pos = end;
    }
}

std::vector<Token> parse_tokens(const std::string& list) {
    std::vector<Token> out;
    for_each_word(list, [&](std::string_view word) {
        Token t;
        const size_t comma = word.find(',');
        t.code = upper(word.substr(0, comma));
        t.level = k_missing_level;
        if (comma != std::string_view::npos && comma + 1 < word.size())
            t.level = std::atoi(std::string(word.substr(comma + 1)).c_str());
        if (!t.code.empty()) out.push_back(std::move(t));
    });
    return out;
}

// The add rule: a five-digit code loses a leading "0"; every token has a
// blank in front.
std::string join_tokens(const std::vector<Token>& tokens) {
    std::string out;
    for (const Token& t : tokens) {
        std::string code = t.code;
        if (code.size() == 5 && code[0] == '0') code.erase(0, 1);
        out += " " + code + "," + std::to_string(t.level);
    }
    return out;
}

bool all_hex(const std::string& t) {
    return !t.empty() && std::all_of(t.begin(), t.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
}

// A polygon's type digits in the form the draw order list uses: "00TT" for a
// plain type, "1TTSS" for an extended one. can_have is false for a plain type
// with a subtype. Both "4B00" (type, subtype) and "004B" are taken.
std::string drw_code(std::string digits, bool& can_have) {
    can_have = true;
    digits = upper(digits);
    if (digits.size() > 1 && digits[0] == '0' && (digits[1] == 'X')) digits.erase(0, 2);
    while (digits.size() > 5 && digits[0] == '0') digits.erase(0, 1);
    if (digits.size() >= 5) return digits;
    while (digits.size() < 2) digits.insert(0, "0");
    if (digits.size() == 2) return "00" + digits;
    if (digits.size() == 3) digits.insert(0, "0");
    if (digits.compare(0, 2, "00") == 0) return digits;
    if (digits.compare(2, 2, "00") == 0) return "00" + digits.substr(0, 2);
    can_have = false;
    return digits;
}

// Level of code in drwlist, 0 when absent.
int find_level(const std::string& list, const std::string& code) {
    const std::string hay = upper(list) + " ";
    const std::string needle = " " + upper(code) + ",";
    const size_t p = hay.find(needle);
    if (p == std::string::npos) return 0;
    return std::atoi(hay.c_str() + p + needle.size());
}

// Levels by code, the first token of a code winning as in a search of the
// list; built once so that a file of many polygons is not quadratic.
std::unordered_map<std::string, int> level_index(const std::string& list) {
    std::unordered_map<std::string, int> index;
    for (const Token& t : parse_tokens(list)) index.emplace(t.code, t.level);
    return index;
}

int lookup(const std::unordered_map<std::string, int>& index, const std::string& code) {
    auto it = index.find(upper(code));
    return it == index.end() ? 0 : it->second;
}

std::string type_code(const Store& s, int32_t n) {
    if (n < 0 || static_cast<size_t>(n) >= s.pg_typ.size()) return {};
    std::string t = s.pg_typ[static_cast<size_t>(n)];
    if (t.size() >= 2 && t[0] == '0' && (t[1] == 'x' || t[1] == 'X')) t.erase(0, 2);
    return upper(t);
}

void ensure_drw(Store& s, int32_t n) {
    if (static_cast<size_t>(n) >= s.pg_drw.size()) s.pg_drw.resize(static_cast<size_t>(n) + 1);
}

}  // namespace

std::vector<DrawToken> parse_drwlist(const std::string& list) { return parse_tokens(list); }

std::string join_drwlist(const std::vector<DrawToken>& tokens) { return join_tokens(tokens); }

std::string drw_code_of(const std::string& digits, bool& can_have) { return drw_code(digits, can_have); }

std::string polygon_drw_code(const Store& s, int32_t n, bool& can_have) {
    return drw_code(type_code(s, n), can_have);
}

//   records of recsize bytes: type | mask (u32, bit s = subtype s)
//   five zero bytes step to the next level
void read_draworder(Store& s, int64_t offset, int64_t length, int recsize) {
    s.drwlist.clear();
    if (recsize <= 0) recsize = k_record;  // a zero size must still move on
    if (offset <= 0 || length <= 0) return;
    int64_t end = offset + length - recsize;
    end = std::min<int64_t>(end, static_cast<int64_t>(s.curf.size()) - 1);
    int level = 1;
    bool marker = true;  // a zero record right after a step is an entry
    auto add = [&](const std::string& code) { s.drwlist += " " + code + "," + std::to_string(level); };
    for (int64_t pos = offset; pos <= end; pos += recsize) {
        bool zero = true;
        for (int k = 0; k < k_record; ++k) zero = zero && curf_byte(s, pos + k) == 0;
        if (zero && !marker) {
            marker = true;
            ++level;
            continue;
        }
        marker = false;
        const int type = curf_byte(s, pos);
        const int halves[2] = {curf_u16(s, pos + 1), curf_u16(s, pos + 3)};
        if (halves[0] < 1 && halves[1] < 1) {
            add("00" + hex2(hex(type)));
            continue;
        }
        for (int h = 0; h < 2; ++h)
            for (int i = 0; i < 16; ++i)
                if (halves[h] & (1 << i)) add("1" + hex2(hex(type)) + hex2(hex(16 * h + i)));
    }
}

namespace {

void set_level(Store& s, int32_t n, const std::string& code, bool can_have, int level,
               std::unordered_set<std::string>& no_level) {
    std::string& drw = s.pg_drw[static_cast<size_t>(n)];
    if (level > 0) {
        drw = "Type=" + code + "," + std::to_string(level);
        return;
    }
    if (!can_have) model::note_once(s, s.pg_typ[static_cast<size_t>(n)] + " pgon<&100 with subtype can't have draworder");
    drw = "Type=" + code + ",0";
    const std::string entry = code + ",0 ";
    if (no_level.insert(entry).second) s.walk.no_level_types += entry;
}

std::unordered_set<std::string> no_level_set(const Store& s) {
    std::unordered_set<std::string> set;
    std::istringstream in(s.walk.no_level_types);
    std::string word;
    while (in >> word) set.insert(word + " ");
    return set;
}

}  // namespace

void assign_level(Store& s, int32_t n) {
    if (n < 0) return;
    ensure_drw(s, n);
    bool can_have = true;
    const std::string code = drw_code(type_code(s, n), can_have);
    const int level = can_have ? find_level(s.drwlist, code) : 0;
    auto no_level = no_level_set(s);
    set_level(s, n, code, can_have, level, no_level);
}

void assign_levels(Store& s) {
    const auto index = level_index(s.drwlist);
    auto no_level = no_level_set(s);
    for (int32_t n = 0; n < s.pg_n; ++n) {
        ensure_drw(s, n);
        bool can_have = true;
        const std::string code = drw_code(type_code(s, n), can_have);
        set_level(s, n, code, can_have, can_have ? lookup(index, code) : 0, no_level);
    }
}

std::string polygon_level(const Store& s, int32_t n) {
    if (n < 0 || static_cast<size_t>(n) >= s.pg_drw.size()) return {};
    const std::string& drw = s.pg_drw[static_cast<size_t>(n)];
    const size_t comma = drw.find(',');
    if (comma == std::string::npos) return {};
    std::string level;
    for (size_t i = comma + 1; i < drw.size() && std::isdigit(static_cast<unsigned char>(drw[i])); ++i) level += drw[i];
    if (level.empty() || std::atoi(level.c_str()) == 0) return {};
    return level;
}

void sort_drwlist(Store& s) {
    std::vector<Token> tokens = parse_tokens(s.drwlist);
    std::vector<std::pair<int64_t, size_t>> keys;  // type value, token
    keys.reserve(tokens.size());
    for (size_t k = 0; k < tokens.size(); ++k) keys.emplace_back(hex_value(tokens[k].code), k);
    std::stable_sort(keys.begin(), keys.end(), [&](const auto& a, const auto& b) {
        const int la = tokens[a.second].level, lb = tokens[b.second].level;
        if (la != lb) return la < lb;
        return a.first < b.first;
    });
    std::vector<Token> sorted;
    sorted.reserve(tokens.size());
    for (const auto& k : keys) sorted.push_back(std::move(tokens[k.second]));
    s.drwlist = join_tokens(sorted);
}

std::string find_duplicates(Store& s, platform::Prompt& ui, bool quiet) {
    // One set of the types met so far: a file of many polygons must not
    // compare every pair.
    std::unordered_set<std::string> seen;
    std::string kept, removed;
    kept.reserve(s.drwlist.size());
    for_each_word(s.drwlist, [&](std::string_view token) {
        std::string& out = seen.insert(upper(token.substr(0, token.find(',')))).second ? kept : removed;
        if (&out == &removed && !removed.empty()) removed += ' ';
        if (&out == &kept) out += ' ';
        out += token;
    });
    if (!removed.empty()) {
        s.drwlist = std::move(kept);
        s.dirty = true;
    }
    if (!quiet) ui.message(removed.empty() ? "None found." : "Found and removed duplicates :\r\n\r\n" + removed);
    return removed;
}

void complete_draworder(Store& s) {
    const int32_t count = std::min<int32_t>(s.pg_n, static_cast<int32_t>(s.pg_typ.size()));
    auto index = level_index(s.drwlist);
    for (int32_t n = 0; n < count; ++n) {
        bool can_have = true;
        const std::string code = drw_code(type_code(s, n), can_have);
        if (!can_have || !all_hex(code)) continue;
        int level = lookup(index, code);
        if (level == 0) {
            level = 1;
            s.drwlist += " " + code + ",1";
            index[upper(code)] = 1;
        }
        ensure_drw(s, n);
        s.pg_drw[static_cast<size_t>(n)] = "Type=" + code + "," + std::to_string(level);
    }
    sort_drwlist(s);
}

std::vector<std::vector<std::string>> getdraworder(Store& s, platform::Prompt& ui, bool tofile) {
    std::vector<Token> tokens;
    for (Token& t : parse_tokens(s.drwlist))
        if (t.level >= 1 && all_hex(t.code)) tokens.push_back(t);
    std::stable_sort(tokens.begin(), tokens.end(), [](const Token& a, const Token& b) { return a.level < b.level; });

    // Consecutive levels from 1.
    bool scaled = false;
    int prev = 0, renumbered = 0;
    for (Token& t : tokens) {
        if (t.level != prev) {
            prev = t.level;
            ++renumbered;
        }
        if (t.level != renumbered) scaled = true;
        t.level = renumbered;
    }
    if (scaled && tofile) ui.message("A Draworder has been scaled down in the saved TYP file.");

    std::vector<std::vector<std::string>> levels(static_cast<size_t>(renumbered));
    // Extended types of one level share a record per type byte.
    std::vector<std::map<int, size_t>> group(static_cast<size_t>(renumbered));
    std::vector<std::vector<uint32_t>> masks(static_cast<size_t>(renumbered));
    std::vector<std::vector<int>> types(static_cast<size_t>(renumbered));
    for (const Token& t : tokens) {
        const auto L = static_cast<size_t>(t.level - 1);
        const int64_t v = hex_value(t.code);
        if (t.code.size() >= 5 || v > 0xffff) {
            const int type = static_cast<int>((v >> 8) & 0xff);
            const int sub = static_cast<int>(v & 0xff);
            if (sub >= k_mask_bits) continue;
            auto it = group[L].find(type);
            if (it == group[L].end()) {
                it = group[L].emplace(type, types[L].size()).first;
                types[L].push_back(type);
                masks[L].push_back(0);
            }
            masks[L][it->second] |= uint32_t{1} << sub;
            continue;
        }
        int type = static_cast<int>(v);
        if (v > 0xff) {
            // "TTSS": a plain type with subtype 0 only.
            if ((v & 0xff) != 0) continue;
            type = static_cast<int>(v >> 8);
        }
        types[L].push_back(type);
        masks[L].push_back(0);
    }
    for (size_t L = 0; L < levels.size(); ++L) {
        for (size_t k = 0; k < types[L].size(); ++k) {
            std::string rec = hex2(hex(types[L][k]));
            for (int b = 0; b < 4; ++b) rec += hex2(hex((masks[L][k] >> (8 * b)) & 0xff));
            levels[L].push_back(rec);
        }
    }
    levels.erase(std::remove_if(levels.begin(), levels.end(), [](const auto& l) { return l.empty(); }), levels.end());
    return levels;
}

int64_t save_draworder(Store& s, platform::Prompt& ui, int64_t offset, bool tofile) {
    const auto levels = getdraworder(s, ui, tofile);
    if (levels.empty()) {
        put_head4(s, 0, hdr::drw);
        head(s, hdr::drw_recsize, 0);
        head(s, hdr::drw_recsize + 1, 0);
        put_head4(s, 0, hdr::drw_len);
        if (tofile && s.pg_n > 0) ui.message("Polygons have no draworder.");
        return offset;
    }
    head(s, hdr::drw_recsize, k_record);
    head(s, hdr::drw_recsize + 1, 0);
    put_head4(s, offset, hdr::drw);
    int64_t pos = offset;
    for (size_t L = 0; L < levels.size(); ++L) {
        for (const std::string& rec : levels[L]) {
            const std::string bytes = hexasc(rec);
            for (int k = 0; k < k_record; ++k) head(s, pos + k, k < static_cast<int>(bytes.size()) ? static_cast<unsigned char>(bytes[static_cast<size_t>(k)]) : 0);
            pos += k_record;
        }
        if (L + 1 < levels.size()) {
            for (int k = 0; k < k_record; ++k) head(s, pos + k, 0);
            pos += k_record;
        }
    }
    put_head4(s, pos - offset, hdr::drw_len);
    // A polygon whose type has no entry is drawn by the device's own rule.
    const auto index = level_index(s.drwlist);
    for (int32_t n = 0; n < s.pg_n && static_cast<size_t>(n) < s.pg_typ.size(); ++n) {
        bool can_have = true;
        const std::string code = drw_code(type_code(s, n), can_have);
        if (!can_have || lookup(index, code) > 0) continue;
        model::note_once(s, "No draworder for pgon");
        model::note_once(s, s.pg_typ[static_cast<size_t>(n)] + ":no draworder");
    }
    return pos;
}

}  // namespace korvex::typ
