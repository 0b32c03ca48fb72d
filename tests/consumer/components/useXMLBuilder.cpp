#include "Corvid/Version.h"
#include "XMLBuilder/XMLBuilder.h"

#include <iostream>

int main() {
    std::cout << Corvid::version() << '\n';
    return Corvid::Platform::toUtf8(Corvid::XMLBuilder::getPrefix().text()).empty() ? 1 : 0;
}
