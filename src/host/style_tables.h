// The style tables of a string: equal styles are stored once, and characters hold indices into the tables.
#pragma once

#include "host/document.h"

namespace captionfx {

// Find or add: each returns the index of the first entry equal to the record, byte for byte, or of a copy added at the
// end.
int32_t InternFont(MetaString& string, const MetaFont& font);
int32_t InternFace(MetaString& string, const MetaFace& face);
int32_t InternBorder(MetaString& string, const MetaBorder& border);
int32_t InternShadow(MetaString& string, const MetaShadow& shadow);

// Drop: each removes the entries that only the characters [first, first + count) use, sets the index of those
// characters to -1 and moves the indices above an entry that went down by one. It must run before the characters
// change, since it looks for users outside the range. The caller then deletes the characters or gives them a new index.
// Each returns 1, or 0 for a range that does not lie within the text or begins at its end.
int32_t ReleaseFontRange(MetaString& string, int32_t first, int32_t count);
int32_t ReleaseFaceRange(MetaString& string, int32_t first, int32_t count);
int32_t ReleaseBorderRange(MetaString& string, int32_t first, int32_t count);
int32_t ReleaseShadowRange(MetaString& string, int32_t first, int32_t count);

}  // namespace captionfx
