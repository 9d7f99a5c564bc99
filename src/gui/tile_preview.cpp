#include "gui/tile_preview.h"

#include <QImage>
#include <QPixmap>

namespace korvex::gui {

namespace {

constexpr QRgb k_background = 0xFFF0F0FF;  // rgb(240,240,255)
constexpr int k_width = 192, k_height = 64;

}  // namespace

TilePreview::TilePreview(const editor::EditorSession& e, QWidget* parent) : QLabel(parent), e_(e) {
    setObjectName("tile_preview");
    setFixedSize(k_width + 2, k_height + 2);
    setFrameShape(QFrame::StyledPanel);
    setToolTip("As the map shows it");
    refresh();
}

void TilePreview::refresh() {
    const int cls = e_.store_class();
    const bool shown = (cls == 0 || cls == 1 || cls == 3) && !e_.solid && e_.width > 0 && e_.height > 0;
    setVisible(shown);
    if (!shown) return;
    QImage img(k_width, k_height, QImage::Format_RGB32);
    img.fill(k_background);
    const auto colour = [&](int x, int y) -> QRgb {
        const uint32_t c = e_.surface.at(x % e_.width, y % e_.height);
        if (c == e_.transparentcolour) return k_background;
        return qRgb(static_cast<int>(editor::red_of(c)), static_cast<int>(editor::green_of(c)), static_cast<int>(editor::blue_of(c)));
    };
    // A line runs along the middle of the band; a polygon fills it all.
    const int top = cls == 0 ? 0 : std::max(0, (k_height - e_.height) / 2);
    const int rows = cls == 0 ? k_height : std::min(e_.height, k_height);
    for (int y = 0; y < rows; ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(top + y));
        for (int x = 0; x < k_width; ++x) line[x] = colour(x, y);
    }
    setPixmap(QPixmap::fromImage(img));
}

}  // namespace korvex::gui
