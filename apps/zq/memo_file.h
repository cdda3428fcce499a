// The dBASE III memo file (.dbt) beside a DBF file: shapelib reads and writes the DBF
// itself but not its memo texts, so they are kept here.
//
// Layout: 512-byte blocks; block 0 holds the next free block number (u32 little-endian);
// each text starts on a block of its own and ends with two 0x1A bytes. A memo field of
// the DBF holds the text's first block number in ASCII, blank when there is no text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace zq::tool {

constexpr uint32_t kMemoBlock = 512;

class MemoWriter {
public:
    ~MemoWriter();
    bool open(const std::string &path);
    // The block the text starts at; 0 for an empty text (none written), or none when the
    // text holds the end byte 0x1A or the file cannot be written.
    std::optional<uint32_t> add(const std::string &text);
    bool close(); // writes the header

private:
    std::FILE *file_ = nullptr;
    uint32_t next_ = 1;
};

// The text starting at a block of a memo file; none when the file does not reach it.
std::optional<std::string> readMemoText(std::FILE *file, uint32_t block);

// The memo file of a DBF file: the same name with .dbt (or .DBT).
std::string memoPathOf(const std::string &dbfPath, bool mustExist);

} // namespace zq::tool
