// Paints one grid cell: highlight, icon (pixel art, never smoothed), the
// label under it and the red X of an element not in the style.
#pragma once

#include <QColor>
#include <QFont>
#include <QStyledItemDelegate>

#include "model/store.h"
#include "workbench/browser.h"

namespace korvex::gui {

// The marks of selected cells, here and in the draw-order view: the fill and
// frame of the primary selection, the frame of the secondary one.
inline constexpr QColor k_primary(51, 153, 255, 110);
inline constexpr QColor k_primary_frame(0, 90, 200);
inline constexpr QColor k_secondary_frame(230, 120, 0);

class GridModel;

class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    CellDelegate(model::Store& s, workbench::Browser& browser, GridModel& model, QObject* parent = nullptr);

    // Cell geometry in logical pixels: icon side S, label height H, row pitch P.
    void set_geometry(int side, int label_height, int pitch, int width);
    void set_label_font(const QFont& f) { font_ = f; }

    // The label as a cell shows it: wrapped into the lines its room holds,
    // the last one elided at the cell's width (the grid's tooltip gives it in full).
    QString shown_label(const QString& label) const;
    void paint(QPainter* p, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // Cells painted since the counter was last cleared.
    int paints() const { return paints_; }
    void clear_paints() { paints_ = 0; }

private:
    model::Store& s_;
    workbench::Browser& browser_;
    GridModel& model_;
    QFont font_;
    int side_ = 60, label_h_ = 39, pitch_ = 102, width_ = 63;
    mutable int paints_ = 0;
};

}  // namespace korvex::gui
