// The Canvas menu's tools on the selected points: blank space on one side
// (adcanvas), a transparent border all round (adborder), and the removal of
// transparent margins (remborder). Each changes memory only; the window then
// refreshes dirty flag, caption and grid.
#pragma once

#include <cstdint>
#include <string>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/batch_frame.h"
#include "workbench/browser.h"

namespace korvex::workbench {

// The letters of the canvas dialog: the side that takes the space, or M for
// a border all round.
inline constexpr const char* k_canvas_choices = "LDURM";

// Where the canvas tools write the points they passed over.
inline constexpr const char* k_canvas_report = "system/bin/canvas.txt";

// Add canvas on side L, D, U or R: the picture keeps its pixels and gains
// transparent space of its own width (L, R) or height (U, D) on that side.
// Returns the number of points changed.
int adcanvas(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
             const BatchRequest& req, char side);

// Add border: a transparent margin of n pixels (1 to 9) on all four sides.
int adborder(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
             const BatchRequest& req, int n);

// The canvas dialog's outcome: a letter of k_canvas_choices (anything else
// says "Please select spaces") and, for M, the one-digit amount.
int canvas(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
           const BatchRequest& req, char choice, int amount);

// Remove White Space: rows and columns of the transparent key are cut from
// the four sides; "Pois reduced:" and the count end it.
int remborder(model::Store& s, platform::Prompt& ui, const integration::Messages& m, const Browser& b,
              const BatchRequest& req);

}  // namespace korvex::workbench
