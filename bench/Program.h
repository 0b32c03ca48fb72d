#pragma once

#include "host/base/Exceptions.h"

#include <exception>
#include <iostream>

namespace Corvid::Bench {

/// What main() does: runs the program and reports a failure, so that nothing is thrown past the
/// owners of the files that the program makes.
/// @param run  gives the exit status.
template <class Run> int runProgram(const char* name, Run run) {
    try {
        return run();
    } catch (const Exceptions::BaseException& error) {
        std::cerr << name << ": " << Platform::toUtf8(error.message()) << std::endl;
    } catch (const std::exception& error) {
        std::cerr << name << ": " << error.what() << std::endl;
    }
    return 1;
}

} // namespace Corvid::Bench
