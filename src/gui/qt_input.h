// Keys held with a click, for the views that report clicks with their keys.
#pragma once

#include <QInputEvent>

namespace korvex::gui {

inline bool has_modifier(const QInputEvent* e, Qt::KeyboardModifier m) { return e->modifiers().testFlag(m); }

}  // namespace korvex::gui
