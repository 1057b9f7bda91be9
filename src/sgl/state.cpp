// The operations of SGLGen that set or tell state. Those from Begin to Flush are in submission.cpp.
#include <algorithm>
#include <limits>

#include "sgl/allocation.h"
#include "sgl/fixed_point.h"
#include "sgl/sgl_gen.h"

namespace sgl {
namespace {

/// 0..255 from 0..1; what is beyond keeps its low 8 bits.
template <class Float>
uint8_t Channel(Float value) {
    return static_cast<uint8_t>(ToInt32(value * Float{255}));
}

uint32_t Word(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
    return uint32_t{a} << 24 | uint32_t{r} << 16 | uint32_t{g} << 8 | b;
}

bool FitsAFrame(int32_t width, int32_t height) {
    return width >= 0 && height >= 0 && int64_t{width} * height <= std::numeric_limits<int32_t>::max() / 4;
}

Vec3 Narrow(double x, double y, double z) {
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

}  // namespace

SGLGen::SGLGen(int32_t rasterMode) : rasterizer_(rasterMode), ownedFrame_(TryMakeArray<uint32_t>(PixelCount())) {
    state_.frame = ownedFrame_.get();
    if (state_.frame != nullptr) {
        ConfigureRasterizer();
    } else {
        Refuse(SGL_INVALID_OPERATION);
    }
}

/// Starts an operation that is refused between Begin and End.
bool SGLGen::StartOutsideBegin() {
    state_.status = state_.insideBegin ? SGL_INVALID_OPERATION : SGL_NO_ERROR;
    return !state_.insideBegin;
}

void SGLGen::ClearColor(double r, double g, double b, double a) {
    if (!StartOutsideBegin()) return;
    const auto channel = [](double value) { return Channel(std::clamp(value, 0.0, 1.0)); };
    state_.clearColor = Word(channel(r), channel(g), channel(b), channel(a));
}

void SGLGen::ShadeModel(int32_t mode) {
    if (!StartOutsideBegin()) return;
    if (mode != SGL_FLAT && mode != SGL_SMOOTH) return Refuse(SGL_INVALID_ENUM);
    state_.shadeModel = mode;
}

void SGLGen::SetCapability(int32_t capability, bool enabled) {
    if (!StartOutsideBegin()) return;
    switch (capability) {
        case SGL_DEPTH_TEST:
            return rasterizer_.SetDepthTest(enabled);
        case SGL_CULL_FACE:
            state_.cullEnabled = enabled;
            return;
        case SGL_ALPHA_TEST:
            state_.alphaTestEnabled = enabled;
            return;
        case SGL_BLEND:
            state_.blendEnabled = enabled;
            return;
        case SGL_TEXTURE_2D:
            state_.textureEnabled = enabled;
            return;
        case SGL_LIGHTING:
            rasterizer_.Lights().enabled = enabled;
            return;
        default:
            if (capability < SGL_LIGHT0 || capability >= SGL_LIGHT0 + kMaxLights) return Refuse(SGL_INVALID_ENUM);
            rasterizer_.Lights().lights[static_cast<size_t>(capability - SGL_LIGHT0)].enabled = enabled;
    }
}

void SGLGen::Viewport(int32_t x, int32_t y, int32_t width, int32_t height) {
    if (!StartOutsideBegin()) return;
    if (x != 0 || y != 0 || !FitsAFrame(width, height)) return Refuse(SGL_INVALID_VALUE);
    state_.viewport = {x, y, width, height};
    ownedFrame_.reset();  // the old frame goes before the new one comes
    ownedFrame_ = TryMakeArray<uint32_t>(PixelCount());
    state_.frame = ownedFrame_.get();
    ConfigureRasterizer();
}

void SGLGen::GetIntegerv(uint32_t name, uint32_t* out) {
    if (!StartOutsideBegin()) return;
    if (name == SGL_VIEWPORT) {
        std::copy(state_.viewport.begin(), state_.viewport.end(), out);
    } else if (name == SGL_MAX_LIGHTS) {
        *out = kMaxLights;
    } else {
        Refuse(SGL_INVALID_ENUM);
    }
}

void SGLGen::Lightfv(int32_t light, int32_t property, const float* params) {
    if (!StartOutsideBegin()) return;
    uint32_t lightCount = 0;
    GetIntegerv(SGL_MAX_LIGHTS, &lightCount);
    const bool known = light >= SGL_LIGHT0 && int64_t{light} < int64_t{SGL_LIGHT0} + lightCount;
    if (!known || property < SGL_AMBIENT || property > SGL_POSITION) return Refuse(SGL_INVALID_ENUM);
    rasterizer_.Lights().Set(light - SGL_LIGHT0, property, params);
}

void SGLGen::GenTextures(int32_t count, uint32_t* names) {
    if (!StartOutsideBegin()) return;
    int32_t found = 0;
    for (uint32_t name = 1; name < kTextureNames && found < count; ++name) {
        if (state_.textures[name] == nullptr) names[found++] = name;
    }
    if (found < count) Refuse(SGL_INVALID_VALUE);
}

void SGLGen::DeleteTextures(int32_t count, const uint32_t* names) {
    if (!StartOutsideBegin()) return;
    if (count < 0) return Refuse(SGL_INVALID_VALUE);
    // No triangle can still point at a record that goes: batches exist between Begin and End only.
    for (int32_t i = 0; i < count; ++i) {
        if (names[i] >= kTextureNames) continue;
        textureManager_.Remove(state_.textures[names[i]]);
        state_.textures[names[i]] = nullptr;
    }
}

void SGLGen::BindTexture(int32_t target, uint32_t name) {
    if (!StartOutsideBegin()) return;
    if (target != SGL_TEXTURE_2D) return Refuse(SGL_INVALID_ENUM);
    if (name >= kTextureNames) return Refuse(SGL_INVALID_OPERATION);
    state_.boundTexture = name;
}

void SGLGen::TexImage2D(int32_t target, int32_t /*level*/, int32_t internalFormat, int32_t width, int32_t height,
                        int32_t /*border*/, int32_t format, int32_t type, const uint32_t* pixels) {
    if (!StartOutsideBegin()) return;
    if (target != SGL_TEXTURE_2D || internalFormat != SGL_RGBA || format != SGL_BGRA || type != SGL_UNSIGNED_BYTE)
        return Refuse(SGL_INVALID_ENUM);
    const SGLTexture*& record = state_.textures[state_.boundTexture];
    textureManager_.Remove(record);
    record = textureManager_.Add(pixels, width, height);
}

void SGLGen::Clear(uint32_t mask) {
    if ((mask & SGL_DEPTH_BUFFER_BIT) != 0) rasterizer_.ClearDepth();
    if ((mask & SGL_COLOR_BUFFER_BIT) != 0 && state_.frame != nullptr) std::fill_n(state_.frame, PixelCount(), 0U);
}

void SGLGen::FrontFace(int32_t mode) {
    if (!StartOutsideBegin()) return;
    if (mode != SGL_CW && mode != SGL_CCW) return Refuse(SGL_INVALID_ENUM);
    state_.frontFace = mode;
}

void SGLGen::MatrixMode(int32_t mode) {
    if (!StartOutsideBegin()) return;
    if (mode != SGL_MODELVIEW && mode != SGL_PROJECTION) return Refuse(SGL_INVALID_ENUM);
    state_.matrixMode = mode;
}

void SGLGen::LoadIdentity() {
    if (StartOutsideBegin() && state_.matrixMode == SGL_MODELVIEW) state_.modelView = {};
}

void SGLGen::MultiplyModelView(const SGLMatrix& matrix) {
    if (!StartOutsideBegin() || state_.matrixMode != SGL_MODELVIEW) return;
    state_.modelView = Product(state_.modelView, matrix);
}

void SGLGen::Translated(double x, double y, double z) {
    const Vec3 by = Narrow(x, y, z);
    MultiplyModelView(Translation(by.x, by.y, by.z));
}

/// The factor is twice that of degrees, and has to stay so: 45 is a quarter turn.
void SGLGen::Rotated(double angle, double x, double y, double z) {
    MultiplyModelView(Rotation(static_cast<float>(angle) * kPi / 90.0f, Narrow(x, y, z)));
}

void SGLGen::MultMatrixf(const float* columns) {
    MultiplyModelView(FromColumns(columns));
}

void SGLGen::MultMatrixd(const double* columns) {
    MultiplyModelView(FromColumns(columns));
}

void SGLGen::LookAt(double eyeX, double eyeY, double eyeZ, double centerX, double centerY, double centerZ, double upX,
                    double upY, double upZ) {
    const Vec3 forward = Narrow(centerX - eyeX, centerY - eyeY, centerZ - eyeZ);
    MultiplyModelView(ViewRotation(forward, Narrow(upX, upY, upZ)));
    Translated(-eyeX, -eyeY, -eyeZ);
}

void SGLGen::Color3d(double r, double g, double b) {
    Color3ub(Channel(r), Channel(g), Channel(b));
}
void SGLGen::Color3f(float r, float g, float b) {
    Color3ub(Channel(r), Channel(g), Channel(b));
}
void SGLGen::Color4d(double r, double g, double b, double a) {
    Color4ub(Channel(r), Channel(g), Channel(b), Channel(a));
}
void SGLGen::Color4f(float r, float g, float b, float a) {
    Color4ub(Channel(r), Channel(g), Channel(b), Channel(a));
}
void SGLGen::Color4ub(uint8_t r, uint8_t g, uint8_t b, uint8_t a) {
    state_.currentColor = Word(r, g, b, a);
}

void SGLGen::Normal3fv(const float* xyz) {
    std::copy_n(xyz, 3, state_.currentNormal.begin());
}

void SGLGen::ReadPixels(int32_t x, int32_t y, int32_t width, int32_t height, int32_t format, int32_t type,
                        uint32_t* destination) {
    if (!StartOutsideBegin()) return;
    if (format != SGL_BGRA || type != SGL_UNSIGNED_BYTE) return Refuse(SGL_INVALID_ENUM);
    if (std::array{x, y, width, height} != state_.viewport) return Refuse(SGL_INVALID_VALUE);
    if (state_.frame == nullptr) return Refuse(SGL_INVALID_OPERATION);
    std::copy_n(state_.frame, PixelCount(), destination);
}

void SGLGen::Frustum(double left, double right, double bottom, double top, double nearZ, double farZ) {
    if (!StartOutsideBegin()) return;
    StoreVolume(left, right, bottom, top, nearZ, farZ);
    if (state_.frame == nullptr) return Refuse(SGL_INVALID_OPERATION);
    ConfigureProjection(true);
}

void SGLGen::Ortho(double left, double right, double bottom, double top, double nearZ, double farZ) {
    if (!StartOutsideBegin()) return;
    StoreVolume(left, right, bottom, top, nearZ, farZ);
    ConfigureProjection(false);
}

void SGLGen::StoreVolume(double left, double right, double bottom, double top, double nearZ, double farZ) {
    state_.frustumLeft = left;
    state_.frustumRight = right;
    state_.frustumTop = top;
    state_.frustumBottom = bottom;
    state_.frustumNear = nearZ;
    state_.frustumFar = farZ;
}

/// In the other matrix mode the volume that was stored waits for the next Viewport.
void SGLGen::ConfigureProjection(bool perspective) {
    if (state_.matrixMode != SGL_PROJECTION) return;
    state_.perspective = perspective;
    ConfigureRasterizer();
}

void SGLGen::ConfigureRasterizer() {
    const auto narrow = [](double value) { return static_cast<float>(value); };
    const ViewVolume volume{narrow(-state_.frustumTop), narrow(-state_.frustumBottom), narrow(state_.frustumLeft),
                            narrow(state_.frustumRight), narrow(state_.frustumNear)};
    rasterizer_.Configure(state_.perspective, state_.viewport[2], state_.viewport[3], volume, state_.frame);
}

int32_t SGLGen::GetError() {
    if (state_.insideBegin) Refuse(SGL_INVALID_OPERATION);
    return state_.status;
}

void SGLGen::SetFrameBuffer(uint32_t* pixels) {
    if (!StartOutsideBegin()) return;
    if (ownedFrame_ != nullptr) {
        rasterizer_.ForgetFrame();
        ownedFrame_.reset();
    }
    state_.frame = pixels;
}

size_t SGLGen::PixelCount() const {
    return static_cast<size_t>(state_.viewport[2]) * static_cast<size_t>(state_.viewport[3]);
}

}  // namespace sgl
