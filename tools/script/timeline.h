// When a string of a script is seen: it enters, holds and leaves, or follows keyframes of its own.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/argument_values.h"
#include "tools/script/json_tree.h"

namespace captionfx {

/// An effect that brings a string in, its progress rising from 0 to 1, or takes it out, falling from 1 to 0.
struct Passage {
    std::string effect;  ///< As the library calls it.
    float seconds = 1.0F;
};

/// A string without any of this is seen all the time.
struct Timeline {
    float start = 0.0F;  ///< Seconds.
    std::optional<Passage> in, out;
    std::optional<float> hold;   ///< Seconds between; without it until the title ends.
    std::vector<Keyframe> keys;  ///< By rising time; in their place, where there are any.
    bool isTimed = false;

    /// Seconds from 0 to the end, without a hold that is not told.
    [[nodiscard]] float End() const;
};

inline constexpr std::array<std::string_view, 5> kTimelineKeys{"start", "in", "hold", "out", "keys"};
inline constexpr std::array<std::string_view, 2> kPassageKeys{"effect", "seconds"};
inline constexpr std::array<std::string_view, 3> kKeyframeKeys{"time", "effect", "progress"};

/// Reads the timeline's keys of a string. Throws PlacedError.
[[nodiscard]] Timeline ReadTimeline(const JsonValue& string);

/// An effect's name, readable or the library's own.
[[nodiscard]] std::string ReadEffect(const JsonValue& value);

/// The keyframes that play a timeline in a title of this duration, in seconds; none where the string is seen all the
/// time.
[[nodiscard]] std::vector<Keyframe> KeyframesOf(const Timeline& timeline, float duration);

/// The timeline of a start, an entrance, a hold and an exit that has these very keyframes; nothing where there is none.
[[nodiscard]] std::optional<Timeline> PassagesOf(const std::vector<Keyframe>& keys);

}  // namespace captionfx
