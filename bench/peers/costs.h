// What a setting of a title costs.
#pragma once

namespace captionfx::peers {

/// Prints, for a line at 1080p and at 4K in motion, the milliseconds of a frame with one setting changed: with layers
/// kept from frame to frame, and with layers made for each frame.
void PrintCosts();

}  // namespace captionfx::peers
