// One algorithm, and what differs as policies: how the mapping is computed and a texel addressed, what a texel does to
// a pixel, and whether depth is kept.
//
// The inner loop has no division and no test that does not serve its case. The mapping is divided out once in 32 pixels
// and stepped evenly between.
#include "sgl/span_routines.h"

#include <algorithm>
#include <cmath>

#include "sgl/fixed_point.h"
#include "sgl/texture_mapping.h"

namespace sgl {
namespace {

constexpr int32_t kSubSpan = 32;
constexpr int64_t kOne32 = int64_t{1} << 32;

/// Texture coordinates in texels: 16.16 or float.
template <class Number>
struct Texels {
    Number s, t;
};

struct FixedPlane {
    int32_t x, y, z;

    explicit FixedPlane(const Vec3& p)
        : x(ToInt32(p.x * 65536.0f)), y(ToInt32(p.y * 65536.0f)), z(ToInt32(p.z * 65536.0f)) {}
};

/// The mapping in 16.16. What leaves 32 bits wraps.
class FixedMapping {
public:
    static bool HasRays(const SpanSurface& surface) { return surface.rays.x != nullptr && surface.rays.y != nullptr; }

    FixedMapping(const SpanSurface& surface, const MappingPlanes& planes, int32_t sScale, int32_t tScale)
        : rays_(surface.rays), s_(planes.s), t_(planes.t), n_(planes.n), sScale_(sScale), tScale_(tScale) {}

    void StartRow(int32_t y) {
        const int32_t ray = rays_.y[static_cast<size_t>(y)];
        sRow_ = Multiply16(s_.y, ray);
        tRow_ = Multiply16(t_.y, ray);
        nRow_ = Multiply16(n_.y, ray);
    }

    /// Where the denominator is too small the last sample that was taken stands, from whichever row.
    Texels<int32_t> Sample(int32_t x) {
        const int32_t ray = rays_.x[static_cast<size_t>(x)];
        const auto at = [ray](const FixedPlane& plane, int32_t row) {
            return Add(Add(Multiply16(plane.x, ray), row), plane.z);
        };
        const int32_t denominator = at(n_, nRow_);
        if (denominator > 2 || denominator < -2) {
            const auto reciprocal = static_cast<int32_t>(kOne32 / denominator);
            last_.s = Multiply16(Multiply(at(s_, sRow_), sScale_), reciprocal);
            last_.t = Multiply16(Multiply(at(t_, tRow_), tScale_), reciprocal);
        }
        return last_;
    }

    static Texels<int32_t> Step(const Texels<int32_t>& from, const Texels<int32_t>& to, int32_t length) {
        const int64_t f = kOne32 / (int64_t{length} << 16);
        const auto step = [f](int32_t a, int32_t b) { return Low32(Subtract(b, a) * f >> 16); };
        return {step(from.s, to.s), step(from.t, to.t)};
    }

    static Texels<int32_t> Next(const Texels<int32_t>& at, const Texels<int32_t>& step) {
        return {Add(at.s, step.s), Add(at.t, step.t)};
    }

private:
    const RayTables& rays_;
    FixedPlane s_, t_, n_;
    int32_t sScale_, tScale_;  ///< Texels in one unit of s and t.
    int32_t sRow_ = 0, tRow_ = 0, nRow_ = 0;
    Texels<int32_t> last_{};
};

/// A corner's place in the texture, cut to whole texels.
int32_t WholeTexels(int32_t side, float coordinate) {
    return ToInt32(static_cast<float>(side) * coordinate);
}

/// Coordinates repeat, by masks. A side that is no power of two up to 1024 counts as 1.
class WrapMapping : public FixedMapping {
public:
    WrapMapping(const SpanSurface& surface, const MappingPlanes& planes, const SGLTexture& texture, const SGLVertex& b)
        : FixedMapping(surface, planes, 1 << texture.log2Width, 1 << texture.log2Height),
          log2Width_(texture.log2Width),
          sMask_((1 << texture.log2Width) - 1),
          tMask_(((1 << texture.log2Height) - 1) << texture.log2Width),
          sOrigin_(Multiply(WholeTexels(texture.width, b.s), kOne16)),
          tOrigin_(Multiply(WholeTexels(texture.height, b.t), 1 << texture.log2Width)) {}

    [[nodiscard]] Texels<int32_t> Start(const Texels<int32_t>& at) const { return {Add(at.s, sOrigin_), at.t}; }

