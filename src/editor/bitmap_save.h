// savepoi: the icon saved as a 24-bit BMP file at its true size, one file
// pixel a bitmap pixel. Transparent pixels are written in the marker
// magenta 0xFF11FF, which an import takes back as transparency.
#pragma once

#include <string>

#include "editor/editor_session.h"
#include "platform/file_dialog.h"
#include "platform/images.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The bitmap as an image: every pixel opaque, transparent ones magenta.
platform::Image bitmap_image(const EditorSession& e);

// "Caution. Transparency will show as magenta." first when a pixel is
// transparent; the dialog ("Bitmap files (*.bmp)"); ".bmp" added when
// missing; an existing file needs "File exists." and "Replace this file?".
// A failed write names the file and the reason; the old file stays.
bool savepoi(const EditorSession& e, platform::Prompt& ui, platform::FileDialog& dialogs, platform::ImageCodec& codec,
             const std::string& proposed = {});

}  // namespace korvex::editor
