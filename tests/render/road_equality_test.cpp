// Frames of random titles by the fast road and by the plain one, byte for byte.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "support/chosen_title.h"

namespace captionfx::test {
namespace {

TEST(RoadEqualityTest, FastFramesAreThePlainOnes) {
    int32_t changed = 0;
    for (uint32_t seed = 1; seed <= 150; ++seed) {
        const auto numbers = [&] {
            return [random = std::mt19937(seed)]() mutable { return static_cast<uint32_t>(random()); };
        };
        ChosenTitle fast(numbers(), false), plain(numbers(), true);
        const std::vector<uint32_t> expected = plain.Frames(), actual = fast.Frames();
        ASSERT_EQ(expected.size(), actual.size());
        const auto [want, got] = std::ranges::mismatch(expected, actual);
        ASSERT_EQ(want, expected.end()) << "title " << seed << ", " << plain.Effects() << "pixel "
                                        << want - expected.begin() << std::hex << ": " << *got << " instead of "
                                        << *want;
        changed += expected[expected.size() - 1] != 0 ? 1 : 0;
    }
    EXPECT_GT(changed, 100) << "most titles are to be seen";
}

}  // namespace
}  // namespace captionfx::test
