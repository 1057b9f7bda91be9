#include "support/comma_locale.h"

#include <clocale>

#include <gtest/gtest.h>

namespace captionfx::test {

CommaLocale::CommaLocale() {
    EXPECT_NE(std::setlocale(LC_ALL, "German_Germany.1252"), nullptr);
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_ALL, "C");
}

}  // namespace captionfx::test
