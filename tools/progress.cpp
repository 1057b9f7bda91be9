#include "tools/progress.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <unistd.h>

#include "tools/console.h"
#include "tools/format.h"

namespace captionfx {
namespace {

/// "7.5 s", "2 min 05 s", "1 h 02 min".
std::string Duration(double seconds) {
    constexpr long kMinute = 60, kHour = 3600;
    const long whole = std::lround(seconds);
    if (whole >= kHour) return Format("%ld h %02ld min", whole / kHour, whole % kHour / kMinute);
    if (whole >= kMinute) return Format("%ld min %02ld s", whole / kMinute, whole % kMinute);
    return Format("%.1f s", seconds);
}

}  // namespace

ProgressStyle ProgressStyleOf(bool isQuiet) {
    if (isQuiet) return ProgressStyle::kNone;
    return isatty(STDERR_FILENO) != 0 ? ProgressStyle::kBar : ProgressStyle::kLines;
}

Progress::Progress(ProgressStyle style, int64_t expected, Clock::time_point now)
    : style_(style), expected_(expected), started_(now), shown_(now) {}

Progress::~Progress() {
    if (isLineOpen_) std::cerr << std::endl;
}

std::string Progress::Text(Clock::time_point now) const {
    const double seconds = std::chrono::duration<double>(now - started_).count();
    const double rate = seconds > 0 ? static_cast<double>(done_) / seconds : 0;
    const bool isUnderWay = done_ < expected_;
    std::string text;
    if (style_ == ProgressStyle::kBar && expected_ > 0) {
        constexpr int64_t kCells = 24;
        const auto full = static_cast<size_t>(kCells * std::min(done_, expected_) / expected_);
        text.append("[").append(full, '#').append(kCells - full, '-').append("] ");
    }
    text += std::to_string(done_);
    if (isUnderWay) text += Format(" of %lld", static_cast<long long>(expected_));
    text += done_ == 1 && !isUnderWay ? " frame" : " frames";
    if (rate > 0) text += Format(", %.1f a second", rate);
    if (isUnderWay && rate > 0) text += ", " + Duration(static_cast<double>(expected_ - done_) / rate) + " left";
    if (!isUnderWay) text += ", " + Duration(seconds);
    return text;
}

void Progress::Advance(Clock::time_point now) {
    using std::chrono_literals::operator""ms;
    ++done_;
    if (style_ == ProgressStyle::kNone || now - shown_ < (style_ == ProgressStyle::kBar ? 100ms : 10000ms)) return;
    Show(now);
}

void Progress::Finish(Clock::time_point now) {
    expected_ = done_;
    if (style_ == ProgressStyle::kNone) return;
    Show(now);
    if (isLineOpen_) std::cerr << std::endl;
    isLineOpen_ = false;
}

void Progress::Show(Clock::time_point now) {
    shown_ = now;
    if (style_ == ProgressStyle::kLines) return PrintLine(Text(now));
    constexpr const char* kEraseToEndOfLine = "\x1B[K";
    std::cerr << '\r' << Text(now) << kEraseToEndOfLine << std::flush;
    isLineOpen_ = true;
}

}  // namespace captionfx
