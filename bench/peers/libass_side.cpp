// Each frame is a set of events of its own, which a host would have read from the file long before: the events are
// made in `Prepare`. One event a line, or one a character where characters move by themselves; and usually each twice,
// since \blur softens the border too: once as the soft shadow alone, once as face and border.
#include "peers/libass_side.h"

#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include <ass/ass.h>

#include "peers/blend.h"

namespace captionfx::peers {
namespace {

// libass's lines have the ascender and the descender that are meant for clipping, and its size is their sum. In ems.
constexpr double kLineAscent = 1854.0 / 2048, kLineHeight = (1854.0 + 434.0) / 2048;
// The credits at 4K shall stay in the cache, in all fractions of a pixel; of shadows that are to be fresh only the few
// last ones do (times the square of the stage's scale).
constexpr int kCacheMegabytes = 512, kFreshCacheMegabytes = 9;
constexpr int kShadowLayer = 0, kBodyLayer = 1;
// libass's \blur is in a unit of its own: sigma in pixels over this.
const double kSigmaOfBlur = 2 / std::sqrt(std::log(256.0));

struct EndLibrary {
    void operator()(ASS_Library* library) const { ass_library_done(library); }
    void operator()(ASS_Renderer* renderer) const { ass_renderer_done(renderer); }
    void operator()(ASS_Track* track) const { ass_free_track(track); }
};

template <class T>
using Owned = std::unique_ptr<T, EndLibrary>;

template <class T>
Owned<T> Have(T* made) {
    if (made == nullptr) throw std::runtime_error("libass cannot be started");
    return Owned<T>(made);
}

void Silent(int /*level*/, const char* /*format*/, va_list /*arguments*/, void* /*data*/) {}

/// Two hexadecimal digits; 0 is opaque there.
int AssAlpha(double alpha) {
    return static_cast<int>(std::lround(255 - 255 * alpha));
}

template <class... Values>
std::string Formatted(const char* format, Values... values) {
    std::array<char, 1024> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

class LibassSide final : public Side {
public:
    LibassSide(const Scene& scene, const Stage& stage, const TextLayout& layout, const std::string& fontFile,
               SoftShadow shadow)
        : scene_(scene),
          stage_(stage),
          layout_(layout),
          shadow_(shadow),
          text_(TextOf(scene)),
          look_(LookOf(scene, stage)),
          library_(Have(ass_library_init())),
          renderer_(Have((ass_set_message_cb(library_.get(), Silent, nullptr), ass_renderer_init(library_.get())))),
          track_(Have(ass_new_track(library_.get()))) {
        ass_set_frame_size(renderer_.get(), stage.width, stage.height);
        ass_set_storage_size(renderer_.get(), stage.width, stage.height);
        ass_set_shaper(renderer_.get(), ASS_SHAPING_SIMPLE);
        ass_set_fonts(renderer_.get(), fontFile.c_str(), kFontFamily, ASS_FONTPROVIDER_NONE, nullptr, 0);
        const int freshMegabytes = kFreshCacheMegabytes * static_cast<int>(stage.scale * stage.scale);
        ass_set_cache_limits(renderer_.get(), 0,
                             scene.motion == Motion::kFreshShadow ? freshMegabytes : kCacheMegabytes);
        std::string header = Header();
        ass_process_codec_private(track_.get(), header.data(), static_cast<int>(header.size()));
    }

    void Prepare(double moment) override {
        ass_flush_events(track_.get());
        AddFrame(moment);
        ++frame_;
    }

    void Draw(uint32_t* pixels) override {
        constexpr long long kTimeMs = 1;  // within the events
        for (const ASS_Image* image = ass_render_frame(renderer_.get(), track_.get(), kTimeMs, nullptr);
             image != nullptr; image = image->next) {
            // Colours are red, green, blue, and transparency in the lowest byte.
            const uint32_t alpha = 255 - (image->color & 0xFF);
            // What cannot be seen is not blended: the shadow's own face and border.
            if (image->w <= 0 || image->h <= 0 || alpha <= 1) continue;
            uint32_t* const corner = pixels + std::ptrdiff_t{image->dst_y} * stage_.width + image->dst_x;
            BlendCoverage(corner, stage_.width, {image->bitmap, image->w, image->h, image->stride}, image->color >> 8,
                          alpha);
        }
    }

private:
    void AddFrame(double moment) {
        if (MovesAsWhole(scene_)) {
            for (const PlacedLine& line : PlaceLines(scene_, stage_, layout_, text_, moment)) {
                const std::string place = Place(line.x, line.baseline);
                AddEvents(place, line.alpha, Shown(line.text));
            }
            return;
        }
        for (const PlacedChar& placed : PlaceCharacters(scene_, stage_, layout_, moment)) {
            // The event's corner is its line's, so that the base line stays where it is when the letter is scaled.
            const std::string place = Place(placed.x, placed.baseline, placed.scale) +
                                      Formatted("\\fscx%.4f\\fscy%.4f\\org(%.3f,%.3f)\\frz%.4f", placed.scale * 100,
                                                placed.scale * 100, placed.x, placed.baseline, -placed.clockwiseDeg);
            AddEvents(place, placed.alpha, std::string(1, placed.letter));
        }
    }

    [[nodiscard]] std::string Header() const {
        return Formatted(
            "[Script Info]\nScriptType: v4.00+\nPlayResX: %d\nPlayResY: %d\nWrapStyle: 2\nKerning: no\n"
            "ScaledBorderAndShadow: yes\n\n[V4+ Styles]\n"
            "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, "
            "Italic, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
            "Style: Default,%s,%.4f,&H00FFFFFF,&H00FFFFFF,&H000000FF,&H00000000,0,0,1,%.3f,0,7,0,0,0,1\n",
            stage_.width, stage_.height, kFontFamily, look_.emPx * kLineHeight, look_.borderPx);
    }

    [[nodiscard]] std::string Place(double x, double baseline, double scale = 1) const {
        return Formatted("\\pos(%.3f,%.3f)", x, baseline - kLineAscent * look_.emPx * scale);
    }

    /// A fresh shadow has another blur in each of 64 frames, more than the cache holds: glyphs stay there, blurs do
    /// not.
    [[nodiscard]] double BlurFactor() const {
        constexpr uint32_t kCycle = 64, kStride = 37;  // without a common divisor; it begins in the middle, with 1
        const uint32_t step = (kCycle / 2 + frame_ * kStride) % kCycle;
        return scene_.motion == Motion::kFreshShadow ? 0.85 + 0.3 * step / kCycle : 1;
    }

    /// A blank at the beginning would be dropped.
    static std::string Shown(std::string_view text) {
        return text.starts_with(' ') ? "\\h" + std::string(text.substr(1)) : std::string(text);
    }

    /// Border and softness are lengths of the frame, of a character at its own scale as well.
    void AddEvents(const std::string& place, double alpha, const std::string& text) {
        const int bodyAlpha = AssAlpha(alpha);
        const std::string body = bodyAlpha == 0 ? "" : Formatted("\\1a&H%02X&\\3a&H%02X&", bodyAlpha, bodyAlpha);
        const std::string shadow = Formatted("\\4a&H%02X&\\blur%.4f\\shad%.3f", AssAlpha(alpha * look_.shadowAlpha),
                                             look_.shadowSigmaPx / kSigmaOfBlur * BlurFactor(), look_.shadowOffsetPx);
        if (shadow_ == SoftShadow::kWithBorder) {
            Add(kBodyLayer, "{" + place + body + shadow + "}" + text);
            return;
        }
        // A face that is wholly transparent would leave a hole in the shadow.
        Add(kShadowLayer, "{" + place + "\\1c&H000000&\\1a&HFE&\\3a&HFF&" + shadow + "}" + text);
        Add(kBodyLayer, "{" + place + body + "}" + text);
    }

    void Add(int layer, const std::string& text) {
        const int index = ass_alloc_event(track_.get());
        ASS_Event& event = track_->events[index];
        event.Start = 0;
        event.Duration = 1000;
        event.ReadOrder = index;
        event.Layer = layer;
        event.Style = track_->n_styles - 1;  // the header's, after one of libass's own
        event.Text = strdup(text.c_str());   // the track frees it
        if (event.Text == nullptr) throw std::bad_alloc();
    }

    const Scene& scene_;
    const Stage stage_;
    const TextLayout& layout_;
    const SoftShadow shadow_;
    const std::vector<std::string> text_;
    const Look look_;
    uint32_t frame_ = 0;
    Owned<ASS_Library> library_;
    Owned<ASS_Renderer> renderer_;
    Owned<ASS_Track> track_;
};

}  // namespace

std::unique_ptr<Side> MakeLibassSide(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                     const std::string& fontFile, SoftShadow shadow) {
    return std::make_unique<LibassSide>(scene, stage, layout, fontFile, shadow);
}

}  // namespace captionfx::peers
