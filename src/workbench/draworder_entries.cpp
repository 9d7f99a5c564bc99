#include "workbench/draworder_entries.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <unordered_map>

#include "typ/curf_access.h"
#include "workbench/draw_order_model.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

template <class F>
void for_each_token(std::string_view text, F&& f) {
    size_t pos = 0;
    while (pos < text.size()) {
        while (pos < text.size() && text[pos] == ' ') ++pos;
        size_t end = text.find(' ', pos);
        if (end == std::string_view::npos) end = text.size();
        if (end > pos) f(text.substr(pos, end - pos));
        pos = end;
    }
}

}  // namespace

int32_t token_code(std::string_view token) {
    std::string d(token.substr(0, token.find(',')));
    if (d.size() > 1 && d[0] == '0' && (d[1] == 'x' || d[1] == 'X')) d.erase(0, 2);
    if (d.empty() || d.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) return -1;
    // "00TT" is the TYP file's form of a plain type, "TTSS" a text's.
    if (d.size() == 4 && d.compare(0, 2, "00") == 0) return static_cast<int32_t>(typ::hex_value(d.substr(2)) << 8);
    return type_code(d);
}

bool remove_draworder(std::string& text, int32_t code) { return remove_draworders(text, {code}); }

bool remove_draworders(std::string& text, const std::unordered_set<int32_t>& codes) {
    if (codes.empty() || text.empty()) return false;
    std::string kept;
    kept.reserve(text.size());
    bool removed = false;
    const bool trailing = text.back() == ' ';
    for_each_token(text, [&](std::string_view token) {
        if (codes.count(token_code(token))) {
            removed = true;
            return;
        }
        kept += ' ';
        kept += token;
    });
    if (!removed) return false;
    // The no-level list writes its blank behind each entry.
    if (trailing) {
        if (!kept.empty()) kept.erase(0, 1);
        if (!kept.empty()) kept += ' ';
    }
    text = std::move(kept);
    return true;
}

void add_draworder(model::Store& s, int32_t code, int level) { add_draworders(s, {{code, level}}); }

void add_draworders(model::Store& s, const std::vector<std::pair<int32_t, int>>& levels) {
    if (levels.empty()) return;
    std::unordered_set<int32_t> codes;
    std::unordered_set<int64_t> wanted;
    for (const auto& [code, level] : levels) {
        codes.insert(code);
        if (level > 0) wanted.insert(static_cast<int64_t>(code) << 16 | level);
    }
    // A layer the type holds already keeps its place among the entries of
    // its level; its other layers go, new ones join the end of their level.
    std::unordered_set<int64_t> written;
    std::string kept;
    kept.reserve(s.drwlist.size());
    for_each_token(s.drwlist, [&](std::string_view token) {
        const int32_t code = token_code(token);
        if (codes.count(code)) {
            const size_t comma = token.find(',');
            const int level = comma == std::string_view::npos ? -1 : std::atoi(std::string(token.substr(comma + 1)).c_str());
            const int64_t key = static_cast<int64_t>(code) << 16 | std::max(0, level);
            if (level <= 0 || !wanted.count(key) || !written.insert(key).second) return;
        }
        kept += ' ';
        kept += token;
    });
    s.drwlist = std::move(kept);
    remove_draworders(s.walk.no_level_types, codes);
    bool any = false;
    for (const auto& [code, level] : levels) {
        const int l = std::max(0, level);
        if (!written.insert(static_cast<int64_t>(code) << 16 | l).second) continue;
        if (l > 0) {
            s.drwlist += " " + drw_code(code) + "," + std::to_string(l);
            any = true;
        } else {
            s.walk.no_level_types += drw_code(code) + ",0 ";
        }
    }
    if (any) sort_draworder(s);
}

bool rename_draworder(model::Store& s, int32_t old_code, int32_t code) {
    bool any = false;
    for_each_token(s.drwlist + " " + s.walk.no_level_types, [&](std::string_view token) { any = any || token_code(token) == old_code; });
    if (!any) return false;
    const auto rename = [&](std::string& text, bool trailing) {
        std::string out;
        out.reserve(text.size());
        for_each_token(text, [&](std::string_view token) {
            if (!trailing) out += ' ';
            if (token_code(token) == old_code) {
                const size_t comma = token.find(',');
                out += drw_code(code);
                if (comma != std::string_view::npos) out += token.substr(comma);
            } else {
                out += token;
            }
            if (trailing) out += ' ';
        });
        text = std::move(out);
    };
    remove_draworder(s.drwlist, code);
    remove_draworder(s.walk.no_level_types, code);
    rename(s.drwlist, false);
    rename(s.walk.no_level_types, true);
    return true;
}

int draworder_level(const model::Store& s, int32_t code) {
    int level = 0;
    for_each_token(s.drwlist, [&](std::string_view token) {
        if (level > 0 || token_code(token) != code) return;
        const size_t comma = token.find(',');
        if (comma != std::string_view::npos) level = std::atoi(std::string(token.substr(comma + 1)).c_str());
    });
    return level;
}

std::unordered_map<int32_t, int> draworder_levels(const model::Store& s) {
    std::unordered_map<int32_t, int> levels;
    for_each_token(s.drwlist, [&](std::string_view token) {
        const size_t comma = token.find(',');
        if (comma != std::string_view::npos) levels.emplace(token_code(token), std::atoi(std::string(token.substr(comma + 1)).c_str()));
    });
    return levels;
}

std::unordered_map<int32_t, std::vector<int>> draworder_layers(const model::Store& s) {
    std::unordered_map<int32_t, std::vector<int>> layers;
    for_each_token(s.drwlist, [&](std::string_view token) {
        const size_t comma = token.find(',');
        if (comma != std::string_view::npos)
            layers[token_code(token)].push_back(std::atoi(std::string(token.substr(comma + 1)).c_str()));
    });
    return layers;
}

int entry_level(const std::string& pg_drw) {
    const size_t comma = pg_drw.find(',');
    if (comma == std::string::npos) return -1;
    size_t e = comma + 1;
    while (e < pg_drw.size() && std::isdigit(static_cast<unsigned char>(pg_drw[e]))) ++e;
    if (e == comma + 1) return -1;
    return std::atoi(pg_drw.substr(comma + 1, e - comma - 1).c_str());
}

std::string drw_entry(int32_t code, int level) { return "Type=" + drw_code(code) + "," + std::to_string(level); }

std::string drw_entry(int32_t code, const std::vector<int>& levels) {
    std::string out;
    for (const int level : levels) {
        if (!out.empty()) out += "\r\n";
        out += drw_entry(code, level);
    }
    return out;
}

}  // namespace korvex::workbench
