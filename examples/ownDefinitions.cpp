// Reads a file with definitions of one's own beside the built-in ones, and prints every property of
// the sets of a class: ownDefinitions house.dict clip.mxf SourcePackage

#include "editing/values/ValueText.h"
#include "host/base/ExceptionText.h"
#include "host/dictionary/Dictionary.h"
#include "host/metadata/ElementItems.h"
#include "host/metadata/Names.h"
#include "host/metadata/Properties.h"
#include "host/mxf/File.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

using namespace Corvid;

namespace {

struct PrintWarnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override {
        std::cerr << "warning: " << warning.message() << '\n';
    }
};

std::string readAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("can't open " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The built-in definitions, and those of a text (docs/dictionary.md).
Templates::SharedPtr<MetaMetadata::Dictionary> withDefinitions(const std::string& path) {
    const std::string content = readAll(path);
    MetaMetadata::Dictionary::Texts texts;
    texts.push_back({path, content});
    return MetaMetadata::Dictionary::extend(*MetaMetadata::Dictionary::builtIn(), texts);
}

void print(const Metadata::MetadataSet& set, const Metadata::PartitionDictionary& tags) {
    std::cout << Metadata::className(set) << '\n';
    for (const Metadata::Element* element : Metadata::elementsOf(set)) {
        std::cout << "  " << Metadata::propertyName(tags, *element) << ":";
        const Metadata::ElementItems items(element);
        for (Types::u32 i = 0; i != items.size(); ++i) {
            std::cout << ' ' << Editing::valueText(items.at(i));
        }
        std::cout << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: ownDefinitions DEFINITIONS FILE.mxf CLASS\n";
        return 2;
    }
    try {
        PrintWarnings warnings;
        mxf::File file(argv[2], withDefinitions(argv[1]), warnings);
        const mxf::HeaderMetadata header = file.readMetadata();
        for (const auto* set : Metadata::findSets(*header.metadata, argv[3])) {
            print(*set, header.metadata->partitionDictionary());
        }
    } catch (...) {
        std::cerr << argv[2] << ": " << Exceptions::currentMessage() << '\n';
        return 1;
    }
}
