// A fixture for storage tests: a program directory of its own, unattended boxes, file bytes.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "zelqa/storage.h"

namespace zq::storage_test {

class StorageTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Path of a file in the storage directory "DB".
    std::string storageFile(const std::string &name) const;
    std::vector<uint8_t> fileBytes(const std::string &name) const;
    void writeBytes(const std::string &name, const std::vector<uint8_t> &bytes) const;
    // One line per box shown: caption, style and text separated by tabs.
    std::vector<std::string> boxLines() const;
    // True when some box's text is exactly this.
    bool sawBox(const std::string &text) const;

    // Creates (type 'DATA' unless given), finds and opens a database.
    DmOpenRef makeDatabase(const std::string &name, uint32_t type = 0x44415441u);
    // Appends a record with these bytes; returns its index.
    uint32_t append(DmOpenRef db, const std::string &bytes);
    // The bytes of record i, or "<none>".
    std::string recordText(DmOpenRef db, uint32_t i);

    std::string directory; // the program directory of this test
};

uint32_t readU32(const std::vector<uint8_t> &bytes, size_t offset);
uint16_t readU16(const std::vector<uint8_t> &bytes, size_t offset);

} // namespace zq::storage_test
