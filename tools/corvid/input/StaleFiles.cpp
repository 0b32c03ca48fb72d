#include "tools/corvid/input/StaleFiles.h"

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <string_view>
#include <vector>

namespace Corvid::Tool {

namespace {

namespace fs = std::filesystem;

/// What a file is, and what of it an edit of a clip makes untrue.
struct Kind {
    const char* name;
    const char* stale;
    bool ifLonger; ///< only an edit that makes the clip longer
};

// clang-format off
constexpr Kind packingList{"packing list",      "if it lists the clip, the hash and size there are those of the clip before the edit, and the clip has changed under the same identifier", false};
constexpr Kind playlist   {"playlist",          "if it plays the clip, what it repeats of descriptors and hash is of the clip before the edit", false};
constexpr Kind assetMap   {"asset map",         "if it lists the clip, the size there is that of the clip before the edit", true};
constexpr Kind checksums  {"list of checksums", "if it has that of the clip, it is that of the clip before the edit", false};
constexpr Kind index      {"index",             "its byte offsets are those of the clip before the edit", true};
// clang-format on

struct KnownName {
    std::string_view name;
    const Kind& kind;
};

/// Root elements of SMPTE ST 429-7 to ST 429-9, ST 2067-2 and ST 2067-3.
const KnownName rootElements[] = {
    {"PackingList", packingList}, {"CompositionPlaylist", playlist}, {"AssetMap", assetMap}};

/// Extensions of files that are about one clip or about all files of a folder.
const KnownName ofFolders[] = {{".mhl", checksums},    {".md5", checksums},    {".sha1", checksums},
                               {".sha256", checksums}, {".sha512", checksums}, {".sfv", checksums}};

/// Extensions of files that are about one clip, whose name they have.
const KnownName ofClips[] = {{".xxh64", checksums}, {".xxh128", checksums}, {".idx", index},
                             {".index", index},     {".ffindex", index},    {".lwi", index}};

template <std::size_t size>
const Kind* find(const KnownName (&known)[size], std::string_view name) {
    const auto* const found =
        std::find_if(std::begin(known), std::end(known),
                     [&](const KnownName& each) { return each.name == name; });
    return found == std::end(known) ? nullptr : &found->kind;
}

/// The name of the first element of an XML file, without its prefix.
std::string_view rootElementOf(std::string_view text) {
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        text.remove_prefix(at + 1);
        at = 0;
        if (text.substr(0, 3) == "!--") {
            at = std::min(text.find("-->"), text.size());
        } else if (text.substr(0, 1) != "?" && text.substr(0, 1) != "!") {
            const std::string_view name = text.substr(0, text.find_first_of(" \t\r\n/>"));
            return name.substr(name.find(':') + 1); // all of it where there is no prefix
        }
    }
    return {};
}

const Kind* kindOfXml(const fs::path& path) {
    std::array<unsigned char, 2048> front{};
    try {
        const auto file = DataIO::openSource(path.string());
        const std::size_t size = file->readAt(0, front.data(), front.size());
        return find(rootElements,
                    rootElementOf({reinterpret_cast<const char*>(front.data()), size}));
    } catch (const Exceptions::IOError&) {
        return nullptr;
    }
}

/// Goes through a folder.
class Search {
public:
    explicit Search(const fs::path& clip) : clip_(clip) {}

    const Kind* kindOf(const fs::directory_entry& entry) {
        std::error_code nothing;
        const fs::path& path = entry.path();
        if (path.filename() == "ascmhl") { // a folder
            return &checksums;
        }
        if (!entry.is_regular_file(nothing)) {
            return nullptr;
        }
        const std::string extension = path.extension().string();
        if (extension == ".xml") {
            return xmlFiles_++ < mostXmlFiles ? kindOfXml(path) : nullptr;
        }
        const bool isOfClip = path.stem() == clip_.filename() || path.stem() == clip_.stem();
        const Kind* const kind = find(ofFolders, extension);
        return isOfClip && kind == nullptr      ? find(ofClips, extension)
               : isOfClip || !isOfAnother(path) ? kind
                                                : nullptr;
    }

private:
    static constexpr std::size_t mostXmlFiles = 1000;

    /// Whether a file has the name of another one, with a further extension or another one.
    bool isOfAnother(const fs::path& path) const {
        std::error_code nothing;
        const fs::path stem = path.parent_path() / path.stem();
        return fs::exists(stem, nothing) ||
               fs::exists(stem.string() + clip_.extension().string(), nothing);
    }

    const fs::path& clip_;
    std::size_t xmlFiles_ = 0;
};

} // namespace

void noteStaleFiles(const std::string& clip, bool isLonger, Messages& messages) {
    constexpr std::size_t mostNamed = 3; // of a kind
    std::error_code error;
    const fs::path path = fs::canonical(clip, error);
    Search search(path);
    std::map<const Kind*, std::vector<std::string>> found;
    fs::directory_iterator entry(path.parent_path(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const Kind* const kind = search.kindOf(*entry);
        if (kind != nullptr && (isLonger || !kind->ifLonger)) {
            found[kind].push_back(entry->path().filename().string());
        }
    }
    for (const Kind* const kind : {&packingList, &playlist, &assetMap, &checksums, &index}) {
        std::vector<std::string>& names = found[kind];
        std::sort(names.begin(), names.end());
        for (std::size_t i = 0; i != std::min(names.size(), mostNamed); ++i) {
            messages.note(std::string("the ") + kind->name + " " + names[i] +
                          " is beside the clip; " + kind->stale);
        }
        if (names.size() > mostNamed) {
            messages.note("the same for " + std::to_string(names.size() - mostNamed) + " more");
        }
    }
}

} // namespace Corvid::Tool
