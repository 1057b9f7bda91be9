// Start and end of a title, its strings, and how it is cleared.
#include "host/title_object.h"

#include <limits>
#include <memory>
#include <utility>

#include "host/built_in_defaults.h"
#include "host/guarded.h"
#include "layout/read_back.h"
#include "layout/string_layout.h"
#include "platform/portable_math.h"
#include "text/delete_text.h"
#include "text/insert_text.h"

namespace captionfx {

CCaptionFx::CCaptionFx(PlatformServices& services)
    : services_(services),
      defaults_(BuiltInDefaults()),
      cpuCount_(services.Time().ProcessorCount()),
      installedFonts_(ListInstalledFonts(services.Fonts())),
      threadPool_(services.Debug(), static_cast<uint32_t>(cpuCount_)),
      imageUtility_(services.Modules()) {
    defaults_.DefaultFont = VetFont(services_.Fonts(), installedFonts_, defaults_.DefaultFont);
    const TitleRenderSettings settings = BuiltInRenderSettings();
    SetRenderSettings(&settings);
}

MetaString* CCaptionFx::Find(int32_t string) {
    return IsIndexOf(strings_, string) ? &At(strings_, string) : nullptr;
}

MetaString* CCaptionFx::FindWith(int32_t string, int32_t character) {
    MetaString* const found = Find(string);
    return found != nullptr && IsIndexOf(found->Characters, character) ? found : nullptr;
}

void CCaptionFx::SetPlace(MetaString& string) const {
    const float radians = -string.RotateDegree * kPi / 180;
    string.RotateSin = SinF(radians);
    string.RotateCos = CosF(radians);
    const TitleRectF rect = StringRect(string, ScaleOf(settings_));
    string.OriginX = rect.x;
    string.OriginY = rect.y;
}

int32_t CCaptionFx::AddString() noexcept {
    return Guarded([&] {
        MetaString string;
        CopyStringSettings(string, defaults_.DefaultString);
        SetPlace(string);
        LayoutString(services_.Fonts(), defaults_.DefaultFont, string);
        strings_.push_back(std::move(string));
        cache_.SavedFrameValid = false;
        return CountOf(strings_) - 1;
    });
}

int32_t CCaptionFx::ClearString(int32_t string) noexcept {
    MetaString* const found = Find(string);
    if (found == nullptr) return kTitleInvalidArgument;
    found->PathObject.reset();
    found->Characters.clear();
    found->Lines.clear();
    found->Paragraphs.clear();
    found->Fonts.clear();
    found->Faces.clear();
    found->Borders.clear();
    found->Shadows.clear();
    found->PathList.clear();
    found->KeyCursor = nullptr;
    found->GlyphLayersList.clear();
    found->StringPlanes = {};
    cache_.SavedFrameValid = false;
    return kTitleOk;
}

int32_t CCaptionFx::RemoveAllStrings() noexcept {
    for (int32_t i = 0; i < CountOf(strings_); ++i) ClearString(i);
    strings_.clear();
    return kTitleOk;
}

int32_t CCaptionFx::InsertText(int32_t string, int32_t position, const char16_t* text) noexcept {
    return Guarded([&] {
        MetaString* const found = Find(string);
        if (found == nullptr) return 0;
        const int32_t count = CountOf(found->Characters);
        if (position < 0 || position > count || text == nullptr || text[0] == u'\0') return count;
        const std::u16string_view inserted(text);
        if (inserted.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max() - count))
            return kTitleOutOfMemory;
        if (captionfx::InsertText(services_, defaults_, *found, position, inserted) != kTitleOk) return count;
        cache_.SavedFrameValid = false;
        return CountOf(found->Characters);
    });
}

int32_t CCaptionFx::DeleteText(int32_t string, int32_t first, int32_t count) noexcept {
    return Guarded([&] {
        MetaString* const found = Find(string);
        if (found == nullptr) return 0;
        const int32_t length = CountOf(found->Characters);
        if (first < 0 || count < 1 || int64_t{first} + count > length) return length;
        captionfx::DeleteText(services_.Fonts(), defaults_, *found, first, count);
        cache_.SavedFrameValid = false;
        return CountOf(found->Characters);
    });
}

int32_t CCaptionFx::ResetDefaults() noexcept {
    return Guarded([&] {
        const TitleDefaults defaults = BuiltInDefaults();
        const TitleRenderSettings settings = BuiltInRenderSettings();
        defaults_.DefaultFont = VetFont(services_.Fonts(), installedFonts_, defaults.DefaultFont);
        SetDefaultFace(&defaults.DefaultFace);
        SetDefaultBorder(&defaults.DefaultBorder);
        SetDefaultShadow(&defaults.DefaultShadow);
        SetDefaultCharSpacing(&defaults.DefaultCharSpacing);
        SetDefaultParagraph(&defaults.DefaultParagraph);
        SetDefaultString(&defaults.DefaultString);
        SetRenderSettings(&settings);
        strings_.clear();
        return kTitleOk;
    });
}

void* CCaptionFx::Destroy(uint32_t flags) noexcept {
    constexpr uint32_t kFreeStorage = 1;
    std::destroy_at(this);
    if ((flags & kFreeStorage) != 0) std::allocator<CCaptionFx>().deallocate(this, 1);
    return this;
}

}  // namespace captionfx
