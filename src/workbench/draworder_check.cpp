#include "workbench/draworder_check.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "workbench/draworder_entries.h"
#include "workbench/element_rows.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

Findings chk_no_draworder(const model::Store& s) {
    Findings out;
    const auto levels = draworder_levels(s);
    std::unordered_set<int32_t> seen;
    for (int32_t r = 0; r < s.pg_n; ++r) {
        const int32_t code = row_type_code(s, model::k_polygons, r);
        if (levels.count(code) || !seen.insert(code).second) continue;
        bool can_have = true;
        drw_code(code, &can_have);
        out.push_back({model::k_polygons, row_type_text(s, model::k_polygons, r), k_check_no_draworder,
                       can_have ? "polygon has no draw-order level: it is not drawn"
                                : "polygon of a type below 0x100 with a subtype: it cannot have a draw-order "
                                  "level and is not drawn"});
    }
    return out;
}

Findings chk_draworder_duplicates(const model::Store& s, const std::string& dropped) {
    // Codes in the order they first stand, each with its levels.
    std::vector<int32_t> order;
    std::unordered_map<int32_t, std::vector<int>> levels;
    for (const std::string* list : {&s.drwlist, &dropped}) {
        size_t at = 0;
        while (at < list->size()) {
            while (at < list->size() && (*list)[at] == ' ') ++at;
            const size_t end = std::min(list->find(' ', at), list->size());
            const std::string token = list->substr(at, end - at);
            at = end;
            const size_t comma = token.find(',');
            if (comma == std::string::npos) continue;
            const int32_t code = token_code(token);
            if (code < 0) continue;
            auto& l = levels[code];
            if (l.empty()) order.push_back(code);
            l.push_back(std::atoi(token.c_str() + comma + 1));
        }
    }
    Findings out;
    for (int32_t code : order) {
        const std::vector<int>& l = levels[code];
        if (l.size() < 2) continue;
        std::string text;
        for (int v : l) text += (text.empty() ? "" : ", ") + std::to_string(v);
        out.push_back({model::k_polygons, "0x" + five_digits(code), k_check_draworder_duplicate,
                       "type has " + std::to_string(l.size()) + " draw-order entries (levels " + text + ")"});
    }
    return out;
}

}  // namespace korvex::workbench
