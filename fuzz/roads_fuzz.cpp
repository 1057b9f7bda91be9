// A byte string as the choices of a title, drawn by the fast road and by the plain one: the frames are the same bytes.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "fuzz/input_reader.h"
#include "support/chosen_title.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using captionfx::test::ChosenTitle;
    const auto numbers = [&] {
        return [reader = captionfx::fuzz::InputReader(data, size)]() mutable {
            const uint32_t high = reader.Byte();
            return high << 8U | reader.Byte();
        };
    };
    ChosenTitle fast(numbers(), false), plain(numbers(), true);
    const auto expected = plain.Frames(), actual = fast.Frames();
    if (expected == actual) return 0;
    const auto differs = std::ranges::mismatch(expected, actual).in1 - expected.begin();
    std::fprintf(stderr, "the roads differ at %td: %s\n", differs, plain.Effects().c_str());
    std::abort();
}
