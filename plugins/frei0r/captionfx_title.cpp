// frei0r source: a title on transparent ground.
#include <cstring>

#include "plugins/frei0r/plugin_functions.h"
#include "plugins/frei0r/title_instance.h"

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
    *info = {.name = "captionfx_title",
             .author = "The CaptionFx developers",
             .plugin_type = F0R_PLUGIN_TYPE_SOURCE,
             .color_model = captionfx::kColorModel,
             .frei0r_version = FREI0R_MAJOR_VERSION,
             .major_version = 0,
             .minor_version = 1,
             .num_params = captionfx::kParameterCount,
             .explanation = "An animated text title on transparent ground"};
}

void f0r_update(f0r_instance_t instance, double time, const uint32_t* /*inframe*/, uint32_t* outframe) {
    auto& title = *static_cast<captionfx::TitleInstance*>(instance);
    std::memset(outframe, 0, title.FrameBytes());
    title.Draw(time, __builtin_return_address(0), outframe);
}
