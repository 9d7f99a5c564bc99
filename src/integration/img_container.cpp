#include "integration/img_container.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "platform/native_path.h"

namespace korvex::integration {

namespace {

// Table entries are read in one piece up to this many; more would need more
// blocks than a container can number.
constexpr uint64_t k_max_entries = 70000;
// Block sizes from 512 bytes to 16 MB.
constexpr int k_min_exponent = 9, k_max_exponent = 24;
// What a TYP subfile needs for its ids: "GARMIN TYP" at 2, family id at
// 0x2f, product id at 0x31.
constexpr size_t k_typ_ids_end = 0x33;
constexpr int k_typ_fid = 0x2f, k_typ_pid = 0x31;

uint16_t img_u16(const std::string& b, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8);
}

uint32_t img_u32(const std::string& b, size_t at) {
    return static_cast<uint32_t>(img_u16(b, at)) | static_cast<uint32_t>(img_u16(b, at + 2)) << 16;
}

std::string unpadded(std::string t) {
    while (!t.empty() && (t.back() == ' ' || t.back() == '\0')) t.pop_back();
    return t;
}

std::string upper_name(std::string t) {
    for (char& c : t) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    return t;
}

std::string not_a_container(const std::string& path) {
    return path + " is not a Garmin map file (no DSKIMG container).";
}

std::string damaged(const std::string& path, const std::string& why) {
    return path + ": the map's allocation table is damaged (" + why + ").";
}

std::string truncated(const std::string& path, const std::string& what) {
    return path + " is truncated: " + what + " lies past the end of the file.";
}

// The block numbers of one entry: up to the first 0xFFFF.
std::vector<uint16_t> entry_blocks(const std::string& e) {
    std::vector<uint16_t> out;
    for (int i = 0; i < img::k_entry_blocks; ++i) {
        const uint16_t b = img_u16(e, img::e_blocks + 2 * static_cast<size_t>(i));
        if (b == img::k_no_block) break;
        out.push_back(b);
    }
    return out;
}

// Reads the entries after the first one into subfiles. The table ends at the
// end of the first entry's bytes, at the lowest block a subfile uses, or at
// a flag byte that is neither 0 nor 1; slots of flag 0 are empty.
std::vector<ImgSubfile> read_entries(const std::string& table, uint64_t table_start, uint32_t block_size) {
    std::vector<ImgSubfile> files;
    uint64_t lowest = UINT64_MAX;  // byte offset of the lowest block in use
    size_t last_count = 0;         // block numbers in the previous entry
    for (size_t at = img::k_entry; at + img::k_entry <= table.size(); at += img::k_entry) {
        if (table_start + at >= lowest) break;
        const std::string e = table.substr(at, img::k_entry);
        const uint8_t flag = static_cast<uint8_t>(e[img::e_flag]);
        if (flag > 1) break;
        if (flag == 0) {
            last_count = 0;
            continue;
        }
        const std::string name = unpadded(e.substr(img::e_name, 8));
        const std::string type = unpadded(e.substr(img::e_type, 3));
        std::vector<uint16_t> blocks = entry_blocks(e);
        for (uint16_t b : blocks) lowest = std::min(lowest, static_cast<uint64_t>(b) * block_size);
        // A subfile of more than 240 blocks goes on in the next entries of the
        // same name and type; the part field is not to be trusted.
        const bool goes_on = !files.empty() && files.back().name == name && files.back().type == type &&
                             last_count == static_cast<size_t>(img::k_entry_blocks) && img_u32(e, img::e_size) == 0;
        if (!goes_on) {
            files.emplace_back();
            files.back().name = name;
            files.back().type = type;
            files.back().size = img_u32(e, img::e_size);
        }
        files.back().blocks.insert(files.back().blocks.end(), blocks.begin(), blocks.end());
        files.back().entries.push_back(e);
        last_count = blocks.size();
    }
    return files;
}

// Every block a subfile needs is there, in the data area, used once, and
// inside the file. Surplus numbers are dropped.
std::string check_blocks(std::vector<ImgSubfile>& files, const ImgContainer& c, uint64_t table_end) {
    std::vector<bool> used(65536, false);
    for (ImgSubfile& f : files) {
        const size_t need = (static_cast<uint64_t>(f.size) + c.block_size - 1) / c.block_size;
        if (f.blocks.size() < need) return damaged(c.path, f.full_name() + " has too few blocks");
        f.blocks.resize(need);
        for (size_t i = 0; i < need; ++i) {
            const uint16_t b = f.blocks[i];
            const uint64_t start = static_cast<uint64_t>(b) * c.block_size;
            if (start < table_end) return damaged(c.path, f.full_name() + " uses a block of the table");
            if (used[b]) return damaged(c.path, "block " + std::to_string(b) + " is used twice");
            used[b] = true;
            const uint64_t bytes = i + 1 < need ? c.block_size : f.size - i * static_cast<uint64_t>(c.block_size);
            if (start + bytes > c.file_size) return truncated(c.path, f.full_name());
        }
    }
    return {};
}

void read_typ_ids(ImgReader& in, const ImgContainer& c, ImgSubfile& f) {
    if (upper_name(f.type) != "TYP" || f.size < k_typ_ids_end || f.blocks.empty()) return;
    // The ids lie in the first block: blocks are at least 512 bytes.
    std::string head(k_typ_ids_end, '\0');
    if (!in.read_at(static_cast<uint64_t>(f.blocks[0]) * c.block_size, head.size(), head.data())) return;
    if (head.compare(2, 10, "GARMIN TYP") != 0) return;
    f.has_ids = true;
    f.fid = img_u16(head, k_typ_fid);
    f.pid = img_u16(head, k_typ_pid);
}

}  // namespace

