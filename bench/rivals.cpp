// What others need to go through a document, or to write it: figures beside the yardsticks.

#include <cstdio>
#include <cstring>
#include <expat.h>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <vector>
#ifdef CORVID_BENCH_LIBXML2
#include <libxml/parser.h>
#endif
#ifdef CORVID_BENCH_PUGIXML
#include <pugixml.hpp>
#endif

namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

File open(const char* path, const char* mode) {
    File file(std::fopen(path, mode));
    if (!file) {
        throw std::runtime_error("can't open the document");
    }
    return file;
}

/// Calls the function with each block of a file.
template <class Take> void eachBlock(const char* path, Take take) {
    const File file = open(path, "rb");
    std::vector<char> block(std::size_t{64} * 1024);
    for (std::size_t count = block.size(); count == block.size();) {
        count = std::fread(block.data(), 1, block.size(), file.get());
        take(block.data(), count, count != block.size());
    }
}

void parseWithExpat(const char* path) {
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    const std::unique_ptr<XML_ParserStruct, Free> parser(XML_ParserCreateNS(nullptr, '|'));
    std::size_t elements = 0;
    XML_SetUserData(parser.get(), &elements);
    XML_SetElementHandler(
        parser.get(),
        [](void* count, const XML_Char*, const XML_Char**) { ++*static_cast<std::size_t*>(count); },
        [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser.get(), [](void*, const XML_Char*, int) {});
    eachBlock(path, [&](const char* bytes, std::size_t count, bool isLast) {
        if (XML_Parse(parser.get(), bytes, static_cast<int>(count), isLast) != XML_STATUS_OK) {
            throw std::runtime_error("the document does not parse");
        }
    });
    if (elements == 0) {
        throw std::runtime_error("no document");
    }
}

#ifdef CORVID_BENCH_LIBXML2
void parseWithLibxml2(const char* path) {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void* count, const xmlChar*, const xmlChar*, const xmlChar*, int,
                                const xmlChar**, int, int,
                                const xmlChar**) { ++*static_cast<std::size_t*>(count); };
    std::size_t elements = 0;
    if (xmlSAXUserParseFile(&handler, &elements, path) != 0 || elements == 0) {
        throw std::runtime_error("the document does not parse");
    }
}
#endif

#ifdef CORVID_BENCH_PUGIXML
void parseWithPugixml(const char* path) {
    pugi::xml_document document;
    if (!document.load_file(path) || !document.document_element()) {
        throw std::runtime_error("the document does not parse");
    }
}
#endif

void copy(const char* path) {
    const File to(std::tmpfile());
    eachBlock(path, [&](const char* bytes, std::size_t count, bool) {
        if (!to || std::fwrite(bytes, 1, count, to.get()) != count) {
            throw std::runtime_error("can't write");
        }
    });
}

struct Way {
    const char* name;
    void (*run)(const char* path);
};
constexpr Way ways[] = {
    {"expat", parseWithExpat},
#ifdef CORVID_BENCH_LIBXML2
    {"libxml2", parseWithLibxml2},
#endif
#ifdef CORVID_BENCH_PUGIXML
    {"pugixml", parseWithPugixml},
#endif
    {"copy", copy},
};

} // namespace

/// rivals WAY FILE   goes through a document, or writes its bytes again
int main(int argc, char** argv) {
    for (const Way& way : ways) {
        if (argc == 3 && std::strcmp(argv[1], way.name) == 0) {
            way.run(argv[2]);
            return 0;
        }
    }
    for (const Way& way : ways) {
        std::cerr << "rivals " << way.name << " FILE\n";
    }
    return 2;
}
