#include "host/base/Exceptions.h"
#include "host/base/Text.h"

#include <iostream>

int main() {
    std::cout << Corvid::Platform::toUtf8(Corvid::Platform::widen("Corvid")) << '\n';
    try {
        throw Corvid::Exceptions::InvalidFormat("thrown here", CORVID_HERE);
    } catch (const Corvid::Exceptions::BaseException& e) {
        return e.code() == 8 ? 0 : 1;
    }
}
