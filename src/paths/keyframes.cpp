#include "paths/keyframes.h"

#include <cmath>
#include <string>

namespace captionfx {
namespace {

void Hold(MetaString& string, std::string_view name, float progress) {
    SetText(string.PathID, name);
    string.PathProgress = name == "PATH_NOEFFECT" ? 1.0F : progress;
}

/// The last keyframe before `time` and the first one not before it; both become the end of the list where there is
/// none. They are walked for with the comparisons written out: a time that is not a number has no neighbours, while an
/// ordered look-up would find it equal to anything.
void Resolve(MetaString& string, float time) {
    const auto& list = string.PathList;
    const auto exact = std::isnan(time) ? list.end() : list.find(time);
    if (exact != list.end()) return Hold(string, TextOf(exact->second.PathID), exact->second.PathProgress);

    auto lower = list.end(), upper = list.begin();
    string.KeyCursor = nullptr;
    while (upper != list.end() && time > upper->first) {
        lower = upper++;
        string.KeyCursor = &lower->second;
    }
    if (lower == list.end() || upper == list.end()) return Hold(string, "", 0.0F);

    const MetaPath& from = lower->second;
    const MetaPath& to = upper->second;
    if (TextOf(from.PathID) != TextOf(to.PathID)) return Hold(string, TextOf(from.PathID), from.PathProgress);
    const float t = (time - lower->first) / (upper->first - lower->first);
    Hold(string, TextOf(from.PathID), (to.PathProgress - from.PathProgress) * t + from.PathProgress);
}

}  // namespace

void UpdateStringPath(MetaString& string, float time) {
    if (string.PathList.empty()) return;
    const std::string before(TextOf(string.PathID));
    Resolve(string, time);
    if (TextOf(string.PathID) != before) string.PathChanged = 1;
}

}  // namespace captionfx
