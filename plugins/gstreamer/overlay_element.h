// The GStreamer element `captionfxoverlay`: a filter that draws a title onto the frames that pass, in place.
#pragma once

#include <gst/video/gstvideofilter.h>

/// Its type, for the registry.
// NOLINTNEXTLINE(readability-identifier-naming): G_DEFINE_TYPE gives it this name
GType captionfx_overlay_get_type();
