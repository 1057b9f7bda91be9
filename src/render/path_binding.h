// Binding of an effect to its string: the geometry that the effect works with.
#pragma once

#include "host/document.h"
#include "paths/path_manager.h"

namespace captionfx {

/// Makes the effect that PathID names and gives it a snapshot of the string's geometry, unless it is there and nothing
/// changed since. An unknown name leaves the string without an effect object. Returns 0.
int32_t EnsureStringPath(CPathManager& manager, const TitleRenderSettings& settings, MetaString& string);

}  // namespace captionfx
