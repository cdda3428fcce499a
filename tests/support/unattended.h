// Test support: answering boxes unattended and reading what they showed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zq::test {

// A fresh empty directory under the system's temporary directory, apart from those of
// other builds.
std::filesystem::path freshDirectory(const std::string &name);

// Points ZELQA_BOX_LOG at a fresh file and answers every box with `answer`.
class UnattendedBoxes {
public:
    explicit UnattendedBoxes(int answer = 1);
    ~UnattendedBoxes();
    // The logged boxes, one "caption<TAB>style<TAB>text" line each.
    std::vector<std::string> lines() const;

private:
    std::filesystem::path log_;
};

} // namespace zq::test
