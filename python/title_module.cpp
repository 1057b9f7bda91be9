// The part of the Python module that is not Python: a title that draws onto NumPy arrays. The package `captionfx` puts
// strings, styles and timelines in front of it.
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "tools/effect_list.h"
#include "tools/script/effect_names.h"
#include "tools/text_encoding.h"
#include "tools/title_file.h"
#include "tools/title_overlay.h"

namespace py = pybind11;

namespace captionfx {
namespace {

/// A title that cannot be read. Python knows it as a ValueError.
struct TitleError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

constexpr py::ssize_t kPixelBytes = 4;

std::string Repr(const py::object& object) {
    return py::repr(object).cast<std::string>();
}

py::tuple ShapeOf(const py::array& array) {
    return array.attr("shape");
}

/// Texts and boxes of the strings, as they are before a frame decides which of them are held.
struct StringFacts {
    std::vector<std::string> texts;
    std::vector<std::tuple<float, float, float, float>> boxes;
};

StringFacts FactsOf(IKVT_CaptionFx& title) {
    StringFacts facts;
    const int32_t count = title.GetStringCount();
    for (int32_t i = 0; i < count; ++i) {
        std::u16string text(static_cast<size_t>(title.GetCharCount(i)) + 1, u'\0');
        title.GetStringText(i, text.data());
        text.pop_back();
        facts.texts.push_back(Utf8FromUtf16(text));
        TitleRectF box{};
        title.GetStringRect(i, &box);
        facts.boxes.emplace_back(box.x, box.y, box.width, box.height);
    }
    return facts;
}

/// What Python calls a core: all work is done without the interpreter's lock. Python's threads may share it, so a lock
/// of its own lets one in at a time; it is taken when the interpreter's lock is gone, or the two would wait for each
/// other.
class TitleCore {
public:
    TitleCore(TitleText text, TitleOverlay::Setup setup)
        : text_(std::move(text)), setup_(setup), overlay_(text_, setup_), facts_(FactsOf(overlay_.Title())) {}

    [[nodiscard]] FrameSize Frame() const { return overlay_.Frame(); }
    [[nodiscard]] float Duration() const { return overlay_.Duration(); }
    [[nodiscard]] const StringFacts& Facts() const { return facts_; }

    void Draw(float seconds, FrameRows rows) {
        const std::scoped_lock lock(mutex_);
        overlay_.Draw(seconds, rows);
    }

    /// From a title of its own: the one that draws may hold a few of its strings alone.
    void Save(const std::filesystem::path& path) const { SaveTitle(TitleOverlay(text_, setup_).Title(), path); }

private:
    TitleText text_;
    TitleOverlay::Setup setup_;
    std::mutex mutex_;
    TitleOverlay overlay_;
    StringFacts facts_;
};

std::unique_ptr<TitleCore> MakeCore(TitleText text, std::optional<std::pair<int32_t, int32_t>> frame, float scale,
                                    bool isVuya) {
    constexpr int32_t kLargestSide = 16384;
    if (frame && (frame->first < 1 || frame->second < 1 || frame->first > kLargestSide || frame->second > kLargestSide))
        throw py::value_error("frame: width and height must be 1 to 16384");
    if (!(scale > 0.0F) || !std::isfinite(scale)) throw py::value_error("scale: must be above 0");
    TitleOverlay::Setup setup{.frame = {}, .order = isVuya ? PixelOrder::kVuya : PixelOrder::kBgra, .scale = scale};
    if (frame) setup.frame = FrameSize{frame->first, frame->second};
    const py::gil_scoped_release unlocked;
    try {
        return std::make_unique<TitleCore>(std::move(text), setup);
    } catch (const std::runtime_error& error) {
        throw TitleError(error.what());
    }
}

/// Says what is wrong with an array that is to be drawn on.
void CheckTarget(const py::array& out, FrameSize frame) {
    if (!py::isinstance<py::array_t<uint8_t>>(out))
        throw py::type_error("out: the array must be of uint8, not " + Repr(out.dtype()));
    if (out.ndim() != 3 || out.shape(0) != frame.height || out.shape(1) != frame.width || out.shape(2) != kPixelBytes) {
        throw py::value_error("out: the shape must be " + Repr(py::make_tuple(frame.height, frame.width, kPixelBytes)) +
                              ", not " + Repr(ShapeOf(out)));
    }
    if (!out.writeable()) throw py::value_error("out: the array is read-only");
    if (out.strides(2) != 1 || (frame.width > 1 && out.strides(1) != kPixelBytes))
        throw py::value_error("out: the pixels of a row must lie together; np.ascontiguousarray makes such a copy");
}

py::array Render(TitleCore& core, double time, const std::optional<py::array>& out) {
    if (!std::isfinite(time)) throw py::value_error("time: must be a finite number of seconds");
    const FrameSize frame = core.Frame();
    py::array target = out ? *out
                           : py::array(py::module_::import("numpy").attr("zeros")(
                                 py::make_tuple(frame.height, frame.width, kPixelBytes), "uint8"));
    CheckTarget(target, frame);
    const FrameRows rows{static_cast<uint8_t*>(target.mutable_data()), target.strides(0)};
    {
        const py::gil_scoped_release unlocked;
        core.Draw(static_cast<float>(time), rows);
    }
    return target;
}

void Save(const TitleCore& core, const std::filesystem::path& path) {
    std::string failure;
    {
        const py::gil_scoped_release unlocked;
        try {
            core.Save(path);
        } catch (const std::runtime_error& error) {
            failure = error.what();
        }
    }
    if (failure.empty()) return;
    PyErr_SetString(PyExc_OSError, failure.c_str());
    throw py::error_already_set();
}

std::vector<std::string> Effects() {
    std::vector<std::string> names;
    for (const EffectInfo& effect : EffectList()) names.push_back(NameOfEffect(effect.name));
    return names;
}

// NOLINTNEXTLINE: the macro's own code
PYBIND11_MODULE(_captionfx, module) {
    module.doc() = "Titles that draw onto NumPy arrays.";
    py::register_exception<TitleError>(module, "TitleError", PyExc_ValueError).attr("__doc__") =
        "A title that cannot be read: one line with the place and the reason.";
    module.def("effects", &Effects);
    py::class_<TitleCore>(module, "TitleCore")
        .def_static(
            "from_file",
            [](const std::filesystem::path& path, std::optional<std::pair<int32_t, int32_t>> frame, float scale,
               bool vuya) { return MakeCore(path, frame, scale, vuya); },
            py::arg("path"), py::arg("frame"), py::arg("scale"), py::arg("vuya"))
        .def_static(
            "from_script",
            [](std::string text, std::optional<std::pair<int32_t, int32_t>> frame, float scale, bool vuya) {
                return MakeCore(ScriptText{std::move(text)}, frame, scale, vuya);
            },
            py::arg("text"), py::arg("frame"), py::arg("scale"), py::arg("vuya"))
        .def_property_readonly("frame",
                               [](const TitleCore& core) { return std::pair(core.Frame().width, core.Frame().height); })
        .def_property_readonly("duration", &TitleCore::Duration)
        .def_property_readonly("texts", [](const TitleCore& core) { return core.Facts().texts; })
        .def_property_readonly("boxes", [](const TitleCore& core) { return core.Facts().boxes; })
        .def("render", &Render, py::arg("time"), py::arg("out").none(true))
        .def("save", &Save, py::arg("path"));
}

}  // namespace
}  // namespace captionfx
