#include "sgl/lighting.h"

#include <algorithm>
#include <cmath>

#include "sgl/sgl.h"

namespace sgl {
namespace {

constexpr int32_t kFullSum = 0xFF0000;
/// Of a face's cross product. Below it the face counts as one that lies flat before the viewer.
constexpr float kLeastLength = 0.0001f;

constexpr int32_t Rgb::*kChannels[] = {&Rgb::r, &Rgb::g, &Rgb::b};

/// 0..255 from 0..1; other values are not limited.
int32_t Level(float value) {
    return ToInt32(value * 255.0f);
}

Rgb LevelsAs16(const float* params) {
    const auto as16 = [](float value) { return Multiply(Level(value), kOne16) / 255; };
    return {as16(params[0]), as16(params[1]), as16(params[2])};
}

FixedNormal ToFixed(const Vec3& v, float scale) {
    return {ToInt32(v.x * scale), ToInt32(v.y * scale), ToInt32(v.z * scale)};
}

FixedNormal Facing(const FixedNormal& n, bool backFacing) {
    return backFacing ? FixedNormal{Subtract(0, n.x), Subtract(0, n.y), Subtract(0, n.z)} : n;
}

FixedNormal FaceNormal(const SGLTriangle& triangle) {
    const Vec3 &a = triangle.corners[0]->eye, &b = triangle.corners[1]->eye, &c = triangle.corners[2]->eye;
    const Vec3 n = Cross(b - a, c - b);
    const float length = Length(n);
    return length > kLeastLength ? ToFixed(n / length, 65536.0f) : FixedNormal{0, 0, kOne16};
}

const Bgr& SideColor(const SGLTriangle& triangle) {
    return triangle.backFacing ? triangle.backColor : triangle.frontColor;
}

/// What one light adds: its ambient part everywhere, the others where the face is turned to it. Normals point away from
/// the viewer here, as the light's ray does.
void AddLight(const SGLLight& light, const FixedNormal& n, const Rgb& color, const int32_t* specularTable, Rgb& sum) {
    const FixedNormal ray = ToFixed(light.direction, -65536.0f);
    const int32_t cosine = Add(Add(Multiply16(n.y, ray.y), Multiply16(n.x, ray.x)), Multiply16(n.z, ray.z));
    const int32_t d = std::clamp(cosine, 0, kOne16);
    for (const auto c : kChannels) {
        const int32_t ambient = Multiply(color.*c, light.ambient.*c);
        sum.*c = Add(sum.*c, Add(ambient, Multiply(Multiply16(light.diffuse.*c, d), color.*c)));
    }
    if (d == 0) return;
    const int32_t mirrored = Subtract(ray.z, Multiply(2, Multiply16(d, n.z)));
    const int32_t index = light.reflectionSwitch == 0 ? kOne16 : std::clamp(mirrored, 0, kOne16);
    const int32_t weight = specularTable[index];
    const Rgb specular{light.specular.r, light.specular.g, light.specular.b};
    for (const auto c : kChannels) sum.*c = Add(sum.*c, Multiply(specular.*c, weight));
}

uint8_t ToByte(int32_t sum) {
    return static_cast<uint8_t>(sum >> 16);
}

}  // namespace

Lighting::Lighting() {
    for (int32_t i = 0; i <= kOne16; ++i)
        specularTable_[static_cast<size_t>(i)] = ToInt32(std::pow(i * 0x1p-16, 10.0) * 65536.0);
    lights[0].diffuse = {kOne16, kOne16, kOne16};
    lights[0].specular = {255, 255, 255};
}

void Lighting::Set(int32_t light, int32_t property, const float* params) {
    SGLLight& l = lights[static_cast<size_t>(light)];
    const auto byte = [](float value) { return static_cast<uint8_t>(Level(value)); };
    switch (property) {
        case SGL_AMBIENT:
            l.ambient = LevelsAs16(params);
            break;
        case SGL_DIFFUSE:
            l.diffuse = LevelsAs16(params);
            break;
        case SGL_SPECULAR:
            l.specular = {byte(params[2]), byte(params[1]), byte(params[0])};
            break;
        default: {
            const Vec3 position{params[0], params[1], -params[2]};
            l.direction = position * (1.0f / std::sqrt(Dot(position, position)));
            break;
        }
    }
}

Rgb Lighting::Light(const FixedNormal& normal, const Bgr& color) const {
    Rgb sum{};
    for (const SGLLight& light : lights) {
        if (!light.enabled) continue;
        AddLight(light, normal, {color.r, color.g, color.b}, specularTable_.data(), sum);
        for (const auto c : kChannels) sum.*c = std::min(sum.*c, kFullSum);
    }
    return sum;
}

Bgr Lighting::FaceColor(const SGLTriangle& triangle) const {
    const Bgr& color = SideColor(triangle);
    if (!enabled) return color;
    const Rgb sum = Light(Facing(FaceNormal(triangle), triangle.backFacing), color);
    return {ToByte(sum.b), ToByte(sum.g), ToByte(sum.r)};
}

Rgb Lighting::CornerColor(const SGLTriangle& triangle, const SGLVertex& corner) const {
    return Light(Facing(ToFixed(corner.litNormal, 65536.0f), triangle.backFacing), SideColor(triangle));
}

}  // namespace sgl
