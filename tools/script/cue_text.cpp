#include "tools/script/cue_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "tools/script/script_values.h"

namespace captionfx {
namespace {

constexpr std::array<ScriptWord<Rgb>, 16> kColorNames{{{"white", {255, 255, 255}},
                                                       {"silver", {192, 192, 192}},
                                                       {"gray", {128, 128, 128}},
                                                       {"black", {0, 0, 0}},
                                                       {"red", {255, 0, 0}},
                                                       {"maroon", {128, 0, 0}},
                                                       {"yellow", {255, 255, 0}},
                                                       {"olive", {128, 128, 0}},
                                                       {"lime", {0, 255, 0}},
                                                       {"green", {0, 128, 0}},
                                                       {"aqua", {0, 255, 255}},
                                                       {"cyan", {0, 255, 255}},
                                                       {"teal", {0, 128, 128}},
                                                       {"blue", {0, 0, 255}},
                                                       {"navy", {0, 0, 128}},
                                                       {"magenta", {255, 0, 255}}}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kEntities{{{"&amp;", "&"},
                                                                                  {"&lt;", "<"},
                                                                                  {"&gt;", ">"},
                                                                                  {"&quot;", "\""},
                                                                                  {"&nbsp;", "\xC2\xA0"},
                                                                                  {"&lrm;", "\xE2\x80\x8E"},
                                                                                  {"&rlm;", "\xE2\x80\x8F"}}};

std::optional<Rgb> ColorOf(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const auto& [word, color] : kColorNames) {
        if (word == lower) return color;
    }
    return ParseColor(name);
}

/// What stands behind the first `mark` of a text, without quotes and up to a space; empty where there is none.
std::string_view ValueBehind(std::string_view text, std::string_view mark) {
    const size_t at = text.find(mark);
    if (at == std::string_view::npos) return {};
    std::string_view value = text.substr(at + mark.size());
    value.remove_prefix(std::min(value.find_first_not_of("\"'"), value.size()));
    return value.substr(0, value.find_first_of("\"' \t"));
}

/// Reads a text from the front, mark by mark.
class TextSplitter {
public:
    TextSplitter(std::string_view text, float start, float end) : rest_(text), time_(start), end_(end) {}

    std::vector<CuePiece> Split() {
        while (!rest_.empty()) {
            if (!TakeMark() && !TakeEntity()) TakeText(1);
        }
        return std::move(pieces_);
    }

private:
    /// A mark begins like one and ends somewhere; "a < b" holds none.
    bool TakeMark() {
        if (rest_.starts_with("{\\")) return TakeUpTo('}', [](std::string_view) {});
        const char next = rest_.size() > 1 ? rest_[1] : ' ';
        const bool isMark = rest_.front() == '<' && (next == '/' || (next >= '0' && next <= '9') ||
                                                     (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z'));
        return isMark && TakeUpTo('>', [this](std::string_view mark) { Obey(mark); });
    }

    template <class Act>
    bool TakeUpTo(char last, Act act) {
        const size_t end = rest_.find(last);
        if (end == std::string_view::npos) return false;
        act(rest_.substr(1, end - 1));
        rest_.remove_prefix(end + 1);
        return true;
    }

    void Obey(std::string_view mark) {
        if (const std::optional<float> time = ParseCueTime(mark)) {
            time_ = std::clamp(*time, time_, end_);
            return;
        }
        const bool closes = mark.starts_with('/');
        const std::string_view name = mark.substr(closes ? 1 : 0, mark.find_first_of(" .\t") - (closes ? 1 : 0));
        const int step = closes ? -1 : 1;
        if (name == "b" || name == "B") bold_ += step;
        if (name == "i" || name == "I") italic_ += step;
        const bool isFont = name == "font" || name == "FONT";
        if (!isFont && name != "c") return;
        if (!closes) {
            colors_.push_back(ColorOf(isFont ? ValueBehind(mark, "color=") : ClassOf(mark)));
        } else if (!colors_.empty()) {
            colors_.pop_back();
        }
    }

    /// The class of "c.yellow" or "c.bg_blue.yellow" that is a colour of the text.
    [[nodiscard]] static std::string_view ClassOf(std::string_view mark) {
        while (mark.find('.') != std::string_view::npos) {
            mark.remove_prefix(mark.find('.') + 1);
            const std::string_view name = mark.substr(0, mark.find_first_of(". \t"));
            if (ColorOf(name)) return name;
        }
        return {};
    }

    bool TakeEntity() {
        const auto found =
            std::ranges::find_if(kEntities, [&](const auto& row) { return rest_.starts_with(row.first); });
        if (found == std::end(kEntities)) return false;
        Add(found->second);
        rest_.remove_prefix(found->first.size());
        return true;
    }

    void TakeText(size_t size) {
        Add(rest_.substr(0, size));
        rest_.remove_prefix(size);
    }

    void Add(std::string_view text) {
        const auto set = std::ranges::find_if(colors_.rbegin(), colors_.rend(), [](const auto& c) { return !!c; });
        const CuePiece piece{.text = std::string(text),
                             .time = time_,
                             .bold = bold_ > 0,
                             .italic = italic_ > 0,
                             .color = set == colors_.rend() ? std::nullopt : *set};
        if (!pieces_.empty() && pieces_.back().time == piece.time && pieces_.back().bold == piece.bold &&
            pieces_.back().italic == piece.italic && pieces_.back().color == piece.color) {
            pieces_.back().text += text;
        } else {
            pieces_.push_back(piece);
        }
    }

    std::string_view rest_;
    float time_, end_;
    int bold_ = 0, italic_ = 0;
    std::vector<std::optional<Rgb>> colors_;  // of the marks that are open; those that name no colour have none
    std::vector<CuePiece> pieces_;
};

}  // namespace

std::optional<float> ParseCueTime(std::string_view text) {
    constexpr size_t kMostParts = 3;
    constexpr double kSixty = 60.0;
    std::string decimal(text);
    std::ranges::replace(decimal, ',', '.');
    std::string_view rest = decimal;
    double seconds = 0;
    for (size_t part = 1; part <= kMostParts; ++part) {
        const size_t colon = rest.find(':');
        const bool isLast = colon == std::string_view::npos;
        const std::string_view digits = rest.substr(0, colon);
        // Digits alone before the seconds, digits and a point in them: no sign and no exponent.
        const bool isPlain = !digits.empty() && digits.front() != '.' &&
                             digits.find_first_not_of(isLast ? "0123456789." : "0123456789") == std::string_view::npos;
        double value = 0;
        if (!isPlain ||
            std::from_chars(digits.data(), digits.data() + digits.size(), value).ptr != digits.data() + digits.size())
            return std::nullopt;
        if (part > 1 && value >= kSixty) return std::nullopt;
        seconds = seconds * kSixty + value;
        if (isLast) return part > 1 ? std::optional(static_cast<float>(seconds)) : std::nullopt;
        rest.remove_prefix(colon + 1);
    }
    return std::nullopt;
}

std::vector<CuePiece> SplitCueText(std::string_view text, float start, float end) {
    return TextSplitter(text, start, end).Split();
}

}  // namespace captionfx
