// The map preview's drawing surface: paints the draw list, pans by
// dragging, zooms with the wheel (1:1, 2x, 3x), names the feature under the
// mouse and reports a double-clicked one. The list is made again at the
// first paint after any change, so a burst of changes costs one build.
#pragma once

#include <QRect>
#include <QSize>
#include <QWidget>
#include <functional>

#include "gui/preview_painter.h"
#include "preview/draw_list.h"

namespace korvex::gui {

// The part of a scene a list is built for when `visible` (device pixels of
// the scene) is on show: a view's size more on every side, so that a pan
// within it needs no new list.
QRect built_region(const QRect& visible);

class PreviewCanvas : public QWidget {
    Q_OBJECT
public:
    // Makes the list for the options (night, zoom, language).
    using Source = std::function<preview::DrawList(const preview::DrawOptions&)>;

    explicit PreviewCanvas(QWidget* parent = nullptr);

    void set_source(Source source);
    // The project or the scene changed: the next paint builds the list anew.
    void invalidate();
    // A new scene: also puts the view back at its start.
    void reset_view();
    void set_night(bool night);
    void set_zoom(int zoom);  // 1, 2 or 3
    int zoom() const { return zoom_; }
    void set_language(int language);
    // A device's screen shown as a frame in the middle; an empty size for none.
    void set_frame(QSize frame);
    // Where the scene's top left lies in the widget.
    QPoint offset() const { return offset_; }
    void set_offset(QPoint offset);

    // The list as the next paint draws it (built now when out of date).
    const PreparedPreview& prepared();
    // The step under a widget position, -1 when none.
    int step_at(QPoint pos);
    // The hover text of the feature at a widget position, "" when none.
    QString text_at(QPoint pos);
    // How many times the list was built: a test tells a redraw from a repaint.
    int builds() const { return builds_; }

signals:
    void hovered(const QString& text);
    // A feature of an element of the project was double-clicked.
    void element_chosen(int store_class, int row);
    // The wheel changed the zoom.
    void zoom_changed(int zoom);
    // The list was made again; its notes may have changed.
    void rebuilt();

protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void leaveEvent(QEvent* e) override;

private:
    void rebuild();
    // The scene's pixels on show.
    QRect visible() const { return QRect(-offset_, size()); }
    void place_at_start();
    void paint_frame(QPainter& p);

    Source source_;
    preview::DrawOptions options_;
    PreparedPreview prepared_;
    bool stale_ = true;
    QRect built_;  // what the list covers
    bool placed_ = false;  // the view was put at its start for this scene
    int zoom_ = 1;
    int builds_ = 0;
    QSize frame_;
    QPoint offset_;
    QPoint drag_from_;
    QPoint offset_at_drag_;
    bool dragging_ = false;
};

}  // namespace korvex::gui
