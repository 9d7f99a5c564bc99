#include "integration/img_replace.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/files.h"

namespace korvex::integration {

namespace {

// Subfiles are copied in pieces of this size: memory stays flat whatever the
// container's size.
constexpr size_t k_copy_chunk = 1 << 20;
// Runs of zeros from this length on are skipped rather than written.
constexpr uint64_t k_hole_min = 4096;
constexpr int k_max_block_exponent = 24;
// Block numbers are u16 with 0xFFFF for none, and the block count field
// holds one more than the blocks.
constexpr uint32_t k_max_blocks = 65534;
// The part field of part k (the parts of a large subfile) holds k << 8.
constexpr int k_part_shift = 8;
// The first entry's part field.
constexpr uint16_t k_head_part = 3;
// Partition entry: end head, end sector (cylinder bits 8-9 on top), end
// cylinder, LBA count.
constexpr int p_end_head = 5, p_end_sector = 6, p_end_cylinder = 7, p_lba_count = 12;
constexpr uint32_t k_max_cylinders = 1023;

void put16(std::string& b, size_t at, uint16_t v) {
    b[at] = static_cast<char>(v & 0xff);
    b[at + 1] = static_cast<char>(v >> 8);
}

void put32(std::string& b, size_t at, uint32_t v) {
    put16(b, at, static_cast<uint16_t>(v & 0xffff));
    put16(b, at + 2, static_cast<uint16_t>(v >> 16));
}

uint16_t get16(const std::string& b, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8);
}

uint32_t get32(const std::string& b, size_t at) {
    return static_cast<uint32_t>(get16(b, at)) | static_cast<uint32_t>(get16(b, at + 2)) << 16;
}

uint32_t blocks_for(uint64_t bytes, uint32_t block_size) {
    return static_cast<uint32_t>((bytes + block_size - 1) / block_size);
}

uint32_t parts_for(uint32_t blocks) {
    return std::max<uint32_t>(1, blocks_for(blocks, img::k_entry_blocks));
}

// The numbers from index from on, as many as an entry holds; 0xFFFF after.
void put_blocks(std::string& entry, const std::vector<uint16_t>& numbers, size_t from) {
    for (size_t i = 0; i < static_cast<size_t>(img::k_entry_blocks); ++i)
        put16(entry, img::e_blocks + 2 * i, from + i < numbers.size() ? numbers[from + i] : img::k_no_block);
}

struct Geometry {
    uint32_t sectors = 0, heads = 0, cylinders = 0;
    bool holds(uint64_t n) const { return static_cast<uint64_t>(sectors) * heads * cylinders >= n; }
};

// The disk geometry map makers give a container of n sectors: the smallest
// sectors and heads whose 1023 cylinders hold it, then as few cylinders of
// a power of two from 32 as do.
Geometry usual_geometry(uint64_t n) {
    Geometry g{32, 256, 0};
    bool found = false;
    for (uint32_t h = 16; h <= 256 && !found; h *= 2)
        for (uint32_t s = 4; s <= 32 && !found; s *= 2)
            if (static_cast<uint64_t>(s) * h * k_max_cylinders >= n) {
                g.sectors = s;
                g.heads = h;
                found = true;
            }
    g.cylinders = 32;
    while (!g.holds(n) && g.cylinders < k_max_cylinders) g.cylinders *= 2;
    g.cylinders = std::min(g.cylinders, k_max_cylinders);
    return g;
}

Geometry geometry_of(const std::string& head) {
    return {get16(head, img::sectors), get16(head, img::heads), get16(head, img::cylinders)};
}

bool same(const Geometry& a, const Geometry& b) {
    return a.sectors == b.sectors && a.heads == b.heads && a.cylinders == b.cylinders;
}

// The block count, the partition's size and end, and the geometry when the
// old one follows the usual rule or is too small. Dates, description and
// the other bytes stay.
void update_header(std::string& head, uint32_t exponent, uint32_t block_size, uint32_t blocks) {
    const uint8_t e1 = static_cast<uint8_t>(head[img::exp1]);
    head[img::exp2] = static_cast<char>(exponent - e1);
    const uint32_t count = blocks + 1;
    put16(head, img::block_count, static_cast<uint16_t>(count));
    const uint64_t sectors = static_cast<uint64_t>(count) * block_size / img::k_sector;
    const uint32_t old_sectors = get32(head, img::partition + p_lba_count);
    Geometry g = geometry_of(head);
    if (same(g, usual_geometry(old_sectors)) || g.sectors == 0 || g.heads == 0 || !g.holds(sectors))
        g = usual_geometry(sectors);
    put16(head, img::sectors, static_cast<uint16_t>(g.sectors));
    put16(head, img::heads, static_cast<uint16_t>(g.heads));
    put16(head, img::cylinders, static_cast<uint16_t>(g.cylinders));
    put16(head, img::heads_copy, static_cast<uint16_t>(g.heads));
    put16(head, img::sectors_copy, static_cast<uint16_t>(g.sectors));
    const uint64_t last = sectors - 1;
    const uint64_t per_cylinder = static_cast<uint64_t>(g.sectors) * g.heads;
    const uint32_t cyl = static_cast<uint32_t>(std::min<uint64_t>(last / per_cylinder, k_max_cylinders));
    head[img::partition + p_end_head] = static_cast<char>((last / g.sectors) % g.heads);
    head[img::partition + p_end_sector] = static_cast<char>((last % g.sectors + 1) | ((cyl >> 8) & 3) << 6);
    head[img::partition + p_end_cylinder] = static_cast<char>(cyl & 0xff);
    put32(head, img::partition + p_lba_count, static_cast<uint32_t>(sectors));
}

}  // namespace

