#include "gui/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

#include "gui/qt_prompt.h"

namespace korvex::gui {

namespace {

QClipboard* board() { return QGuiApplication::clipboard(); }

}  // namespace

std::string QtClipboard::text() {
    QClipboard* b = board();
    return b ? to_codepage(b->text(), cp_) : std::string();
}

std::string QtClipboard::unicode_text() {
    QClipboard* b = board();
    if (!b) return {};
    const QByteArray utf8 = b->text().toUtf8();
    return std::string(utf8.constData(), static_cast<size_t>(utf8.size()));
}

std::optional<platform::ClipImage> QtClipboard::image() {
    QClipboard* b = board();
    if (!b) return std::nullopt;
    const QImage img = b->image().convertToFormat(QImage::Format_ARGB32);
    if (img.isNull()) return std::nullopt;
    platform::ClipImage out;
    out.width = img.width();
    out.height = img.height();
    out.argb.reserve(static_cast<size_t>(out.width) * static_cast<size_t>(out.height));
    for (int y = 0; y < img.height(); ++y) {
        const auto* line = reinterpret_cast<const uint32_t*>(img.constScanLine(y));
        out.argb.insert(out.argb.end(), line, line + img.width());
    }
    return out;
}

void QtClipboard::set_text(const std::string& bytes) {
    if (QClipboard* b = board()) b->setText(from_codepage(bytes, cp_));
}

void QtClipboard::set_unicode_text(const std::string& utf8) {
    if (QClipboard* b = board()) b->setText(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

void QtClipboard::set_image(const platform::ClipImage& picture) {
    QClipboard* b = board();
    if (!b || picture.width <= 0 || picture.height <= 0 ||
        picture.argb.size() < static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height))
        return;
    QImage img(picture.width, picture.height, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(picture.argb.data() + static_cast<size_t>(y) * static_cast<size_t>(picture.width), picture.width,
                    reinterpret_cast<uint32_t*>(img.scanLine(y)));
    b->setImage(img);
}

}  // namespace korvex::gui
