#include "gui/qt_launcher.h"

#include <QDesktopServices>
#include <QUrl>

#include "gui/qt_prompt.h"

namespace korvex::gui {

bool QtLauncher::open(const std::string& path) {
    if (path.empty()) return false;
    const QString p = from_path(path);
    const QUrl url = p.contains(QLatin1String("://")) ? QUrl(p) : QUrl::fromLocalFile(p);
    return QDesktopServices::openUrl(url);
}

}  // namespace korvex::gui
