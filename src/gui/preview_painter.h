// Paints a preview draw list with QPainter, front to back as the list orders
// it, as a device draws a TYP: fills without smoothing (so every pixel is
// the style's colour), patterns tiled from the screen's corner, pictures one
// device pixel a picture pixel at zoom 1.
#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <unordered_map>
#include <vector>

#include "preview/draw_list.h"

class QPainter;

namespace korvex::gui {

// A draw list with its pictures made into images once, when first painted,
// so that a pan or a repaint does not convert them again.
class PreparedPreview {
public:
    PreparedPreview() = default;
    explicit PreparedPreview(preview::DrawList list);

    const preview::DrawList& list() const { return list_; }
    // The image of a raster of the list at the list's zoom (each picture
    // pixel a zoom x zoom block); a null image for a null or empty raster.
    const QImage& image(const preview::Raster* raster) const;
    // The box a step of the list's order may paint, in scene pixels.
    const QRectF& bounds(size_t step) const { return bounds_[step]; }

private:
    preview::DrawList list_;
    std::vector<QRectF> bounds_;
    mutable std::unordered_map<const preview::Raster*, QImage> images_;
};

// The pixel sizes of the three label font styles at zoom 1.
int label_pixel_size(preview::FontStyle style);

// Paints the list with the scene's top left at `offset` of the painter's
// device; only the steps that reach into `visible` (device pixels, empty
// for all) are painted. The ground outside the scene is left to the caller.
void paint_preview(QPainter& p, const PreparedPreview& prepared, QPointF offset, const QRectF& visible = {});

// The whole scene as an image of its size in device pixels.
QImage render_preview_image(const PreparedPreview& prepared);

}  // namespace korvex::gui