ImgReader::ImgReader(const std::string& path, uint8_t key) : in_(platform::native_path(path), std::ios::binary), key_(key) {}

bool ImgReader::read_at(uint64_t offset, size_t n, char* into) {
    in_.clear();
    in_.seekg(static_cast<std::streamoff>(offset));
    in_.read(into, static_cast<std::streamsize>(n));
    if (static_cast<size_t>(in_.gcount()) != n) return false;
    if (key_ != 0)
        for (size_t i = 0; i < n; ++i) into[i] = static_cast<char>(into[i] ^ key_);
    return true;
}

std::vector<size_t> ImgContainer::typ_indexes() const {
    std::vector<size_t> out;
    for (size_t i = 0; i < subfiles.size(); ++i)
        if (upper_name(subfiles[i].type) == "TYP") out.push_back(i);
    return out;
}

int ImgContainer::find(const std::string& name) const {
    for (size_t i = 0; i < subfiles.size(); ++i)
        if (upper_name(subfiles[i].full_name()) == upper_name(name)) return static_cast<int>(i);
    return -1;
}

std::optional<ImgContainer> read_container(const std::string& path, std::string& error) {
    ImgContainer c;
    c.path = path;
    std::error_code ec;
    c.file_size = std::filesystem::file_size(platform::native_path(path), ec);
    if (ec) {
        error = "Cannot read " + path + ": " + ec.message();
        return std::nullopt;
    }
    if (c.file_size < static_cast<uint64_t>(img::k_sector)) {
        error = not_a_container(path);
        return std::nullopt;
    }
    std::string head(img::k_sector, '\0');
    {
        std::ifstream raw(platform::native_path(path), std::ios::binary);
        if (!raw.read(head.data(), img::k_sector)) {
            error = "Cannot read " + path;
            return std::nullopt;
        }
    }
    // Byte 0 is the key every byte is stored XORed with, itself included.
    c.xor_key = static_cast<uint8_t>(head[0]);
    for (char& ch : head) ch = static_cast<char>(ch ^ c.xor_key);
    const bool signed_ok = (head.compare(img::signature, 7, std::string("DSKIMG\0", 7)) == 0 ||
                            head.compare(img::signature, 7, std::string("DSDIMG\0", 7)) == 0) &&
                           head.compare(img::garmin, 7, std::string("GARMIN\0", 7)) == 0;
    if (!signed_ok) {
        error = not_a_container(path);
        return std::nullopt;
    }
    const int exponent = static_cast<uint8_t>(head[img::exp1]) + static_cast<uint8_t>(head[img::exp2]);
    if (exponent < k_min_exponent || exponent > k_max_exponent) {
        error = damaged(path, "block size 2^" + std::to_string(exponent));
        return std::nullopt;
    }
    c.block_size = 1u << exponent;
    c.fat_start = static_cast<uint32_t>(static_cast<uint8_t>(head[img::fat_start])) * img::k_sector;
    if (c.fat_start < static_cast<uint32_t>(img::k_sector)) {
        error = damaged(path, "no table start");
        return std::nullopt;
    }
    if (c.file_size < c.fat_start + static_cast<uint64_t>(img::k_entry)) {
        error = truncated(path, "the allocation table");
        return std::nullopt;
    }
    ImgReader in(path, c.xor_key);
    c.head.resize(c.fat_start);
    c.first_entry.resize(img::k_entry);
    if (!in.read_at(0, c.head.size(), c.head.data()) ||
        !in.read_at(c.fat_start, c.first_entry.size(), c.first_entry.data())) {
        error = "Cannot read " + path;
        return std::nullopt;
    }
    // The first entry covers the header and the table: its size is where the
    // table ends.
    const uint64_t table_end = img_u32(c.first_entry, img::e_size);
    if (c.first_entry[img::e_flag] != 1 || table_end < c.fat_start + static_cast<uint64_t>(img::k_entry) ||
        table_end - c.fat_start > k_max_entries * img::k_entry) {
        error = damaged(path, "no table entry for the header");
        return std::nullopt;
    }
    if (table_end > c.file_size) {
        error = truncated(path, "the allocation table");
        return std::nullopt;
    }
    std::string table(static_cast<size_t>(table_end - c.fat_start) / img::k_entry * img::k_entry, '\0');
    if (!in.read_at(c.fat_start, table.size(), table.data())) {
        error = "Cannot read " + path;
        return std::nullopt;
    }
    c.subfiles = read_entries(table, c.fat_start, c.block_size);
    if (std::string why = check_blocks(c.subfiles, c, table_end); !why.empty()) {
        error = why;
        return std::nullopt;
    }
    for (ImgSubfile& f : c.subfiles) read_typ_ids(in, c, f);
    return c;
}

std::optional<ImgContainer> read_typ_container(const std::string& path, std::string& error) {
    auto c = read_container(path, error);
    if (c && c->typ_indexes().empty()) {
        error = path + " holds no TYP file.";
        return std::nullopt;
    }
    return c;
}

bool read_subfile(const ImgContainer& c, size_t index, std::string& out, std::string& error) {
    const ImgSubfile& f = c.subfiles.at(index);
    ImgReader in(c.path, c.xor_key);
    out.assign(f.size, '\0');
    uint64_t done = 0;
    for (uint16_t b : f.blocks) {
        const size_t n = static_cast<size_t>(std::min<uint64_t>(c.block_size, f.size - done));
        if (!in.read_at(static_cast<uint64_t>(b) * c.block_size, n, out.data() + done)) {
            error = "Cannot read " + f.full_name() + " from " + c.path;
            out.clear();
            return false;
        }
        done += n;
    }
    return true;
}

std::string subfile_line(const ImgSubfile& f) {
    std::string line = f.full_name() + "  " + std::to_string(f.size) + " bytes";
    if (f.has_ids) line += "  FID " + std::to_string(f.fid) + "  PID " + std::to_string(f.pid);
    return line;
}

}  // namespace korvex::integration
