#include "workbench/point_keys.h"

#include <array>

#include "model/store.h"

namespace korvex::workbench {

namespace {

constexpr int k_first_key = 36;  // "$"
constexpr int k_last_key = 126;

bool usable_key_char(int c) { return c >= k_first_key && c <= k_last_key && c != '\\'; }

}  // namespace

void re_bmp(std::vector<std::string>& rows, const KeyMap& map, int cpp) {
    if (map.empty() || cpp < 1) return;
    const auto step = static_cast<size_t>(cpp);
    std::string key(step, ' ');
    for (std::string& row : rows) {
        std::string out;
        out.reserve(row.size() * 2);
        size_t k = 0;
        for (; k + step <= row.size(); k += step) {
            key.assign(row, k, step);
            const auto hit = map.find(key);
            out += hit == map.end() ? key : hit->second;
        }
        out.append(row, k, std::string::npos);
        row = std::move(out);
    }
}

std::string wide_key(int i) {
    std::string k(2, ' ');
    // In the order of the canonical symbols, so that a widened picture is
    // already what the reader makes of it.
    k[0] = static_cast<char>(k_first_key + i / 16);
    k[1] = static_cast<char>(k_first_key + i % 16);
    return k;
}

void widen_keys(PointPicture& p) {
    if (p.cpp != 1) return;
    KeyMap map;
    for (size_t i = 0; i < p.colour_lines.size(); ++i) {
        std::string& line = p.colour_lines[i];
        const std::string old = colour_key(line, 1);
        const std::string now = wide_key(static_cast<int>(i));
        if (!old.empty()) {
            map.emplace(old, now);
            line.replace(1, 1, now);
        }
    }
    re_bmp(p.rows, map, 1);
    p.cpp = 2;
}

std::string add_colour(PointPicture& p, std::string_view value) {
    const int count = static_cast<int>(p.colour_lines.size()) + 1;
    if (count >= model::cpp_limit) widen_keys(p);
    std::string key;
    if (p.cpp == 1) {
        std::array<bool, 256> used{};
        for (const std::string& line : p.colour_lines)
            if (line.size() > 1) used[static_cast<unsigned char>(line[1])] = true;
        for (int c = k_first_key; c <= k_last_key && key.empty(); ++c)
            if (usable_key_char(c) && !used[static_cast<size_t>(c)]) key.assign(1, static_cast<char>(c));
    } else {
        std::vector<std::string> used;
        used.reserve(p.colour_lines.size());
        for (const std::string& line : p.colour_lines) used.push_back(colour_key(line, 2));
        auto free = [&](const std::string& k) {
            for (const std::string& u : used)
                if (u == k) return false;
            return true;
        };
        key = wide_key(count - 1);
        for (int i = 0; !free(key) && i < 16 * 16; ++i) key = wide_key(i);
    }
    p.colour_lines.push_back('"' + key + " c " + std::string(value) + '"');
    p.colours = count;
    return key;
}

}  // namespace korvex::workbench
