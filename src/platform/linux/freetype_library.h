// FreeType handles with owners, and a library that is the same in every process.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <memory>
#include <string>

namespace captionfx {

struct LibraryCloser {
    void operator()(FT_Library library) const;
};
struct FaceCloser {
    void operator()(FT_Face face) const;
};
using LibraryHandle = std::unique_ptr<FT_LibraryRec_, LibraryCloser>;

/// Must go before its library, and is used by one thread at a time.
using FaceHandle = std::unique_ptr<FT_FaceRec_, FaceCloser>;

/// A library with all default modules and their default properties: the environment variable FREETYPE_PROPERTIES, which
/// can change how glyphs look, has no say. Costs about a microsecond. Null when memory has run out.
[[nodiscard]] LibraryHandle NewFreeTypeLibrary();

/// Opens face `index` of a font file. Its character map is the Unicode one, else the symbol one, else there is none.
/// Null for what FreeType cannot read.
[[nodiscard]] FaceHandle OpenFace(FT_Library library, const std::string& path, int index);

}  // namespace captionfx
