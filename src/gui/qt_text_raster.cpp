#include "gui/qt_text_raster.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

namespace korvex::gui {

platform::TextMask QtTextRasteriser::render(const std::string& utf8, const platform::TextStyle& style) const {
    platform::TextMask m;
    const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (text.isEmpty()) return m;
    QFont f(QString::fromStdString(style.font.empty() ? "Arial" : style.font));
    f.setPixelSize(std::max(style.pixel_size, 1));
    f.setBold(style.bold);
    f.setItalic(style.italic);
    f.setStyleStrategy(QFont::NoAntialias);
    const QFontMetrics fm(f);
    const int w = std::max(1, fm.horizontalAdvance(text)), h = std::max(1, fm.height());
    QImage img(w, h, QImage::Format_ARGB32);
    img.fill(Qt::transparent);
    {
        QPainter p(&img);
        p.setFont(f);
        p.setPen(Qt::black);
        p.drawText(0, fm.ascent(), text);
    }
    m.width = w;
    m.height = h;
    m.on.resize(static_cast<size_t>(w) * static_cast<size_t>(h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) m.on[static_cast<size_t>(y) * static_cast<size_t>(w) + static_cast<size_t>(x)] = qAlpha(img.pixel(x, y)) > 127;
    return m;
}

}  // namespace korvex::gui
