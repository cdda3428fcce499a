// The bytes the crash-test writer puts into record k, which the test checks after each kill.
#pragma once

#include <cstdint>
#include <string>

inline std::string crashPayload(uint32_t k) {
    std::string bytes(1 + (k * 37) % 300, ' ');
    for (size_t j = 0; j < bytes.size(); ++j)
        bytes[j] = char('a' + (k * 7 + j) % 26);
    return bytes;
}
