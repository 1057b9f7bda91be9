// Editing against a model: random scripts of insertions, deletions and changes of the defaults, after each step of
// which the title must hold the model's text and styles in a sound structure. Where the order of edits cannot matter,
// it must also be laid out as if the text had been typed at once; in the end it must survive being saved and loaded. A
// script that fails is shrunk and printed as a line for kRegressions.
#include <algorithm>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "support/fake_platform.h"
#include "support/title_text.h"

namespace captionfx::test {
namespace {

/// One step. `Text` empty: deletes Count characters from At on. Positions count modulo what the text allows, so that a
/// script without some of its steps is still a script. Font and Align take effect before an insertion.
struct Step {
    int32_t At;
    int32_t Count;
    std::u16string Text;
    int32_t Font = 0;
    uint32_t Align = 0;
};

struct Script {
    float LimitInCharacters;  ///< Of 32 units; 0: no limit.
    int32_t Vertical;
    std::vector<Step> Steps;
};

constexpr std::u16string_view kFaces[] = {u"Box", u"Tall", u"Narrow", u"Signs"};

/// A character as the model has it.
struct Typed {
    char16_t Unit;
    int32_t Font;
};

bool IsPair(const std::vector<Typed>& text, size_t lf) {
    return lf > 0 && lf < text.size() && text[lf].Unit == u'\n' && text[lf - 1].Unit == u'\r';
}

class Model {
public:
    explicit Model(const Script& script) : script_(script) {
        Prepare(title_);
        title_.Title.AddString();
    }

    /// Empty when all is well after the step, else what is wrong.
    std::string Run(const Step& step) {
        const auto length = static_cast<int32_t>(text_.size());
        if (step.Text.empty()) {
            if (length == 0) return "";
            const int32_t first = step.At % length, count = 1 + step.Count % (length - first);
            title_.Title.DeleteText(0, first, count);
            text_.erase(text_.begin() + first, text_.begin() + first + count);
        } else {
            font_ = step.Font;
            Use(title_, step.Font, step.Align);
            uniform_ = uniform_ && step.Align == 0;
            const int32_t at = step.At % (length + 1);
            title_.Title.InsertText(0, at, step.Text.c_str());
            std::vector<Typed> typed;
            for (const char16_t unit : step.Text) typed.push_back({unit, step.Font});
            text_.insert(text_.begin() + at, typed.begin(), typed.end());
        }
        return Fault();
    }

    /// Empty when the title, whatever became of it, is saved and loads again as the same text and the same frame.
    std::string RoundTripFault() {
        const std::string saved = SavedText(title_.Title);
        TestTitle loaded;
        Prepare(loaded);
        Use(loaded, font_, 0);  // a string without text has the extent of the default font's blank
        if (saved.empty() || LoadText(loaded.Title, saved) != kTitleOk) return "is not loaded again";
        if (const std::string again = SavedText(loaded.Title); again != saved) {
            const auto at = static_cast<size_t>(std::ranges::mismatch(saved, again).in1 - saved.begin());
            return "another text when loaded: " + saved.substr(at - std::min<size_t>(at, 60), 80);
        }
        std::vector<uint32_t> before(320UL * 240), after(before);
        title_.Title.RenderFrame(before.data(), 0);
        loaded.Title.RenderFrame(after.data(), 0);
        return before == after ? "" : "another frame when loaded";
    }

private:
    void Prepare(TestTitle& title) const {
        title.ChangeDefaultString([&](StringSpec& string) {
            string.Vertical = script_.Vertical;
            if (script_.LimitInCharacters > 0) string.WidthLimit = script_.LimitInCharacters * 32;
        });
    }
    static void Use(TestTitle& title, int32_t font, uint32_t align) {
        FontSpec string = Font(kFaces[font]);
        if (kFaces[font] == u"Signs") string.CharSet = kSymbolCharSet;
        title.Title.SetDefaultFont(&string);
        const MetaFace face{.Enable = 1, .Color1 = 0, .Color2 = 0, .GradType = font, .Alpha = 255, .BlurRadius = 0};
        title.Title.SetDefaultFace(&face);
        const ParagraphSpec paragraph{align, 0, 0, 0, 0, 0};
        title.Title.SetDefaultParagraph(&paragraph);
    }

