#pragma once

#include "XMLBuilder/XML2Partition.h"
#include "tests/XMLBuilder/XmlOf.h"
#include "tests/support/ThingsDictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace Corvid::Testing {

/// The namespaces that documents declare at their root.
inline constexpr const char* allNamespaces =
    " xmlns:s377m=\"urn:SMPTE:S377M\" xmlns:rp210=\"urn:SMPTE:RP210\""
    " xmlns:groups=\"urn:SMPTE:Groups:MXF\" xmlns:types=\"urn:SMPTE:Types:MXF\""
    " xmlns:s422mTypes=\"urn:SMPTE:S422MTypes:MXF\" xmlns:t=\"urn:test\""
    " xmlns:e=\"urn:test:elements\"";

inline std::string documentOf(const std::string& inside, const std::string& names = allNamespaces) {
    return "<s377m:MetadataSets" + names + ">" + inside + "</s377m:MetadataSets>";
}

inline XML2Partition::SetList readXml(Model& model, const std::string& xml) {
    return XML2Partition::getPartitionMetadataFromBuffer(
        reinterpret_cast<const unsigned char*>(xml.data()), static_cast<unsigned>(xml.size()),
        &model.partition);
}

/// What a failure says and where it says that it comes from.
struct Failure {
    std::string message;
    std::string file;
    int line = 0;
    unsigned code = 0;
};

/// The exception of that class that the body throws; a failed test where it throws none.
template <class Exception, class Body> Failure failureOf(Body body) {
    try {
        body();
    } catch (const Exceptions::BaseException& e) {
        const std::string message = Platform::toUtf8(e.message());
        EXPECT_NE(dynamic_cast<const Exception*>(&e), nullptr) << "another exception: " << message;
        return {message, e.file(), e.line(), e.code()};
    }
    ADD_FAILURE() << "no exception";
    return {};
}

/// Reads documents over the dictionary of things.
class Things : public testing::Test {
protected:
    Things() : model_(Model::extendedBy(dictionary())) {}

    static const std::string& dictionary() {
        static const std::string text = thingsDictionary();
        return text;
    }

    XML2Partition::SetList readSets(const std::string& inside) {
        return readXml(model_, documentOf(inside));
    }

    /// Reads a document with one thing.
    Model::Set& readThing(const std::string& inside, const std::string& attributes = "") {
        return *readSets("<t:Thing" + attributes + ">" + inside + "</t:Thing>").front();
    }

    /// The element of a property that the set's class lists.
    template <class Kind = Metadata::SimpleElement>
    static Kind& elementOf(const Model::Set& set, const std::string& tag) {
        for (const auto& [label, element] : set) {
            const auto* definition = element->definition();
            if (Platform::toUtf8(definition->attribute("XMLTagName")) == tag) {
                return dynamic_cast<Kind&>(*element);
            }
        }
        throw std::invalid_argument("no property " + tag);
    }

    /// The bytes of a value in hexadecimal; "none" where there is none.
    static std::string bytesOf(const Types::DataType* value) {
        if (value == nullptr) {
            return "none";
        }
        std::string text;
        for (int i = 0; i != value->serializedSize(); ++i) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", value->rawBuffer()[i]);
            text += digits;
        }
        return text;
    }

    /// The bytes that a thing's property of that name has after reading its content.
    std::string bytesRead(const std::string& tag, const std::string& content) {
        const auto& set = readThing("<e:" + tag + ">" + content + "</e:" + tag + ">");
        return bytesOf(elementOf(set, tag).value());
    }

    /// What reading that content of a property throws.
    template <class Exception = Exceptions::InvalidFormat>
    Failure failureOfReading(const std::string& tag, const std::string& content) {
        return failureOf<Exception>([&] { bytesRead(tag, content); });
    }

    Model model_;
};

} // namespace Corvid::Testing
