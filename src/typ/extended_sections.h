// Extra points (blocks 0 and 1) and active routing lines.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"

namespace korvex::typ {

using model::Store;

// Counts from the header (0 when the header is too short).
int32_t extra_point_count(Store& s);
int32_t active_line_count(Store& s);

// Reads blocks 0 and 1 into the point rows behind pt_n; sets pt_nx.
void poiextra_read(Store& s);

// Reads the active lines into the line rows behind ln_n; sets ln_nact.
void polylinesactive(Store& s);

// Rebuilds blocks[0] and blocks[1] from the extra point rows and writes the
// header fields they need (record size, packing byte).
void save_extra_points(Store& s);

// Packs a hex number for the extra point index to width bytes, lowest first.
std::string fnblk0(const std::string& hextext, int width);

// Name of an activity from its two-digit code.
std::string chkactivity(const std::string& code);

// Clears active routing state before a load.
void noactive(Store& s);

}  // namespace korvex::typ
