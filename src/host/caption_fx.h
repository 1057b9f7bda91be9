// CaptionFx: animated text titles for video. This is the library's whole interface to a host.
//
// A host asks `GetTitleHost` for a title, sets the frame size, adds strings, inserts text with the styles that are the
// defaults at that moment, and asks for frames. `ReleaseTitleHost` ends the title.
//
//     IKVT_CaptionFx* title = GetTitleHost();
//     TitleRenderSettings settings{};
//     title->GetRenderSettings(&settings);
//     settings.Width = settings.ClipRect.right = 1280;
//     settings.Height = settings.ClipRect.bottom = 720;
//     title->SetRenderSettings(&settings);
//     const int32_t string = title->AddString();
//     title->InsertText(string, 0, u"Hello");
//     title->RenderFrame(pixels, 0.0f);              // pixels: 1280 * 720 words, blue in the lowest byte
//     ReleaseTitleHost(title);
//
// Conventions
//   * Document units: positions and sizes of text. ScaleX and ScaleY of TitleRenderSettings turn them into pixels.
//   * Style sizes (MetaBorder::Size, BlurRadius): 10 is one eighth of the font's size.
//   * Colours of styles: 0x00BBGGRR, red in the lowest byte; the top byte is 0.
//   * Pixels of frames: 32 bits, blue, green, red, alpha in memory; with PixelFormat 1 they are V, U, Y, alpha.
//   * Text: UTF-16 code units, zero-terminated. A surrogate pair counts as two characters.
//   * Indices and counts: int32_t, from 0.
//   * Results: an operation that returns a status returns one of the kTitle... codes below; all failures are negative.
//   * Ownership: every pointer that is passed in stays the caller's and is not kept after the call.
//   * Threads: one call at a time on one title. Different titles may be used on different threads at once.
//   * Windows: to insert or delete text, and to load or save titles, the thread needs COM; without it these fail.
//   * Nothing is thrown across this interface.
#ifndef CAPTIONFX_CAPTION_FX_H
#define CAPTIONFX_CAPTION_FX_H

#include <cstdint>

#if defined(_WIN32)
#if defined(CAPTIONFX_BUILD)
#define CAPTIONFX_API __declspec(dllexport)
#else
#define CAPTIONFX_API __declspec(dllimport)
#endif
#else
#define CAPTIONFX_API __attribute__((visibility("default")))
#endif

/// Success.
inline constexpr int32_t kTitleOk = 0;
/// An index is out of range, or a pointer that is needed is null.
inline constexpr int32_t kTitleInvalidArgument = static_cast<int32_t>(0x80070057u);
/// The output pointer of GetFrameDirtyRect is null.
inline constexpr int32_t kTitleNullPointer = static_cast<int32_t>(0x80004003u);
/// The operation failed.
inline constexpr int32_t kTitleFailure = static_cast<int32_t>(0x80004005u);
/// Memory ran out. The title is still usable.
inline constexpr int32_t kTitleOutOfMemory = static_cast<int32_t>(0x8007000Eu);

/// A rectangle of whole pixels; right and bottom lie outside it.
struct TitleRect {
    int32_t left, top, right, bottom;
};

/// A rectangle in pixels.
struct TitleRectF {
    float x, y, width, height;
};

/// A font as a host asks for it. 88 bytes.
struct FontSpec {
    char16_t FaceName[32];  ///< Family name, zero-terminated, matched exactly; compared as code units.
    uint32_t CharSet;       ///< Character set number, the low byte counts: 0 Western, 1 any, 2 symbol.
    float Size;             ///< Size of the em in document units, 0 to 1638; a negative size means its magnitude.
    int32_t Bold;           ///< Non-zero: bold; synthesised where the family has no bold face.
    int32_t Italic;         ///< Non-zero: italic; synthesised where the family has no italic face.
    int32_t Underline;      ///< Stored in the default font only; text is never underlined.
    int32_t Strikeout;      ///< Stored in the default font only; text is never struck out.
};

