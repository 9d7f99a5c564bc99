#include "gui/grid_view.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

#include "gui/qt_input.h"

namespace korvex::gui {

GridView::GridView(QWidget* parent) : QListView(parent) {
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setResizeMode(QListView::Adjust);
    setUniformItemSizes(true);
    setLayoutMode(QListView::SinglePass);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    setSpacing(0);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setMouseTracking(false);
}

void GridView::set_cell_size(const QSize& size, int left, int top) {
    setViewportMargins(left, top, 0, 0);
    setGridSize(size);
    verticalScrollBar()->setSingleStep(std::max(1, size.height() / 4));
}

void GridView::show_cell(int cell) {
    if (!model() || cell < 0 || cell >= model()->rowCount()) return;
    scrollTo(model()->index(cell, 0), QAbstractItemView::EnsureVisible);
}

void GridView::mousePressEvent(QMouseEvent* e) {
    const QModelIndex idx = indexAt(e->position().toPoint());
    setFocus(Qt::MouseFocusReason);
    if (!idx.isValid()) return;
    // The right button's menu comes from contextMenuEvent after the press.
    emit cell_pressed(idx.row(), has_modifier(e, Qt::ControlModifier), has_modifier(e, Qt::ShiftModifier),
                      e->button() == Qt::RightButton);
}

void GridView::mouseDoubleClickEvent(QMouseEvent* e) {
    const QModelIndex idx = indexAt(e->position().toPoint());
    if (!idx.isValid() || e->button() != Qt::LeftButton) return;
    emit cell_double_clicked(idx.row(), has_modifier(e, Qt::ControlModifier), has_modifier(e, Qt::ShiftModifier));
}

// No rubber band or drag: the browser's clicks are the only selection.
void GridView::mouseMoveEvent(QMouseEvent*) {}

void GridView::contextMenuEvent(QContextMenuEvent* e) {
    const QModelIndex idx = indexAt(e->pos());
    if (idx.isValid()) emit context_menu(idx.row(), e->globalPos());
}

// Keys move nothing in the grid; shortcuts of the window handle Ctrl+A.
void GridView::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_PageUp || e->key() == Qt::Key_PageDown || e->key() == Qt::Key_Home ||
        e->key() == Qt::Key_End) {
        QListView::keyPressEvent(e);
        return;
    }
    e->ignore();
}

}  // namespace korvex::gui
