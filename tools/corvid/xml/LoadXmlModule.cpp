#include "tools/corvid/xml/XmlModule.h"

#include "host/base/Exceptions.h"

#include <dlfcn.h>

namespace Corvid::Tool {

namespace {

const XmlModule& load() {
    // Without a folder: it is in the command's run path, with the libraries of Corvid.
    void* const module = ::dlopen(CORVID_XML_MODULE, RTLD_LAZY | RTLD_LOCAL);
    void* const symbol = module == nullptr ? nullptr : ::dlsym(module, "corvidXmlModule");
    if (symbol == nullptr) {
        const char* const reason = ::dlerror();
        throw Exceptions::IOError(std::string("can't load the part that handles XML: ") +
                                      (reason == nullptr ? "no reason given" : reason),
                                  CORVID_HERE);
    }
    return *reinterpret_cast<decltype(&corvidXmlModule)>(symbol)();
}

} // namespace

const XmlModule& xmlModule() {
    static const XmlModule& module = load();
    return module;
}

} // namespace Corvid::Tool
