// Counts, rectangles, text, and the dump of a string.
#include "host/guarded.h"
#include "host/string_dump.h"
#include "host/title_object.h"
#include "layout/line_ends.h"
#include "layout/read_back.h"

namespace captionfx {
namespace {

/// The rule of the rectangles: a bad index gives zeros.
template <class Rect>
int32_t FetchRect(TitleRectF* out, bool isGood, Rect rect) {
    if (out == nullptr) return kTitleInvalidArgument;
    *out = isGood ? rect() : TitleRectF{};
    return isGood ? kTitleOk : kTitleInvalidArgument;
}

}  // namespace

int32_t CCaptionFx::GetCharCount(int32_t string) noexcept {
    const MetaString* const found = Find(string);
    return found == nullptr ? 0 : CountOf(found->Characters);
}

int32_t CCaptionFx::GetLineCount(int32_t string) noexcept {
    const MetaString* const found = Find(string);
    return found == nullptr ? 0 : CountOf(found->Lines);
}

int32_t CCaptionFx::GetStringCount() noexcept {
    return CountOf(strings_);
}

int32_t CCaptionFx::GetParagraphCount(int32_t string) noexcept {
    const MetaString* const found = Find(string);
    return found == nullptr ? 0 : CountOf(found->Paragraphs);
}

int32_t CCaptionFx::GetCharRect(int32_t string, int32_t character, TitleRectF* rect, int32_t withBreaks) noexcept {
    const MetaString* const found = FindWith(string, character);
    const bool isGood = found != nullptr && (withBreaks != 0 || !IsLineEnd(found->Characters, character));
    return FetchRect(rect, isGood, [&] { return CharRect(*found, character, ScaleOf(settings_)); });
}

int32_t CCaptionFx::GetLineRect(int32_t string, int32_t line, TitleRectF* rect) noexcept {
    const MetaString* const found = Find(string);
    const bool isGood = found != nullptr && IsIndexOf(found->Lines, line);
    return FetchRect(rect, isGood, [&] { return LineRect(*found, line, ScaleOf(settings_)); });
}

int32_t CCaptionFx::GetParagraphRect(int32_t string, int32_t paragraph, TitleRectF* rect) noexcept {
    const MetaString* const found = Find(string);
    const bool isGood = found != nullptr && IsIndexOf(found->Paragraphs, paragraph);
    return FetchRect(rect, isGood, [&] { return ParagraphRect(*found, paragraph, ScaleOf(settings_)); });
}

int32_t CCaptionFx::GetStringRect(int32_t string, TitleRectF* rect) noexcept {
    const MetaString* const found = Find(string);
    return FetchRect(rect, found != nullptr, [&] { return StringRect(*found, ScaleOf(settings_)); });
}

int32_t CCaptionFx::GetStringText(int32_t string, char16_t* buffer) noexcept {
    const MetaString* const found = Find(string);
    if (found == nullptr) return 0;
    if (buffer != nullptr) {
        for (const MetaCharacter& character : found->Characters) *buffer++ = static_cast<char16_t>(character.Value);
        *buffer = u'\0';
    }
    return CountOf(found->Characters);
}

int32_t CCaptionFx::DumpString(int32_t string) noexcept {
    return Guarded([&] {
        const MetaString* const found = Find(string);
        if (found == nullptr) return kTitleInvalidArgument;
        WriteStringDump(services_.Debug(), services_.Time(), string, *found);
        return kTitleOk;
    });
}

}  // namespace captionfx
