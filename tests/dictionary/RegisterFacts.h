#pragma once

#include "tests/dictionary/DictionarySupport.h"

#include <gtest/gtest.h>

namespace Corvid::Testing {

using Row = std::map<std::string, std::string>;

inline std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            cells.emplace_back();
        } else if (c != '\r') {
            cells.back() += c;
        }
    }
    return cells;
}

/// Rows of a table of the registers by the names of its columns.
inline std::vector<Row> table(const char* name) {
    std::istringstream file(contentOf(registersDir() / name));
    std::string line;
    std::getline(file, line);
    const auto columns = cellsOf(line);
    std::vector<Row> rows;
    while (std::getline(file, line)) {
        const auto cells = cellsOf(line);
        Row row;
        for (std::size_t i = 0; i != std::min(columns.size(), cells.size()); ++i) {
            row[columns[i]] = cells[i];
        }
        rows.push_back(row);
    }
    return rows;
}

/// A test that compares with the tables of the SMPTE registers.
class WithRegisters : public ::testing::Test {
protected:
    void SetUp() override {
        if (registersDir().empty()) {
            GTEST_SKIP() << "no folder with the tables of the SMPTE registers";
        }
    }
};

} // namespace Corvid::Testing
