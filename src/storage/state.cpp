// The storage state, its trace file "saida.txt" and the alerts storage shows.
#include "storage/state.h"

#include "zelqa/boxes.h"

namespace zq::storage {
namespace {

StorageState storageState;

} // namespace

StorageState &state() { return storageState; }

void trace(const char *text) {
    StorageState &s = state();
    if (!s.trace)
        s.trace = std::fopen("saida.txt", "ab+");
    if (!s.trace)
        return;
    std::fprintf(s.trace, "%s\n", text);
    std::fflush(s.trace);
}

void alert(const std::string &text) { __gMessageBox("Alert", text.c_str()); }

void alertAfterError(const std::string &text) {
    MostraErro();
    alert(text);
}

} // namespace zq::storage
