// Open and save dialogs of the desktop (the platform's native ones where it
// has them).
#pragma once

#include <QPointer>
#include <QStringList>
#include <string>
#include <vector>

#include "platform/file_dialog.h"

class QWidget;

namespace korvex::gui {

// "Typ files (*.typ)" and "Themes (*.kmtf)" already are Qt's filter form;
// they are only joined.
QString qt_filters(const std::vector<std::string>& filters);

class QtFileDialog : public platform::FileDialog {
public:
    explicit QtFileDialog(QWidget* parent = nullptr) : parent_(parent) {}
    void set_parent(QWidget* parent) { parent_ = parent; }
    // Tests use Qt's own dialog, which they can drive; the desktop's native
    // dialog cannot be.
    void set_native(bool native) { native_ = native; }

    // start: a folder, or a file whose folder opens with the file selected.
    std::string open_file(const std::string& title, const std::vector<std::string>& filters,
                          const std::string& start) override;
    // proposed: a file name (with or without folder) shown for editing;
    // "*.typ" proposes nothing but the pattern. The dialog does not ask about
    // replacing: the flows ask "File exists." themselves.
    std::string save_file(const std::string& title, const std::vector<std::string>& filters,
                          const std::string& proposed) override;

private:
    QPointer<QWidget> parent_;
    bool native_ = true;
};

}  // namespace korvex::gui
