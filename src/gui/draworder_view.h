// The draw-order view: the browser's layer cells in rows of a fixed column
// count, each layer starting a row, its number in the left margin. Polygon
// cells paint as in the grid; a placeholder shows its type and an "X".
// Clicks are reported by cell, as the grid reports them.
#pragma once

#include <QAbstractScrollArea>

#include "model/store.h"
#include "workbench/browser.h"

namespace korvex::gui {

class CellDelegate;
class GridModel;

class DrawOrderView : public QAbstractScrollArea {
    Q_OBJECT
public:
    DrawOrderView(model::Store& s, workbench::Browser& browser, GridModel& model, CellDelegate& delegate,
                  QWidget* parent = nullptr);

    // Cell box and the top margin in logical pixels; the left margin holds
    // the layer numbers and is at least left wide.
    void set_cell_size(const QSize& size, int left, int top);
    // Columns that fit the viewport's width; the layer rows are padded to it.
    int columns() const;
    // After the browser built its layer cells.
    void refresh();
    void show_cell(int cell);
    // The cell under a viewport point, -1 for none.
    int cell_at(const QPoint& p) const;
    // The cell's box in viewport coordinates.
    QRect cell_rect(int cell) const;
    int left_margin() const;
    // "Layer" in the language's text.
    void set_layer_word(const QString& word);

signals:
    void cell_pressed(int cell, bool ctrl, bool shift, bool right);
    void cell_double_clicked(int cell, bool ctrl, bool shift);
    void context_menu(int cell, const QPoint& global);
    // The width now fits another number of columns: the cells are to be laid out again.
    void columns_changed(int columns);

protected:
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void contextMenuEvent(QContextMenuEvent* e) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void update_scroll_range();
    void paint_placeholder(QPainter& p, const QRect& r, int cell) const;

    model::Store& s_;
    workbench::Browser& browser_;
    GridModel& model_;
    CellDelegate& delegate_;
    QSize cell_{63, 102};
    int left_ = 27, top_ = 7;
    int last_columns_ = 0;
    QString layer_word_ = QStringLiteral("Layer");
};

}  // namespace korvex::gui
