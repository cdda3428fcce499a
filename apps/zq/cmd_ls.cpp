// zq ls: the catalog of a storage directory, read as bytes, and the files it does not know.
#include "commands.h"

#include "session.h"
#include "storage_files.h"
#include "text.h"

#include <cstdio>
#include <filesystem>
#include <algorithm>

namespace fs = std::filesystem;

namespace zq::tool {
namespace {

std::string timeText(const storage::SystemTime &t) {
    char out[64];
    std::snprintf(out, sizeof out, "%04u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour, t.minute,
                  t.second);
    return out;
}

// Files storage keeps beside a database, and its own files.
bool companionOf(const std::string &file, const std::string &database) {
    std::string f = upper(file), d = upper(database);
    return f == d || f == d + "_OS" || f == d + "_JN" || f == d + "_TEMP";
}

bool storageOwnFile(const std::string &file) {
    return file == "catalog.plm" || file == "catalog.bck" || file == "catalog.lck" || file == "saida.txt";
}

} // namespace

int runLs(const std::string &dir) {
    if (!isStorageDirectory(dir))
        return kExitUsage;
    auto catalog = readCatalog(dir);
    if (!catalog) {
        complain(dir + "/catalog.plm: cannot be read");
        return kExitProblem;
    }
    bool missing = false;
    std::printf("%-31s %-4s %-7s %8s %10s  %-19s  %s\n", "DATABASE", "TYPE", "CREATOR", "RECORDS", "BYTES",
                "CREATED", "MODIFIED");
    std::vector<std::string> lost, tables;
    for (const CatalogItem &item : *catalog) {
        auto file = readWholeFile(pathIn(dir, item.name));
        if (!file) {
            lost.push_back(item.name);
            missing = true;
            continue;
        }
        auto h = headerOf(*file);
        std::printf("%-31s %-4s %-7s %8u %10zu  %-19s  %s\n", latin1ToUtf8(item.name).c_str(),
                    fourChars(item.entry.type).c_str(), fourChars(item.entry.creator).c_str(), h ? h->count : 0u,
                    file->size(), timeText(item.entry.created).c_str(), timeText(item.entry.modified).c_str());
        if (!isTable(item))
            continue;
        auto def = tableDefinition(*file);
        char line[160];
        if (def)
            std::snprintf(line, sizeof line, "%-31s %3zu fields %3zu indexes%s", latin1ToUtf8(item.name).c_str(),
                          def->fields.size() - 1, def->indexes.size(), def->hasMemo ? "  memo" : "");
        else
            std::snprintf(line, sizeof line, "%-31s no readable definition", latin1ToUtf8(item.name).c_str());
        tables.push_back(line);
    }
    if (!tables.empty()) {
        std::printf("\nTABLES\n");
        for (const std::string &t : tables)
            std::printf("%s\n", t.c_str());
    }
    std::vector<std::string> unknown;
    std::error_code ec;
    for (const auto &e : fs::directory_iterator(dir, ec)) {
        std::string name = e.path().filename().string();
        bool known = storageOwnFile(name);
        for (const CatalogItem &item : *catalog)
            known = known || companionOf(name, item.name);
        if (!known)
            unknown.push_back(name);
    }
    std::sort(unknown.begin(), unknown.end());
    if (!unknown.empty()) {
        std::printf("\nFILES THE CATALOG DOES NOT KNOW\n");
        for (const std::string &u : unknown)
            std::printf("%s\n", latin1ToUtf8(u).c_str());
    }
    if (!lost.empty()) {
        std::printf("\nCATALOG ENTRIES WITHOUT THEIR FILE\n");
        for (const std::string &l : lost)
            std::printf("%s\n", latin1ToUtf8(l).c_str());
    }
    return missing ? kExitProblem : kExitOk;
}

} // namespace zq::tool
