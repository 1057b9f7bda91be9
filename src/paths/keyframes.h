// The timeline of a string: a time becomes the name of an effect and its progress.
#pragma once

#include "host/document.h"

namespace captionfx {

/// Sets PathID and PathProgress of a string for `time`, in the unit of its keyframes, and marks the effect for binding
/// when its name changes. Between two keyframes of one effect progress is linear, between those of different effects
/// the earlier holds; outside their span the string has no effect and is not drawn. A string without keyframes keeps
/// what it has. PATH_NOEFFECT is always at rest.
void UpdateStringPath(MetaString& string, float time);

}  // namespace captionfx
