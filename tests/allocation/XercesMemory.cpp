#include "tests/allocation/XercesMemory.h"

#include "host/xmlutils/Initializer.h"

#include <new>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/dom/DOMImplementationSource.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace Corvid::Testing {

namespace {

using namespace xercesc;

class WatchedManager final : public MemoryManager {
public:
    MemoryManager* getExceptionMemoryManager() override { return this; }

    void* allocate(XMLSize_t size) override {
        const XmlAllocation forXml;
        try {
            return ::operator new(size);
        } catch (const std::bad_alloc&) {
            throw OutOfMemoryException();
        }
    }

    void deallocate(void* memory) override { ::operator delete(memory); }
};

DOMDocument* made[4];
std::size_t madeCount = 0;

/// The implementation that makes the writer's documents; remembers those.
class RememberingImplementation final : public DOMImplementation {
public:
    RememberingImplementation()
        : next_(*DOMImplementationRegistry::getDOMImplementation(u"Core")) {}

    DOMDocument* createDocument(const XMLCh* uri, const XMLCh* name, DOMDocumentType* type,
                                MemoryManager* manager) override {
        return remember(next_.createDocument(uri, name, type, manager));
    }
    DOMDocument* createDocument(MemoryManager* manager) override {
        return remember(next_.createDocument(manager));
    }
    bool hasFeature(const XMLCh* feature, const XMLCh* version) const override {
        return next_.hasFeature(feature, version);
    }
    DOMDocumentType* createDocumentType(const XMLCh* name, const XMLCh* publicId,
                                        const XMLCh* systemId) override {
        return next_.createDocumentType(name, publicId, systemId);
    }
    void* getFeature(const XMLCh* feature, const XMLCh* version) const override {
        return next_.getFeature(feature, version);
    }
    DOMLSParser* createLSParser(const DOMImplementationLSMode mode, const XMLCh* schemaType,
                                MemoryManager* manager, XMLGrammarPool* pool) override {
        return next_.createLSParser(mode, schemaType, manager, pool);
    }
    DOMLSSerializer* createLSSerializer(MemoryManager* manager) override {
        return next_.createLSSerializer(manager);
    }
    DOMLSInput* createLSInput(MemoryManager* manager) override {
        return next_.createLSInput(manager);
    }
    DOMLSOutput* createLSOutput(MemoryManager* manager) override {
        return next_.createLSOutput(manager);
    }

private:
    static DOMDocument* remember(DOMDocument* document) noexcept {
        if (madeCount != std::size(made)) {
            made[madeCount++] = document;
        }
        return document;
    }

    DOMImplementation& next_;
};

class RememberingSource final : public DOMImplementationSource {
public:
    DOMImplementation* getDOMImplementation(const XMLCh* features) const override {
        return XMLString::equals(features, u"Core") ? &implementation_ : nullptr;
    }
    DOMImplementationList* getDOMImplementationList(const XMLCh*) const override { return nullptr; }

private:
    mutable RememberingImplementation implementation_;
};

} // namespace

void watchXmlMemory() {
    static WatchedManager manager;
    static const bool started = [] {
        XMLPlatformUtils::Initialize(XMLUni::fgXercescDefaultLocale, nullptr, nullptr, &manager);
        XMLUtils::Initializer::instance().domImplementation();
        static RememberingSource source;
        DOMImplementationRegistry::addSource(&source);
        return true;
    }();
    (void)started;
}

void forgetDocuments() noexcept { madeCount = 0; }

std::size_t releaseAbandonedDocuments(const AllocationWatch& watch) {
    std::size_t released = 0;
    for (std::size_t i = 0; i != madeCount; ++i) {
        if (watch.holds(made[i])) {
            made[i]->release();
            ++released;
        }
    }
    madeCount = 0;
    return released;
}

} // namespace Corvid::Testing
