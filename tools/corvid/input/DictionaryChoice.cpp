#include "tools/corvid/input/DictionaryChoice.h"

#include "tools/corvid/input/ReadWhole.h"

#include <algorithm>
#include <iterator>

namespace Corvid::Tool {

std::vector<std::string> inputsOf(std::vector<std::string> files, const DictionaryChoice& choice) {
    files.insert(files.end(), choice.files.begin(), choice.files.end());
    return files;
}

Templates::SharedPtr<MetaMetadata::Dictionary> loadDictionary(const DictionaryChoice& choice,
                                                              std::string* read) {
    using MetaMetadata::Dictionary;
    auto base = choice.registeredOnly ? Dictionary::registered() : Dictionary::builtIn();
    if (choice.files.empty()) {
        return base;
    }
    std::vector<std::string> contents;
    Dictionary::Texts texts;
    std::transform(choice.files.begin(), choice.files.end(), std::back_inserter(contents),
                   [](const std::string& path) {
                       return readWhole(path, greatestDictionary, "a dictionary");
                   });
    for (std::size_t i = 0; i != contents.size(); ++i) {
        texts.push_back({choice.files[i], contents[i]});
        if (read != nullptr) {
            *read += contents[i] + '\0'; // so that two texts are not one
        }
    }
    return Dictionary::extend(*base, texts);
}

} // namespace Corvid::Tool
