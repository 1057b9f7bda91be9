#include "render/string_drawing.h"

#include "render/plane_ops.h"

namespace captionfx {
namespace {

/// Zeroes the planes where they may hold anything.
void ClearPlanes(const FrameTitle& title, MetaString& string) {
    const PlaneOps planes(title.Ops, title.Settings.Width);
    title.Workers().RunBands(string.DrawnRect, [&](const TitleRect& band) {
        planes.Clear(string.StringPlanes.ShadowPlane, band);
        planes.Clear(string.StringPlanes.BorderPlane, band);
        planes.Clear(string.StringPlanes.FacePlane, band);
    });
}

}  // namespace

void DrawOnPlanes(const FrameTitle& title, std::vector<PlacedString>& strings, const TitleRect& clip) {
    for (const PlacedString& string : strings) {
        ClearPlanes(title, string.String());
        string.String().DrawnRect = title.Frame();  // until it is known where: a frame that ends early leaves pixels
    }
    if (!title.Workers().AreSeveral()) {
        for (PlacedString& string : strings) string.DrawOneByOne();
        return;
    }
    BuildLayers(title, strings);
    title.Workers().RunBands(clip, [&](const TitleRect& band) {
        for (const PlacedString& string : strings) string.DrawBand(band);
    });
}

}  // namespace captionfx
