#include "peers/cairo_side.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <utility>

#include "peers/box_blur.h"

namespace captionfx::peers {
namespace {

struct EndCairo {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_path_t* path) const { cairo_path_destroy(path); }
};

template <class T>
using Owned = std::unique_ptr<T, EndCairo>;

Owned<cairo_surface_t> NewSurface(cairo_format_t format, int32_t width, int32_t height) {
    return Owned<cairo_surface_t>(cairo_image_surface_create(format, width, height));
}

Owned<cairo_t> ContextOn(cairo_surface_t* surface) {
    return Owned<cairo_t>(cairo_create(surface));
}

/// A picture and where its corner lies from the point it was drawn around.
struct Sprite {
    Owned<cairo_surface_t> surface;
    double left, top;
};

/// Draws paths in the scene's look.
class Painter {
public:
    explicit Painter(const Look& look) : look_(look) {}

    void SetFont(cairo_t* context) const {
        cairo_select_font_face(context, kFontFamily, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(context, look_.emPx);
        const std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)> options(
            cairo_font_options_create(), cairo_font_options_destroy);
        cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
        cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
        cairo_set_font_options(context, options.get());
        cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    }

    /// Border and face of the context's path.
    void Body(cairo_t* context) const {
        cairo_set_line_width(context, 2 * look_.borderPx);
        cairo_set_source_rgb(context, 1, 0, 0);
        cairo_stroke_preserve(context);
        cairo_set_source_rgb(context, 1, 1, 1);
        cairo_fill(context);
    }

    /// The same, seen through: as a group, or else the border would show through the face.
    void FadedBody(cairo_t* context, double alpha) const {
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        cairo_path_extents(context, &x1, &y1, &x2, &y2);
        const Owned<cairo_path_t> path(cairo_copy_path(context));
        const double margin = std::ceil(look_.borderPx) + 1;
        cairo_save(context);
        cairo_new_path(context);
        cairo_rectangle(context, std::floor(x1 - margin), std::floor(y1 - margin), std::ceil(x2 - x1 + 2 * margin),
                        std::ceil(y2 - y1 + 2 * margin));
        cairo_clip(context);
        cairo_push_group(context);
        cairo_append_path(context, path.get());
        Body(context);
        cairo_pop_group_to_source(context);
        cairo_paint_with_alpha(context, alpha);
        cairo_restore(context);
    }

    /// The coverage of the context's path with its border; both keep their device coordinates.
    [[nodiscard]] Sprite Mask(cairo_t* context) const {
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        const Owned<cairo_path_t> path(cairo_copy_path(context));
        cairo_path_extents(context, &x1, &y1, &x2, &y2);
        const double margin = std::ceil(look_.borderPx + 3 * look_.shadowSigmaPx) + 1;
        const double left = std::floor(x1 - margin), top = std::floor(y1 - margin);
        Sprite mask{NewSurface(CAIRO_FORMAT_A8, static_cast<int32_t>(std::ceil(x2 + margin) - left),
                               static_cast<int32_t>(std::ceil(y2 + margin) - top)),
                    left, top};
        const Owned<cairo_t> onMask = ContextOn(mask.surface.get());
        cairo_translate(onMask.get(), -left, -top);
        cairo_append_path(onMask.get(), path.get());
        cairo_set_line_join(onMask.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_width(onMask.get(), 2 * look_.borderPx);
        cairo_stroke_preserve(onMask.get());
        cairo_fill(onMask.get());
        return mask;
    }

    void Soften(const Sprite& mask) const {
        cairo_surface_t* const surface = mask.surface.get();
        cairo_surface_flush(surface);
        BlurCoverage(cairo_image_surface_get_data(surface), cairo_image_surface_get_width(surface),
                     cairo_image_surface_get_height(surface), cairo_image_surface_get_stride(surface),
                     look_.shadowSigmaPx);
        cairo_surface_mark_dirty(surface);
    }

    void Shadow(cairo_t* context, const Sprite& mask, double alpha) const {
        cairo_set_source_rgba(context, 0, 0, 0, look_.shadowAlpha * alpha);
        cairo_mask_surface(context, mask.surface.get(), mask.left + look_.shadowOffsetPx,
                           mask.top + look_.shadowOffsetPx);
    }

private:
    const Look& look_;
};

class CairoSide final : public Side {
public:
    CairoSide(const Scene& scene, const Stage& stage, const TextLayout& layout)
        : scene_(scene),
          stage_(stage),
          layout_(layout),
          text_(TextOf(scene)),
          look_(LookOf(scene, stage)),
          scratch_(cairo_recording_surface_create(CAIRO_CONTENT_ALPHA,
                                                  nullptr)),  // without edges: cairo leaves out far letters
          pen_(ContextOn(scratch_.get())) {
        painter_.SetFont(pen_.get());
        for (size_t line = 0; line < text_.size() && MovesAsWhole(scene); ++line) lines_.push_back(DrawLine(line));
    }

    void Prepare(double moment) override {
        if (MovesAsWhole(scene_)) {
            placedLines_ = PlaceLines(scene_, stage_, layout_, text_, moment);
        } else {
            placedChars_ = PlaceCharacters(scene_, stage_, layout_, moment);
        }
    }

