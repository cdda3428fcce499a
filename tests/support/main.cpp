// Test programs' entry: boxes are answered unattended unless a test asks otherwise.
#include "platform/process.h"

#include <gtest/gtest.h>

int main(int argc, char **argv) {
    zq::platform::setEnvironment("ZELQA_BOX_ANSWER", "1");
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    return RUN_ALL_TESTS();
}
