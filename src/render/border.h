// Glyph borders: a coverage mask dilated by an ellipse, and the ring that is left when the glyph is taken out of it.
// Kernels are cached by their exact radii, since one title asks for the same few again and again.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "render/coverage_mask.h"
#include "render/dilation.h"

namespace captionfx {

/// (2 Cx + 1) by (2 Cy + 1) values from -255 to 255, row by row: how far each position lies inside the ellipse, 255 a
/// pixel. Cx and Cy are the radii rounded up.
struct BorderKernel {
    std::vector<int16_t> Values;
    int32_t Cx = 0, Cy = 0;
    DilationPlan Plan;  ///< The same values for vectors.
};

/// One for the program, shared by all titles and threads.
class CBorder {
public:
    CBorder() = default;
    CBorder(const CBorder&) = delete;
    CBorder& operator=(const CBorder&) = delete;
    virtual ~CBorder() = default;

    /// The kernel of two radii in pixels. Returns 0; kTitleNullPointer for a null output; kTitleInvalidArgument, with
    /// an empty kernel, for radii below 0 or beyond any layer. A kernel stays valid after ClearKernels.
    int32_t GetKernel(std::shared_ptr<const BorderKernel>* kernel, float radiusX, float radiusY);

    /// Writes the dilation of `mask` by `kernel` into `destination`, whose size is that of the mask grown by Cx and Cy
    /// on each side: what would fall outside is dropped. A kernel with a radius below 1 copies the mask.
    static void DilateMask(const CoverageMask& mask, CoverageMask& destination, const BorderKernel& kernel);

    /// The definition of DilateMask, stamp by stamp.
    static void DilateMaskPlain(const CoverageMask& mask, CoverageMask& destination, const BorderKernel& kernel);

    /// Writes the dilation less the glyph itself. Returns a status as GetKernel does; on failure the ring is empty.
    int32_t MakeRing(const CoverageMask& mask, CoverageMask& ring, float radiusX, float radiusY);

    /// Forgets all kernels.
    void ClearKernels();

private:
    std::mutex mutex_;
    std::map<std::pair<float, float>, std::shared_ptr<const BorderKernel>> kernels_;
    size_t cachedValues_ = 0;  // of all kernels there; a cache that grows too large is emptied
};

CBorder& SharedBorder();

/// The border's two masks: the dilation with the glyph solid in it, for shadows, and the ring without the glyph.
struct BorderMasks {
    CoverageMask Dilated, Ring;
};

/// Both masks, of the glyph's size grown by the radii rounded up on each side. With radii of 0 or less the ring is
/// empty and the dilation is the glyph. Nothing when the masks would be too large.
[[nodiscard]] std::optional<BorderMasks> MakeBorderMasks(const CoverageMask& mask, float radiusX, float radiusY);

/// How many pixels a radius reaches: rounded up, at least 0.
[[nodiscard]] int32_t ReachOf(float radius);

}  // namespace captionfx
