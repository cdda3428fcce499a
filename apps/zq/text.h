// Texts at the tool's edges: stored texts are Latin-1, everything the tool prints or
// writes to CSV and XLSX is UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace zq::tool {

std::string latin1ToUtf8(std::string_view latin1);
// False when the text is not valid UTF-8 or holds a character beyond U+00FF.
bool utf8ToLatin1(std::string_view utf8, std::string &latin1);

// Characters a Latin-1 text shows as (one per byte).
inline size_t shownWidth(std::string_view latin1) { return latin1.size(); }

std::string upper(std::string_view text);
std::string trim(std::string_view text);
bool sameCaseless(std::string_view a, std::string_view b);

} // namespace zq::tool
