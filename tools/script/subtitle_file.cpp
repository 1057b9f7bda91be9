#include "tools/script/subtitle_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "tools/script/cue_text.h"
#include "tools/script/json_tree.h"
#include "tools/text_encoding.h"

namespace captionfx {
namespace {

constexpr std::string_view kArrow = "-->";

bool IsBlank(std::string_view line) {
    return line.find_first_not_of(" \t") == std::string_view::npos;
}

std::string_view Trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

std::vector<std::string_view> LinesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines.push_back(line);
    }
    return lines;
}

/// Reads blocks of lines, which blank lines part.
class SubtitleReader {
public:
    explicit SubtitleReader(std::string_view text) : lines_(LinesOf(text)) {}

    std::vector<SubtitleCue> Read() {
        const bool isWebVtt = !lines_.empty() && lines_[0].starts_with("WEBVTT");
        if (isWebVtt) SkipBlock();
        while (SkipBlankLines()) {
            const std::string_view first = lines_[at_];
            const bool isAside =
                isWebVtt && (first.starts_with("NOTE") || first.starts_with("STYLE") || first.starts_with("REGION"));
            if (isAside && first.find(kArrow) == std::string_view::npos) {
                SkipBlock();
            } else {
                ReadCue();
            }
        }
        if (cues_.empty()) throw PlacedError({}, "", "holds no subtitles");
        return std::move(cues_);
    }

private:
    [[nodiscard]] bool IsInBlock() const { return at_ < lines_.size() && !IsBlank(lines_[at_]); }

    void SkipBlock() {
        while (IsInBlock()) ++at_;
    }

    /// Returns whether there is a block.
    bool SkipBlankLines() {
        while (at_ < lines_.size() && IsBlank(lines_[at_])) ++at_;
        return at_ < lines_.size();
    }

    [[noreturn]] void Fail(std::string_view reason) const {
        throw PlacedError({.line = static_cast<int32_t>(at_) + 1, .column = 1}, "", reason);
    }

    void ReadCue() {
        // A number or a name may stand before the times.
        if (lines_[at_].find(kArrow) == std::string_view::npos && at_ + 1 < lines_.size()) ++at_;
        SubtitleCue cue = ReadTimes();
        ++at_;
        std::string text;
        for (; IsInBlock(); ++at_) {
            if (!Utf16FromUtf8(lines_[at_])) Fail("the text is not UTF-8");
            if (!text.empty()) text += '\n';
            text += Trimmed(lines_[at_]);
        }
        cue.pieces = SplitCueText(text, cue.start, cue.end);
        const bool hasText =
            std::ranges::any_of(cue.pieces, [](const CuePiece& piece) { return !IsBlank(piece.text); });
        if (hasText) cues_.push_back(std::move(cue));
    }

    [[nodiscard]] SubtitleCue ReadTimes() const {
        const std::string_view line = lines_[at_];
        const size_t arrow = line.find(kArrow);
        if (arrow == std::string_view::npos) Fail("expected times such as 00:00:01,500 --> 00:00:04,000");
        const std::string_view behind = Trimmed(line.substr(arrow + kArrow.size()));
        const std::optional<float> start = ParseCueTime(Trimmed(line.substr(0, arrow)));
        const std::optional<float> end = ParseCueTime(behind.substr(0, behind.find_first_of(" \t")));
        if (!start || !end) Fail("expected times such as 00:00:01,500 --> 00:00:04,000");
        if (*end <= *start) Fail("this subtitle ends before it begins");
        return {.start = *start, .end = *end, .pieces = {}};
    }

    std::vector<std::string_view> lines_;
    size_t at_ = 0;
    std::vector<SubtitleCue> cues_;
};

}  // namespace

std::vector<SubtitleCue> ReadSubtitles(std::string_view text) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    return SubtitleReader(text).Read();
}

}  // namespace captionfx
