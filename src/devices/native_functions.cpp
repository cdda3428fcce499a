// Native functions the host registers by name and programs test for and call by name.
//
// Entries keep "U_" and the registered name, in registration order; a lookup takes the
// first entry whose name matches exactly, so registering a name twice never replaces it.
// Registration takes names of up to 12 characters but the lookups only up to 11, so a
// 12-character name can be registered and never found.
#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/raise.h"
#include "zelqa/devices.h"

#include <cstdio>
#include <cstring>

using namespace zq::runtime;

namespace {

constexpr size_t kLongestRegisteredName = 12;
constexpr int16_t kLongestLookupLength = 12; // objLength, terminator included

NativeFunction *findEntry(const char *fullName) {
    for (NativeFunction *e = context().nativeFunctions; e; e = e->next)
        if (std::strcmp(e->name, fullName) == 0)
            return e;
    return nullptr;
}

// The entry a lookup's name value reaches, or null; raises on a name that is not text.
NativeFunction *lookUp(pObj name, const char *prefix) {
    if (!name || !context().nativeFunctions)
        return nullptr;
    requireArgument(name->type == TYPE_CHAR);
    if (name->objLength > kLongestLookupLength || !name->payload.c)
        return nullptr;
    char fullName[sizeof(NativeFunction::name)];
    std::snprintf(fullName, sizeof fullName, "%s%s", prefix, name->payload.c);
    return findEntry(fullName);
}

} // namespace

int RegisterBlock(const char *name, pObj (*fn)(pObj)) noexcept {
    if (!name || !fn || !*name || std::strlen(name) > kLongestRegisteredName)
        return 0;
    RuntimeContext &ctx = context();
    ++ctx.registrations;
    auto *entry = static_cast<NativeFunction *>(allocate(sizeof(NativeFunction)));
    std::snprintf(entry->name, sizeof entry->name, "U_%s", name);
    entry->function = fn;
    NativeFunction **tail = &ctx.nativeFunctions;
    while (*tail)
        tail = &(*tail)->next;
    *tail = entry;
    return 1;
}

pObj ExistBlock(pObj name) noexcept { return logical(lookUp(name, "U_") != nullptr); }

pObj ExecBlock(pObj name, pObj, pObj, pObj a3, pObj raw) noexcept {
    bool asItStands = raw && raw->type == TYPE_LOGICAL && raw->payload.l;
    NativeFunction *entry = lookUp(name, asItStands ? "" : "U_");
    if (!entry)
        return logical(false);
    return entry->function(a3);
}
