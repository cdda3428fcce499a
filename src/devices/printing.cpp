// The printing built-ins: load the driver, place text, ask where the head is, unload.
//
// One printer per process: the stream the driver opened (null: no printer) and the
// driver's table, empty until __LoadPrint fills it and again after __UnLoadPrint.
// Progress is shown in the information window, in the texts users know.
#include "devices/arguments.h"
#include "devices/print_driver.h"
#include "platform/processes.h"
#include "platform/windows.h"
#include "runtime/context.h"
#include "runtime/raise.h"
#include "ui/info_window.h"
#include "zelqa/boxes.h"
#include "zelqa/devices.h"
#include "zelqa/errors.h"
#include "zelqa/values.h"

using namespace zq::devices;
using zq::runtime::logical;
using zq::runtime::requireArgument;
using zq::ui::clearInfo;
using zq::ui::showInfo;

namespace {

constexpr uint32_t kFinishedPause = 3000; // ms the last text stays up

std::FILE *printer = nullptr;
PrintDriver driver{};

bool isLogical(pObj v) { return v && v->type == TYPE_LOGICAL; }

int32_t numberOrZero(pObj v) { return v ? wholeNumber(v->payload.d) : 0; }
int logicalOrZero(pObj v) { return v ? (v->payload.l != 0) : 0; }

} // namespace

pObj __LoadPrint(void) noexcept {
    showInfo("Iniciando Impressora");
    zq::platform::serveWindows(0);
    if (printer) // loading again starts a fresh print file; the old stream is not lost
        driver.close(printer);
    driver = printFileDriver();
    printer = driver.open();
    if (!printer)
        zq::runtime::raiseError(ZQ_ERR_RUNTIME);
    showInfo("Impressora Iniciada");
    return logical(true);
}

pObj __IsPrintOn(void) noexcept { return logical(printer != nullptr); }

pObj __PROW(void) noexcept { return printer ? __INIT_DOUBLE(driver.getRow()) : nullptr; }

pObj __PCOL(void) noexcept { return printer ? __INIT_DOUBLE(driver.getColumn()) : nullptr; }

pObj __PrintSetFont(pObj n1, pObj n2, pObj n3, pObj n4, pObj l1, pObj l2, pObj l3) noexcept {
    for (pObj n : {n1, n2, n3, n4})
        requireArgument(!n || isNumber(n));
    for (pObj l : {l1, l2, l3})
        requireArgument(!l || isLogical(l));
    if (!printer)
        return nullptr;
    driver.setFont(numberOrZero(n1), numberOrZero(n2), numberOrZero(n3), numberOrZero(n4), logicalOrZero(l1),
                   logicalOrZero(l2), logicalOrZero(l3));
    return logical(true);
}

pObj __PrintSay(pObj row, pObj column, pObj text) noexcept {
    if (!printer)
        return nullptr;
    requireArgument((!row || isNumber(row)) && (!column || isNumber(column)) && isText(text));
    showInfo("Enviando dados....");
    int32_t length = text->objLength > 0 ? text->objLength - 1 : 0;
    driver.say(printer, sixteenBitNumber(row ? row->payload.d : 0), sixteenBitNumber(column ? column->payload.d : 0),
               text->payload.c ? text->payload.c : "", text->payload.c ? length : 0);
    clearInfo();
    return logical(true);
}

pObj __UnLoadPrint(void) noexcept {
    showInfo("Aguarde....");
    if (!printer) {
        __gMessageBox("Alert", "Impressora n\343o conectada!");
        clearInfo();
        return logical(true);
    }
    showInfo("Finalizando");
    int closed = driver.close(printer);
    showInfo("Liberando Driver");
    zq::platform::serveWindows(0);
    driver = PrintDriver{};
    showInfo("Impress\343o Finalizada");
    zq::platform::serveWindows(kFinishedPause);
    clearInfo();
    printer = nullptr;
    return logical(closed == 0);
}
