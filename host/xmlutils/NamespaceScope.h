#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Corvid::XMLUtils {

/// Which prefix stands for which namespace at one place of a document. The empty prefix is the
/// default namespace, the empty URI no namespace. Texts given by view are borrowed.
class NamespaceScope {
public:
    using View = std::u16string_view;

    /// Starts an element; what it declares ends with the matching leave().
    void enter() { marks_.push_back(declared_.size()); }
    void leave();

    /// The namespace of a prefix, empty when it has none.
    View uriOf(View prefix) const;

    /// Makes the prefix stand for the namespace until the element is left.
    void declare(View prefix, View uri);

    /// A prefix that stands for nothing here, and was never returned before.
    std::u16string unusedPrefix();

private:
    // A declaration remembers what it hides, by its place in declared_, counted from 1.
    struct Declaration {
        View prefix;
        View uri;
        std::size_t hidden;
    };

    std::vector<Declaration> declared_;
    std::vector<std::size_t> marks_;
    std::unordered_map<View, std::size_t> current_;
    unsigned long prefixesMade_ = 0;
};

} // namespace Corvid::XMLUtils
