// The installer's test for an existing file, which lowers the path it is given.
#pragma once

#include <string>

namespace zq::installer {

// True when the path (in the case given) finds an entry whose size's low 32 bits are not
// zero and whose name, lowered, is not empty and occurs in the path. Once an entry of
// non-zero size is found, `path` is lowered in place (current locale's tolower), whatever
// the result; otherwise it is left as it was.
bool fileExists(std::string &path);

} // namespace zq::installer