/// Horizontal stretch and tracking of characters. 8 bytes.
struct CharSpacing {
    float WidthScale;  ///< Horizontal stretch, above 0; 1 is the font's own width.
    float Spacing;     ///< Extra advance, document units; in horizontal text it is stretched with the character.
};

/// Settings of a paragraph. 24 bytes. Lengths are document units.
struct ParagraphSpec {
    uint32_t
        Align;  ///< Bits 1 and 2: 2 is right, 6 is centre, anything else left (in vertical text: bottom, middle, top).
    float LineSpace;    ///< Added after every line, the last included.
    float BeforeSpace;  ///< Added before the paragraph.
    float AfterSpace;   ///< Added after the paragraph.
    float LeftIndent;   ///< Shortens the lines and widens the string; it does not shift the text.
    float RightIndent;  ///< As LeftIndent.
};

/// Settings of a string. 544 bytes.
struct StringSpec {
    float Left, Top;     ///< Upper left corner, document units; the columns of vertical text go left from it.
    float WidthLimit;    ///< Line length at which text wraps, document units; 1e9 means never.
    float RotateDegree;  ///< Rotation about (Left, Top), degrees, clockwise.
    int32_t Vertical;    ///< Non-zero: text runs from top to bottom, columns from right to left.
    char PathID[260];    ///< Name of the effect, such as "PATH_FADE"; empty draws nothing.
    float PathProgress;  ///< Progress of the effect: 0 not there yet, 1 at rest. Not clamped.
    char MaskFile[260];  ///< Kept and returned; it takes no part in drawing.
};

/// Fill of the glyphs. 24 bytes.
struct MetaFace {
    int32_t Enable;           ///< 0 draws no face.
    uint32_t Color1, Color2;  ///< The two ends of the fill, 0x00BBGGRR. Equal colours make a flat fill.
    int32_t GradType;    ///< 1 top to bottom, 2 right to left, 3 left to right, 4 to 7 diagonal, others bottom to top.
    int32_t Alpha;       ///< 0 to 255; the low byte counts.
    int32_t BlurRadius;  ///< Tenths of an eighth of the font's size; below 1 is sharp.
};

/// Outline around the glyphs. 28 bytes.
struct MetaBorder {
    int32_t Enable;           ///< 0 draws no border.
    int32_t Size;             ///< Thickness in tenths of an eighth of the font's size; a negative one draws no border.
    uint32_t Color1, Color2;  ///< As in MetaFace.
    int32_t GradType;         ///< As in MetaFace.
    int32_t Alpha;            ///< As in MetaFace.
    int32_t BlurRadius;       ///< As in MetaFace.
};

/// Shadow under the glyphs. 40 bytes.
struct MetaShadow {
    int32_t EnableFace;       ///< Non-zero: the face casts it.
    int32_t EnableBorder;     ///< Non-zero: the border casts it.
    uint32_t Color1, Color2;  ///< As in MetaFace.
    int32_t GradType;         ///< As in MetaFace.
    int32_t Alpha;            ///< As in MetaFace.
    int32_t BlurRadius;       ///< As in MetaFace.
    float OffsetX, OffsetY;   ///< Where the shadow falls, document units, right and down.
    int32_t Height;           ///< Boolean: non-zero extrudes the shadow all the way along its offset.
};

