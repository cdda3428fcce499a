// zq struct: a table's fields and indexes, from the definition blocks of its files.
#include "commands.h"

#include "session.h"
#include "storage_files.h"
#include "tables/index_keys.h"
#include "text.h"

#include <cstdio>

namespace zq::tool {

int runStruct(const std::string &dir, const std::string &table) {
    auto item = requireTable(dir, table);
    if (!item)
        return kExitUsage;
    auto file = readWholeFile(pathIn(dir, item->name));
    auto def = file ? tableDefinition(*file) : std::nullopt;
    if (!def) {
        complain(pathIn(dir, item->name) + ": no readable table definition");
        return kExitProblem;
    }
    auto h = headerOf(*file);
    std::printf("TABLE %s  %zu fields  %u records\n\n", latin1ToUtf8(def->name).c_str(), def->fields.size() - 1,
                h ? h->count : 0u);
    std::printf("%3s  %-23s %-4s %6s %4s\n", "#", "FIELD", "TYPE", "LENGTH", "DEC");
    for (size_t i = 0; i + 1 < def->fields.size(); ++i) {
        const tables::FieldDef &f = def->fields[i];
        std::printf("%3zu  %-23s %-4c %6d %4d\n", i + 1, latin1ToUtf8(f.name).c_str(), tables::letterOfTypeCode(f.type),
                    f.length, f.decimals);
    }
    if (def->indexes.empty())
        return kExitOk;
    int status = kExitOk;
    std::printf("\n%-31s %-40s %s\n", "INDEX", "KEY", "KEY LENGTH");
    for (const tables::IndexDef &listed : def->indexes) {
        auto bytes = readWholeFile(pathIn(dir, listed.name));
        auto index = bytes ? indexDefinition(*bytes) : std::nullopt;
        if (!index) {
            std::printf("%-31s (missing or unreadable)\n", latin1ToUtf8(listed.name).c_str());
            status = kExitProblem;
            continue;
        }
        std::printf("%-31s %-40s %u\n", latin1ToUtf8(listed.name).c_str(),
                    latin1ToUtf8(tables::keyExpressionOf(*def, *index)).c_str(), index->attribute);
    }
    return status;
}

} // namespace zq::tool
