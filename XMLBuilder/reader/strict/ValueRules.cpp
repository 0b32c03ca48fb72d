#include "XMLBuilder/reader/strict/ValueRules.h"

#include "XMLBuilder/forms/ValueForms.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

bool hasRightForm(Types::Identifiers::Identifier type, const DocumentNode& node, EmptyParts empty,
                  Mistakes& mistakes) {
    ValueCheck check(node, empty, mistakes);
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return ValueForms::Form::check(check, As<Types::Class>{});
#include "host/types/ValueTypes.def"
    }
    return true;
}

void checkAttributes(const DocumentNode& element, const char16_t* uri,
                     std::initializer_list<const char16_t*> locals, Mistakes& mistakes) {
    static constexpr std::u16string_view xml = u"http://www.w3.org/XML/1998/namespace";
    static constexpr std::u16string_view xmlns = u"http://www.w3.org/2000/xmlns/";
    static constexpr std::u16string_view xsi = u"http://www.w3.org/2001/XMLSchema-instance";
    for (const auto* each = element.firstAttribute; each != nullptr; each = each->next) {
        if ((uri == nullptr || isSameNamespace(each->uri, uri)) &&
            std::any_of(locals.begin(), locals.end(),
                        [each](const char16_t* local) { return isSameText(local, each->local); })) {
            continue;
        }
        const std::u16string_view own = each->uri == nullptr ? std::u16string_view() : each->uri;
        if (own != xml && own != xmlns && own != xsi) {
            std::string expected;
            for (const char16_t* const local : locals) {
                expected += (expected.empty() ? ", expected " : " and ") + narrow(local);
            }
            mistakes.add(*each, "is no attribute of this element" +
                                    (expected.empty() ? ", expected none" : expected));
        }
    }
}

bool holdsTextOnly(const DocumentNode& node, Mistakes& mistakes) {
    const DocumentNode* const element = firstElement(node);
    if (element != nullptr) {
        mistakes.add(*element, "expected no element in this value");
    }
    return element == nullptr;
}

void refuseText(const DocumentNode& node, Mistakes& mistakes) {
    const Content content(node);
    if (const auto text = trimmed(content.text()); !text.empty()) {
        mistakes.add(node, "has text " + quoted(text) + " between its elements, expected none");
    }
}

} // namespace Corvid::XMLBuilder
