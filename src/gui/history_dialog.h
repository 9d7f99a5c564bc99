// Edit > History…: the steps of the project's history, oldest first, below
// the state the project was opened in; the state on show is marked. The
// chosen entry is the position to go to.
#pragma once

#include <QDialog>
#include <cstddef>
#include <string>
#include <vector>

#include "integration/messages.h"

class QListWidget;

namespace korvex::gui {

class HistoryDialog : public QDialog {
    Q_OBJECT
public:
    // position: how many of names are done.
    HistoryDialog(const std::vector<std::string>& names, size_t position, const integration::Messages& msgs,
                  QWidget* parent = nullptr);

    QListWidget* list() const { return list_; }
    // The position the chosen entry stands for (0: before every step).
    size_t chosen() const;

private:
    QListWidget* list_ = nullptr;
};

}  // namespace korvex::gui
