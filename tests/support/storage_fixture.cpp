// The storage tests' fixture: per-test directories under the system's temporary directory.
#include "support/storage_fixture.h"

#include "platform/files.h"
#include "platform/process.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

namespace fs = std::filesystem;

namespace zq::storage_test {

// The directory is named after the test, so that a death test's child process, which may
// run the test again from the start, writes its boxes where the parent reads them.
void StorageTest::SetUp() {
    const auto *info = ::testing::UnitTest::GetInstance()->current_test_info();
    size_t build = std::hash<std::string>{}(ZQ_TEST_BIN_DIR);
    fs::path dir = fs::temp_directory_path() / ("zq_storage_" + std::to_string(build % 1000000)) /
                   (std::string(info->test_suite_name()) + "." + info->name());
    std::error_code ec;
    fs::remove_all(dir, ec);
    fs::create_directories(dir);
    directory = dir.string();
    platform::setEnvironment("ZELQA_PROGRAM_DIR", directory.c_str());
    platform::setEnvironment("ZELQA_BOX_ANSWER", "1");
    platform::setEnvironment("ZELQA_BOX_LOG", (dir / "boxes.log").string().c_str());
    fs::current_path(dir);
    platform::failNth(platform::Fault::Map, 0);
    platform::failNth(platform::Fault::Open, 0);
    platform::failNth(platform::Fault::Write, 0);
    platform::failNth(platform::Fault::Resize, 0);
}

void StorageTest::TearDown() {
    StorageClose();
    fs::current_path(fs::temp_directory_path());
    std::error_code ec;
    fs::remove_all(directory, ec);
}

std::string StorageTest::storageFile(const std::string &name) const {
    return (fs::path(directory) / "DB" / name).string();
}

std::vector<uint8_t> StorageTest::fileBytes(const std::string &name) const {
    std::ifstream in(storageFile(name), std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), {});
}

void StorageTest::writeBytes(const std::string &name, const std::vector<uint8_t> &bytes) const {
    fs::create_directories(fs::path(directory) / "DB");
    std::ofstream out(storageFile(name), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
}

std::vector<std::string> StorageTest::boxLines() const {
    std::ifstream in(fs::path(directory) / "boxes.log");
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

bool StorageTest::sawBox(const std::string &text) const {
    for (const std::string &line : boxLines()) {
        size_t tab = line.find('\t', line.find('\t') + 1);
        if (tab != std::string::npos && line.substr(tab + 1) == text)
            return true;
    }
    return false;
}

DmOpenRef StorageTest::makeDatabase(const std::string &name, uint32_t type) {
    EXPECT_EQ(DmCreateDatabase(0, name.c_str(), 0x5A454C51u, type, 0), dmErrNone) << name;
    return DmOpenDatabase(0, DmFindDatabase(0, name.c_str()));
}

uint32_t StorageTest::append(DmOpenRef db, const std::string &bytes) {
    uint32_t index = dmAppendPosition;
    MemHandle h = DmNewRecord(db, &index, uint32_t(bytes.size()));
    EXPECT_NE(h, nullptr);
    void *p = MemHandleLock(h);
    EXPECT_EQ(DmWrite(p, 0, bytes.data(), uint32_t(bytes.size())), dmErrNone);
    MemHandleUnlock(h);
    EXPECT_EQ(DmReleaseRecord(db, index, 1), dmErrNone);
    return index;
}

std::string StorageTest::recordText(DmOpenRef db, uint32_t i) {
    MemHandle h = DmQueryRecord(db, i);
    if (!h)
        return "<none>";
    const char *p = static_cast<const char *>(MemHandleLock(h));
    std::string text(p, MemHandleSize(h));
    MemHandleUnlock(h);
    return text;
}

uint32_t readU32(const std::vector<uint8_t> &b, size_t o) {
    return b.size() < o + 4 ? 0xDEADBEEF : uint32_t(b[o]) | uint32_t(b[o + 1]) << 8 | uint32_t(b[o + 2]) << 16 | uint32_t(b[o + 3]) << 24;
}

uint16_t readU16(const std::vector<uint8_t> &b, size_t o) {
    return b.size() < o + 2 ? 0xDEAD : uint16_t(b[o] | b[o + 1] << 8);
}

} // namespace zq::storage_test
