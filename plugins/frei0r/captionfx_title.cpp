// frei0r source: a title on transparent ground.
#include <cstring>

#include "plugins/frei0r/plugin_functions.h"
#include "plugins/frei0r/title_instance.h"

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
    *info = captionfx::Description("captionfx_title", F0R_PLUGIN_TYPE_SOURCE,
                                   "An animated text title on transparent ground");
}

void f0r_update(f0r_instance_t instance, double time, const uint32_t* /*inframe*/, uint32_t* outframe) {
    auto& title = *static_cast<captionfx::TitleInstance*>(instance);
    std::memset(outframe, 0, title.FrameBytes());
    title.Draw(time, __builtin_return_address(0), outframe);
}
