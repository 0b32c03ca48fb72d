#include "tests/growth/GrowthTable.h"

#include <sstream>

namespace Corvid::Testing {

namespace {

const char* nameOf(InputKind kind) {
    switch (kind) {
    case InputKind::mxf:
        return "MXF files";
    case InputKind::files:
        return "command line";
    case InputKind::xml:
        return "documents";
    default:
        return "dictionaries";
    }
}

} // namespace

std::string tableHead(InputKind kind) {
    std::string head = std::string("| ") + nameOf(kind) + " |";
    std::string rule = "|---|";
    for (const Operation& operation : operations()) {
        if (operation.takes(kind)) {
            head += " " + operation.name + " |";
            rule += "---|";
        }
    }
    return head + "\n" + rule + "\n";
}

std::string tableRow(const std::vector<Growth>& growths) {
    std::string row = "| " + growths.front().dimension->name + " |";
    for (const Growth& growth : growths) {
        row += " " + growth.cell() + " |";
    }
    return row + "\n";
}

std::string namesInTable(const std::string& table) {
    std::istringstream lines(table);
    std::string names;
    bool isHead = true;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() != '|') {
            isHead = true;
        } else if (isHead) {
            names += line + "\n"; // with the names of the columns
            isHead = false;
        } else {
            names += line.substr(0, line.find('|', 1)) + "\n";
        }
    }
    return names;
}

} // namespace Corvid::Testing
