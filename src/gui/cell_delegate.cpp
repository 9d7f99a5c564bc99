#include "gui/cell_delegate.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>

#include "gui/grid_model.h"

namespace korvex::gui {

CellDelegate::CellDelegate(model::Store& s, workbench::Browser& browser, GridModel& model, QObject* parent)
    : QStyledItemDelegate(parent), s_(s), browser_(browser), model_(model) {}

void CellDelegate::set_geometry(int side, int label_height, int pitch, int width) {
    side_ = side;
    label_h_ = label_height;
    pitch_ = pitch;
    width_ = width;
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {width_, pitch_};
}

QString CellDelegate::shown_label(const QString& label) const {
    QString text = label;
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QFontMetrics fm(font_);
    const int width = std::max(1, width_ - 2);
    // As many lines as the label's room holds; the last one is elided.
    const int lines = std::max(1, label_h_ / std::max(1, fm.lineSpacing()));
    QTextLayout layout(text, font_);
    QTextOption wrap;
    wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrap);
    QStringList shown;
    layout.beginLayout();
    for (int i = 0; i < lines; ++i) {
        QTextLine line = layout.createLine();
        if (!line.isValid()) break;
        line.setLineWidth(width);
        if (i == lines - 1) {
            shown << fm.elidedText(text.mid(line.textStart()).trimmed(), Qt::ElideRight, width);
            break;
        }
        shown << text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return shown.join(QLatin1Char('\n'));
}

void CellDelegate::paint(QPainter* p, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    ++paints_;
    const int cell = index.row();
    if (!model_.cell_valid(cell)) return;
    const QRect r = option.rect;
    const QRect icon_box(r.x() + (r.width() - side_) / 2, r.y(), side_, side_);
    const QRect label_box(r.x(), r.y() + side_, r.width(), label_h_);

    p->save();
    p->setRenderHint(QPainter::SmoothPixmapTransform, false);
    p->drawPixmap(icon_box.topLeft(), model_.icon(cell));

    const workbench::Mark mark = browser_.mark(cell);
    const bool current = cell == browser_.current_cell();
    if (mark == workbench::Mark::primary || (current && browser_.sel1().empty())) {
        p->fillRect(label_box, k_primary);
        p->setPen(QPen(k_primary_frame, 2));
        p->drawRect(icon_box.adjusted(1, 1, -1, -1));
    } else if (mark == workbench::Mark::secondary) {
        p->setPen(QPen(k_secondary_frame, 2));
        p->drawRect(icon_box.adjusted(1, 1, -1, -1));
    }
    // The element in the code panel keeps a thin frame inside a selection.
    if (current && !browser_.sel1().empty()) {
        p->setPen(QPen(k_primary_frame, 1, Qt::DotLine));
        p->drawRect(r.adjusted(0, 0, -1, -1));
    }

    const workbench::CellLabel lab = browser_.label(s_, cell);
    p->setFont(font_);
    p->setPen(lab.grey ? QColor(Qt::gray)
                       : QColor((lab.colour >> 16) & 0xFF, (lab.colour >> 8) & 0xFF, lab.colour & 0xFF));
    p->drawText(label_box, Qt::AlignHCenter | Qt::AlignTop, shown_label(model_.label_text(cell)));

    if (browser_.not_in_style(s_, cell)) {
        p->setPen(QPen(Qt::red, 2));
        const QRect x(icon_box.x() + 2, icon_box.y() + 2, std::max(6, side_ / 4), std::max(6, side_ / 4));
        p->drawLine(x.topLeft(), x.bottomRight());
        p->drawLine(x.topRight(), x.bottomLeft());
    }
    p->restore();
}

}  // namespace korvex::gui
