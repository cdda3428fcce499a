// The locale decimal character: ZELQA_DECIMAL_CHAR stands in for the locale on every
// platform; without it POSIX answers ','.
#include "library/decimal_character.h"
#include "platform/locale.h"
#include "platform/process.h"

#include <gtest/gtest.h>

namespace {

TEST(DecimalCharacter, TheEnvironmentOverridesTheLocale) {
    zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", ".");
    EXPECT_EQ(zq::library::localeDecimalCharacter(), '.');
    zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", ",x");
    EXPECT_EQ(zq::library::localeDecimalCharacter(), ',');
    zq::platform::setEnvironment("ZELQA_DECIMAL_CHAR", nullptr);
    char answer = zq::library::localeDecimalCharacter();
    EXPECT_EQ(answer, zq::platform::localeDecimalSeparator());
    if (zq::platform::directorySeparator() == '/')
        EXPECT_EQ(answer, ',');
    else
        EXPECT_NE(answer, '\0');
}

} // namespace
