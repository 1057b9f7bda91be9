// The title's defaults and settings, and their read-back.
#include <algorithm>
#include <cstring>

#include "host/guarded.h"
#include "host/title_object.h"

namespace captionfx {
namespace {

/// Stores a record that a host hands in.
template <class Record>
int32_t Store(Record& stored, const Record* record) {
    if (record == nullptr) return kTitleInvalidArgument;
    stored = *record;
    return kTitleOk;
}

/// The rule of the getters: the output is always filled, with the title's default where the index is bad (`string` is
/// null then).
template <class Record, class FromString>
int32_t Fetch(Record* out, const MetaString* string, const Record& fallback, FromString fromString) {
    if (out == nullptr) return kTitleInvalidArgument;
    *out = string == nullptr ? fallback : fromString(*string);
    return string == nullptr ? kTitleInvalidArgument : kTitleOk;
}

bool OutputChanges(const TitleRenderSettings& a, const TitleRenderSettings& b) {
    return a.AntialiasMode != b.AntialiasMode || a.PixelFormat != b.PixelFormat || a.ScaleX != b.ScaleX ||
           a.ScaleY != b.ScaleY || a.Width != b.Width || a.Height != b.Height;
}

bool CompositingChanges(const TitleRenderSettings& a, const TitleRenderSettings& b) {
    return a.PostFilter != b.PostFilter || a.DestinationAlpha != b.DestinationAlpha ||
           std::memcmp(&a.ClipRect, &b.ClipRect, sizeof a.ClipRect) != 0;
}

}  // namespace

void CCaptionFx::SetDefaultFont(const FontSpec* font) noexcept {
    // Without a status to give, a request that memory is too short for leaves the font as it was.
    [[maybe_unused]] const int32_t status = Guarded([&] {
        if (font != nullptr) defaults_.DefaultFont = VetFont(services_.Fonts(), installedFonts_, *font);
        return kTitleOk;
    });
}

int32_t CCaptionFx::SetDefaultFace(const MetaFace* face) noexcept {
    return Store(defaults_.DefaultFace, face);
}
int32_t CCaptionFx::SetDefaultBorder(const MetaBorder* border) noexcept {
    return Store(defaults_.DefaultBorder, border);
}
int32_t CCaptionFx::SetDefaultShadow(const MetaShadow* shadow) noexcept {
    return Store(defaults_.DefaultShadow, shadow);
}
int32_t CCaptionFx::SetDefaultCharSpacing(const CharSpacing* spacing) noexcept {
    return Store(defaults_.DefaultCharSpacing, spacing);
}
int32_t CCaptionFx::SetDefaultParagraph(const ParagraphSpec* paragraph) noexcept {
    return Store(defaults_.DefaultParagraph, paragraph);
}
int32_t CCaptionFx::SetDefaultString(const StringSpec* string) noexcept {
    if (string == nullptr) return kTitleInvalidArgument;
    CopyStringSettings(defaults_.DefaultString, *string);
    return kTitleOk;
}

int32_t CCaptionFx::SetRenderSettings(const TitleRenderSettings* settings) noexcept {
    if (settings == nullptr) return kTitleInvalidArgument;
    if (OutputChanges(settings_, *settings)) {
        for (MetaString& string : strings_) {
            string.StringPlanes = {};
            string.PathChanged = 1;  // effects hold the canvas and the layout in pixels
        }
        cache_.FreeSavedFrame();
        titleSettingsChanged_ = 1;
    }
    if (CompositingChanges(settings_, *settings)) cache_.FreeSavedFrame();
    settings_ = *settings;
    return Guarded(
        [&] { return threadPool_.SetThreadLimit(static_cast<uint32_t>(std::max(settings->MaxThreads, 0))); });
}

int32_t CCaptionFx::GetCharFont(int32_t string, int32_t character, FontSpec* font) noexcept {
    return Guarded([&] {
        const MetaString* const found = FindWith(string, character);
        const MetaFont& measured = found != nullptr
                                       ? At(found->Fonts, At(found->Characters, character).FontIndex)
                                       : MeasureFontSpec(services_.Fonts(), kEmSize, defaults_.DefaultFont);
        return Fetch(font, found, FontSpecOf(measured), [&](const MetaString&) { return FontSpecOf(measured); });
    });
}

int32_t CCaptionFx::GetCharFace(int32_t string, int32_t character, MetaFace* face) noexcept {
    return Fetch(face, FindWith(string, character), defaults_.DefaultFace,
                 [=](const MetaString& s) { return At(s.Faces, At(s.Characters, character).FaceIndex); });
}

int32_t CCaptionFx::GetCharBorder(int32_t string, int32_t character, MetaBorder* border) noexcept {
    return Fetch(border, FindWith(string, character), defaults_.DefaultBorder,
                 [=](const MetaString& s) { return At(s.Borders, At(s.Characters, character).BorderIndex); });
}

int32_t CCaptionFx::GetCharShadow(int32_t string, int32_t character, MetaShadow* shadow) noexcept {
    return Fetch(shadow, FindWith(string, character), defaults_.DefaultShadow,
                 [=](const MetaString& s) { return At(s.Shadows, At(s.Characters, character).ShadowIndex); });
}

int32_t CCaptionFx::GetCharSpacing(int32_t string, int32_t character, CharSpacing* spacing) noexcept {
    return Fetch(spacing, FindWith(string, character), defaults_.DefaultCharSpacing, [=](const MetaString& s) {
        const MetaCharacter& record = At(s.Characters, character);
        return CharSpacing{record.WidthScale, record.Spacing};
    });
}

int32_t CCaptionFx::GetCharParagraph(int32_t string, int32_t character, ParagraphSpec* paragraph) noexcept {
    return Fetch(paragraph, FindWith(string, character), defaults_.DefaultParagraph, [=](const MetaString& s) {
        ParagraphSpec settings{};
        const MetaLine& line = At(s.Lines, At(s.Characters, character).LineIndex);
        CopyParagraphSettings(settings, At(s.Paragraphs, line.ParagraphIndex));
        return settings;
    });
}

int32_t CCaptionFx::GetStringSettings(int32_t string, StringSpec* settings) noexcept {
    return Fetch(settings, Find(string), defaults_.DefaultString, [](const MetaString& s) {
        StringSpec copy{};
        CopyStringSettings(copy, s);
        return copy;
    });
}

int32_t CCaptionFx::GetRenderSettings(TitleRenderSettings* settings) noexcept {
    if (settings == nullptr) return kTitleInvalidArgument;
    *settings = settings_;
    return kTitleOk;
}

}  // namespace captionfx