std::optional<ImgLayout> plan_replace(const ImgContainer& c, size_t index, uint32_t new_size, std::string& error) {
    std::vector<uint32_t> sizes;
    for (size_t i = 0; i < c.subfiles.size(); ++i) sizes.push_back(i == index ? new_size : c.subfiles[i].size);
    uint32_t exponent = 0;
    while ((1u << exponent) < c.block_size) ++exponent;
    for (; exponent <= k_max_block_exponent; ++exponent) {
        const uint32_t bs = 1u << exponent;
        uint64_t entries = 1;
        uint64_t data_blocks = 0;
        for (uint32_t n : sizes) {
            entries += parts_for(blocks_for(n, bs));
            data_blocks += blocks_for(n, bs);
        }
        const uint64_t table_end = c.fat_start + entries * img::k_entry;
        const uint32_t table_blocks = blocks_for(table_end, bs);
        if (table_blocks > static_cast<uint32_t>(img::k_entry_blocks) || table_blocks + data_blocks > k_max_blocks)
            continue;
        ImgLayout l;
        l.block_size = bs;
        l.head = c.head;
        l.head.resize(static_cast<size_t>(table_blocks) * bs, '\0');
        update_header(l.head, exponent, bs, static_cast<uint32_t>(table_blocks + data_blocks));

        // The entry of the header and table, then each subfile's parts.
        std::string first = c.first_entry;
        put32(first, img::e_size, static_cast<uint32_t>(table_end));
        put16(first, img::e_part, k_head_part);
        std::vector<uint16_t> numbers(table_blocks);
        for (uint32_t b = 0; b < table_blocks; ++b) numbers[b] = static_cast<uint16_t>(b);
        put_blocks(first, numbers, 0);
        size_t at = c.fat_start;
        l.head.replace(at, img::k_entry, first);
        at += img::k_entry;
        uint32_t next = table_blocks;
        for (size_t i = 0; i < c.subfiles.size(); ++i) {
            const ImgSubfile& f = c.subfiles[i];
            const uint32_t n = blocks_for(sizes[i], bs);
            std::vector<uint16_t> own(n);
            for (uint32_t b = 0; b < n; ++b) own[b] = static_cast<uint16_t>(next++);
            const uint32_t parts = parts_for(n);
            // Other subfiles keep their entries but for the block numbers;
            // the replaced one, or one split anew, gets size and parts anew.
            const bool renumber = i == index || parts != f.entries.size();
            for (uint32_t p = 0; p < parts; ++p) {
                std::string e = p < f.entries.size() ? f.entries[p] : f.entries.front();
                if (renumber) {
                    put32(e, img::e_size, p == 0 ? sizes[i] : 0);
                    put16(e, img::e_part, static_cast<uint16_t>(p << k_part_shift));
                }
                put_blocks(e, own, static_cast<size_t>(p) * img::k_entry_blocks);
                l.head.replace(at, img::k_entry, e);
                at += img::k_entry;
            }
            l.blocks.push_back(std::move(own));
        }
        l.block_count = next;
        return l;
    }
    error = c.path + ": the map has no room for " + std::to_string(new_size) + " bytes of " +
            c.subfiles.at(index).full_name() + ".";
    return std::nullopt;
}

