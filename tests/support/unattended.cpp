// Test support: unattended box answers, box logs and scratch directories.
#include "support/unattended.h"

#include "platform/process.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

namespace zq::test {

// Builds of other checkouts run their tests on the same machine at the same time: each
// build keeps its scratch directories apart, named after its own test directory.
std::filesystem::path freshDirectory(const std::string &name) {
    std::string build = std::to_string(std::hash<std::string>{}(ZQ_TEST_BIN_DIR) % 1000000);
    auto dir = std::filesystem::temp_directory_path() / ("zelqa-" + build) / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

namespace {

// One log per test: a death test's child runs the same test and so finds the same log,
// while tests running side by side in other processes keep apart.
std::string logDirectoryName() {
    const auto *test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = "boxes";
    if (test)
        name += std::string("-") + test->test_suite_name() + "." + test->name();
    return name;
}

} // namespace

UnattendedBoxes::UnattendedBoxes(int answer) : log_(freshDirectory(logDirectoryName()) / "boxes.log") {
    platform::setEnvironment("ZELQA_BOX_ANSWER", std::to_string(answer).c_str());
    platform::setEnvironment("ZELQA_BOX_LOG", log_.string().c_str());
}

UnattendedBoxes::~UnattendedBoxes() {
    platform::setEnvironment("ZELQA_BOX_LOG", nullptr);
    platform::setEnvironment("ZELQA_BOX_ANSWER", "1");
}

std::vector<std::string> UnattendedBoxes::lines() const {
    std::vector<std::string> result;
    std::ifstream in(log_, std::ios::binary);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

} // namespace zq::test
