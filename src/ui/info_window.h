// The runtime's information window: progress texts that stay up while work goes on.
#pragma once

namespace zq::ui {

// Shows text in the information window, replacing what it showed.
//
// The info hook gets the text when one is set. Otherwise ZELQA_BOX_LOG receives a line
// "OO_Info32<TAB>0<TAB>text", and the window itself is shown unless the run is unattended
// (ZELQA_BOX_ANSWER holds a number).
void showInfo(const char *text);

// Removes the information window; the hook gets a null text.
void clearInfo();

} // namespace zq::ui
