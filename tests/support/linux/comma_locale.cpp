#include "support/comma_locale.h"

#include <clocale>
#include <cstdlib>

#include <gtest/gtest.h>

namespace captionfx::test {

CommaLocale::CommaLocale() {
    ::setenv("LOCPATH", CAPTIONFX_TEST_LOCALES, 1);
    EXPECT_NE(std::setlocale(LC_ALL, "de_DE.utf8"), nullptr) << "tests/CMakeLists.txt makes it";
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_ALL, "C");
}

}  // namespace captionfx::test
