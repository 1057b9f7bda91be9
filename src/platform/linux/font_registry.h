// The fonts of the process: the installed faces and every font that was realised from them.
#pragma once

#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <unordered_map>

#include "platform/font_system.h"
#include "platform/linux/font_catalog.h"
#include "platform/linux/outline_font.h"

namespace captionfx {

/// Safe on any number of threads. Fonts are kept for good: titles come back to the same few.
class FontRegistry final : public FontSystem {
public:
    /// The one over the system's fonts, read at the first call. Never destroyed: titles may outlive static objects.
    [[nodiscard]] static FontRegistry& Instance();

    explicit FontRegistry(FontCatalog catalog);

    void EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) override;
    [[nodiscard]] LogFont DefaultGuiFont() override;

    /// The face name decides, and of lfCharSet only this: a request for symbols that names another font gets a symbol
    /// font if there is any.
    [[nodiscard]] std::shared_ptr<const PlatformFont> Realise(const LogFont& request) override;

    [[nodiscard]] const FontCatalog& Catalog() const { return catalog_; }

    /// The family that answers a request; null without any font.
    [[nodiscard]] const FontFamily* FamilyOf(const LogFont& request) const;

    /// The font of a family of this catalog; never null.
    [[nodiscard]] std::shared_ptr<const OutlineFont> FontOf(const FontFamily& family, FontStyle style);

private:
    struct FontKey {
        const FontFamily* Family;
        FontStyle Style;
        bool operator==(const FontKey&) const = default;
    };
    struct FontKeyHash {
        size_t operator()(const FontKey& key) const;
    };

    const FontCatalog catalog_;
    const FontFamily* const defaultFamily_;  // null only without any font, like the next
    const FontFamily* const symbolFamily_;   // null also when no font is one of symbols
    const std::shared_ptr<const PlatformFont> noFont_;

    std::mutex mutex_;
    std::unordered_map<FontKey, std::shared_ptr<const OutlineFont>, FontKeyHash> fonts_;
};

/// What lfWeight and lfItalic ask for.
[[nodiscard]] FontStyle StyleOf(const LogFont& request);

/// lfFaceName up to its zero.
[[nodiscard]] std::u16string_view FaceNameOf(const LogFont& font);

/// A zeroed record with face name, style and the default character set. A name too long for the record is cut.
[[nodiscard]] LogFont MakeLogFont(std::u16string_view faceName, FontStyle style);

}  // namespace captionfx
