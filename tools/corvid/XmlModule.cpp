#include "tools/corvid/XmlModule.h"

#include "host/base/Exceptions.h"

#include <dlfcn.h>

namespace Corvid::Tool {

namespace {

const XmlVerbs& load() {
    // Without a folder: it stands in the command's run path, with the libraries of Corvid.
    void* const module = ::dlopen(CORVID_XML_MODULE, RTLD_LAZY | RTLD_LOCAL);
    void* const symbol = module == nullptr ? nullptr : ::dlsym(module, "corvidXmlVerbs");
    if (symbol == nullptr) {
        const char* const reason = ::dlerror();
        throw Exceptions::IOError(std::string("can't load the part that handles XML: ") +
                                      (reason == nullptr ? "no reason given" : reason),
                                  CORVID_HERE);
    }
    return *reinterpret_cast<decltype(&corvidXmlVerbs)>(symbol)();
}

} // namespace

const XmlVerbs& xmlVerbs() {
    static const XmlVerbs& verbs = load();
    return verbs;
}

} // namespace Corvid::Tool