/// Output settings of a title. 60 bytes.
struct TitleRenderSettings {
    uint32_t Reserved;      ///< Kept and returned unchanged.
    int32_t AntialiasMode;  ///< Gray levels of glyphs: 0 is 65, 1 is 17, 2 is 5, 3 is black and white. Others act as 1.
    int32_t PixelFormat;    ///< 0 ARGB, 1 AYUV; others act as 0.
    int32_t PostFilter;     ///< Non-zero: a vertical low-pass against flicker on interlaced displays.
    int32_t DestinationAlpha;   ///< Non-zero: the destination carries alpha of its own. With 0 its alpha must hold 255.
    int32_t Width, Height;      ///< Frame size in pixels; zero or less draws nothing.
    float ScaleX, ScaleY;       ///< Document units to pixels, above 0.
    TitleRect ClipRect;         ///< Output is limited to this rectangle.
    int32_t GlyphCacheEnabled;  ///< Non-zero: characters at rest are drawn from kept bitmaps.
    int32_t MaxThreads;         ///< Most threads of a frame; values below 2 keep it on the caller's thread.
};

/// A title. Obtained from GetTitleHost, ended by ReleaseTitleHost.
///
/// Operations that take `string` and `character` refuse an index that is out of range. The getters of a character's
/// style (slots 13 to 19) then still fill their output, with the title's matching default, and return
/// kTitleInvalidArgument. Null pointers to records are refused with kTitleInvalidArgument. Operations that have a
/// result of any kind return kTitleOutOfMemory when memory runs out.
class IKVT_CaptionFx {
public:
    // ---- Strings and text (slots 0 to 4) ----

    /// Adds a string with the default string settings. Returns its index.
    virtual int32_t AddString() noexcept = 0;

    /// Removes all text, styles and keyframes of a string; the string, its index and its settings stay. Status.
    virtual int32_t ClearString(int32_t string) noexcept = 0;

    /// Removes all strings. The defaults stay. Returns 0.
    virtual int32_t RemoveAllStrings() noexcept = 0;

    /// Inserts `text` before character `position` (0 to the character count) with the present defaults. Characters that
    /// the face lacks get a font that has them. CR LF begins a paragraph; a CR or LF alone is an ordinary character.
    /// Returns the character count after the call: unchanged for a bad position, for no text, or where the system's
    /// font linking cannot be had; 0 for a bad string.
    virtual int32_t InsertText(int32_t string, int32_t position, const char16_t* text) noexcept = 0;

    /// Deletes `count` characters from `first` on. Deleting either half of a CR LF joins its paragraphs, and the later
    /// one's settings stay. Returns the character count after the call: unchanged for a range that is empty or does not
    /// lie in the text, 0 for a bad string.
    virtual int32_t DeleteText(int32_t string, int32_t first, int32_t count) noexcept = 0;

    // ---- Defaults for new text and strings (slots 5 to 12); text that is there already keeps its look ----

    /// Sets the font for new text. A face that is not installed, or has no outlines, is replaced by the system's
    /// default face at the same size; GetCharFont shows the face that is used. A null pointer is ignored.
    virtual void SetDefaultFont(const FontSpec* font) noexcept = 0;

    /// Sets the face style for new text. Status.
    virtual int32_t SetDefaultFace(const MetaFace* face) noexcept = 0;

    /// Sets the border style for new text. Status.
    virtual int32_t SetDefaultBorder(const MetaBorder* border) noexcept = 0;

    /// Sets the shadow style for new text. Status.
    virtual int32_t SetDefaultShadow(const MetaShadow* shadow) noexcept = 0;

    /// Sets stretch and tracking for new text. Status.
    virtual int32_t SetDefaultCharSpacing(const CharSpacing* spacing) noexcept = 0;

    /// Sets the settings of the first paragraph of strings that have no text yet. Status.
    virtual int32_t SetDefaultParagraph(const ParagraphSpec* paragraph) noexcept = 0;

    /// Sets the settings of new strings. Their Vertical also counts for the title as a whole: with it, wrapping,
    /// loading and drawing lay Latin letters on their side, in all strings. Status.
    virtual int32_t SetDefaultString(const StringSpec* string) noexcept = 0;

    /// Sets the output settings. After a change of scale or AntialiasMode call FlushRenderCaches, or characters at rest
    /// are drawn from bitmaps of the old setting. A change of PostFilter, DestinationAlpha or ClipRect drops the kept
    /// frame (see RenderFrame) and nothing else. Status.
    virtual int32_t SetRenderSettings(const TitleRenderSettings* settings) noexcept = 0;

