#include "XMLBuilder/reader/strict/StreamParser.h"

#include "XMLBuilder/reader/nodes/NodeList.h"
#include "XMLBuilder/reader/nodes/NodePool.h"
#include "XMLBuilder/reader/strict/ExpatReader.h"
#include "XMLBuilder/reader/strict/NameTable.h"
#include "XMLBuilder/reader/strict/StrictText.h"
#include "host/xmlutils/ElementLimits.h"

#include <string_view>
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

    void giveName(DocumentNode& node, const char* expanded);
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
    std::vector<Level> open_; ///< all open elements
    std::string text_;        ///< that is not part of a node yet, as UTF-8
    std::size_t textLine_ = 0;
    std::size_t textColumn_ = 0;
};

void Pieces::giveName(DocumentNode& node, const char* expanded) {
    const Name& name = names_.find(expanded);
    node.name = name.qualified;
    node.local = name.local;
    node.uri = name.uri;
}

DocumentNode& Pieces::addElement(NodePool& pool, const char* name, const char** attributes,
                                 const DocumentNode* parent) {
    DocumentNode& element = pool.add();
    giveName(element, name);
    element.line = reader_.line();
    element.column = reader_.column();
    element.parent = parent;
    NodeList list(element.firstAttribute);
    std::size_t count = 0;
    for (; *attributes != nullptr; attributes += 2, ++count) {
        DocumentNode& attribute = pool.add();
        attribute.kind = DocumentNode::Kind::attribute;
        giveName(attribute, attributes[0]);
        attribute.value = addUtf8(pool, attributes[1]);
        attribute.line = element.line;
        attribute.column = element.column;
        attribute.parent = &element;
        list.append(attribute);
    }
    const std::string problem = limits_.startElement(count, true);
    if (!problem.empty()) {
        reader_.refuse("element " + narrow(element.name) + problem);
    }
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
    if (text_.empty()) {
        textLine_ = reader_.line();
        textColumn_ = reader_.column();
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
    if (!mayBeLayout || text_.find_first_not_of(" \t\r\n") != std::string::npos) {
        const bool isOuter = open_.size() <= outer();
        DocumentNode& node = ofPiece_.add();
        node.kind = DocumentNode::Kind::text;
        node.value = addUtf8(ofPiece_, text_);
        node.parent = level.element;
        node.line = textLine_;
        node.column = textColumn_;
        if (isOuter) {
            handler_.strayText(node);
        } else {
            level.children.append(node);
        }
    }
    text_.clear();
}

void Pieces::instruction(const char* target, const char* data) {
    handler_.instruction({target, data, reader_.line(), reader_.column()});
}

} // namespace

void parseStream(DataIO::DataSource& source, StreamHandler& handler) {
    Pieces(handler).read(source);
}

} // namespace Corvid::XMLBuilder
