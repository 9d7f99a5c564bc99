#include "gui/preview_canvas.h"

#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

namespace korvex::gui {

namespace {

constexpr int k_max_zoom = 3;
constexpr QRgb k_outside = 0xFFB4B4B4;        // around the scene
constexpr QRgb k_frame_shade = 0x78000000;   // outside a device frame
constexpr QRgb k_frame_edge = 0xFF202020;
// How much of the scene a pan keeps in view.
constexpr int k_keep_visible = 48;

}  // namespace

QRect built_region(const QRect& visible) {
    return visible.adjusted(-visible.width(), -visible.height(), visible.width(), visible.height());
}

PreviewCanvas::PreviewCanvas(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 120);
    setCursor(Qt::OpenHandCursor);
}

void PreviewCanvas::set_source(Source source) {
    source_ = std::move(source);
    invalidate();
}

void PreviewCanvas::invalidate() {
    stale_ = true;
    update();
}

void PreviewCanvas::reset_view() {
    placed_ = false;
    invalidate();
}

void PreviewCanvas::set_night(bool night) {
    if (options_.night == night) return;
    options_.night = night;
    invalidate();
}

void PreviewCanvas::set_language(int language) {
    if (options_.language == language) return;
    options_.language = language;
    invalidate();
}

void PreviewCanvas::set_zoom(int zoom) {
    zoom = std::clamp(zoom, 1, k_max_zoom);
    if (zoom == zoom_) return;
    // The middle of the view stays over the same place of the map.
    const QPoint mid(width() / 2, height() / 2);
    offset_ = mid - (mid - offset_) * zoom / zoom_;
    zoom_ = zoom;
    invalidate();
}

void PreviewCanvas::set_frame(QSize frame) {
    frame_ = frame;
    update();
}

void PreviewCanvas::set_offset(QPoint offset) {
    const preview::DrawList& list = prepared().list();
    // Some of the scene stays in view however far it is dragged.
    const int w = static_cast<int>(list.width), h = static_cast<int>(list.height);
    const int keep_x = std::min(k_keep_visible, w), keep_y = std::min(k_keep_visible, h);
    offset.setX(std::clamp(offset.x(), keep_x - w, std::max(keep_x - w, width() - keep_x)));
    offset.setY(std::clamp(offset.y(), keep_y - h, std::max(keep_y - h, height() - keep_y)));
    if (offset == offset_) return;
    offset_ = offset;
    if (!built_.contains(visible())) stale_ = true;
    update();
}

void PreviewCanvas::rebuild() {
    stale_ = false;
    if (!source_) return;
    options_.zoom = zoom_;
    // A new scene starts at its top left, or in the middle of the view when
    // smaller: the part on show lies within the view's size from the corner.
    built_ = built_region(placed_ ? visible() : QRect(QPoint(0, 0), size()));
    options_.view_x = built_.x();
    options_.view_y = built_.y();
    options_.view_w = built_.width();
    options_.view_h = built_.height();
    prepared_ = PreparedPreview(source_(options_));
    ++builds_;
    if (!placed_) place_at_start();
    emit rebuilt();
}

// A scene smaller than the view sits in its middle; a larger one shows its
// top left corner.
void PreviewCanvas::place_at_start() {
    placed_ = true;
    const preview::DrawList& list = prepared_.list();
    offset_ = QPoint(std::max(0, (width() - static_cast<int>(list.width)) / 2),
                     std::max(0, (height() - static_cast<int>(list.height)) / 2));
}

const PreparedPreview& PreviewCanvas::prepared() {
    if (stale_ || !built_.contains(visible())) rebuild();
    return prepared_;
}

int PreviewCanvas::step_at(QPoint pos) {
    const QPoint at = pos - offset_;
    return preview::hit_step(prepared().list(), {static_cast<double>(at.x()), static_cast<double>(at.y())});
}

QString PreviewCanvas::text_at(QPoint pos) {
    const int step = step_at(pos);
    if (step < 0) return {};
    const preview::DrawList& list = prepared().list();
    const preview::ItemSource& src = list.sources[static_cast<size_t>(list.order[static_cast<size_t>(step)].source)];
    return QString::fromStdString(preview::source_text(src));
}

void PreviewCanvas::paintEvent(QPaintEvent* e) {
    const PreparedPreview& prep = prepared();
    QPainter p(this);
    p.fillRect(rect(), QColor::fromRgba(k_outside));
    paint_preview(p, prep, QPointF(offset_), QRectF(e->rect()));
    paint_frame(p);
}

void PreviewCanvas::paint_frame(QPainter& p) {
    if (frame_.isEmpty()) return;
    const QRect f(QPoint((width() - frame_.width()) / 2, (height() - frame_.height()) / 2), frame_);
    const QRegion outside = QRegion(rect()).subtracted(QRegion(f));
    p.save();
    p.setClipRegion(outside);
    p.fillRect(rect(), QColor::fromRgba(k_frame_shade));
    p.restore();
    p.setPen(QPen(QColor::fromRgba(k_frame_edge), 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(f.adjusted(-1, -1, 0, 0));
}

void PreviewCanvas::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return QWidget::mousePressEvent(e);
    dragging_ = true;
    drag_from_ = e->position().toPoint();
    offset_at_drag_ = offset_;
    setCursor(Qt::ClosedHandCursor);
}

void PreviewCanvas::mouseMoveEvent(QMouseEvent* e) {
    const QPoint pos = e->position().toPoint();
    if (dragging_) {
        set_offset(offset_at_drag_ + pos - drag_from_);
        return;
    }
    const QString text = text_at(pos);
    setToolTip(text);
    emit hovered(text);
}

void PreviewCanvas::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return QWidget::mouseReleaseEvent(e);
    dragging_ = false;
    setCursor(Qt::OpenHandCursor);
}

void PreviewCanvas::mouseDoubleClickEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    const int step = step_at(e->position().toPoint());
    if (step < 0) return;
    const preview::DrawList& list = prepared().list();
    const preview::ItemSource& src = list.sources[static_cast<size_t>(list.order[static_cast<size_t>(step)].source)];
    if (src.row >= 0) emit element_chosen(src.store_class, src.row);
}

void PreviewCanvas::wheelEvent(QWheelEvent* e) {
    const int steps = e->angleDelta().y() / 120;
    if (steps == 0) return;
    const int zoom = std::clamp(zoom_ + (steps > 0 ? 1 : -1), 1, k_max_zoom);
    if (zoom == zoom_) return;
    // The place under the mouse stays under it.
    const QPoint at = e->position().toPoint();
    offset_ = at - (at - offset_) * zoom / zoom_;
    zoom_ = zoom;
    invalidate();
    emit zoom_changed(zoom_);
}

void PreviewCanvas::leaveEvent(QEvent* e) {
    QWidget::leaveEvent(e);
    emit hovered(QString());
}

}  // namespace korvex::gui
