// The functions of frei0r that the source and the filter have in common. Each plugin adds its description and its
// update.
#include "plugins/frei0r/plugin_functions.h"

#include <cstdint>
#include <exception>
#include <memory>

#include "plugins/frei0r/title_instance.h"

using captionfx::TitleInstance;

f0r_plugin_info_t captionfx::Description(const char* name, int type, const char* explanation) {
    return {.name = name,
            .author = "The CaptionFx developers",
            .plugin_type = type,
            .color_model = F0R_COLOR_MODEL_BGRA8888,
            .frei0r_version = FREI0R_MAJOR_VERSION,
            .major_version = 0,
            .minor_version = 1,
            .num_params = kParameterCount,
            .explanation = explanation};
}

int f0r_init() {
    return 1;
}

void f0r_deinit() {}

void f0r_get_param_info(f0r_param_info_t* info, int index) {
    switch (index) {
        case captionfx::kFileParameter:
            *info = {"File", F0R_PARAM_STRING, "Title: script (JSON), XML, or subtitles"};
            break;
        case captionfx::kTimeScaleParameter:
            *info = {"Time scale", F0R_PARAM_DOUBLE,
                     "Seconds of one unit of the host's time, such as 0.001; 0 finds out by itself"};
            break;
        default:
            break;
    }
}

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
    try {
        const captionfx::FrameSize frame{static_cast<int32_t>(width), static_cast<int32_t>(height)};
        return std::make_unique<TitleInstance>(frame).release();  // until f0r_destruct
    } catch (const std::exception&) {
        return nullptr;
    }
}

void f0r_destruct(f0r_instance_t instance) {
    const std::unique_ptr<TitleInstance> ended(static_cast<TitleInstance*>(instance));
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int index) {
    auto& title = *static_cast<TitleInstance*>(instance);
    if (index == captionfx::kFileParameter) title.SetFile(*static_cast<f0r_param_string*>(param));
    if (index == captionfx::kTimeScaleParameter) title.SetTimeScale(*static_cast<f0r_param_double*>(param));
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int index) {
    const auto& title = *static_cast<TitleInstance*>(instance);
    // The interface's string is not const; its text stays the plugin's.
    if (index == captionfx::kFileParameter) *static_cast<const char**>(param) = title.File().c_str();
    if (index == captionfx::kTimeScaleParameter) *static_cast<f0r_param_double*>(param) = title.TimeScale();
}
