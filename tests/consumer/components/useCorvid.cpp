#include "Corvid/Version.h"

#include <cstring>
#include <iostream>

int main() {
    std::cout << Corvid::version() << '\n';
    return std::strcmp(Corvid::version(), CORVID_VERSION) == 0 ? 0 : 1;
}
