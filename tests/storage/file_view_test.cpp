// Storage files: sizes at open, the mapping rule, growth steps, and failures on real files.
#include "support/storage_fixture.h"

#include "platform/files.h"
#include "storage/file_view.h"
#include "zelqa/errors.h"

using namespace zq::storage_test;
using zq::storage::FileView;

namespace {

class FileViewTest : public StorageTest {
protected:
    // Views need only the storage directory, which a start sets. Storage is not held
    // afterwards: a death test's child, its own process on Windows, takes it again.
    void SetUp() override {
        StorageTest::SetUp();
        ASSERT_EQ(StorageStart(), dmErrNone);
        StorageClose();
    }
};

TEST_F(FileViewTest, OpeningSizesFilesByTheirHeaderAndTheMappingRule) {
    struct Case {
        const char *name;
        std::vector<uint8_t> bytes; // empty: no file at all
        uint32_t mapped, used;
    };
    std::vector<uint8_t> small(100, 0);
    small[16] = 60; // used 60, capacity 0 -> file size counts as 15360
    std::vector<uint8_t> odd(20000, 0);
    odd[12] = 0x20, odd[13] = 0x4E; // capacity 20000
    odd[16] = 40;
    std::vector<uint8_t> over(15360, 0);
    over[12] = 0x00, over[13] = 0x3C; // capacity 15360
    over[16] = 0xFF, over[17] = 0xFF; // used 65535, beyond the capacity
    std::vector<uint8_t> wild(15360, 0);
    wild[15] = 0x7F; // capacity far beyond the file: the file's size stands in
    wild[16] = 20;
    std::vector<uint8_t> nearLimit = wild;
    nearLimit[12] = 0x00, nearLimit[13] = 0xF0, nearLimit[14] = 0xFF, nearLimit[15] = 0x0F; // just below the limit
    std::vector<uint8_t> cut(16000, 0);
    cut[12] = 0x00, cut[13] = 0x78; // capacity 30720, used 30000: the file lost its tail
    cut[16] = 0x30, cut[17] = 0x75;
    for (const Case &c : {Case{"fresh", {}, 15360, 1}, Case{"small", small, 15360, 60},
                          Case{"odd", odd, 24640, 40}, Case{"over", over, 15360, 15360},
                          Case{"wild", wild, 15360, 20}, Case{"near limit", nearLimit, 15360, 20},
                          Case{"cut", cut, 16640, 16000}}) {
        if (!c.bytes.empty())
            writeBytes(c.name, c.bytes);
        auto view = zq::storage::openView(c.name);
        zq::storage::closeView(view);
        std::vector<uint8_t> file = fileBytes(c.name);
        EXPECT_EQ(file.size(), c.mapped) << c.name;
        EXPECT_EQ(readU32(file, 12), c.mapped) << c.name;
        EXPECT_EQ(readU32(file, 16), c.used) << c.name;
    }
}

TEST(MappingSize, AddsTheRemainderOnlyBelowTheSizeLimit) {
    EXPECT_EQ(zq::storage::mappingSize(30720), 30720u);
    EXPECT_EQ(zq::storage::mappingSize(16000), 16640u);
    EXPECT_EQ(zq::storage::mappingSize(0x0FFFFF00), 0x0FFFFF00u); // with its remainder it would reach the limit
}

TEST_F(FileViewTest, GrowthTakesLargerStepsAndKeepsTheBytes) {
    auto view = zq::storage::openView("grow");
    zq::storage::growView(*view, 20);
    EXPECT_EQ(view->cursor, 0u); // a fresh file's used size of 1 counts as nothing
    std::vector<uint32_t> capacities;
    for (int i = 0; i < 6; ++i) {
        uint32_t before = view->header().capacity;
        zq::storage::growView(*view, int64_t(before) - view->used()); // fills it exactly
        view->base()[view->used() - 1] = uint8_t(i + 1);
        capacities.push_back(view->header().capacity - before);
    }
    EXPECT_EQ(capacities, (std::vector<uint32_t>{15360, 15360, 61440, 61440, 92160, 92160}));
    uint32_t used = view->used();
    zq::storage::closeView(view);
    std::vector<uint8_t> file = fileBytes("grow");
    EXPECT_EQ(readU32(file, 16), used);
    EXPECT_EQ(file[used - 1], 6);
    // A growth beyond the next step takes what is needed plus one step.
    view = zq::storage::openView("big");
    zq::storage::growView(*view, 100000);
    EXPECT_EQ(view->header().capacity, 100000u + 15360u + (115360u % 15360u));
    EXPECT_EQ(view->cursor, 0u);
    zq::storage::closeView(view);
}

TEST_F(FileViewTest, FailuresOnRealFilesEndInTheirAlertAndLowMemory) {
    struct Case {
        zq::platform::Fault fault;
        std::string alert;
    };
    for (const Case &c : {Case{zq::platform::Fault::Map, "falhou CreateFileMapping do arquivo broken sz=15360 "},
                          Case{zq::platform::Fault::Open, "falhou abertura do arquivo broken "}}) {
        EXPECT_EXIT(
            {
                // Opens: the probe for the header, the open for mapping, then the creation.
                zq::platform::failNth(c.fault, c.fault == zq::platform::Fault::Open ? 3 : 1);
                zq::storage::openView("broken");
            },
            ::testing::ExitedWithCode(0), "");
        EXPECT_TRUE(sawBox(c.alert)) << c.alert;
        EXPECT_TRUE(sawBox("LOW MEMORY!")) << c.alert;
    }
    EXPECT_EXIT(zq::storage::openView(std::string(128, 'n')), ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(sawBox("Nome muito grande"));
}

TEST_F(FileViewTest, AFailedGrowthEndsTheProcessAndLeavesTheFileReadable) {
    EXPECT_EXIT(
        {
            auto view = zq::storage::openView("resize");
            zq::storage::growView(*view, 20);
            zq::platform::failNth(zq::platform::Fault::Resize, 1);
            zq::storage::growView(*view, 20000);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_TRUE(sawBox("LOW MEMORY!"));
    auto view = zq::storage::openView("resize");
    EXPECT_EQ(view->used(), 20u);
    EXPECT_EQ(view->header().capacity, 15360u);
    zq::storage::closeView(view);
}

} // namespace
