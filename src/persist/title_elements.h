// The elements of the title format: their names, and their attributes in the order of the file. `io` reads the current
// element or writes it: U unsigned, I integer, F float, B boolean, S text, X bytes. Values that are written unsigned
// are read as signed, which cuts what is above 2147483647; "Index" is written and never read, the order decides.
#pragma once

#include "host/document.h"

namespace captionfx {

/// A keyframe as the file has it: an item among others, not yet ordered by its time.
struct TimedPath {
    float KeyFrame;
    MetaPath Path;
};

template <class Record>
struct TitleElement;

template <>
struct TitleElement<MetaString> {
    static constexpr const char *kList = "StringList", *kItem = "MetaString";
    static void Fields(auto& io, auto& string) {
        Rectangle(io, string);
        io.I("ParagraphCount", string.ParagraphCount);
        io.F("WidthLimit", string.WidthLimit);
        io.F("RotateDegree", string.RotateDegree);
        io.B("Vertical", string.Vertical);
        io.S("PathID", string.PathID);
        io.F("PathProgress", string.PathProgress);
        io.S("MaskFile", string.MaskFile);
    }
    static void Rectangle(auto& io, auto& record) {
        io.F("Left", record.Left);
        io.F("Top", record.Top);
        io.F("Width", record.Width);
        io.F("Height", record.Height);
    }
};

template <>
struct TitleElement<MetaCharacter> {
    static constexpr const char *kList = "CharList", *kItem = "MetaCharacter";
    static void Fields(auto& io, auto& character) {
        io.U("Value", character.Value);
        TitleElement<MetaString>::Rectangle(io, character);
        io.F("WidthScale", character.WidthScale);
        io.F("Spacing", character.Spacing);
        io.I("LineIndex", character.LineIndex);
        io.I("FontIndex", character.FontIndex);
        io.I("FaceIndex", character.FaceIndex);
        io.I("BorderIndex", character.BorderIndex);
        io.I("ShadowIndex", character.ShadowIndex);
    }
};

template <>
struct TitleElement<MetaLine> {
    static constexpr const char *kList = "LineList", *kItem = "MetaLine";
    static void Fields(auto& io, auto& line) {
        TitleElement<MetaString>::Rectangle(io, line);
        io.I("CharStart", line.CharStart);
        io.I("CharEnd", line.CharEnd);
        io.I("ParagraphIndex", line.ParagraphIndex);
    }
};

template <>
struct TitleElement<MetaParagraph> {
    static constexpr const char *kList = "ParagraphList", *kItem = "MetaParagraph";
    static void Fields(auto& io, auto& paragraph) {
        TitleElement<MetaString>::Rectangle(io, paragraph);
        io.I("LineStart", paragraph.LineStart);
        io.I("LineEnd", paragraph.LineEnd);
        io.U("Align", paragraph.Align);
        io.F("LineSpace", paragraph.LineSpace);
        io.F("BeforeSpace", paragraph.BeforeSpace);
        io.F("AfterSpace", paragraph.AfterSpace);
        io.F("LeftIndent", paragraph.LeftIndent);
        io.F("RightIndent", paragraph.RightIndent);
    }
};

template <>
struct TitleElement<MetaFont> {
    static constexpr const char *kList = "FontList", *kItem = "MetaFont";
    static void Fields(auto& io, auto& font) {
        io.X("LogFont", font.LogFont);
        io.F("SizeRatio", font.SizeRatio);
        io.F("Ascent", font.Ascent);
        io.F("Descent", font.Descent);
        io.F("IntLead", font.IntLead);
        io.F("ExtLead", font.ExtLead);
        io.F("StrikeoutPos", font.StrikeoutPos);
        io.F("StrikeoutSize", font.StrikeoutSize);
        io.F("UnderlinePos", font.UnderlinePos);
        io.F("UnderlineSize", font.UnderlineSize);
    }
};

template <>
struct TitleElement<MetaFace> {
    static constexpr const char *kList = "FaceList", *kItem = "MetaFace";
    static void Fields(auto& io, auto& face) {
        io.B("Enable", face.Enable);
        Fill(io, face);
    }
    static void Fill(auto& io, auto& style) {
        io.U("Color1", style.Color1);
        io.U("Color2", style.Color2);
        io.I("GradType", style.GradType);
        io.U("Alpha", style.Alpha);
        io.I("BlurRadius", style.BlurRadius);
    }
};

template <>
struct TitleElement<MetaBorder> {
    static constexpr const char *kList = "BorderList", *kItem = "MetaBorder";
    static void Fields(auto& io, auto& border) {
        io.B("Enable", border.Enable);
        io.I("Size", border.Size);
        TitleElement<MetaFace>::Fill(io, border);
    }
};

template <>
struct TitleElement<MetaShadow> {
    static constexpr const char *kList = "ShadowList", *kItem = "MetaShadow";
    static void Fields(auto& io, auto& shadow) {
        io.B("EnableFace", shadow.EnableFace);
        io.B("EnableBorder", shadow.EnableBorder);
        TitleElement<MetaFace>::Fill(io, shadow);
        io.F("OffsetX", shadow.OffsetX);
        io.F("OffsetY", shadow.OffsetY);
        io.B("Height", shadow.Height);  // a boolean, whatever its name says
    }
};

template <>
struct TitleElement<TimedPath> {
    static constexpr const char *kList = "PathList", *kItem = "MetaPath";
    static void Fields(auto& io, auto& timed) {
        io.F("KeyFrame", timed.KeyFrame);
        io.S("PathID", timed.Path.PathID);
        io.F("PathProgress", timed.Path.PathProgress);
    }
};

}  // namespace captionfx
