// BMP files:
//   "BM" | file size u32 | 0 u32 | pixel offset u32 |
//   header size u32 | width i32 | height i32 (negative: top-down) | planes u16 |
//   bits u16 | compression u32 | image size u32 | x, y resolution i32 | colours used u32 | important u32 |
//   [colour table: blue green red 0, 4 bytes an entry] | rows, each padded to 4 bytes
#include <cstring>

#include "platform/files.h"
#include "platform/images.h"

namespace korvex::platform {

namespace {

constexpr size_t k_file_header = 14;
constexpr size_t k_info_header = 40;
// More than any icon or picture the editor takes, and small enough that
// width x height cannot overflow.
constexpr int64_t k_max_side = 1 << 15;

uint32_t u32(std::string_view b, size_t at) {
    if (at + 4 > b.size()) return 0;
    return static_cast<uint32_t>(static_cast<uint8_t>(b[at])) | static_cast<uint32_t>(static_cast<uint8_t>(b[at + 1])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(b[at + 2])) << 16 | static_cast<uint32_t>(static_cast<uint8_t>(b[at + 3])) << 24;
}
uint16_t u16(std::string_view b, size_t at) {
    if (at + 2 > b.size()) return 0;
    return static_cast<uint16_t>(static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8);
}
void put32(std::string& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out += static_cast<char>(v >> (8 * i) & 0xFF);
}
void put16(std::string& out, uint16_t v) {
    out += static_cast<char>(v & 0xFF);
    out += static_cast<char>(v >> 8);
}

}  // namespace

std::string encode_bmp24(const Image& image) {
    const int w = image.width > 0 ? image.width : 0, h = image.height > 0 ? image.height : 0;
    const size_t stride = (static_cast<size_t>(w) * 3 + 3) / 4 * 4;
    const size_t data = stride * static_cast<size_t>(h);
    std::string out;
    out.reserve(k_file_header + k_info_header + data);
    out += "BM";
    put32(out, static_cast<uint32_t>(k_file_header + k_info_header + data));
    put32(out, 0);
    put32(out, k_file_header + k_info_header);
    put32(out, k_info_header);
    put32(out, static_cast<uint32_t>(w));
    put32(out, static_cast<uint32_t>(h));
    put16(out, 1);
    put16(out, 24);
    put32(out, 0);
    put32(out, static_cast<uint32_t>(data));
    put32(out, 2835);  // 72 dots an inch
    put32(out, 2835);
    put32(out, 0);
    put32(out, 0);
    for (int y = h - 1; y >= 0; --y) {
        const size_t row_start = out.size();
        for (int x = 0; x < w; ++x) {
            const size_t i = static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x);
            const uint32_t c = i < image.argb.size() ? image.argb[i] : 0;
            out += static_cast<char>(c & 0xFF);
            out += static_cast<char>(c >> 8 & 0xFF);
            out += static_cast<char>(c >> 16 & 0xFF);
        }
        out.append(stride - (out.size() - row_start), '\0');
    }
    return out;
}

bool decode_bmp(std::string_view b, Image& out) {
    if (b.size() < k_file_header + k_info_header || b[0] != 'B' || b[1] != 'M') return false;
    const uint32_t offset = u32(b, 10);
    const uint32_t header = u32(b, 14);
    if (header < k_info_header) return false;
    const auto width = static_cast<int32_t>(u32(b, 18));
    const auto raw_height = static_cast<int32_t>(u32(b, 22));
    const int bits = u16(b, 28);
    const uint32_t compression = u32(b, 30);
    // BI_BITFIELDS with 32 bits is the usual layout of an ARGB file.
    if (compression != 0 && !(compression == 3 && bits == 32)) return false;
    if (bits != 8 && bits != 24 && bits != 32) return false;
    const int64_t height = raw_height < 0 ? -static_cast<int64_t>(raw_height) : raw_height;
    if (width <= 0 || height <= 0 || width > k_max_side || height > k_max_side) return false;
    const size_t stride = (static_cast<size_t>(width) * static_cast<size_t>(bits) + 31) / 32 * 4;
    if (offset > b.size() || stride * static_cast<size_t>(height) > b.size() - offset) return false;

    std::vector<uint32_t> table;
    if (bits == 8) {
        uint32_t used = u32(b, 46);
        if (used == 0 || used > 256) used = 256;
        const size_t at = k_file_header + header;
        for (uint32_t i = 0; i < used && at + 4 * i + 3 < offset; ++i) table.push_back(u32(b, at + 4 * i) & 0xFFFFFF);
    }
    out.width = width;
    out.height = static_cast<int>(height);
    out.argb.assign(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
    bool any_alpha = false;
    for (int64_t row = 0; row < height; ++row) {
        const int64_t y = raw_height < 0 ? row : height - 1 - row;
        const size_t line = offset + static_cast<size_t>(row) * stride;
        for (int32_t x = 0; x < width; ++x) {
            uint32_t c = 0;
            if (bits == 8) {
                const auto k = static_cast<uint8_t>(b[line + static_cast<size_t>(x)]);
                c = k < table.size() ? table[k] : 0;
            } else {
                const size_t at = line + static_cast<size_t>(x) * static_cast<size_t>(bits / 8);
                c = static_cast<uint8_t>(b[at]) | static_cast<uint32_t>(static_cast<uint8_t>(b[at + 1])) << 8 |
                    static_cast<uint32_t>(static_cast<uint8_t>(b[at + 2])) << 16;
                if (bits == 32) {
                    c |= static_cast<uint32_t>(static_cast<uint8_t>(b[at + 3])) << 24;
                    if (c >> 24) any_alpha = true;
                }
            }
            out.argb[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)] = c;
        }
    }
    // A file whose fourth byte is 0 throughout carries no alpha: opaque.
    for (uint32_t& c : out.argb)
        if (!any_alpha || bits != 32) c |= 0xFF000000u;
    return true;
}

ImageRead BmpImageCodec::read(const std::string& path) {
    ImageRead r;
    std::string why;
    const std::optional<std::string> bytes = read_file(path, &why);
    if (!bytes) {
        r.error = why;
        return r;
    }
    r.ok = decode_bmp(*bytes, r.image);
    if (!r.ok) r.error = "not a BMP file this reader knows";
    return r;
}

bool BmpImageCodec::write_bmp(const std::string& path, const Image& image, std::string* error) {
    return write_file_atomic(path, encode_bmp24(image), error);
}

}  // namespace korvex::platform
