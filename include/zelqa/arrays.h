/* zelqa/arrays.h: arrays of values, 0-based inside the runtime, 1-based in the language. */
#ifndef ZELQA_ARRAYS_H
#define ZELQA_ARRAYS_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

ZQ_API pObj __CreateArray(pObj first, ...) ZQ_NOEXCEPT;
ZQ_API pObj __NewArrayElement(pObj a, pObj x) ZQ_NOEXCEPT;
ZQ_API pObj __GET_ARRAY_EL(pObj a, int32_t i) ZQ_NOEXCEPT;
ZQ_API pObj __SET_ARRAY_EL(pObj a, pObj x, int32_t i) ZQ_NOEXCEPT;
ZQ_API int32_t __Array_Get_Amnt_Itens(pObj a) ZQ_NOEXCEPT;
ZQ_API pObj __KillArray(pObj a) ZQ_NOEXCEPT;
ZQ_API void __KillArrayEl(ArrayHeader *header) ZQ_NOEXCEPT;
ZQ_API pObj __ASize(pObj a, pObj n) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
