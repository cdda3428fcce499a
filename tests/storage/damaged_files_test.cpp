// Damaged storage files: what an open may and may not change, and what it gives back.
#include "support/storage_fixture.h"

#include <filesystem>
#include <fstream>

using namespace zq::storage_test;

namespace {

class DamagedFilesTest : public StorageTest {
protected:
    // A closed database of three committed records "first!", "second!", "third!".
    void makeThreeRecords(const std::string &name, uint32_t type = 0x44415441u) {
        DmOpenRef db = makeDatabase(name, type);
        for (const char *text : {"first!", "second!", "third!"})
            append(db, text);
        DmCloseDatabase(db);
        StorageClose();
    }

    // Opens a database by name and reads all its records; storage is closed afterwards.
    std::vector<std::string> openAndRead(const std::string &name) {
        std::vector<std::string> texts;
        DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name.c_str()));
        EXPECT_NE(db, nullptr) << name;
        for (uint32_t i = 0; db && i < DmNumRecords(db); ++i)
            texts.push_back(recordText(db, i));
        if (db)
            DmCloseDatabase(db);
        StorageClose();
        return texts;
    }

    std::string traceText() const {
        std::ifstream in(std::filesystem::path(directory) / "saida.txt");
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    const std::vector<std::string> all = {"first!", "second!", "third!"};
};

TEST_F(DamagedFilesTest, JudgingAnOffsetIndexNeverWritesIntoTheRecords) {
    DmOpenRef db = makeDatabase("judge");
    // Record 0's data looks like a record header claiming size 300 over capacity 200.
    append(db, std::string("\x2C\x01\xC8\x00\x00\x00\xFF\xFF", 8) + "tail!");
    append(db, "second!");
    DmCloseDatabase(db);
    StorageClose();
    std::vector<uint8_t> main = fileBytes("judge"), index = fileBytes("judge_OS");
    index[24] = uint8_t(readU32(index, 20) + 8); // entry 1 points into record 0's data
    writeBytes("judge_OS", index);

    std::vector<std::string> texts = openAndRead("judge");
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].substr(0, 2), "\x2C\x01");
    EXPECT_EQ(texts[1], "second!");
    EXPECT_EQ(fileBytes("judge"), main);
}

TEST_F(DamagedFilesTest, ACutFileKeepsOnlyTheRecordsItHolds) {
    makeThreeRecords("cut");
    std::vector<uint8_t> file = fileBytes("cut");
    uint32_t third = 20 + (8 + 6) + (8 + 7);
    for (uint32_t cut : {third + 8 + 3, third + 4}) {
        SCOPED_TRACE(cut);
        std::vector<uint8_t> shorter(file.begin(), file.begin() + cut);
        writeBytes("cut", shorter);
        EXPECT_EQ(openAndRead("cut"), (std::vector<std::string>{"first!", "second!"}));
        EXPECT_EQ(readU32(fileBytes("cut"), 16), third);
    }
}

TEST_F(DamagedFilesTest, CountsTheDataCannotHoldAreCut) {
    makeThreeRecords("fixed", 0x41424344u); // a fixed-stride kind
    makeThreeRecords("variable");
    for (const char *name : {"fixed", "variable"}) {
        SCOPED_TRACE(name);
        std::vector<uint8_t> file = fileBytes(name);
        file[11] = 0x80; // 2^31 records claimed
        writeBytes(name, file);
        DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name));
        ASSERT_NE(db, nullptr);
        EXPECT_LE(DmNumRecords(db), 3u);
        EXPECT_EQ(recordText(db, 0).substr(0, 5), "first");
        DmCloseDatabase(db);
        StorageClose();
    }
}

TEST_F(DamagedFilesTest, AFirstOpenLeavesTheNewOffsetIndexAsEveryNewView) {
    DmOpenRef db = makeDatabase("fresh");
    ASSERT_NE(db, nullptr);
    DmCloseDatabase(db);
    StorageClose();
    std::vector<uint8_t> index = fileBytes("fresh_OS");
    EXPECT_EQ(readU32(index, 12), 15360u);
    EXPECT_EQ(readU32(index, 16), 1u);
}

