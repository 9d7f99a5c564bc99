// The Mkgmap Code dialog: tag, value and resolution for the selected
// elements, the rules in a box, and a copy of them into the clipboard.
#pragma once

#include <QDialog>
#include <cstdint>
#include <vector>

#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/prompt.h"

class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace korvex::gui {

class MkgmapDialog : public QDialog {
    Q_OBJECT
public:
    // rows: store rows of the class in view, in selection order.
    MkgmapDialog(const model::Store& s, platform::Prompt& ui, platform::Clipboard& clip, int cls,
                 std::vector<int32_t> rows, QWidget* parent = nullptr);

    QComboBox* tag() const { return tag_; }
    QLineEdit* value() const { return value_; }
    QLineEdit* resolution() const { return resolution_; }
    QPlainTextEdit* result() const { return result_; }
    QPushButton* create_button() const { return create_; }
    QPushButton* copy_button() const { return copy_; }

    void create_code();
    void copy_into_memory();

private:
    const model::Store& s_;
    platform::Prompt& ui_;
    platform::Clipboard& clip_;
    int cls_;
    std::vector<int32_t> rows_;
    QComboBox* tag_;
    QLineEdit* value_;
    QLineEdit* resolution_;
    QPlainTextEdit* result_;
    QPushButton* create_;
    QPushButton* copy_;
};

}  // namespace korvex::gui
