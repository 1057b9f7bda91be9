// The dilation of a coverage mask as vectors. A kernel is taken apart once into what vectors do quickly: runs of full
// positions, which only ask where edges are, and the rim, whose positions add to an edge's level or take from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace captionfx {

/// A kernel of (2 Cx + 1) by (2 Cy + 1) values, in parts. Positions that reach nothing, values of -255, have no part.
struct DilationPlan {
    /// Full positions of a kernel row: the columns from X - Half to X + Half.
    struct Run {
        int32_t Half, X, Y;
    };
    /// Taps of equal weight in a band, up to EndTap.
    struct Group {
        int32_t Weight;  ///< -254 to 254
        size_t EndTap;
    };
    /// Kernel rows, FirstRow to EndRow - 1, and their groups and taps up to EndGroup and EndTap. Mask rows beyond the
    /// mask are zeros that are there to be read, and bands keep them few.
    struct Band {
        int32_t FirstRow, EndRow;
        size_t EndGroup, EndTap;
    };
    struct Tap {
        int32_t X, Y;
    };

    std::vector<Run> Runs;  ///< By half widths: each is made of the one before.
    std::vector<Tap> Taps;
    std::vector<Group> Groups;
    std::vector<Band> Bands;  ///< From the top.
    int32_t Cx = 0, Cy = 0;
};

inline constexpr int32_t kMostBandRows = 32;
inline constexpr ptrdiff_t kDilationSlack = 128;  ///< bytes: two of the widest vectors

/// Mask, edges and dilation have rows of one pitch, that of the dilation: the mask lies Cx columns from the left, so
/// that no tap of a row leaves the row, and all loops run over rows as if they were one.
struct DilationJob {
    const DilationPlan& Plan;
    ptrdiff_t Pitch;           ///< the mask's width + 2 Cx
    int32_t Rows;              ///< of the mask
    int32_t BlockRows;         ///< mask rows to a block, whose runs grow at once
    const uint8_t* Levels;     ///< the mask; a row and the slack of zeros around it
    uint8_t* Edges;            ///< like the mask, all 0; a band of rows, Cx and the slack of zeros around it
    uint8_t *Grown, *Growing;  ///< a block each, all 0; a row and the slack of zeros around it
    uint8_t* Out;              ///< Rows + 2 Cy rows, all 0; Cx and the slack of zeros around it
    const ptrdiff_t* Offsets;  ///< of the taps: how far from Edges[i] the level lies that Out[i] gets from it
};

using Dilator = void(const DilationJob&);

/// The widest that this processor has; null where vectors bring nothing.
[[nodiscard]] Dilator* BestDilator();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<Dilator*> VectorDilators();

}  // namespace captionfx
