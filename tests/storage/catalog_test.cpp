// The catalog: creation, lookup, entries, reuse of free entries and the backup.
#include "storage/state.h"
#include "support/storage_fixture.h"

#include <cstring>
#include <filesystem>

using namespace zq::storage_test;

namespace {

using CatalogTest = StorageTest;

TEST_F(CatalogTest, CreationWritesTheEntryAndTheDatabaseHeader) {
    ASSERT_EQ(DmCreateDatabase(0, "Clientes", 0x5A454C51u /* 'ZELQ' */, 0x44415441u /* 'DATA' */, 0), dmErrNone);
    ASSERT_EQ(DmCreateDatabase(0, "Indice", 0x5A454C51u, 0x494E4458u /* 'INDX' */, 0), dmErrNone);
    ASSERT_EQ(DmCreateDatabase(0, "Outro", 0x5A454C51u, 0x41424344u, 0), dmErrNone);
    EXPECT_EQ(DmCreateDatabase(0, "CLIENTES", 1, 2, 0), dmErrAlreadyExists);
    EXPECT_EQ(DmCreateDatabase(0, nullptr, 1, 2, 0), dmErrBadArgument);
    EXPECT_EQ(DmCreateDatabase(0, "", 1, 2, 0), dmErrBadArgument);
    EXPECT_EQ(DmFindDatabase(0, "clientes"), DmFindDatabase(0, "Clientes"));
    EXPECT_NE(DmFindDatabase(0, "INDICE"), 0u);
    EXPECT_EQ(DmFindDatabase(0, "nada"), 0u);
    EXPECT_EQ(DmFindDatabase(0, nullptr), 0u);

    std::vector<uint8_t> db = fileBytes("Clientes");
    ASSERT_EQ(db.size(), 20u); // the first open sizes it
    EXPECT_EQ(db[0], 2);
    EXPECT_EQ(db[1], 'V');
    EXPECT_EQ(fileBytes("Indice")[1], 'B');
    EXPECT_EQ(fileBytes("Outro")[1], 'X');

    StorageClose();
    std::vector<uint8_t> cat = fileBytes("catalog.plm");
    EXPECT_EQ(readU32(cat, 16), 20u + 3 * 88);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&cat[20])), "Clientes");
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&cat[20 + 76]), 4), "ATAD");
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&cat[20 + 80]), 4), "QLEZ");
    EXPECT_EQ(std::memcmp(&cat[20 + 36], &cat[20 + 52], 16), 0); // modified = created
    EXPECT_GE(readU16(cat, 20 + 36), 2024);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&cat[20 + 88 + 76]), 4), "XDNI");
    // The backup is the catalog's whole mapped extent, byte for byte.
    EXPECT_EQ(fileBytes("catalog.bck"), cat);
    EXPECT_EQ(cat.size(), 15360u);
}

TEST_F(CatalogTest, DeletedEntriesAreReusedAndVanishedFilesForgotten) {
    ASSERT_EQ(DmCreateDatabase(0, "a", 0, 0x44415441u, 0), dmErrNone);
    ASSERT_EQ(DmCreateDatabase(0, "b", 0, 0x44415441u, 0), dmErrNone);
    LocalID a = DmFindDatabase(0, "a");
    DmOpenRef db = DmOpenDatabase(0, a);
    ASSERT_NE(db, nullptr);
    ASSERT_EQ(DmCloseDatabase(db), dmErrNone);
    // Closing empties the slot: the id is handed out afresh by the next find.
    EXPECT_EQ(DmDeleteDatabase(0, a), dmErrBadArgument);
    a = DmFindDatabase(0, "a");
    ASSERT_EQ(DmDeleteDatabase(0, a), dmErrNone);
    EXPECT_FALSE(std::filesystem::exists(storageFile("a")));
    EXPECT_FALSE(std::filesystem::exists(storageFile("a_OS")));
    EXPECT_EQ(DmFindDatabase(0, "a"), 0u);
    ASSERT_EQ(DmCreateDatabase(0, "c", 0, 0x44415441u, 0), dmErrNone);

    // A file removed by hand frees its entry on the next search.
    StorageClose();
    std::filesystem::remove(storageFile("b"));
    EXPECT_EQ(DmFindDatabase(0, "b"), 0u);
    StorageClose();
    std::vector<uint8_t> cat = fileBytes("catalog.plm");
    EXPECT_EQ(readU32(cat, 16), 20u + 2 * 88);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&cat[20])), "c"); // a's old place
    EXPECT_EQ(cat[20 + 88], 0);                                             // b's entry freed
}

