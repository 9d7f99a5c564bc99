#include "workbench/draw_order_model.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "model/row_watch.h"
#include "typ/curf_access.h"

namespace korvex::workbench {

namespace {

constexpr const char* k_comment = ";draworder:";

// Levels by code, in list order, built in one walk of drwlist.
std::unordered_map<std::string, std::vector<int>> level_map(const model::Store& s) {
    std::unordered_map<std::string, std::vector<int>> map;
    for (const DrawToken& t : typ::parse_drwlist(s.drwlist)) map[t.code].push_back(t.level);
    return map;
}

// Replaces or (level "") removes the decoder's ";draworder:" comment
// line of a polygon text. A text without one gets none: it came from a text
// file, whose draw order stands in its own section.
void patch_comment(std::string& txt, const std::string& level) {
    size_t at = 0;
    while ((at = txt.find(k_comment, at)) != std::string::npos) {
        if (at == 0 || txt[at - 1] == '\n') break;
        ++at;
    }
    if (at == std::string::npos) return;
    if (level.empty()) {
        const size_t end = txt.find('\n', at);
        txt.erase(at, end == std::string::npos ? std::string::npos : end + 1 - at);
        return;
    }
    const size_t value = at + std::char_traits<char>::length(k_comment);
    const size_t end = txt.find_first_of("\r\n", value);
    txt.replace(value, (end == std::string::npos ? txt.size() : end) - value, level);
}

}  // namespace

std::string polygon_code(const model::Store& s, int32_t row, bool* can_have) {
    bool ok = true;
    if (row < 0 || row >= s.pg_n || static_cast<size_t>(row) >= s.pg_typ.size()) {
        if (can_have) *can_have = false;
        return {};
    }
    std::string code = typ::polygon_drw_code(s, row, ok);
    if (can_have) *can_have = ok;
    return code;
}

std::string code_type_text(const std::string& code) {
    if (code.size() == 4 && code.compare(0, 2, "00") == 0) return "0x" + code.substr(2);
    return "0x" + code;
}

std::vector<DrawToken> view_entries(const model::Store& s) {
    std::vector<DrawToken> out = typ::parse_drwlist(s.drwlist);
    std::unordered_set<std::string> known;
    known.reserve(out.size() * 2 + 16);
    for (const DrawToken& t : out) known.insert(t.code);
    for (int32_t n = 0; n < s.pg_n; ++n) {
        std::string code = polygon_code(s, n);
        if (code.empty() || !known.insert(code).second) continue;
        out.push_back(DrawToken{std::move(code), 0});
    }
    return out;
}

std::string no_level_text(const model::Store& s) {
    std::string out;
    for (const DrawToken& t : view_entries(s))
        if (t.level == 0) out += t.code + ",0 ";
    return out;
}

std::vector<int> levels_of(const model::Store& s, const std::string& code) {
    std::vector<int> out;
    for (const DrawToken& t : typ::parse_drwlist(s.drwlist))
        if (t.code == code) out.push_back(t.level);
    return out;
}

void sort_draworder(model::Store& s, platform::Prompt* ui) {
    std::vector<DrawToken> tokens = typ::parse_drwlist(s.drwlist);
    if (tokens.size() >= 2) {
        if (ui) ui->status("Sorting Draworders ...");
        std::stable_sort(tokens.begin(), tokens.end(),
                         [](const DrawToken& a, const DrawToken& b) { return a.level < b.level; });
    }
    s.drwlist = typ::join_drwlist(tokens);
}

void refresh_levels(model::Store& s) {
    const auto map = level_map(s);
    if (s.pg_drw.size() < static_cast<size_t>(s.pg_n) + 1) s.pg_drw.resize(static_cast<size_t>(s.pg_n) + 1);
    for (int32_t n = 0; n < s.pg_n; ++n) {
        const std::string code = polygon_code(s, n);
        if (code.empty()) continue;
        const auto it = map.find(code);
        std::string drw;
        if (it == map.end()) {
            drw = "Type=" + code + ",0";
        } else {
            for (int level : it->second) {
                if (!drw.empty()) drw += "\r\n";
                drw += "Type=" + code + "," + std::to_string(level);
            }
        }
        std::string& cell = s.pg_drw[static_cast<size_t>(n)];
        if (cell == drw) continue;
        model::note_changing(s, model::k_polygons, n);
        cell = std::move(drw);
        if (static_cast<size_t>(n) < s.pg_txt.size())
            patch_comment(s.pg_txt[static_cast<size_t>(n)], it == map.end() ? std::string() : std::to_string(it->second.front()));
    }
}

void commit_entries(model::Store& s, const std::vector<DrawToken>& entries, platform::Prompt* ui) {
    std::vector<DrawToken> kept;
    kept.reserve(entries.size());
    for (const DrawToken& t : entries)
        if (t.level > 0 && !t.code.empty()) kept.push_back(t);
    s.drwlist = typ::join_drwlist(kept);
    sort_draworder(s, ui);
    refresh_levels(s);
    s.dirty = true;
}

}  // namespace korvex::workbench
