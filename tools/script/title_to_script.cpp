#include "tools/script/title_to_script.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tools/console.h"
#include "tools/output_file.h"
#include "tools/script/effect_names.h"
#include "tools/script/script_text.h"
#include "tools/script/script_title.h"
#include "tools/script/title_difference.h"
#include "tools/script/title_script.h"
#include "tools/text_encoding.h"
#include "tools/title_file.h"
#include "tools/title_handle.h"

namespace captionfx {
namespace {

std::u16string TextOf(IKVT_CaptionFx& title, int32_t string) {
    std::u16string text(static_cast<size_t>(title.GetCharCount(string)) + 1, u'\0');
    title.GetStringText(string, text.data());
    text.pop_back();
    return text;
}

TextStyle StyleOf(IKVT_CaptionFx& title, int32_t string, int32_t character) {
    TextStyle style{};
    title.GetCharFont(string, character, &style.font);
    title.GetCharSpacing(string, character, &style.spacing);
    title.GetCharFace(string, character, &style.face);
    title.GetCharBorder(string, character, &style.border);
    title.GetCharShadow(string, character, &style.shadow);
    return style;
}

bool DifferInFaceAlone(const TextStyle& a, TextStyle b) {
    std::ranges::copy(a.font.FaceName, b.font.FaceName);
    b.font.CharSet = a.font.CharSet;
    return a == b;
}

/// Finds the runs of a string. A text of one font comes back from the library in several, since characters that the
/// face lacks have another: neighbours whose fonts the library gives to the whole text again are one run.
class RunFinder {
public:
    RunFinder(IKVT_CaptionFx& title, int32_t string) : title_(title), string_(string), text_(TextOf(title, string)) {}

    std::vector<ScriptRun> Find() {
        std::vector<ScriptRun> runs;
        for (size_t i = 0; i < text_.size(); ++i) {
            const TextStyle style = StyleOf(title_, string_, static_cast<int32_t>(i));
            if (!runs.empty() && runs.back().style == style) {
                runs.back().text += text_[i];
            } else {
                runs.push_back({text_.substr(i, 1), style});
            }
        }
        return Joined(runs);
    }

private:
    [[nodiscard]] std::vector<ScriptRun> Joined(const std::vector<ScriptRun>& runs) {
        std::vector<ScriptRun> joined;
        size_t start = 0, end = 0;  // of the run that grows
        for (const ScriptRun& run : runs) {
            end += run.text.size();
            const std::optional<TextStyle> common =
                joined.empty() ? std::nullopt : Common(joined.back().style, run.style, start, end);
            if (common) {
                joined.back() = {joined.back().text + run.text, *common};
            } else {
                start = end - run.text.size();
                joined.push_back(run);
            }
        }
        return joined;
    }

    /// The style of the two that gives the characters [start, end) their fonts.
    [[nodiscard]] std::optional<TextStyle> Common(const TextStyle& a, const TextStyle& b, size_t start, size_t end) {
        if (!DifferInFaceAlone(a, b)) return std::nullopt;
        if (GivesFonts(a, start, end)) return a;
        if (GivesFonts(b, start, end)) return b;
        return std::nullopt;
    }

    [[nodiscard]] bool GivesFonts(const TextStyle& style, size_t start, size_t end) {
        probe_->RemoveAllStrings();
        probe_->SetDefaultFont(&style.font);
        const int32_t string = probe_->AddString();
        probe_->InsertText(string, 0, text_.substr(start, end - start).c_str());
        for (size_t i = start; i < end; ++i) {
            FontSpec given{}, wanted{};
            probe_->GetCharFont(string, static_cast<int32_t>(i - start), &given);
            title_.GetCharFont(string_, static_cast<int32_t>(i), &wanted);
            // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): zeroed records without padding
            if (std::memcmp(&given, &wanted, sizeof given) != 0) return false;
        }
        return true;
    }

