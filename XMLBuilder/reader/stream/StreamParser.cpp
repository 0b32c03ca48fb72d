#include "XMLBuilder/reader/stream/StreamParser.h"

#include "XMLBuilder/reader/nodes/NodeList.h"
#include "XMLBuilder/reader/nodes/NodePool.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/stream/ExpatReader.h"
#include "XMLBuilder/reader/stream/NameTable.h"
#include "host/xmlutils/ElementLimits.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

/// Makes nodes of what expat finds, a piece at a time.
class Pieces final : public XmlEvents {
public:
    explicit Pieces(StreamHandler& handler) : handler_(handler), reader_(*this) {}

    void read(DataIO::DataSource& source) {
        reader_.read(source);
        handler_.endDocument();
    }

    void startElement(const char* name, const char** attributes) override;
    void endElement() override;
    void characters(std::string_view text) override;
    void instruction(const char* target, const char* data) override;
    std::string innermost() const override {
        return open_.empty() ? "" : narrow(open_.back().element->name);
    }

private:
    struct Level {
        Level(DocumentNode& of, bool mayHoldPieces)
            : element(&of), children(of.firstChild), hasElements(mayHoldPieces) {}

        DocumentNode* element;
        NodeList children;
        bool hasElements;
    };

    void giveName(DocumentNode& node, const char* qualified, NameTable::Of what);
    std::size_t declareNamespaces(const char** attributes);
    void checkTwins(const DocumentNode& element);
    DocumentNode& addElement(NodePool& pool, const char* name, const char** attributes,
                             const DocumentNode* parent);
    void flushText(bool isLast);
    /// How many of the open elements are not part of a piece: the root, and a container.
    std::size_t outer() const { return container_ == nullptr ? 1 : 2; }

    StreamHandler& handler_;
    ExpatReader reader_;
    NameTable names_;
    XMLUtils::ElementLimits limits_;

    NodePool ofRoot_;
    NodePool ofContainer_;
    NodePool ofPiece_;
    DocumentNode* root_ = nullptr;
    DocumentNode* container_ = nullptr;
    std::vector<Level> open_;                ///< all open elements
    std::vector<const DocumentNode*> twins_; ///< room for checkTwins()
    std::string text_;                       ///< that is not part of a node yet, as UTF-8
    bool hasWords_ = false;                  ///< whether that is more than white space
    std::size_t wordLine_ = 0;
    std::size_t wordColumn_ = 0;
};

void Pieces::giveName(DocumentNode& node, const char* qualified, NameTable::Of what) {
    const Name* const name = names_.find(qualified, what);
    if (name == nullptr) {
        reader_.refuse(NameTable::problem(qualified));
    }
    node.name = name->qualified;
    node.local = name->local;
    node.localHash = name->localHash;
    node.uri = name->uri;
}

/// Takes the namespace declarations of an element.
/// @return how many there are.
std::size_t Pieces::declareNamespaces(const char** attributes) {
    names_.namespaces().open();
    std::size_t count = 0;
    for (; *attributes != nullptr; attributes += 2) {
        if (NamespaceScopes::isDeclaration(attributes[0])) {
            ++count;
            const std::string problem = names_.namespaces().declare(attributes[0], attributes[1]);
            if (!problem.empty()) {
                reader_.refuse(problem);
            }
        }
    }
    return count;
}

/// expat has seen to it that no two attributes of an element are written the same.
void Pieces::checkTwins(const DocumentNode& element) {
    twins_.clear();
    for (const auto* each = element.firstAttribute; each != nullptr; each = each->next) {
        if (each->uri != nullptr) {
            twins_.push_back(each);
        }
    }
    using Text = std::u16string_view;
    const auto isBefore = [](const DocumentNode* a, const DocumentNode* b) {
        return std::pair(Text(a->local), Text(a->uri)) < std::pair(Text(b->local), Text(b->uri));
    };
    std::sort(twins_.begin(), twins_.end(), isBefore);
    for (std::size_t k = 1; k < twins_.size(); ++k) {
        if (!isBefore(twins_[k - 1], twins_[k])) {
            reader_.refuse("the attributes '" + narrow(twins_[k - 1]->name) + "' and '" +
                           narrow(twins_[k]->name) + "' of element " + narrow(element.name) +
                           " are the same, expected one of them");
        }
    }
}

