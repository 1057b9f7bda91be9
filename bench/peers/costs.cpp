#include "peers/costs.h"

#include <array>
#include <cstdio>
#include <vector>

#include "peers/captionfx_title.h"
#include "peers/measure.h"
#include "peers/timing.h"

namespace captionfx::peers {
namespace {

using Change = void(IKVT_CaptionFx& title);

template <auto Get, auto Set, class Record, class Edit>
void Edited(IKVT_CaptionFx& title, Edit edit) {
    Record record{};
    (title.*Get)(kDefaults, kDefaults, &record);
    edit(record);
    (title.*Set)(&record);
}

template <class Edit>
void EditFace(IKVT_CaptionFx& title, Edit edit) {
    Edited<&IKVT_CaptionFx::GetCharFace, &IKVT_CaptionFx::SetDefaultFace, MetaFace>(title, edit);
}
template <class Edit>
void EditBorder(IKVT_CaptionFx& title, Edit edit) {
    Edited<&IKVT_CaptionFx::GetCharBorder, &IKVT_CaptionFx::SetDefaultBorder, MetaBorder>(title, edit);
}
template <class Edit>
void EditShadow(IKVT_CaptionFx& title, Edit edit) {
    Edited<&IKVT_CaptionFx::GetCharShadow, &IKVT_CaptionFx::SetDefaultShadow, MetaShadow>(title, edit);
}
template <class Edit>
void EditSettings(IKVT_CaptionFx& title, Edit edit) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    edit(settings);
    title.SetRenderSettings(&settings);
}

struct Cost {
    const char* what;
    Change* change;
    int strings = 1;
};

constexpr std::array kCosts = {
    Cost{"as in S1, in motion", [](IKVT_CaptionFx&) {}},
    Cost{"no shadow",
         [](IKVT_CaptionFx& title) {
             EditShadow(title, [](MetaShadow& shadow) { shadow.EnableFace = shadow.EnableBorder = 0; });
         }},
    Cost{"a sharp shadow", [](IKVT_CaptionFx& title) { SetShadowBlur(title, 0); }},
    Cost{"a shadow blurred three times as far", [](IKVT_CaptionFx& title) { SetShadowBlur(title, 3 * kShadowBlur); }},
    Cost{"an extruded shadow of 12 units",
         [](IKVT_CaptionFx& title) {
             EditShadow(title, [](MetaShadow& shadow) {
                 shadow.Height = 1;
                 shadow.OffsetX = shadow.OffsetY = 12;
             });
         }},
    Cost{"no border", [](IKVT_CaptionFx& title) { EditBorder(title, [](MetaBorder& border) { border.Enable = 0; }); }},
    Cost{"a border of twice the size",
         [](IKVT_CaptionFx& title) { EditBorder(title, [](MetaBorder& border) { border.Size *= 2; }); }},
    Cost{"a soft face", [](IKVT_CaptionFx& title) { EditFace(title, [](MetaFace& face) { face.BlurRadius = 3; }); }},
    Cost{"a gradient in the face",
         [](IKVT_CaptionFx& title) { EditFace(title, [](MetaFace& face) { face.Color2 = 0x0000A0FF; }); }},
    Cost{"a filter against flicker",
         [](IKVT_CaptionFx& title) {
             EditSettings(title, [](TitleRenderSettings& settings) { settings.PostFilter = 1; });
         }},
    Cost{"a destination with alpha",
         [](IKVT_CaptionFx& title) {
             EditSettings(title, [](TitleRenderSettings& settings) { settings.DestinationAlpha = 1; });
         }},
    Cost{"a second string at the same place", [](IKVT_CaptionFx&) {}, 2},
};

double FrameMs(const Stage& stage, const Cost& cost, bool isCached) {
    constexpr int kWarm = 2, kFrames = 15;
    const Scene& scene = AllScenes().front();
    const TitleHandle title = OpenTitle(scene, stage, 1);
    EditSettings(*title, [&](TitleRenderSettings& settings) { settings.GlyphCacheEnabled = isCached ? 1 : 0; });
    cost.change(*title);
    for (int i = 0; i < cost.strings; ++i) Type(*title, scene, "PATH_NOEFFECT", 0.9F);  // shown, but not at rest
    std::vector<uint32_t> pixels = MakeGround(stage);
    std::vector<double> seconds;
    for (int i = 0; i < kWarm + kFrames; ++i) {
        const double started = SecondsOf(CLOCK_THREAD_CPUTIME_ID);
        Require(title->RenderFrame(pixels.data(), 0) == kTitleOk, "be drawn");
        if (i >= kWarm) seconds.push_back(SecondsOf(CLOCK_THREAD_CPUTIME_ID) - started);
    }
    return Median(seconds) * 1000;
}

}  // namespace

void PrintCosts() {
    std::printf("Milliseconds a frame on one thread; layers kept, or made for each frame\n\n");
    std::printf("%-40s %12s %12s %12s %12s\n", "", "1080 kept", "1080 made", "4k kept", "4k made");
    for (const Cost& cost : kCosts) {
        std::printf("%-40s", cost.what);
        for (const Stage& stage : {k1080, k4k}) {
            for (const bool isCached : {true, false}) std::printf(" %12.2f", FrameMs(stage, cost, isCached));
        }
        std::printf("\n");
        std::fflush(stdout);
    }
}

}  // namespace captionfx::peers
