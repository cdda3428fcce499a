// The language's message boxes: alerts, stop and yes/no boxes, value display, system errors.
#include "platform/boxes.h"
#include "platform/system_error.h"
#include "runtime/context.h"
#include "runtime/raise.h"
#include "ui/box.h"
#include "zelqa/boxes.h"
#include "zelqa/dates.h"
#include "zelqa/values.h"

#include <cstdio>
#include <cstring>

using namespace zq::runtime;
using zq::ui::showBox;

namespace {

constexpr size_t kBoxTextSize = 512;

// The title's text, or the default copied to scratch; a title that is not text is not
// checked, but its payload is never read as text.
const char *titleOrDefault(pObj title, const char *fallback) {
    if (title && title->type == TYPE_CHAR && title->payload.c)
        return title->payload.c;
    char *scratch = context().scratch;
    std::snprintf(scratch, kScratchSize, "%s", fallback);
    return scratch;
}

bool languageBox(pObj text, pObj title, const char *defaultTitle, unsigned style, int yes) {
    requireArgument(text && text->type == TYPE_CHAR);
    const char *caption = titleOrDefault(title, defaultTitle);
    return showBox(zq::ui::activeWindow(), caption, text->payload.c ? text->payload.c : "", style) == yes;
}

// The eight digits yyyymmdd of a day number.
void formatDateDigits(double day, char *out, size_t size) {
    uint32_t y, m, d;
    __DecodeDate(day, &y, &m, &d);
    std::snprintf(out, size, "%04u%02u%02u", y, m, d);
}

const char *alertText(pObj value) {
    char *scratch = context().scratch;
    switch (value->type) {
    case TYPE_CHAR: return value->payload.c ? value->payload.c : "";
    case TYPE_ARRAY: return value->storageClass == CLASS_ARRAY ? "{..}" : "{sub array...}";
    case TYPE_DATE: formatDateDigits(value->payload.d, scratch, kScratchSize); return scratch;
    case TYPE_NUMERIC: std::snprintf(scratch, kScratchSize, "%f", value->payload.d); return scratch;
    case TYPE_LOGICAL: return value->payload.l == 1 ? ".T." : ".F.";
    case TYPE_NIL: return "nil";
    case TYPE_NUL: return "nul";
    default: return "outros";
    }
}

} // namespace

void __gMessageBox(const char *caption, const char *text) noexcept {
    char captionBuffer[kBoxTextSize] = {};
    char textBuffer[kBoxTextSize] = {};
    std::strncpy(captionBuffer, caption ? caption : "", kBoxTextSize - 1);
    std::strncpy(textBuffer, text ? text : "", kBoxTextSize - 1);
    showBox(zq::ui::activeWindow(), captionBuffer, textBuffer, ZQ_BOX_EXCLAMATION);
}

pObj __MsgAlert(pObj text, pObj title) noexcept {
    return logical(languageBox(text, title, "ALERT", ZQ_BOX_EXCLAMATION, ZQ_BUTTON_OK));
}

pObj __MsgStop(pObj text, pObj title) noexcept {
    return logical(languageBox(text, title, "STOP", ZQ_BOX_STOP, ZQ_BUTTON_OK));
}

pObj __MsgYesNo(pObj text, pObj title) noexcept {
    return logical(languageBox(text, title, "Please, select", ZQ_BOX_YESNO, ZQ_BUTTON_YES));
}

pObj __Alert(pObj value) noexcept {
    if (!value)
        value = __INIT_NIL();
    pObj text = __INIT_CHARPTR(alertText(value));
    __MsgAlert(text, __INIT_CHARPTR("Alert"));
    return __INIT_NIL();
}

uint32_t MostraErro(void) noexcept {
    uint32_t code = zq::platform::lastSystemError();
    if (code == 0)
        return 0;
    std::string text = zq::platform::systemErrorText(code);
    showBox(nullptr, "Error", text.c_str(), ZQ_BOX_INFORMATION);
    return code;
}

int __DspMsg(const char *text, int x, int y) noexcept {
    void *window = zq::ui::activeWindow();
    if (!window || !text || !*text)
        return 0;
    return zq::platform::drawText(window, text, x, y) ? 1 : 0;
}