    // ---- Read-back of styles and settings (slots 13 to 20) ----

    /// Font of a character, as it was realised: Underline and Strikeout are 0, Size is at most 1638. Status.
    virtual int32_t GetCharFont(int32_t string, int32_t character, FontSpec* font) noexcept = 0;

    /// Face style of a character. Status.
    virtual int32_t GetCharFace(int32_t string, int32_t character, MetaFace* face) noexcept = 0;

    /// Border style of a character. Status.
    virtual int32_t GetCharBorder(int32_t string, int32_t character, MetaBorder* border) noexcept = 0;

    /// Shadow style of a character. Status.
    virtual int32_t GetCharShadow(int32_t string, int32_t character, MetaShadow* shadow) noexcept = 0;

    /// Stretch and tracking of a character. Status.
    virtual int32_t GetCharSpacing(int32_t string, int32_t character, CharSpacing* spacing) noexcept = 0;

    /// Settings of the paragraph that a character stands in. Status.
    virtual int32_t GetCharParagraph(int32_t string, int32_t character, ParagraphSpec* paragraph) noexcept = 0;

    /// Settings of a string. While frames are drawn, PathID and PathProgress follow the string's keyframes. Status.
    virtual int32_t GetStringSettings(int32_t string, StringSpec* settings) noexcept = 0;

    /// The output settings. Status.
    virtual int32_t GetRenderSettings(TitleRenderSettings* settings) noexcept = 0;

    // ---- Counts (slots 21 to 24); 0 for a bad index ----

    virtual int32_t GetCharCount(int32_t string) noexcept = 0;
    virtual int32_t GetLineCount(int32_t string) noexcept = 0;
    virtual int32_t GetStringCount() noexcept = 0;
    virtual int32_t GetParagraphCount(int32_t string) noexcept = 0;

    // ---- Rectangles and text (slots 25 to 29), in pixels, before the string's rotation ----
    // A bad index gives four zeros and kTitleInvalidArgument.

    /// Rectangle of a character. With `withBreaks` 0 the CR and the LF of a CR LF count as a bad index. Status.
    virtual int32_t GetCharRect(int32_t string, int32_t character, TitleRectF* rect, int32_t withBreaks) noexcept = 0;

    /// Rectangle of a line. Status.
    virtual int32_t GetLineRect(int32_t string, int32_t line, TitleRectF* rect) noexcept = 0;

    /// Rectangle of a paragraph. Status.
    virtual int32_t GetParagraphRect(int32_t string, int32_t paragraph, TitleRectF* rect) noexcept = 0;

    /// Rectangle of a string; without text it has the size of one blank of the default font. Vertical text has the
    /// extent given here, but lies to the left of the rectangle's left edge for all columns but the first. Status.
    virtual int32_t GetStringRect(int32_t string, TitleRectF* rect) noexcept = 0;

    /// Writes the text and a terminating 0 into `buffer`, which holds the character count plus one units; a null buffer
    /// asks for the count alone. Returns the character count, 0 for a bad index.
    virtual int32_t GetStringText(int32_t string, char16_t* buffer) noexcept = 0;

    // ---- Titles as XML (slots 30 to 35) ----

    // Loading fits every character to the fonts of this machine. What is no title (not well-formed, another root, a
    // style index that names nothing, a number that is not finite) is refused with kTitleFailure: the title is empty
    // then, and its defaults stay. docs/title-format.md describes the format.

    /// Replaces the strings by those of an XML document in `xml`, zero-terminated. Status; a null pointer changes
    /// nothing.
    virtual int32_t LoadFromBuffer(const char16_t* xml) noexcept = 0;

