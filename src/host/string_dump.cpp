#include "host/string_dump.h"

#include <array>
#include <cstdio>

namespace captionfx {
namespace {

constexpr const char* kSeparator = "---------------------------------------------------------------------------------";

/// Formats as printf does and writes the line. Four rectangles of the largest floats fit.
template <class... Values>
void WriteLine(DebugOutput& output, const char* format, Values... values) {
    std::array<char, 1024> line{};
    std::snprintf(line.data(), line.size(), format, values...);
    output.Write(line.data());
}

double Wide(float value) {
    return static_cast<double>(value);
}

void WriteCharacter(DebugOutput& output, int32_t string, int32_t index, const MetaCharacter& c) {
    WriteLine(output,
              "[String %d] Char %d: ch = %d, rect = (%f, %f, %f, %f), spacing = %f, Line = %d, Font = %d, Face = %d, "
              "Border = %d, Shadow = %d",
              string, index, static_cast<int32_t>(c.Value), Wide(c.Left), Wide(c.Top), Wide(c.Width), Wide(c.Height),
              Wide(c.Spacing), c.LineIndex, c.FontIndex, c.FaceIndex, c.BorderIndex, c.ShadowIndex);
}

void WriteLineRecord(DebugOutput& output, int32_t string, int32_t index, const MetaLine& l) {
    WriteLine(output, "[String %d] Line %d: rect = (%f, %f, %f, %f), Char[%d - %d], Paragraph = %d", string, index,
              Wide(l.Left), Wide(l.Top), Wide(l.Width), Wide(l.Height), l.CharStart, l.CharEnd, l.ParagraphIndex);
}

void WriteParagraph(DebugOutput& output, int32_t string, int32_t index, const MetaParagraph& p) {
    WriteLine(output,
              "[String %d] Paragraph %d: rect = (%f, %f, %f, %f), Line[%d - %d], Align = %u, LineSpace = %f, "
              "Before = %f, After = %f, Left = %f, Right = %f",
              string, index, Wide(p.Left), Wide(p.Top), Wide(p.Width), Wide(p.Height), p.LineStart, p.LineEnd, p.Align,
              Wide(p.LineSpace), Wide(p.BeforeSpace), Wide(p.AfterSpace), Wide(p.LeftIndent), Wide(p.RightIndent));
}

}  // namespace

void WriteStringDump(DebugOutput& output, Clock& clock, int32_t index, const MetaString& string) {
    const auto now = [&] { return static_cast<int32_t>(clock.Milliseconds()); };
    WriteLine(output, "==[Time: %d] Begin=========================================================", now());
    for (int32_t i = 0; i < CountOf(string.Characters); ++i) {
        WriteCharacter(output, index, i, At(string.Characters, i));
    }
    output.Write(kSeparator);
    for (int32_t i = 0; i < CountOf(string.Lines); ++i) WriteLineRecord(output, index, i, At(string.Lines, i));
    output.Write(kSeparator);
    for (int32_t i = 0; i < CountOf(string.Paragraphs); ++i) {
        WriteParagraph(output, index, i, At(string.Paragraphs, i));
    }
    WriteLine(output, "==[Time: %d] End===========================================================", now());
}

}  // namespace captionfx
