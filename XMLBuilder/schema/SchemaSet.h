#pragma once

#include "XMLBuilder/schema/SchemaDocument.h"

namespace Corvid::XMLBuilder {

/// The documents under construction, by prefix.
class SchemaSet {
public:
    using Documents = std::map<std::u16string, SchemaDocument>;

    /// The document of a namespace, made on first use.
    SchemaDocument& of(const Names::Namespace& names) {
        return documents_.try_emplace(names.prefix, names).first->second;
    }

    Documents& documents() noexcept { return documents_; }

private:
    Documents documents_;
};

} // namespace Corvid::XMLBuilder
