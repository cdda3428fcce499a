// Mutated storage files, thousands of them when asked (ZELQA_MUTATIONS, a few hundred by
// default; ZELQA_MUTATIONS_SEED picks another series, ZELQA_MUTATIONS_FROM starts at a
// round seen failing): every open ends in the right records, a rebuild or a runtime
// error, never a crash or a hang; a second open reads what the first did; and no database
// file that was only read is changed.
//
// Each mutation is opened in a child process (fork), as a program would meet it: a runtime
// error ends that process, and an alarm ends one that hangs.
#include "support/storage_fixture.h"

#include "zelqa/storage.h"
#include "zelqa/values.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace zq::storage_test;
namespace fs = std::filesystem;

namespace {

using Records = std::vector<std::string>;
using Files = std::map<std::string, std::vector<uint8_t>>;

const char *const kDatabases[] = {"data", "ZELQAINST.tLog", "keys"};

class MutationTest : public StorageTest {
protected:
    void SetUp() override {
        StorageTest::SetUp();
        DmOpenRef db = makeDatabase("data");
        for (int i = 0; i < 40; ++i)
            append(db, std::string(size_t(1 + i * 13 % 90), char('a' + i % 26)) + (i % 5 ? "!" : "*") + ".");
        DmCloseDatabase(db);
        db = OpenKindDatabase(0, __INIT_CHARPTR("ZELQAINST"), 0, 'L');
        for (const char *path : {"/app/prog.exe~", "/app/lib.so~", "/app/data.txt~"}) {
            std::string record = std::string(path) + '\0' + '\1' + "2.0" + '\0';
            uint32_t index = dmAppendPosition;
            WriteRecordBuffer(db, record.data(), uint32_t(record.size()), &index);
        }
        DmCloseDatabase(db);
        db = makeDatabase("keys", 0x494E4458u); // fixed-size index entries
        for (int i = 0; i < 30; ++i)
            append(db, "\1\0\0\0key" + std::to_string(100 + (i * 7) % 30));
        DmCloseDatabase(db);
        StorageClose();
        pristine = allFiles();
        expected = readAll();
        StorageClose();
        ASSERT_EQ(allFiles(), pristine) << "a plain open changed the files";
    }

    Files allFiles() const {
        Files files;
        for (const auto &entry : fs::directory_iterator(fs::path(directory) / "DB"))
            files[entry.path().filename().string()] = fileBytes(entry.path().filename().string());
        return files;
    }

    void restore(const Files &files) const {
        fs::remove_all(fs::path(directory) / "DB");
        for (const auto &[name, bytes] : files)
            writeBytes(name, bytes);
        fs::remove(fs::path(directory) / "boxes.log");
    }

    // Every record of every database, or "absent" for one that cannot be found.
    static std::map<std::string, Records> readAll() {
        std::map<std::string, Records> all;
        for (const char *name : kDatabases) {
            Records &records = all[name];
            DmOpenRef db = DmOpenDatabase(0, DmFindDatabase(0, name));
            if (!db) {
                records.push_back("absent");
                continue;
            }
            char buffer[16384];
            for (uint32_t i = 0, n = DmNumRecords(db); i < n; ++i) {
                uint32_t length = ReadRecordBuffer(db, i, buffer, sizeof buffer);
                records.emplace_back(buffer, length);
            }
            DmCloseDatabase(db);
        }
        return all;
    }

