#pragma once

#include <string>

namespace Corvid::Tool {

/// A path without "." and repeated slashes: equal for names of one file that differ in these only.
std::string plainPath(const std::string& path);

/// True where a part of the path is "..".
bool leadsUpwards(const std::string& path);

/// The files in a folder that results of other files go to: each at the path of its file, without
/// "/" and "./" at the front, and with a suffix after the whole name.
class OutputFolder {
public:
    /// @param suffix  such as ".xml".
    OutputFolder(std::string folder, std::string suffix)
        : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

    /// "out/in/clip.mxf.xml" for "./in/clip.mxf". Of a path that does not lead upwards; of an
    /// address without what may be secret.
    std::string pathOf(const std::string& file) const;

    /// Makes the folders that lead to a result, so that the disk has them.
    /// @param path  as pathOf() gives it.
    /// @throws OutputError  it can't be done.
    static void makeFoldersFor(const std::string& path);

private:
    std::string folder_;
    std::string suffix_;
};

} // namespace Corvid::Tool
