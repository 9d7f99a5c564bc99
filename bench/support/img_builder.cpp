#include "support/img_builder.h"

#include <algorithm>
#include <fstream>

namespace korvex::samples {

namespace {

constexpr uint64_t k_table_start = 1024;
constexpr size_t k_slot = 512;
constexpr size_t k_numbers = 240;

void le(std::string& b, size_t at, uint64_t v, int n) {
    for (int i = 0; i < n; ++i) b[at + static_cast<size_t>(i)] = static_cast<char>((v >> (8 * i)) & 0xff);
}

std::string padded(const std::string& t, size_t n) {
    std::string out = t.substr(0, n);
    out.resize(n, ' ');
    return out;
}

uint64_t size_of(const ImgPart& p) { return p.bytes.empty() ? p.zeros : p.bytes.size(); }

}  // namespace

bool build_img(const std::string& path, int block_exponent, const std::vector<ImgPart>& parts, uint8_t key) {
    const uint64_t bs = uint64_t{1} << block_exponent;
    uint64_t entries = 1;
    for (const ImgPart& p : parts)
        entries += std::max<uint64_t>(1, ((size_of(p) + bs - 1) / bs + k_numbers - 1) / k_numbers);
    const uint64_t table_end = k_table_start + entries * k_slot;
    const uint64_t table_blocks = (table_end + bs - 1) / bs;
    std::string head(table_blocks * bs, '\0');
    head.replace(0x10, 7, std::string("DSKIMG\0", 7));
    head[0x17] = 2;
    head[0x40] = static_cast<char>(k_table_start / 512);
    head.replace(0x41, 7, std::string("GARMIN\0", 7));
    head.replace(0x49, 20, padded("KORVEX TEST", 20));
    head[0x61] = 9;
    head[0x62] = static_cast<char>(block_exponent - 9);
    head[0x1fe] = 0x55;
    head[0x1ff] = static_cast<char>(0xaa);

    auto entry = [&](size_t slot) { return k_table_start + slot * k_slot; };
    // The entry of the header and table.
    head[entry(0)] = 1;
    head.replace(entry(0) + 1, 11, std::string(11, ' '));
    le(head, entry(0) + 0x0c, table_end, 4);
    le(head, entry(0) + 0x10, 3, 2);
    for (size_t i = 0; i < k_numbers; ++i) le(head, entry(0) + 0x20 + 2 * i, i < table_blocks ? i : 0xFFFF, 2);

    uint64_t next = table_blocks;
    size_t slot = 1;
    std::vector<uint64_t> starts;
    for (const ImgPart& p : parts) {
        const uint64_t blocks = (size_of(p) + bs - 1) / bs;
        starts.push_back(next * bs);
        uint64_t done = 0;
        int part = 0;
        do {
            const size_t e = entry(slot++);
            head[e] = 1;
            head.replace(e + 1, 8, padded(p.name, 8));
            head.replace(e + 9, 3, padded(p.type, 3));
            le(head, e + 0x0c, part == 0 ? size_of(p) : 0, 4);
            le(head, e + 0x10, static_cast<uint64_t>(part) << 8, 2);
            for (size_t i = 0; i < k_numbers; ++i)
                le(head, e + 0x20 + 2 * i, done + i < blocks ? next + done + i : 0xFFFF, 2);
            done += std::min<uint64_t>(k_numbers, blocks - std::min(done, blocks));
            ++part;
        } while (done < blocks);
        next += blocks;
    }
    le(head, 0x63, next + 1, 2);
    le(head, 0x1be + 12, (next + 1) * bs / 512, 4);

    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    auto put = [&](std::string b) {
        if (key != 0)
            for (char& c : b) c = static_cast<char>(c ^ key);
        out.write(b.data(), static_cast<std::streamsize>(b.size()));
    };
    put(head);
    for (size_t i = 0; i < parts.size(); ++i) {
        out.seekp(static_cast<std::streamoff>(starts[i]));
        if (!parts[i].bytes.empty())
            put(parts[i].bytes);
        else if (key != 0)
            put(std::string(parts[i].zeros, '\0'));
        // A keyed file has no zero bytes: its padding is written too.
        const uint64_t size = size_of(parts[i]);
        if (key != 0) put(std::string((size + bs - 1) / bs * bs - size, '\0'));
    }
    // The last block is whole; holes stay holes.
    const uint64_t end = next * bs;
    if (key != 0) {
        out.seekp(0, std::ios::end);
        const uint64_t at = static_cast<uint64_t>(out.tellp());
        if (at < end) put(std::string(end - at, '\0'));
    } else {
        out.seekp(static_cast<std::streamoff>(end - 1));
        out.put('\0');
    }
    return static_cast<bool>(out.flush());
}

std::string typ_stub(uint16_t fid, uint16_t pid, size_t size) {
    std::string t(std::max<size_t>(size, 0x33), '\0');
    t[0] = 0x5b;
    t.replace(2, 10, "GARMIN TYP");
    le(t, 0x2f, fid, 2);
    le(t, 0x31, pid, 2);
    for (size_t i = 0x33; i < t.size(); ++i) t[i] = static_cast<char>(i * 7 + 1);
    t.resize(size);
    return t;
}

}  // namespace korvex::samples
