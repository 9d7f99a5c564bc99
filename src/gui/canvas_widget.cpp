#include "gui/canvas_widget.h"

#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "editor/canvas.h"
#include "editor/colour_count.h"

namespace korvex::gui {

namespace {

constexpr int k_margin = 8;

QImage image_of(const editor::Raster& r) {
    QImage img(r.width(), r.height(), QImage::Format_RGB32);
    for (int y = 0; y < r.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < r.width(); ++x) {
            const uint32_t c = r.at(x, y);
            line[x] = qRgb(static_cast<int>(editor::red_of(c)), static_cast<int>(editor::green_of(c)),
                           static_cast<int>(editor::blue_of(c)));
        }
    }
    return img;
}

// A polygon or line without bitmap shows what it draws: a line its bands of
// border and line colour as a bitmap would hold them, a polygon its colour.
editor::Raster solid_look(const editor::EditorSession& e) {
    if (e.store_class() == 1 || e.store_class() == 3) {
        editor::EditorSession copy = e;
        if (editor::line_bitmap(copy)) return copy.surface;
        return {};
    }
    if (e.store_class() == 0 && e.ncols() > 0) return editor::Raster(32, 32, e.palette.colour(1));
    return {};
}

QString solid_caption(const editor::EditorSession& e) {
    if (e.store_class() == 1 || e.store_class() == 3) return "Line of colours only: a drawing tool makes it a bitmap";
    if (e.store_class() == 0) return "Polygon of one colour: no bitmap";
    return "No bitmap";
}

}  // namespace

CanvasWidget::CanvasWidget(editor::EditorSession& e, editor::ToolEngine& tools, QWidget* parent)
    : QWidget(parent), e_(e), tools_(tools) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    march_.setInterval(150);
    connect(&march_, &QTimer::timeout, this, [this] {
        if (!tools_.has_frame()) {
            march_.stop();
            return;
        }
        dash_offset_ = (dash_offset_ + 1) % 8;
        update();
    });
    // A picture of 16 pixels or less starts larger.
    const int side = std::max(e_.width, e_.height);
    if (side > 0) zoom_ = std::clamp(384 / side, 2, 32);
}

void CanvasWidget::set_zoom(int zoom) {
    zoom = std::clamp(zoom, 1, 48);
    if (zoom == zoom_) return;
    zoom_ = zoom;
    updateGeometry();
    resize(sizeHint());
    update();
}

void CanvasWidget::set_grid(bool on) {
    grid_ = on;
    update();
}

void CanvasWidget::picture_changed() {
    updateGeometry();
    resize(sizeHint());
    update();
}

QSize CanvasWidget::sizeHint() const {
    if (e_.width <= 0 || e_.height <= 0) return {std::max(32 * zoom_, 320) + 2 * k_margin, 32 * zoom_ + 40 + 2 * k_margin};
    return {std::max(e_.width, 1) * zoom_ + 2 * k_margin, std::max(e_.height, 1) * zoom_ + 2 * k_margin};
}

void CanvasWidget::pixel_of(QPoint pos, int& x, int& y) const {
    x = static_cast<int>(std::floor(static_cast<double>(pos.x() - k_margin) / zoom_));
    y = static_cast<int>(std::floor(static_cast<double>(pos.y() - k_margin) / zoom_));
}

bool CanvasWidget::pixel_at(QPoint pos, int& x, int& y) const {
    pixel_of(pos, x, y);
    return x >= 0 && y >= 0 && x < e_.width && y < e_.height;
}

void CanvasWidget::set_blink(int entry) {
    if (entry == blink_) return;
    blink_ = entry;
    update();
}

