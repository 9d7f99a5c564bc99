// The transparent tick (transp): the selected colour becomes the one
// transparent entry of the palette, or solid again.
#pragma once

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The entry the tick works on: the selected one; a group of polygons always
// its first entry, a group of lines its second.
int transp_entry_of(const EditorSession& e);

// transp(on): the entry's colour is noted and it takes the transparency
// marker. Only one entry is transparent: a transparent entry elsewhere hands
// its pixels to this one and leaves the palette, the entries above it moving
// down (an extended point whose first entry is ticked keeps the old entry
// instead, solid again in its noted colour or white). Polygons and lines
// follow their class rule ("First palette colour cannot be transparent.",
// "Make 2nd palette colour transparent then click 'reverse'."). In opacity
// mode "Please set opacity of one color to 15" refuses; an extended point
// needs resetnight. transp(off): the noted colour comes back; "Can't make
// transparent solid" when the entry has none. False when refused or when
// nothing changed.
bool transp(EditorSession& e, bool on, platform::Prompt& ui);

}  // namespace korvex::editor
