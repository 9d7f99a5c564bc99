// The add-canvas dialog of a point: a margin all round, or the canvas
// doubled on one side. Its answer is "M" and the margin, or the side's
// letter "L", "R", "U", "D"; "" when cancelled.
#pragma once

#include <QDialog>
#include <string>

class QSpinBox;

namespace korvex::gui {

class CanvasDialog : public QDialog {
    Q_OBJECT
public:
    explicit CanvasDialog(QWidget* parent = nullptr);
    const std::string& answer() const { return answer_; }
    QSpinBox* margin_box() const { return margin_; }

private:
    void choose(const std::string& answer);
    std::string answer_;
    QSpinBox* margin_ = nullptr;
};

// The dialog's answer, "" for cancel.
std::string ask_canvas(QWidget* parent);

}  // namespace korvex::gui
