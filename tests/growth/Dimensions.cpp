#include "tests/growth/Dimension.h"

#include <iterator>

namespace Corvid::Testing {

const std::vector<Dimension>& dimensions() {
    static const std::vector<Dimension> all = [] {
        std::vector<Dimension> made;
        for (const auto part :
             {setDimensions, propertyDimensions, fileDimensions, documentDimensions,
              contentDimensions, instructionDimensions, dictionaryDimensions}) {
            auto some = part();
            std::move(some.begin(), some.end(), std::back_inserter(made));
        }
        return made;
    }();
    return all;
}

} // namespace Corvid::Testing
