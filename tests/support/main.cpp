// Test programs' entry: boxes are answered unattended unless a test asks otherwise, and a
// runtime error that ends a test program outside a death test is a failure.
#include "platform/process.h"
#include "platform/processes.h"
#include "zelqa/errors.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace {

uint32_t testProgram = 0; // the process running the tests; a child it forks ends as it will

// A runtime error ends its process with exit code 0: without this, a test cut short by one
// would read as passed.
void runtimeErrorEndedTheTests() {
    if (zq::platform::currentProcessId() != testProgram)
        return;
    const ::testing::TestInfo *test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::fprintf(stderr, "a runtime error ended the test program in %s.%s\n", test ? test->test_suite_name() : "",
                 test ? test->name() : "(no test)");
    zq::platform::exitProcess(1);
}

// A death test's child expects the runtime error's own exit.
bool inDeathTestChild(int argc, char **argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], "--gtest_internal_run_death_test", 31) == 0)
            return true;
    return false;
}

} // namespace

int main(int argc, char **argv) {
    zq::platform::setEnvironment("ZELQA_BOX_ANSWER", "1");
    if (!inDeathTestChild(argc, argv)) {
        testProgram = zq::platform::currentProcessId();
        __RegisterExit(runtimeErrorEndedTheTests);
    }
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    return RUN_ALL_TESTS();
}
