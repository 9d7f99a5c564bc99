// The grid of icons: a virtualised list in icon mode. Selection is the
// browser's, not Qt's: the view only reports clicks with their keys.
#pragma once

#include <QListView>

namespace korvex::gui {

class GridView : public QListView {
    Q_OBJECT
public:
    explicit GridView(QWidget* parent = nullptr);
    // Cell box in logical pixels and the margins at the left and top.
    void set_cell_size(const QSize& size, int left, int top);
    // Scrolls a cell into view.
    void show_cell(int cell);

signals:
    void cell_pressed(int cell, bool ctrl, bool shift, bool right);
    void cell_double_clicked(int cell, bool ctrl, bool shift);
    void context_menu(int cell, const QPoint& global);

protected:
    void mousePressEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void contextMenuEvent(QContextMenuEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
};

}  // namespace korvex::gui
