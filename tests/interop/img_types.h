// The element types a compiled Garmin map tile holds: enough of the IMG
// container, the TRE subdivisions and the RGN object records to list the
// types, and nothing of geometry or labels. Every walk must end where its
// section ends; when one does not, the tile is taken as unreadable, so a
// wrong guess at the layout fails the test instead of passing it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace korvex::testing::interop {

struct ImgTypes {
    bool readable = false;
    std::string problem;
    // Types as the TYP text numbers them: 0xTTSS for points (subtype in the
    // low byte), 0xTT00 for lines and polygons, 0x1TTSS for extended ones.
    std::set<int> points, lines, polygons;
};

namespace img_detail {

inline uint32_t u8(const std::string& b, size_t at) { return at < b.size() ? static_cast<unsigned char>(b[at]) : 0; }
inline uint32_t u16(const std::string& b, size_t at) { return u8(b, at) | (u8(b, at + 1) << 8); }
inline uint32_t u24(const std::string& b, size_t at) { return u16(b, at) | (u8(b, at + 2) << 16); }
inline uint32_t u32(const std::string& b, size_t at) { return u24(b, at) | (u8(b, at + 3) << 24); }

// The sub-files of the container by "NAME.EXT", each put together from its blocks.
inline std::map<std::string, std::string> subfiles(const std::string& img) {
    std::map<std::string, std::string> out;
    if (img.size() < 0x600) return out;
    const size_t block = size_t{1} << (u8(img, 0x61) + u8(img, 0x62));
    std::map<std::string, uint32_t> sizes;
    for (size_t at = 0x400; at + 512 <= img.size() && u8(img, at) == 1; at += 512) {
        const std::string name = img.substr(at + 1, 8), ext = img.substr(at + 9, 3);
        if (name.find_first_not_of(' ') == std::string::npos) continue;
        const std::string key = name + "." + ext;
        if (u16(img, at + 16) == 0) sizes[key] = u32(img, at + 12);
        for (size_t k = 0; k < 240; ++k) {
            const uint32_t b = u16(img, at + 32 + 2 * k);
            if (b == 0xffff) break;
            out[key] += img.substr(std::min(img.size(), b * block), block);
        }
    }
    for (auto& [key, data] : out)
        if (sizes.count(key) && data.size() > sizes[key]) data.resize(sizes[key]);
    return out;
}

// The standard objects of one kind between from and to; false when the
// records do not fill the span exactly.
inline bool walk_standard(const std::string& rgn, size_t from, size_t to, int kind, ImgTypes& t) {
    size_t at = from;
    while (at < to) {
        const uint32_t type = u8(rgn, at);
        if (kind == 0 || kind == 1) {  // points, indexed points
            const uint32_t label = u24(rgn, at + 1);
            const bool sub = label & 0x800000;
            t.points.insert(static_cast<int>((type << 8) | (sub ? u8(rgn, at + 8) : 0)));
            at += sub ? 9 : 8;
            continue;
        }
        const bool two = type & 0x80;
        const uint32_t len = two ? u16(rgn, at + 8) : u8(rgn, at + 8);
        if (kind == 2)
            t.lines.insert(static_cast<int>((type & 0x3f) << 8));
        else
            t.polygons.insert(static_cast<int>((type & 0x7f) << 8));
        at += 8 + (two ? 2 : 1) + 1 + len;
    }
    return at == to;
}

// An extended section walked from start to end: its records follow one
// another over all subdivisions.
inline bool walk_extended(const std::string& rgn, size_t from, size_t to, int kind, ImgTypes& t) {
    size_t at = from;
    while (at < to) {
        const uint32_t type = u8(rgn, at), flags = u8(rgn, at + 1);
        if (flags & 0x80) return false;  // extra bytes: not made by these tests
        const int code = static_cast<int>(0x10000 | (type << 8) | (flags & 0x1f));
        at += 6;
        if (kind != 0) {
            const uint32_t first = u8(rgn, at);
            const uint32_t len = (first & 1) ? first >> 1 : u16(rgn, at) >> 2;
            at += ((first & 1) ? 1 : 2) + len;
        }
        if (flags & 0x20) at += 3;
        (kind == 0 ? t.points : kind == 1 ? t.lines : t.polygons).insert(code);
    }
    return at == to;
}

}  // namespace img_detail

