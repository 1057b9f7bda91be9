// A pipeline whose eye space is its frame: x and y are pixels, z is the distance, and triangles are drawn as they come.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "sgl/sgl_gen.h"

namespace sgl::test {

struct Corner {
    float x, y, z;
    double s = 0, t = 0;  ///< As a rule in whole textures.
};

class PixelCanvas {
public:
    PixelCanvas(int32_t width, int32_t height, int32_t rasterMode = 0)
        : gl(std::make_unique<SGLGen>(rasterMode)), width_(width), height_(height) {
        gl->Viewport(0, 0, width, height);
        gl->MatrixMode(SGL_PROJECTION);
        gl->Ortho(0, width, -1, 0, 0.001, 10);  // scale 1, centre at (0, 0)
        gl->MatrixMode(SGL_MODELVIEW);
    }

    void Triangle(const std::array<Corner, 3>& corners) const {
        gl->Begin(SGL_TRIANGLES);
        for (const Corner& c : corners) {
            const float position[] = {c.x, c.y, -c.z};
            gl->TexCoord2d(c.s, c.t);
            gl->Vertex3fv(position);
        }
        gl->End();
    }

    /// The rectangle as two triangles, with all of the texture; `z` is the distance.
    void Rectangle(float left, float top, float right, float bottom, float z = 1) const {
        const Corner a{left, top, z}, b{right, top, z, 1, 0}, c{right, bottom, z, 1, 1}, d{left, bottom, z, 0, 1};
        Triangle({b, a, d});
        Triangle({b, d, c});
    }

    void BindPicture(uint32_t name, const std::vector<uint32_t>& pixels, int32_t width) const {
        gl->BindTexture(SGL_TEXTURE_2D, name);
        const auto height = static_cast<int32_t>(pixels.size()) / width;
        gl->TexImage2D(SGL_TEXTURE_2D, 0, SGL_RGBA, width, height, 0, SGL_BGRA, SGL_UNSIGNED_BYTE, pixels.data());
        gl->Enable(SGL_TEXTURE_2D);
    }

    [[nodiscard]] std::vector<uint32_t> Pixels() const {
        std::vector<uint32_t> pixels(static_cast<size_t>(width_) * static_cast<size_t>(height_));
        gl->ReadPixels(0, 0, width_, height_, SGL_BGRA, SGL_UNSIGNED_BYTE, pixels.data());
        return pixels;
    }

    std::unique_ptr<SGLGen> gl;

private:
    int32_t width_, height_;
};

}  // namespace sgl::test
