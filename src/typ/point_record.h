// Point records: flag | w | h | colours | mode | palette | pixels |
// [night count | night mode | night palette | night pixels] | [labels] | [font]
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

// Decodes one record at pos (absolute) into row n (an extra point's row is
// pt_n + k). indexpos is the index entry's position (for the offsets comment),
// code the index code (type * 32 + subtype). The driver has set pt_len[n].
void poi_bmp(Store& s, int64_t pos, int32_t n, int flag, int64_t indexpos, int32_t code);

// Point type text for an index code: "0x", hex2(code / 32), hex2(code % 32).
std::string point_type_text(int32_t code);

// Record bytes of point row n (ordinary or extra).
std::string encode_point_record(Store& s, int32_t n);

// Writes point data and index at offset; returns the next free offset.
int64_t save_pois(Store& s, int64_t offset);

// True when the bytes a picture without palette would use are all alike, so
// that the icon has no bitmap of its own. sizepos: where width and height stand.
bool fnchk_nobmp(Store& s, int64_t base, int64_t sizepos);

// A mode 32 palette (28-bit entries, alpha in the top nibble) whose colours are
// all opaque but one fully transparent; transparent gets that entry's index.
bool alphabmp(const std::vector<uint32_t>& entries, int& transparent);

// Pixel bytes of canonical rows. remap turns a table index into the stored
// value (the transparent colour of mode 16 becomes count); compresspoibmp0 is
// the plain case of a table without "none". Unknown symbols are reported and
// stored as 0.
std::string compresspoibmp(Store& s, std::string_view rows, int w, int h, const std::vector<int>& remap, int count,
                           int mode, const std::string& type);
std::string compresspoibmp0(Store& s, std::string_view rows, int w, int h, int count, int mode, const std::string& type);

}  // namespace korvex::typ
