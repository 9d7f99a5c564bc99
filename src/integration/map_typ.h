// File > Open TYP in Map…: a TYP subfile of a map container opened as the
// project, and saved back into the container.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "integration/img_container.h"
#include "platform/file_dialog.h"
#include "platform/prompt.h"
#include "workbench/session.h"
#include "workbench/settings_file.h"

namespace korvex::integration {

// The TYP subfile a project came from. Save replaces it in the container as
// it is on disk then (atomically). A TYP whose family id is not the one it
// replaces, which a device would ignore, is asked about first: it may take
// the map's id.
class ImgTypHolder : public workbench::TypHolder {
public:
    ImgTypHolder(std::string map, std::string subfile, platform::Prompt& ui);
    std::string label() const override;
    std::string typ_name() const override;
    bool put(std::string& typ, std::string& error) override;

private:
    std::string map_, subfile_;
    platform::Prompt& ui_;
};

// Picks one of a container's TYP subfiles: an index into typs, or -1 for
// Cancel. Asked only when there are several.
using TypChoice = std::function<int(const std::string& map, const std::vector<ImgSubfile>& typs)>;

// Opens the chosen TYP of the container at map; a container that cannot be
// read or holds no TYP is said and leaves the project as it was.
bool open_map_typ(workbench::Session& session, platform::Prompt& ui, const std::string& map, const TypChoice& choose);

// The menu entry: the dirty prompt, a file dialog for *.img, then
// open_map_typ. True when a TYP was opened.
bool open_typ_in_map(workbench::Session& session, platform::Prompt& ui, platform::FileDialog& dialogs,
                     workbench::AppSettings& settings, const TypChoice& choose);

}  // namespace korvex::integration
