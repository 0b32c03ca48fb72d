#include "host/dictionary/compile/CompileTexts.h"

#include "host/base/Exceptions.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace Corvid::MetaMetadata {

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Exceptions::IOError(path + ": cannot be read", CORVID_HERE);
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

int compileTexts(int argc, char** argv,
                 const std::function<void(std::vector<DictionaryText>, std::ostream&)>& write) {
    if (argc < 3) {
        std::cerr << "usage: " << argv[0] << " OUTPUT TEXT...\n";
        return 2;
    }
    try {
        std::vector<std::string> paths(argv + 2, argv + argc);
        std::sort(paths.begin(), paths.end());
        std::vector<std::string> contents;
        std::vector<DictionaryText> texts;
        std::transform(paths.begin(), paths.end(), std::back_inserter(contents), contentOf);
        for (std::size_t i = 0; i != paths.size(); ++i) {
            texts.push_back({paths[i], contents[i]});
        }
        std::ofstream out(argv[1], std::ios::binary);
        write(std::move(texts), out);
        out.close();
        if (!out) {
            throw Exceptions::IOError(std::string(argv[1]) + ": cannot be written", CORVID_HERE);
        }
    } catch (const Exceptions::BaseException& error) {
        std::cerr << Platform::toUtf8(error.message()) << '\n';
        return 1;
    }
    return 0;
}

} // namespace Corvid::MetaMetadata
