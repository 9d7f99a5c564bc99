// The colour dialog (cmcolor): a hex box, boxes for red, green, blue and
// hue, saturation, value, the 24 fixed swatches and the two shade bars of
// the picked colour. The rules are in editor/colour_picker.h.
#pragma once

#include <QDialog>
#include <cstdint>

#include "platform/prompt.h"

class QLabel;
class QLineEdit;

namespace korvex::gui {

class PaletteWidget;

class ColourDialog : public QDialog {
    Q_OBJECT
public:
    ColourDialog(uint32_t colour, platform::Prompt& ui, QWidget* parent = nullptr);

    uint32_t colour() const { return colour_; }  // red in the low byte
    void set_colour(uint32_t colour);
    QLineEdit* hex_box() const { return hex_; }
    QLineEdit* number_box(int index) const { return boxes_[index]; }  // red, green, blue, hue, sat, value
    PaletteWidget* swatches() const { return swatches_; }
    // A step of a shade bar: dark (towards black) or light, step 0..127.
    void pick_shade(bool light, int step);

private:
    void show_colour(QLineEdit* keep);
    void number_edited(int index);

    platform::Prompt& ui_;
    uint32_t colour_ = 0;
    uint32_t base_ = 0;  // the colour the shade bars are made from
    bool filling_ = false;
    QLineEdit* hex_ = nullptr;
    QLineEdit* boxes_[6] = {};
    PaletteWidget* swatches_ = nullptr;
    QWidget* dark_ = nullptr;
    QWidget* light_ = nullptr;
    QLabel* sample_ = nullptr;
};

// cmcolor: the colour picked, or -1 when the dialog was cancelled.
int64_t cmcolor(uint32_t colour, platform::Prompt& ui, QWidget* parent);

}  // namespace korvex::gui
