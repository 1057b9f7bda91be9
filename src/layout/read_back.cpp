#include "layout/read_back.h"

#include "layout/line_ends.h"

namespace captionfx {
namespace {

/// Upper left corner of a record in document units, summed from the string inward.
struct Corner {
    float Left, Top;

    [[nodiscard]] Corner Inside(const auto& record) const { return {Left + record.Left, Top + record.Top}; }
    [[nodiscard]] TitleRectF Scaled(float width, float height, PixelScale scale) const {
        return {Left * scale.X, Top * scale.Y, width * scale.X, height * scale.Y};
    }
};

Corner CornerOf(const MetaString& string) {
    return {string.Left, string.Top};
}

Corner CornerOf(const MetaString& string, const MetaLine& line) {
    return CornerOf(string).Inside(At(string.Paragraphs, line.ParagraphIndex)).Inside(line);
}

}  // namespace

TitleRectF StringRect(const MetaString& string, PixelScale scale) {
    return CornerOf(string).Scaled(string.Width, string.Height, scale);
}

TitleRectF ParagraphRect(const MetaString& string, int32_t paragraph, PixelScale scale) {
    const MetaParagraph& record = At(string.Paragraphs, paragraph);
    return CornerOf(string).Inside(record).Scaled(record.Width, record.Height, scale);
}

TitleRectF LineRect(const MetaString& string, int32_t line, PixelScale scale) {
    const MetaLine& record = At(string.Lines, line);
    return CornerOf(string, record).Scaled(record.Width, record.Height, scale);
}

TitleRectF CharRect(const MetaString& string, int32_t character, PixelScale scale) {
    const MetaCharacter& record = At(string.Characters, character);
    return CornerOf(string, At(string.Lines, record.LineIndex))
        .Inside(record)
        .Scaled(record.Width * record.WidthScale, record.Height, scale);
}

TitleRectF DrawnCharRect(const MetaString& string, int32_t character, PixelScale scale) {
    return IsLineEnd(string.Characters, character) ? TitleRectF{} : CharRect(string, character, scale);
}

}  // namespace captionfx
