#include "tools/corvid/remote/Address.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <sys/stat.h>

namespace Corvid::Tool {

namespace {

constexpr const char* letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

bool hasScheme(const std::string& address, std::string_view scheme) {
    return address.size() >= scheme.size() &&
           std::equal(scheme.begin(), scheme.end(), address.begin(), [](char wanted, char c) {
               return wanted == std::tolower(static_cast<unsigned char>(c));
           });
}

/// Places in an address: user, host and port, what follows.
struct Authority {
    std::size_t begin; ///< of the user, or of the host where there is none
    std::size_t host;
    std::size_t end;
};

Authority authorityOf(const std::string& address) {
    // libcurl takes more than two slashes for two.
    const std::size_t begin =
        std::min(address.find_first_not_of('/', address.find(':') + 1), address.size());
    const std::size_t end = std::min(address.find_first_of("/?#", begin), address.size());
    const std::size_t user = std::string_view(address).substr(0, end).rfind('@');
    return {begin, user == std::string_view::npos || user < begin ? begin : user + 1, end};
}

/// Whether what follows the last colon after a host is a port, if there is one.
bool hasPort(const std::string& host) {
    const std::size_t colon =
        host.find(':', host.rfind(']') == std::string::npos ? 0 : host.rfind(']'));
    return colon == std::string::npos ||
           host.find_first_not_of("0123456789", colon + 1) == std::string::npos;
}

std::string cut(const std::string& address) {
    const Authority authority = authorityOf(address);
    if (!hasPort(address.substr(authority.host, authority.end - authority.host))) {
        // A password with a slash or a question mark ends up anywhere.
        return address.substr(0, authority.begin) + "...";
    }
    std::string shown = address.substr(0, address.find_first_of("?#"));
    return shown.erase(authority.begin, authority.host - authority.begin);
}

} // namespace

bool isSecure(const std::string& address) { return hasScheme(address, "https://"); }

bool isAddress(const std::string& path) { return hasScheme(path, "http://") || isSecure(path); }

bool isMistakenAddress(const std::string& path) {
    const std::size_t colon = path.find_first_not_of(letters);
    if (isAddress(path) || colon == std::string::npos || colon < 2 || path[colon] != ':') {
        return false; // one letter is a drive
    }
    const std::string_view after = std::string_view(path).substr(colon + 1);
    const bool hasSlashes =
        after.substr(0, 2) == "//" ||
        (after.substr(0, 1) == "/" && (hasScheme(path, "http:") || hasScheme(path, "https:")));
    struct stat status {};
    return hasSlashes && ::lstat(path.c_str(), &status) != 0;
}

std::string withoutSecrets(const std::string& path) { return isAddress(path) ? cut(path) : path; }

std::string shownName(const std::string& path) {
    return isMistakenAddress(path) ? cut(path) : withoutSecrets(path);
}

std::string withUserOf(const std::string& from, const std::string& to) {
    const Authority old = authorityOf(from);
    const Authority fresh = authorityOf(to);
    const bool isOneServer =
        isSecure(from) == isSecure(to) && fresh.host == fresh.begin &&
        from.substr(old.host, old.end - old.host) == to.substr(fresh.host, fresh.end - fresh.host);
    return isOneServer ? std::string(to).insert(fresh.begin, from, old.begin, old.host - old.begin)
                       : to;
}

} // namespace Corvid::Tool
