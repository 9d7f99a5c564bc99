#include "gui/qt_images.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

#include "gui/qt_prompt.h"
#include "platform/files.h"

namespace korvex::gui {

platform::ImageRead QtImageCodec::read(const std::string& path) {
    platform::ImageRead r;
    QImageReader reader(from_path(path));
    const QImage raw = reader.read();
    if (raw.isNull()) {
        r.error = reader.errorString().toStdString();
        return r;
    }
    const QImage img = raw.convertToFormat(QImage::Format_ARGB32);
    r.image.width = img.width();
    r.image.height = img.height();
    r.image.argb.reserve(static_cast<size_t>(img.width()) * static_cast<size_t>(img.height()));
    for (int y = 0; y < img.height(); ++y) {
        const auto* line = reinterpret_cast<const uint32_t*>(img.constScanLine(y));
        r.image.argb.insert(r.image.argb.end(), line, line + img.width());
    }
    r.ok = true;
    return r;
}

bool QtImageCodec::write_bmp(const std::string& path, const platform::Image& image, std::string* error) {
    if (image.width <= 0 || image.height <= 0 ||
        image.argb.size() < static_cast<size_t>(image.width) * static_cast<size_t>(image.height)) {
        if (error) *error = "empty picture";
        return false;
    }
    // Without alpha, Qt writes 24 bits a pixel.
    QImage img(image.width, image.height, QImage::Format_RGB32);
    for (int y = 0; y < image.height; ++y) {
        auto* line = reinterpret_cast<uint32_t*>(img.scanLine(y));
        for (int x = 0; x < image.width; ++x)
            line[x] = 0xFF000000u | image.argb[static_cast<size_t>(y) * static_cast<size_t>(image.width) + static_cast<size_t>(x)];
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!img.save(&buffer, "BMP")) {
        if (error) *error = "the picture could not be encoded";
        return false;
    }
    return platform::write_file_atomic(path, std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())), error);
}

}  // namespace korvex::gui
