#include "model/nearest_colour.h"

#include <algorithm>
#include <iterator>

namespace korvex::model {

NearestColour::NearestColour(const std::vector<uint32_t>& palette) {
    by_red_.reserve(palette.size());
    for (size_t i = 0; i < palette.size(); ++i)
        by_red_.push_back({static_cast<int>(palette[i] & 0xFF), static_cast<int>(palette[i] >> 8 & 0xFF),
                           static_cast<int>(palette[i] >> 16 & 0xFF), static_cast<int>(i)});
    std::stable_sort(by_red_.begin(), by_red_.end(), [](const Item& a, const Item& b) { return a.r < b.r; });
}

int NearestColour::operator()(uint32_t colour) const {
    const int r = static_cast<int>(colour & 0xFF), g = static_cast<int>(colour >> 8 & 0xFF),
              b = static_cast<int>(colour >> 16 & 0xFF);
    const auto mid = std::lower_bound(by_red_.begin(), by_red_.end(), r, [](const Item& a, int v) { return a.r < v; });
    int best = 0, best_sum = 1 << 30;
    auto consider = [&](const Item& it) {
        const int dr = it.r - r, dg = it.g - g, db = it.b - b;
        const int sum = dr * dr + dg * dg + db * db;
        if (sum < best_sum || (sum == best_sum && it.index < best)) {
            best_sum = sum;
            best = it.index;
        }
    };
    for (auto it = mid; it != by_red_.end() && (it->r - r) * (it->r - r) <= best_sum; ++it) consider(*it);
    for (auto it = mid; it != by_red_.begin() && (std::prev(it)->r - r) * (std::prev(it)->r - r) <= best_sum; --it)
        consider(*std::prev(it));
    return best;
}

}  // namespace korvex::model