    void Draw(uint32_t* pixels) override {
        const Owned<cairo_surface_t> frame(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels),
                                                                               CAIRO_FORMAT_RGB24, stage_.width,
                                                                               stage_.height, stage_.width * 4));
        const Owned<cairo_t> context = ContextOn(frame.get());
        if (MovesAsWhole(scene_)) {
            for (const PlacedLine& placed : placedLines_) PlaceLine(context.get(), placed);
        } else {
            painter_.SetFont(context.get());
            for (const PlacedChar& placed : placedChars_) {
                TracePath(context.get(), placed);
                const Sprite mask = painter_.Mask(context.get());
                cairo_new_path(context.get());
                painter_.Soften(mask);
                painter_.Shadow(context.get(), mask, placed.alpha);
            }
            for (const PlacedChar& placed : placedChars_) {
                TracePath(context.get(), placed);
                if (placed.alpha < 1) {
                    painter_.FadedBody(context.get(), placed.alpha);
                } else {
                    painter_.Body(context.get());
                }
            }
        }
        if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) throw std::runtime_error("cairo cannot draw");
        cairo_surface_flush(frame.get());
    }

private:
    /// A line as pictures, drawn around the left end of its base line. Usually the body holds the shadow too; one that
    /// fades is seen through and has its shadow apart, and of a fresh shadow there is only the sharp mask.
    struct Line {
        Sprite mask, body;
    };

    Line DrawLine(size_t line) {
        const auto ofLine = [line](const CharBox& box) { return box.line == line; };
        const auto first = std::ranges::find_if(layout_.boxes, ofLine);
        // At rest the picture lies on whole pixels: it holds the fractions of the line's place.
        const double baseline = first->top + kAscent * look_.emPx;
        const double dx = first->left - std::floor(first->left), dy = baseline - std::floor(baseline);
        for (const CharBox& box : layout_.boxes) {
            if (!ofLine(box)) continue;
            cairo_move_to(pen_.get(), box.left - first->left + dx, dy);
            cairo_text_path(pen_.get(), std::string(1, box.letter).c_str());
        }
        Sprite mask = painter_.Mask(pen_.get());
        const Owned<cairo_path_t> path(cairo_copy_path(pen_.get()));
        cairo_new_path(pen_.get());
        const auto offset = static_cast<int32_t>(std::ceil(look_.shadowOffsetPx));
        Sprite body{NewSurface(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(mask.surface.get()) + offset,
                               cairo_image_surface_get_height(mask.surface.get()) + offset),
                    mask.left, mask.top};
        const Owned<cairo_t> context = ContextOn(body.surface.get());
        cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_translate(context.get(), -body.left, -body.top);
        if (scene_.motion != Motion::kFreshShadow) painter_.Soften(mask);
        if (!HasShadowApart()) painter_.Shadow(context.get(), mask, 1);
        cairo_append_path(context.get(), path.get());
        painter_.Body(context.get());
        for (Sprite* const sprite : {&mask, &body}) {
            sprite->left -= dx;
            sprite->top -= dy;
        }
        return {std::move(mask), std::move(body)};
    }

    void PlaceLine(cairo_t* context, const PlacedLine& placed) const {
        const Line& line = lines_[placed.index];
        const double left = placed.x + line.body.left, top = placed.baseline + line.body.top;
        if (HasShadowApart()) {
            cairo_save(context);
            cairo_translate(context, placed.x, placed.baseline);
            if (scene_.motion == Motion::kFreshShadow) {
                painter_.Shadow(context, Softened(line.mask), placed.alpha);
            } else {
                painter_.Shadow(context, line.mask, placed.alpha);
            }
            cairo_restore(context);
        }
        cairo_set_source_surface(context, line.body.surface.get(), left, top);
        // Kept to the picture: cairo would otherwise look at the whole frame.
        cairo_rectangle(context, std::floor(left), std::floor(top),
                        cairo_image_surface_get_width(line.body.surface.get()) + 1,
                        cairo_image_surface_get_height(line.body.surface.get()) + 1);
        cairo_clip(context);
        cairo_paint_with_alpha(context, placed.alpha);
        cairo_reset_clip(context);
    }

    [[nodiscard]] bool HasShadowApart() const {
        return scene_.motion == Motion::kFade || scene_.motion == Motion::kFreshShadow;
    }

    [[nodiscard]] Sprite Softened(const Sprite& sharp) const {
        const int32_t height = cairo_image_surface_get_height(sharp.surface.get());
        const int32_t stride = cairo_image_surface_get_stride(sharp.surface.get());
        Sprite soft{NewSurface(CAIRO_FORMAT_A8, cairo_image_surface_get_width(sharp.surface.get()), height), sharp.left,
                    sharp.top};
        std::copy_n(cairo_image_surface_get_data(sharp.surface.get()), std::ptrdiff_t{stride} * height,
                    cairo_image_surface_get_data(soft.surface.get()));
        painter_.Soften(soft);
        return soft;
    }

    static void TracePath(cairo_t* context, const PlacedChar& placed) {
        // The path is made in the character's own frame; border and shadow are lengths of the picture.
        cairo_save(context);
        cairo_translate(context, placed.x, placed.baseline);
        cairo_rotate(context, placed.clockwiseDeg * std::numbers::pi / 180);
        cairo_scale(context, placed.scale, placed.scale);
        cairo_move_to(context, 0, 0);
        cairo_text_path(context, std::string(1, placed.letter).c_str());
        cairo_restore(context);
    }

    const Scene& scene_;
    const Stage stage_;
    const TextLayout& layout_;
    const std::vector<std::string> text_;
    const Look look_;
    const Painter painter_{look_};
    Owned<cairo_surface_t> scratch_;
    Owned<cairo_t> pen_;
    std::vector<Line> lines_;
    std::vector<PlacedLine> placedLines_;
    std::vector<PlacedChar> placedChars_;
};

}  // namespace

std::unique_ptr<Side> MakeCairoSide(const Scene& scene, const Stage& stage, const TextLayout& layout) {
    return std::make_unique<CairoSide>(scene, stage, layout);
}

}  // namespace captionfx::peers
