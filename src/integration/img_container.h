// A Garmin map container (.img, "DSKIMG"): a 512-byte header, an allocation
// table of 512-byte entries, then blocks of one size. A subfile is a name, a
// type, a byte size and a list of block numbers. Only the header and the
// table are read here; subfile bytes are streamed on request, so a container
// of several GB costs a few hundred kB.
#pragma once

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace korvex::integration {

namespace img {
constexpr int k_sector = 512;     // header, table entries and the table start unit
constexpr int k_entry = 512;
constexpr int k_entry_blocks = 240;  // block numbers one table entry holds
constexpr uint16_t k_no_block = 0xFFFF;
// Header fields (after the XOR byte is undone).
constexpr int signature = 0x10, fat_start = 0x40, garmin = 0x41;
constexpr int sectors = 0x18, heads = 0x1a, cylinders = 0x1c, heads_copy = 0x5d, sectors_copy = 0x5f;
constexpr int exp1 = 0x61, exp2 = 0x62, block_count = 0x63;
constexpr int partition = 0x1be;
// Entry fields.
constexpr int e_flag = 0, e_name = 1, e_type = 9, e_size = 0x0c, e_part = 0x10, e_blocks = 0x20;
}  // namespace img

struct ImgSubfile {
    std::string name;  // as stored, blanks trimmed ("63240001")
    std::string type;  // "TRE", "TYP", ...
    uint32_t size = 0;
    std::vector<uint16_t> blocks;       // ceil(size / block size) numbers, in order
    std::vector<std::string> entries;   // its table entries, raw (decoded), in order
    // A TYP subfile's family and product id, read from its header.
    bool has_ids = false;
    uint16_t fid = 0, pid = 0;

    std::string full_name() const { return name + "." + type; }
};

struct ImgContainer {
    std::string path;
    uint64_t file_size = 0;
    uint8_t xor_key = 0;
    uint32_t block_size = 0;
    uint32_t fat_start = 0;       // in bytes
    std::string head;             // decoded bytes 0 .. fat_start
    std::string first_entry;      // the entry that describes the header and table
    std::vector<ImgSubfile> subfiles;  // in table order

    // Indexes of the TYP subfiles, in table order.
    std::vector<size_t> typ_indexes() const;
    // The subfile called name ("0000XMAP.TYP", any case), else -1.
    int find(const std::string& name) const;
};

// Reads the header and the allocation table. On failure error says why, with
// the file's name: not a container, truncated, or a damaged table.
std::optional<ImgContainer> read_container(const std::string& path, std::string& error);

// The container's TYP subfiles, or none and error "... holds no TYP file."
// (read_container's errors too).
std::optional<ImgContainer> read_typ_container(const std::string& path, std::string& error);

// Reads a file at any offset and undoes the XOR byte. Streams: it holds only
// what one call asks for.
class ImgReader {
public:
    ImgReader(const std::string& path, uint8_t key);
    bool ok() const { return in_.good(); }
    // n bytes at offset, decoded; false when the file is shorter.
    bool read_at(uint64_t offset, size_t n, char* into);
    void close() { in_.close(); }

private:
    std::ifstream in_;
    uint8_t key_;
};

// The bytes of subfile index (the TYP to open): false and error on a read
// failure.
bool read_subfile(const ImgContainer& c, size_t index, std::string& out, std::string& error);

// What the listing shows of a subfile: "0000XMAP.TYP  13014 bytes  FID 4242  PID 1".
std::string subfile_line(const ImgSubfile& f);

}  // namespace korvex::integration
