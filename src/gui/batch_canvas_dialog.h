// The Canvas menu's dialog for many points at once: five pictures, one a
// choice (space on the left, below, above, on the right, or a border all
// round), and the one-digit width of the border.
#pragma once

#include <QDialog>

class QButtonGroup;
class QLineEdit;

namespace korvex::gui {

class BatchCanvasDialog : public QDialog {
    Q_OBJECT
public:
    // preset: a letter of "LDURM" to start with, '\0' for none.
    explicit BatchCanvasDialog(char preset, QWidget* parent = nullptr);
    // The letter of the picture chosen, '\0' for none.
    char choice() const;
    // The border's width, 0 when the field holds no digit.
    int amount() const;

    QButtonGroup* pictures() const { return pictures_; }
    QLineEdit* amount_field() const { return amount_; }

private:
    QButtonGroup* pictures_ = nullptr;
    QLineEdit* amount_ = nullptr;
};

}  // namespace korvex::gui
