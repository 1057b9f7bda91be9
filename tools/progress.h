// How far a sequence is, for people: on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace captionfx {

enum class ProgressStyle {
    kNone,   ///< Says nothing.
    kLines,  ///< For logs: a line every ten seconds, and one at the end.
    kBar,    ///< One line of a terminal that is written over, ten times a second at most.
};

/// What the user and the kind of standard error ask for.
[[nodiscard]] ProgressStyle ProgressStyleOf(bool isQuiet);

class Progress {
public:
    using Clock = std::chrono::steady_clock;

    /// `expected` frames; 0 where nobody knows.
    Progress(ProgressStyle style, int64_t expected, Clock::time_point now = Clock::now());
    /// Leaves the terminal at the beginning of a line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// One more frame is done.
    void Advance(Clock::time_point now = Clock::now());
    /// All are done.
    void Finish(Clock::time_point now = Clock::now());

    /// Such as "40 of 100 frames, 80.0 a second, 0.8 s left"; of a bar with the bar in front.
    [[nodiscard]] std::string Text(Clock::time_point now) const;

private:
    void Show(Clock::time_point now);

    ProgressStyle style_;
    int64_t expected_, done_ = 0;
    Clock::time_point started_, shown_;
    bool isLineOpen_ = false;
};

}  // namespace captionfx
