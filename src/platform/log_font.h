// LogFont: a font as the document keeps it. The layout is that of the Windows record LOGFONTW on every system, since
// titles carry its bytes from one system to the other.
#pragma once

#include <cstddef>
#include <cstdint>

namespace captionfx {

inline constexpr size_t kFaceNameLength = 32;  // code units, the terminating zero included

/// 92 bytes, compared as bytes: build it from a zeroed record.
struct LogFont {
    int32_t lfHeight;  ///< Minus the height of the em, in pixels.
    int32_t lfWidth, lfEscapement, lfOrientation;
    int32_t lfWeight;  ///< 400 regular, 700 bold; above 550 asks for a bold face.
    uint8_t lfItalic, lfUnderline, lfStrikeOut, lfCharSet;
    uint8_t lfOutPrecision, lfClipPrecision, lfQuality, lfPitchAndFamily;
    char16_t lfFaceName[kFaceNameLength];
};
static_assert(sizeof(LogFont) == 92);

inline constexpr uint8_t kDefaultCharSet = 1;
inline constexpr uint8_t kSymbolCharSet = 2;
inline constexpr int32_t kRegularWeight = 400;
inline constexpr int32_t kBoldWeight = 700;

}  // namespace captionfx
