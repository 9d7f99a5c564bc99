// The dialogs of the New flows: poisizes (polygons, points, extra points) and
// the new-line dialog with its activities. Each edits a NewElementForm; OK
// runs the logic's check_form, says its refusals and stays open on one.
#pragma once

#include <QDialog>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/prompt.h"
#include "workbench/element_ops.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace korvex::gui {

// What both dialogs check against.
struct FormChecks {
    const model::Store& s;
    const integration::Messages& msgs;
    platform::Prompt& ui;
};

class PoiSizesDialog : public QDialog {
    Q_OBJECT
public:
    PoiSizesDialog(const workbench::NewElementForm& form, FormChecks checks, QWidget* parent = nullptr);
    // The form as the controls fill it.
    workbench::NewElementForm form() const;
    // OK: checks; closes accepted when nothing is refused.
    void ok();

private:
    workbench::NewElementForm form_;
    FormChecks checks_;
    QLineEdit* type_ = nullptr;
    QLineEdit* text_ = nullptr;
    QSpinBox* level_ = nullptr;
    QSpinBox* width_ = nullptr;
    QSpinBox* height_ = nullptr;
    QCheckBox* night_ = nullptr;
    QRadioButton* hex_ = nullptr;
};

class NewLineDialog : public QDialog {
    Q_OBJECT
public:
    NewLineDialog(const workbench::NewElementForm& form, FormChecks checks, QWidget* parent = nullptr);
    workbench::NewElementForm form() const;
    void ok();

private:
    workbench::NewElementForm form_;
    FormChecks checks_;
    QComboBox* type_ = nullptr;
    QLineEdit* text_ = nullptr;
    QComboBox* activity_ = nullptr;
};

// The two dialogs as the logic asks for them, modal over the window.
class QtElementDialogs : public workbench::ElementDialogs {
public:
    QtElementDialogs(FormChecks checks, QWidget* parent) : checks_(checks), parent_(parent) {}
    bool poisizes(workbench::NewElementForm& form) override;
    bool new_line(workbench::NewElementForm& form) override;

private:
    FormChecks checks_;
    QWidget* parent_;
};

}  // namespace korvex::gui
