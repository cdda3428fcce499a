// __Fonetizar: the phonetic form of a text, made by the entry "ALPHA2" of the phonetic
// library, which is looked for beside the program on first use and kept for the process.
//
// The entry takes a pointer to the work buffer's length (in and out), a pointer to a
// one-character mode flag and the work buffer, and returns 0 on failure. The buffer is
// the text followed by 128 spaces; the phonetic form comes back in it.
#include "library/phonetic.h"

#include "library/arguments.h"
#include "platform/dynamic_library.h"
#include "platform/process.h"
#include "runtime/memory.h"
#include "zelqa/math.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace zq::library {

namespace {

using PhoneticEntry = int (*)(int32_t *length, char *flag, char *buffer);

struct PhoneticLibrary {
    bool looked = false;
    PhoneticEntry entry = nullptr;
};
PhoneticLibrary phonetic;

std::string libraryFile() {
    const char *name = platform::directorySeparator() == '/' ? "libalpha22.so" : "alpha22.dll";
    return platform::programDirectory() + platform::directorySeparator() + name;
}

PhoneticEntry phoneticEntry() {
    if (!phonetic.looked) {
        phonetic.looked = true;
        void *library = platform::loadLibrary(libraryFile().c_str());
        phonetic.entry = reinterpret_cast<PhoneticEntry>(platform::findEntry(library, "ALPHA2"));
    }
    return phonetic.entry;
}

} // namespace

void forgetPhoneticLibrary() { phonetic = {}; }

} // namespace zq::library

using namespace zq::library;

pObj __Fonetizar(pObj mode, pObj text) noexcept {
    std::string_view m = textOf(requireText(mode));
    std::string_view s = textOf(requireText(text));
    char flag[2] = {!m.empty() && m[0] == 'F' ? '0' : '1', '\0'};
    auto length = static_cast<int32_t>(s.size() + 128);
    PhoneticEntry entry = phoneticEntry();
    if (!entry)
        return newText(0); // no library or no entry: no phonetic text
    auto *buffer = static_cast<char *>(zq::runtime::allocate(static_cast<size_t>(length) + 1));
    std::memset(buffer, ' ', static_cast<size_t>(length));
    std::memcpy(buffer, s.data(), s.size());
    int32_t size = length;
    std::string result;
    if (entry(&size, flag, buffer) != 0) {
        size_t n = static_cast<size_t>(std::clamp(size, 0, length));
        result.assign(buffer, std::find(buffer, buffer + n, '\0'));
    }
    zq::runtime::release(buffer);
    return freshText(result);
}
