#include "tools/frame_painter.h"

#include <algorithm>
#include <utility>

#include "tools/effect_list.h"
#include "tools/title_setup.h"

namespace captionfx {
namespace {

/// The library composites the image of such an effect by one road and its kept copy by another: they round differently.
bool IsImageBased(const std::string& name) {
    const auto effect = std::ranges::find(EffectList(), name, &EffectInfo::name);
    return effect != EffectList().end() && effect->isImageBased;
}

}  // namespace

FramePainter::FramePainter(TitleHandle title)
    : title_(std::move(title)), player_(std::make_unique<TitlePlayer>(*title_)) {}

void FramePainter::Draw(float time, std::span<uint32_t> pixels) {
    if (kept_ && IsImageBased(*kept_)) ForgetKeptFrame();
    if (kept_) ground_.assign(pixels.begin(), pixels.end());
    player_->Draw(pixels.data(), time);
    const std::optional<std::string> rest = EffectAtRest();
    if (!rest) return;
    if (kept_ && *kept_ != *rest) {
        ForgetKeptFrame();
        std::ranges::copy(ground_, pixels.begin());
        player_->Draw(pixels.data(), time);
    }
    kept_ = rest;
}

std::optional<std::string> FramePainter::EffectAtRest() const {
    if (title_->GetStringCount() != 1) return std::nullopt;
    StringSpec settings{};
    title_->GetStringSettings(0, &settings);
    return settings.PathProgress == 1.0F ? std::optional<std::string>(settings.PathID) : std::nullopt;
}

void FramePainter::ForgetKeptFrame() {
    DropKeptFrame(*title_);
    kept_.reset();
}

}  // namespace captionfx
