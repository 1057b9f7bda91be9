#include "paths/path_manager.h"

#include <algorithm>

#include "paths/path_catalog.h"

namespace captionfx {

CPathBase* CPathManager::CreatePath(std::string_view name) {
    PathMaker* const make = FindPathMaker(name);
    return make == nullptr ? nullptr : paths_.emplace_back(make()).get();
}

int32_t CPathManager::DeletePath(CPathBase* path) {
    const auto own = std::ranges::find(paths_, path, &std::unique_ptr<CPathBase>::get);
    if (own != paths_.end()) {
        paths_.erase(own);
    } else {
        const std::unique_ptr<CPathBase> stranger(path);
    }
    return 1;
}

int32_t CPathManager::GetPassCount(std::string_view name) const {
    const PathCatalogEntry* const row = FindPath(name);
    return row == nullptr ? 0 : row->PassCount;
}

int32_t CPathManager::IsImageBased(std::string_view name) const {
    const PathCatalogEntry* const row = FindPath(name);
    return row == nullptr ? 0 : row->ImageBased;
}

PathHandle MakePath(CPathManager& manager, std::string_view name) {
    return PathHandle(manager.CreatePath(name), PathReturner{&manager});
}

void PathReturner::operator()(CPathBase* path) const {
    path->ReleaseResources();
    Manager->DeletePath(path);
}

}  // namespace captionfx
