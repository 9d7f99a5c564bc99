#include "platform/shell_link.h"

#include <cstdint>

#include "platform/files.h"

namespace korvex::platform {

namespace {

uint32_t link_u32(std::string_view b, size_t at) {
    if (at + 4 > b.size()) return 0;
    return static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8 | static_cast<uint8_t>(b[at + 2]) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(b[at + 3])) << 24;
}

std::string link_cstring(std::string_view b, size_t at) {
    std::string out;
    while (at < b.size() && b[at] != '\0') out += b[at++];
    return out;
}

}  // namespace

std::string shell_link_target(std::string_view b) {
    constexpr size_t k_header = 0x4C;
    if (b.size() < k_header || link_u32(b, 0) != k_header) return {};
    const uint32_t flags = link_u32(b, 0x14);
    size_t at = k_header;
    if (flags & 1) {  // an item id list comes first: skip it
        if (at + 2 > b.size()) return {};
        at += 2 + (static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8);
    }
    if (!(flags & 2) || at + 28 > b.size()) return {};
    const uint32_t info_size = link_u32(b, at);
    const uint32_t info_flags = link_u32(b, at + 8);
    const uint32_t base_at = link_u32(b, at + 16);
    const uint32_t suffix_at = link_u32(b, at + 24);
    if (!(info_flags & 1) || base_at >= info_size || at + info_size > b.size()) return {};
    std::string path = link_cstring(b.substr(0, at + info_size), at + base_at);
    if (suffix_at > 0 && suffix_at < info_size) {
        const std::string suffix = link_cstring(b.substr(0, at + info_size), at + suffix_at);
        if (!suffix.empty() && !path.empty() && path.back() != '\\') path += '\\';
        path += suffix;
    }
    return path;
}

std::string read_shortcut_file(const std::string& path) {
    const auto bytes = read_file(path);
    return bytes ? shell_link_target(*bytes) : std::string();
}

}  // namespace korvex::platform
