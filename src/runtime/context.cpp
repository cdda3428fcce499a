// Building and tearing down the runtime context, its shared constants and start-up settings.
#include "runtime/context.h"

#include "runtime/memory.h"
#include "runtime/owner_lists.h"
#include "runtime/raise.h"
#include "runtime/settings.h"
#include "runtime/temporaries.h"
#include "zelqa/context.h"
#include "zelqa/values.h"

#include <cstring>

namespace zq::runtime {
namespace {

RuntimeContext *current = nullptr;

void setConstant(Obj &c, uint32_t type) {
    c.storageClass = CLASS_NEWCOPY;
    c.type = type;
    c.objLength = -1;
    c.lockCount = 1;
    c.depth = -1;
}

void buildSharedConstants(RuntimeContext &ctx) {
    for (Obj &c : ctx.constants)
        setConstant(c, TYPE_NIL);
    setConstant(ctx.constants[kFalse], TYPE_LOGICAL);
    setConstant(ctx.constants[kTrue], TYPE_LOGICAL);
    ctx.constants[kTrue].payload.l = 1;
    for (int i : {int(kZero), int(kOne), int(kScanNotFound), int(kNoField)})
        setConstant(ctx.constants[i], TYPE_NUMERIC);
    ctx.constants[kOne].payload.d = 1.0;
    setConstant(ctx.constants[kNoBufferText], TYPE_CHAR);
    setConstant(ctx.constants[kEmptyText], TYPE_CHAR);
    ctx.constants[kEmptyText].objLength = 1;
    ctx.constants[kEmptyText].payload.c = static_cast<char *>(allocate(2));
    setConstant(ctx.constants[kNul], TYPE_NUL);
}

RuntimeContext *buildContext() {
    auto *ctx = static_cast<RuntimeContext *>(tryAllocate(sizeof(RuntimeContext)));
    if (!ctx)
        raiseError(ZQ_ERR_LOW_MEMORY);
    for (OwnerList &list : ctx->lists) {
        list.recordSize = 32;
        list.constructor = __fcpObj_CT;
    }
    current = ctx; // from here on, raising can list and release what exists
    if (!buildTemporaryRing(*ctx))
        raiseError(ZQ_ERR_LOW_MEMORY);
    buildSharedConstants(*ctx);
    ctx->depth = 1;
    setStartupSettings(*ctx);
    return ctx;
}

} // namespace

RuntimeContext *existingContext() { return current; }

RuntimeContext &context() {
    if (!current)
        __BeginGlobal();
    return *current;
}

void destroyContext() {
    if (!current)
        return;
    RuntimeContext &ctx = *current;
    releaseAllOwnedRecords(ctx);
    destroyTemporaryRing(ctx);
    release(ctx.constants[kEmptyText].payload.c);
    while (DebugFrame *frame = ctx.frames) {
        ctx.frames = frame->next;
        release(frame);
    }
    while (NativeFunction *entry = ctx.nativeFunctions) {
        ctx.nativeFunctions = entry->next;
        release(entry);
    }
    current = nullptr;
    release(&ctx);
}

void *newContext() {
    destroyContext();
    return buildContext();
}

} // namespace zq::runtime

void *__RetGlob(int flag) noexcept {
    if (flag)
        return zq::runtime::newContext();
    return zq::runtime::existingContext();
}
