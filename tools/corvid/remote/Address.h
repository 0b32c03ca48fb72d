#pragma once

#include <string>

namespace Corvid::Tool {

/// Whether people name a file on a server: what begins with "http://" or "https://", in either
/// case.
bool isAddress(const std::string& path);

/// Whether what is sent to the address, and comes from there, is encrypted.
bool isSecure(const std::string& address);

/// An address without what may be secret: user, password, query and fragment (RFC 3986). Anything
/// but an address stays.
std::string withoutSecrets(const std::string& path);

/// Whether people meant an address that is none which corvid reads, such as "ftp://host/clip.mxf" or
/// "http:/host/clip.mxf". A file of that name is a file.
bool isMistakenAddress(const std::string& path);

/// A path as messages have it: of an address, also a mistaken one, without what may be secret.
std::string shownName(const std::string& path);

/// An address that another one leads to, with its user and password where both are on one server
/// and the new one names none.
std::string withUserOf(const std::string& from, const std::string& to);

} // namespace Corvid::Tool
