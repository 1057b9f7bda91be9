// The sides' pictures, to be looked at: they must show the same.
#pragma once

#include <filesystem>
#include <string>

#include "peers/scene.h"

namespace captionfx::peers {

/// Writes <scene>-<size>.png into `folder`: this library, libass and cairo, one under the other, at one moment.
void WritePictures(const Scene& scene, const Stage& stage, const std::string& fontFile,
                   const std::filesystem::path& folder);

}  // namespace captionfx::peers
