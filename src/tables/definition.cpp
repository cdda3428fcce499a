// Field definitions: type letters and codes, stored lengths, name hashes and buffer slots.
#include "tables/definition.h"

namespace zq::tables {

uint32_t fieldHash(std::string_view name) {
    uint32_t hash = 0;
    for (size_t i = 0; i < name.size(); ++i)
        hash += uint32_t(i + 1) * uint32_t(int32_t(int8_t(name[i])));
    return hash;
}

uint32_t typeCodeOfLetter(char letter) {
    switch (letter) {
    case 'N': case 'n': return kNumeric;
    case 'D': case 'd': return kDate;
    case 'L': case 'l': return kLogical;
    case 'M': case 'm': return kMemo;
    case 'I': case 'i': return kInteger;
    case 'B': case 'b': return kBinary;
    default: return kCharacter;
    }
}

char letterOfTypeCode(uint32_t code) {
    static const char letters[] = "NDCLMIB";
    return code < 7 ? letters[code] : 'U';
}

int32_t storedLength(uint32_t code, int32_t given) {
    if (code == kDate)
        return 8;
    if (code == kMemo)
        return 4;
    return given;
}

uint32_t slotBytes(const FieldDef &f) {
    switch (f.type) {
    case kNumeric:
    case kDate: return 8;
    case kLogical: return 1;
    case kMemo: return 4;
    default: return uint32_t(f.length < 0 ? 0 : f.length) + 2;
    }
}

void layoutBuffer(TableDef &def) {
    uint32_t offset = 0;
    for (FieldDef &f : def.fields) {
        f.slot = offset;
        offset += slotBytes(f);
    }
    def.bufferSize = offset + 4;
}

FieldDef deletionField() {
    FieldDef f;
    f.name = std::string(kDeletionField);
    f.type = kCharacter;
    f.length = 2;
    f.hash = fieldHash(f.name);
    return f;
}

} // namespace zq::tables
