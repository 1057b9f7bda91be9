#include "plugins/gstreamer/overlay_element.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "plugins/gstreamer/overlay_title.h"

using captionfx::OverlaySettings;
using captionfx::OverlayTitle;

// Names and layout are GObject's: a record that begins with its parent's, and functions that its macros call by name.
// NOLINTBEGIN(readability-identifier-naming)

GST_DEBUG_CATEGORY_STATIC(captionfx_debug);
#define GST_CAT_DEFAULT captionfx_debug

struct CaptionfxOverlay {
    GstVideoFilter parent;
    OverlayTitle* title;  // owned, from init to finalize: GObject's records are zeroed bytes
};

struct CaptionfxOverlayClass {
    GstVideoFilterClass parent;
};

G_DEFINE_TYPE_WITH_CODE(CaptionfxOverlay, captionfx_overlay, GST_TYPE_VIDEO_FILTER,
                        GST_DEBUG_CATEGORY_INIT(captionfx_debug, "captionfxoverlay", 0, "titles on video"))

namespace {

enum Property : guint { kLocation = 1, kScript, kScale, kOffset };

/// The bytes of both formats lie in memory as the library draws them. Sides are those of a title script's frame.
constexpr const char* kCaps =
    "video/x-raw, format=(string){ BGRA, VUYA }, width=(int)[ 1, 16384 ], height=(int)[ 1, 16384 ], "
    "framerate=(fraction)[ 0, max ]";

CaptionfxOverlay* OverlayOf(gpointer object) {
    return static_cast<CaptionfxOverlay*>(object);
}

/// A title that cannot be read, as GStreamer tells of it: the first line is ours, and the code says what kind it is.
void PostError(CaptionfxOverlay* self, const char* line) {
    const OverlaySettings settings = self->title->Settings();
    std::error_code ignored;
    if (settings.location.empty() || !settings.script.empty()) {
        GST_ELEMENT_ERROR(self, RESOURCE, SETTINGS, ("%s", line), (nullptr));
    } else if (!std::filesystem::exists(settings.location, ignored)) {
        GST_ELEMENT_ERROR(self, RESOURCE, NOT_FOUND, ("%s", line), (nullptr));
    } else if (std::filesystem::is_directory(settings.location, ignored)) {
        GST_ELEMENT_ERROR(self, RESOURCE, OPEN_READ, ("%s", line), (nullptr));
    } else {
        GST_ELEMENT_ERROR(self, STREAM, FORMAT, ("%s", line), (nullptr));
    }
}

/// Runs `work`; whether it went well. Nothing is thrown into GStreamer.
template <class Work>
bool Guarded(CaptionfxOverlay* self, Work work) noexcept {
    try {
        work(*self->title);
        return true;
    } catch (const std::bad_alloc&) {
        GST_ELEMENT_ERROR(self, RESOURCE, FAILED, ("memory ran out"), (nullptr));
    } catch (const std::exception& error) {
        PostError(self, error.what());
    }
    return false;
}

void UpdatePassthrough(CaptionfxOverlay* self) {
    gst_base_transform_set_passthrough(GST_BASE_TRANSFORM(self), self->title->HasTitle() ? FALSE : TRUE);
}

void SetProperty(GObject* object, guint id, const GValue* value, GParamSpec* property) {
    CaptionfxOverlay* const self = OverlayOf(object);
    const auto setText = [&](std::string OverlaySettings::*field) {
        const char* const text = g_value_get_string(value);
        Guarded(self, [&](OverlayTitle& title) {
            title.Set([&](OverlaySettings& to) { to.*field = text == nullptr ? "" : text; }, true);
        });
        UpdatePassthrough(self);
    };
    const double number = G_VALUE_HOLDS_DOUBLE(value) ? g_value_get_double(value) : 0.0;
    switch (id) {
        case kLocation:
            setText(&OverlaySettings::location);
            break;
        case kScript:
            setText(&OverlaySettings::script);
            break;
        case kScale:
            self->title->Set([=](OverlaySettings& to) { to.scale = number; }, true);
            break;
        case kOffset:
            self->title->Set([=](OverlaySettings& to) { to.offsetSeconds = number; }, false);
            break;
        default:
            G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, property);
    }
}

void GetProperty(GObject* object, guint id, GValue* value, GParamSpec* property) {
    const OverlaySettings settings = OverlayOf(object)->title->Settings();
    const auto set = [value](const std::string& text) {
        g_value_set_string(value, text.empty() ? nullptr : text.c_str());
    };
    switch (id) {
        case kLocation:
            set(settings.location);
            break;
        case kScript:
            set(settings.script);
            break;
        case kScale:
            g_value_set_double(value, settings.scale);
            break;
        case kOffset:
            g_value_set_double(value, settings.offsetSeconds);
            break;
        default:
            G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, property);
    }
}

void Finalize(GObject* object) {
    const std::unique_ptr<OverlayTitle> ended(std::exchange(OverlayOf(object)->title, nullptr));
    G_OBJECT_CLASS(captionfx_overlay_parent_class)->finalize(object);
}

/// Before the first frame is there, so that a pipeline with a bad title does not even start.
gboolean Start(GstBaseTransform* transform) {
    const bool isGood = Guarded(OverlayOf(transform),
                                [](OverlayTitle& title) { title.Prepare(std::nullopt, captionfx::PixelOrder::kBgra); });
    return isGood ? TRUE : FALSE;
}