// The types in the first tile of a map image (a file of one tile, as mkgmap
// writes per input file).
inline ImgTypes img_types(const std::string& img) {
    using namespace img_detail;
    ImgTypes t;
    const auto files = subfiles(img);
    std::string tre, rgn;
    for (const auto& [key, data] : files) {
        if (key.size() > 4 && key.substr(key.size() - 4) == ".TRE" && tre.empty()) tre = data;
        if (key.size() > 4 && key.substr(key.size() - 4) == ".RGN" && rgn.empty()) rgn = data;
    }
    if (tre.empty() || rgn.empty()) {
        t.problem = "no TRE or RGN in the image";
        return t;
    }
    if (tre.substr(2, 10) != "GARMIN TRE" || rgn.substr(2, 10) != "GARMIN RGN") {
        t.problem = "the sub-file heads are not TRE and RGN";
        return t;
    }
    // Levels from the least detailed; the last level's subdivisions have no
    // index of a next level and are two bytes shorter.
    const uint32_t levels_at = u32(tre, 0x21), levels_size = u32(tre, 0x25);
    const uint32_t subdiv_at = u32(tre, 0x29), subdiv_size = u32(tre, 0x2D);
    std::vector<uint32_t> counts;
    for (uint32_t k = 0; k + 4 <= levels_size; k += 4) counts.push_back(u16(tre, levels_at + k + 2));
    struct Subdiv {
        uint32_t offset;
        uint32_t kinds;
    };
    std::vector<Subdiv> subdivs;
    size_t at = subdiv_at;
    for (size_t level = 0; level < counts.size(); ++level) {
        const size_t rec = level + 1 == counts.size() ? 14 : 16;
        for (uint32_t k = 0; k < counts[level]; ++k, at += rec) subdivs.push_back(Subdiv{u24(tre, at), u8(tre, at + 3)});
    }
    if (at > subdiv_at + subdiv_size || subdivs.empty()) {
        t.problem = "the subdivisions do not fit their section";
        return t;
    }
    const uint32_t data_at = u32(rgn, 0x15), data_size = u32(rgn, 0x19);
    for (size_t k = 0; k < subdivs.size(); ++k) {
        const uint32_t start = subdivs[k].offset;
        const uint32_t end = k + 1 < subdivs.size() ? subdivs[k + 1].offset : data_size;
        if (end < start || end > data_size) {
            t.problem = "subdivision data out of order";
            return t;
        }
        std::vector<int> kinds;
        for (int bit = 0; bit < 4; ++bit)
            if (subdivs[k].kinds & (0x10 << bit)) kinds.push_back(bit);
        if (kinds.empty()) continue;
        // Pointers to the second and later kinds lead the subdivision's data.
        const size_t base = data_at + start;
        std::vector<size_t> bounds{base + 2 * (kinds.size() - 1)};
        for (size_t p = 1; p < kinds.size(); ++p) bounds.push_back(base + u16(rgn, base + 2 * (p - 1)));
        bounds.push_back(data_at + end);
        for (size_t p = 0; p < kinds.size(); ++p) {
            if (!walk_standard(rgn, bounds[p], bounds[p + 1], kinds[p], t)) {
                t.problem = "the records of subdivision " + std::to_string(k) + " do not fill it";
                return t;
            }
        }
    }
    const std::pair<size_t, size_t> ext[3] = {{0x55, 0x59}, {0x39, 0x3D}, {0x1D, 0x21}};
    if (u16(rgn, 0) >= 0x5D) {
        for (int kind = 0; kind < 3; ++kind) {
            const uint32_t from = u32(rgn, ext[kind].first), size = u32(rgn, ext[kind].second);
            if (size > 0 && !walk_extended(rgn, from, from + size, kind, t)) {
                t.problem = "an extended section does not end on a record";
                return t;
            }
        }
    }
    t.readable = true;
    return t;
}

}  // namespace korvex::testing::interop
