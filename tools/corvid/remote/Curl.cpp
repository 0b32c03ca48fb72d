#include "tools/corvid/remote/Curl.h"

#include "host/base/Exceptions.h"

#include <array>
#include <dlfcn.h>

namespace Corvid::Tool {

namespace {

/// By the library it is built on; both have the same interface.
constexpr std::array names = {"libcurl.so.4", "libcurl-gnutls.so.4"};

[[noreturn]] void refuse(const std::string& what) {
    throw Exceptions::IOError("can't read files from servers: " + what +
                                  "; install the package libcurl4 or libcurl3-gnutls",
                              CORVID_HERE);
}

template <class Function> void find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    if (function == nullptr) {
        refuse(std::string("libcurl has no ") + name);
    }
}

Curl load() {
    void* library = nullptr;
    for (const char* const name : names) {
        library = library == nullptr ? ::dlopen(name, RTLD_NOW | RTLD_LOCAL) : library;
    }
    if (library == nullptr) {
        refuse("libcurl is missing");
    }
    Curl curl{};
    find(library, "curl_global_init", curl.globalInit);
    find(library, "curl_easy_init", curl.init);
    find(library, "curl_easy_reset", curl.reset);
    find(library, "curl_easy_cleanup", curl.cleanup);
    find(library, "curl_easy_setopt", curl.set);
    find(library, "curl_easy_getinfo", curl.get);
    find(library, "curl_easy_perform", curl.perform);
    find(library, "curl_easy_strerror", curl.describe);
    find(library, "curl_slist_append", curl.append);
    find(library, "curl_slist_free_all", curl.freeList);
    if (curl.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        refuse("libcurl does not start");
    }
    return curl;
}

} // namespace

const Curl& curl() {
    static const Curl loaded = load();
    return loaded;
}

} // namespace Corvid::Tool
