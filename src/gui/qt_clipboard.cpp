#include "gui/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include "gui/qt_prompt.h"

namespace korvex::gui {

QtClipboard::QtClipboard(std::function<int()> codepage) : codepage_(std::move(codepage)) {}

std::string QtClipboard::text() { return to_codepage(QGuiApplication::clipboard()->text(), codepage_ ? codepage_() : 1252); }

std::string QtClipboard::unicode_text() {
    const QByteArray u = QGuiApplication::clipboard()->text().toUtf8();
    return std::string(u.constData(), static_cast<size_t>(u.size()));
}

std::optional<platform::ClipImage> QtClipboard::image() {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data || !data->hasImage()) return std::nullopt;
    const QImage img = qvariant_cast<QImage>(data->imageData()).convertToFormat(QImage::Format_ARGB32);
    if (img.isNull()) return std::nullopt;
    platform::ClipImage out;
    out.width = img.width();
    out.height = img.height();
    out.argb.reserve(static_cast<size_t>(out.width) * static_cast<size_t>(out.height));
    for (int y = 0; y < img.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(img.constScanLine(y));
        out.argb.insert(out.argb.end(), line, line + img.width());
    }
    return out;
}

void QtClipboard::set_text(const std::string& bytes) {
    QGuiApplication::clipboard()->setText(from_codepage(bytes, codepage_ ? codepage_() : 1252));
}

void QtClipboard::set_unicode_text(const std::string& utf8) {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

void QtClipboard::set_image(const platform::ClipImage& picture) {
    if (picture.width <= 0 || picture.height <= 0 ||
        picture.argb.size() < static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height))
        return;
    QImage img(picture.width, picture.height, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(picture.argb.begin() + static_cast<std::ptrdiff_t>(y) * picture.width, picture.width,
                    reinterpret_cast<QRgb*>(img.scanLine(y)));
    QGuiApplication::clipboard()->setImage(img);
}

}  // namespace korvex::gui
