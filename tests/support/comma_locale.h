// A host that prints 0.5 as 0,5, until the object ends.
#pragma once

namespace captionfx::test {

class CommaLocale {
public:
    CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale();
};

}  // namespace captionfx::test
