// Point records: flag | w | h | colours | mode | palette | pixels |
// [night count | night mode | night palette | night pixels] | [labels] | [font]
#pragma once

#include <cstdint>
#include <string>

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

}  // namespace korvex::typ
