#include "paths/image_paths.h"

#include <algorithm>
#include <cstring>

#include "paths/path_formula.h"

namespace captionfx {
namespace {

using KVTImageUtility::CImageARGB;
using KVTImageUtility::CImageBase;

/// The columns that hold the text, with one on either side, and the part of them that a wipe has passed at `p`.
struct WipedColumns {
    int32_t Left, Right;  ///< Right is the first column without text.
    int64_t Passed;
};

WipedColumns ColumnsAt(const TitleRect& opaque, float p) {
    const int32_t left = opaque.left - 1, right = opaque.right + 1;
    return {
        .Left = left, .Right = right, .Passed = ToInt32(static_cast<double>(static_cast<float>(right - left + 1) * p))};
}

bool HaveSameSize(const CImageBase& a, const CImageBase& b) {
    return a.Width() == b.Width() && a.Height() == b.Height();
}

void CopyColumns(const CImageARGB& source, const CImageARGB& target, int32_t first, int32_t end) {
    const std::ptrdiff_t at = std::ptrdiff_t{first} * CImageARGB::kBytesPerPixel;
    const auto bytes = static_cast<size_t>(end - first) * CImageARGB::kBytesPerPixel;
    for (int32_t y = 0; y < source.Height(); ++y) std::memcpy(target.Row(y) + at, source.Row(y) + at, bytes);
}

/// Sets the columns [first, end) to the source's column `edge`, row by row.
void SmearColumn(const CImageARGB& source, const CImageARGB& target, int32_t edge, int32_t first, int32_t end) {
    for (int32_t y = 0; y < source.Height(); ++y) {
        const uint8_t* const pixel = source.Row(y) + std::ptrdiff_t{edge} * CImageARGB::kBytesPerPixel;
        uint8_t* const row = target.Row(y);
        for (int32_t x = first; x < end; ++x) {
            std::memcpy(row + std::ptrdiff_t{x} * CImageARGB::kBytesPerPixel, pixel, CImageARGB::kBytesPerPixel);
        }
    }
}

/// Adds `factor` times a scratch image to a target, byte by byte, alpha too, up to 255. The product wraps in 32 bits,
/// and a sum below 0 keeps its low 8 bits.
void SaturatingAdd(const CImageARGB& target, const CImageARGB& scratch, float factor) {
    const auto m = static_cast<uint32_t>(ToInt32(static_cast<double>(factor * 65536)));
    const int32_t rowBytes = std::min(target.Width(), scratch.Width()) * CImageARGB::kBytesPerPixel;
    for (int32_t y = 0; y < std::min(target.Height(), scratch.Height()); ++y) {
        uint8_t* const out = target.Row(y);
        const uint8_t* const in = scratch.Row(y);
        for (int32_t i = 0; i < rowBytes; ++i) {
            const int32_t sum = (static_cast<int32_t>(in[i] * m) >> 16) + out[i];
            out[i] = static_cast<uint8_t>(std::min(sum, 255));
        }
    }
}

}  // namespace

int32_t CPathBlurLeft::ProcessImage(float progress) {
    if (!HaveSameSize(source_, target_)) return kTitleFailure;
    TitleRect opaque{};
    FindOpaqueBounds(&opaque, source_);
    const WipedColumns columns = ColumnsAt(opaque, progress);
    const int64_t edge = columns.Right - columns.Passed;
    const int32_t width = source_.Width();
    if (edge < 0) {
        target_.CopyFrom(source_);
    } else if (edge >= width) {
        target_.Fill(0);
    } else {
        const auto column = static_cast<int32_t>(edge);
        SmearColumn(source_, target_, column, 0, column);
        CopyColumns(source_, target_, column, width);
    }
    return kTitleOk;
}

int32_t CPathBlurLeft::GetImageBounds(TitleRect* out, const TitleRect* in) {
    *out = {.left = 0, .top = in->top, .right = in->right, .bottom = in->bottom};
    return kTitleOk;
}

int32_t CPathBlurRight::ProcessImage(float progress) {
    if (!HaveSameSize(source_, target_)) return kTitleFailure;
    TitleRect opaque{};
    FindOpaqueBounds(&opaque, source_);
    const WipedColumns columns = ColumnsAt(opaque, progress);
    const int64_t edge = columns.Passed + columns.Left;
    const int32_t width = source_.Width();
    if (edge < 0) {
        target_.Fill(0);
    } else if (edge >= width) {
        target_.CopyFrom(source_);
    } else {
        const auto column = static_cast<int32_t>(edge);
        CopyColumns(source_, target_, 0, column);
        SmearColumn(source_, target_, column, column, width - 1);
    }
    return kTitleOk;
}

int32_t CPathBlurRight::GetImageBounds(TitleRect* out, const TitleRect* in) {
    *out = {.left = in->left, .top = in->top, .right = source_.Width(), .bottom = in->bottom};
    return kTitleOk;
}

int32_t CPathGlow::CalcCharacter(int32_t pass, int32_t index, float progress, CharPlacement* placement) {
    CPathBase::CalcCharacter(pass, index, progress, placement);
    placement->Alpha = progress > 0.5F ? 255 : WrappedAlpha(progress * 255 * 2);
    return 1;
}

int32_t CPathGlow::ProcessImage(float progress) {
    if (!scratch_) scratch_ = std::make_unique<CImageARGB>(target_.Width(), target_.Height());
    scratch_->CopyFrom(source_);
    const auto largest = static_cast<float>(source_.Width() * 0.1);
    const int32_t radius = ToInt32(static_cast<double>((1 - progress) * largest));
    scratch_->BoxBlur(radius);
    scratch_->BoxBlur(radius);
    target_.CopyFrom(*scratch_);
    SaturatingAdd(target_, *scratch_, (1 - progress) * 10);
    return kTitleOk;
}

int32_t CPathGlow::GetImageBounds(TitleRect* out, const TitleRect* in) {
    const int32_t width = source_.Width(), height = source_.Height();
    const int32_t reach = ToInt32(width * 0.1 * 2.0);
    // The sides are compared before they are moved: a rectangle from anywhere must not overflow.
    const auto lower = [reach](int32_t side) {
        return static_cast<int32_t>(std::max<int64_t>(int64_t{side} - reach, 0));
    };
    const auto upper = [reach](int32_t side, int32_t limit) {
        return static_cast<int32_t>(std::min<int64_t>(int64_t{side} + reach, limit));
    };
    *out = {.left = lower(in->left),
            .top = lower(in->top),
            .right = upper(in->right, width),
            .bottom = upper(in->bottom, height)};
    if (out->left >= out->right || out->top >= out->bottom) *out = {};
    return kTitleOk;
}

}  // namespace captionfx
