// Pictures from outside (image files, the clipboard) as the editor takes
// them: their colours, and their stretch to another size. An imported or
// pasted picture is averaged over the source pixels each target pixel
// covers (a photo shrunk to an icon keeps its shades); an icon's own pixels
// are repeated or dropped, so a palette picture gains no colour by a resize.
#pragma once

#include "editor/pixel_grid.h"
#include "editor/raster.h"
#include "platform/images.h"

namespace korvex::editor {

// An image pixel (0xAARRGGBB) and the editor's colours (red in the low byte).
constexpr uint32_t colour_of_argb(uint32_t argb) { return (argb >> 16 & 0xFF) | (argb & 0xFF00) | (argb & 0xFF) << 16; }
constexpr uint32_t argb_of_colour(uint32_t c, uint32_t alpha = 0xFF) { return alpha << 24 | colour_of_argb(c); }

// Each target pixel is the mean of the source pixels it covers, weighted by
// their alpha; a target of no visible source pixel is transparent black.
platform::Image stretch_image(const platform::Image& in, int width, int height);

// Nearest pixel: the target (x, y) takes the source (x * w / width, y * h / height).
Raster stretch_raster(const Raster& in, int width, int height);
PixelGrid stretch_grid(const PixelGrid& in, int width, int height);

// The largest size of the picture's proportions inside width x height, at
// least 1 x 1.
void fit_proportions(int picture_w, int picture_h, int& width, int& height);

}  // namespace korvex::editor
