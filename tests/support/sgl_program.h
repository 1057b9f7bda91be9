// A byte string as a program of calls to the software pipeline: every slot, numbers of every kind. Memory that is read
// or written astray the sanitizers find; all that is drawn goes into a hash.
#pragma once

#include <array>
#include <limits>
#include <memory>
#include <tuple>
#include <vector>

#include "fuzz/input_reader.h"
#include "sgl/sgl_gen.h"

namespace sgl::test {

/// The operations in the order of their slots, of which the first has the number 1.
inline constexpr std::tuple kOperations(&SGL::ClearColor, &SGL::ShadeModel, &SGL::Enable, &SGL::Disable, &SGL::Viewport,
                                        &SGL::GetIntegerv, &SGL::Lightfv, &SGL::GenTextures, &SGL::DeleteTextures,
                                        &SGL::BindTexture, &SGL::TexImage2D, &SGL::Clear, &SGL::FrontFace,
                                        &SGL::MatrixMode, &SGL::LoadIdentity, &SGL::Translated, &SGL::Rotated,
                                        &SGL::MultMatrixf, &SGL::MultMatrixd, &SGL::LookAt, &SGL::Color3ub,
                                        &SGL::Color3d, &SGL::Color3f, &SGL::Color4ub, &SGL::Color4d, &SGL::Color4f,
                                        &SGL::Color3fv, &SGL::Color3dv, &SGL::Color3ubv, &SGL::Color4fv, &SGL::Color4dv,
                                        &SGL::Color4ubv, &SGL::TexCoord2d, &SGL::Begin, &SGL::Normal3fv,
                                        &SGL::Normal3dv, &SGL::Vertex3fv, &SGL::Vertex3dv, &SGL::End,
                                        &SGL::GetBeginState, &SGL::ReadPixels, &SGL::Frustum, &SGL::Ortho,
                                        &SGL::GetError, &SGL::SetFrameBuffer, &SGL::SetColorSpace, &SGL::Flush);

class SglProgram {
public:
    explicit SglProgram(captionfx::fuzz::InputReader& in) : in_(in), gl_(std::make_unique<SGLGen>(in.UpTo(4))) {
        for (uint32_t i = 0; i < picture_.size(); ++i) picture_[i] = i * 0x9E3779B9;
        gl_->Viewport(0, 0, 33, 24);
        gl_->MatrixMode(SGL_PROJECTION);
        gl_->Frustum(-1, 1, -1, 1, 0.5, 9);
        gl_->MatrixMode(SGL_MODELVIEW);
        gl_->Enable(SGL_TEXTURE_2D);
    }

    void Run() {
        for (int calls = 0; calls < 400 && !in_.AtEnd(); ++calls) {
            CallSlot(in_.UpTo(90));
            Mix(static_cast<uint32_t>(gl_->State().status));
        }
        gl_->End();
        ReadPixels();
    }

    [[nodiscard]] uint64_t Hash() const { return hash_; }
    [[nodiscard]] bool DrewSomething() const { return drewSomething_; }

private:
    void CallSlot(int32_t slot) {
        switch (slot) {
            case 5:
                return Viewport();
            case 10:
                return gl_->BindTexture(SGL_TEXTURE_2D, Take<uint32_t>());
            case 11:
                return TexImage();
            case 12:
                return gl_->Clear(uint32_t{in_.Byte()} << 8);
            case 41:
                return ReadPixels();
            case 45:
                return SetFrameBuffer();
            case 48:
                return Triangles(300);  // more than a batch
            default:
                if (slot == 0 || slot > 47) return Triangles(slot < 56 ? 8 : 1);
                int32_t number = 0;
                std::apply([&](auto... operations) { ((++number == slot ? Call(operations) : void()), ...); },
                           kOperations);
        }
    }

    /// Calls with arguments from the bytes, read from left to right.
    template <class... Arguments>
    void Call(void (SGL::*operation)(Arguments...)) {
        const std::tuple<Arguments...> arguments{Take<Arguments>()...};
        std::apply([&](auto... a) { (*gl_.*operation)(a...); }, arguments);
    }

    void Call(int32_t (SGL::*question)()) { Mix(static_cast<uint32_t>((*gl_.*question)())); }

