#include "text/font_runs.h"

#include <algorithm>
#include <cstring>

#include "text/font_environment.h"

namespace captionfx {
namespace {

constexpr char16_t kLastSpaceOrControl = 32;
constexpr char16_t kSymbolFontOwnCharacters = 256;

/// Whether a character that `font` has no glyph for is worth another font.
bool MayFallBack(const LogFont& font, char16_t unit) {
    if (font.lfCharSet == kSymbolCharSet && unit < kSymbolFontOwnCharacters) return false;
    return unit > kLastSpaceOrControl;
}

}  // namespace

void SplitFontRuns(FontSystem& system, FontLink& link, std::u16string_view text, uint32_t em, const FontSpec& request,
                   std::span<MetaFont> fonts) {
    const LogFont base = LogFontOf(request, -static_cast<int32_t>(em));
    const std::shared_ptr<const PlatformFont> baseFont = system.Realise(base);
    std::vector<LogFont> chosen(text.size(), base);
    std::vector<uint16_t> glyphs(text.size());

    for (size_t start = 0; start < text.size();) {
        const CodePageRun run = link.GetStrCodePages(text.substr(start));
        const size_t length = std::min(static_cast<size_t>(std::max(run.Length, 1)), text.size() - start);
        if (baseFont->FindMissingGlyphs(text.substr(start, length), std::span(glyphs).subspan(start, length))) {
            for (size_t j = start; j < start + length; ++j) {
                if (glyphs[j] != 0 || !MayFallBack(chosen[j], text[j])) continue;
                if (const auto mapped = link.MapFont(base, run.CodePages, text[j])) chosen[j] = *mapped;
            }
        }
        start += length;
    }

    // Neighbours mostly share their font: what was measured for one holds for the next.
    for (size_t k = 0; k < text.size(); ++k) {
        if (k > 0 && std::memcmp(&chosen[k], &chosen[k - 1], sizeof(LogFont)) == 0) {
            fonts[k] = fonts[k - 1];
        } else {
            MeasureFont(system, em, request.Size, chosen[k], fonts[k]);
        }
    }
}

}  // namespace captionfx
