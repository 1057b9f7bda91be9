// What an effect is given of a character and what it gives back.
#pragma once

#include <cstdint>

namespace captionfx {

/// A character at rest, canvas pixels, in the unrotated frame of its string.
struct CharBox {
    float Left, Top, Width, Height;
    float BaseX, BaseY;  ///< The point on the baseline under the left edge.
};

/// Where a character stands in one frame.
struct CharPlacement {
    float X, Y;  ///< Left and top, canvas pixels, in the unrotated frame of the string.
    float ScaleX, ScaleY;
    float Rotation;  ///< Degrees, clockwise.
    uint8_t Alpha;   ///< 0: the character is not drawn.
};

/// The extent of the canvas as seen in the rotated frame of a string, pixels.
struct PathCanvasBounds {
    float Top, Bottom, Right, Left;
};

}  // namespace captionfx
