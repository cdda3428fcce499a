// The phonetic library behind __Fonetizar, loaded once per process.
#pragma once

namespace zq::library {

// Forgets the library and entry found so far, so the next __Fonetizar looks again. For
// tests, which load different libraries in one process.
void forgetPhoneticLibrary();

} // namespace zq::library
