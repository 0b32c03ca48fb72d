#pragma once

#include "tests/support/Paths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace Corvid::Testing {

/// Compares a text with tests/golden/<name>; with CORVID_UPDATE_GOLDEN=1 in the environment, writes
/// it there instead. A difference is shown as the first line that differs, with those around it.
inline testing::AssertionResult matchesGolden(const std::string& text, const std::string& name) {
    const std::string path = (sourceDir() / "tests/golden" / name).string();
    if (const char* update = std::getenv("CORVID_UPDATE_GOLDEN");
        update && std::string(update) == "1") {
        std::ofstream(path, std::ios::binary) << text;
        return testing::AssertionSuccess() << "rewrote " << path;
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return testing::AssertionFailure() << path << " is not there; the text would be:\n" << text;
    }
    std::stringstream golden;
    golden << file.rdbuf();
    if (golden.str() == text) {
        return testing::AssertionSuccess();
    }
    std::istringstream expected(golden.str());
    std::istringstream actual(text);
    std::string wanted;
    std::string got;
    std::string before;
    for (int line = 1;; ++line) {
        const bool more = static_cast<bool>(std::getline(expected, wanted));
        const bool also = static_cast<bool>(std::getline(actual, got));
        if (more != also || wanted != got) {
            return testing::AssertionFailure()
                   << path << " line " << line << ":\n  before:   " << before
                   << "\n  expected: " << (more ? wanted : "(the end)")
                   << "\n  found:    " << (also ? got : "(the end)");
        }
        if (!more) {
            return testing::AssertionFailure() << path << " differs in its line ends";
        }
        before = wanted;
    }
}

} // namespace Corvid::Testing
