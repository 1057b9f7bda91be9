// Golden frames: pictures that a person has looked at, compared exactly.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <gtest/gtest.h>

namespace captionfx::test {

/// Compares a frame with tests/golden/<name>.png. On failure it tells how many pixels differ, where first and by how
/// much at most, and writes <name>.actual.png and <name>.difference.png (differences times 8) to the build's
/// test-output. With the environment variable CAPTIONFX_ACCEPT_GOLDEN set the golden frame is written instead: look at
/// it.
[[nodiscard]] testing::AssertionResult MatchesGolden(const std::string& name, std::span<const uint32_t> pixels,
                                                     int32_t width, int32_t height);

}  // namespace captionfx::test
