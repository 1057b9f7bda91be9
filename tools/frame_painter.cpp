#include "tools/frame_painter.h"

#include <algorithm>
#include <new>

#include "tools/effect_list.h"

namespace captionfx {
namespace {

/// The library composites the image of such an effect by one road and its kept copy by another: they round differently.
bool IsImageBased(const std::string& name) {
    const auto effect = std::ranges::find(EffectList(), name, &EffectInfo::name);
    return effect != EffectList().end() && effect->isImageBased;
}

}  // namespace

void FramePainter::Draw(float time, std::span<uint32_t> pixels) {
    if (strings_.Hold(*title_, time)) kept_.reset();
    if (kept_ && (title_->GetStringCount() > 1 || IsImageBased(*kept_))) ForgetKeptFrame();
    if (kept_) ground_.assign(pixels.begin(), pixels.end());
    Render(time, pixels);
    const std::optional<std::string> rest = EffectAtRest();
    if (!rest) return;
    if (kept_ && *kept_ != *rest) {
        ForgetKeptFrame();
        std::ranges::copy(ground_, pixels.begin());
        Render(time, pixels);
    }
    kept_ = rest;
}

std::optional<std::string> FramePainter::EffectAtRest() const {
    StringSpec settings{};
    for (int32_t i = 0; i < title_->GetStringCount(); ++i) {
        title_->GetStringSettings(i, &settings);
        if (settings.PathProgress != 1.0F) return std::nullopt;
    }
    return settings.PathID;
}

void FramePainter::Render(float time, std::span<uint32_t> pixels) {
    if (title_->RenderFrame(pixels.data(), time) != kTitleOk) throw std::bad_alloc();
}

/// A kept picture belongs to its clip rectangle. Changing that to and fro costs nothing, while FlushRenderCaches would
/// also cost every glyph.
void FramePainter::ForgetKeptFrame() {
    TitleRenderSettings settings{};
    title_->GetRenderSettings(&settings);
    TitleRenderSettings other = settings;
    ++other.ClipRect.right;
    title_->SetRenderSettings(&other);
    title_->SetRenderSettings(&settings);
    kept_.reset();
}

}  // namespace captionfx
