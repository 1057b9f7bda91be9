// The element inside GStreamer: what a pipeline may do to a filter, and a launch line cannot show. Frames are compared
// with those of a title that is drawn without it.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gst/check/gstharness.h>
#include <gst/controller/gstdirectcontrolbinding.h>
#include <gst/controller/gstinterpolationcontrolsource.h>
#include <gst/video/video.h>
#include <gtest/gtest.h>

#include "tools/title_overlay.h"

namespace captionfx {
namespace {

constexpr int kWidth = 160, kHeight = 90;
constexpr size_t kRow = kWidth * size_t{4};
constexpr uint32_t kGround = 0xFF203048;
constexpr const char* kTitle = CAPTIONFX_SOURCE_DIR "/examples/showcase.json";

struct Release {
    void operator()(GstHarness* harness) const { gst_harness_teardown(harness); }
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
    void operator()(GstMessage* message) const { gst_message_unref(message); }
    template <class Object>
    void operator()(Object* object) const {
        gst_object_unref(object);
    }
};
using Harness = std::unique_ptr<GstHarness, Release>;
using Buffer = std::unique_ptr<GstBuffer, Release>;
using Message = std::unique_ptr<GstMessage, Release>;

class GStreamer : public testing::Environment {
public:
    void SetUp() override { gst_init(nullptr, nullptr); }
};
const testing::Environment* const kGStreamer =
    testing::AddGlobalTestEnvironment(std::make_unique<GStreamer>().release());

/// The frame that a title gives on plain ground.
std::vector<uint32_t> Drawn(double seconds, PixelOrder order = PixelOrder::kBgra, float scale = 1.0F) {
    std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight, kGround);
    TitleOverlay title(std::filesystem::path(kTitle),
                       {.frame = FrameSize{kWidth, kHeight}, .order = order, .scale = scale});
    title.Draw(static_cast<float>(seconds), {reinterpret_cast<uint8_t*>(pixels.data()), kRow});
    return pixels;
}

std::vector<uint32_t> PixelsOf(GstBuffer* buffer) {
    std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight);
    EXPECT_EQ(gst_buffer_extract(buffer, 0, pixels.data(), pixels.size() * 4), pixels.size() * 4);
    return pixels;
}

Buffer Ground(double seconds) {
    const std::vector<uint32_t> pixels(static_cast<size_t>(kWidth) * kHeight, kGround);
    Buffer buffer(gst_buffer_new_allocate(nullptr, pixels.size() * 4, nullptr));
    gst_buffer_fill(buffer.get(), 0, pixels.data(), pixels.size() * 4);
    GST_BUFFER_PTS(buffer.get()) = static_cast<GstClockTime>(seconds * GST_SECOND);
    return buffer;
}

Harness Element(const char* location, const std::string& format = "BGRA") {
    Harness harness(gst_harness_new("captionfxoverlay"));
    g_object_set(harness->element, "location", location, nullptr);
    const std::string size = std::to_string(kWidth) + ", height=" + std::to_string(kHeight);
    gst_harness_set_src_caps_str(harness.get(),
                                 ("video/x-raw, framerate=25/1, width=" + size + ", format=" + format).c_str());
    return harness;
}

Buffer PushAndPull(const Harness& harness, Buffer buffer) {
    return Buffer(gst_harness_push_and_pull(harness.get(), buffer.release()));
}

/// The next message of that kind that elements have posted; null where there is none.
Message Posted(GstBus* bus, GstMessageType type) {
    return Message(gst_bus_pop_filtered(bus, type));
}

std::string TextOf(GstMessage* message) {
    GError* error = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) gst_message_parse_error(message, &error, nullptr);
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING) gst_message_parse_warning(message, &error, nullptr);
    std::string text = error == nullptr ? "" : error->message;
    g_clear_error(&error);
    return text;
}

