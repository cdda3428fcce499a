/* zelqa/devices.h: the serial port, native functions called by name, and printing. */
#ifndef ZELQA_DEVICES_H
#define ZELQA_DEVICES_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Serial port. OPENCOM(port, baud, a, b, c) opens COM<port> at baud, 8 data bits, no
   parity, one stop bit, and raises DTR then RTS; every argument must be a number. The
   result is a handle value, holding 0 when the line could not be opened. */
ZQ_API pObj OPENCOM(pObj port, pObj baud, pObj a, pObj b, pObj c) ZQ_NOEXCEPT;
/* Reads count bytes into the text buffer; the number read (0 at once when the buffer has
   no room for the count and its terminator). See zq_readcom_returns. */
ZQ_API pObj READCOM(pObj handle, pObj buffer, pObj count) ZQ_NOEXCEPT;
/* Sends count bytes of text as the far end is clear to send; the number sent, 0 on failure. */
ZQ_API pObj WRITECOM(pObj handle, pObj text, pObj count) ZQ_NOEXCEPT;
/* Closes a line OPENCOM opened: true when closed. */
ZQ_API pObj CLOSECOM(pObj handle) ZQ_NOEXCEPT;

/* 1 (the default): READCOM returns once the buffer holds the count. 0: READCOM waits on
   after that, as the language's first READCOM did, and comes back (with 0) only when the
   line fails. Returns the previous setting. */
ZQ_API int zq_readcom_returns(int on) ZQ_NOEXCEPT;

/* Native functions registered by the host under "U_" and a name of at most 12
   characters, tested for and called by programs (names of at most 11 characters). */
ZQ_API int RegisterBlock(const char *name, pObj (*fn)(pObj)) ZQ_NOEXCEPT;
ZQ_API pObj ExistBlock(pObj name) ZQ_NOEXCEPT;
/* Calls the function with a3; a1 and a2 are not passed on. raw true: no "U_" prefix. */
ZQ_API pObj ExecBlock(pObj name, pObj a1, pObj a2, pObj a3, pObj raw) ZQ_NOEXCEPT;

/* Printing to the print file "pda.txt" beside the program. */
ZQ_API pObj __LoadPrint(void) ZQ_NOEXCEPT;
ZQ_API pObj __IsPrintOn(void) ZQ_NOEXCEPT;
ZQ_API pObj __PROW(void) ZQ_NOEXCEPT;
ZQ_API pObj __PCOL(void) ZQ_NOEXCEPT;
ZQ_API pObj __PrintSetFont(pObj n1, pObj n2, pObj n3, pObj n4, pObj l1, pObj l2, pObj l3) ZQ_NOEXCEPT;
ZQ_API pObj __PrintSay(pObj row, pObj column, pObj text) ZQ_NOEXCEPT;
ZQ_API pObj __UnLoadPrint(void) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
