// Font files made for a test: an installed face with some of its tables exchanged.
#pragma once

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/font_test_support.h"

namespace captionfx {

using Bytes = std::vector<uint8_t>;

inline void PutU16(Bytes& bytes, size_t value) {
    bytes.push_back(static_cast<uint8_t>(value >> 8U));
    bytes.push_back(static_cast<uint8_t>(value));
}
inline void PutU32(Bytes& bytes, size_t value) {
    PutU16(bytes, value >> 16U);
    PutU16(bytes, value);
}
inline void SetU16(Bytes& bytes, size_t offset, int value) {
    bytes.at(offset) = static_cast<uint8_t>(value >> 8);
    bytes.at(offset + 1) = static_cast<uint8_t>(value);
}

/// A font file's tables by tag.
using FontTables = std::map<std::string, Bytes>;

/// Those of DejaVu Sans that outlines, metrics and names need.
inline FontTables DejaVuTables() {
    const FontFamily* const family = FontRegistry::Instance().Catalog().Find(u"DejaVu Sans");
    if (family == nullptr) return {};
    std::ifstream stream(ChooseFace(*family, {}).Face->Path, std::ios::binary);
    const Bytes file{std::istreambuf_iterator<char>(stream), {}};
    const auto u32 = [&file](size_t at) {
        return size_t{file[at]} << 24U | size_t{file[at + 1]} << 16U | size_t{file[at + 2]} << 8U | file[at + 3];
    };
    FontTables tables;
    for (size_t entry = 12; entry < 12 + 16 * (u32(4) >> 16U); entry += 16) {
        const std::string tag(file.begin() + static_cast<ptrdiff_t>(entry),
                              file.begin() + static_cast<ptrdiff_t>(entry) + 4);
        const auto start = file.begin() + static_cast<ptrdiff_t>(u32(entry + 8));
        if (tag[0] != 'G' && tag != "kern") tables[tag] = Bytes(start, start + static_cast<ptrdiff_t>(u32(entry + 12)));
    }
    return tables;
}

inline Bytes FontFileOf(const FontTables& tables) {
    Bytes file{0, 1, 0, 0}, body;
    PutU16(file, tables.size());
    file.resize(12);
    for (const auto& [tag, table] : tables) {
        file.insert(file.end(), tag.begin(), tag.end());
        PutU32(file, 0);  // the checksum, which nobody reads
        PutU32(file, 12 + 16 * tables.size() + body.size());
        PutU32(file, table.size());
        body.insert(body.end(), table.begin(), table.end());
        body.resize((body.size() + 3) / 4 * 4);
    }
    file.insert(file.end(), body.begin(), body.end());
    return file;
}

/// A file with this content as long as the object lives.
class TemporaryFont {
public:
    explicit TemporaryFont(const Bytes& content) {
        static int serial = 0;
        path_ = testing::TempDir() + "captionfx-" + std::to_string(getpid()) + "-" + std::to_string(serial++) + ".ttf";
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()), std::ssize(content));
    }
    explicit TemporaryFont(const FontTables& tables) : TemporaryFont(FontFileOf(tables)) {}
    TemporaryFont(const TemporaryFont&) = delete;
    TemporaryFont& operator=(const TemporaryFont&) = delete;
    ~TemporaryFont() { std::remove(path_.c_str()); }

    [[nodiscard]] std::optional<FontFace> Read() const { return ReadFontFace(NewFreeTypeLibrary().get(), path_, 0); }

private:
    std::string path_;
};

}  // namespace captionfx
