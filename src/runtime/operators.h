// Helpers the operator files share: default operands, text views and a guard for temporaries.
#pragma once

#include "runtime/context.h"

#include <cstring>
#include <string_view>

namespace zq::runtime {

// The operand itself, or the operator's shared default when the caller passed none.
inline pObj operandOr(pObj operand, SharedConstant fallback) {
    return operand ? operand : sharedConstant(fallback);
}

// The text of a character value up to its NUL; a value without a buffer reads as the
// empty text. Comparisons go by the NUL alone: a sort exchanges buffers but leaves each
// record's objLength behind, so the length may not describe the buffer.
inline const char *textOf(pObj value) { return value->payload.c ? value->payload.c : ""; }

// The text as above, but never longer than objLength promises, so that room sized from
// the lengths cannot overflow.
inline std::string_view boundedTextOf(pObj value) {
    if (!value->payload.c || value->objLength <= 0)
        return {};
    size_t limit = static_cast<size_t>(value->objLength - 1);
    const void *nul = std::memchr(value->payload.c, '\0', limit);
    return {value->payload.c, nul ? static_cast<size_t>(static_cast<const char *>(nul) -
                                                        value->payload.c)
                                  : limit};
}

// Keeps an operand that is itself a temporary from being handed out (and its text
// dropped) as the result slot while the result is being made.
class TemporaryShield {
public:
    explicit TemporaryShield(pObj value)
        : value_(value && value->storageClass == CLASS_TEMP ? value : nullptr) {
        if (value_)
            ++value_->lockCount;
    }
    ~TemporaryShield() {
        if (value_)
            --value_->lockCount;
    }
    TemporaryShield(const TemporaryShield &) = delete;
    TemporaryShield &operator=(const TemporaryShield &) = delete;

private:
    pObj value_;
};

} // namespace zq::runtime
