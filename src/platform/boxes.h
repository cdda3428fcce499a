// The operating system's modal message box and the repaint the runtime does after one.
#pragma once

namespace zq::platform {

// Shows a modal box owned by owner (null: no owner) and returns the button pressed,
// or 0 when the box could not be shown to anyone.
int showMessageBox(void *owner, const char *caption, const char *text, unsigned style);

// Hides, invalidates, shows, raises and focuses a window, so it repaints fully.
void repaintWindow(void *window);

// Draws text at (x, y) on window with the default font; false when nothing was drawn.
bool drawText(void *window, const char *text, int x, int y);

} // namespace zq::platform
