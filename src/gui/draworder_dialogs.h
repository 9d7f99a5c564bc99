// The dialogs of the draw-order workbench: levels for selected polygons, a
// separate entry, and the list of entries to remove. They only collect what
// the user chose; the logic checks it and may keep them open.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "workbench/draw_order_ops.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace korvex::gui {

// "Draworders for Selected Polygons".
class DrawselDialog : public QDialog {
    Q_OBJECT
public:
    DrawselDialog(int level_limit, QWidget* parent = nullptr);
    workbench::DrawselMode mode() const;
    int start() const;
    QRadioButton* each_option() const { return each_; }
    QRadioButton* same_option() const { return same_; }
    QComboBox* levels() const { return levels_; }

private:
    QRadioButton* each_;
    QRadioButton* same_;
    QLabel* caption_;
    QComboBox* levels_;
};

// "Add Separate Draworder": type, subtype, draworder. OK asks the check
// given; a refusal keeps the dialog open.
class EdpolDialog : public QDialog {
    Q_OBJECT
public:
    using Check = std::function<bool(const workbench::EdpolRequest&)>;
    EdpolDialog(int level_limit, Check check, QWidget* parent = nullptr);
    // Fills the fields for the edit of an entry.
    void edit(const std::string& code, int level, int32_t entry);
    workbench::EdpolRequest request() const;
    QLineEdit* type_field() const { return type_; }
    QLineEdit* subtype_field() const { return subtype_; }
    QComboBox* level_field() const { return level_; }
    QCheckBox* duplicate_box() const { return duplicate_; }
    void accept() override;

private:
    Check check_;
    QLineEdit* type_;
    QLineEdit* subtype_;
    QComboBox* level_;
    QCheckBox* duplicate_;
    int32_t entry_ = -1;
};

// The redundant dialog: mode 0 the entries without a polygon, mode 1 those
// of the selection; every entry starts ticked.
class RedundDialog : public QDialog {
    Q_OBJECT
public:
    RedundDialog(int mode, const std::vector<workbench::RedundantItem>& items, QWidget* parent = nullptr);
    std::vector<int32_t> ticked() const;
    QListWidget* list() const { return list_; }

private:
    std::vector<workbench::RedundantItem> items_;
    QListWidget* list_;
};

}  // namespace korvex::gui