    [[nodiscard]] int64_t Index(const Texels<int32_t>& at) const {
        const int32_t row = Low32(int64_t{at.t >> 16} << log2Width_);
        return (Add(row, tOrigin_) & tMask_) + (at.s >> 16 & sMask_);
    }

private:
    int32_t log2Width_, sMask_, tMask_;
    int32_t sOrigin_, tOrigin_;  ///< 16.16; whole rows, as an index.
};

/// The edge texels repeat outward. Serves textures of any size.
class ClampMapping : public FixedMapping {
public:
    ClampMapping(const SpanSurface& surface, const MappingPlanes& planes, const SGLTexture& texture, const SGLVertex& b)
        : FixedMapping(surface, planes, texture.width, texture.height),
          width_(texture.width),
          height_(texture.height),
          sOrigin_(Multiply(WholeTexels(texture.width, b.s), kOne16)),
          tOrigin_(Multiply(WholeTexels(texture.height, b.t), kOne16)) {}

    [[nodiscard]] Texels<int32_t> Start(const Texels<int32_t>& at) const {
        return {Add(at.s, sOrigin_), Add(at.t, tOrigin_)};
    }

    [[nodiscard]] int64_t Index(const Texels<int32_t>& at) const {
        return int64_t{width_} * std::clamp(at.t >> 16, 0, height_ - 1) + std::clamp(at.s >> 16, 0, width_ - 1);
    }

private:
    int32_t width_, height_;
    int32_t sOrigin_, tOrigin_;
};

/// As ClampMapping, in floats. A row does not know of the one before.
class FloatMapping {
public:
    static bool HasRays(const SpanSurface& surface) {
        return surface.rays.xFloat != nullptr && surface.rays.yFloat != nullptr;
    }

    FloatMapping(const SpanSurface& surface, const MappingPlanes& planes, const SGLTexture& texture, const SGLVertex& b)
        : rays_(surface.rays),
          planes_(planes),
          width_(texture.width),
          height_(texture.height),
          sOrigin_(static_cast<float>(texture.width) * b.s),
          tOrigin_(static_cast<float>(texture.height) * b.t) {}

    void StartRow(int32_t y) {
        const float ray = rays_.yFloat[static_cast<size_t>(y)];
        row_ = {planes_.s.y * ray, planes_.t.y * ray, planes_.n.y * ray};
        last_ = {};
    }

    Texels<float> Sample(int32_t x) {
        constexpr float kLeastDenominator = 3.0517578e-5f;  // 2 in 16.16
        const float ray = rays_.xFloat[static_cast<size_t>(x)];
        const float denominator = planes_.n.x * ray + row_.z + planes_.n.z;
        if (std::abs(denominator) > kLeastDenominator) {
            const float reciprocal = 1.0f / denominator;
            last_.s = (planes_.s.x * ray + row_.x + planes_.s.z) * static_cast<float>(width_) * reciprocal;
            last_.t = (planes_.t.x * ray + row_.y + planes_.t.z) * static_cast<float>(height_) * reciprocal;
        }
        return last_;
    }

    static Texels<float> Step(const Texels<float>& from, const Texels<float>& to, int32_t length) {
        const float f = 1.0f / static_cast<float>(length);
        return {(to.s - from.s) * f, (to.t - from.t) * f};
    }

    static Texels<float> Next(const Texels<float>& at, const Texels<float>& step) {
        return {at.s + step.s, at.t + step.t};
    }

    [[nodiscard]] Texels<float> Start(const Texels<float>& at) const { return {at.s + sOrigin_, at.t + tOrigin_}; }

    [[nodiscard]] int64_t Index(const Texels<float>& at) const {
        return int64_t{width_} * std::clamp(ToInt32(at.t), 0, height_ - 1) + std::clamp(ToInt32(at.s), 0, width_ - 1);
    }

private:
    const RayTables& rays_;
    MappingPlanes planes_;
    int32_t width_, height_;
    float sOrigin_, tOrigin_;
    Vec3 row_{};  ///< What the row adds to s, t and the denominator.
    Texels<float> last_{};
};

// What a texel does to a pixel.

struct WholeWord {
    static void Apply(uint32_t& pixel, uint32_t texel) { pixel = texel; }
};

struct AlphaTest {
    static void Apply(uint32_t& pixel, uint32_t texel) {
        if (texel >= 0x80000000) pixel = texel;
    }
};

/// The weight of a texel in 256 parts is its alpha plus `kAdded`. 0 leaves pixels alone where alpha is 0 and never
/// quite reaches the texel; 1 reaches it, and moves a pixel down by one where alpha is 0. Neither rounds. Alpha stays.
template <int32_t kAdded>
struct Blend {
    static void Apply(uint32_t& pixel, uint32_t texel) {
        const int32_t a = static_cast<int32_t>(texel >> 24) + kAdded;
        uint32_t blended = pixel & 0xFF000000;
        for (uint32_t shift = 0; shift < 24; shift += 8) {
            const auto s = static_cast<int32_t>(texel >> shift & 0xFF), d = static_cast<int32_t>(pixel >> shift & 0xFF);
            blended |= (static_cast<uint32_t>(d + ((s - d) * a >> 8)) & 0xFF) << shift;
        }
        pixel = blended;
    }
};

// Whether a pixel of a row is seen.

class WithoutDepth {
public:
    static bool HasBuffer(const SpanSurface& /*surface*/) { return true; }
    WithoutDepth(const SpanSurface& /*surface*/, int32_t /*firstPixel*/, const ScanEdge& /*edge*/) {}
    static bool NextPasses() { return true; }
};

/// A pixel that passes is marked as taken, even if the alpha test then rejects it.
class WithDepth {
public:
    static bool HasBuffer(const SpanSurface& surface) { return surface.depth != nullptr; }
    WithDepth(const SpanSurface& surface, int32_t firstPixel, const ScanEdge& edge)
        : depth_(surface.depth + firstPixel + edge.left.x),
          z_(edge.left.z),
          zStep_(Subtract(edge.right.z, edge.left.z) / (edge.right.x - edge.left.x + 1)) {}

