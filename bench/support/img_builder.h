// Writes map containers of any shape for tests and benchmarks: block sizes
// up to 16 MB, subfiles of many table entries, and zero-filled subfiles left
// as holes, so that a container of a GB costs a few kB of disk.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvex::samples {

struct ImgPart {
    std::string name;   // up to 8 characters
    std::string type;   // 3 characters
    std::string bytes;  // the subfile, or
    uint64_t zeros = 0; // when bytes is empty: this many zero bytes, not written
};

// Subfiles in order, each from a block boundary after the one before, the
// table from byte 1024. key XORs every byte (holes then become written
// bytes). False when the file cannot be written.
bool build_img(const std::string& path, int block_exponent, const std::vector<ImgPart>& parts, uint8_t key = 0);

// A TYP's first bytes with the family and product id: enough for a listing.
std::string typ_stub(uint16_t fid, uint16_t pid, size_t size);

}  // namespace korvex::samples
