// The desktop's clipboard behind platform::Clipboard. Plain text is held in
// the code page the window gives; Unicode text and pictures go as they are.
#pragma once

#include "platform/clipboard.h"

namespace korvex::gui {

class QtClipboard : public platform::Clipboard {
public:
    // cp: the code page of text() and set_text() (the project's).
    explicit QtClipboard(int cp = 1252) : cp_(cp) {}
    void set_codepage(int cp) { cp_ = cp; }

    std::string text() override;
    std::string unicode_text() override;
    std::optional<platform::ClipImage> image() override;
    void set_text(const std::string& bytes) override;
    void set_unicode_text(const std::string& utf8) override;
    void set_image(const platform::ClipImage& picture) override;

private:
    int cp_;
};

}  // namespace korvex::gui
