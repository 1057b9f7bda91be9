#include "peers/pictures.h"

#include <array>

#include "peers/cairo_side.h"
#include "peers/captionfx_side.h"
#include "peers/libass_side.h"
#include "peers/measure.h"
#include "tools/png_file.h"

namespace captionfx::peers {

void WritePictures(const Scene& scene, const Stage& stage, const std::string& fontFile,
                   const std::filesystem::path& folder) {
    constexpr double kMoment = 0.5;
    const TextLayout layout = MeasureLayout(scene, stage);
    const std::array<std::unique_ptr<Side>, 3> sides = {
        MakeCaptionFxSide(scene, stage, 1), MakeLibassSide(scene, stage, layout, fontFile, SoftShadow::kOfItsOwn),
        MakeCairoSide(scene, stage, layout)};
    // Of one line of text only the rows around it are worth a look.
    const int32_t first = scene.isCredits ? 0 : static_cast<int32_t>(layout.top - layout.height / 2);
    const int32_t rows = scene.isCredits ? stage.height : static_cast<int32_t>(layout.height * 2);
    std::vector<uint32_t> all;
    for (const auto& side : sides) {
        std::vector<uint32_t> pixels = MakeGround(stage);
        side->Prepare(kMoment);
        side->Draw(pixels.data());
        const auto begin = pixels.begin() + std::ptrdiff_t{first} * stage.width;
        all.insert(all.end(), begin, begin + std::ptrdiff_t{rows} * stage.width);
    }
    for (uint32_t& pixel : all) pixel |= 0xFF000000U;  // cairo does not care about alpha here
    std::filesystem::create_directories(folder);
    WritePng(folder / (std::string(scene.name) + "-" + std::string(stage.name) + ".png"), all, stage.width,
             rows * static_cast<int32_t>(sides.size()));
}

}  // namespace captionfx::peers
