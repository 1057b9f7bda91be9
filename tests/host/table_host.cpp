// A host without the library's header: it loads the library, takes the table of operations for what it is, a row of
// addresses, and calls all 42 by their number through functions that it declares itself, as a program of another
// compiler does. The records are declared here a second time, as bytes that are laid out by hand. Prints what failed.
//
//     captionfx_table_host FOLDER NAME      the folder of the library, and its name without prefix and suffix
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <set>
#include <vector>

#include "support/loaded_library.h"

namespace {

using Table = void* const*;
struct Title {
    Table operations;
};

int failures = 0;
std::set<int> called;

/// Operation `slot` of a title: the title is the first argument of a plain function.
template <class Result, class... Arguments>
Result Call(Title* title, int slot, Arguments... arguments) {
    called.insert(slot);
    return reinterpret_cast<Result (*)(Title*, Arguments...)>(title->operations[slot])(title, arguments...);
}

template <class Value>
void Expect(int slot, const char* what, Value actual, Value expected) {
    if (actual == expected) return;
    ++failures;
    std::printf("slot %d: %s is %.9g, not %.9g\n", slot, what, static_cast<double>(actual),
                static_cast<double>(expected));
}

constexpr int32_t kOk = 0, kBadArgument = static_cast<int32_t>(0x80070057U), kNull = static_cast<int32_t>(0x80004003U);

/// A record between guard bytes: a library that takes it for larger than it is would write over them.
template <size_t Size>
struct Record {
    uint8_t bytes[Size] = {};
    uint8_t guard[16];

