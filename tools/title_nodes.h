// A title as nodes of libxml2, which is how the library's interface hands out and takes in keyframes.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>
#include <libxml/tree.h>

#include "tools/argument_values.h"

namespace captionfx {

struct DocumentRelease {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};
using TitleDocument = std::unique_ptr<xmlDoc, DocumentRelease>;

[[nodiscard]] inline const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

[[nodiscard]] bool IsElement(const xmlNode& node, std::string_view name);

/// The first child of that name; null where there is none or no parent.
[[nodiscard]] xmlNode* ChildOf(const xmlNode* parent, std::string_view name);

/// All children of that name.
[[nodiscard]] std::vector<xmlNode*> ItemsOf(const xmlNode* list, std::string_view name);

/// The value of an attribute, empty where there is none.
[[nodiscard]] std::string AttributeOf(const xmlNode* node, const char* name);

/// The strings of a title's document.
[[nodiscard]] std::vector<xmlNode*> StringNodes(const xmlDoc* document);

/// The number that a text begins with, 0 without one; nothing for one that is not finite.
[[nodiscard]] std::optional<float> FiniteNumber(std::string_view text);

/// The keyframes of a string, by rising time.
[[nodiscard]] std::vector<Keyframe> KeyframesOf(const xmlNode& string);

/// A document with a root alone, the element of a title.
[[nodiscard]] TitleDocument EmptyTitleDocument();

/// A title as the library writes it. Throws std::bad_alloc.
[[nodiscard]] TitleDocument SavedNodes(IKVT_CaptionFx& title);

/// Replaces the strings of a title by those of a document that came from a title. Throws std::bad_alloc.
void LoadNodes(IKVT_CaptionFx& title, const xmlDoc* document);

}  // namespace captionfx
