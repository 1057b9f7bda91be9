// Requests for fonts, and tables of measured answers.
#pragma once

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/font_registry.h"

namespace captionfx {

/// A request as titles make it.
inline LogFont Request(std::string_view asciiName, int32_t weight = kRegularWeight, bool italic = false) {
    LogFont request = MakeLogFont(std::u16string(asciiName.begin(), asciiName.end()), {weight > 550, italic});
    request.lfHeight = -2048;
    request.lfWeight = weight;
    return request;
}

inline bool IsInstalled(std::string_view asciiName) {
    return FontRegistry::Instance().Catalog().Find(std::u16string(asciiName.begin(), asciiName.end())) != nullptr;
}

/// One line of a table whose first three columns are face, weight and italic.
struct MeasuredRow {
    std::vector<std::string> Cells;

    [[nodiscard]] LogFont Font() const { return Request(Cells[0], Decimal(1), Decimal(2) != 0); }
    [[nodiscard]] int32_t Decimal(size_t column) const { return std::stoi(Cells.at(column)); }
    [[nodiscard]] uint64_t Hex(size_t column) const { return std::stoull(Cells.at(column), nullptr, 16); }
    [[nodiscard]] char16_t Unit(size_t column) const { return static_cast<char16_t>(Hex(column)); }
    [[nodiscard]] int32_t Fixed(size_t column) const {
        return static_cast<int32_t>(static_cast<uint32_t>(Hex(column)));
    }

    [[nodiscard]] std::string Text() const {
        std::string text;
        for (const std::string& cell : Cells) text += cell + ' ';
        return text;
    }
};

/// The rows of one face in a file of the test data.
inline std::vector<MeasuredRow> ReadMeasured(const std::string& file, std::string_view face) {
    std::ifstream stream(std::string(CAPTIONFX_TEST_DATA) + "/" + file);
    std::vector<MeasuredRow> rows;
    for (std::string line; std::getline(stream, line);) {
        MeasuredRow row;
        std::istringstream cells(line);
        for (std::string cell; std::getline(cells, cell, ',');) row.Cells.push_back(cell);
        if (!row.Cells.empty() && row.Cells[0] == face) rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace captionfx
