// Small image buffers of 32-bit pixels, as the effects hold them for their work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace KVTImageUtility {

/// An image that owns its pixels or points at a caller's. The fourth byte of a pixel is alpha.
class CImageBase {
public:
    CImageBase() = default;
    CImageBase(const CImageBase&) = delete;
    CImageBase& operator=(const CImageBase&) = delete;
    virtual ~CImageBase() = default;

    /// Points at `pixels`, which stay the caller's; rows are `pitch` bytes apart.
    void Attach(uint8_t* pixels, int32_t width, int32_t height, int32_t pitch);

    /// Copies row by row; nothing happens when either image has no pixels or the sizes differ.
    void CopyFrom(const CImageBase& source);

    /// Sets every pixel to `value`.
    void Fill(uint32_t value) const;

    [[nodiscard]] uint8_t* Pixels() const { return pixels_; }
    [[nodiscard]] uint8_t* Row(int32_t y) const { return pixels_ + static_cast<std::ptrdiff_t>(y) * pitch_; }
    [[nodiscard]] int32_t Width() const { return width_; }
    [[nodiscard]] int32_t Height() const { return height_; }
    [[nodiscard]] int32_t Pitch() const { return pitch_; }
    [[nodiscard]] bool OwnsPixels() const { return owned_ != nullptr; }

    static constexpr int32_t kBytesPerPixel = 4;

    /// 3 and above lets operations take their vector form; the results are the same.
    uint32_t CpuLevel = 1;

protected:
    /// Owns zeroed pixels; an image with a side of 0 or less has none.
    CImageBase(int32_t width, int32_t height);

private:
    std::unique_ptr<uint8_t[]> owned_;
    uint8_t* pixels_ = nullptr;
    int32_t width_ = 0, height_ = 0;
    int32_t pitch_ = 0;  // bytes
};

/// Blue, green, red, alpha.
class CImageARGB : public CImageBase {
public:
    CImageARGB() = default;
    CImageARGB(int32_t width, int32_t height) : CImageBase(width, height) {}

    /// Blurs by the mean over a square window of 2 `radius` + 1 pixels a side. A radius of 0 changes nothing.
    void BoxBlur(int32_t radius);
};

/// V, U, Y, alpha.
class CImageAYUV : public CImageBase {
public:
    CImageAYUV() = default;
    CImageAYUV(int32_t width, int32_t height) : CImageBase(width, height) {}
};

}  // namespace KVTImageUtility
