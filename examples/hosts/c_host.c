// A host in C: it makes a title of two strings, saves it as XML, and draws one frame of it as a picture with alpha.
//
//     c_host title.xml picture.pam
#include <assert.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "caption_fx_c.h"

enum { kWidth = 640, kHeight = 360 };

static_assert(sizeof(FontSpec) == 88 && sizeof(StringSpec) == 544 && sizeof(TitleRenderSettings) == 60, "records");
static_assert(sizeof(MetaFace) == 24 && sizeof(MetaBorder) == 28 && sizeof(MetaShadow) == 40, "records");
static_assert(sizeof(struct TitleTable) == 42 * sizeof(void (*)(void)), "42 functions");

/// ASCII as UTF-16, cut where the field ends. Another host takes its system's conversion.
static void Widen(char16_t* field, size_t units, const char* text) {
    size_t i = 0;
    for (; i + 1 < units && text[i] != '\0'; ++i) field[i] = (unsigned char)text[i];
    field[i] = 0;
}

static void SetFrame(Title* title) {
    TitleRenderSettings settings;
    title->table->GetRenderSettings(title, &settings);
    settings.Width = settings.ClipRect.right = kWidth;
    settings.Height = settings.ClipRect.bottom = kHeight;
    settings.AntialiasMode = 0;     // the finest
    settings.DestinationAlpha = 1;  // the ground is transparent
    title->table->SetRenderSettings(title, &settings);
}

/// Text gets the defaults of the moment at which it is inserted. Lengths are document units: pixels at a scale of 1.
static int AddLine(Title* title, const char16_t* text, float size, float left, float top, uint32_t color) {
    FontSpec font = {.CharSet = 1, .Size = size, .Bold = 1};
    Widen(font.FaceName, sizeof font.FaceName / sizeof *font.FaceName, "DejaVu Sans");
    title->table->SetDefaultFont(title, &font);
    const MetaFace face = {.Enable = 1, .Color1 = 0x00FFFFFF, .Color2 = color, .GradType = 1, .Alpha = 255};
    title->table->SetDefaultFace(title, &face);
    const MetaBorder none = {.Enable = 0};
    title->table->SetDefaultBorder(title, &none);
    const MetaShadow shadow = {.EnableFace = 1, .Alpha = 160, .BlurRadius = 3, .OffsetX = 3, .OffsetY = 3};
    title->table->SetDefaultShadow(title, &shadow);

    StringSpec settings = {.Left = left, .Top = top, .WidthLimit = 1e9F, .PathProgress = 1.0F};
    strcpy(settings.PathID, "PATH_NOEFFECT");
    title->table->SetDefaultString(title, &settings);
    const int32_t string = title->table->AddString(title);
    return string >= 0 && title->table->InsertText(title, string, 0, text) > 0;
}

/// PAM wants red, green, blue, alpha; frames are blue, green, red, alpha.
static int WritePicture(const char* path, const uint32_t* pixels) {
    FILE* const file = fopen(path, "wb");
    if (file == NULL) return 0;
    fprintf(file, "P7\nWIDTH %d\nHEIGHT %d\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n", kWidth, kHeight);
    for (size_t i = 0; i < (size_t)kWidth * kHeight; ++i) {
        const uint32_t pixel = pixels[i];
        const unsigned char bytes[] = {(unsigned char)(pixel >> 16), (unsigned char)(pixel >> 8), (unsigned char)pixel,
                                       (unsigned char)(pixel >> 24)};
        fwrite(bytes, 1, sizeof bytes, file);
    }
    const int good = !ferror(file);
    return fclose(file) == 0 && good;
}

/// What went wrong, or null.
static const char* MakePicture(Title* title, uint32_t* pixels, const char* xmlPath, const char* picturePath) {
    SetFrame(title);
    if (!AddLine(title, u"Hello from C", 64.0F, 40.0F, 90.0F, 0x0000B4FFU) ||
        !AddLine(title, u"42 functions, one table", 32.0F, 42.0F, 190.0F, 0x00C8FF80U))
        return "memory ran out";
    char16_t path[FILENAME_MAX];
    Widen(path, FILENAME_MAX, xmlPath);
    if (title->table->SaveToFile(title, path) != kTitleOk) return "the title cannot be saved";
    if (title->table->RenderFrame(title, pixels, 0.0F) != kTitleOk) return "memory ran out";
    return WritePicture(picturePath, pixels) ? NULL : "the picture cannot be written";
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fputs("usage: c_host TITLE.xml PICTURE.pam\n", stderr);
        return 2;
    }
    Title* const title = GetTitleHost();
    uint32_t* const pixels = calloc((size_t)kWidth * kHeight, sizeof *pixels);  // all transparent
    const char* const failure =
        title != NULL && pixels != NULL ? MakePicture(title, pixels, argv[1], argv[2]) : "memory ran out";
    free(pixels);
    ReleaseTitleHost(title);
    if (failure == NULL) return EXIT_SUCCESS;
    fprintf(stderr, "c_host: %s\n", failure);
    return EXIT_FAILURE;
}
