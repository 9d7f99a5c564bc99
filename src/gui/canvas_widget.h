// The editor's drawing area: paints the tool engine's view enlarged by the
// zoom, with the grid and the selection frame, and forwards the pointer in
// picture pixels. No drawing logic lives here.
#pragma once

#include <QTimer>
#include <QWidget>

#include "editor/tools.h"

namespace korvex::gui {

class CanvasWidget : public QWidget {
    Q_OBJECT
public:
    CanvasWidget(editor::EditorSession& e, editor::ToolEngine& tools, QWidget* parent = nullptr);

    // Screen pixels a picture pixel, 1 to 48.
    int zoom() const { return zoom_; }
    void set_zoom(int zoom);
    void set_grid(bool on);
    bool grid() const { return grid_; }
    void set_grid_colour(QColor c) { grid_colour_ = c; update(); }
    // The picture changed size or content.
    void picture_changed();
    // A palette entry shown in the blink colour (0: none). Only the view
    // blinks; the picture is never touched.
    void set_blink(int entry);
    int blink() const { return blink_; }

    // The picture pixel under the pointer, (-1, -1) when it is elsewhere.
    QPoint hover() const { return hover_; }
    // The pixel under a widget position; false outside the picture.
    bool pixel_at(QPoint pos, int& x, int& y) const;
    QSize sizeHint() const override;

signals:
    // The pointer is over pixel (x, y); x < 0 when it left the picture.
    void hovered(int x, int y);
    // A tool finished an action: the working copy changed.
    void edited();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;
    void wheelEvent(QWheelEvent*) override;
    void leaveEvent(QEvent*) override;

private:
    // Remembers the pixel under the pointer and tells it.
    void show_hover(int x, int y);
    // Pointer position in pixels, past the edge too (tools clip).
    void pixel_of(QPoint pos, int& x, int& y) const;

    editor::EditorSession& e_;
    editor::ToolEngine& tools_;
    int zoom_ = 12;
    bool grid_ = true;
    QColor grid_colour_{0xC0, 0xC0, 0xC0};
    QTimer march_;
    int dash_offset_ = 0;
    int level_at_press_ = 0;
    int blink_ = 0;
    QPoint hover_{-1, -1};
};

}  // namespace korvex::gui