    // Damages one file in one of several ways; returns what it did.
    std::string mutate(std::mt19937 &random, Files &files) {
        static const char *const targets[] = {"catalog.plm", "data", "data_OS", "ZELQAINST.tLog",
                                              "ZELQAINST.tLog_OS", "keys"};
        std::string target = targets[random() % std::size(targets)];
        std::vector<uint8_t> &bytes = files[target];
        auto at = [&](size_t limit) { return bytes.empty() ? 0 : random() % std::min(bytes.size(), limit); };
        std::string what;
        switch (random() % 6) {
        case 0: { // a few bits of the headers
            for (int i = 0, n = 1 + int(random() % 3); i < n && !bytes.empty(); ++i)
                bytes[at(256)] ^= uint8_t(1u << (random() % 8));
            what = "header bits";
            break;
        }
        case 1: // one byte anywhere in use
            if (!bytes.empty())
                bytes[at(bytes.size())] = uint8_t(random());
            what = "a byte";
            break;
        case 2: // cut short
            bytes.resize(at(bytes.size()));
            what = "cut at " + std::to_string(bytes.size());
            break;
        case 3: { // a run of zeros
            size_t from = at(bytes.size()), length = random() % 200;
            for (size_t i = from; i < std::min(bytes.size(), from + length); ++i)
                bytes[i] = 0;
            what = "zeros";
            break;
        }
        case 4: { // a header field set to an extreme
            static const uint32_t extremes[] = {0, 1, 19, 21, 0x7FFFFFFF, 0x0FFFFFFF, 0x80000000, 0xFFFFFFFF, 15359};
            size_t field = 4 + 4 * (random() % 4);
            uint32_t value = extremes[random() % std::size(extremes)];
            if (bytes.size() >= field + 4)
                std::memcpy(&bytes[field], &value, 4);
            what = "field " + std::to_string(field) + " = " + std::to_string(value);
            break;
        }
        default: // an index entry or catalog entry aimed elsewhere
            if (bytes.size() >= 24)
                bytes[20 + 4 * (random() % ((std::min<size_t>(bytes.size(), 200) - 20) / 4))] += uint8_t(1 + random() % 8);
            what = "entry moved";
            break;
        }
        return target + ": " + what;
    }

    Files pristine;
    std::map<std::string, Records> expected;
};

// Records as the child hands them over: per database its name, count, and each record's
// length and bytes.
void write(std::ostream &out, const std::map<std::string, Records> &all) {
    for (const auto &[name, records] : all) {
        out << name << ' ' << records.size() << '\n';
        for (const std::string &r : records)
            out << r.size() << ' ' << r << '\n';
    }
}

std::map<std::string, Records> parse(std::istream &in) {
    std::map<std::string, Records> all;
    std::string name;
    size_t count = 0;
    while (in >> name >> count) {
        Records &records = all[name];
        for (size_t i = 0; i < count; ++i) {
            size_t length = 0;
            in >> length;
            in.get();
            std::string record(length, '\0');
            in.read(record.data(), std::streamsize(length));
            records.push_back(record);
        }
    }
    return all;
}

TEST_F(MutationTest, EveryMutatedFileOpensToItsRecordsARebuildOrARuntimeError) {
    const char *asked = std::getenv("ZELQA_MUTATIONS");
    const char *from = std::getenv("ZELQA_MUTATIONS_FROM"); // to see one failing round again
    int rounds = asked ? std::atoi(asked) : 300, first = from ? std::atoi(from) : 0;
    const char *seed = std::getenv("ZELQA_MUTATIONS_SEED");
    std::mt19937 random(seed ? uint32_t(std::atoi(seed)) : 20261123u);
    std::string resultPath = directory + "/result";
    for (int round = 0; round < rounds; ++round) {
        Files files = pristine;
        std::string what = mutate(random, files);
        if (round < first)
            continue;
        SCOPED_TRACE("round " + std::to_string(round) + ", " + what);
        restore(files);
        fs::remove(resultPath);
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(5);
            std::map<std::string, Records> opened = readAll();
            StorageClose();
            bool same = readAll() == opened;
            StorageClose();
            std::ofstream out(resultPath, std::ios::binary);
            write(out, opened);
            out.close();
            _exit(same ? 0 : 4);
        }
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_FALSE(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) << "hung";
        ASSERT_FALSE(WIFEXITED(status) && WEXITSTATUS(status) == 4) << "a second open read otherwise";
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "crashed, status " << status;
        std::ifstream in(resultPath, std::ios::binary);
        if (!in) { // a runtime error ended the child, after its box
            std::vector<std::string> boxes = boxLines();
            EXPECT_TRUE(std::any_of(boxes.begin(), boxes.end(), [](const std::string &b) { return b.rfind("Fatal Error\t", 0) == 0; }))
                << "ended with neither records nor a runtime error";
            continue;
        }
        std::map<std::string, Records> opened = parse(in);
        std::string mutated = what.substr(0, what.find(':'));
        for (const char *name : kDatabases) {
            if (mutated == name)
                continue; // its own records are what the damage left
            EXPECT_EQ(opened[name], expected[name]) << name;
            if (fs::exists(storageFile(name))) {
                EXPECT_EQ(fileBytes(name), pristine[name]) << name << " changed by a read";
            }
        }
        if (HasFailure())
            return;
    }
}

} // namespace
