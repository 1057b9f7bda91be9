// SGL: a small immediate-mode graphics library, as an interface of 48 operations, of which slot 0 is the destructor.
// The base draws nothing; SGLGen (sgl_gen.h) draws in software.
//
// Independent triangles are all there is. There is one matrix; the volume is six numbers. Colour is per triangle: the
// one that is current when the third corner comes. Textures are not lit, not filtered and take no colour. Depth,
// blending and the alpha test are switches without settings; blending and the alpha test act on textures only.
//
// Nothing is thrown. An operation leaves a status, which the next one overwrites: ask GetError at once. Unless told
// otherwise an operation between Begin and End is refused with SGL_INVALID_OPERATION. Pointers are not null and have as
// many elements as said.
#pragma once

#include <cstdint>

namespace sgl {

// One numbering for all modes; a value is accepted only where it is named. 27 has no meaning.
// NOLINTBEGIN(readability-identifier-naming): the names of this kind of interface
enum SGLValue : int32_t {
    SGL_FLAT = 0,
    SGL_SMOOTH = 1,
    SGL_DEPTH_TEST = 2,
    SGL_CULL_FACE = 3,
    SGL_ALPHA_TEST = 4,
    SGL_BLEND = 5,
    SGL_VIEWPORT = 6,
    SGL_MAX_LIGHTS = 7,
    SGL_LIGHTING = 8,
    SGL_LIGHT0 = 9,  ///< and the seven next
    SGL_AMBIENT = 17,
    SGL_DIFFUSE = 18,
    SGL_SPECULAR = 19,
    SGL_POSITION = 20,
    SGL_TEXTURE_2D = 21,
    SGL_RGBA = 22,
    SGL_BGRA = 23,
    SGL_UNSIGNED_BYTE = 24,
    SGL_MODELVIEW = 25,
    SGL_PROJECTION = 26,
    SGL_TRIANGLES = 28,
    SGL_CW = 29,
    SGL_CCW = 30,
    SGL_NO_ERROR = 31,
    SGL_INVALID_OPERATION = 32,
    SGL_INVALID_ENUM = 33,
    SGL_INVALID_VALUE = 34,
    SGL_DEPTH_BUFFER_BIT = 0x100,
    SGL_COLOR_BUFFER_BIT = 0x4000,
};
// NOLINTEND(readability-identifier-naming)

class SGL {
public:
    virtual ~SGL() = default;

