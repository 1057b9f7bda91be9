#include "tools/script/timeline.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/script/effect_names.h"
#include "tools/script/script_values.h"

namespace captionfx {
namespace {

constexpr const char* kAtRest = "PATH_NOEFFECT";
constexpr float kLongest = 1e6F;

float SecondsOf(const JsonValue& value) {
    return NumberOf(value, 0.0F, kLongest, "seconds, 0 or more");
}

std::optional<Passage> ReadPassage(const JsonValue* value) {
    if (value == nullptr) return std::nullopt;
    CheckObject(*value, kPassageKeys);
    const JsonValue* const effect = FindMember(*value, "effect");
    if (effect == nullptr) Fail(*value, "the key 'effect' is missing");
    Passage passage{.effect = ReadEffect(*effect)};
    if (const JsonValue* const seconds = FindMember(*value, "seconds")) passage.seconds = SecondsOf(*seconds);
    return passage;
}

std::vector<Keyframe> ReadKeys(const JsonValue& value) {
    std::vector<Keyframe> keys;
    for (const JsonValue& item : ArrayOf(value, "an array of keyframes")) {
        CheckObject(item, kKeyframeKeys);
        for (const std::string_view key : kKeyframeKeys) {
            if (FindMember(item, key) == nullptr) Fail(item, "the key '" + std::string(key) + "' is missing");
        }
        const JsonValue& time = *FindMember(item, "time");
        keys.push_back({.time = NumberOf(time, -kLongest, kLongest, "seconds"),
                        .effect = ReadEffect(*FindMember(item, "effect")),
                        .progress = NumberOf(*FindMember(item, "progress"))});
        if (keys.size() > 1 && keys.back().time <= keys[keys.size() - 2].time)
            Fail(time, "expected a time after that of the keyframe before");
    }
    if (keys.empty()) Fail(value, "expected at least one keyframe");
    return keys;
}

/// The next time that a file, which has six decimals, keeps apart.
float After(float time) {
    constexpr float kDecimal = 1e-6F;
    return std::max(std::nextafter(time, std::numeric_limits<float>::max()), time + kDecimal);
}

/// Adds a keyframe. Of two at one time the library knows the first alone, so the second comes as soon after as it can.
void Append(std::vector<Keyframe>& keys, float time, const std::string& effect, float progress) {
    const float earliest = keys.empty() ? time : After(keys.back().time);
    keys.push_back({.time = std::max(time, earliest), .effect = effect, .progress = progress});
}

/// A sum of times, to the microseconds that a file keeps: 2.15 and 1.7 make the 3.85 that is read back, not its
/// neighbour.
float Sum(float a, float b) {
    constexpr double kMicroseconds = 1e6;
    const double exact = static_cast<double>(a) + static_cast<double>(b);
    return static_cast<float>(std::round(exact * kMicroseconds) / kMicroseconds);
}

/// The shortest decimal that makes `later` when it is added to `earlier`.
float Difference(float later, float earlier) {
    const double exact = static_cast<double>(later) - static_cast<double>(earlier);
    for (double unit = 1; unit <= 1e6; unit *= 10) {
        const auto rounded = static_cast<float>(std::round(exact * unit) / unit);
        if (Sum(earlier, rounded) == later) return rounded;
    }
    return static_cast<float>(exact);
}

}  // namespace

float Timeline::End() const {
    if (!keys.empty()) return keys.back().time;
    return Sum(Sum(Sum(start, in ? in->seconds : 0.0F), hold.value_or(0.0F)), out ? out->seconds : 0.0F);
}

std::string ReadEffect(const JsonValue& value) {
    const std::string& name = NameOf(value, "the name of an effect, such as \"slide-left\"");
    const std::optional<std::string> effect = EffectOfName(name);
    if (effect) return *effect;
    const std::string nearest = NearestEffectName(name);
    Fail(value, "there is no effect '" + name + "'" +
                    (nearest.empty() ? " (see 'captionfx effects')" : "; is '" + nearest + "' meant?"));
}

Timeline ReadTimeline(const JsonValue& string) {
    Timeline timeline;
    if (const JsonValue* const keys = FindMember(string, "keys")) {
        for (const std::string_view other : {"start", "in", "hold", "out"}) {
            if (const JsonValue* const member = FindMember(string, other))
                FailKey(*member, "'keys' says all about time; one of the two must go");
        }
        timeline.keys = ReadKeys(*keys);
        timeline.isTimed = true;
        return timeline;
    }
    if (const JsonValue* const start = FindMember(string, "start")) timeline.start = SecondsOf(*start);
    if (const JsonValue* const hold = FindMember(string, "hold")) timeline.hold = SecondsOf(*hold);
    timeline.in = ReadPassage(FindMember(string, "in"));
    timeline.out = ReadPassage(FindMember(string, "out"));
    timeline.isTimed =
        std::ranges::any_of(kTimelineKeys, [&](std::string_view key) { return FindMember(string, key) != nullptr; });
    return timeline;
}

std::vector<Keyframe> KeyframesOf(const Timeline& timeline, float duration) {
    if (!timeline.isTimed || !timeline.keys.empty()) return timeline.keys;
    const float entered = Sum(timeline.start, timeline.in ? timeline.in->seconds : 0.0F);
    const float leaving = timeline.hold
                              ? Sum(entered, *timeline.hold)
                              : std::max(entered, Sum(duration, timeline.out ? -timeline.out->seconds : 0.0F));
    std::vector<Keyframe> keys;
    if (timeline.in) Append(keys, timeline.start, timeline.in->effect, 0.0F);
    // A keyframe holds until one of another effect takes over, so that the text rests in its entrance.
    const std::string rest = timeline.in ? timeline.in->effect : kAtRest;
    Append(keys, entered, rest, 1.0F);
    if (timeline.out) {
        if (timeline.out->effect != rest || leaving > entered) Append(keys, leaving, timeline.out->effect, 1.0F);
        Append(keys, Sum(leaving, timeline.out->seconds), timeline.out->effect, 0.0F);
    } else if (leaving > entered) {
        Append(keys, leaving, rest, 1.0F);
    }
    return keys;
}

std::optional<Timeline> PassagesOf(const std::vector<Keyframe>& keys) {
    constexpr size_t kMostKeys = 4;
    if (keys.size() < 2 || keys.size() > kMostKeys || keys.front().time < 0.0F) return std::nullopt;
    Timeline timeline{.start = keys.front().time, .in = {}, .out = {}, .hold = {}, .keys = {}, .isTimed = true};
    const bool enters = keys[0].progress == 0.0F, leaves = keys.back().progress == 0.0F;
    const Keyframe& entered = keys[enters ? 1 : 0];
    const Keyframe& leaving = keys[keys.size() - (leaves ? 2 : 1)];
    if (enters) timeline.in = {.effect = keys[0].effect, .seconds = Difference(entered.time, keys[0].time)};
    if (leaves) timeline.out = {.effect = keys.back().effect, .seconds = Difference(keys.back().time, leaving.time)};
    timeline.hold = leaving.time > entered.time ? Difference(leaving.time, entered.time) : 0.0F;
    return KeyframesOf(timeline, 0.0F) == keys ? std::optional(timeline) : std::nullopt;
}

}  // namespace captionfx
