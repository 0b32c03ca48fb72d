#include "Corvid/Version.h"
#include "inspection/essence/Timecode.h"

#include <iostream>

int main() {
    std::cout << Corvid::version() << '\n';
    return Corvid::Inspection::timecodeText({25, 25, false}) == "00:00:01:00" ? 0 : 1;
}