TEST(GStreamerElement, DrawsOntoRowsThatArePadded) {
    const Harness harness = Element(kTitle);
    constexpr size_t kStride = kRow + 48, kOffset = 16;
    std::vector<uint8_t> bytes(kOffset + kStride * kHeight, 0xA5);
    const std::vector<uint32_t> ground(kWidth, kGround);
    for (size_t y = 0; y < kHeight; ++y) std::memcpy(&bytes[kOffset + y * kStride], ground.data(), kRow);
    Buffer buffer(gst_buffer_new_memdup(bytes.data(), bytes.size()));
    gsize offsets[GST_VIDEO_MAX_PLANES] = {kOffset};
    gint strides[GST_VIDEO_MAX_PLANES] = {kStride};
    gst_buffer_add_video_meta_full(buffer.get(), GST_VIDEO_FRAME_FLAG_NONE, GST_VIDEO_FORMAT_BGRA, kWidth, kHeight, 1,
                                   offsets, strides);
    GST_BUFFER_PTS(buffer.get()) = 3600 * GST_MSECOND;

    const Buffer drawn = PushAndPull(harness, std::move(buffer));
    const std::vector<uint32_t> wanted = Drawn(3.6);
    for (size_t y = 0; y < kHeight; ++y) std::memcpy(&bytes[kOffset + y * kStride], &wanted[y * kWidth], kRow);
    std::vector<uint8_t> actual(bytes.size());
    gst_buffer_extract(drawn.get(), 0, actual.data(), actual.size());
    EXPECT_EQ(actual, bytes);
}

TEST(GStreamerElement, LeavesFramesThatOthersHold) {
    const Harness harness = Element(kTitle);
    const Buffer held = Ground(3.6);
    const Buffer drawn = PushAndPull(harness, Buffer(gst_buffer_ref(held.get())));
    EXPECT_EQ(PixelsOf(drawn.get()), Drawn(3.6));
    EXPECT_EQ(PixelsOf(held.get()), PixelsOf(Ground(0).get()));
}

TEST(GStreamerElement, GoesByTheTimeOfTheStream) {
    const Harness harness = Element(kTitle);
    // A cut: what comes at 10 s is second 3 of the stream.
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    segment.start = 10 * GST_SECOND;
    segment.time = 3 * GST_SECOND;
    gst_harness_push_event(harness.get(), gst_event_new_segment(&segment));
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(10.6)).get()), Drawn(3.6));
}

TEST(GStreamerElement, LetsAControllerMoveItsOffset) {
    const Harness harness = Element(kTitle);
    const std::unique_ptr<GstControlSource, Release> source(gst_interpolation_control_source_new());
    g_object_set(source.get(), "mode", GST_INTERPOLATION_MODE_LINEAR, nullptr);
    auto* const points = GST_TIMED_VALUE_CONTROL_SOURCE(source.get());
    gst_timed_value_control_source_set(points, 0, 3.0);
    gst_timed_value_control_source_set(points, 2 * GST_SECOND, -1.0);
    gst_object_add_control_binding(
        GST_OBJECT(harness->element),
        gst_direct_control_binding_new_absolute(GST_OBJECT(harness->element), "offset", source.get()));
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(0)).get()), Drawn(3.0));
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(0.5)).get()), Drawn(0.5 + 2.0));
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(2)).get()), Drawn(1.0));
}

TEST(GStreamerElement, TakesAnotherTitleWhileFramesPass) {
    const Harness harness = Element(nullptr);
    const std::unique_ptr<GstBus, Release> bus(gst_bus_new());
    gst_element_set_bus(harness->element, bus.get());
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(3.6)).get()), PixelsOf(Ground(0).get()));  // none yet
    g_object_set(harness->element, "location", kTitle, nullptr);
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(3.6)).get()), Drawn(3.6));
    g_object_set(harness->element, "scale", 1.5, nullptr);
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(3.6)).get()), Drawn(3.6, PixelOrder::kBgra, 1.5F));
    g_object_set(harness->element, "location", nullptr, nullptr);
    EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(3.6)).get()), PixelsOf(Ground(0).get()));

    EXPECT_EQ(Posted(bus.get(), GST_MESSAGE_ERROR), nullptr);
    g_object_set(harness->element, "script", "{\"strings\": [{\"text\": \"x\", \"face\": \"amber\"}]}", nullptr);
    EXPECT_EQ(gst_harness_push(harness.get(), Ground(3.6).release()), GST_FLOW_ERROR);
    const Message error = Posted(bus.get(), GST_MESSAGE_ERROR);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(TextOf(error.get()),
              "1:36: strings[0].face: expected a colour #RRGGBB, such as \"#FFCC00\", found 'amber'");
    gst_element_set_bus(harness->element, nullptr);
}

