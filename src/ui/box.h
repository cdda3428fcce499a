// The one routine every box of the system passes through, and the active window it belongs to.
#pragma once

namespace zq::ui {

// Shows a modal box and returns the button pressed (0 when nobody could answer).
//
// The answer comes from the box hook when one is set, else from ZELQA_BOX_ANSWER when it
// holds a number, else from the real box. Without a hook, ZELQA_BOX_LOG receives a line
// "caption<TAB>style<TAB>text" per box. While the box is up the box-open flag is 1; the
// swallow-next-key flag is set; afterwards the active window is repainted.
int showBox(void *owner, const char *caption, const char *text, unsigned style);

// Appends "caption<TAB>style<TAB>text" to the file ZELQA_BOX_LOG names, if any; line breaks
// in the text are written as \n.
void appendToBoxLog(const char *caption, const char *text, unsigned style);

// True when ZELQA_BOX_ANSWER holds a number: nobody is at the screen.
bool unattended();

// The window most recently activated, or null.
void *activeWindow();

} // namespace zq::ui
