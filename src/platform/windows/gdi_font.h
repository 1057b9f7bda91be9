// A realised font of GDI, with what it answered before.
#pragma once

#include <mutex>
#include <optional>
#include <shared_mutex>
#include <unordered_map>

#include "platform/font_system.h"

namespace captionfx {

/// Answers by code unit. Titles come back to the same few characters, and a question costs a font: a hundred times a
/// look-up.
template <class Answer>
class UnitAnswers {
public:
    [[nodiscard]] std::optional<Answer> Find(char16_t unit) const {
        const std::shared_lock lock(mutex_);
        const auto found = answers_.find(unit);
        return found == answers_.end() ? std::nullopt : std::optional(found->second);
    }
    void Keep(char16_t unit, const Answer& answer) {
        const std::unique_lock lock(mutex_);
        answers_.emplace(unit, answer);
    }

private:
    mutable std::shared_mutex mutex_;
    std::unordered_map<char16_t, Answer> answers_;
};

/// Holds no handle: each question takes a font and a device context of its own, so that threads do not meet.
class GdiFont final : public PlatformFont {
public:
    explicit GdiFont(const LogFont& request);

    [[nodiscard]] std::optional<OutlineMetrics> Metrics() const override { return metrics_; }
    [[nodiscard]] TextExtent Extent(char16_t unit) const override;
    bool FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const override;
    [[nodiscard]] std::optional<GlyphCoverage> Coverage(char16_t unit, GlyphFormat format,
                                                        const GlyphMatrix& matrix) const override;

private:
    const LogFont request_;
    const std::optional<OutlineMetrics> metrics_;
    mutable UnitAnswers<TextExtent> extents_;
    mutable UnitAnswers<uint16_t> glyphs_;
};

}  // namespace captionfx
