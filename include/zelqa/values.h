/* zelqa/values.h: constructing, assigning and releasing value records. */
#ifndef ZELQA_VALUES_H
#define ZELQA_VALUES_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Temporaries drawn from the ring; valid until the ring comes round again. */
ZQ_API pObj __INIT_LONG(int32_t value) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_DOUBLE(double value) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_DATE(double dayNumber) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_HANDLE(void *handle) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_VOIDPTR(void *pointer) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_CHARPTR(const char *text) ZQ_NOEXCEPT;  /* null gives "" */
ZQ_API pObj __ALLOC_CHARPTR(int32_t n) ZQ_NOEXCEPT;        /* n zero bytes */

/* The one static literal record: each call overwrites the previous literal; null gives "". */
ZQ_API pObj __INIT_CHARCONST(const char *text) ZQ_NOEXCEPT;

/* Shared constants: never to be changed by the caller. */
ZQ_API pObj __INIT_BOOL(int value) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_NIL(void) ZQ_NOEXCEPT;
ZQ_API pObj __INIT_NUL(void) ZQ_NOEXCEPT;

/* A new heap record in owner list 0 (array), 1 (variable) or 2 (element, unlisted). */
ZQ_API pObj __fcpObj_CT(int list) ZQ_NOEXCEPT;
/* Clears the caller's record into a variable of the given type (a TYPE_* tag; anything
   else, or no record, raises "ARGUMENT ERROR!"). */
ZQ_API pObj __InitObjNode(pObj rec, uint32_t type) ZQ_NOEXCEPT;

/* Assigns src into dst; returns the record that now holds the value. */
ZQ_API pObj __SET_OBJECT(pObj dst, pObj src) ZQ_NOEXCEPT;
/* Makes the variable behind slot (NIL) when it is null; returns it. */
ZQ_API pObj __ByRef(pObj *slot) ZQ_NOEXCEPT;
/* Releases a variable; returns the next record of the variables list, or null. */
ZQ_API pObj __fcObj_DT(pObj rec) ZQ_NOEXCEPT;

/* Shows the allocation balance and list counts in an "Alert" box. */
ZQ_API void ShowFreeMem(void) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
