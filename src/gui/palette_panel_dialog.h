// The Create Palette panel: a palette of steps between two colours, or of
// every colour of the open file, named and saved under the data folder's
// pal/. OK checks the input through the logic and closes only when the
// palette was saved; a refusal keeps the panel open with what was typed.
#pragma once

#include <QDialog>
#include <string>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"

class QLineEdit;

namespace korvex::gui {

class PalettePanelDialog : public QDialog {
    Q_OBJECT
public:
    // from_typ: the palette of the file's colours (no colour fields).
    PalettePanelDialog(const model::Store& s, platform::Prompt& ui, const integration::Messages& m,
                       std::string data_folder, bool from_typ, QWidget* parent = nullptr);

    QLineEdit* colour1() const { return colour1_; }
    QLineEdit* colour2() const { return colour2_; }
    QLineEdit* count() const { return count_; }
    QLineEdit* name() const { return name_; }
    // The file written by the last accepted OK.
    const std::string& saved_path() const { return saved_; }

    // OK: builds and saves the palette; accepts when it was saved.
    void ok();

private:
    const model::Store& s_;
    platform::Prompt& ui_;
    const integration::Messages& m_;
    std::string data_folder_;
    bool from_typ_;
    QLineEdit* colour1_ = nullptr;
    QLineEdit* colour2_ = nullptr;
    QLineEdit* count_ = nullptr;
    QLineEdit* name_ = nullptr;
    std::string saved_;
};

}  // namespace korvex::gui