    template <class Argument>
    Argument Take() {
        if constexpr (std::is_same_v<Argument, double>) {
            return static_cast<double>(in_.Length() / 16) * (in_.UpTo(64) == 0 ? 1e300 : 1);
        } else if constexpr (std::is_same_v<Argument, float>) {
            return in_.Length() / 16;
        } else if constexpr (std::is_same_v<Argument, int32_t>) {
            return in_.UpTo(38) - 2;  // all modes
        } else if constexpr (std::is_same_v<Argument, uint32_t>) {
            return in_.Byte() % 66U;  // all names
        } else if constexpr (std::is_same_v<Argument, uint8_t>) {
            return in_.Byte();
        } else if constexpr (std::is_same_v<Argument, uint32_t*> || std::is_same_v<Argument, const uint32_t*>) {
            return names_.data();
        } else {
            using Element = std::remove_const_t<std::remove_pointer_t<Argument>>;
            auto& elements = std::get<std::array<Element, 16>>(elements_);
            for (Element& element : elements) element = Take<Element>();
            return elements.data();
        }
    }

    void Viewport() {
        constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
        constexpr int32_t kFar[][2] = {{kMost, kMost}, {-1, 8}, {0, kMost}, {kMost, 0}};
        const int32_t width = in_.UpTo(40), height = in_.UpTo(40), far = in_.UpTo(40);
        far < 4 ? gl_->Viewport(0, 0, kFar[far][0], kFar[far][1]) : gl_->Viewport(far / 39, 0, width, height);
    }
    void TexImage() {
        constexpr int32_t kSides[] = {64, 32, 16, 1, 2, 33, 7, 0, -5};
        const int32_t width = kSides[in_.UpTo(9)], height = kSides[in_.UpTo(9)];
        const uint32_t* pixels = in_.UpTo(20) == 0 ? nullptr : picture_.data();
        gl_->TexImage2D(SGL_TEXTURE_2D, 0, SGL_RGBA, width, height, 0, SGL_BGRA, SGL_UNSIGNED_BYTE, pixels);
    }
    /// The caller's frames are exactly as large as they must be, and stay: the pipeline may still draw into the last
    /// one.
    void SetFrameBuffer() {
        frames_.emplace_back(PixelCount(), 0xFF010203);
        gl_->SetFrameBuffer(in_.UpTo(10) == 0 ? nullptr : frames_.back().data());
        gl_->MatrixMode(SGL_PROJECTION);
        gl_->Frustum(-1, 1, -1, 1, in_.UpTo(4) - 0.5, 9);
        gl_->MatrixMode(SGL_MODELVIEW);
    }
    void Triangles(int32_t count) {
        gl_->Begin(SGL_TRIANGLES);
        for (int32_t i = 0; i < 3 * count; ++i) {
            Call(&SGL::TexCoord2d);
            if (i % 3 == 2) Call(&SGL::Color3ub);
            const float x = Take<float>() - 1, y = Take<float>() - 1, z = -1 - in_.Length() / 64;
            const float position[] = {x, y, in_.AtEnd() ? -1 : z};
            gl_->Vertex3fv(position);
        }
        if (in_.UpTo(4) != 0) gl_->End();
    }
    void ReadPixels() {
        std::vector<uint32_t> pixels(PixelCount());
        const auto& viewport = gl_->State().viewport;
        gl_->ReadPixels(0, 0, viewport[2], viewport[3], SGL_BGRA, SGL_UNSIGNED_BYTE, pixels.data());
        for (const uint32_t pixel : pixels) {
            Mix(pixel);
            drewSomething_ |= pixel != 0 && pixel != 0xFF010203;
        }
    }
    [[nodiscard]] size_t PixelCount() const {
        const auto& viewport = gl_->State().viewport;
        return static_cast<size_t>(viewport[2]) * static_cast<size_t>(viewport[3]);
    }
    void Mix(uint32_t word) { hash_ = (hash_ ^ word) * 0x100000001B3; }

    captionfx::fuzz::InputReader& in_;
    std::unique_ptr<SGLGen> gl_;
    std::tuple<std::array<float, 16>, std::array<double, 16>, std::array<uint8_t, 16>> elements_{};
    std::array<uint32_t, 64> names_{5, 70, 1, 0xFFFFFFFF};
    std::vector<uint32_t> picture_ = std::vector<uint32_t>(size_t{64} * 64);
    std::vector<std::vector<uint32_t>> frames_;
    uint64_t hash_ = 0xCBF29CE484222325;
    bool drewSomething_ = false;
};

}  // namespace sgl::test
