#include "gui/palette_widget.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "gui/qt_colour.h"

namespace korvex::gui {

PaletteWidget::PaletteWidget(QWidget* parent, int cell) : QWidget(parent), cell_(cell) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setMinimumWidth(cell_ * 4);
    // A click takes the focus from a text box, so the editor's keys
    // (Ctrl+Z, Delete) reach the picture again.
    setFocusPolicy(Qt::ClickFocus);
}

void PaletteWidget::set_colours(const std::vector<uint32_t>& colours, int64_t marker) {
    colours_ = colours;
    hidden_.assign(colours.size(), false);
    marker_ = marker;
    setMinimumHeight(heightForWidth(width()));
    updateGeometry();
    update();
}

void PaletteWidget::set_levels(std::vector<int> levels) {
    if (levels == levels_) return;
    levels_ = std::move(levels);
    update();
}

void PaletteWidget::resizeEvent(QResizeEvent*) {
    // Every cell shows: the rows the width leaves are the height needed.
    setMinimumHeight(heightForWidth(width()));
}

void PaletteWidget::set_marks(int primary, int secondary) {
    primary_ = primary;
    secondary_ = secondary;
    update();
}

void PaletteWidget::hide_cell(int index) {
    if (index < 0 || index >= count()) return;
    hidden_[static_cast<size_t>(index)] = true;
    update();
}

bool PaletteWidget::hidden(int index) const { return index >= 0 && index < count() && hidden_[static_cast<size_t>(index)]; }

int PaletteWidget::columns(int width) const { return std::max(1, width / cell_); }

QRect PaletteWidget::cell_rect(int index) const {
    const int c = columns(width());
    return {(index % c) * cell_, (index / c) * cell_, cell_ - 2, cell_ - 2};
}

int PaletteWidget::cell_at(QPoint pos) const {
    for (int i = 0; i < count(); ++i)
        if (cell_rect(i).adjusted(0, 0, 2, 2).contains(pos)) return hidden(i) ? -1 : i;
    return -1;
}

int PaletteWidget::heightForWidth(int w) const {
    const int c = columns(w);
    return std::max(1, (count() + c - 1) / c) * cell_;
}

QSize PaletteWidget::sizeHint() const { return {cell_ * 12, heightForWidth(cell_ * 12)}; }

void PaletteWidget::paintEvent(QPaintEvent*) {
    QPainter p(this);
    for (int i = 0; i < count(); ++i) {
        if (hidden(i)) continue;
        const QRect r = cell_rect(i);
        const uint32_t c = colours_[static_cast<size_t>(i)];
        p.fillRect(r, qcolour(c));
        p.setPen(Qt::gray);
        p.drawRect(r);
        if (marker_ >= 0 && c == static_cast<uint32_t>(marker_)) {
            p.setPen(Qt::black);
            p.drawText(r, Qt::AlignCenter, "T");
        }
        if (static_cast<size_t>(i) < levels_.size()) {
            // The level in the lower corner, on a plate that any colour shows.
            QFont f = p.font();
            f.setPixelSize(std::max(7, cell_ / 3));
            p.setFont(f);
            const QString t = QString::number(levels_[static_cast<size_t>(i)]);
            const QRect plate(r.right() - f.pixelSize() - 3, r.bottom() - f.pixelSize() - 1, f.pixelSize() + 3, f.pixelSize() + 1);
            p.fillRect(plate, QColor(0xFF, 0xB6, 0xD9));
            p.setPen(Qt::black);
            p.drawText(plate, Qt::AlignCenter, t);
        }
        if (i == secondary_) {
            p.setPen(QPen(Qt::blue, 2, Qt::DashLine));
            p.drawRect(r.adjusted(2, 2, -2, -2));
        }
        if (i == primary_) {
            p.setPen(QPen(Qt::red, 2));
            p.drawRect(r.adjusted(1, 1, -1, -1));
        }
    }
}

void PaletteWidget::mousePressEvent(QMouseEvent* ev) {
    const int i = cell_at(ev->position().toPoint());
    if (i >= 0) emit clicked(i, ev->button() == Qt::RightButton);
}

void PaletteWidget::mouseDoubleClickEvent(QMouseEvent* ev) {
    const int i = cell_at(ev->position().toPoint());
    if (i >= 0) emit double_clicked(i);
}

}  // namespace korvex::gui
