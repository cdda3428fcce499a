/* zelqa/boxes.h: modal message boxes, and how unattended runs answer them. */
#ifndef ZELQA_BOXES_H
#define ZELQA_BOXES_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Box styles, as the Win32 message box takes them. */
enum {
    ZQ_BOX_STOP = 16,        /* stop icon, OK */
    ZQ_BOX_YESNO = 36,       /* question icon, Yes and No */
    ZQ_BOX_EXCLAMATION = 48, /* exclamation icon, OK */
    ZQ_BOX_INFORMATION = 64  /* information icon, OK */
};
/* Buttons a box returns. */
enum { ZQ_BUTTON_NONE = 0, ZQ_BUTTON_OK = 1, ZQ_BUTTON_YES = 6, ZQ_BUTTON_NO = 7 };

typedef int (*zq_box_hook)(const char *caption, const char *text, unsigned style);
/* Replaces every box (the "Fatal Error" window included); null restores the default. */
ZQ_API void zq_set_box_hook(zq_box_hook hook) ZQ_NOEXCEPT;

/* The "Alert" family: an exclamation box with OK; texts shorter than 512 bytes. */
ZQ_API void __gMessageBox(const char *caption, const char *text) ZQ_NOEXCEPT;
ZQ_API pObj __MsgAlert(pObj text, pObj title) ZQ_NOEXCEPT;
ZQ_API pObj __MsgStop(pObj text, pObj title) ZQ_NOEXCEPT;
ZQ_API pObj __MsgYesNo(pObj text, pObj title) ZQ_NOEXCEPT;
ZQ_API pObj __Alert(pObj value) ZQ_NOEXCEPT;
/* Shows the last system error, if any; returns its code (0 = none, nothing shown). */
ZQ_API uint32_t MostraErro(void) ZQ_NOEXCEPT;
/* Draws text at (x, y) on the active window; non-zero when drawn. */
ZQ_API int __DspMsg(const char *text, int x, int y) ZQ_NOEXCEPT;

/* The information window (progress texts such as printing's) goes to this hook instead
   when one is set: it gets each text shown, and null when the window is cleared. Without
   a hook, ZELQA_BOX_LOG receives "OO_Info32<TAB>0<TAB>text" for each text shown. */
typedef void (*zq_info_hook)(const char *text);
ZQ_API void zq_set_info_hook(zq_info_hook hook) ZQ_NOEXCEPT;

/* The box flags the user interface reads, and the active window they depend on. */
ZQ_API int zq_box_open(void) ZQ_NOEXCEPT;
ZQ_API int zq_take_swallowed_key(void) ZQ_NOEXCEPT; /* 1 once after a box: drop this key */
ZQ_API void __ActivateWin(void *window) ZQ_NOEXCEPT;
ZQ_API void __CloseDialog(void) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
