// The information window: one small window of progress text that stays up without waiting.
#pragma once

namespace zq::platform {

// Shows text in the information window, making it when window is null; returns the
// window to pass next time (null where the system shows text some other way).
void *showInfoWindow(void *window, const char *text);

// Removes the window shown by showInfoWindow; null is ignored.
void closeInfoWindow(void *window);

} // namespace zq::platform