void CanvasWidget::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().window());
    if (e_.width <= 0 || e_.height <= 0) {
        const editor::Raster look = solid_look(e_);
        int bottom = k_margin;
        if (!look.empty()) {
            const QRect area(k_margin, k_margin, look.width() * zoom_, look.height() * zoom_);
            p.drawImage(area, image_of(look));
            bottom = area.bottom() + 8;
        }
        p.drawText(QRect(k_margin, bottom, width() - 2 * k_margin, 40), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                   solid_caption(e_));
        return;
    }
    const QRect area(k_margin, k_margin, e_.width * zoom_, e_.height * zoom_);
    p.drawImage(area, image_of(blink_ > 0 ? editor::blink_view(tools_.view(), e_, blink_) : tools_.view()));
    if (grid_ && zoom_ >= 4) {
        p.setPen(grid_colour_);
        for (int x = 0; x <= e_.width; ++x) p.drawLine(area.left() + x * zoom_, area.top(), area.left() + x * zoom_, area.bottom());
        for (int y = 0; y <= e_.height; ++y) p.drawLine(area.left(), area.top() + y * zoom_, area.right(), area.top() + y * zoom_);
    }
    auto frame_rect = [&](int x, int y, int w, int h) { return QRect(k_margin + x * zoom_, k_margin + y * zoom_, w * zoom_ - 1, h * zoom_ - 1); };
    if (tools_.has_frame()) {
        const editor::Rect& f = tools_.frame();
        QPen black(Qt::black, 1, Qt::DashLine);
        black.setDashOffset(dash_offset_);
        p.setPen(QPen(Qt::white, 1));
        p.drawRect(frame_rect(f.x, f.y, f.w, f.h));
        p.setPen(black);
        p.drawRect(frame_rect(f.x, f.y, f.w, f.h));
        if (!march_.isActive()) const_cast<QTimer&>(march_).start();
    }
    if (!tools_.layer().empty()) {
        const editor::FloatingLayer& l = tools_.layer();
        p.setPen(QPen(Qt::blue, 1, Qt::DotLine));
        p.drawRect(frame_rect(l.x, l.y, l.picture.width(), l.picture.height()));
    }
}

void CanvasWidget::mousePressEvent(QMouseEvent* ev) {
    if (ev->button() != Qt::LeftButton && ev->button() != Qt::RightButton) return;
    int x, y;
    pixel_of(ev->position().toPoint(), x, y);
    level_at_press_ = e_.undo.level();
    const bool was_dirty = e_.eddirty;
    const int cols[2] = {e_.curcol, e_.curcol2};
    tools_.press(x, y, ev->button() == Qt::RightButton);
    update();
    show_hover(x, y);
    // The picker changes the buttons' colours: the palette shows them.
    if (e_.undo.level() != level_at_press_ || e_.eddirty != was_dirty || cols[0] != e_.curcol || cols[1] != e_.curcol2)
        emit edited();
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* ev) {
    int x, y;
    pixel_of(ev->position().toPoint(), x, y);
    tools_.move(x, y);
    show_hover(x, y);
    update();
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* ev) {
    if (ev->button() != Qt::LeftButton && ev->button() != Qt::RightButton) return;
    int x, y;
    pixel_of(ev->position().toPoint(), x, y);
    const int before = e_.undo.level();
    tools_.release(x, y);
    update();
    show_hover(x, y);
    if (e_.undo.level() != before || e_.undo.level() != level_at_press_) emit edited();
}

void CanvasWidget::mouseDoubleClickEvent(QMouseEvent* ev) {
    int x, y;
    pixel_of(ev->position().toPoint(), x, y);
    const int w = e_.width;
    const int before = e_.undo.level();
    tools_.double_click(x, y);
    if (w != e_.width) picture_changed();
    update();
    if (e_.undo.level() != before || w != e_.width) emit edited();
}

void CanvasWidget::wheelEvent(QWheelEvent* ev) {
    const int steps = ev->angleDelta().y() / 120;
    if (steps == 0) return;
    int z = zoom_;
    for (int i = 0; i < std::abs(steps); ++i) z = steps > 0 ? z + std::max(1, z / 4) : z - std::max(1, z / 5);
    set_zoom(z);
    ev->accept();
}

void CanvasWidget::leaveEvent(QEvent*) { show_hover(-1, -1); }

void CanvasWidget::show_hover(int x, int y) {
    // Sent after a tool acted too, so the status line names the pixel as it is now.
    hover_ = x >= 0 && y >= 0 && x < e_.width && y < e_.height ? QPoint(x, y) : QPoint(-1, -1);
    emit hovered(hover_.x(), hover_.y());
}

}  // namespace korvex::gui
