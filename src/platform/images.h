// Image files as the logic sees them: a file becomes a raster of 24-bit
// colours with an alpha a pixel, and a raster becomes a 24-bit BMP file.
// The window reads every format its image library knows (PNG, BMP, JPEG,
// GIF, XPM, ICO); tests and the command line use BmpImageCodec, which knows
// BMP alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clipboard.h"

namespace korvex::platform {

// Rows top to bottom, 0xAARRGGBB a pixel: the clipboard's picture and an
// image file's raster are one kind of thing.
using Image = ClipImage;

struct ImageRead {
    bool ok = false;
    Image image;
    std::string error;  // why the file could not be read
};

class ImageCodec {
public:
    virtual ~ImageCodec() = default;
    virtual ImageRead read(const std::string& path) = 0;
    // A 24-bit BMP of the image's colours (alpha is dropped), written
    // atomically: on failure the old file stays and error says why.
    virtual bool write_bmp(const std::string& path, const Image& image, std::string* error = nullptr) = 0;
};

// The bytes of a 24-bit bottom-up BMP of the image.
std::string encode_bmp24(const Image& image);
// Uncompressed BMPs of 8, 24 or 32 bits a pixel, top-down or bottom-up; 32
// bits keep their alpha only when some pixel has one above 0. False for
// anything else, or bytes too short for what the header says.
bool decode_bmp(std::string_view bytes, Image& out);

class BmpImageCodec : public ImageCodec {
public:
    ImageRead read(const std::string& path) override;
    bool write_bmp(const std::string& path, const Image& image, std::string* error = nullptr) override;
};

}  // namespace korvex::platform
