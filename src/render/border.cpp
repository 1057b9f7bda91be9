#include "render/border.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "host/caption_fx.h"
#include "platform/conversions.h"
#include "render/kernels/mask_kernels.h"

namespace captionfx {
namespace {

constexpr size_t kMostCachedValues = size_t{16} << 20U;  // 32 MiB: far more than titles that stand still or breathe
constexpr float kMaxRadius = static_cast<float>(kMaxLayerSide);

/// The kernel's value at (x, y) from its centre: the signed distance v of the position inside the ellipse along its own
/// ray, 255 a pixel, so that a kernel fades over a single pixel across the ellipse's edge.
int16_t KernelValue(int32_t x, int32_t y, double rx, double ry) {
    if (x == 0 && y == 0) return 255;
    const double xx = static_cast<double>(x) * x, yy = static_cast<double>(y) * y;
    const double d2 = xx + yy;
    const double weighed = yy * (rx * rx) + xx * (ry * ry);
    if (weighed == 0) return 0;  // along a radius of 0
    const double e = std::sqrt(d2 / weighed);
    const double v = e * rx * ry - std::sqrt(d2);
    if (v > 1) return 255;
    if (v < -1) return -255;
    return static_cast<int16_t>(ToInt32(v * 255));
}

BorderKernel BuildKernel(float radiusX, float radiusY) {
    BorderKernel kernel{{}, ReachOf(radiusX), ReachOf(radiusY), {}};
    kernel.Values.reserve((2 * static_cast<size_t>(kernel.Cx) + 1) * (2 * static_cast<size_t>(kernel.Cy) + 1));
    for (int32_t y = -kernel.Cy; y <= kernel.Cy; ++y) {
        for (int32_t x = -kernel.Cx; x <= kernel.Cx; ++x) {
            kernel.Values.push_back(
                KernelValue(std::abs(x), std::abs(y), static_cast<double>(radiusX), static_cast<double>(radiusY)));
        }
    }
    kernel.Plan = MakeDilationPlan(kernel.Values, kernel.Cx, kernel.Cy);
    return kernel;
}

/// What a kernel takes in the cache, in values of two bytes.
size_t CacheShare(const BorderKernel& kernel) {
    return kernel.Values.size() +
           (kernel.Plan.Taps.size() * sizeof(DilationPlan::Tap) + kernel.Plan.Runs.size() * sizeof(DilationPlan::Run)) /
               sizeof(int16_t);
}

/// Raises the destination around (x, y) of the mask to kernel + `level`, at most 255.
void Stamp(CoverageMask& destination, const BorderKernel& kernel, int32_t x, int32_t y, int32_t level) {
    const int32_t firstX = std::max(0, x), endX = std::min(destination.Width, x + 2 * kernel.Cx + 1);
    const int32_t firstY = std::max(0, y), endY = std::min(destination.Height, y + 2 * kernel.Cy + 1);
    const std::ptrdiff_t pitch = 2 * std::ptrdiff_t{kernel.Cx} + 1;
    for (int32_t row = firstY; row < endY; ++row) {
        uint8_t* const out = destination.Row(row);
        const int16_t* const values = kernel.Values.data() + (row - y) * pitch;
        for (int32_t column = firstX; column < endX; ++column) {
            const int32_t raised = std::min(values[column - x] + level, 255);
            if (out[column] < raised) out[column] = static_cast<uint8_t>(raised);
        }
    }
}

/// Whether a pixel of the mask lies on an edge of the shape: in the outermost rows and columns, or above a neighbour.
bool IsEdge(const CoverageMask& mask, int32_t x, int32_t y) {
    if (x == 0 || y == 0 || x == mask.Width - 1 || y == mask.Height - 1) return true;
    const uint8_t* const at = mask.Row(y) + x;
    return at[0] > at[-1] || at[0] > at[1] || at[0] > at[-mask.Width] || at[0] > at[mask.Width];
}

/// The mask, laid at (left, top) of the destination.
MaskRows RowsAt(CoverageMask& destination, const CoverageMask& mask, int32_t left, int32_t top) {
    return {.Out = destination.Row(top) + left,
            .OutPitch = destination.Width,
            .Mask = mask.Bytes.data(),
            .MaskPitch = mask.Width,
            .Width = static_cast<size_t>(mask.Width),
            .Height = mask.Height};
}

}  // namespace

int32_t ReachOf(float radius) {
    return std::max(0, ToInt32(std::ceil(static_cast<double>(std::min(radius, kMaxRadius)))));
}

int32_t CBorder::GetKernel(std::shared_ptr<const BorderKernel>* kernel, float radiusX, float radiusY) {
    if (kernel == nullptr) return kTitleNullPointer;
    *kernel = nullptr;
    if (!(radiusX >= 0 && radiusY >= 0 && radiusX <= kMaxRadius && radiusY <= kMaxRadius)) return kTitleInvalidArgument;
    if (!IsLayerSize(2 * int64_t{ReachOf(radiusX)} + 1, 2 * int64_t{ReachOf(radiusY)} + 1))
        return kTitleInvalidArgument;
    const std::lock_guard lock(mutex_);
    if (const auto cached = kernels_.find({radiusX, radiusY}); cached != kernels_.end()) {
        *kernel = cached->second;
        return kTitleOk;
    }
    *kernel = std::make_shared<const BorderKernel>(BuildKernel(radiusX, radiusY));
    if (cachedValues_ + CacheShare(**kernel) > kMostCachedValues) {
        kernels_.clear();
        cachedValues_ = 0;
    }
    kernels_.emplace(std::pair(radiusX, radiusY), *kernel);
    cachedValues_ += CacheShare(**kernel);
    return kTitleOk;
}

void CBorder::DilateMask(const CoverageMask& mask, CoverageMask& destination, const BorderKernel& kernel) {
    Dilator* const dilate = BestDilator();
    const bool isWhole = destination.Width == mask.Width + 2 * kernel.Cx &&
                         destination.Height == mask.Height + 2 * kernel.Cy && mask.Width > 0 && mask.Height > 0;
    if (dilate == nullptr || !isWhole || kernel.Cx < 1 || kernel.Cy < 1) {
        return DilateMaskPlain(mask, destination, kernel);
    }
    DilateByPlan(mask, destination, kernel.Plan, dilate);
}

void CBorder::DilateMaskPlain(const CoverageMask& mask, CoverageMask& destination, const BorderKernel& kernel) {
    std::ranges::fill(destination.Bytes, uint8_t{0});
    if (kernel.Cx < 1 || kernel.Cy < 1) {
        return PlainMaskKernels().AddMask(RowsAt(destination, mask, kernel.Cx, kernel.Cy));
    }
    for (int32_t y = 0; y < mask.Height; ++y) {
        for (int32_t x = 0; x < mask.Width; ++x) {
            const uint8_t level = mask.Row(y)[x];
            if (level == 0) continue;
            if (IsEdge(mask, x, y)) {
                Stamp(destination, kernel, x, y, level);
            } else {
                destination.Row(y + kernel.Cy)[x + kernel.Cx] = 255;  // inside the shape no stamp reaches farther
            }
        }
    }
}

int32_t CBorder::MakeRing(const CoverageMask& mask, CoverageMask& ring, float radiusX, float radiusY) {
    std::shared_ptr<const BorderKernel> kernel;
    const int32_t status = GetKernel(&kernel, radiusX, radiusY);
    if (status != kTitleOk) {
        std::ranges::fill(ring.Bytes, uint8_t{0});
        return status;
    }
    DilateMask(mask, ring, *kernel);
    const int32_t left = (ring.Width - mask.Width) / 2, top = (ring.Height - mask.Height) / 2;
    BestMaskKernels().TakeMask(RowsAt(ring, mask, left, top));
    return kTitleOk;
}

void CBorder::ClearKernels() {
    const std::lock_guard lock(mutex_);
    kernels_.clear();
    cachedValues_ = 0;
}

CBorder& SharedBorder() {
    static CBorder border;
    return border;
}

std::optional<BorderMasks> MakeBorderMasks(const CoverageMask& mask, float radiusX, float radiusY) {
    const int32_t reachX = ReachOf(radiusX), reachY = ReachOf(radiusY);
    std::optional<CoverageMask> ring = MakeMask(mask.Width + 2 * int64_t{reachX}, mask.Height + 2 * int64_t{reachY});
    if (!ring) return std::nullopt;
    SharedBorder().MakeRing(mask, *ring, radiusX, radiusY);
    BorderMasks masks{*ring, std::move(*ring)};
    BestMaskKernels().AddMask(RowsAt(masks.Dilated, mask, reachX, reachY));
    return masks;
}

}  // namespace captionfx