    /// Stores a colour, channels 0..1 and limited to that, which nothing reads: Clear always clears to zero bytes.
    virtual void ClearColor(double /*r*/, double /*g*/, double /*b*/, double /*a*/) {}
    virtual void ShadeModel(int32_t /*mode*/) {}  ///< SGL_FLAT or SGL_SMOOTH.
    virtual void Enable(int32_t /*capability*/) {}
    virtual void Disable(int32_t /*capability*/) {}
    /// A new frame of the size, clear and owned; x and y are 0. A size whose pixels do not fit 31 bits of bytes is
    /// SGL_INVALID_VALUE.
    virtual void Viewport(int32_t /*x*/, int32_t /*y*/, int32_t /*width*/, int32_t /*height*/) {}
    virtual void GetIntegerv(uint32_t /*name*/, uint32_t* /*out*/) {}  ///< SGL_VIEWPORT: 4, SGL_MAX_LIGHTS: 1.
    /// Properties of 4 floats. All lights are directional: the fourth of a position is not read.
    virtual void Lightfv(int32_t /*light*/, int32_t /*property*/, const float* /*params*/) {}
    /// Names from 1 to 63 that have no texture. They are not reserved before TexImage2D. SGL_INVALID_VALUE, when there
    /// are fewer than `count`.
    virtual void GenTextures(int32_t /*count*/, uint32_t* /*names*/) {}
    virtual void DeleteTextures(int32_t /*count*/, const uint32_t* /*names*/) {}
    virtual void BindTexture(int32_t /*target*/, uint32_t /*name*/) {}  ///< Names are below 64.
    /// The bound name's texture becomes `pixels`, which stay the caller's, are read when drawing and have to live as
    /// long as the name. Null leaves the name without one. `level` and `border` are not read.
    virtual void TexImage2D(int32_t /*target*/, int32_t /*level*/, int32_t /*internalFormat*/, int32_t /*width*/,
                            int32_t /*height*/, int32_t /*border*/, int32_t /*format*/, int32_t /*type*/,
                            const uint32_t* /*pixels*/) {}
    virtual void Clear(uint32_t /*mask*/) {}  ///< To zero bytes; at any time, and without a status.
    virtual void FrontFace(int32_t /*mode*/) {}
    virtual void MatrixMode(int32_t /*mode*/) {}
    // The matrix operations act in the mode SGL_MODELVIEW and do nothing in SGL_PROJECTION.
    virtual void LoadIdentity() {}
    virtual void Translated(double /*x*/, double /*y*/, double /*z*/) {}
    virtual void Rotated(double /*angle*/, double /*x*/, double /*y*/, double /*z*/) {}  ///< 180 is a whole turn.
    virtual void MultMatrixf(const float* /*columns*/) {}                                ///< 16, column-major.
    virtual void MultMatrixd(const double* /*columns*/) {}
    virtual void LookAt(double /*eyeX*/, double /*eyeY*/, double /*eyeZ*/, double /*centerX*/, double /*centerY*/,
                        double /*centerZ*/, double /*upX*/, double /*upY*/, double /*upZ*/) {}
    // Colours: floating-point channels, 0..1, are not limited; what is beyond keeps its low 8 bits.
    virtual void Color3ub(uint8_t /*r*/, uint8_t /*g*/, uint8_t /*b*/) {}
    virtual void Color3d(double /*r*/, double /*g*/, double /*b*/) {}
    virtual void Color3f(float /*r*/, float /*g*/, float /*b*/) {}
    virtual void Color4ub(uint8_t /*r*/, uint8_t /*g*/, uint8_t /*b*/, uint8_t /*a*/) {}
    virtual void Color4d(double /*r*/, double /*g*/, double /*b*/, double /*a*/) {}
    virtual void Color4f(float /*r*/, float /*g*/, float /*b*/, float /*a*/) {}
    virtual void Color3fv(const float* /*rgb*/) {}
    virtual void Color3dv(const double* /*rgb*/) {}
    virtual void Color3ubv(const uint8_t* /*rgb*/) {}
    virtual void Color4fv(const float* /*rgba*/) {}
    virtual void Color4dv(const double* /*rgba*/) {}
    virtual void Color4ubv(const uint8_t* /*rgba*/) {}
    virtual void TexCoord2d(double /*s*/, double /*t*/) {}
    virtual void Begin(int32_t /*mode*/) {}
    virtual void Normal3fv(const float* /*xyz*/) {}
    virtual void Normal3dv(const double* /*xyz*/) {}
    virtual void Vertex3fv(const float* /*xyz*/) {}  ///< Between Begin and End only.
    virtual void Vertex3dv(const double* /*xyz*/) {}
    virtual void End() {}
    /// SGL_INVALID_OPERATION between Begin and End, SGL_NO_ERROR outside; it becomes the status.
    virtual int32_t GetBeginState() { return 0; }
    /// Copies the frame: the whole of it, as SGL_BGRA.
    virtual void ReadPixels(int32_t /*x*/, int32_t /*y*/, int32_t /*width*/, int32_t /*height*/, int32_t /*format*/,
                            int32_t /*type*/, uint32_t* /*destination*/) {}
    /// The volume, stored at any time. In the mode SGL_PROJECTION it takes effect, and with it the frame buffer.
    virtual void Frustum(double /*left*/, double /*right*/, double /*bottom*/, double /*top*/, double /*nearZ*/,
                         double /*farZ*/) {}
    virtual void Ortho(double /*left*/, double /*right*/, double /*bottom*/, double /*top*/, double /*nearZ*/,
                       double /*farZ*/) {}
    virtual int32_t GetError() { return SGL_NO_ERROR; }  ///< The status, which stays.
    /// The caller's pixels, as many as the viewport has, become the frame. They have to outlive their use, which begins
    /// with the next Frustum or Ortho that takes effect and ends with another one.
    virtual void SetFrameBuffer(uint32_t* /*pixels*/) {}
    virtual void SetColorSpace(uint32_t /*yuv*/) {}  ///< Not 0: flat triangles without depth test become 0xAAYYUUVV.
    virtual void Flush() {}                          ///< Draws the triangles submitted since Begin.
};

}  // namespace sgl
