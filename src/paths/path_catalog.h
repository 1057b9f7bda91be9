// The catalogue of effects: one row for each name that a host may use in a keyframe.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "host/document.h"
#include "paths/path_base.h"

namespace captionfx {

using PathMaker = std::unique_ptr<CPathBase>();

struct PathCatalogEntry {
    char PathName[kNameLength];
    char
        NameKey[kNameLength];  ///< String-table keys of the host's effect browser; the library holds no texts for them.
    char DescKey[kNameLength];
    char ClassKey[kNameLength];  ///< Group of the host's effect browser.
    int32_t ListGroup;           ///< 1 or 2, for the host.
    int32_t PassCount;           ///< How many times a frame walks the string's characters, 1 or 2.
    int32_t ImageBased;          ///< 1: the effect works on the string's finished image.
    PathMaker* Make;
};

[[nodiscard]] std::span<const PathCatalogEntry> PathCatalog();

/// The row of a name, compared whole and case-sensitively, or null.
[[nodiscard]] const PathCatalogEntry* FindPath(std::string_view name);

/// What makes the effect of a name, or null. There is one effect that has no row, PATH_SCROLLNRESIZE: titles may name
/// it, and then draw nothing, since a name without a row has no passes.
[[nodiscard]] PathMaker* FindPathMaker(std::string_view name);

}  // namespace captionfx
