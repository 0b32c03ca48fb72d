#include "XMLBuilder/schema/FrameSchema.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/schema/ValueSchema.h"
#include "host/dictionary/Dictionary.h"

#include <set>

namespace Corvid::XMLBuilder {

namespace {

namespace Identifiers = Types::Identifiers;
using xercesc::DOMElement;

constexpr const XMLCh* anySet = u"AnySet";
constexpr const XMLCh* unbounded = u"unbounded";

class Frames {
public:
    Frames(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary)
        : dictionary_(dictionary), root_(schemas.of(Names::s377m)),
          groups_(schemas.of(Names::groups)), types_(schemas.of(Names::types)) {}

    void describe() {
        describeRoot();
        describeTargets();
        describeReferences();
        describeExtensions();
        describeDarkSets();
    }

private:
    void describeRoot() {
        auto& root = root_.define(u"xs:element", u"MetadataSets");
        auto& sets = root_.add(root_.add(root, u"xs:complexType"), u"xs:sequence");
        addGroup(root_, sets, anySet);
        root_.add(
            sets, u"xs:element",
            {{u"ref", root_.refer(Names::groups, Names::localPart(Names::floatingDarkMetadata))},
             {u"minOccurs", u"0"}});
    }

    /// Any number of members of a group of elements.
    void addGroup(SchemaDocument& document, DOMElement& parent, const XMLCh* group) {
        document.add(parent, u"xs:group",
                     {{u"ref", document.refer(Names::groups, group)},
                      {u"minOccurs", u"0"},
                      {u"maxOccurs", unbounded}});
    }

    /// The sets as a group of elements to choose from, and links, which are no members of it.
    void describeTargets() {
        auto& sets = groups_.add(groups_.define(u"xs:group", anySet), u"xs:choice");
        for (auto i = dictionary_.metaMetadataSetBegin(); i != dictionary_.metaMetadataSetEnd();
             ++i) {
            const ClassName& name = nameOf(**i);
            groups_.add(sets, u"xs:element",
                        {{u"ref", groups_.refer(name.names, name.local.text)}});
        }
        root_.define(u"xs:element", Names::localPart(Names::danglingLink),
                     {{u"type", root_.refer(Names::groups, Frame::link)}});

        auto& link = groups_.define(u"xs:complexType", Frame::link);
        const XMLCh* const target = Names::localPart(Names::targetInstance);
        groups_.add(link, u"xs:attribute",
                    {{u"ref", groups_.refer(Names::types, target)}, {u"use", u"required"}});
        types_.define(u"xs:attribute", target,
                      {{u"type", schemaTypeOf(Identifiers::UUID, types_)}});
    }

    /// What a reference holds is any link or set: to choose among all of them by name makes some
    /// validators take seconds to start. A set that was written before, or that nothing is known
    /// of, leaves its place empty.
    void describeReferences() {
        for (const auto& [name, most] :
             {std::pair{Frame::reference, u"1"}, std::pair{Frame::references, unbounded}}) {
            auto& type = groups_.define(u"xs:complexType", name);
            auto& sequence = groups_.add(type, u"xs:sequence");
            groups_.add(
                sequence, u"xs:any",
                {{u"namespace", namespacesOf(dictionary_.metaMetadataSetBegin(),
                                             dictionary_.metaMetadataSetEnd(), {Names::s377m.uri})},
                 {u"processContents", u"strict"},
                 {u"minOccurs", u"0"},
                 {u"maxOccurs", most}});
        }
    }

    /// The namespaces of definitions, as a list.
    template <class Iterator>
    static std::u16string namespacesOf(Iterator begin, Iterator end,
                                       std::set<std::u16string> uris = {}) {
        for (; begin != end; ++begin) {
            uris.insert(nameOf(**begin).names.uri);
        }
        std::u16string list;
        for (const auto& uri : uris) {
            list += (list.empty() ? u"" : u" ") + uri;
        }
        return list;
    }

    void describeExtensions() {
        auto& extensions = groups_.define(u"xs:element", Frame::extensions);
        auto& choice = groups_.add(groups_.add(extensions, u"xs:complexType"), u"xs:choice",
                                   {{u"maxOccurs", unbounded}});
        groups_.add(choice, u"xs:element",
                    {{u"ref", groups_.refer(Names::groups, Names::localPart(Names::darkElement))}});
        groups_.add(choice, u"xs:any",
                    {{u"namespace",
                      namespacesOf(dictionary_.metaElementBegin(), dictionary_.metaElementEnd())},
                     {u"processContents", u"strict"}});

        addBytes(Names::darkElement,
                 {{Names::staticLocalTag, Identifiers::LocalTag, u"optional"},
                  {Names::universalLabel, Identifiers::UniversalLabel, u"optional"}});
    }

    void describeDarkSets() {
        auto& floating =
            groups_.define(u"xs:element", Names::localPart(Names::floatingDarkMetadata));
        auto& choice = groups_.add(groups_.add(floating, u"xs:complexType"), u"xs:choice",
                                   {{u"minOccurs", u"0"}, {u"maxOccurs", unbounded}});
        groups_.add(
            choice, u"xs:element",
            {{u"ref", groups_.refer(Names::groups, Names::localPart(Names::darkMetadata))}});
        groups_.add(choice, u"xs:group", {{u"ref", groups_.refer(Names::groups, anySet)}});
        addBytes(Names::darkMetadata, {{Names::key, Identifiers::UniversalLabel, u"required"},
                                       {Names::berOctetCount, Identifiers::UInt8, u"required"}});
    }

    struct Attribute {
        const XMLCh* name;
        Identifiers::Identifier type;
        const XMLCh* use;
    };

    /// An element that holds bytes and is distinguished by its attributes.
    void addBytes(const XMLCh* qualified, const std::vector<Attribute>& attributes) {
        auto& type = groups_.add(groups_.define(u"xs:element", Names::localPart(qualified)),
                                 u"xs:complexType");
        auto& bytes = groups_.add(groups_.add(type, u"xs:simpleContent"), u"xs:extension",
                                  {{u"base", u"xs:hexBinary"}});
        for (const Attribute& attribute : attributes) {
            const std::u16string name = Names::localPart(attribute.name);
            groups_.define(u"xs:attribute", name,
                           {{u"type", schemaTypeOf(attribute.type, groups_)}});
            groups_.add(bytes, u"xs:attribute",
                        {{u"ref", groups_.refer(Names::groups, name)}, {u"use", attribute.use}});
        }
    }

    const MetaMetadata::Dictionary& dictionary_;
    SchemaDocument& root_;
    SchemaDocument& groups_;
    SchemaDocument& types_;
};

} // namespace

void describeFrame(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary) {
    Frames(schemas, dictionary).describe();
}

} // namespace Corvid::XMLBuilder
