#include "gui/grid_model.h"

#include <QImage>
#include <QPainter>

#include "gui/qt_prompt.h"
#include "workbench/icon_painter.h"

namespace korvex::gui {

namespace {

// Enough for a few screens of the largest icons; scrolling back repaints the rest.
constexpr int k_cache_kb = 96 * 1024;

}  // namespace

GridModel::GridModel(model::Store& s, workbench::Browser& browser, QObject* parent)
    : QAbstractListModel(parent), s_(s), browser_(browser), cache_(k_cache_kb) {}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : browser_.cell_count();
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || !cell_valid(index.row())) return {};
    if (role == Qt::DisplayRole) return label_text(index.row());
    // The full label first: the cell may show it elided.
    if (role == Qt::ToolTipRole) {
        const QString label = label_text(index.row());
        const QString hint = from_message(browser_.tooltip(s_, index.row()));
        return label.trimmed().isEmpty() ? hint : label + QLatin1Char('\n') + hint;
    }
    return {};
}

QString GridModel::label_text(int cell) const {
    return from_codepage(browser_.label(s_, cell).text, codepage_);
}

void GridModel::set_icon_side(int side, qreal dpr) {
    if (side == side_ && dpr == dpr_) return;
    side_ = side;
    dpr_ = dpr;
    cache_.clear();
}

void GridModel::set_background(uint32_t rgb) {
    if (rgb == background_) return;
    background_ = rgb;
    cache_.clear();
}

// A paint that arrives while a load refills the tables (progress serves the
// event queue) may name a row that is gone.
bool GridModel::row_exists(int32_t row) const {
    const size_t r = static_cast<size_t>(row);
    switch (browser_.cls()) {
    case model::k_polygons: return r < s_.pg_txt.size();
    case model::k_lines:
    case model::k_active_lines: return r < s_.ln_txt.size();
    default: return r < s_.pt_txt.size();
    }
}

bool GridModel::cell_valid(int cell) const {
    const int32_t row = browser_.row_of(cell);
    return row >= 0 && row_exists(row);
}

QPixmap GridModel::icon(int cell) const {
    const int32_t row = browser_.row_of(cell);
    if (row < 0 || !row_exists(row)) return {};
    const bool night = browser_.night_cell(cell);
    if (const QPixmap* hit = cache_.object(key(row, night))) return *hit;

    ++painted_;
    const int side = std::max(1, static_cast<int>(side_ * dpr_ + 0.5));
    const uint32_t bg = 0xFF000000u | background_;
    const workbench::Raster pic = workbench::paint_element(s_, browser_.cls(), row, bg, night);
    const workbench::Raster fit = workbench::fit_cell(pic, side, bg);
    QImage img(fit.w, fit.h, QImage::Format_ARGB32);
    for (int y = 0; y < fit.h; ++y)
        std::copy_n(fit.px.data() + static_cast<size_t>(y) * fit.w, fit.w,
                    reinterpret_cast<uint32_t*>(img.scanLine(y)));
    if (fit.empty()) {
        img = QImage(side, side, QImage::Format_ARGB32);
        img.fill(QColor::fromRgb(bg));
    }
    if (pic.question) {
        // A point with a readable head but no picture: "?" and its type.
        QPainter p(&img);
        p.setPen(Qt::black);
        QFont f = p.font();
        f.setPixelSize(std::max(6, side / 3));
        p.setFont(f);
        const std::string& typ = static_cast<size_t>(row) < s_.pt_typ.size() ? s_.pt_typ[row] : std::string();
        p.drawText(img.rect(), Qt::AlignCenter, QStringLiteral("?\n") + QString::fromStdString(typ));
    }
    auto* pm = new QPixmap(QPixmap::fromImage(img));
    pm->setDevicePixelRatio(dpr_);
    const int cost = std::max(1, img.width() * img.height() * 4 / 1024);
    const QPixmap out = *pm;
    cache_.insert(key(row, night), pm, cost);
    return out;
}

void GridModel::reset() {
    beginResetModel();
    cache_.clear();
    painted_ = 0;
    endResetModel();
}

void GridModel::update_row(int32_t row) {
    cache_.remove(key(row, false));
    cache_.remove(key(row, true));
    // A night element shows in two neighbouring cells.
    const int first = browser_.cell_of_row(row);
    if (first < 0) return;
    int last = first;
    if (last + 1 < browser_.cell_count() && browser_.row_of(last + 1) == row) ++last;
    emit dataChanged(index(first), index(last));
}

void GridModel::marks_changed() {
    if (browser_.cell_count() > 0) emit dataChanged(index(0), index(browser_.cell_count() - 1));
}

}  // namespace korvex::gui
