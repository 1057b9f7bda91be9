#include "platform/linux/freetype_library.h"

#include FT_MODULE_H
#include FT_SYSTEM_H

#include <cstdlib>

namespace captionfx {
namespace {

// FreeType's memory record takes functions like those of C.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)
void* Allocate(FT_Memory /*memory*/, long size) {
    return std::malloc(static_cast<size_t>(size));
}
void Free(FT_Memory /*memory*/, void* block) {
    std::free(block);
}
void* Reallocate(FT_Memory /*memory*/, long /*oldSize*/, long newSize, void* block) {
    return std::realloc(block, static_cast<size_t>(newSize));
}
// NOLINTEND(cppcoreguidelines-no-malloc)

}  // namespace

void LibraryCloser::operator()(FT_Library library) const {
    FT_Done_Library(library);
}

void FaceCloser::operator()(FT_Face face) const {
    FT_Done_Face(face);
}

LibraryHandle NewFreeTypeLibrary() {
    // FT_Init_FreeType would do the same and then read the environment. FreeType never writes to the memory record.
    static FT_MemoryRec_ memory{nullptr, Allocate, Free, Reallocate};
    FT_Library library = nullptr;
    if (FT_New_Library(&memory, &library) != 0) return nullptr;
    FT_Add_Default_Modules(library);
    return LibraryHandle(library);
}

FaceHandle OpenFace(FT_Library library, const std::string& path, int index) {
    FT_Face opened = nullptr;
    if (library == nullptr || FT_New_Face(library, path.c_str(), index, &opened) != 0) return nullptr;
    FaceHandle face(opened);
    if (face->charmap == nullptr) FT_Select_Charmap(face.get(), FT_ENCODING_MS_SYMBOL);
    return face;
}

}  // namespace captionfx
