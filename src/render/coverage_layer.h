// A layer of one colour as 8-bit coverage: a quarter of the memory of pixels, and the colour is applied when it is
// placed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace captionfx {

/// Columns of a row that are not 0: from First up to, not including, End. Equal for an empty row.
struct ColumnSpan {
    int32_t First = 0, End = 0;
};

/// Rows are surrounded by zeros, so that the neighbours of a sample can be read without a look at where it lies: one
/// row above and below, kPadding bytes on both sides.
class CoverageLayer {
public:
    static constexpr size_t kPadding = 32;  // what the widest vectors read at once, in samples

    /// All 0. `width` and `height` above 0.
    CoverageLayer(int32_t width, int32_t height)
        : width_(width), height_(height), bytes_(kPadding + Pitch() * (static_cast<size_t>(height) + 2) + kPadding) {}

    [[nodiscard]] int32_t Width() const { return width_; }
    [[nodiscard]] int32_t Height() const { return height_; }
    [[nodiscard]] size_t Pitch() const { return static_cast<size_t>(width_) + kPadding; }

    /// Row -1 to Height().
    [[nodiscard]] const uint8_t* Row(int32_t y) const { return bytes_.data() + OffsetOf(y); }
    [[nodiscard]] uint8_t* Row(int32_t y) { return bytes_.data() + OffsetOf(y); }

    /// Notes where there is something; to be called once the bytes are done.
    void FindSpans();

    /// What of row y is not 0, looked for now.
    [[nodiscard]] ColumnSpan Filled(int32_t y) const;

    /// Where a layer that lies between pixels has something: of pixel row y, which is made of the rows y - 1 and y, the
    /// columns that a sample of them, or one on their left, makes more than 0. y is 0 to Height().
    [[nodiscard]] const ColumnSpan* PlacedSpans(int32_t y) const { return placedSpans_.data() + y; }

    /// Bytes of memory that it takes.
    [[nodiscard]] size_t Size() const {
        return sizeof *this + bytes_.capacity() + placedSpans_.capacity() * sizeof(ColumnSpan);
    }

private:
    [[nodiscard]] size_t OffsetOf(int32_t y) const { return kPadding + static_cast<size_t>(y + 1) * Pitch(); }

    int32_t width_, height_;
    std::vector<uint8_t> bytes_;
    std::vector<ColumnSpan> placedSpans_;
};

}  // namespace captionfx
