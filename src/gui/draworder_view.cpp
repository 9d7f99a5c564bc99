#include "gui/draworder_view.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionViewItem>

#include "gui/cell_delegate.h"
#include "gui/grid_model.h"
#include "gui/qt_input.h"
#include "gui/qt_prompt.h"

namespace korvex::gui {

namespace {

const QColor k_layer_text(128, 128, 128);
const QColor k_placeholder_fill(238, 238, 238);
const QColor k_placeholder_x(180, 40, 40);

}  // namespace

DrawOrderView::DrawOrderView(model::Store& s, workbench::Browser& browser, GridModel& model, CellDelegate& delegate,
                             QWidget* parent)
    : QAbstractScrollArea(parent), s_(s), browser_(browser), model_(model), delegate_(delegate) {
    setObjectName("drawOrderView");
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(true);
    // Marks and icons change through the model; the view only repaints.
    connect(&model_, &QAbstractItemModel::dataChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&model_, &QAbstractItemModel::modelReset, viewport(), qOverload<>(&QWidget::update));
}

void DrawOrderView::set_layer_word(const QString& word) {
    layer_word_ = word;
    viewport()->update();
}

int DrawOrderView::left_margin() const {
    QFont f = font();
    f.setPointSizeF(std::max(6.0, f.pointSizeF() - 1));
    return std::max(left_, QFontMetrics(f).horizontalAdvance(layer_word_ + " 999") + 8);
}

void DrawOrderView::set_cell_size(const QSize& size, int left, int top) {
    cell_ = QSize(std::max(1, size.width()), std::max(1, size.height()));
    left_ = left;
    top_ = top;
    update_scroll_range();
    viewport()->update();
}

int DrawOrderView::columns() const {
    return std::max(1, (viewport()->width() - left_margin()) / cell_.width());
}

void DrawOrderView::refresh() {
    last_columns_ = browser_.layers().columns;
    update_scroll_range();
    viewport()->update();
}

void DrawOrderView::update_scroll_range() {
    const int cols = std::max(1, browser_.layers().columns);
    const int rows = (browser_.cell_count() + cols - 1) / cols;
    const int height = top_ + (rows + 1) * cell_.height();
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(std::max(1, cell_.height() / 4));
}

QRect DrawOrderView::cell_rect(int cell) const {
    const int cols = std::max(1, browser_.layers().columns);
    const int x = left_margin() + (cell % cols) * cell_.width();
    const int y = top_ + (cell / cols) * cell_.height() - verticalScrollBar()->value();
    return QRect(x, y, cell_.width(), cell_.height());
}

int DrawOrderView::cell_at(const QPoint& p) const {
    const int cols = std::max(1, browser_.layers().columns);
    const int x = p.x() - left_margin();
    const int y = p.y() + verticalScrollBar()->value() - top_;
    if (x < 0 || y < 0 || x >= cols * cell_.width()) return -1;
    const int cell = (y / cell_.height()) * cols + x / cell_.width();
    return cell < browser_.cell_count() ? cell : -1;
}

void DrawOrderView::show_cell(int cell) {
    if (cell < 0 || cell >= browser_.cell_count()) return;
    const QRect r = cell_rect(cell);
    QScrollBar* bar = verticalScrollBar();
    if (r.top() < 0) bar->setValue(bar->value() + r.top() - top_);
    else if (r.bottom() > viewport()->height()) bar->setValue(bar->value() + r.bottom() - viewport()->height());
}

void DrawOrderView::paint_placeholder(QPainter& p, const QRect& r, int cell) const {
    const workbench::LayerCell& c = browser_.layers().cells[static_cast<size_t>(cell)];
    const int side = std::min(r.width() - 4, r.height() * 2 / 3);
    const QRect box(r.x() + (r.width() - side) / 2, r.y(), side, side);
    p.fillRect(box, k_placeholder_fill);
    QFont f = font();
    f.setBold(true);
    f.setPixelSize(std::max(7, side * 2 / 3));
    p.setFont(f);
    p.setPen(k_placeholder_x);
    p.drawText(box, Qt::AlignCenter, QStringLiteral("X"));
    p.setFont(font());
    p.setPen(Qt::black);
    const QRect label(r.x(), box.bottom() + 1, r.width(), r.bottom() - box.bottom());
    p.drawText(label, Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(workbench::code_type_text(c.code)));
    const workbench::Mark mark = browser_.mark(cell);
    if (mark == workbench::Mark::primary || (cell == browser_.current_cell() && browser_.sel1().empty())) {
        p.fillRect(label, k_primary);
        p.setPen(QPen(k_primary_frame, 2));
        p.drawRect(box.adjusted(1, 1, -1, -1));
    } else if (mark == workbench::Mark::secondary) {
        p.setPen(QPen(k_secondary_frame, 2));
        p.drawRect(box.adjusted(1, 1, -1, -1));
    }
}

void DrawOrderView::paintEvent(QPaintEvent* e) {
    QPainter p(viewport());
    p.fillRect(e->rect(), QColor::fromRgb(model_.background()));
    const workbench::LayerLayout& l = browser_.layers();
    if (!browser_.layer_view() || l.cells.empty()) return;
    const int cols = std::max(1, l.columns);
    const int scroll = verticalScrollBar()->value();
    const int first_row = std::max(0, (e->rect().top() + scroll - top_) / cell_.height());
    const int last_row = (e->rect().bottom() + scroll - top_) / cell_.height();
    const int first = first_row * cols;
    const int last = std::min<int>(static_cast<int>(l.cells.size()) - 1, (last_row + 1) * cols - 1);

    QStyleOptionViewItem option;
    option.initFrom(viewport());
    for (int cell = first; cell <= last; ++cell) {
        const workbench::LayerCell& c = l.cells[static_cast<size_t>(cell)];
        const QRect r = cell_rect(cell);
        if (c.kind == workbench::LayerCellKind::polygon) {
            option.rect = r;
            delegate_.paint(&p, option, model_.index(cell));
        } else if (c.kind == workbench::LayerCellKind::placeholder) {
            paint_placeholder(p, r, cell);
        }
    }
    // The layer numbers, grey, in the left margin beside each layer's first row.
    QFont f = font();
    f.setPointSizeF(std::max(6.0, f.pointSizeF() - 1));
    p.setFont(f);
    p.setPen(k_layer_text);
    const int line = QFontMetrics(f).height();
    for (const workbench::LayerStart& layer : l.layers) {
        const QRect r = cell_rect(layer.cell);
        if (r.bottom() < e->rect().top() || r.top() > e->rect().bottom()) continue;
        const QRect text(2, r.y() + 2, left_margin() - 4, 2 * line + 2);
        p.drawText(text, Qt::AlignLeft | Qt::AlignTop, layer_word_ + "\n" + QString::number(layer.level));
        p.drawLine(2, r.y(), left_margin() + cols * cell_.width(), r.y());
    }
}

void DrawOrderView::resizeEvent(QResizeEvent* e) {
    QAbstractScrollArea::resizeEvent(e);
    update_scroll_range();
    const int cols = columns();
    if (browser_.layer_view() && cols != last_columns_) {
        last_columns_ = cols;
        emit columns_changed(cols);
    }
}

void DrawOrderView::scrollContentsBy(int, int) { viewport()->update(); }

void DrawOrderView::mousePressEvent(QMouseEvent* e) {
    setFocus(Qt::MouseFocusReason);
    const int cell = cell_at(e->position().toPoint());
    if (cell < 0) return;
    emit cell_pressed(cell, has_modifier(e, Qt::ControlModifier), has_modifier(e, Qt::ShiftModifier),
                      e->button() == Qt::RightButton);
}

void DrawOrderView::mouseDoubleClickEvent(QMouseEvent* e) {
    const int cell = cell_at(e->position().toPoint());
    if (cell < 0 || e->button() != Qt::LeftButton) return;
    emit cell_double_clicked(cell, has_modifier(e, Qt::ControlModifier), has_modifier(e, Qt::ShiftModifier));
}

void DrawOrderView::contextMenuEvent(QContextMenuEvent* e) {
    emit context_menu(cell_at(e->pos()), e->globalPos());
}

}  // namespace korvex::gui