    /// Writes the title as XML and a terminating 0 into `buffer`. `sizeInBytes` holds the buffer's size and gets the
    /// size needed; a null or too small buffer gets nothing, which is no failure. Status; kTitleFailure for a title
    /// that holds a number which is not finite, here and in SaveToFile.
    virtual int32_t SaveToBuffer(char16_t* buffer, uint32_t* sizeInBytes) noexcept = 0;

    /// Replaces the strings by those of an XML file. Status; an empty path changes nothing.
    virtual int32_t LoadFromFile(const char16_t* path) noexcept = 0;

    /// Writes the title to an XML file, UTF-16 with a byte-order mark. Status.
    virtual int32_t SaveToFile(const char16_t* path) noexcept = 0;

    /// Replaces the strings by those under an XML element: an xmlNodePtr on Linux, an IXMLDOMNode* on Windows, whose
    /// child is "StringList". The element stays the caller's. Status of the XML service: what is no title leaves an
    /// empty one with kTitleOk.
    virtual int32_t LoadFromNode(void* element) noexcept = 0;

    /// Writes "StringList" as a child of an XML element; the element types are those of LoadFromNode. Status of the XML
    /// service.
    virtual int32_t SaveToNode(void* element) noexcept = 0;

    // ---- Frames and the title itself (slots 36 to 41) ----

    /// Composites the title at `time` (the unit of the keyframes) onto `destination`, Width times Height pixels of
    /// straight alpha without row padding. Pixels outside the clip rectangle are not touched. Returns 0,
    /// kTitleInvalidArgument for a null destination, or kTitleOutOfMemory.
    ///
    /// When every string is at rest the frame is kept, and the next one is composited from it. It keeps the last string
    /// alone: a host with a title of several strings drops it before every frame that must show them all. Setting
    /// PostFilter to another value and back does so at the least cost; FlushRenderCaches does too, but frees all
    /// bitmaps besides. docs/hosts.md has the few lines that this takes.
    virtual int32_t RenderFrame(uint32_t* destination, float time) noexcept = 0;

    /// Writes the structure of a string to the debug output. Status.
    virtual int32_t DumpString(int32_t string) noexcept = 0;

    /// The rectangle that the last RenderFrame touched. Returns 0 or kTitleNullPointer.
    virtual int32_t GetFrameDirtyRect(TitleRect* rect) noexcept = 0;

    /// Frees everything that can be rebuilt: bitmaps, planes, the kept frame, border kernels. Returns 0.
    virtual int32_t FlushRenderCaches() noexcept = 0;

    /// Puts all defaults and the output settings back to the built-in values and removes all strings. Returns 0.
    virtual int32_t ResetDefaults() noexcept = 0;

    /// Ends the title; bit 0 of `flags` also frees its storage. Hosts call ReleaseTitleHost instead. Returns the
    /// object.
    virtual void* Destroy(uint32_t flags) noexcept = 0;

protected:
    // Not virtual: compilers lay virtual destructors out differently, and the table must be the same for all of them.
    ~IKVT_CaptionFx() = default;
};

extern "C" {
/// Creates a title with built-in defaults: a frame of 320 by 240, no strings. Null only when memory runs out.
CAPTIONFX_API IKVT_CaptionFx* GetTitleHost() noexcept;

/// Ends a title and frees all that it holds. A null host is ignored. Returns 0.
CAPTIONFX_API int32_t ReleaseTitleHost(IKVT_CaptionFx* host) noexcept;
}

static_assert(sizeof(TitleRect) == 16 && sizeof(TitleRectF) == 16);
static_assert(sizeof(FontSpec) == 88 && sizeof(CharSpacing) == 8 && sizeof(ParagraphSpec) == 24);
static_assert(sizeof(StringSpec) == 544 && sizeof(TitleRenderSettings) == 60);
static_assert(sizeof(MetaFace) == 24 && sizeof(MetaBorder) == 28 && sizeof(MetaShadow) == 40);

#endif  // CAPTIONFX_CAPTION_FX_H
