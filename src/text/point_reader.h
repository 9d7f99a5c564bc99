// Reading one point section of the text form into a table row.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Reads a "[_point]" section into row (pt_n + k for an extra point).
void poiparse(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch);

}  // namespace korvex::text
