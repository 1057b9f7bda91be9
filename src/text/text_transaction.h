// Edits of text are done whole or not at all: memory that runs out in the middle leaves a string as it was.
#pragma once

#include "host/document.h"

namespace captionfx {

/// Keeps what an edit of text changes, and puts it back unless the edit was committed. Layers are not part of it: they
/// follow when the edit is done.
class TextTransaction {
public:
    explicit TextTransaction(MetaString& string)
        : string_(string),
          characters_(string.Characters),
          lines_(string.Lines),
          paragraphs_(string.Paragraphs),
          fonts_(string.Fonts),
          faces_(string.Faces),
          borders_(string.Borders),
          shadows_(string.Shadows) {}
    TextTransaction(const TextTransaction&) = delete;
    TextTransaction& operator=(const TextTransaction&) = delete;
    ~TextTransaction() {
        if (isCommitted_) return;
        string_.Characters.swap(characters_);
        string_.Lines.swap(lines_);
        string_.Paragraphs.swap(paragraphs_);
        string_.Fonts.swap(fonts_);
        string_.Faces.swap(faces_);
        string_.Borders.swap(borders_);
        string_.Shadows.swap(shadows_);
    }

    void Commit() { isCommitted_ = true; }

private:
    MetaString& string_;
    std::vector<MetaCharacter> characters_;
    std::vector<MetaLine> lines_;
    std::vector<MetaParagraph> paragraphs_;
    std::vector<MetaFont> fonts_;
    std::vector<MetaFace> faces_;
    std::vector<MetaBorder> borders_;
    std::vector<MetaShadow> shadows_;
    bool isCommitted_ = false;
};

}  // namespace captionfx