TEST_F(CatalogTest, StrayFilesAreReplacedAndUnfitNamesRefused) {
    writeBytes("stray", std::vector<uint8_t>(5000, 0x5A));
    writeBytes("stray_OS", std::vector<uint8_t>(100, 0x5A));
    ASSERT_EQ(DmCreateDatabase(0, "stray", 0, 0x44415441u, 0), dmErrNone);
    EXPECT_EQ(fileBytes("stray").size(), 20u);
    EXPECT_FALSE(std::filesystem::exists(storageFile("stray_OS")));

    std::string longest(31, 'x'), tooLong(32, 'y');
    EXPECT_EQ(DmCreateDatabase(0, longest.c_str(), 0, 0x44415441u, 0), dmErrNone);
    EXPECT_EQ(DmCreateDatabase(0, tooLong.c_str(), 0, 0x44415441u, 0), dmErrBadArgument);
    EXPECT_EQ(DmCreateDatabase(0, "../escape", 0, 0x44415441u, 0), dmErrBadArgument);
    EXPECT_NE(DmFindDatabase(0, longest.c_str()), 0u);
    EXPECT_EQ(DmFindDatabase(0, tooLong.c_str()), 0u);
    StorageClose();
    std::vector<uint8_t> cat = fileBytes("catalog.plm");
    EXPECT_EQ(readU32(cat, 16), 20u + 2 * 88);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(&cat[20 + 88])), longest);
}

TEST_F(CatalogTest, DatabaseInfoReadsAndWritesTheEntry) {
    DmOpenRef db = makeDatabase("info");
    ASSERT_NE(db, nullptr);
    LocalID id = DmFindDatabase(0, "info");
    uint16_t attributes = 7, version = 3;
    uint32_t backup = 11, modNum = 12, sort = 13, creator = 0x41424344u;
    ASSERT_EQ(DmSetDatabaseInfo(0, id, nullptr, &attributes, &version, nullptr, nullptr, &backup, &modNum, nullptr,
                                &sort, nullptr, &creator),
              dmErrNone);
    char name[32] = {};
    uint16_t a = 0, v = 0;
    double created = 0, modified = 0;
    uint32_t b = 0, m = 0, s = 0, t = 0, c = 0;
    ASSERT_EQ(DmDatabaseInfo(0, id, name, &a, &v, &created, &modified, &b, &m, nullptr, &s, &t, &c), dmErrNone);
    EXPECT_STREQ(name, "info");
    EXPECT_EQ(a, 7);
    EXPECT_EQ(v, 3);
    EXPECT_EQ(b, 11u);
    EXPECT_EQ(m, 12u);
    EXPECT_EQ(s, 13u);
    EXPECT_EQ(t, 0x44415441u);
    EXPECT_EQ(c, 0x41424344u);
    EXPECT_GT(created, 45000.0); // a day number of this century
    EXPECT_EQ(created, modified);
    EXPECT_EQ(DmDatabaseInfo(0, 0, name, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr),
              dmErrBadArgument);
    // No app info block: no handle, and the alert says so.
    MemHandle appInfo = reinterpret_cast<MemHandle>(&a);
    DmDatabaseInfo(0, id, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &appInfo, nullptr, nullptr,
                   nullptr);
    EXPECT_EQ(appInfo, nullptr);
    EXPECT_TRUE(sawBox("no appinfo"));
}

TEST_F(CatalogTest, OpeningADatabaseWhoseFileWentAwayAlerts) {
    ASSERT_EQ(DmCreateDatabase(0, "gone", 0, 0x44415441u, 0), dmErrNone);
    LocalID id = DmFindDatabase(0, "gone");
    std::filesystem::remove(storageFile("gone"));
    EXPECT_EQ(DmOpenDatabase(0, id), nullptr);
    EXPECT_TRUE(sawBox("Falhou Abertura de gone"));
    EXPECT_EQ(DmOpenDatabase(0, 0), nullptr);
    EXPECT_EQ(DmCloseDatabase(nullptr), dmErrBadArgument);
}

TEST_F(CatalogTest, AChosenDirectoryTakesThePlaceOfDbBesideTheProgram) {
    std::string chosen = (std::filesystem::path(directory) / "dados").string();
    zq::storage::useDirectory(chosen);
    ASSERT_EQ(DmCreateDatabase(0, "Clientes", 0x5A454C51u, 0x44415441u, 0), dmErrNone);
    StorageClose();
    zq::storage::useDirectory("");
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(chosen) / "Clientes"));
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(chosen) / "catalog.plm"));
    EXPECT_FALSE(std::filesystem::exists(storageFile("Clientes")));
    EXPECT_EQ(DmFindDatabase(0, "Clientes"), 0u) << "storage went back to DB beside the program";
}

} // namespace