TEST_F(DamagedFilesTest, ALostCatalogComesBackAndNoDatabaseFileIsDeleted) {
    struct Case {
        const char *name;
        void (*damage)(std::vector<uint8_t> &catalog);
        bool backupToo; // the backup is damaged the same way
    };
    const Case cases[] = {
        {"emptied", [](std::vector<uint8_t> &c) { c.clear(); }, false},
        {"zeroed", [](std::vector<uint8_t> &c) { std::fill(c.begin(), c.end(), 0); }, false},
        {"used size off an entry", [](std::vector<uint8_t> &c) { c[16] += 3; }, false},
        {"name run into the fields", [](std::vector<uint8_t> &c) { std::fill(c.begin() + 20, c.begin() + 60, 'n'); }, false},
        {"zeroed with its backup", [](std::vector<uint8_t> &c) { std::fill(c.begin(), c.end(), 0); }, true},
        {"removed with its backup", nullptr, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        std::filesystem::remove_all(std::filesystem::path(directory) / "DB");
        std::filesystem::remove(std::filesystem::path(directory) / "saida.txt");
        makeThreeRecords("kept");
        ASSERT_EQ(DmCreateDatabase(0, "SAVED.tLog", 0x744C6F67u, 0x44415441u, 0), dmErrNone);
        StorageClose();
        std::vector<uint8_t> catalog = fileBytes("catalog.plm");
        std::vector<std::string> damaged = {"catalog.plm"};
        if (c.backupToo)
            damaged.push_back("catalog.bck");
        for (const std::string &file : damaged) {
            if (!c.damage) {
                std::filesystem::remove(storageFile(file));
                continue;
            }
            std::vector<uint8_t> bytes = catalog;
            c.damage(bytes);
            writeBytes(file, bytes);
        }
        // The creation a program makes when it cannot find its database.
        EXPECT_EQ(DmCreateDatabase(0, "kept", 0x5A454C51u, 0x44415441u, 0), dmErrAlreadyExists);
        EXPECT_EQ(openAndRead("kept"), all);
        uint32_t type = 0, creator = 0;
        DmDatabaseInfo(0, DmFindDatabase(0, "SAVED.tLog"), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr, &type, &creator);
        EXPECT_EQ(type, 0x44415441u);
        EXPECT_EQ(creator, 0x744C6F67u);
        StorageClose();
        EXPECT_NE(traceText().find(c.backupToo ? "catalog.plm refeito" : "catalog.plm restaurado"), std::string::npos)
            << traceText();
    }
}

TEST_F(DamagedFilesTest, AFileHoldingRecordsIsNeverTakenForALeftover) {
    makeThreeRecords("orphan");
    std::vector<uint8_t> file = fileBytes("orphan");
    // A sound catalog that lost the entry between runs: the next start takes the file back.
    std::vector<uint8_t> catalog = fileBytes("catalog.plm");
    std::fill(catalog.begin() + 20, catalog.begin() + 20 + 88, 0);
    writeBytes("catalog.plm", catalog);
    EXPECT_EQ(DmCreateDatabase(0, "orphan", 0x5A454C51u, 0x44415441u, 0), dmErrAlreadyExists);
    EXPECT_EQ(openAndRead("orphan"), all);

    // A file put there while storage is open is kept aside by the creation of its name.
    ASSERT_EQ(StorageStart(), dmErrNone);
    writeBytes("late", file);
    ASSERT_EQ(DmCreateDatabase(0, "late", 0x5A454C51u, 0x44415441u, 0), dmErrNone);
    StorageClose();
    std::ifstream kept(storageFile("late.orphan"), std::ios::binary);
    EXPECT_EQ(std::vector<uint8_t>(std::istreambuf_iterator<char>(kept), {}), file);
    EXPECT_NE(traceText().find("late.orphan"), std::string::npos);
}

} // namespace
