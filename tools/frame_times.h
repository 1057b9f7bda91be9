// The frames of a sequence: their times and their files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace captionfx {

/// How many frames there are from `from` up to, and without, `to`: at least one, at most ten million, or 0 where the
/// times do not rise or would need more.
[[nodiscard]] int32_t FrameCount(float from, float to, float rate);

/// Time of frame `index`. Not summed up, so that the last frame of an hour is as exact as the first.
[[nodiscard]] float FrameTime(float from, float rate, int32_t index);

/// Whether a pattern has one place for a frame number, %d or %04d, and no other percent sign but %%.
[[nodiscard]] bool IsFramePattern(const std::string& pattern);

/// The file of a frame. The pattern must be one.
[[nodiscard]] std::filesystem::path FrameFile(const std::string& pattern, int32_t index);

}  // namespace captionfx
