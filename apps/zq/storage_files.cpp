// A storage directory read as bytes: catalog entries, headers and definition blocks.
#include "storage_files.h"

#include "session.h"
#include "tables/definition_block.h"
#include "text.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace zq::tool {

std::optional<Bytes> readWholeFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string pathIn(const std::string &dir, const std::string &name) {
    return (std::filesystem::path(dir) / name).string();
}

std::optional<std::vector<CatalogItem>> readCatalog(const std::string &dir) {
    auto bytes = readWholeFile(pathIn(dir, "catalog.plm"));
    if (!bytes)
        return std::nullopt;
    std::vector<CatalogItem> items;
    auto h = headerOf(*bytes);
    if (!h)
        return items;
    uint64_t end = std::min<uint64_t>(h->used, bytes->size());
    for (uint64_t at = storage::kHeaderSize; at + storage::kEntrySize <= end; at += storage::kEntrySize) {
        CatalogItem item;
        item.offset = uint32_t(at);
        item.entry = storage::load<storage::CatalogEntry>(bytes->data() + at);
        if (!item.entry.name[0])
            continue;
        item.name.assign(item.entry.name, strnlen(item.entry.name, storage::kNameSize));
        items.push_back(item);
    }
    return items;
}

std::string fourChars(uint32_t code) {
    std::string s;
    for (int shift = 24; shift >= 0; shift -= 8) {
        char c = char((code >> shift) & 0xFF);
        s += (c >= 32 && c < 127) ? c : '?';
    }
    return s;
}

std::optional<storage::DatabaseHeader> headerOf(const Bytes &file) {
    if (file.size() < storage::kHeaderSize)
        return std::nullopt;
    return storage::load<storage::DatabaseHeader>(file.data());
}

std::optional<Bytes> appInfoOf(const Bytes &file) {
    auto h = headerOf(file);
    if (!h || h->appInfoSize == 0 || uint64_t(storage::kHeaderSize) + h->appInfoSize > file.size())
        return std::nullopt;
    return Bytes(file.begin() + storage::kHeaderSize, file.begin() + storage::kHeaderSize + h->appInfoSize);
}

std::optional<tables::TableDef> tableDefinition(const Bytes &file) {
    auto block = appInfoOf(file);
    if (!block)
        return std::nullopt;
    auto def = tables::parseTableBlock(*block);
    if (def)
        tables::layoutBuffer(*def);
    return def;
}

std::optional<tables::IndexDef> indexDefinition(const Bytes &file) {
    auto block = appInfoOf(file);
    if (!block)
        return std::nullopt;
    return tables::parseIndexBlock(*block);
}

bool isTable(const CatalogItem &item) {
    if (item.entry.type != tables::kTypeData)
        return false;
    for (const char *kind : {"tLog", "tHst", "tIns", "tPda"})
        if (fourChars(item.entry.creator) == kind)
            return false;
    return true;
}

const CatalogItem *findTable(const std::vector<CatalogItem> &catalog, const std::string &name) {
    for (const CatalogItem &item : catalog)
        if (isTable(item) && sameCaseless(item.name, name))
            return &item;
    return nullptr;
}

std::optional<CatalogItem> requireTable(const std::string &dir, const std::string &table) {
    if (!isStorageDirectory(dir))
        return std::nullopt;
    auto catalog = readCatalog(dir);
    const CatalogItem *item = catalog ? findTable(*catalog, table) : nullptr;
    if (!item) {
        complain(dir + ": no table " + table);
        return std::nullopt;
    }
    return *item;
}

std::vector<std::string> tableDatabases(const std::string &dir, const std::string &table) {
    std::vector<std::string> names{table, table + "_M"};
    auto bytes = readWholeFile(pathIn(dir, table));
    if (auto def = bytes ? tableDefinition(*bytes) : std::nullopt)
        for (const auto &index : def->indexes)
            names.push_back(index.name);
    return names;
}

} // namespace zq::tool
