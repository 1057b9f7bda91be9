// Seconds or milliseconds: what a host of frei0r passes as the time.
#pragma once

namespace captionfx {

/// Seconds of one unit of the time that a host passes. The interface asks for seconds, and hosts pass them but for one:
/// FFmpeg's filters pass milliseconds. Times themselves do not tell: a first frame is 0 in both, a later one may come
/// after a seek, and a frame must not depend on those before it. So the host is told by its code: `caller` is an
/// address in it, and milliseconds come from the library of filters, or from the program where that is linked in.
[[nodiscard]] double SecondsOfHostTime(const void* caller) noexcept;

}  // namespace captionfx
