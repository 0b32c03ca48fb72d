#include "tests/tool/RunCommand.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <sys/wait.h>

namespace Corvid::Testing {

namespace {

std::string readAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

Outcome Workshop::run(const std::string& line) const {
    // The line may look at the folder, so its output is outside.
    const TemporaryDir outside;
    const auto out = outside.path() / "out";
    const auto err = outside.path() / "err";
    const auto tools = std::filesystem::path(CORVID_COMMAND).parent_path();
    const std::string whole = "cd '" + path().string() + "' && unset NO_COLOR && PATH='" +
                              tools.string() + "':\"$PATH\" && { " + line + "\n} >'" +
                              out.string() + "' 2>'" + err.string() + "'";
    const int status = std::system(whole.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readAll(out), readAll(err)};
}

void Workshop::write(const std::string& name, const Bytes& bytes) const {
    write(name, asText(bytes));
}

void Workshop::write(const std::string& name, const std::string& text) const {
    std::ofstream(path() / name, std::ios::binary) << text;
}

std::string Workshop::read(const std::string& name) const { return readAll(path() / name); }

bool Workshop::has(const std::string& name) const { return std::filesystem::exists(path() / name); }

std::size_t Workshop::count() const {
    const std::filesystem::directory_iterator entries(path());
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

Bytes smallClip() { return MxfBuilder().add(headerPartition()).withRandomIndexPack().build(); }

Bytes clipWithANamelessSet() {
    const Bytes nameless = klv(structuralKey(timelineTrackSet), property(0x4801, number(7, 4)));
    return MxfBuilder().add(headerPartition(join({smallMetadata(), nameless}))).build();
}

Bytes clipWithCompany(std::u16string_view name) {
    const Bytes metadata =
        join({standardPrimer(),
              set(structuralKey(prefaceSet), 1, {property(0x3B06, batch({uuid(3)}, 16))}),
              set(structuralKey(identificationSet), 3, {property(0x3C01, utf16(name))})});
    return MxfBuilder().add(headerPartition(metadata)).withRandomIndexPack().build();
}

} // namespace Corvid::Testing
