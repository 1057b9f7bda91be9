// Ownership of a live effect object by the string that it is bound to.
#pragma once

#include <memory>

namespace captionfx {

class CPathBase;
class CPathManager;

/// Hands an effect object back to the manager that made it, which must still be alive.
struct PathReturner {
    CPathManager* Manager = nullptr;
    void operator()(CPathBase* path) const;
};

using PathHandle = std::unique_ptr<CPathBase, PathReturner>;

}  // namespace captionfx