/// The library's YUV is that of BT.601 in studio range.
void WarnOfColors(CaptionfxOverlay* self, const GstVideoInfo& info) {
    if (info.colorimetry.matrix == GST_VIDEO_COLOR_MATRIX_BT601 &&
        info.colorimetry.range == GST_VIDEO_COLOR_RANGE_16_235)
        return;
    GST_ELEMENT_WARNING(self, STREAM, FORMAT,
                        ("the title's colours will be a little off: VUYA titles are drawn with colorimetry bt601"),
                        ("the stream's is another: let videoconvert make video/x-raw,format=VUYA,colorimetry=bt601"));
}

gboolean SetInfo(GstVideoFilter* filter, GstCaps* /*inCaps*/, GstVideoInfo* in, GstCaps* /*outCaps*/,
                 GstVideoInfo* /*out*/) {
    const bool isVuya = GST_VIDEO_INFO_FORMAT(in) == GST_VIDEO_FORMAT_VUYA;
    if (isVuya) WarnOfColors(OverlayOf(filter), *in);
    const captionfx::FrameSize frame{GST_VIDEO_INFO_WIDTH(in), GST_VIDEO_INFO_HEIGHT(in)};
    const bool isGood = Guarded(OverlayOf(filter), [&](OverlayTitle& title) {
        title.Prepare(frame, isVuya ? captionfx::PixelOrder::kVuya : captionfx::PixelOrder::kBgra);
    });
    return isGood ? TRUE : FALSE;
}

/// The position in the stream, which a seek or a cut does not change; 0 for frames without a time.
GstClockTime StreamTime(GstBaseTransform* transform, GstBuffer* buffer) {
    if (!GST_BUFFER_PTS_IS_VALID(buffer)) return 0;
    const guint64 time = gst_segment_to_stream_time(&transform->segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    return GST_CLOCK_TIME_IS_VALID(time) ? time : 0;
}

void BeforeTransform(GstBaseTransform* transform, GstBuffer* buffer) {
    gst_object_sync_values(GST_OBJECT(transform), StreamTime(transform, buffer));
}

GstFlowReturn TransformFrame(GstVideoFilter* filter, GstVideoFrame* frame) {
    const GstClockTime time = StreamTime(GST_BASE_TRANSFORM(filter), frame->buffer);
    const captionfx::FrameRows rows{static_cast<uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(frame, 0)),
                                    GST_VIDEO_FRAME_PLANE_STRIDE(frame, 0)};
    const bool isDrawn = Guarded(OverlayOf(filter), [&](OverlayTitle& title) {
        title.Draw(static_cast<double>(time) / static_cast<double>(GST_SECOND), rows);
    });
    return isDrawn ? GST_FLOW_OK : GST_FLOW_ERROR;
}

void InstallProperties(GObjectClass* object) {
    constexpr auto kFlags =
        static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS | GST_PARAM_MUTABLE_PLAYING);
    constexpr auto kControllable = static_cast<GParamFlags>(kFlags | GST_PARAM_CONTROLLABLE);
    constexpr double kLargestScale = 1000.0, kLongest = 1e6;
    g_object_class_install_property(
        object, kLocation,
        g_param_spec_string("location", "Location", "Title file: a script (JSON), XML, or subtitles (SubRip, WebVTT)",
                            nullptr, kFlags));
    g_object_class_install_property(
        object, kScript,
        g_param_spec_string("script", "Script", "Text of a title script, in the place of a location", nullptr, kFlags));
    g_object_class_install_property(
        object, kScale,
        g_param_spec_double("scale", "Scale", "Enlarges the title about the frame's upper left corner",
                            1.0 / kLargestScale, kLargestScale, 1.0, kFlags));
    g_object_class_install_property(
        object, kOffset,
        g_param_spec_double("offset", "Offset", "Seconds that are added to the stream's time", -kLongest, kLongest, 0.0,
                            kControllable));
}

void AddPad(GstElementClass* element, const char* name, GstPadDirection direction) {
    GstCaps* const caps = gst_caps_from_string(kCaps);
    gst_element_class_add_pad_template(element, gst_pad_template_new(name, direction, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
}

}  // namespace

static void captionfx_overlay_class_init(CaptionfxOverlayClass* type) {
    GObjectClass* const object = G_OBJECT_CLASS(type);
    object->set_property = &SetProperty;
    object->get_property = &GetProperty;
    object->finalize = &Finalize;
    InstallProperties(object);

    GstElementClass* const element = GST_ELEMENT_CLASS(type);
    gst_element_class_set_static_metadata(element, "CaptionFx title overlay", "Filter/Effect/Video",
                                          "Draws an animated text title onto video",
                                          "The CaptionFx developers <developers@captionfx.invalid>");
    AddPad(element, "sink", GST_PAD_SINK);
    AddPad(element, "src", GST_PAD_SRC);

    GstBaseTransformClass* const transform = GST_BASE_TRANSFORM_CLASS(type);
    transform->start = &Start;
    transform->before_transform = &BeforeTransform;
    transform->transform_ip_on_passthrough = FALSE;

    GstVideoFilterClass* const filter = GST_VIDEO_FILTER_CLASS(type);
    filter->set_info = &SetInfo;
    filter->transform_frame_ip = &TransformFrame;
}

static void captionfx_overlay_init(CaptionfxOverlay* self) {
    self->title = std::make_unique<OverlayTitle>().release();
    UpdatePassthrough(self);
}

// NOLINTEND(readability-identifier-naming)
