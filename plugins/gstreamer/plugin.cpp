// What GStreamer's registry reads: the plugin and its one element.
#include <gst/gst.h>

#include "plugins/gstreamer/overlay_element.h"

namespace {

gboolean RegisterElements(GstPlugin* plugin) {
    return gst_element_register(plugin, "captionfxoverlay", GST_RANK_NONE, captionfx_overlay_get_type());
}

}  // namespace

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, captionfx, "Animated text titles on video", RegisterElements,
                  CAPTIONFX_VERSION, "MIT/X11", "CaptionFx", "https://captionfx.invalid")
