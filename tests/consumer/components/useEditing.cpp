#include "Corvid/Version.h"
#include "editing/DocumentMetadata.h"
#include "host/dataio/Memory.h"
#include "host/dictionary/Dictionary.h"

#include <iostream>

int main() {
    std::cout << Corvid::version() << '\n';
    const unsigned char text[] = "<a/>";
    Corvid::DataIO::Memory::MemoryDataSource document(text, sizeof text - 1);
    try {
        Corvid::Editing::readDocument(document, Corvid::MetaMetadata::Dictionary::builtIn());
    } catch (const Corvid::Editing::DocumentMistakes&) {
        return 0;
    }
    return 1;
}
