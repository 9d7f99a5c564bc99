#include "gui/qt_fonts.h"

#include <QFontDatabase>
#include <QStringList>

namespace korvex::gui {

std::vector<std::string> QtFontList::families() const {
    std::vector<std::string> names;
    // Font names are written to 6.dat and fonts.dat, which hold bytes; a name
    // outside Latin-1 could not be read back, so it is left out.
    for (const QString& family : QFontDatabase::families()) {
        bool latin1 = true;
        for (QChar c : family) latin1 = latin1 && c.unicode() < 256;
        if (latin1) names.push_back(family.toLatin1().toStdString());
    }
    return names;
}

}  // namespace korvex::gui