DocumentNode& Pieces::addElement(NodePool& pool, const char* name, const char** attributes,
                                 const DocumentNode* parent) {
    DocumentNode& element = pool.add();
    element.line = reader_.line();
    element.column = reader_.column();
    element.parent = parent;
    std::size_t count = declareNamespaces(attributes);
    giveName(element, name, NameTable::Of::element);
    NodeList list(element.firstAttribute);
    for (; *attributes != nullptr; attributes += 2) {
        if (NamespaceScopes::isDeclaration(attributes[0])) {
            continue;
        }
        DocumentNode& attribute = pool.add();
        attribute.kind = DocumentNode::Kind::attribute;
        giveName(attribute, attributes[0], NameTable::Of::attribute);
        attribute.value = addUtf8(pool, attributes[1]);
        attribute.line = element.line;
        attribute.column = element.column;
        attribute.parent = &element;
        list.append(attribute);
        ++count;
    }
    const std::string problem = limits_.startElement(count, true);
    if (!problem.empty()) {
        reader_.refuse("element " + narrow(element.name) + problem);
    }
    checkTwins(element);
    return element;
}

void Pieces::startElement(const char* name, const char** attributes) {
    flushText(false);
    if (root_ == nullptr) {
        root_ = &addElement(ofRoot_, name, attributes, nullptr);
        open_.emplace_back(*root_, true);
        handler_.beginRoot(*root_);
        return;
    }
    const bool isPiece = open_.size() == outer();
    if (isPiece) {
        ofPiece_.clear();
    }
    DocumentNode& element = addElement(ofPiece_, name, attributes, open_.back().element);
    if (isPiece && container_ == nullptr && handler_.isContainer(element)) {
        ofContainer_.clear();
        container_ = &ofContainer_.addCopy(element);
        open_.emplace_back(*container_, true);
        return;
    }
    if (!isPiece) {
        open_.back().children.append(element);
        open_.back().hasElements = true;
    }
    open_.emplace_back(element, false);
}

void Pieces::endElement() {
    flushText(true);
    const DocumentNode* const closed = open_.back().element;
    open_.pop_back();
    names_.namespaces().close();
    limits_.endElement();
    if (closed == container_) {
        container_ = nullptr;
    } else if (open_.size() == outer() && closed != root_) {
        if (container_ == nullptr) {
            handler_.childOfRoot(*closed);
        } else {
            handler_.childOfContainer(*closed);
        }
    }
}

void Pieces::characters(std::string_view text) {
    if (!hasWords_) {
        const auto isSpace = [](char each) { return isXmlSpace(static_cast<unsigned char>(each)); };
        const auto word = std::find_if_not(text.begin(), text.end(), isSpace);
        if (word != text.end()) {
            hasWords_ = true;
            wordLine_ = reader_.line();
            wordColumn_ = reader_.column() + static_cast<std::size_t>(word - text.begin());
        } else if (open_.back().hasElements) {
            return; // layout, or in front of words that are refused
        }
    }
    text_ += text;
}

/// Makes a node of the text so far. White space between elements is none.
/// @param isLast  whether the element ends.
void Pieces::flushText(bool isLast) {
    if (text_.empty()) {
        return;
    }
    Level& level = open_.back();
    const bool mayBeLayout = level.hasElements || !isLast;
    if (hasWords_ || !mayBeLayout) {
        const bool isOuter = open_.size() <= outer();
        DocumentNode& node = ofPiece_.add();
        node.kind = DocumentNode::Kind::text;
        node.value = addUtf8(ofPiece_, text_);
        node.parent = level.element;
        node.line = hasWords_ ? wordLine_ : level.element->line;
        node.column = hasWords_ ? wordColumn_ : level.element->column;
        if (isOuter) {
            handler_.strayText(node);
        } else {
            level.children.append(node);
        }
    }
    text_.clear();
    hasWords_ = false;
}

void Pieces::instruction(const char* target, const char* data) {
    if (std::strchr(target, ':') != nullptr) {
        reader_.refuse("processing instruction '" + std::string(target) +
                       "', expected a name without colon");
    }
    handler_.instruction({target, data, reader_.line(), reader_.column()});
}

} // namespace

void parseStream(DataIO::DataSource& source, StreamHandler& handler) {
    Pieces(handler).read(source);
}

} // namespace Corvid::XMLBuilder
