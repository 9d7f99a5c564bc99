#include "gui/preview_painter.h"

#include <QBrush>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPolygonF>
#include <QtMath>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace korvex::gui {

namespace {

using preview::DrawList;
using preview::DrawStep;
using preview::ItemKind;
using preview::Raster;

QColor argb(uint32_t c) { return QColor::fromRgba(c); }
bool visible(uint32_t c) { return (c >> 24) != 0; }

// A raster as an image, each picture pixel a block of zoom x zoom device
// pixels (rounded for a zoom that is not whole).
QImage raster_image(const Raster& r, double zoom) {
    QImage img(r.w, r.h, QImage::Format_ARGB32);
    for (int y = 0; y < r.h; ++y)
        std::memcpy(img.scanLine(y), r.px.data() + static_cast<size_t>(y) * r.w, static_cast<size_t>(r.w) * 4);
    if (zoom == 1.0) return img;
    const int w = std::max(1, static_cast<int>(std::lround(r.w * zoom)));
    const int h = std::max(1, static_cast<int>(std::lround(r.h * zoom)));
    return img.scaled(w, h, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

QRectF box_of(const std::vector<preview::Pt>& pts, double margin) {
    if (pts.empty()) return {};
    double x0 = pts[0].x, x1 = x0, y0 = pts[0].y, y1 = y0;
    for (const preview::Pt& pt : pts) {
        x0 = std::min(x0, pt.x), x1 = std::max(x1, pt.x);
        y0 = std::min(y0, pt.y), y1 = std::max(y1, pt.y);
    }
    return QRectF(QPointF(x0, y0), QPointF(x1, y1)).adjusted(-margin, -margin, margin, margin);
}

// Room for a label's text around its anchor, whatever its length and turn.
constexpr double k_label_reach = 400;

QPolygonF to_polygon(const std::vector<preview::Pt>& pts) {
    QPolygonF poly;
    poly.reserve(static_cast<qsizetype>(pts.size()));
    for (const preview::Pt& pt : pts) poly.append(QPointF(pt.x, pt.y));
    return poly;
}

void paint_polygon(QPainter& p, const PreparedPreview& prep, const preview::PolygonItem& item, QPointF offset) {
    const QPolygonF poly = to_polygon(item.outline);
    p.setPen(item.missing ? QPen(argb(preview::k_missing_outline), 1) : QPen(Qt::NoPen));
    if (!item.solid && item.tile) {
        const QImage& tile = prep.image(item.tile.get());
        if (tile.isNull()) return;
        // The pattern keeps to the screen, not to the map: panning slides
        // the area over it, as on a device.
        p.setBrushOrigin(-offset);
        p.setBrush(QBrush(tile));
    } else {
        if (!visible(item.colour) && !item.missing) return;
        p.setBrush(argb(item.colour));
    }
    p.drawPolygon(poly);
}

// Bitmap rows repeated along each segment. The rows stand across the line,
// row 0 on the left of the direction of travel; a line that does not turn
// its pattern keeps it upright by running a leftward segment backwards.
void paint_bitmap_line(QPainter& p, const QImage& rows, const preview::LineItem& item) {
    const double h = rows.height();
    double along = 0;  // the pattern runs on from one segment into the next
    for (size_t k = 1; k < item.points.size(); ++k) {
        QPointF a(item.points[k - 1].x, item.points[k - 1].y), b(item.points[k].x, item.points[k].y);
        const double len = std::hypot(b.x() - a.x(), b.y() - a.y());
        if (len <= 0) continue;
        double angle = qRadiansToDegrees(std::atan2(b.y() - a.y(), b.x() - a.x()));
        if (!item.oriented && (angle > 90 || angle <= -90)) {
            std::swap(a, b);
            angle += angle > 0 ? -180 : 180;
        }
        p.save();
        p.translate(a);
        p.rotate(angle);
        p.setBrushOrigin(QPointF(-std::fmod(along, rows.width()), -h / 2));
        p.fillRect(QRectF(0, -h / 2, len, h), QBrush(rows));
        p.restore();
        along += len;
    }
}

void paint_line(QPainter& p, const PreparedPreview& prep, const preview::LineItem& item) {
    if (item.points.size() < 2) return;
    if (item.bitmap) {
        const QImage& rows = prep.image(item.rows.get());
        if (!rows.isNull()) paint_bitmap_line(p, rows, item);
        return;
    }
    const QPolygonF path = to_polygon(item.points);
    p.setBrush(Qt::NoBrush);
    // The border is a wider line under the fill, showing `border` pixels on
    // each side of it.
    if (item.border > 0 && visible(item.border_colour)) {
        p.setPen(QPen(argb(item.border_colour), item.width + 2 * item.border, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        p.drawPolyline(path);
    }
    if (item.width > 0 && visible(item.fill)) {
        p.setPen(QPen(argb(item.fill), item.width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        p.drawPolyline(path);
    }
}

void paint_point(QPainter& p, const PreparedPreview& prep, const preview::PointItem& item) {
    const QImage& pic = prep.image(item.picture.get());
    if (pic.isNull()) return;
    // The picture's middle pixel (w / 2, h / 2) covers the point's pixel.
    const int x = static_cast<int>(std::floor(item.centre.x)) - pic.width() / 2;
    const int y = static_cast<int>(std::floor(item.centre.y)) - pic.height() / 2;
    p.drawImage(x, y, pic);
}

void paint_label(QPainter& p, const preview::LabelItem& item, double zoom) {
    const QString text = QString::fromUtf8(item.text.data(), static_cast<qsizetype>(item.text.size()));
    if (text.isEmpty()) return;
    QFont font = p.font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(label_pixel_size(item.style) * zoom))));
    font.setBold(item.style == preview::FontStyle::large);
    p.setFont(font);
    const QFontMetricsF fm(font);
    const double w = fm.horizontalAdvance(text);
    // The text's middle height on the anchor: ascent above, descent below.
    const double base = (fm.ascent() - fm.descent()) / 2;
    p.save();
    p.translate(item.at.x, item.at.y);
    if (item.anchor == preview::LabelAnchor::along) p.rotate(item.angle);
    const double left = item.anchor == preview::LabelAnchor::beside ? 0 : -w / 2;
    p.setPen(argb(item.colour));
    p.drawText(QPointF(left, base), text);
    p.restore();
}

}  // namespace

PreparedPreview::PreparedPreview(DrawList list) : list_(std::move(list)) {
    // A picture's reach in device pixels, before its image is made.
    auto side = [this](const std::shared_ptr<const Raster>& r, bool high) {
        return r ? (high ? r->h : r->w) * list_.zoom : 0.0;
    };
    bounds_.reserve(list_.order.size());
    for (const DrawStep& step : list_.order) {
        const auto i = static_cast<size_t>(step.index);
        switch (step.kind) {
            case ItemKind::polygon: bounds_.push_back(box_of(list_.polygons[i].outline, 1)); break;
            case ItemKind::line: {
                const preview::LineItem& l = list_.lines[i];
                const double reach = l.bitmap ? side(l.rows, true) / 2 + side(l.rows, false) : l.width / 2 + l.border;
                bounds_.push_back(box_of(l.points, reach + 2));
                break;
            }
            case ItemKind::point: {
                const preview::PointItem& pt = list_.points[i];
                bounds_.push_back(box_of({pt.centre}, std::max(side(pt.picture, false), side(pt.picture, true)) + 1));
                break;
            }
            case ItemKind::label:
                bounds_.push_back(box_of({list_.labels[i].at}, k_label_reach * list_.zoom));
                break;
        }
    }
}

const QImage& PreparedPreview::image(const Raster* raster) const {
    static const QImage none;
    if (!raster || raster->empty()) return none;
    // Made at the first paint that reaches it: a large sampler shows few of
    // its pictures at a time.
    auto it = images_.find(raster);
    if (it == images_.end()) it = images_.emplace(raster, raster_image(*raster, list_.zoom)).first;
    return it->second;
}

int label_pixel_size(preview::FontStyle style) {
    switch (style) {
        case preview::FontStyle::small: return 9;
        case preview::FontStyle::normal: return 11;
        case preview::FontStyle::large: return 14;
    }
    return 11;
}

void paint_preview(QPainter& p, const PreparedPreview& prepared, QPointF offset, const QRectF& visible) {
    const DrawList& list = prepared.list();
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setRenderHint(QPainter::SmoothPixmapTransform, false);
    p.translate(offset);
    p.fillRect(QRectF(0, 0, list.width, list.height), argb(list.background));
    const QRectF seen = visible.translated(-offset);
    for (size_t k = 0; k < list.order.size(); ++k) {
        if (!visible.isEmpty() && !prepared.bounds(k).intersects(seen)) continue;
        const DrawStep& step = list.order[k];
        const auto i = static_cast<size_t>(step.index);
        switch (step.kind) {
            case ItemKind::polygon: paint_polygon(p, prepared, list.polygons[i], offset); break;
            case ItemKind::line: paint_line(p, prepared, list.lines[i]); break;
            case ItemKind::point: paint_point(p, prepared, list.points[i]); break;
            case ItemKind::label:
                // Text alone is smoothed: jagged letters say nothing about the style.
                p.setRenderHint(QPainter::TextAntialiasing, true);
                paint_label(p, list.labels[i], list.zoom);
                break;
        }
    }
    p.restore();
}

QImage render_preview_image(const PreparedPreview& prepared) {
    const DrawList& list = prepared.list();
    const QSize size(std::max(1, static_cast<int>(std::ceil(list.width))), std::max(1, static_cast<int>(std::ceil(list.height))));
    QImage img(size, QImage::Format_ARGB32_Premultiplied);
    img.fill(QColor::fromRgba(list.background));
    QPainter p(&img);
    paint_preview(p, prepared, QPointF(0, 0));
    p.end();
    return img;
}

}  // namespace korvex::gui
