// Contexts: the bracket compiled code puts around every function body, and the locking of
// temporaries that must outlive it.
//
// A record belongs to the context whose depth made it. Ending a context releases the
// variables and arrays of that depth or deeper that nothing keeps (a lock count above 0,
// or a depth lowered when an outer variable or array took them), then unlocks the
// temporaries locked at that depth and drops its debug frames.
#include "runtime/arrays.h"
#include "runtime/context.h"

#include "runtime/memory.h"
#include "runtime/temporaries.h"
#include "zelqa/arrays.h"
#include "zelqa/context.h"
#include "zelqa/values.h"

#include <cstdarg>

using namespace zq::runtime;

namespace {

void setTemporaryLock(RuntimeContext &ctx, pObj t, int16_t lock) {
    ctx.lockedTemporaries += (lock > 0) - (t->lockCount > 0);
    t->lockCount = lock;
}

// Keeps ret alive for the caller: it now belongs to the calling context.
void handOut(RuntimeContext &ctx, pObj ret) {
    switch (ret->storageClass) {
    case CLASS_VAR:
    case CLASS_ARRAY:
        // Only a value of the ending context moves out; one that already belongs to an
        // outer context keeps its depth, or returning it would outlive its owner.
        if (ret->depth > 0 && ret->depth >= ctx.depth)
            ret->depth = static_cast<int16_t>(ctx.depth - 1);
        break;
    case CLASS_TEMP:
        setTemporaryLock(ctx, ret, static_cast<int16_t>(ctx.depth - 1));
        break;
    default:
        break; // literals, shared constants and elements are not the context's
    }
}

void releaseVariables(RuntimeContext &ctx) {
    for (pObj v = ctx.lists[kVariableList].head; v;) {
        pObj next = v->next;
        if (v->depth >= ctx.depth && v->lockCount == 0)
            __fcObj_DT(v);
        v = next;
    }
}

// __KillArray answers the array that follows in the list once its work is done, so the
// walk stays valid even when nested arrays elsewhere in the list went with it.
void releaseArrays(RuntimeContext &ctx) {
    beginArraySweep();
    for (pObj a = ctx.lists[kArrayList].head; a;) {
        if (a->depth >= ctx.depth && a->lockCount == 0)
            a = __KillArray(a);
        else
            a = a->next;
    }
    endArraySweep(ctx.lists[kArrayList]);
}

void unlockTemporaries(RuntimeContext &ctx) {
    for (int32_t i = 0; i < ctx.temporaryCount; ++i) {
        pObj t = ctx.temporaries[i];
        if (t->lockCount > ctx.depth) {
            setTemporaryLock(ctx, t, 0);
            dropTemporaryText(t);
        }
    }
}

void dropFrames(RuntimeContext &ctx, int16_t endedDepth) {
    while (DebugFrame *frame = ctx.frames) {
        if (frame->depth < endedDepth)
            break;
        ctx.frames = frame->next;
        release(frame);
    }
}

} // namespace

void __begin_context(void) noexcept { ++context().depth; }

int __KillContext(void) noexcept {
    RuntimeContext &ctx = context();
    // Windows made in this context are closed by the user interface, which keeps none yet.
    releaseVariables(ctx);
    releaseArrays(ctx);
    return ctx.depth;
}

pObj __end_context(pObj ret) noexcept {
    RuntimeContext &ctx = context();
    if (ret)
        handOut(ctx, ret);
    __KillContext();
    const int16_t ended = ctx.depth;
    --ctx.depth;
    unlockTemporaries(ctx);
    dropFrames(ctx, ended);
    return ret;
}

void __LockStack(pObj first, ...) noexcept {
    RuntimeContext &ctx = context();
    va_list args;
    va_start(args, first);
    for (pObj x = first; x && x->type != TYPE_NUL; x = va_arg(args, pObj)) {
        if (x->storageClass == CLASS_TEMP && x->lockCount == 0)
            setTemporaryLock(ctx, x, ctx.depth);
    }
    va_end(args);
}

void __ReleaseStack2(void) noexcept {
    RuntimeContext &ctx = context();
    for (int32_t i = 0; i < ctx.temporaryCount; ++i) {
        if (ctx.temporaries[i]->lockCount == 0)
            dropTemporaryText(ctx.temporaries[i]);
    }
}
