// The desktop's clipboard for the logic. Qt keeps text as Unicode: plain text
// is handed over as bytes of the project's code page, Unicode text as UTF-8.
#pragma once

#include <functional>

#include "platform/clipboard.h"

namespace korvex::gui {

class QtClipboard : public platform::Clipboard {
public:
    // codepage gives the page of "plain text" at the moment of the call.
    explicit QtClipboard(std::function<int()> codepage);

    std::string text() override;
    std::string unicode_text() override;
    std::optional<platform::ClipImage> image() override;
    void set_text(const std::string& bytes) override;
    void set_unicode_text(const std::string& utf8) override;
    void set_image(const platform::ClipImage& picture) override;

private:
    std::function<int()> codepage_;
};

}  // namespace korvex::gui
