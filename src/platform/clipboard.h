// The system clipboard as the logic sees it: text in a code page's bytes,
// Unicode text (UTF-8), and pictures. The window implements it on the
// desktop's clipboard; tests use MemoryClipboard.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korvex::platform {

// A picture on the clipboard: rows top to bottom, 0xAARRGGBB a pixel.
struct ClipImage {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> argb;
    bool operator==(const ClipImage&) const = default;
};

class Clipboard {
public:
    virtual ~Clipboard() = default;
    // Plain text as bytes (the program's code page); "" when none.
    virtual std::string text() = 0;
    // Unicode text as UTF-8; "" when none.
    virtual std::string unicode_text() = 0;
    virtual std::optional<ClipImage> image() = 0;
    // Each setter replaces whatever the clipboard held.
    virtual void set_text(const std::string& bytes) = 0;
    virtual void set_unicode_text(const std::string& utf8) = 0;
    virtual void set_image(const ClipImage& picture) = 0;
};

// For tests and the command line: one slot, as a real clipboard has.
class MemoryClipboard : public Clipboard {
public:
    std::string text() override { return kind_ == Kind::text ? text_ : std::string(); }
    std::string unicode_text() override { return kind_ == Kind::unicode ? text_ : kind_ == Kind::text ? text_ : std::string(); }
    std::optional<ClipImage> image() override {
        if (kind_ != Kind::image) return std::nullopt;
        return image_;
    }
    void set_text(const std::string& bytes) override { put(Kind::text, bytes); }
    void set_unicode_text(const std::string& utf8) override { put(Kind::unicode, utf8); }
    void set_image(const ClipImage& picture) override {
        kind_ = Kind::image;
        text_.clear();
        image_ = picture;
    }

private:
    enum class Kind { none, text, unicode, image };
    void put(Kind k, const std::string& t) {
        kind_ = k;
        text_ = t;
        image_ = {};
    }
    Kind kind_ = Kind::none;
    std::string text_;
    ClipImage image_;
};

}  // namespace korvex::platform
