// A byte string as a program of calls through the interface, frames included, on the fake platform. After each call the
// structure of every string is sound; what else can go wrong the sanitizers find.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "fuzz/input_reader.h"
#include "paths/path_catalog.h"
#include "support/fake_platform.h"

namespace captionfx::fuzz {
namespace {

constexpr int32_t kWidth = 40, kHeight = 30;

/// One program. Sizes are kept small, so that a run takes microseconds and still meets every branch.
class Program {
public:
    explicit Program(InputReader& in) : in_(in) {
        owner_.ChangeSettings([](TitleRenderSettings& s) {
            s.Width = s.ClipRect.right = kWidth;
            s.Height = s.ClipRect.bottom = kHeight;
        });
    }

    void Run() {
        for (int calls = 0; calls < 200 && !in_.AtEnd(); ++calls) {
            Call();
            for (const MetaString& string : owner_.Title.Strings()) {
                const std::string fault = test::StructureFault(string);
                if (fault.empty()) continue;
                std::fprintf(stderr, "%s\n", fault.c_str());
                std::abort();
            }
        }
    }

private:
    void Call() {
        using P = Program;
        constexpr void (P::*kCalls[20])() = {
            &P::AddString, &P::ClearString, &P::AddOrRemoveAll, &P::Insert,      &P::Insert,
            &P::Insert,    &P::Delete,      &P::Delete,         &P::SetFont,     &P::SetFaceAndBorder,
            &P::SetShadow, &P::SetSpacing,  &P::SetString,      &P::SetSettings, &P::ReadStyles,
            &P::ReadRects, &P::SetKeyframe, &P::Reset,          &P::Render,      &P::Render};
        (this->*kCalls[in_.UpTo(20)])();
    }
    void ClearString() { title_.ClearString(in_.Index()); }
    void AddOrRemoveAll() { in_.UpTo(8) == 0 ? title_.RemoveAllStrings() : title_.AddString(); }