    bool NextPasses() {
        const bool passes = *depth_ < z_;
        if (passes) *depth_ = z_;
        ++depth_;
        z_ = Add(z_, zStep_);
        return passes;
    }

private:
    int32_t* depth_;
    int32_t z_, zStep_;
};

template <class Mapping, class Pixel, class Depth>
void FillSpans(const SpanSurface& surface, const ScanRun& run, const SGLTriangle& triangle) {
    const SGLTexture& texture = *triangle.texture;
    if (surface.frame == nullptr || !Mapping::HasRays(surface) || !Depth::HasBuffer(surface)) return;
    if (texture.width <= 0 || texture.height <= 0) return;
    const auto planes = SolveMapping(triangle, surface.perspective);
    if (!planes) return;
    Mapping mapping(surface, *planes, texture, *triangle.corners[1]);
    const uint32_t* texels = texture.pixels;

    for (int32_t i = 0; i < run.rows; ++i) {
        const ScanEdge& edge = run.edges[i];
        if (edge.left.x >= edge.right.x) continue;
        const int32_t y = run.firstRow + i, firstPixel = surface.rowPixels[y];
        uint32_t* row = surface.frame + firstPixel;
        Depth depth(surface, firstPixel, edge);
        mapping.StartRow(y);
        auto from = mapping.Sample(edge.left.x);
        for (int32_t x = edge.left.x; x < edge.right.x;) {
            const int32_t next = surface.perspective ? std::min(x + kSubSpan, edge.right.x) : edge.right.x;
            const auto to = mapping.Sample(next);
            const auto step = Mapping::Step(from, to, next - x);
            for (auto at = mapping.Start(from); x < next; ++x, at = Mapping::Next(at, step)) {
                if (depth.NextPasses()) Pixel::Apply(row[x], texels[mapping.Index(at)]);
            }
            from = to;
        }
    }
}

// NOLINTBEGIN(readability-identifier-naming): routines, though the language calls them constants
constexpr SpanRoutine* SpanOpaqueDepth = FillSpans<WrapMapping, WholeWord, WithDepth>;
constexpr SpanRoutine* SpanAlphaTestDepth = FillSpans<WrapMapping, AlphaTest, WithDepth>;
constexpr SpanRoutine* SpanBlendDepth = FillSpans<WrapMapping, Blend<0>, WithDepth>;
constexpr SpanRoutine* SpanOpaque = FillSpans<ClampMapping, WholeWord, WithoutDepth>;
constexpr SpanRoutine* SpanAlphaTest = FillSpans<WrapMapping, AlphaTest, WithoutDepth>;
constexpr SpanRoutine* SpanBlend = FillSpans<WrapMapping, Blend<1>, WithoutDepth>;
constexpr SpanRoutine* SpanFloat = FillSpans<FloatMapping, WholeWord, WithoutDepth>;
// NOLINTEND(readability-identifier-naming)

}  // namespace

SpanRoutine* SelectSpanRoutine(int32_t rasterMode, bool depthEnabled, BlendMode blendMode) {
    constexpr SpanRoutine* kFixed[2][3] = {{SpanOpaque, SpanAlphaTest, SpanBlend},
                                           {SpanOpaqueDepth, SpanAlphaTestDepth, SpanBlendDepth}};
    if (rasterMode == kFloatRasterMode) return SpanFloat;
    return kFixed[depthEnabled ? 1 : 0][static_cast<size_t>(blendMode)];
}

}  // namespace sgl
