// The night option of an element: the "Has Night BMP" tick of a point (a
// second picture with a palette of its own) and of a line or polygon (a
// second pair of colours over the same bitmap), the preview of the night
// look, the reversal of a line's pair and the removal of the night that
// other changes of an extended point need first.
#pragma once

#include "editor/editor_session.h"
#include "editor/raster.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The "Has Night BMP" tick. Points: on makes a night picture, a copy of the
// day one with its palette, waiting as new (newbmp); off asks "This will
// delete current night colours . Continue?" and drops it, the day coming
// back to the canvas. Lines and polygons: on copies the day colours as night
// colours (a transparent one becomes white, "Transparent colour changed to
// 'white'."), turns the extended labels on ("Font colours require the
// extended option ticked." when they were off) and tells "To Edit colours
// Click Edit Night Colours."; off drops the night colours. False when
// nothing changed.
bool set_night(EditorSession& e, bool on, platform::Prompt& ui);

// A point's night picture is dropped: the day picture goes back on the
// canvas first if the night one is shown. For the flows that cannot keep a
// night (a resize, a crop).
void drop_point_night(EditorSession& e);

// Has the element a night version (picture or colours)?
bool has_night(const EditorSession& e);

// resetnight: before a change of the transparency or the palette of an
// extended point with a night picture. With the night on the canvas,
// "Revert to day colours before changing transparency option." refuses;
// otherwise "This requires removing night option. Continue?" and yes drops
// the night. True when the change may go on.
bool resetnight(EditorSession& e, platform::Prompt& ui);

// The reverse button of a polygon or line: the two colours change places in
// the bitmap (each pixel takes the other colour). A line or polygon with
// night colours and a transparent colour asks "Both day & night colours are
// reversed due to transparency. Continue?" first, as the night shares the
// bitmap. False when refused or declined.
bool reverse_pair(EditorSession& e, platform::Prompt& ui);

// nightvers: the night look for the preview. A point shows its night
// picture; a line or polygon its bitmap in the night colours (a solid one
// its night colour bands); empty without night.
Raster nightvers(const EditorSession& e);

}  // namespace korvex::editor
