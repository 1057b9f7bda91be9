// The fonts of Windows.
#pragma once

#include <map>
#include <mutex>

#include "platform/windows/gdi_font.h"

namespace captionfx {

/// Safe on any number of threads.
class GdiFontSystem final : public FontSystem {
public:
    void EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) override;

    /// GDI's stock object. Its face may be an alias that is not enumerated, such as "MS Shell Dlg"; it is realised like
    /// any other.
    [[nodiscard]] LogFont DefaultGuiFont() override;

    [[nodiscard]] std::shared_ptr<const PlatformFont> Realise(const LogFont& request) override;

private:
    struct ByBytes {
        bool operator()(const LogFont& left, const LogFont& right) const;
    };

    std::mutex mutex_;
    std::map<LogFont, std::shared_ptr<const GdiFont>, ByBytes> fonts_;
};

}  // namespace captionfx
