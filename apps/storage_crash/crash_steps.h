// The crash-test writer's steps, shared by the writer and the test that checks it: what
// each step does to the records, so that the test can tell what the database must hold.
//
// Steps append records, grow one, mark one deleted ('*' two bytes before its end), remove
// one, compact the database (dropping marked records) and empty it, in a fixed pattern.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

enum class CrashStep { Append, Grow, Mark, Remove, Compact, Zap };

inline CrashStep crashStep(uint32_t step) {
    if (step % 101 == 100)
        return CrashStep::Zap;
    if (step % 29 == 28)
        return CrashStep::Compact;
    switch (step % 6) {
    case 1: return CrashStep::Grow;
    case 3: return CrashStep::Mark;
    case 5: return CrashStep::Remove;
    default: return CrashStep::Append;
    }
}

// The bytes an appending step writes: letters, then a live mark and one more byte.
inline std::string crashPayload(uint32_t step) {
    std::string bytes(1 + (step * 37) % 300, ' ');
    for (size_t j = 0; j < bytes.size(); ++j)
        bytes[j] = char('a' + (step * 7 + j) % 26);
    return bytes + "!.";
}

// The bytes a growing step adds at the end of its record.
inline std::string crashTail(uint32_t step) { return std::string(1 + step % 40, char('A' + step % 26)); }

// The record a step works on, among count records.
inline uint32_t crashTarget(uint32_t step, uint32_t count) { return count ? (step * 2654435761u) % count : 0; }

// The records after a step.
inline void applyCrashStep(std::vector<std::string> &records, uint32_t step) {
    uint32_t target = crashTarget(step, uint32_t(records.size()));
    switch (crashStep(step)) {
    case CrashStep::Append: records.push_back(crashPayload(step)); break;
    case CrashStep::Grow:
        if (!records.empty())
            records[target] += crashTail(step);
        break;
    case CrashStep::Mark:
        if (!records.empty())
            records[target][records[target].size() - 2] = '*';
        break;
    case CrashStep::Remove:
        if (!records.empty())
            records.erase(records.begin() + target);
        break;
    case CrashStep::Compact:
        std::erase_if(records, [](const std::string &r) { return r[r.size() - 2] == '*'; });
        break;
    case CrashStep::Zap: records.clear(); break;
    }
}
