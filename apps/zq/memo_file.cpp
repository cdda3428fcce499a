// Writing and reading dBASE III memo texts.
#include "memo_file.h"

#include <filesystem>
#include <vector>

namespace zq::tool {

MemoWriter::~MemoWriter() {
    if (file_)
        std::fclose(file_);
}

bool MemoWriter::open(const std::string &path) {
    file_ = std::fopen(path.c_str(), "wb");
    if (!file_)
        return false;
    std::vector<char> header(kMemoBlock, 0);
    return std::fwrite(header.data(), 1, header.size(), file_) == header.size();
}

std::optional<uint32_t> MemoWriter::add(const std::string &text) {
    if (text.empty())
        return 0u;
    if (text.find('\x1A') != std::string::npos)
        return std::nullopt;
    std::string bytes = text + "\x1A\x1A";
    bytes.resize((bytes.size() + kMemoBlock - 1) / kMemoBlock * kMemoBlock, '\0');
    if (std::fseek(file_, long(next_) * kMemoBlock, SEEK_SET) != 0 ||
        std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size())
        return std::nullopt;
    uint32_t block = next_;
    next_ += uint32_t(bytes.size() / kMemoBlock);
    return block;
}

bool MemoWriter::close() {
    uint8_t next[4] = {uint8_t(next_), uint8_t(next_ >> 8), uint8_t(next_ >> 16), uint8_t(next_ >> 24)};
    bool ok = std::fseek(file_, 0, SEEK_SET) == 0 && std::fwrite(next, 1, 4, file_) == 4;
    ok = std::fclose(file_) == 0 && ok;
    file_ = nullptr;
    return ok;
}

std::optional<std::string> readMemoText(std::FILE *file, uint32_t block) {
    if (std::fseek(file, long(block) * kMemoBlock, SEEK_SET) != 0)
        return std::nullopt;
    std::string text;
    char buffer[kMemoBlock];
    for (;;) {
        size_t n = std::fread(buffer, 1, sizeof buffer, file);
        if (n == 0)
            return text.empty() ? std::nullopt : std::optional<std::string>(text);
        for (size_t i = 0; i < n; ++i) {
            if (buffer[i] == '\x1A')
                return text;
            text += buffer[i];
        }
    }
}

std::string memoPathOf(const std::string &dbfPath, bool mustExist) {
    std::filesystem::path p(dbfPath);
    std::filesystem::path lower = p, upper = p;
    lower.replace_extension(".dbt");
    upper.replace_extension(".DBT");
    std::error_code ec;
    if (mustExist && !std::filesystem::exists(lower, ec) && std::filesystem::exists(upper, ec))
        return upper.string();
    return lower.string();
}

} // namespace zq::tool
