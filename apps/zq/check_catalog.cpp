// catalog.plm judged from its bytes: its header and sizes, and its entries' names.
#include "check.h"

#include "storage/catalog_recovery.h"
#include "text.h"

#include <cstring>
#include <map>

namespace zq::tool {
namespace {

constexpr char kCatalog[] = "catalog.plm";

std::string n(uint64_t v) { return std::to_string(v); }

// Why a used entry's name cannot name a file, or empty when it can.
std::string badName(const uint8_t *entry) {
    size_t length = strnlen(reinterpret_cast<const char *>(entry), storage::kNameSize);
    if (length == storage::kNameSize)
        return "its name has no end within 32 bytes";
    for (size_t i = 0; i < length; ++i)
        if (entry[i] < 0x20 || entry[i] == '/' || entry[i] == '\\' || entry[i] == ':')
            return "its name holds the byte " + n(entry[i]) + ", which no file name may";
    return "";
}

} // namespace

void checkCatalog(const std::string &dir, const std::vector<CatalogItem> &catalog, std::vector<Problem> &problems,
                  bool &unsound) {
    auto add = [&](const std::string &place, const std::string &what, Mend mend, uint32_t entry = 0) {
        problems.push_back({kCatalog, place, what, mend, "", 0, 0, entry});
    };
    size_t before = problems.size();
    auto bytes = readWholeFile(pathIn(dir, kCatalog));
    unsound = !bytes || bytes->size() < storage::kHeaderSize;
    if (unsound) {
        add("header", "the file is shorter than its 20-byte header", Mend::Catalog);
        return;
    }
    auto h = storage::load<storage::DatabaseHeader>(bytes->data());
    if (h.format || h.kind || h.zero || h.appInfoSize)
        add("header", "format, kind and app info size must be 0 in a catalog", Mend::Catalog);
    if (h.used != 1 && (h.used < storage::kHeaderSize || h.used > bytes->size() ||
                        (h.used - storage::kHeaderSize) % storage::kEntrySize))
        add("header",
            "used size " + n(h.used) + " does not end on a whole entry inside the file's " + n(bytes->size()) +
                " bytes",
            Mend::Catalog);
    uint64_t end = std::min<uint64_t>(h.used, bytes->size());
    for (uint64_t at = storage::kHeaderSize; at + storage::kEntrySize <= end; at += storage::kEntrySize) {
        std::string why = bytes->at(at) ? badName(bytes->data() + at) : "";
        if (!why.empty())
            add("entry at " + n(at), why, Mend::Catalog);
    }
    if (problems.size() == before && !storage::catalogIsSound(*bytes)) // a rule none above names
        add("file", "storage would not take it as a catalog", Mend::Catalog);
    unsound = problems.size() > before;
    if (unsound)
        return;
    if (h.capacity != bytes->size())
        add("header", "capacity " + n(h.capacity) + ", the file has " + n(bytes->size()) + " bytes", Mend::Catalog);
    // A search stops at the first entry of a name: a later one of the same name is never reached.
    std::map<std::string, uint32_t> first;
    for (const CatalogItem &item : catalog) {
        auto [at, fresh] = first.emplace(upper(item.name), item.offset);
        if (!fresh)
            add("entry at " + n(item.offset),
                "names " + item.name + " again (the entry at " + n(at->second) + " is the one found)", Mend::Duplicate,
                item.offset);
    }
}

} // namespace zq::tool
