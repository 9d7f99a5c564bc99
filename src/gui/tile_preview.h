// The look of the picture on the map: a polygon's bitmap tiled over a
// panel, a line's bitmap repeated along a band, transparent pixels showing
// the panel's background rgb(240,240,255).
#pragma once

#include <QLabel>

#include "editor/editor_session.h"

namespace korvex::gui {

class TilePreview : public QLabel {
    Q_OBJECT
public:
    explicit TilePreview(const editor::EditorSession& e, QWidget* parent = nullptr);
    // Paints the preview from the surface again.
    void refresh();

private:
    const editor::EditorSession& e_;
};

}  // namespace korvex::gui