    void Reset() {
        if (in_.UpTo(16) != 0) {
            title_.FlushRenderCaches();
            return;
        }
        title_.ResetDefaults();
        SetSettings();  // the built-in frame is larger than the buffer here
    }
    void AddString() {
        if (title_.GetStringCount() < 4) title_.AddString();
    }
    void Insert() {
        const int32_t string = in_.Index() % 4, at = in_.Index();
        if (title_.GetCharCount(string) < 60) title_.InsertText(string, at, in_.Text().c_str());
    }
    void Delete() {
        const int32_t string = in_.Index() % 4, first = in_.Index();
        title_.DeleteText(string, first, in_.Index());
    }
    void SetFont() {
        constexpr std::u16string_view kFaces[] = {u"Box", u"Tall", u"Narrow", u"Han", u"Signs", u"Missing"};
        FontSpec font = test::Font(kFaces[in_.UpTo(6)], SmallSize());
        font.CharSet = static_cast<uint32_t>(in_.UpTo(3));
        font.Bold = in_.UpTo(2);
        title_.SetDefaultFont(&font);
    }
    /// Of fonts, scales and offsets: a frame of glyphs of 1638, which not a number becomes too, would take seconds.
    float SmallSize() {
        const float size = in_.Length();
        return std::isfinite(size) ? std::clamp(size, -64.0F, 64.0F) : 64.0F;
    }
    void SetFaceAndBorder() {
        const MetaFace face{in_.UpTo(4), in_.Byte() * 0x010203U, in_.Byte() * 0x010203U, in_.UpTo(9),
                            in_.Byte(),  in_.UpTo(12) - 2};
        title_.SetDefaultFace(&face);
        const MetaBorder border{in_.UpTo(4), in_.UpTo(14) - 2, face.Color2,     face.Color1,
                                in_.UpTo(9), in_.Byte(),       in_.UpTo(12) - 2};
        title_.SetDefaultBorder(&border);
    }
    void SetShadow() {
        const MetaShadow shadow{in_.UpTo(2), in_.UpTo(2),      in_.Byte(),  in_.Byte(),  in_.UpTo(9),
                                in_.Byte(),  in_.UpTo(12) - 2, SmallSize(), SmallSize(), in_.UpTo(2)};
        title_.SetDefaultShadow(&shadow);
    }
    void SetSpacing() {
        const CharSpacing spacing{.WidthScale = in_.UpTo(3) == 0 ? SmallSize() / 16 : 1, .Spacing = in_.Length()};
        title_.SetDefaultCharSpacing(&spacing);
        const ParagraphSpec paragraph{in_.Byte(), in_.Length(), in_.Length(), in_.Length(), in_.Length(), in_.Length()};
        title_.SetDefaultParagraph(&paragraph);
    }
    /// Any effect, none, or one that nobody knows.
    std::string_view EffectName() {
        const std::span<const PathCatalogEntry> effects = PathCatalog();
        const auto n = static_cast<size_t>(in_.Byte()) % (effects.size() + 3);
        constexpr std::string_view kOthers[] = {"", "PATH_NONE", "PATH_SCROLLNRESIZE"};
        return n < effects.size() ? std::string_view(effects[n].PathName) : kOthers[n - effects.size()];
    }
    void SetString() {
        StringSpec settings{};
        settings.Left = in_.Length();
        settings.Top = in_.Length();
        settings.WidthLimit = in_.UpTo(2) == 0 ? 1e9F : in_.Length();
        settings.RotateDegree = in_.UpTo(3) == 0 ? in_.Length() : 0;
        settings.Vertical = in_.UpTo(4) == 0 ? 1 : 0;
        SetText(settings.PathID, EffectName());
        settings.PathProgress = in_.UpTo(2) == 0 ? 1 : in_.Length() / 64;
        title_.SetDefaultString(&settings);
    }
    void SetSettings() {
        TitleRenderSettings s{};
        title_.GetRenderSettings(&s);
        s.AntialiasMode = in_.UpTo(5);
        s.PixelFormat = in_.UpTo(3);
        s.PostFilter = in_.UpTo(2);
        s.DestinationAlpha = in_.UpTo(2);
        s.Width = kWidth - in_.UpTo(3) * 20;
        s.Height = kHeight - in_.UpTo(3) * 15;
        s.ScaleX = in_.UpTo(4) == 0 ? SmallSize() / 32 : 1;
        s.ScaleY = in_.UpTo(4) == 0 ? SmallSize() / 32 : 1;
        s.ClipRect = {in_.UpTo(60) - 20, in_.UpTo(60) - 20, in_.UpTo(90) - 20, in_.UpTo(90) - 20};
        s.GlyphCacheEnabled = in_.UpTo(2);
        s.MaxThreads = in_.UpTo(8) == 0 ? 3 : 1;
        title_.SetRenderSettings(&s);
    }
    void ReadStyles() {
        const int32_t string = in_.Index(), character = in_.Index();
        FontSpec font{};
        MetaFace face{};
        MetaBorder border{};
        MetaShadow shadow{};
        CharSpacing spacing{};
        ParagraphSpec paragraph{};
        StringSpec settings{};
        title_.GetCharFont(string, character, &font);
        title_.GetCharFace(string, character, &face);
        title_.GetCharBorder(string, character, &border);
        title_.GetCharShadow(string, character, &shadow);
        title_.GetCharSpacing(string, character, &spacing);
        title_.GetCharParagraph(string, character, &paragraph);
        title_.GetStringSettings(string, &settings);
        title_.DumpString(string);
        owner_.Platform.Messages.clear();
    }
    void ReadRects() {
        const int32_t string = in_.Index(), index = in_.Index();
        TitleRectF rect{};
        title_.GetCharRect(string, index, &rect, in_.UpTo(2));
        title_.GetLineRect(string, index, &rect);
        title_.GetParagraphRect(string, index, &rect);
        title_.GetStringRect(string, &rect);
        std::u16string text(static_cast<size_t>(title_.GetCharCount(string)) + 1, u'?');
        title_.GetStringText(string, text.data());
    }
    /// Keyframes come into a title with its XML; here they are set by hand.
    void SetKeyframe() {
        std::vector<MetaString>& strings = owner_.Title.Strings();
        const int32_t index = in_.Index();
        const float time = in_.Length();
        if (!IsIndexOf(strings, index) || time != time) return;
        MetaPath path{};
        SetText(path.PathID, in_.UpTo(2) == 0 ? "PATH_FADE" : EffectName());
        path.PathProgress = in_.Length() / 64;
        At(strings, index).PathList.emplace(time, path);
    }
    void Render() {
        title_.RenderFrame(frame_.data(), in_.Length());
        TitleRect dirty{};
        title_.GetFrameDirtyRect(&dirty);
    }

    InputReader& in_;
    test::TestTitle owner_{test::FakePlatformOptions{.Processors = 2}};
    IKVT_CaptionFx& title_ = owner_.Title;
    std::vector<uint32_t> frame_ = std::vector<uint32_t>(static_cast<size_t>(kWidth) * kHeight);
};

}  // namespace
}  // namespace captionfx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    captionfx::fuzz::InputReader in(data, size);
    captionfx::fuzz::Program(in).Run();
    return 0;
}
