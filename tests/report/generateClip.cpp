#include "bench/GeneratedMetadata.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

/// generateClip SETS FILE writes an MXF file with header metadata of so many sets.
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: generateClip SETS FILE\n";
        return 2;
    }
    const auto file = Corvid::Bench::generateFile(std::strtoull(argv[1], nullptr, 10));
    std::ofstream out(argv[2], std::ios::binary);
    out.write(reinterpret_cast<const char*>(file.bytes.data()),
              static_cast<std::streamsize>(file.bytes.size()));
    return out.flush() ? 0 : 3;
}
