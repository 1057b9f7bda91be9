// A realised font: one face with the style it lacks made up for, its answers cached.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/font_system.h"
#include "platform/linux/font_catalog.h"
#include "platform/linux/glyph_outline.h"

namespace captionfx {

/// The font file is opened at the first glyph, and stays open: opening costs 10 to 50 times more than drawing. Outlines
/// are loaded once and drawn from without a lock. A file that has gone meanwhile leaves metrics and nothing else.
class OutlineFont final : public PlatformFont {
public:
    /// The face must outlive the font.
    explicit OutlineFont(const FaceChoice& choice)
        : face_(*choice.Face), bold_(choice.MakeBold), oblique_(choice.MakeOblique) {}

    [[nodiscard]] std::optional<OutlineMetrics> Metrics() const override { return face_.Metrics; }
    [[nodiscard]] TextExtent Extent(char16_t unit) const override;
    bool FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const override;
    [[nodiscard]] std::optional<GlyphCoverage> Coverage(char16_t unit, GlyphFormat format,
                                                        const GlyphMatrix& matrix) const override;

    [[nodiscard]] bool HasGlyph(char16_t unit) const;

    /// Whether a glyph is more than an empty outline: a space is not, and neither is a picture in a colour table.
    [[nodiscard]] bool HasShape(char16_t unit) const { return !Outline(unit, HintTarget::kGray).Points.empty(); }

private:
    /// Outlines for one hinting target; all code units that the font lacks share that of glyph 0.
    struct Outlines {
        OutlineTable ByUnit;
        std::unordered_map<FT_UInt, std::unique_ptr<const GlyphOutline>> ByGlyph;
    };

    [[nodiscard]] const GlyphOutline& Outline(char16_t unit, HintTarget target) const;
    [[nodiscard]] FT_Face OpenedFace() const;               // with mutex_ held; null if the file cannot be used
    [[nodiscard]] FT_UInt GlyphIndex(char16_t unit) const;  // with mutex_ held

    const FontFace& face_;
    const bool bold_, oblique_;

    mutable std::mutex mutex_;  // guards what follows, but for readers of an OutlineTable
    mutable bool opened_ = false;
    mutable LibraryHandle library_;  // of its own: FreeType would need a lock across all faces of a common one
    mutable FaceHandle handle_;
    mutable std::array<Outlines, 2> outlines_;  // by HintTarget
};

}  // namespace captionfx
