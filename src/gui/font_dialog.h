// The font conversion dialog (fontconv) in its three modes: the font form on
// the selection (14) or on whole classes (13), and the colour form (16).
// OK hands the request to the logic; a refusal keeps the dialog open.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "integration/font_conversion.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QRadioButton;

namespace korvex::gui {

class FontDialog : public QDialog {
    Q_OBJECT
public:
    // run is called with the request on OK; true closes the dialog.
    using Run = std::function<bool(const integration::FontRequest&)>;
    FontDialog(int mode, const integration::FontRequest& start, Run run, QWidget* parent = nullptr);

    integration::FontRequest request() const;

    QRadioButton* option(int k) const { return options_[static_cast<size_t>(k)]; }
    QComboBox* fonts() const { return fonts_; }
    QCheckBox* select_all() const { return select_all_; }
    QCheckBox* class_box(int cls) const { return boxes_[static_cast<size_t>(cls)]; }
    QPushButton* day_cell() const { return day_; }
    QPushButton* night_cell() const { return night_; }
    QPushButton* ok_button() const { return ok_; }
    // The colours as they stand in the cells (RRGGBB).
    void set_colours(const std::string& day, const std::string& night);

    void accept() override;

private:
    void pick(QPushButton* cell, std::string& colour);
    static void paint_cell(QPushButton* cell, const std::string& colour);

    int mode_;
    Run run_;
    std::array<QRadioButton*, 4> options_{};
    QComboBox* fonts_ = nullptr;
    std::array<QCheckBox*, 3> boxes_{};  // polygons, lines, points
    QCheckBox* select_all_ = nullptr;
    QPushButton* day_ = nullptr;
    QPushButton* night_ = nullptr;
    QPushButton* ok_ = nullptr;
    std::string day_colour_, night_colour_;
};

}  // namespace korvex::gui