    Record() { std::memset(guard, kGuard, sizeof guard); }
    template <class Field>
    Field& At(size_t offset) {
        return *reinterpret_cast<Field*>(bytes + offset);
    }
    [[nodiscard]] bool IsGuarded() const {
        return std::ranges::all_of(guard, [](uint8_t byte) { return byte == kGuard; });
    }
    static constexpr uint8_t kGuard = 0xA5;
};

using Font = Record<88>;
using Spacing = Record<8>;
using Paragraph = Record<24>;
using String = Record<544>;
using Face = Record<24>;
using Border = Record<28>;
using Shadow = Record<40>;
using Settings = Record<60>;
using Rect = Record<16>;

/// Fills a record with numbers, sets it through one slot and reads it back through the other.
template <class Filled>
void RoundTrip(Title* title, int setSlot, int getSlot, Filled& set) {
    Filled got;
    Expect(setSlot, "status", Call<int32_t>(title, setSlot, &set), kOk);
    // A character that is not there: the default is told all the same.
    Expect(getSlot, "status", Call<int32_t>(title, getSlot, 0, 99, &got), kBadArgument);
    Expect(getSlot, "difference", std::memcmp(set.bytes, got.bytes, sizeof set.bytes), 0);
    Expect(getSlot, "guard", got.IsGuarded(), true);
}

template <class Filled>
Filled Numbered() {
    Filled record;
    for (size_t i = 0; i < sizeof record.bytes; i += 4) record.template At<int32_t>(i) = static_cast<int32_t>(i) + 1;
    return record;
}

void SetUp(Title* title) {
    Settings settings;
    Expect(20, "status", Call<int32_t>(title, 20, &settings), kOk);
    Expect(20, "Width", settings.At<int32_t>(20), 320);
    Expect(20, "Height", settings.At<int32_t>(24), 240);
    Expect(20, "ScaleY", settings.At<float>(32), 1.0F);
    Expect(20, "ClipRect.bottom", settings.At<int32_t>(48), 240);
    Expect(20, "MaxThreads: guard", settings.IsGuarded(), true);
    settings.At<int32_t>(20) = settings.At<int32_t>(44) = 200;  // Width, ClipRect.right
    settings.At<int32_t>(24) = settings.At<int32_t>(48) = 100;  // Height, ClipRect.bottom
    Expect(12, "status", Call<int32_t>(title, 12, &settings), kOk);

    Expect(0, "index", Call<int32_t>(title, 0), 0);
    auto face = Numbered<Face>();
    auto border = Numbered<Border>();
    auto shadow = Numbered<Shadow>();
    Spacing spacing;
    auto paragraph = Numbered<Paragraph>();
    spacing.At<float>(0) = 1.5F;
    spacing.At<float>(4) = -2.0F;
    RoundTrip(title, 6, 14, face);
    RoundTrip(title, 7, 15, border);
    RoundTrip(title, 8, 16, shadow);
    RoundTrip(title, 9, 17, spacing);
    RoundTrip(title, 10, 18, paragraph);

    String string;
    string.At<float>(0) = 20.0F;                          // Left
    string.At<float>(8) = 1e9F;                           // WidthLimit
    std::memcpy(string.bytes + 20, "PATH_NOEFFECT", 14);  // PathID
    string.At<float>(280) = 1.0F;                         // PathProgress
    Expect(11, "status", Call<int32_t>(title, 11, &string), kOk);
    Expect(40, "status", Call<int32_t>(title, 40), kOk);
    Expect(23, "strings after the reset", Call<int32_t>(title, 23), 0);
    Expect(11, "status", Call<int32_t>(title, 11, &string), kOk);
    Expect(12, "status", Call<int32_t>(title, 12, &settings), kOk);

    Font font;
    const char16_t name[] = u"DejaVu Sans";
    std::memcpy(font.bytes, name, sizeof name);
    font.At<uint32_t>(64) = 1;   // CharSet
    font.At<float>(68) = 48.0F;  // Size
    Call<void>(title, 5, &font);
}

void EditAndReadBack(Title* title) {
    Expect(0, "index", Call<int32_t>(title, 0), 0);
    Expect(3, "characters", Call<int32_t>(title, 3, 0, 0, u"Hi\r\nAXB"), 7);
    Expect(4, "characters", Call<int32_t>(title, 4, 0, 5, 1), 6);
    Expect(21, "characters", Call<int32_t>(title, 21, 0), 6);
    Expect(22, "lines", Call<int32_t>(title, 22, 0), 2);
    Expect(24, "paragraphs", Call<int32_t>(title, 24, 0), 2);
    char16_t text[8] = {};
    Expect(29, "characters", Call<int32_t>(title, 29, 0, static_cast<char16_t*>(text)), 6);
    Expect(29, "text", std::memcmp(text, u"Hi\r\nAB", 14), 0);

    Font font;
    Expect(13, "status", Call<int32_t>(title, 13, 0, 0, &font), kOk);
    Expect(13, "Size", font.At<float>(68), 48.0F);
    Expect(13, "guard", font.IsGuarded(), true);
    String string;
    Expect(19, "status", Call<int32_t>(title, 19, 0, &string), kOk);
    Expect(19, "Left", string.At<float>(0), 20.0F);
    Expect(19, "guard", string.IsGuarded(), true);

    // 'A' of DejaVu Sans advances 1401 of 2048 units, in a cell of 2384.
    Rect rect;
    Expect(25, "status", Call<int32_t>(title, 25, 0, 4, &rect, 1), kOk);
    Expect(25, "x", rect.At<float>(0), 20.0F);
    Expect(25, "width", rect.At<float>(8), 1401.0F * 48 / 2048);
    Expect(25, "height", rect.At<float>(12), 2384.0F * 48 / 2048);
    Expect(26, "status", Call<int32_t>(title, 26, 0, 1, &rect), kOk);
    Expect(27, "status", Call<int32_t>(title, 27, 0, 1, &rect), kOk);
    Expect(28, "status", Call<int32_t>(title, 28, 0, &rect), kOk);
    Expect(28, "guard", rect.IsGuarded(), true);
}

void DrawAndSave(Title* title) {
    std::vector<uint32_t> frame(200 * 100, 0xFF000000U);
    Expect(36, "status", Call<int32_t>(title, 36, frame.data(), 0.0F), kOk);
    Rect dirty;
    Expect(38, "status", Call<int32_t>(title, 38, &dirty), kOk);
    Expect(38, "null", Call<int32_t>(title, 38, static_cast<void*>(nullptr)), kNull);
    Expect(38, "something was drawn", dirty.At<int32_t>(8) > dirty.At<int32_t>(0), true);
    Expect(37, "status", Call<int32_t>(title, 37, 0), kOk);
    Expect(39, "status", Call<int32_t>(title, 39), kOk);

    uint32_t size = 0;
    Expect(31, "status", Call<int32_t>(title, 31, static_cast<char16_t*>(nullptr), &size), kOk);
    std::vector<char16_t> xml(size / 2 + 1);
    Expect(31, "status", Call<int32_t>(title, 31, xml.data(), &size), kOk);
    Expect(30, "status", Call<int32_t>(title, 30, static_cast<const char16_t*>(xml.data())), kOk);
    std::vector<uint32_t> again(frame.size(), 0xFF000000U);
    Expect(36, "status", Call<int32_t>(title, 36, again.data(), 0.0F), kOk);
    Expect(30, "the loaded title looks the same", again == frame, true);

    const char16_t file[] = u"table_host.xml";
    Expect(33, "status", Call<int32_t>(title, 33, static_cast<const char16_t*>(file)), kOk);
    Expect(32, "status", Call<int32_t>(title, 32, static_cast<const char16_t*>(file)), kOk);
    std::remove("table_host.xml");
    Expect(23, "strings", Call<int32_t>(title, 23), 1);
    Expect(34, "null", Call<int32_t>(title, 34, static_cast<void*>(nullptr)), kBadArgument);
    Expect(35, "null", Call<int32_t>(title, 35, static_cast<void*>(nullptr)), kBadArgument);

    Expect(1, "status", Call<int32_t>(title, 1, 0), kOk);
    Expect(21, "characters", Call<int32_t>(title, 21, 0), 0);
    Expect(2, "status", Call<int32_t>(title, 2), kOk);
    Expect(23, "strings", Call<int32_t>(title, 23), 0);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const captionfx::test::LoadedLibrary library(argv[1], argv[2]);
    if (!library.IsLoaded()) {
        std::printf("%s cannot be loaded from %s\n", argv[2], argv[1]);
        return 1;
    }
    auto* const create = library.Find<Title*()>("GetTitleHost");
    auto* const release = library.Find<int32_t(Title*)>("ReleaseTitleHost");
    Title* const title = create();
    SetUp(title);
    EditAndReadBack(title);
    DrawAndSave(title);
    Expect(41, "released", release(title), kOk);
    Title* const second = create();
    Expect(41, "the object", Call<void*>(second, 41, 1U) == second, true);

    constexpr size_t kSlots = 42;
    if (called.size() != kSlots) ++failures;
    std::printf("%zu of %zu slots called, %d failures\n", called.size(), kSlots, failures);
    return failures == 0 ? 0 : 1;
}