    std::string Fault() {
        const MetaString& string = title_.String();
        std::string fault = StructureFault(string);
        if (!fault.empty()) return fault;
        if (string.Characters.size() != text_.size()) return "the text has another length";
        size_t pairs = 0;
        std::vector<bool> fontUsed(string.Fonts.size()), faceUsed(string.Faces.size());
        for (size_t i = 0; i < text_.size(); ++i) {
            const MetaCharacter& character = string.Characters[i];
            if (character.Value != text_[i].Unit) return "another text";
            if (string.Faces[static_cast<size_t>(character.FaceIndex)].GradType != text_[i].Font)
                return "another style";
            fontUsed[static_cast<size_t>(character.FontIndex)] = faceUsed[static_cast<size_t>(character.FaceIndex)] =
                true;
            pairs += IsPair(text_, i) ? 1 : 0;
        }
        if (std::ranges::find(fontUsed, false) != fontUsed.end() ||
            std::ranges::find(faceUsed, false) != faceUsed.end()) {
            return "a table entry that nobody uses";
        }
        if (string.Paragraphs.size() != (text_.empty() ? 0 : pairs + 1)) return "paragraphs are not those of the CR LF";
        return Overlong(string) ? "a line over the limit" : FaultAgainstTypedAtOnce();
    }

    /// Whether a line that could have been wrapped is longer than the limit. A CR may be: it gains its width when its
    /// LF goes, and stays where it is.
    [[nodiscard]] bool Overlong(const MetaString& string) const {
        if (script_.LimitInCharacters <= 0) return false;
        for (const MetaLine& line : string.Lines) {
            float run = 0;
            for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) {
                const MetaCharacter& character = At(string.Characters, i);
                const bool isBreak = character.Value == u'\r' || character.Value == u'\n';
                if (!isBreak) run += script_.Vertical != 0 ? character.Height : character.Width;
                if (run > string.WidthLimit && i > line.CharStart && !isBreak && !HasBreak(string, line)) return true;
            }
        }
        return false;
    }
    static bool HasBreak(const MetaString& string, const MetaLine& line) {
        for (int32_t i = line.CharStart; i <= line.CharEnd; ++i) {
            if (At(string.Characters, i).Value == u'\r' || At(string.Characters, i).Value == u'\n') return true;
        }
        return false;
    }

    /// Without a width limit and with one setting for all paragraphs the order of edits cannot matter.
    std::string FaultAgainstTypedAtOnce() {
        if (script_.LimitInCharacters > 0 || !uniform_ || text_.empty()) return "";
        TestTitle fresh;
        Prepare(fresh);
        fresh.Title.AddString();
        for (size_t i = 0; i < text_.size();) {
            std::u16string run;
            const int32_t font = text_[i].Font;
            for (; i < text_.size() && text_[i].Font == font; ++i) run += text_[i].Unit;
            Use(fresh, font, 0);
            fresh.Title.InsertText(0, fresh.Title.GetCharCount(0), run.c_str());
        }
        TitleRectF a{}, b{};
        const auto differ = [&] { return std::memcmp(&a, &b, sizeof a) != 0; };
        title_.Title.GetStringRect(0, &a);
        fresh.Title.GetStringRect(0, &b);
        if (differ()) return "the string has another extent than typed at once";
        for (int32_t i = 0; i < static_cast<int32_t>(text_.size()); ++i) {
            title_.Title.GetCharRect(0, i, &a, 1);
            fresh.Title.GetCharRect(0, i, &b, 1);
            if (differ()) return "character " + std::to_string(i) + " lies elsewhere than typed at once";
        }
        return "";
    }