namespace {

// Writes to an atomic writer, XORed with the container's key.
class KeyedOut {
public:
    KeyedOut(platform::AtomicWriter& out, uint8_t key) : out_(out), key_(key) {}
    void write(std::string_view data) {
        if (key_ == 0) {
            out_.write(data);
            return;
        }
        while (!data.empty()) {
            const size_t n = std::min(data.size(), k_copy_chunk);
            buf_.assign(data.data(), n);
            for (char& ch : buf_) ch = static_cast<char>(ch ^ key_);
            out_.write(buf_);
            data.remove_prefix(n);
        }
    }
    // Zeros of a plain container stay holes, as in a sparse original.
    void zeros(uint64_t n) {
        if (key_ == 0 && n >= k_hole_min) {
            out_.skip(n);
            return;
        }
        static const std::string k_zeros(k_copy_chunk, '\0');
        while (n > 0) {
            const size_t m = static_cast<size_t>(std::min<uint64_t>(n, k_zeros.size()));
            write(std::string_view(k_zeros.data(), m));
            n -= m;
        }
    }

private:
    platform::AtomicWriter& out_;
    uint8_t key_;
    std::string buf_;
};

bool all_zero(const std::string& b) {
    return b.empty() || (b[0] == '\0' && std::memcmp(b.data(), b.data() + 1, b.size() - 1) == 0);
}

// Copies an old subfile: runs of consecutive blocks are read in large pieces.
bool copy_subfile(ImgReader& in, const ImgContainer& c, const ImgSubfile& f, KeyedOut& out, std::string& buf) {
    uint64_t left = f.size;
    size_t i = 0;
    while (left > 0) {
        size_t run = 1;
        while (i + run < f.blocks.size() && f.blocks[i + run] == f.blocks[i] + run &&
               run * static_cast<uint64_t>(c.block_size) < k_copy_chunk)
            ++run;
        const size_t n = static_cast<size_t>(std::min<uint64_t>(left, run * static_cast<uint64_t>(c.block_size)));
        buf.resize(n);
        if (!in.read_at(static_cast<uint64_t>(f.blocks[i]) * c.block_size, n, buf.data())) return false;
        if (all_zero(buf))
            out.zeros(n);
        else
            out.write(buf);
        left -= n;
        i += run;
    }
    return true;
}

}  // namespace

bool replace_subfile(const ImgContainer& c, size_t index, std::string_view bytes, const std::string& out_path,
                     std::string& error, platform::FileSystem& fs, const ImgProgress& progress) {
    if (index >= c.subfiles.size() || bytes.size() > UINT32_MAX) {
        error = "No such subfile in " + c.path;
        return false;
    }
    auto layout = plan_replace(c, index, static_cast<uint32_t>(bytes.size()), error);
    if (!layout) return false;
    ImgReader in(c.path, c.xor_key);
    if (!in.ok()) {
        error = "Cannot read " + c.path;
        return false;
    }
    platform::AtomicWriter writer(out_path, fs);
    if (!writer.ok()) {
        error = "Cannot write " + out_path + ": " + writer.error();
        return false;
    }
    KeyedOut out(writer, c.xor_key);
    out.write(layout->head);
    std::string buf;
    // Said per subfile: a map's large subfiles are its tiles.
    const uint64_t total = static_cast<uint64_t>(layout->block_count) * layout->block_size;
    uint64_t done = layout->head.size();
    int said = -1;
    for (size_t i = 0; i < c.subfiles.size(); ++i) {
        const ImgSubfile& f = c.subfiles[i];
        uint64_t size = f.size;
        if (i == index) {
            out.write(bytes);
            size = bytes.size();
        } else if (!copy_subfile(in, c, f, out, buf)) {
            error = "Cannot read " + f.full_name() + " from " + c.path;
            return false;  // the writer's destructor removes its temporary file
        }
        out.zeros(static_cast<uint64_t>(layout->blocks[i].size()) * layout->block_size - size);
        if (!writer.ok()) break;
        done += static_cast<uint64_t>(layout->blocks[i].size()) * layout->block_size;
        const int percent = static_cast<int>(done * 100 / std::max<uint64_t>(total, 1));
        if (progress && percent != said) progress(said = percent);
    }
    in.close();
    if (!writer.commit()) {
        error = "Cannot write " + out_path + ": " + writer.error();
        return false;
    }
    return true;
}

int choose_typ(const ImgContainer& c, const std::string& name, std::string& error) {
    const std::vector<size_t> typs = c.typ_indexes();
    if (typs.empty()) {
        error = c.path + " holds no TYP file.";
        return -1;
    }
    if (name.empty()) {
        if (typs.size() == 1) return static_cast<int>(typs[0]);
        error = c.path + " holds " + std::to_string(typs.size()) + " TYP files: name one.";
        return -1;
    }
    const int at = c.find(name);
    if (at < 0 || std::find(typs.begin(), typs.end(), static_cast<size_t>(at)) == typs.end()) {
        error = c.path + " holds no TYP file " + name + ".";
        return -1;
    }
    return at;
}

bool replace_typ(const std::string& path, const std::string& name, std::string_view typ, const std::string& out_path,
                 std::string& error, platform::FileSystem& fs) {
    auto c = read_typ_container(path, error);
    if (!c) return false;
    const int at = choose_typ(*c, name, error);
    if (at < 0) return false;
    return replace_subfile(*c, static_cast<size_t>(at), typ, out_path, error, fs);
}

}  // namespace korvex::integration
