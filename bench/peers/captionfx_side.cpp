#include "peers/captionfx_side.h"

#include "peers/captionfx_title.h"
#include "peers/timing.h"

namespace captionfx::peers {
namespace {

class CaptionFxSide final : public Side {
public:
    CaptionFxSide(const Scene& scene, const Stage& stage, int32_t threads)
        : scene_(scene), title_(OpenTitle(scene, stage, threads)) {
        Type(*title_, scene, scene.effect, scene.firstProgress);
        if (scene.firstProgress != scene.lastProgress) SetKeyframes(*title_, scene);
    }

    /// A fresh shadow is one of another blur: the text is entered anew for each frame.
    void Prepare(double moment) override {
        moment_ = static_cast<float>(moment);
        if (scene_.motion != Motion::kFreshShadow) return;
        isWider_ = !isWider_;
        SetShadowBlur(*title_, kWideShadowBlur + (isWider_ ? 1 : 0));
        title_->ClearString(0);
        title_->InsertText(0, 0, JoinedText(scene_).c_str());
    }

    void Draw(uint32_t* pixels) override { Require(title_->RenderFrame(pixels, moment_) == kTitleOk, "be drawn"); }

private:
    const Scene& scene_;
    TitleHandle title_;
    float moment_ = 0;
    bool isWider_ = true;  // the first moment has the blur that the scene names
};

}  // namespace

std::unique_ptr<Side> MakeCaptionFxSide(const Scene& scene, const Stage& stage, int32_t threads) {
    return std::make_unique<CaptionFxSide>(scene, stage, threads);
}

TextLayout MeasureLayout(const Scene& scene, const Stage& stage) {
    const TitleHandle title = OpenTitle(scene, stage, 1);
    Type(*title, scene, "PATH_NOEFFECT", 1);
    TitleRectF whole{};
    title->GetStringRect(0, &whole);
    TextLayout layout{.boxes = {},
                      .left = static_cast<double>(whole.x),
                      .top = static_cast<double>(whole.y),
                      .width = static_cast<double>(whole.width),
                      .height = static_cast<double>(whole.height)};
    int32_t character = 0;
    const std::vector<std::string> lines = TextOf(scene);
    for (size_t line = 0; line < lines.size(); ++line) {
        for (const char letter : lines[line]) {
            TitleRectF box{};
            Require(title->GetCharRect(0, character++, &box, 0) == kTitleOk, "tell where a character stands");
            layout.boxes.push_back({.letter = letter,
                                    .line = line,
                                    .left = static_cast<double>(box.x),
                                    .top = static_cast<double>(box.y),
                                    .width = static_cast<double>(box.width),
                                    .height = static_cast<double>(box.height)});
        }
        character += 2;  // the line end
    }
    return layout;
}

double OpenAndDraw(const Scene& scene, const Stage& stage, Opening opening, uint32_t* pixels) {
    std::u16string xml;
    if (opening == Opening::kLoaded) {
        const TitleHandle title = OpenTitle(scene, stage, 1);
        Type(*title, scene, "PATH_NOEFFECT", 1);
        xml = Saved(*title);
    }
    const double started = SecondsOf(CLOCK_THREAD_CPUTIME_ID);
    const TitleHandle title = OpenTitle(scene, stage, 1);
    if (opening == Opening::kLoaded) {
        Require(title->LoadFromBuffer(xml.c_str()) == kTitleOk, "be loaded");
    } else {
        Type(*title, scene, "PATH_NOEFFECT", 1);
    }
    Require(title->RenderFrame(pixels, 0) == kTitleOk, "be drawn");
    return SecondsOf(CLOCK_THREAD_CPUTIME_ID) - started;
}

}  // namespace captionfx::peers
