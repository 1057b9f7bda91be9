// CCaptionFx, the title object: the one class behind the interface. It checks what a host hands in and calls the folder
// that owns the matter.
#pragma once

#include <vector>

#include "host/document.h"
#include "paths/path_manager.h"
#include "platform/services.h"
#include "render/frame_title.h"
#include "render/image_utility.h"
#include "text/font_environment.h"

namespace captionfx {

class CCaptionFx final : public IKVT_CaptionFx {
public:
    /// A title with the built-in defaults on a platform that outlives it.
    explicit CCaptionFx(PlatformServices& services);
    CCaptionFx(const CCaptionFx&) = delete;
    CCaptionFx& operator=(const CCaptionFx&) = delete;
    ~CCaptionFx() = default;

    int32_t AddString() noexcept override;
    int32_t ClearString(int32_t string) noexcept override;
    int32_t RemoveAllStrings() noexcept override;
    int32_t InsertText(int32_t string, int32_t position, const char16_t* text) noexcept override;
    int32_t DeleteText(int32_t string, int32_t first, int32_t count) noexcept override;
    void SetDefaultFont(const FontSpec* font) noexcept override;
    int32_t SetDefaultFace(const MetaFace* face) noexcept override;
    int32_t SetDefaultBorder(const MetaBorder* border) noexcept override;
    int32_t SetDefaultShadow(const MetaShadow* shadow) noexcept override;
    int32_t SetDefaultCharSpacing(const CharSpacing* spacing) noexcept override;
    int32_t SetDefaultParagraph(const ParagraphSpec* paragraph) noexcept override;
    int32_t SetDefaultString(const StringSpec* string) noexcept override;
    int32_t SetRenderSettings(const TitleRenderSettings* settings) noexcept override;
    int32_t GetCharFont(int32_t string, int32_t character, FontSpec* font) noexcept override;
    int32_t GetCharFace(int32_t string, int32_t character, MetaFace* face) noexcept override;
    int32_t GetCharBorder(int32_t string, int32_t character, MetaBorder* border) noexcept override;
    int32_t GetCharShadow(int32_t string, int32_t character, MetaShadow* shadow) noexcept override;
    int32_t GetCharSpacing(int32_t string, int32_t character, CharSpacing* spacing) noexcept override;
    int32_t GetCharParagraph(int32_t string, int32_t character, ParagraphSpec* paragraph) noexcept override;
    int32_t GetStringSettings(int32_t string, StringSpec* settings) noexcept override;
    int32_t GetRenderSettings(TitleRenderSettings* settings) noexcept override;
    int32_t GetCharCount(int32_t string) noexcept override;
    int32_t GetLineCount(int32_t string) noexcept override;
    int32_t GetStringCount() noexcept override;
    int32_t GetParagraphCount(int32_t string) noexcept override;
    int32_t GetCharRect(int32_t string, int32_t character, TitleRectF* rect, int32_t withBreaks) noexcept override;
    int32_t GetLineRect(int32_t string, int32_t line, TitleRectF* rect) noexcept override;
    int32_t GetParagraphRect(int32_t string, int32_t paragraph, TitleRectF* rect) noexcept override;
    int32_t GetStringRect(int32_t string, TitleRectF* rect) noexcept override;
    int32_t GetStringText(int32_t string, char16_t* buffer) noexcept override;
    int32_t LoadFromBuffer(const char16_t* xml) noexcept override;
    int32_t SaveToBuffer(char16_t* buffer, uint32_t* sizeInBytes) noexcept override;
    int32_t LoadFromFile(const char16_t* path) noexcept override;
    int32_t SaveToFile(const char16_t* path) noexcept override;
    int32_t LoadFromNode(void* element) noexcept override;
    int32_t SaveToNode(void* element) noexcept override;
    int32_t RenderFrame(uint32_t* destination, float time) noexcept override;
    int32_t DumpString(int32_t string) noexcept override;
    int32_t GetFrameDirtyRect(TitleRect* rect) noexcept override;
    int32_t FlushRenderCaches() noexcept override;
    int32_t ResetDefaults() noexcept override;
    void* Destroy(uint32_t flags) noexcept override;

    /// The document itself, for tests: a string's records are not a host's business.
    [[nodiscard]] std::vector<MetaString>& Strings() { return strings_; }

private:
    /// The string at an index, or null.
    [[nodiscard]] MetaString* Find(int32_t string);
    /// The string that holds a character, or null.
    [[nodiscard]] MetaString* FindWith(int32_t string, int32_t character);
    [[nodiscard]] FrameTitle Frame();
    /// Works out what frames need of a string's position and rotation, with the scale of this moment.
    void SetPlace(MetaString& string) const;
    /// Replaces the strings by those that `read` gives; none when it fails.
    template <class Read>
    int32_t Load(Read read);
    /// Makes strings as a file holds them fit to be drawn and edited here.
    [[nodiscard]] int32_t FitLoaded(std::vector<MetaString>& strings);

    PlatformServices& services_;
    TitleDefaults defaults_;
    TitleRenderSettings settings_{};
    int32_t titleSettingsChanged_ = 0;  // 1 once output parameters were set; a record of that, nobody reads it
    int32_t cpuCount_ = 1;
    CPathManager paths_;
    std::vector<MetaString> strings_;  // after the manager: strings hand their effects back to it
    InstalledFonts installedFonts_;
    FrameCache cache_;
    CThreadPool threadPool_;
    ImageUtility imageUtility_;
};

}  // namespace captionfx
