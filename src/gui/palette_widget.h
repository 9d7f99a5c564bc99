// A row-wrapped strip of colour cells: the element's palette or the chooser
// palette. It shows colours and marks and reports clicks by cell index from 0.
#pragma once

#include <QWidget>
#include <cstdint>
#include <vector>

namespace korvex::gui {

class PaletteWidget : public QWidget {
    Q_OBJECT
public:
    explicit PaletteWidget(QWidget* parent = nullptr, int cell = 22);

    // Colours red in the low byte; marker is the transparency colour (its
    // cells show "T"), -1 for none.
    void set_colours(const std::vector<uint32_t>& colours, int64_t marker = -1);
    // A level under each cell (opacity mode), none when empty.
    void set_levels(std::vector<int> levels);
    // Frames around the cells of the two buttons' colours (-1 for none).
    void set_marks(int primary, int secondary);
    // A hidden cell keeps its place but shows nothing and takes no click,
    // until set_colours fills the strip again.
    void hide_cell(int index);
    bool hidden(int index) const;
    int count() const { return static_cast<int>(colours_.size()); }
    // The cell at a position, -1 outside.
    int cell_at(QPoint pos) const;
    QRect cell_rect(int index) const;
    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int w) const override;

signals:
    void clicked(int index, bool right);
    void double_clicked(int index);

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;
    void resizeEvent(QResizeEvent*) override;

private:
    int columns(int width) const;
    std::vector<uint32_t> colours_;
    std::vector<bool> hidden_;
    int64_t marker_ = -1;
    std::vector<int> levels_;
    int primary_ = -1, secondary_ = -1;
    int cell_;
};

}  // namespace korvex::gui
