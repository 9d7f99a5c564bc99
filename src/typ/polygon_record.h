// Polygon records: flag | colours (BGR) | [128-byte bitmap] | [labels] | [font]
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::typ {

using model::Store;

// Decoders of one record at pos (absolute). dblk is its offset inside the
// polygon data; n its row. The driver has set pg_typ[n], pg_len[n] (the size
// from the index), pg_pos[n] and pg_drw[n] before the call.
void polygon_no_bmp(Store& s, int64_t pos, int64_t dblk, int32_t n, int flag);
void polygon_bmp(Store& s, int64_t pos, int64_t dblk, int32_t n, int flag);

// Record bytes of polygon row n (flag to font bytes).
std::string encode_polygon_record(Store& s, int32_t n);

// Writes polygon data and index at offset; returns the next free offset.
int64_t save_polygons(Store& s, int64_t offset);

// Lines of "0"/"1" to bytes, groupsize bits a byte, lowest bit first.
std::string compressbmp(Store& s, const std::string& text, int groupsize, const std::string& type);

}  // namespace korvex::typ
