#include "tools/title_overlay.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tools/title_handle.h"
#include "tools/title_source.h"

namespace captionfx {
namespace {

TitleSource Load(IKVT_CaptionFx& title, const TitleText& text) {
    if (const auto* const path = std::get_if<std::filesystem::path>(&text)) return LoadTitle(title, *path);
    return LoadScript(title, std::get<ScriptText>(text).text);
}

void SetPixelOrder(IKVT_CaptionFx& title, PixelOrder order) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    settings.PixelFormat = static_cast<int32_t>(order);
    title.SetRenderSettings(&settings);
}

bool IsOpaque(std::span<const uint32_t> pixels) {
    constexpr uint32_t kAlpha = 0xFF000000;
    return std::ranges::all_of(pixels, [](uint32_t pixel) { return (pixel & kAlpha) == kAlpha; });
}

/// Whether rows lie behind one another as the library wants them, words at addresses of words.
bool ArePacked(FrameRows rows, size_t rowBytes) {
    return rows.stride == static_cast<ptrdiff_t>(rowBytes) &&
           reinterpret_cast<uintptr_t>(rows.first) % alignof(uint32_t) == 0;
}

}  // namespace

TitleOverlay::TitleOverlay(const TitleText& text, const Setup& setup) {
    TitleHandle title = MakeTitle();
    SetPixelOrder(*title, setup.order);
    SetSourceFrame(*title, {}, setup.frame, ground_);  // for a script that names no frame
    TitleSource source = Load(*title, text);
    source.scale *= setup.scale;
    frame_ = SetSourceFrame(*title, source, setup.frame, ground_);
    duration_ = source.duration;
    title_ = title.get();
    painter_.emplace(std::move(title));
}

void TitleOverlay::Draw(float seconds, FrameRows rows) {
    const auto width = static_cast<size_t>(frame_.width), height = static_cast<size_t>(frame_.height);
    const size_t rowBytes = width * sizeof(uint32_t);
    if (ArePacked(rows, rowBytes)) {
        DrawPixels(seconds, {reinterpret_cast<uint32_t*>(rows.first), width * height});
        return;
    }
    packed_.resize(width * height);
    for (size_t y = 0; y < height; ++y) {
        std::memcpy(&packed_[y * width], rows.first + static_cast<ptrdiff_t>(y) * rows.stride, rowBytes);
    }
    DrawPixels(seconds, packed_);
    for (size_t y = 0; y < height; ++y) {
        std::memcpy(rows.first + static_cast<ptrdiff_t>(y) * rows.stride, &packed_[y * width], rowBytes);
    }
}

void TitleOverlay::DrawPixels(float seconds, std::span<uint32_t> pixels) {
    // The two roads of the library round differently: a film's frames must come out as the tool's films do.
    SetGround(IsOpaque(pixels) ? Ground::kOpaque : Ground::kTransparent);
    painter_->Draw(seconds, pixels);
}

void TitleOverlay::SetGround(Ground ground) {
    if (std::exchange(ground_, ground) != ground) SetFrame(*title_, frame_, ground);
}

}  // namespace captionfx
