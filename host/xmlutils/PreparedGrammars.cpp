#include "host/xmlutils/PreparedGrammars.h"

#include "host/base/KeyedHash.h"

#include <array>
#include <cstring>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/internal/BinMemOutputStream.hpp>
#include <xercesc/util/BinMemInputStream.hpp>
#include <xercesc/util/XMLException.hpp>

namespace Corvid::XMLUtils {

namespace {

using namespace xercesc;

/// In front of the bytes of Xerces-C, in the byte order of the machine.
struct Head {
    std::array<char, 8> kind{'C', 'o', 'r', 'v', 'i', 'd', 'G', '1'};
    std::uint64_t origin = 0;
    std::uint64_t length = 0;
    std::uint64_t hash = 0;
};

/// Nobody chooses the bytes, so the key is no secret.
Head headOf(const unsigned char* bytes, std::size_t length, std::uint64_t origin) {
    Head head;
    head.origin = origin;
    head.length = length;
    head.hash = KeyedHash(KeyedHash::Key())(bytes, length);
    return head;
}

} // namespace

std::string writeGrammars(XMLGrammarPoolImpl& pool, std::uint64_t origin) {
    BinMemOutputStream out;
    pool.serializeGrammars(&out);
    const auto length = static_cast<std::size_t>(out.curPos()); // getSize() counts free memory too
    const Head head = headOf(out.getRawBuffer(), length, origin);
    std::string bytes(sizeof head + length, '\0');
    std::memcpy(bytes.data(), &head, sizeof head);
    std::memcpy(bytes.data() + sizeof head, out.getRawBuffer(), length);
    return bytes;
}

bool readGrammars(const unsigned char* bytes, std::size_t length, std::uint64_t origin,
                  XMLGrammarPoolImpl& pool) {
    if (length < sizeof(Head)) {
        return false;
    }
    const unsigned char* const grammars = bytes + sizeof(Head);
    length -= sizeof(Head);
    const Head expected = headOf(grammars, length, origin);
    if (std::memcmp(bytes, &expected, sizeof expected) != 0) {
        return false;
    }
    try {
        BinMemInputStream in(grammars, length, BinMemInputStream::BufOpt_Reference);
        pool.deserializeGrammars(&in);
    } catch (const XMLException&) {
        return false; // of another version
    }
    return true;
}

} // namespace Corvid::XMLUtils
