// CPathManager: from the name of an effect to a live effect object, and what the catalogue says of a name.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "paths/path_base.h"
#include "paths/path_handle.h"

namespace captionfx {

/// One for a title, used on the thread that edits or renders it. It owns the objects it makes until they are handed
/// back.
class CPathManager {
public:
    CPathManager() = default;
    CPathManager(const CPathManager&) = delete;
    CPathManager& operator=(const CPathManager&) = delete;
    virtual ~CPathManager() = default;

    /// A new effect with the defaults of CPathBase, or null for a name that is empty or unknown.
    /// Memory that runs out is thrown, so that the frame can say so.
    [[nodiscard]] CPathBase* CreatePath(std::string_view name);

    /// Destroys an effect, whether this manager made it or not; it must not be used again. Returns 1, for null too.
    int32_t DeletePath(CPathBase* path);

    /// PassCount of the row named, or 0.
    [[nodiscard]] int32_t GetPassCount(std::string_view name) const;

    /// ImageBased of the row named, or 0.
    [[nodiscard]] int32_t IsImageBased(std::string_view name) const;

    /// How many effects are alive.
    [[nodiscard]] size_t PathCount() const { return paths_.size(); }

private:
    std::vector<std::unique_ptr<CPathBase>> paths_;  // in order of creation
};

/// Makes the effect of `name` and hands its ownership to the caller; empty where CreatePath gives null.
[[nodiscard]] PathHandle MakePath(CPathManager& manager, std::string_view name);

}  // namespace captionfx
