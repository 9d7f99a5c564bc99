// The grid's model: one item a visible cell of the browser, with the icon of
// each cell painted on demand and kept in a cache, so that only the cells on
// screen are ever painted.
#pragma once

#include <QAbstractListModel>
#include <QCache>
#include <QFont>
#include <QPixmap>
#include <cstdint>

#include "model/store.h"
#include "workbench/browser.h"

namespace korvex::gui {

class GridModel : public QAbstractListModel {
    Q_OBJECT
public:
    GridModel(model::Store& s, workbench::Browser& browser, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    // Display: the label; ToolTip: the cell's tooltip.
    QVariant data(const QModelIndex& index, int role) const override;

    // Icon side in logical pixels and the screen's device-pixel ratio; the
    // cache is dropped when either changes.
    void set_icon_side(int side, qreal dpr);
    int icon_side() const { return side_; }
    // Grid background (0xRRGGBB): what transparent pixels show.
    void set_background(uint32_t rgb);
    uint32_t background() const { return background_; }
    // Codepage of the labels.
    void set_codepage(int cp) { codepage_ = cp; }

    // False for a cell whose row the tables no longer hold.
    bool cell_valid(int cell) const;
    // The icon of a cell at the icon side, from the cache or painted now.
    QPixmap icon(int cell) const;
    QString label_text(int cell) const;

    // After the browser rebuilt its cell table: every cell anew.
    void reset();
    // After an edit of one element (store row): its cells are painted again.
    void update_row(int32_t row);
    // After a change of the selection lists: the highlights are repainted.
    void marks_changed();

    // Icons painted since the last reset (cache misses).
    int painted() const { return painted_; }

private:
    bool row_exists(int32_t row) const;
    static qint64 key(int32_t row, bool night) { return (static_cast<qint64>(row) << 1) | (night ? 1 : 0); }

    model::Store& s_;
    workbench::Browser& browser_;
    int side_ = 60;
    qreal dpr_ = 1.0;
    uint32_t background_ = 0xFFFFFF;
    int codepage_ = 1252;
    mutable QCache<qint64, QPixmap> cache_;
    mutable int painted_ = 0;
};

}  // namespace korvex::gui
