// The Tools entries for installed map families.
#include <QAction>
#include <QMenu>

#include "gui/families_dialog.h"
#include "gui/main_window.h"
#include "gui/tool_menus.h"
#include "integration/map_families.h"
#include "platform/system_map_platform.h"

namespace korvex::gui {

void ToolMenus::add_family_entries() {
    MainWindow& w = w_;
    if (!map_platform) map_platform = [&w] { return platform::system_map_platform(w.environment()); };
    tools_->addSeparator();

    QAction* families = tools_->addAction("Add / Replace Basecamp/Mapsource TYP files");
    families->setObjectName("mtls0");
    w.captions().add(families, "mtls0", "Add / Replace Basecamp/Mapsource TYP files");
    connect(families, &QAction::triggered, this, [this, &w] {
        FamiliesDialog d(w, map_platform, &w);
        exec_dialog(d);
    });

    QAction* caches = tools_->addAction("Clear Map Tile Caches");
    caches->setObjectName("mclearcache");
    w.captions().add(caches, "mclearcache", "Clear Map Tile Caches");
    connect(caches, &QAction::triggered, this, [this] {
        if (auto sys = map_platform()) integration::clearcache(*sys);
    });
}

}  // namespace korvex::gui
