// SGLGen: SGL in software, on the calling thread. One caller at a time; different objects share nothing.
//
// An object holds tables and a batch of triangles, some 300 KB: make it on the heap.
#pragma once

#include <memory>

#include "sgl/rasterizer.h"
#include "sgl/sgl.h"
#include "sgl/state.h"
#include "sgl/textures.h"

namespace sgl {

class SGLGen final : public SGL {
public:
    /// With a frame of 256 x 256. `rasterMode` as for RasterizerGen. When there is no memory for the frame GetError
    /// gives SGL_INVALID_OPERATION.
    explicit SGLGen(int32_t rasterMode);
    SGLGen(const SGLGen&) = delete;  // triangles point at vertices of their own batch
    SGLGen& operator=(const SGLGen&) = delete;

    [[nodiscard]] const SGLState& State() const { return state_; }

    void ClearColor(double r, double g, double b, double a) override;
    void ShadeModel(int32_t mode) override;
    void Enable(int32_t capability) override { SetCapability(capability, true); }
    void Disable(int32_t capability) override { SetCapability(capability, false); }
    void Viewport(int32_t x, int32_t y, int32_t width, int32_t height) override;
    void GetIntegerv(uint32_t name, uint32_t* out) override;
    void Lightfv(int32_t light, int32_t property, const float* params) override;
    void GenTextures(int32_t count, uint32_t* names) override;
    void DeleteTextures(int32_t count, const uint32_t* names) override;
    void BindTexture(int32_t target, uint32_t name) override;
    void TexImage2D(int32_t target, int32_t level, int32_t internalFormat, int32_t width, int32_t height,
                    int32_t border, int32_t format, int32_t type, const uint32_t* pixels) override;
    void Clear(uint32_t mask) override;
    void FrontFace(int32_t mode) override;
    void MatrixMode(int32_t mode) override;
    void LoadIdentity() override;
    void Translated(double x, double y, double z) override;
    void Rotated(double angle, double x, double y, double z) override;
    void MultMatrixf(const float* columns) override;
    void MultMatrixd(const double* columns) override;
    void LookAt(double eyeX, double eyeY, double eyeZ, double centerX, double centerY, double centerZ, double upX,
                double upY, double upZ) override;
    void Color3ub(uint8_t r, uint8_t g, uint8_t b) override { Color4ub(r, g, b, 255); }
    void Color3d(double r, double g, double b) override;
    void Color3f(float r, float g, float b) override;
    void Color4ub(uint8_t r, uint8_t g, uint8_t b, uint8_t a) override;
    void Color4d(double r, double g, double b, double a) override;
    void Color4f(float r, float g, float b, float a) override;
    void Color3fv(const float* rgb) override { Color3f(rgb[0], rgb[1], rgb[2]); }
    void Color3dv(const double* rgb) override { Color3d(rgb[0], rgb[1], rgb[2]); }
    void Color3ubv(const uint8_t* rgb) override { Color3ub(rgb[0], rgb[1], rgb[2]); }
    void Color4fv(const float* rgba) override { Color4f(rgba[0], rgba[1], rgba[2], rgba[3]); }
    void Color4dv(const double* rgba) override { Color4d(rgba[0], rgba[1], rgba[2], rgba[3]); }
    void Color4ubv(const uint8_t* rgba) override { Color4ub(rgba[0], rgba[1], rgba[2], rgba[3]); }
    void TexCoord2d(double s, double t) override { state_.currentTexCoord = {s, t, 0, 1}; }
    void Begin(int32_t mode) override;
    void Normal3fv(const float* xyz) override;
    void Normal3dv(const double* xyz) override { state_.currentNormal = {xyz[0], xyz[1], xyz[2]}; }
    void Vertex3fv(const float* xyz) override;
    void Vertex3dv(const double* xyz) override;
    void End() override;
    int32_t GetBeginState() override;
    void ReadPixels(int32_t x, int32_t y, int32_t width, int32_t height, int32_t format, int32_t type,
                    uint32_t* destination) override;
    void Frustum(double left, double right, double bottom, double top, double nearZ, double farZ) override;
    void Ortho(double left, double right, double bottom, double top, double nearZ, double farZ) override;
    int32_t GetError() override;
    void SetFrameBuffer(uint32_t* pixels) override;
    void SetColorSpace(uint32_t yuv) override { rasterizer_.SetColorSpace(yuv); }
    void Flush() override;

private:
    // state.cpp
    [[nodiscard]] bool StartOutsideBegin();
    void Refuse(SGLValue status) { state_.status = status; }
    void SetCapability(int32_t capability, bool enabled);
    void MultiplyModelView(const SGLMatrix& matrix);
    void StoreVolume(double left, double right, double bottom, double top, double nearZ, double farZ);
    void ConfigureProjection(bool perspective);
    void ConfigureRasterizer();
    [[nodiscard]] size_t PixelCount() const;

    // submission.cpp
    [[nodiscard]] bool StartInsideBegin();
    void DrawTriangle(SGLTriangle& triangle);

    RasterizerGen rasterizer_;
    TextureManager textureManager_;
    SGLState state_;
    std::unique_ptr<uint32_t[]> ownedFrame_;  ///< state_.frame, unless that is the caller's.
};

}  // namespace sgl
