// Window classes seen across processes: made, found by any process of the user, and gone
// when the holder removes its window or is killed.
#include <gtest/gtest.h>

#include "platform/windows.h"
#include "support/installer_sandbox.h"
#include "zelqa/windows.h"

namespace zq::test {
namespace {

TEST(WindowClasses, ExistWhileHeldInThisProcessIgnoringCase) {
    InstallerSandbox box("windows-local");
    EXPECT_FALSE(zq_window_exists("ZQ_Test_Class"));
    void *first = zq_window_create("ZQ_Test_Class", "one");
    void *second = zq_window_create("ZQ_Test_Class", "two");
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(zq_window_exists("ZQ_Test_Class"));
    EXPECT_TRUE(zq_window_exists("zq_test_class"));
    EXPECT_FALSE(zq_window_exists("ZQ_Test_Other"));
    EXPECT_EQ(zq_window_create(nullptr, "none"), nullptr);

    zq_window_destroy(first);
    EXPECT_TRUE(zq_window_exists("ZQ_Test_Class")); // the second still holds the class
    zq_window_destroy(second);
    EXPECT_FALSE(zq_window_exists("ZQ_Test_Class"));
    zq_window_destroy(nullptr);
}

TEST(WindowClasses, AnotherProcessesWindowGoesWithItsProcess) {
    InstallerSandbox box("windows-remote");
    platform::StartedProcess held = startApplication(60000);
    ASSERT_TRUE(held.process);
    EXPECT_TRUE(zq_window_exists("OO_Window32"));
    EXPECT_TRUE(platform::bringWindowForward("OO_Window32"));

    platform::terminateProcess(held.process);
    platform::waitForExit(held.process);
    EXPECT_TRUE(eventually([] { return !zq_window_exists("OO_Window32"); }));
    EXPECT_FALSE(platform::bringWindowForward("OO_Window32"));
}

} // namespace
} // namespace zq::test
