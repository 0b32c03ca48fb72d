#include "Corvid/Version.h"
#include "host/xmlutils/Initializer.h"

#include <iostream>

int main() {
    std::cout << Corvid::version() << '\n';
    return Corvid::XMLUtils::Initializer::instance().domImplementation() != nullptr ? 0 : 1;
}
