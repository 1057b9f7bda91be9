// Division by a number that stays the same for many dividends, as one multiplication with the same result.
#pragma once

#include <cstdint>
#include <limits>

namespace captionfx {

/// floor(n / divisor) for all n up to `largest`, exact.
///
/// With m = floor(2^64 / d) + 1 the product n m / 2^64 lies above n / d by less than n / 2^64, which cannot reach the
/// next whole number while n d < 2^64 (Granlund and Montgomery, 1994). Where that does not hold the division itself is
/// done.
class ExactDivider {
public:
    ExactDivider(uint64_t divisor, uint64_t largest)
        : divisor_(divisor),
          reciprocal_(divisor > 1 && largest < std::numeric_limits<uint64_t>::max() / divisor
                          ? std::numeric_limits<uint64_t>::max() / divisor + 1
                          : 0) {}

    [[nodiscard]] uint64_t operator()(uint64_t n) const {
        return reciprocal_ != 0 ? static_cast<uint64_t>((Wide{n} * reciprocal_) >> 64U) : n / divisor_;
    }

private:
    __extension__ using Wide = unsigned __int128;
    uint64_t divisor_;
    uint64_t reciprocal_;  // 0: divide
};

}  // namespace captionfx
