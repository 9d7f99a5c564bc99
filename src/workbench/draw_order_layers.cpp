#include "workbench/draw_order_layers.h"

#include <algorithm>
#include <unordered_map>

namespace korvex::workbench {

LayerLayout refresh_draworders(const model::Store& s, int columns) {
    LayerLayout out;
    out.columns = std::max(1, columns);
    const std::vector<DrawToken> entries = view_entries(s);
    // The first polygon of each code: a search of the rows per entry would
    // be quadratic on a large file.
    std::unordered_map<std::string, int32_t> first_row;
    first_row.reserve(static_cast<size_t>(s.pg_n) * 2 + 16);
    for (int32_t n = 0; n < s.pg_n; ++n) {
        std::string code = polygon_code(s, n);
        if (!code.empty()) first_row.emplace(std::move(code), n);
    }
    out.cells.reserve(entries.size() + entries.size() / 4 + 16);
    for (size_t k = 0; k < entries.size(); ++k) {
        const DrawToken& e = entries[k];
        if (out.layers.empty() || out.layers.back().level != e.level) {
            while (out.cells.size() % static_cast<size_t>(out.columns) != 0) {
                LayerCell blank;
                blank.level = out.layers.back().level;
                out.cells.push_back(blank);
            }
            out.layers.push_back(LayerStart{static_cast<int>(out.cells.size()), e.level});
        }
        LayerCell c;
        c.entry = static_cast<int32_t>(k);
        c.code = e.code;
        c.level = e.level;
        const auto hit = first_row.find(e.code);
        if (hit != first_row.end()) {
            c.kind = LayerCellKind::polygon;
            c.row = hit->second;
        } else {
            c.kind = LayerCellKind::placeholder;
        }
        out.cells.push_back(std::move(c));
    }
    return out;
}

}  // namespace korvex::workbench
