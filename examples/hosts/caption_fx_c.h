// The library's interface in C, for hosts that are not written in C++. A title is an object whose first word points to
// a table of 42 functions, always in this order; each takes the title as its first argument. What the functions,
// records and numbers mean stands in <captionfx/caption_fx.h>.
#ifndef CAPTION_FX_C_H
#define CAPTION_FX_C_H

#include <stdint.h>
#include <uchar.h>

enum { kTitleOk = 0 };  // all failures are negative

typedef struct TitleRect {
    int32_t left, top, right, bottom;
} TitleRect;

typedef struct TitleRectF {
    float x, y, width, height;
} TitleRectF;

typedef struct FontSpec {
    char16_t FaceName[32];
    uint32_t CharSet;
    float Size;
    int32_t Bold, Italic, Underline, Strikeout;
} FontSpec;

typedef struct CharSpacing {
    float WidthScale, Spacing;
} CharSpacing;

typedef struct ParagraphSpec {
    uint32_t Align;
    float LineSpace, BeforeSpace, AfterSpace, LeftIndent, RightIndent;
} ParagraphSpec;

typedef struct StringSpec {
    float Left, Top, WidthLimit, RotateDegree;
    int32_t Vertical;
    char PathID[260];
    float PathProgress;
    char MaskFile[260];
} StringSpec;

typedef struct MetaFace {
    int32_t Enable;
    uint32_t Color1, Color2;  // 0x00BBGGRR
    int32_t GradType, Alpha, BlurRadius;
} MetaFace;

typedef struct MetaBorder {
    int32_t Enable, Size;
    uint32_t Color1, Color2;
    int32_t GradType, Alpha, BlurRadius;
} MetaBorder;

typedef struct MetaShadow {
    int32_t EnableFace, EnableBorder;
    uint32_t Color1, Color2;
    int32_t GradType, Alpha, BlurRadius;
    float OffsetX, OffsetY;
    int32_t Height;
} MetaShadow;

typedef struct TitleRenderSettings {
    uint32_t Reserved;
    int32_t AntialiasMode, PixelFormat, PostFilter, DestinationAlpha, Width, Height;
    float ScaleX, ScaleY;
    TitleRect ClipRect;
    int32_t GlyphCacheEnabled, MaxThreads;
} TitleRenderSettings;

typedef struct Title {
    const struct TitleTable* table;
} Title;

struct TitleTable {
    int32_t (*AddString)(Title*);
    int32_t (*ClearString)(Title*, int32_t string);
    int32_t (*RemoveAllStrings)(Title*);
    int32_t (*InsertText)(Title*, int32_t string, int32_t position, const char16_t* text);
    int32_t (*DeleteText)(Title*, int32_t string, int32_t first, int32_t count);

    void (*SetDefaultFont)(Title*, const FontSpec*);
    int32_t (*SetDefaultFace)(Title*, const MetaFace*);
    int32_t (*SetDefaultBorder)(Title*, const MetaBorder*);
    int32_t (*SetDefaultShadow)(Title*, const MetaShadow*);
    int32_t (*SetDefaultCharSpacing)(Title*, const CharSpacing*);
    int32_t (*SetDefaultParagraph)(Title*, const ParagraphSpec*);
    int32_t (*SetDefaultString)(Title*, const StringSpec*);
    int32_t (*SetRenderSettings)(Title*, const TitleRenderSettings*);

    int32_t (*GetCharFont)(Title*, int32_t string, int32_t character, FontSpec*);
    int32_t (*GetCharFace)(Title*, int32_t string, int32_t character, MetaFace*);
    int32_t (*GetCharBorder)(Title*, int32_t string, int32_t character, MetaBorder*);
    int32_t (*GetCharShadow)(Title*, int32_t string, int32_t character, MetaShadow*);
    int32_t (*GetCharSpacing)(Title*, int32_t string, int32_t character, CharSpacing*);
    int32_t (*GetCharParagraph)(Title*, int32_t string, int32_t character, ParagraphSpec*);
    int32_t (*GetStringSettings)(Title*, int32_t string, StringSpec*);
    int32_t (*GetRenderSettings)(Title*, TitleRenderSettings*);

    int32_t (*GetCharCount)(Title*, int32_t string);
    int32_t (*GetLineCount)(Title*, int32_t string);
    int32_t (*GetStringCount)(Title*);
    int32_t (*GetParagraphCount)(Title*, int32_t string);

    int32_t (*GetCharRect)(Title*, int32_t string, int32_t character, TitleRectF*, int32_t withBreaks);
    int32_t (*GetLineRect)(Title*, int32_t string, int32_t line, TitleRectF*);
    int32_t (*GetParagraphRect)(Title*, int32_t string, int32_t paragraph, TitleRectF*);
    int32_t (*GetStringRect)(Title*, int32_t string, TitleRectF*);
    int32_t (*GetStringText)(Title*, int32_t string, char16_t* buffer);

    int32_t (*LoadFromBuffer)(Title*, const char16_t* xml);
    int32_t (*SaveToBuffer)(Title*, char16_t* buffer, uint32_t* sizeInBytes);
    int32_t (*LoadFromFile)(Title*, const char16_t* path);
    int32_t (*SaveToFile)(Title*, const char16_t* path);
    int32_t (*LoadFromNode)(Title*, void* element);
    int32_t (*SaveToNode)(Title*, void* element);

    int32_t (*RenderFrame)(Title*, uint32_t* destination, float time);
    int32_t (*DumpString)(Title*, int32_t string);
    int32_t (*GetFrameDirtyRect)(Title*, TitleRect*);
    int32_t (*FlushRenderCaches)(Title*);
    int32_t (*ResetDefaults)(Title*);
    void* (*Destroy)(Title*, uint32_t flags);
};

Title* GetTitleHost(void);
int32_t ReleaseTitleHost(Title* title);

#endif
