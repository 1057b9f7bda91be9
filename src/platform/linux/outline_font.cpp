#include "platform/linux/outline_font.h"

#include <algorithm>

#include "platform/linux/glyph_mask.h"

namespace captionfx {
namespace {

constexpr bool IsSurrogateHalf(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

}  // namespace

FT_Face OutlineFont::OpenedFace() const {
    if (!opened_) {
        opened_ = true;
        library_ = NewFreeTypeLibrary();
        handle_ = OpenFace(library_.get(), face_.Path, face_.Index);
        if (handle_ != nullptr && FT_Set_Pixel_Sizes(handle_.get(), 0, kEmPx) != 0) handle_ = nullptr;
    }
    return handle_.get();
}

FT_UInt OutlineFont::GlyphIndex(char16_t unit) const {
    constexpr FT_ULong kSymbolPage = 0xF000;  // where symbol fonts have the codes below 256
    FT_Face const face = OpenedFace();
    if (face == nullptr || IsSurrogateHalf(unit)) return 0;
    const FT_UInt glyph = FT_Get_Char_Index(face, unit);
    return glyph == 0 && face_.SymbolMap && unit < 0x100 ? FT_Get_Char_Index(face, kSymbolPage + unit) : glyph;
}

const GlyphOutline& OutlineFont::Outline(char16_t unit, HintTarget target) const {
    Outlines& outlines = outlines_[static_cast<size_t>(target)];
    if (const GlyphOutline* const known = outlines.ByUnit.Find(unit)) return *known;

    const std::lock_guard lock(mutex_);
    const FT_UInt glyph = GlyphIndex(unit);
    std::unique_ptr<const GlyphOutline>& outline = outlines.ByGlyph[glyph];
    if (outline == nullptr) {
        FT_Face const face = OpenedFace();
        const OutlineSettings settings{bold_, face_.CellAscent, face_.CellDescent};
        outline = std::make_unique<const GlyphOutline>(
            face == nullptr ? GlyphOutline() : LoadGlyphOutline(face, glyph, target, settings));
    }
    outlines.ByUnit.Insert(unit, *outline);
    return *outline;
}

TextExtent OutlineFont::Extent(char16_t unit) const {
    return {Outline(unit, HintTarget::kGray).Advance + (bold_ ? 1 : 0), face_.Metrics.Height};
}

bool OutlineFont::FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const {
    const std::lock_guard lock(mutex_);
    bool missing = false;
    for (size_t i = 0; i < std::min(text.size(), glyphs.size()); ++i) {
        glyphs[i] = static_cast<uint16_t>(GlyphIndex(text[i]));
        missing = missing || glyphs[i] == 0;
    }
    return missing;
}

bool OutlineFont::HasGlyph(char16_t unit) const {
    const std::lock_guard lock(mutex_);
    return GlyphIndex(unit) != 0;
}

std::optional<GlyphCoverage> OutlineFont::Coverage(char16_t unit, GlyphFormat format, const GlyphMatrix& matrix) const {
    const HintTarget target = format == GlyphFormat::kMono ? HintTarget::kMono : HintTarget::kGray;
    return DrawGlyphMask(Outline(unit, target), matrix, oblique_, format);
}

}  // namespace captionfx