    const Script& script_;
    TestTitle title_;
    std::vector<Typed> text_;
    int32_t font_ = 0;
    bool uniform_ = true;
};

/// The first fault of a script, with the number of its step; empty when there is none.
std::string FaultOf(const Script& script) {
    Model model(script);
    for (size_t i = 0; i < script.Steps.size(); ++i) {
        const std::string fault = model.Run(script.Steps[i]);
        if (!fault.empty()) return "step " + std::to_string(i) + ": " + fault;
    }
    return model.RoundTripFault();
}

Script RandomScript(uint32_t seed) {
    constexpr std::u16string_view kUnits = u"abc \r\n\r\n\u4e00\xD83D\xDE00\u00e9";
    std::mt19937 random(seed);
    const auto upTo = [&](uint32_t n) { return static_cast<int32_t>(random() % n); };
    Script script{upTo(2) == 0 ? 0.0F : static_cast<float>(1 + upTo(12)) / 2, upTo(4) == 0 ? 1 : 0, {}};
    const bool changesAlign = upTo(3) == 0;
    for (int32_t n = 4 + upTo(24); n > 0; --n) {
        Step step{upTo(1000), upTo(8) == 0 ? upTo(1000) : upTo(3), {}, 0, 0};
        if (upTo(5) < 3) {
            for (int32_t k = 1 + upTo(6); k > 0; --k) step.Text += kUnits[static_cast<size_t>(upTo(kUnits.size()))];
            step.Font = upTo(3) == 0 ? upTo(4) : 0;
            step.Align = changesAlign ? static_cast<uint32_t>(upTo(8)) : 0;
        }
        script.Steps.push_back(step);
    }
    return script;
}

/// The script without the steps that its failure does not need.
Script Shrunk(Script script) {
    for (bool isSmaller = true; isSmaller;) {
        isSmaller = false;
        for (size_t i = 0; i < script.Steps.size(); ++i) {
            Script shorter = script;
            shorter.Steps.erase(shorter.Steps.begin() + static_cast<std::ptrdiff_t>(i));
            if (FaultOf(shorter).empty()) continue;
            script = shorter;
            isSmaller = true;
            break;
        }
    }
    return script;
}

std::string Source(const Script& script) {
    std::ostringstream out;
    out << '{' << script.LimitInCharacters << ", " << script.Vertical << ", {";
    for (const Step& step : script.Steps) {
        out << '{' << step.At << ", " << step.Count << ", u\"" << std::hex;
        for (const char16_t unit : step.Text) out << "\\x" << static_cast<uint32_t>(unit) << "\" u\"";
        out << std::dec << "\", " << step.Font << ", " << step.Align << "}, ";
    }
    out << "}},";
    return out.str();
}

TEST(EditingModelTest, RandomScripts) {
    for (uint32_t seed = 1; seed <= 3000; ++seed) {
        const Script script = RandomScript(seed);
        if (FaultOf(script).empty()) continue;
        const Script shrunk = Shrunk(script);
        FAIL() << "seed " << seed << ", shrunk to " << FaultOf(shrunk) << "\n" << Source(shrunk);
    }
}

// Scripts that once failed, or that are known to be hard.
TEST(EditingModelTest, Regressions) {
    const Script kRegressions[] = {
        {0, 0, {{0, 0, u"a\r\nb\r\nc"}, {1, 3, u""}, {0, 0, u"\r\n"}}},   // over two pairs, then a new one
        {0, 0, {{0, 0, u"a\r\nb"}, {1, 0, u""}, {1, 0, u"\r"}}},          // the CR goes and comes back
        {0, 0, {{0, 0, u"a\r\nb"}, {2, 0, u""}, {2, 0, u"\n"}}},          // the LF
        {0, 0, {{0, 0, u"\rx\n"}, {1, 0, u""}}},                          // CR and LF meet by a deletion
        {0, 0, {{0, 0, u"a\r\r\n\nb"}, {2, 1, u""}}},                     // a pair goes, another meets in its place
        {1, 0, {{0, 0, u"abc"}, {2, 0, u""}, {1, 0, u""}, {0, 0, u""}}},  // the tail of wrapped text, line by line
        {2, 0, {{0, 0, u"ab\r\ncdef"}, {6, 1, u""}, {4, 1, u""}}},
        {1, 1, {{0, 0, u"\u4e00\r\n\u4e00"}, {0, 1, u""}, {0, 0, u""}}},
    };
    for (const Script& script : kRegressions) EXPECT_EQ(FaultOf(script), "") << Source(script);
}

}  // namespace
}  // namespace captionfx::test
