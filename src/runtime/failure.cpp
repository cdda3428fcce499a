// __RuntimeError: the runtime's single failure path, and the small routines beside it.
//
// Order: compose the text, show the "Fatal Error" box, save the registered arrays, run
// the registered exit routine, close every table (pending rows are written), end with exit
// code 0.
// A fault raised while this is under way skips straight to the end of the process.
#include "runtime/failure.h"

#include "platform/process.h"
#include "runtime/context.h"
#include "runtime/memory.h"
#include "runtime/message_table.h"
#include "runtime/saved_arrays.h"
#include "ui/box.h"
#include "zelqa/boxes.h"
#include "zelqa/errors.h"
#include "zelqa/values.h"


namespace zq::runtime {
namespace {

void (*exitRoutine)() = nullptr;
void (*tableCloser)() = nullptr;
bool ending = false;

void appendActiveFunctions(std::string &text) {
    RuntimeContext *ctx = existingContext();
    if (!ctx)
        return;
    for (DebugFrame *frame = ctx->frames; frame; frame = frame->next) {
        text += "\nCalled from: ";
        text += frame->name ? frame->name : "?";
        text += '(';
        text += std::to_string(frame->line);
        text += ')';
    }
}

} // namespace

void setTableCloser(void (*closeAll)()) { tableCloser = closeAll; }

void closeTables() {
    if (tableCloser)
        tableCloser();
}

std::string composeFatalText(int code, int aux) {
    const char *error = zq_runtime_error_text(code);
    std::string text = error ? error : kRuntimeErrorTexts[ZQ_ERR_RUNTIME];
    if (aux >= 0 && aux < ZQ_AUX_MESSAGE_COUNT && zq_aux_messages[aux]) {
        text += '\n';
        text += zq_aux_messages[aux];
    }
    appendActiveFunctions(text);
    return text;
}

void resumeAfterRuntimeError() { ending = false; }

} // namespace zq::runtime

using namespace zq::runtime;

const char *zq_runtime_error_text(int code) noexcept {
    if (code < 0 || code >= ZQ_RUNTIME_ERROR_COUNT)
        return nullptr;
    return kRuntimeErrorTexts[code];
}

void __RuntimeError(int code, int aux) noexcept {
    if (ending)
        zq::platform::exitProcess(0);
    ending = true;
    std::string text = composeFatalText(code, aux);
    zq::ui::showBox(nullptr, "Fatal Error", text.c_str(), ZQ_BOX_STOP);
    dumpRegisteredArrays();
    if (exitRoutine)
        exitRoutine();
    closeTables();
    zq::platform::exitProcess(0);
}

void __RegisterExit(void (*routine)(void)) noexcept { exitRoutine = routine; }

pObj __GetAuxError(pObj nAux) noexcept {
    if (!nAux || (nAux->type != TYPE_NUMERIC && nAux->type != TYPE_LONG))
        return __INIT_CHARPTR("");
    int aux = nAux->type == TYPE_LONG ? nAux->payload.l : static_cast<int>(nAux->payload.d);
    if (aux < 0 || aux >= ZQ_AUX_MESSAGE_COUNT)
        return __INIT_CHARPTR("");
    return __INIT_CHARPTR(zq_aux_messages[aux]);
}

void zq_enter_function(const char *name, int line) noexcept {
    RuntimeContext &ctx = context();
    if (ctx.frames && ctx.frames->depth == ctx.depth) { // the same function, further on
        ctx.frames->name = name;
        ctx.frames->line = line;
        return;
    }
    auto frame = static_cast<DebugFrame *>(allocate(sizeof(DebugFrame)));
    frame->next = ctx.frames;
    frame->name = name;
    frame->line = line;
    frame->depth = ctx.depth;
    ctx.frames = frame;
}