TEST(GStreamerElement, DoesNotStartWithATitleThatCannotBeRead) {
    struct Case {
        std::string location, says;
        GQuark domain;
        gint code;
    };
    const std::string folder = CAPTIONFX_SOURCE_DIR "/examples";
    const std::vector<Case> cases = {
        {"missing.json", "cannot be opened", GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_FOUND},
        {folder, "is a folder", GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_OPEN_READ},
        {folder + "/CMakeLists.txt", "CMakeLists.txt:1:1", GST_STREAM_ERROR, GST_STREAM_ERROR_FORMAT}};
    for (const Case& row : cases) {
        const std::unique_ptr<GstElement, Release> element(
            GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("captionfxoverlay", nullptr))));
        const std::unique_ptr<GstBus, Release> bus(gst_bus_new());
        gst_element_set_bus(element.get(), bus.get());
        g_object_set(element.get(), "location", row.location.c_str(), nullptr);
        EXPECT_EQ(gst_element_set_state(element.get(), GST_STATE_PAUSED), GST_STATE_CHANGE_FAILURE);
        const Message message = Posted(bus.get(), GST_MESSAGE_ERROR);
        ASSERT_NE(message, nullptr) << row.location;
        GError* error = nullptr;
        gst_message_parse_error(message.get(), &error, nullptr);
        EXPECT_TRUE(g_error_matches(error, row.domain, row.code)) << error->message;
        EXPECT_NE(std::string(error->message).find(row.says), std::string::npos) << error->message;
        g_clear_error(&error);
        gst_element_set_state(element.get(), GST_STATE_NULL);
        gst_element_set_bus(element.get(), nullptr);
    }
}

TEST(GStreamerElement, DrawsYuvByTheLibrarysColorsAndWarnsOfOthers) {
    for (const auto& [colorimetry, warns] : {std::pair("bt601", false), std::pair("bt709", true)}) {
        const Harness harness(gst_harness_new("captionfxoverlay"));
        const std::unique_ptr<GstBus, Release> bus(gst_bus_new());
        gst_element_set_bus(harness->element, bus.get());
        g_object_set(harness->element, "location", kTitle, nullptr);
        const std::string caps = "video/x-raw, format=VUYA, width=160, height=90, framerate=25/1, colorimetry=";
        gst_harness_set_src_caps_str(harness.get(), (caps + colorimetry).c_str());
        EXPECT_EQ(PixelsOf(PushAndPull(harness, Ground(3.6)).get()), Drawn(3.6, PixelOrder::kVuya));
        EXPECT_EQ(Posted(bus.get(), GST_MESSAGE_WARNING) != nullptr, warns) << colorimetry;
        gst_element_set_bus(harness->element, nullptr);
    }
}

TEST(GStreamerElement, ShowsWhereAPipelineSeeks) {
    const std::string line =
        "videotestsrc pattern=solid-color foreground-color=0xFF203048 ! "
        "video/x-raw, format=BGRA, width=160, height=90, framerate=25/1 ! "
        "captionfxoverlay location=" +
        std::string(kTitle) + " ! appsink name=end";
    const std::unique_ptr<GstElement, Release> pipeline(gst_parse_launch(line.c_str(), nullptr));
    const std::unique_ptr<GstElement, Release> end(gst_bin_get_by_name(GST_BIN(pipeline.get()), "end"));
    gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);
    for (const double seconds : {9.0, 0.4, 3.6}) {
        ASSERT_EQ(gst_element_get_state(pipeline.get(), nullptr, nullptr, GST_CLOCK_TIME_NONE),
                  GST_STATE_CHANGE_SUCCESS);
        ASSERT_TRUE(gst_element_seek_simple(pipeline.get(), GST_FORMAT_TIME,
                                            static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                                            static_cast<gint64>(seconds * GST_SECOND)));
        gst_element_get_state(pipeline.get(), nullptr, nullptr, GST_CLOCK_TIME_NONE);
        GstSample* sample = nullptr;
        g_signal_emit_by_name(end.get(), "pull-preroll", &sample);
        const std::unique_ptr<GstSample, Release> shown(sample);
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(PixelsOf(gst_sample_get_buffer(shown.get())), Drawn(seconds)) << seconds;
    }
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
}

}  // namespace
}  // namespace captionfx
