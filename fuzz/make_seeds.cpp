// Writes the fuzz targets' seed inputs from files the runtime itself writes.
//
// Usage: fuzz_seeds <corpus directory>. Each seed is made in a fresh program directory
// through the public calls, its files cut to the bytes their headers say are in use, and
// packed as the target reads its input (harness.h); it lands in <corpus>/<target>/.
#include "harness.h"
#include "platform/process.h"
#include "platform/processes.h"
#include "storage/layout.h"
#include "storage_walk.h"
#include "zelqa.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace zq::fuzz;
using File = std::vector<uint8_t>;

namespace {

fs::path corpus, work;
int runs = 0;

// A fresh program directory for the next seed; storage restarts in it.
void freshProgram() {
    StorageClose();
    fs::path dir = work / std::to_string(++runs);
    fs::create_directories(dir);
    zq::platform::setEnvironment("ZELQA_PROGRAM_DIR", dir.string().c_str());
}

// A storage file's bytes, cut to its used size; empty when missing.
File storageFile(const std::string &name) {
    std::ifstream in(work / std::to_string(runs) / "DB" / name, std::ios::binary);
    File bytes((std::istreambuf_iterator<char>(in)), {});
    if (bytes.size() >= zq::storage::kHeaderSize) {
        uint32_t used = zq::storage::load<uint32_t>(bytes.data() + 16);
        bytes.resize(std::min<size_t>(bytes.size(), std::max<uint32_t>(used, zq::storage::kHeaderSize)));
    }
    return bytes;
}

void writeSeed(const std::string &target, const std::string &name, const std::vector<File> &parts) {
    fs::create_directories(corpus / target);
    File bytes = joinParts(parts);
    std::ofstream(corpus / target / name, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
}

DmOpenRef makeDatabase(const char *name, uint32_t type) {
    DmCreateDatabase(0, name, kCreatorTables, type, 0);
    return DmOpenDatabase(0, DmFindDatabase(0, name));
}

void append(DmOpenRef db, const std::string &bytes) {
    uint32_t index = dmAppendPosition;
    WriteRecordBuffer(db, bytes.data(), uint32_t(bytes.size()), &index);
}

void appendEntries(DmOpenRef db) {
    static const char *keys[] = {"PEAR", "APPLE", "QUINCE", "FIG", "BANANA", "CHERRY", "DATE", "ELDER"};
    uint32_t number = 0;
    for (const char *key : keys) {
        char entry[12] = {};
        std::memcpy(entry, &++number, 4);
        std::memcpy(entry + 4, key, std::strlen(key));
        append(db, std::string(entry, sizeof entry));
    }
}

void catalogSeeds() {
    freshProgram();
    DmOpenRef people = makeDatabase("PEOPLE", kTypeData);
    for (const char *name : {"Ana Souza", "Bruno Lima", "Carla Dias"})
        append(people, name);
    DmCloseDatabase(people);
    DmCloseDatabase(makeDatabase("CODES", kTypeIndex));
    DmCloseDatabase(makeDatabase("NOTES.tLog", kTypeData));
    StorageClose();
    File catalog = storageFile("catalog.plm"), backup = storageFile("catalog.bck"), file = storageFile("PEOPLE");
    writeSeed("catalog", "sound", {catalog, backup, file});
    writeSeed("catalog", "catalog-lost", {{}, backup, file});
    writeSeed("catalog", "both-lost", {{}, {}, file});
    writeSeed("catalog", "catalog-only", {catalog, {}, {}});
}

// A move journal as a move inside the file leaves it (docs/formats/move-journal.md): the
// signature, the header and the bytes from offset on.
File journalFor(const File &main, uint32_t offset) {
    File j = {'Z', 'Q', 'J', '1'};
    j.insert(j.end(), main.begin(), main.begin() + zq::storage::kHeaderSize);
    uint32_t length = uint32_t(main.size() - offset);
    for (uint32_t v : {offset, length})
        for (int b = 0; b < 4; ++b)
            j.push_back(uint8_t(v >> (8 * b)));
    j.insert(j.end(), main.begin() + offset, main.end());
    return j;
}

void databaseSeeds() {
    freshProgram();
    DmOpenRef db = makeDatabase("T", kTypeData);
    for (const char *text : {"one", "a longer second record!", "3", "fourth record, longer still, with text", "5"})
        append(db, text);
    MemHandle info = DmNewHandle(db, 16);
    DmSet(MemHandleLock(info), 0, 16, 'i');
    MemHandleUnlock(info);
    DmSetDatabaseInfo(0, DmFindDatabase(0, "T"), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                      &info, nullptr, nullptr, nullptr);
    DmCloseDatabase(db);
    StorageClose();
    File main = storageFile("T"), index = storageFile("T_OS");
    writeSeed("database", "variable", {{0, 0x3f}, main, index, {}});
    writeSeed("database", "variable-no-index", {{0, 0x05}, main, {}, {}});
    writeSeed("database", "variable-journal", {{0, 0x02}, main, index, journalFor(main, 60)});

    freshProgram();
    db = makeDatabase("T", kTypeIndex);
    appendEntries(db);
    DmCloseDatabase(db);
    StorageClose();
    writeSeed("database", "fixed-stride", {{1, 0x17}, storageFile("T"), {}, {}});
    writeSeed("index", "unsorted", {{0x11, 'F', 'I', 'G'}, storageFile("T")});
    writeSeed("index", "unsorted-append", {{0x09, 'Z'}, storageFile("T")});

    freshProgram();
    db = makeDatabase("T", kTypeOther);
    append(db, "other kind of record");
    append(db, "and one more");
    DmCloseDatabase(db);
    StorageClose();
    writeSeed("database", "other", {{2, 0x21}, storageFile("T"), {}, {}});
}

void savedArraySeeds() {
    freshProgram();
    __RetGlob(1);
    pObj inner = __CreateArray(__INIT_LONG(7), __INIT_CHARPTR("text \xe9 with a high byte"), __INIT_DATE(45000),
                               __INIT_DOUBLE(-2.5), __INIT_BOOL(1), __INIT_NIL(), __CreateArray(__INIT_NUL()),
                               __INIT_NUL());
    pObj deeper = __CreateArray(__CreateArray(__CreateArray(__INIT_CHARPTR(""), __INIT_NUL()), __INIT_NUL()),
                                __INIT_NUL());
    pObj outer = __CreateArray(inner, __INIT_LONG(1), deeper, __INIT_NUL());
    ExecDumpArray(outer, __INIT_CHARPTR("ARR"));
    StorageClose();
    writeSeed("saved_array", "nested", {storageFile("ARR.tLog"), storageFile("ARR.tLog_OS")});
    writeSeed("saved_array", "nested-no-index", {storageFile("ARR.tLog"), {}});
}

pObj fieldSpec(const char *name, const char *type, double length, double decimals) {
    return __CreateArray(__INIT_CHARPTR(name), __INIT_CHARPTR(type), __INIT_DOUBLE(length), __INIT_DOUBLE(decimals),
                         __INIT_NUL());
}

// Table "T" with a memo field and indexes "TA" (by code) and "TB" (by date and code),
// written with the byte-swap setting as given.
std::vector<File> tableFiles(bool swapped) {
    freshProgram();
    __RetGlob(1);
    __Set(__INIT_DOUBLE(9), __INIT_BOOL(swapped));
    pObj structure = __CreateArray(fieldSpec("CODE", "C", 5, 0), fieldSpec("QTY", "N", 7, 2), fieldSpec("BORN", "D", 8, 0),
                                   fieldSpec("OK", "L", 1, 0), fieldSpec("NOTE", "M", 4, 0), __INIT_NUL());
    __DBCREATE(__INIT_CHARPTR("T"), structure, nullptr);
    __DBUSEAREA(__INIT_BOOL(1), nullptr, __INIT_CHARPTR("T"), nullptr);
    __DBCREATEINDEX(__INIT_CHARPTR("TA"), __INIT_CHARPTR("CODE"), __INIT_NUL());
    __DBCREATEINDEX(__INIT_CHARPTR("TB"), __INIT_CHARPTR("DTOS(BORN)+CODE"), __INIT_NUL());
    static const char *codes[] = {"PEAR", "APPLE", "FIG", "APPLE", "DATE", ""};
    for (int i = 0; i < 6; ++i) {
        __DBAPPEND(nullptr);
        __SetField(nullptr, __INIT_DOUBLE(1), __INIT_CHARPTR(codes[i]));
        __SetField(nullptr, __INIT_DOUBLE(2), __INIT_DOUBLE(i * 10.25 - 7));
        __SetField(nullptr, __INIT_DOUBLE(3), __INIT_DATE(i == 2 ? 0 : 45000 + (i * 37) % 5));
        __SetField(nullptr, __INIT_DOUBLE(4), __INIT_BOOL(i % 2));
        if (i % 3 != 2)
            __SetField(nullptr, __INIT_DOUBLE(5), __INIT_CHARPTR(i == 4 ? "a note \351 that is a bit longer" : "memo"));
        __Commit(nullptr);
    }
    __TBL_GoTo(nullptr, __INIT_DOUBLE(3));
    __TBL_Delete(nullptr);
    __dbCloseAll();
    StorageClose();
    return {storageFile("T"), storageFile("T_OS"), storageFile("T_M"), storageFile("TA"), storageFile("TB")};
}

// A control part: the switches, then the seek keys each ended by a zero byte.
File control(uint8_t switches, const std::vector<std::string> &keys) {
    File bytes = {switches};
    for (const std::string &key : keys) {
        bytes.insert(bytes.end(), key.begin(), key.end());
        bytes.push_back(0);
    }
    return bytes;
}

void tableSeeds() {
    std::vector<File> files = tableFiles(false);
    auto seed = [&](const char *name, File controlPart, std::vector<File> parts) {
        parts.insert(parts.begin(), std::move(controlPart));
        writeSeed("table", name, parts);
    };
    std::vector<std::string> keys = {"APPLE", "F", "20230320", "ZZZ"};
    seed("walk-and-seek", control(0x00, keys), files);
    seed("soft-seek-hidden", control(0x03, keys), files);
    seed("append", control(0x08, {"FUZZ"}), files);
    seed("pack-and-reindex", control(0x32, {"APPLE"}), files);
    seed("no-offset-index", control(0x01, {"DATE"}), {files[0], {}, files[2], files[3], files[4]});
    seed("memo-lost", control(0x08, {"PEAR"}), {files[0], files[1], {}, files[3], files[4]});
    // "TA" holding the other index's file: its block names other key fields.
    seed("index-swapped", control(0x00, {"APPLE"}), {files[0], files[1], files[2], files[4], files[4]});
    std::vector<File> swapped = tableFiles(true);
    seed("byte-swapped", control(0x0c, {"APPLE", "2023"}), swapped);
    __Set(__INIT_DOUBLE(9), __INIT_BOOL(0));
}

void installSeeds() {
    freshProgram();
    fs::path dir = work / std::to_string(runs);
    for (const char *name : {"app.exe", "help.txt", "data.bin"}) {
        std::ofstream(dir / (std::string("new-") + name)) << "new " << name;
        zq_stage_file((dir / (std::string("new-") + name)).string().c_str(), name, "2.0.1");
    }
    StorageClose();
    writeSeed("install_database", "three-files", {storageFile("ZELQAINST.tLog"), storageFile("ZELQAINST.tLog_OS")});
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2 || std::strcmp(argv[1], "--help") == 0) {
        std::puts("usage: fuzz_seeds <corpus directory>\n"
                  "Writes the fuzz targets' seed inputs, made from files the runtime writes.");
        return argc == 2 ? 0 : 2;
    }
    corpus = fs::absolute(argv[1]);
    work = fs::temp_directory_path() / "zq-seeds";
    zq::platform::setEnvironment("ZELQA_BOX_ANSWER", "1");
    fs::create_directories(work);
    fs::current_path(work); // storage's trace file goes to the working directory
    catalogSeeds();
    databaseSeeds();
    savedArraySeeds();
    tableSeeds();
    installSeeds();
    StorageClose();
    std::error_code ec;
    fs::current_path(fs::temp_directory_path(), ec);
    fs::remove_all(work, ec);
    return 0;
}
