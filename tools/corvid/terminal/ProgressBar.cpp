#include "tools/corvid/terminal/ProgressBar.h"

#include "tools/corvid/terminal/Printable.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace Corvid::Tool {

std::string progressBar(std::size_t done, std::size_t total, std::string_view what,
                        std::size_t columns) {
    constexpr std::size_t width = 20;
    const std::size_t filled = total == 0 ? width : width * done / total;
    std::string bar = "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] " +
                      std::to_string(done) + " of " + std::to_string(total) + "  ";
    std::string name = printable(what);
    // A line that is full to its last column makes some terminals begin the next one.
    const std::size_t room = columns > bar.size() + 1 ? columns - bar.size() - 1 : 0;
    if (name.size() > room) {
        std::size_t cut = name.size() - room;
        while (cut != name.size() && (static_cast<unsigned char>(name[cut]) & 0xC0U) == 0x80) {
            ++cut;
        }
        name.erase(0, cut);
    }
    return (bar + name).substr(0, columns > 1 ? columns - 1 : 0);
}

std::size_t terminalColumns() {
    winsize size{};
    constexpr std::size_t usual = 80;
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : usual;
}

} // namespace Corvid::Tool
