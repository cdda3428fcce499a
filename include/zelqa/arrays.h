/* zelqa/arrays.h: arrays of values, 0-based inside the runtime, 1-based in the language. */
#ifndef ZELQA_ARRAYS_H
#define ZELQA_ARRAYS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Runtime level, 0-based indexes. Bad arguments raise "ARGUMENT ERROR!", indexes outside
   the array "BOUND ERROR!". */
ZQ_API pObj __CreateArray(pObj first, ...) ZQ_NOEXCEPT;            /* list ends with NUL */
ZQ_API pObj __NewArrayElement(pObj a, pObj x) ZQ_NOEXCEPT;         /* the new element */
ZQ_API pObj __GET_ARRAY_EL(pObj a, int32_t i) ZQ_NOEXCEPT;         /* nested arrays as themselves */
ZQ_API pObj __SET_ARRAY_EL(pObj a, pObj x, int32_t i) ZQ_NOEXCEPT; /* the element */
ZQ_API int32_t __Array_Get_Amnt_Itens(pObj a) ZQ_NOEXCEPT;         /* -1 without header */
ZQ_API pObj __Array_Get_Item(pObj a, pObj nIndex) ZQ_NOEXCEPT;     /* 1-based */
ZQ_API pObj __ARRAY_EL(pObj a, ...) ZQ_NOEXCEPT;                   /* 1-based indexes, NUL-ended */
ZQ_API void __SwapElements(pObj x, pObj y) ZQ_NOEXCEPT;            /* payloads of one type only */
ZQ_API int __Comp(pObj x, pObj y) ZQ_NOEXCEPT;                     /* -1, 0, 1 */
/* Destruction: only records of the current depth or deeper and not locked go. */
ZQ_API pObj __KillArray(pObj a) ZQ_NOEXCEPT;                        /* the next array listed */
ZQ_API void __KillArrayEl(ArrayHeader *header) ZQ_NOEXCEPT;

/* Language level, 1-based positions. */
ZQ_API pObj __Array(pObj nDim1, ...) ZQ_NOEXCEPT;                   /* dimensions, NUL-ended */
ZQ_API pObj __AAdd(pObj a, pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __ASize(pObj a, pObj n) ZQ_NOEXCEPT;
ZQ_API pObj __AIns(pObj a, pObj nPos) ZQ_NOEXCEPT;
ZQ_API pObj __ADel(pObj a, pObj nPos) ZQ_NOEXCEPT;
ZQ_API pObj __DelEl(pObj a, pObj nPos, pObj lFill) ZQ_NOEXCEPT;    /* no filler when lFill is false or 0 */
ZQ_API pObj __ATail(pObj a) ZQ_NOEXCEPT;                            /* null when empty */
ZQ_API pObj __AScan(pObj a, pObj x, pObj nStart, pObj nCount, pObj nColumn) ZQ_NOEXCEPT;
ZQ_API pObj __ASORT(pObj a, pObj nStart, pObj nCount, pObj lAscending, pObj nColumn) ZQ_NOEXCEPT;
ZQ_API pObj __CopyArray(pObj a) ZQ_NOEXCEPT;
ZQ_API pObj __ACopy(pObj aSource, pObj aTarget, pObj nStart, pObj nCount, pObj nTargetPos) ZQ_NOEXCEPT;
ZQ_API pObj __AClone(pObj a) ZQ_NOEXCEPT;

/* Saved arrays, kept in kind-named databases of kind 'L'. */
ZQ_API void __RegisterArray(pObj array, pObj baseName) ZQ_NOEXCEPT; /* dumped by a runtime error */
ZQ_API void ExecDumpArray(pObj array, pObj baseName) ZQ_NOEXCEPT;
ZQ_API pObj __RestoreArray(pObj baseName) ZQ_NOEXCEPT;              /* NIL when nothing saved */

ZQ_EXTERN_C_END

#endif
