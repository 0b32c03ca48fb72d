#include "fuzz/xml/Changes.h"
#include "fuzz/xml/Encoding.h"
#include "host/base/Exceptions.h"
#include "tests/fuzz/Seeds.h"
#include "tools/corvid/xml/LenientDocument.h"

#include <gtest/gtest.h>
#include <set>

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size,
                                               std::size_t greatestSize, unsigned seed);
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* out, std::size_t greatestSize,
                                                 unsigned seed);

/// Stands in for libFuzzer's: adds a letter, or replaces the last byte.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size,
                                        std::size_t greatestSize) {
    const std::size_t grown = size < greatestSize ? size + 1 : size;
    if (grown != 0) {
        bytes[grown - 1] = 'Z';
    }
    return grown;
}

namespace Corvid::Fuzzing {
namespace {

const std::uint8_t* bytesOf(const std::string& text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

std::string mutate(const std::string& document, std::size_t greatestSize, unsigned seed) {
    std::string bytes = document;
    bytes.resize(greatestSize);
    bytes.resize(LLVMFuzzerCustomMutator(reinterpret_cast<std::uint8_t*>(bytes.data()),
                                         document.size(), greatestSize, seed));
    return bytes;
}

std::string cross(const std::string& first, const std::string& second, unsigned seed) {
    std::string bytes(first.size() + second.size(), '\0');
    bytes.resize(LLVMFuzzerCustomCrossOver(
        bytesOf(first), first.size(), bytesOf(second), second.size(),
        reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size(), seed));
    return bytes;
}

std::vector<Change> allChanges() {
    std::vector<Change> changes;
    const auto add = [&](const auto& list) {
        changes.insert(changes.end(), list.begin(), list.end());
    };
    add(elementChanges);
    add(attributeChanges);
    add(namespaceChanges);
    add(textChanges);
    add(instructionChanges);
    return changes;
}

bool isRead(const std::string& document) {
    try {
        Tool::readLeniently(bytesOf(document), document.size(), MetaMetadata::Dictionary::builtIn(),
                            Editing::DocumentIdentifiers::written);
        return true;
    } catch (const Exceptions::BaseException&) {
        return false;
    }
}

const std::string& seed(const std::string& name) {
    static const auto seeds = Testing::seedDocuments();
    return seeds.at(name);
}

TEST(MutateXml, everyChangeChangesADocument) {
    const Pieces document = takeApart(seed("one-of-everything-instructions.xml"));
    for (const Change& change : allChanges()) {
        std::size_t changed = 0;
        for (unsigned i = 1; i != 21; ++i) {
            Random random(i * 7919);
            Pieces pieces = document;
            change.apply(pieces, random);
            changed += join(pieces) == join(document) ? 0 : 1;
        }
        EXPECT_GT(changed, 3U) << change.name;
    }
}

TEST(MutateXml, everyChangeTakesAnything) {
    for (const char* text : {"", "x", "<a/>", "<a>", "</a>", "</a><b/>", "<a></b></c>", "<a b=''/>",
                             "<?corvid?>", "<?corvid a?>", "<a xmlns:b='c'/>", "<a xmlns='c'>"}) {
        for (const Change& change : allChanges()) {
            for (unsigned i = 1; i != 101; ++i) {
                Random random(i * 7919);
                Pieces pieces = takeApart(text);
                change.apply(pieces, random);
                const std::string changed = join(pieces);
                EXPECT_EQ(join(takeApart(changed)), changed) << change.name << ": " << text;
            }
        }
    }
}

TEST(MutateXml, beginsWithEveryKindOfInstruction) {
    for (const char* instruction :
         {"format=", "partial structural-only=", "primer tag=", "key class=", "key set=",
          "form text=", "form set=", "bytes set=", "copies set=", "unidentified class="}) {
        EXPECT_NE(seed("every-instruction.xml").find(std::string("<?corvid ") + instruction),
                  std::string::npos)
            << instruction;
    }
}

TEST(MutateXml, isTheSameForTheSameSeed) {
    const std::string& document = seed("sample-links.xml");
    EXPECT_EQ(mutate(document, 100000, 5), mutate(document, 100000, 5));
    std::set<std::string> different;
    for (unsigned i = 0; i != 100; ++i) {
        different.insert(mutate(document, 100000, i * 7919));
    }
    EXPECT_GT(different.size(), 70U);
}

TEST(MutateXml, staysWithinTheGreatestSize) {
    const std::string& document = seed("one-of-everything-links.xml");
    for (unsigned i = 0; i != 500; ++i) {
        const std::size_t greatest = document.size() + i % 5;
        const std::string mutated = mutate(document, greatest, i * 7919);
        EXPECT_LE(mutated.size(), greatest);
        EXPECT_FALSE(mutated.empty());
    }
}

TEST(MutateXml, leavesMostDocumentsReadable) {
    std::size_t read = 0;
    constexpr unsigned tried = 200;
    for (unsigned i = 0; i != tried; ++i) {
        read += isRead(mutate(seed("one-of-everything-instructions.xml"), 100000, i * 7919));
    }
    EXPECT_GT(read, tried / 2);
    EXPECT_LT(read, tried);
}

TEST(MutateXml, writesOtherEncodings) {
    std::set<Encoding> encodings;
    for (unsigned i = 0; i != 3000; ++i) {
        const std::string mutated = mutate("<a>1</a>", 1000, i * 7919);
        encodings.insert(decode(bytesOf(mutated), mutated.size()).encoding);
    }
    EXPECT_EQ(encodings.size(), encodingCount - 1) << "Latin-1 looks like other bytes";
}

TEST(CrossXml, putsAnElementOfOneDocumentIntoAnother) {
    std::size_t taken = 0;
    for (unsigned i = 0; i != 20; ++i) {
        const std::string crossed = cross("<a><b/></a>", "<c><only/><only/></c>", i * 7919);
        EXPECT_LE(crossed.size(), 32U);
        taken += crossed.find("<only/>") != std::string::npos && crossed.find("<a>") == 0;
    }
    EXPECT_GT(taken, 10U);
}

TEST(CrossXml, takesInstructionsToo) {
    std::size_t taken = 0;
    for (unsigned i = 0; i != 100; ++i) {
        taken += cross("<a/>", "<?corvid x?><c/>", i * 7919).find("corvid") != std::string::npos;
    }
    EXPECT_GT(taken, 3U);
}

TEST(CrossXml, joinsDocumentsOfDifferentEncodings) {
    const std::string crossed =
        cross(encode({Encoding::bigEndianWithMark, "<a><b/></a>"}), "<c><only/></c>", 1);
    EXPECT_EQ(crossed.substr(0, 2), "\xFE\xFF");
}

} // namespace
} // namespace Corvid::Fuzzing
