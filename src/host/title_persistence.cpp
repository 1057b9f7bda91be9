// Titles as XML: loading, which fits a title to this machine, and saving.
#include <utility>

#include "host/guarded.h"
#include "host/title_object.h"
#include "layout/mend_structure.h"
#include "layout/string_layout.h"
#include "persist/title_xml_manager.h"
#include "platform/utf16.h"
#include "text/refont.h"

namespace captionfx {
namespace {

bool IsEmpty(const char16_t* path) {
    return path == nullptr || path[0] == u'\0';
}

/// A fresh manager's result of `use`, or the failure to have one.
template <class Use>
int32_t WithManager(PlatformServices& services, Use use) {
    return Guarded([&] {
        int32_t status = kTitleOk;
        TitleXMLManager manager(services, status);
        return status < 0 ? status : use(manager);
    });
}

/// Writes the line about a failure, if `status` is one, and returns it. A line that there is no memory for is left out.
template <class Line>
int32_t Log(DebugOutput& output, int32_t status, Line line) {
    if (status < 0) {
        static_cast<void>(Guarded([&] {
            output.Write(line());
            return kTitleOk;
        }));
    }
    return status;
}

int32_t LogBuffer(DebugOutput& output, std::string_view failure, int32_t status) {
    return Log(output, status, [&] { return failure; });
}

int32_t LogFile(DebugOutput& output, std::string_view failure, const char16_t* path, int32_t status) {
    return Log(output, status,
               [&] { return std::string(failure) + (path == nullptr ? "(null)" : Utf8Of(path)) + "!"; });
}

constexpr std::string_view kCannotLoadFile = "KVT_Title2: Failed to load title from file ";
constexpr std::string_view kCannotSaveFile = "KVT_Title2: Failed to save title to file ";

}  // namespace

template <class Read>
int32_t CCaptionFx::Load(Read read) {
    RemoveAllStrings();
    return WithManager(services_, [&](TitleXMLManager& manager) {
        std::vector<MetaString> strings;
        int32_t status = read(manager, strings);
        if (status < 0) return status;
        status = FitLoaded(strings);
        if (status < 0) return status;
        strings_ = std::move(strings);
        cache_.SavedFrameValid = false;
        return kTitleOk;
    });
}

int32_t CCaptionFx::FitLoaded(std::vector<MetaString>& strings) {
    const bool vertical = defaults_.DefaultString.Vertical != 0;
    for (MetaString& string : strings) {
        SetPlace(string);
        MendStructure(string, defaults_.DefaultParagraph, vertical);
        string.GlyphLayersList.resize(string.Characters.size());
    }
    const int32_t status = RefontAllStrings(services_, installedFonts_, defaults_, strings);
    if (status < 0) return status;
    for (MetaString& string : strings) LayoutString(services_.Fonts(), defaults_.DefaultFont, string);
    return kTitleOk;
}

int32_t CCaptionFx::LoadFromBuffer(const char16_t* xml) noexcept {
    if (xml == nullptr) return kTitleInvalidArgument;
    const int32_t status = Load([&](auto& manager, auto& strings) { return manager.LoadFromBuffer(xml, strings); });
    return LogBuffer(services_.Debug(), "KVT_Title2: Failed to load title from buffer!", status);
}

int32_t CCaptionFx::SaveToBuffer(char16_t* buffer, uint32_t* sizeInBytes) noexcept {
    if (sizeInBytes == nullptr) return kTitleInvalidArgument;
    const int32_t status = WithManager(
        services_, [&](TitleXMLManager& manager) { return manager.SaveToBuffer(strings_, buffer, *sizeInBytes); });
    return LogBuffer(services_.Debug(), "KVT_Title2: Failed to save title to buffer!", status);
}

int32_t CCaptionFx::LoadFromFile(const char16_t* path) noexcept {
    const int32_t status =
        IsEmpty(path) ? kTitleInvalidArgument
                      : Load([&](auto& manager, auto& strings) { return manager.LoadFromFile(path, strings); });
    return LogFile(services_.Debug(), kCannotLoadFile, path, status);
}

int32_t CCaptionFx::SaveToFile(const char16_t* path) noexcept {
    const int32_t status =
        IsEmpty(path)
            ? kTitleInvalidArgument
            : WithManager(services_, [&](TitleXMLManager& manager) { return manager.SaveToFile(strings_, path); });
    return LogFile(services_.Debug(), kCannotSaveFile, path, status);
}

int32_t CCaptionFx::LoadFromNode(void* element) noexcept {
    if (element == nullptr) return kTitleInvalidArgument;
    // What the element holds is no matter of the status, only whether it could be read at all.
    const int32_t status = Load([&](auto& manager, auto& strings) {
        if (manager.LoadFromNode(element, strings) < 0) strings.clear();
        return kTitleOk;
    });
    return status;
}

int32_t CCaptionFx::SaveToNode(void* element) noexcept {
    if (element == nullptr) return kTitleInvalidArgument;
    return WithManager(services_, [&](TitleXMLManager& manager) {
        static_cast<void>(manager.SaveToNode(strings_, element));  // the host sees in its element what came of it
        return kTitleOk;
    });
}

}  // namespace captionfx