    IKVT_CaptionFx& title_;
    int32_t string_;
    std::u16string text_;
    TitleHandle probe_ = MakeTitle();
};

std::string JsonText(std::u16string_view text) {
    std::string lines = Utf8FromUtf16(text);
    for (size_t at = 0; (at = lines.find("\r\n", at)) != std::string::npos;) lines.erase(at, 1);
    return lines;
}

void AddText(ScriptJson& object, const std::vector<ScriptRun>& runs) {
    if (runs.size() == 1) {
        object["text"] = JsonText(runs[0].text);
        return;
    }
    for (const ScriptRun& run : runs) {
        ScriptJson item{{"text", JsonText(run.text)}};
        AddStyleKeys(item, run.style, runs[0].style);
        object["runs"].push_back(item.size() == 1 ? ScriptJson(item["text"]) : item);
    }
}

void AddSettings(ScriptJson& object, const StringSpec& settings, const ParagraphSpec& paragraph) {
    constexpr float kNoLimit = 1e9F;
    object["position"] = {NumberText(settings.Left), NumberText(settings.Top)};
    if (settings.WidthLimit < kNoLimit) object["widthLimit"] = NumberText(settings.WidthLimit);
    if (settings.RotateDegree != 0.0F) object["rotate"] = NumberText(settings.RotateDegree);
    if (settings.Vertical != 0) object["vertical"] = true;
    constexpr size_t kHorizontalWords = 3;
    const auto words = std::span<const ScriptWord<uint32_t>>(kAligns).subspan(
        settings.Vertical != 0 ? kHorizontalWords : 0, kHorizontalWords);
    if (paragraph.Align != 0 && !WordFor(paragraph.Align, words).empty())
        object["align"] = WordFor(paragraph.Align, words);
    for (const auto& [key, field] : kParagraphLengths) {
        if (paragraph.*field != 0.0F) object[std::string(key)] = NumberText(paragraph.*field);
    }
}

ScriptJson StringText(IKVT_CaptionFx& title, int32_t string, const std::vector<Keyframe>& keys) {
    StringSpec settings{};
    ParagraphSpec paragraph{};
    title.GetStringSettings(string, &settings);
    title.GetCharParagraph(string, 0, &paragraph);
    const std::vector<ScriptRun> runs = RunFinder(title, string).Find();
    ScriptJson object;
    AddText(object, runs);
    AddSettings(object, settings, paragraph);
    AddStyleKeys(object, runs.front().style, PlainStyle());
    if (!keys.empty()) {
        AddTimelineKeys(object, keys);
    } else if (const std::string effect = NameOfEffect(settings.PathID);
               effect != "none" || settings.PathProgress != 1.0F) {
        object["effect"] = effect;
        object["progress"] = NumberText(settings.PathProgress);
    }
    return object;
}

/// The script, and which strings of the title are in it.
std::pair<std::string, std::vector<size_t>> ScriptOf(IKVT_CaptionFx& title, const TitleSource& source) {
    ScriptJson document;
    if (source.frame)
        document["frame"] = std::to_string(source.frame->width) + "x" + std::to_string(source.frame->height);
    if (source.scale != 1.0F) document["scale"] = NumberText(source.scale);
    document["strings"] = ScriptJson::array();
    std::vector<size_t> told;
    for (size_t i = 0; i < source.strings.size(); ++i) {
        const auto index = static_cast<int32_t>(i);
        if (title.GetCharCount(index) == 0) {
            PrintLine("note: string " + std::to_string(i) + " has no text and is left out");
            continue;
        }
        document["strings"].push_back(StringText(title, index, source.strings[i].keys));
        told.push_back(i);
    }
    return {LaidOut(document), told};
}

/// Reads the script back and tells what of each string became another.
void NoteDifferences(IKVT_CaptionFx& title, const std::string& text, const std::vector<size_t>& told,
                     const std::filesystem::path& path) try {
    constexpr FrameSize kAny{1280, 720};  // all strings have positions
    const TitleHandle again = MakeTitle();
    BuildTitle(*again, ReadTitleScript(text, kAny), kAny);
    const auto wanted = TagsByString(title), got = TagsByString(*again);
    for (size_t i = 0; i < told.size(); ++i) {
        std::string parts;
        for (const std::string& part : Differences(wanted.at(told[i]), got.at(i)))
            parts += (parts.empty() ? "" : ", ") + part;
        if (!parts.empty())
            PrintLine("note: string " + std::to_string(told[i]) + ": a script cannot say all of " + parts);
    }
} catch (const PlacedError& error) {
    throw std::runtime_error(path.string() + ": this title holds what no script can say: " + error.what());
}

}  // namespace

void WriteScript(IKVT_CaptionFx& title, const TitleSource& source, const std::filesystem::path& path) {
    const auto [text, told] = ScriptOf(title, source);
    NoteDifferences(title, text, told, path);
    OutputFile file(path);
    file.Write(text.data(), text.size());
    file.Finish();
}

}  // namespace captionfx
