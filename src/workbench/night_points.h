// Add Night POIs: a selected point without a night picture gets one equal to
// its day picture, so that a device in night mode shows it the same.
#pragma once

#include <cstdint>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/batch_frame.h"
#include "workbench/browser.h"

namespace korvex::workbench {

inline constexpr const char* k_night_points_report = "system/bin/nightpois.txt";

// add_nightpois: only with Points in view ("Change to POINTS"). Returns the
// number of points that got a night picture.
int add_nightpois(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
                  const BatchRequest& req);

}  // namespace korvex::workbench
