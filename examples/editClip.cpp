// Changes the title of a clip in the clip itself. What does not change keeps its bytes and its
// place; if the edit is interrupted, `corvid recover` or mxf::recover() makes the clip whole.

#include "editing/apply/CarryOut.h"
#include "host/base/ExceptionText.h"
#include "host/dataio/OpenSource.h"
#include "host/dictionary/Dictionary.h"
#include "host/metadata/Properties.h"
#include "host/mxf/Warnings.h"
#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"

#include <iostream>
#include <stdexcept>

using namespace Corvid;

namespace {

struct PrintWarnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override {
        std::cerr << "warning: " << warning.message() << '\n';
    }
};

void setTitle(const std::string& path, const char* title) {
    mxf::SystemFiles files;
    mxf::requireFinished(files, path);
    // Before the clip is opened: a change from then on makes the edit a refusal.
    const auto status = files.find(path);
    auto source = DataIO::openSource(path);
    PrintWarnings warnings;
    Editing::ClipEditor editor(*source, MetaMetadata::Dictionary::builtIn(), warnings);

    const auto metadata = editor.readMetadata();
    const auto packages = Metadata::findSets(*metadata, "MaterialPackage");
    if (packages.empty()) {
        throw std::runtime_error("there is no material package");
    }
    Metadata::setValue(*packages.front(), "PackageName",
                       Types::UTF16String(Platform::fromUtf8(title).c_str()));

    Editing::EditOptions options;
    options.blockSize = Editing::blockSizeOf(files, path);
    const Editing::EditPlan plan = editor.plan(*metadata, options);
    const Editing::EditWay way =
        Editing::carryOut(files, path, std::move(source), plan, status.value(), {});
    std::cout << (way == Editing::EditWay::nothing ? "nothing to change\n" : "changed\n");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: editClip FILE.mxf TITLE\n";
        return 2;
    }
    try {
        setTitle(argv[1], argv[2]);
    } catch (...) {
        std::cerr << argv[1] << ": " << Exceptions::currentMessage() << '\n';
        return 1;
    }
}
