// Pictures: mask types, the lookup of a user-interface object's picture, and the steps
// of __Transform that the picture files share.
#pragma once

#include "zelqa/base.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zq::library {

// The results of __GetMaskType.
enum MaskType { kMaskNone = 0, kMaskUpper = 1, kMaskTemplate = 2, kMaskEuropean = 3, kMaskDate = 4 };

// The picture of the user-interface object with this number, or null when there is no
// such object or it has none. The user-interface objects set it when they exist; until
// then no object has a picture.
using PictureLookup = const char *(*)(int32_t number);
void setPictureLookup(PictureLookup lookup);

// "@R": the value's bytes placed through the template.
std::string applyTemplate(std::string_view templ, std::string_view value);

// "@E" for a text value: its digits and decimal characters laid into the template.
std::string europeanText(std::string_view templ, std::string_view value, char dc);
// "@E" for a number.
std::string europeanNumber(std::string_view templ, double value, char dc);

} // namespace zq::library
