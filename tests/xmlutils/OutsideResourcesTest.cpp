#include "host/xmlutils/LoadDocument.h"
#include "tests/support/Paths.h"
#include "tests/xmlutils/Documents.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fstream>
#include <netinet/in.h>
#include <set>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>
#include <xercesc/sax/SAXParseException.hpp>

namespace Corvid::XMLUtils {
namespace {

using namespace Testing;
using Corvid::Testing::TemporaryDir;

using Names = std::set<std::string>;

/// Tells which files of a folder somebody opens.
class OpenedFiles {
public:
    explicit OpenedFiles(const std::filesystem::path& folder) : watch_(inotify_init1(IN_NONBLOCK)) {
        EXPECT_GE(inotify_add_watch(watch_, folder.c_str(), IN_OPEN), 0);
    }
    ~OpenedFiles() { close(watch_); }

    /// The names of those opened since the last call.
    Names take() const {
        Names names;
        alignas(inotify_event) char events[4096];
        const ssize_t size = read(watch_, events, sizeof events);
        for (ssize_t at = 0; at < size;) {
            const auto& event = *reinterpret_cast<const inotify_event*>(events + at);
            names.insert(event.name);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        return names;
    }

private:
    int watch_;
};

/// A server on this machine to which nobody is to connect.
class Server {
public:
    Server() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address_), size_), 0);
        EXPECT_EQ(listen(socket_, 16), 0);
        EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &size_), 0);
    }
    ~Server() { close(socket_); }

    std::string url() const {
        return "http://127.0.0.1:" + std::to_string(ntohs(address_.sin_port)) + "/a";
    }

    bool wasCalled() const {
        const int caller = accept(socket_, nullptr, nullptr);
        if (caller >= 0) {
            close(caller);
        }
        return caller >= 0;
    }

    void call() const {
        const int caller = socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(connect(caller, reinterpret_cast<const sockaddr*>(&address_), size_), 0);
        close(caller);
    }

private:
    static sockaddr_in loopback() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }

    int socket_;
    sockaddr_in address_ = loopback();
    socklen_t size_ = sizeof address_;
};

struct Pointing {
    const char* name;
    const char* text; ///< "@" stands for the address of something outside
    bool refused;
};

const Pointing documents[] = {
    {"ExternalSubset", "<!DOCTYPE a SYSTEM '@'><a/>", true},
    {"PublicSubset", "<!DOCTYPE a PUBLIC '-//x//y' '@'><a/>", true},
    {"Entity", "<!DOCTYPE a [<!ENTITY e SYSTEM '@'>]><a>&e;</a>", true},
    {"EntityInAnAttribute", "<!DOCTYPE a [<!ENTITY e SYSTEM '@'>]><a b='&e;'/>", true},
    {"ParameterEntity", "<!DOCTYPE a [<!ENTITY % e SYSTEM '@'> %e;]><a/>", true},
    {"UnparsedEntity", "<!DOCTYPE a [<!NOTATION n SYSTEM '@'><!ENTITY e SYSTEM '@' NDATA n>]><a/>",
     true},
    {"Schema",
     "<a xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
     "xsi:noNamespaceSchemaLocation='@'/>",
     false},
    {"SchemaOfANamespace",
     "<a xmlns='urn:a' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
     "xsi:schemaLocation='urn:a @'/>",
     false},
    {"Inclusion", "<a><i:include xmlns:i='http://www.w3.org/2001/XInclude' href='@'/></a>", false},
    {"Stylesheet", "<?xml-stylesheet type='text/xsl' href='@'?><a/>", false},
    {"Base", "<a xml:base='@'/>", false},
};

void PrintTo(const Pointing& value, std::ostream* to) { *to << value.name; }

class OutsideResources : public ::testing::TestWithParam<Pointing> {
protected:
    OutsideResources() { std::ofstream(outside()) << "<!ELEMENT a ANY>"; }

    std::filesystem::path outside() const { return folder_.path() / "outside.dtd"; }

    static std::string documentFor(const std::string& address) {
        std::string text = GetParam().text;
        for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@')) {
            text.replace(at, 1, address);
        }
        return text;
    }

    TemporaryDir folder_;
};

TEST_P(OutsideResources, areNeverOpened) {
    const Server server;
    const OpenedFiles opened(folder_.path());
    for (const std::string& address :
         {outside().string(), "file://" + outside().string(), server.url()}) {
        const std::string error = loadingError(documentFor(address));
        EXPECT_EQ(!error.empty(), GetParam().refused) << error;
        if (GetParam().refused) {
            EXPECT_NE(error.find(": document type found, expected none"), std::string::npos)
                << error;
        }
        EXPECT_EQ(opened.take(), Names{}) << address;
        EXPECT_FALSE(server.wasCalled()) << address;
    }
}

TEST_P(OutsideResources, areNeverOpenedFromAFileBesideThem) {
    const TemporaryDir folder;
    std::ofstream(folder.path() / "outside.dtd") << "<!ELEMENT a ANY>";
    std::ofstream(folder.path() / "document.xml") << documentFor("outside.dtd");
    const OpenedFiles opened(folder.path());
    const Parser parser = makeParser();
    const auto path = Platform::fromUtf8((folder.path() / "document.xml").string());
    try {
        loadDocumentFromFile(path.c_str(), *parser);
        EXPECT_FALSE(GetParam().refused);
    } catch (const xercesc::SAXParseException&) {
        EXPECT_TRUE(GetParam().refused);
    }
    EXPECT_EQ(opened.take(), Names{"document.xml"});
}

INSTANTIATE_TEST_SUITE_P(, OutsideResources, ::testing::ValuesIn(documents),
                         [](const auto& test) { return test.param.name; });

TEST(OutsideResourcesTest, wouldNoticeThatOneIsOpened) {
    const TemporaryDir folder;
    const OpenedFiles opened(folder.path());
    EXPECT_EQ(opened.take(), Names{});
    std::ofstream(folder.path() / "outside.dtd").flush();
    EXPECT_EQ(opened.take(), Names{"outside.dtd"});
    const Server server;
    EXPECT_FALSE(server.wasCalled());
    server.call();
    EXPECT_TRUE(server.wasCalled());
}

} // namespace
} // namespace Corvid::XMLUtils
