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

    /// Notes what each row holds; to be called once the bytes are done.
    void FindSpans();

    /// Of row -1 to Height().
    [[nodiscard]] const ColumnSpan* Spans(int32_t y) const { return spans_.data() + y + 1; }

    /// Bytes of memory that it takes.
    [[nodiscard]] size_t Size() const {
        return sizeof *this + bytes_.capacity() + spans_.capacity() * sizeof(ColumnSpan);
    }

private:
    [[nodiscard]] size_t OffsetOf(int32_t y) const { return kPadding + static_cast<size_t>(y + 1) * Pitch(); }

    int32_t width_, height_;
    std::vector<uint8_t> bytes_;
    std::vector<ColumnSpan> spans_;
};

}  // namespace captionfx
