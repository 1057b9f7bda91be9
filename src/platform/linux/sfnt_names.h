// The names of a face as the Windows font list shows them: read from the name table of the file, since Fontconfig folds
// names that differ only in blanks and orders them by locale.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>
#include <vector>

namespace captionfx {

/// All cut to what fits into LogFont::lfFaceName, 31 code units.
struct SfntNames {
    std::u16string Family;                ///< In English; empty if the face has no name at all.
    std::vector<std::u16string> Aliases;  ///< The family in other languages; systems of those languages list it so.
    std::u16string FullName;              ///< In English; may be empty.
};

[[nodiscard]] SfntNames ReadSfntNames(FT_Face face);

}  // namespace captionfx
