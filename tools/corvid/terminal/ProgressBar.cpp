#include "tools/corvid/terminal/ProgressBar.h"

#include "tools/corvid/terminal/Printable.h"

#include <cstdint>
#include <fmt/core.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Corvid::Tool {

std::string progressBar(std::size_t done, std::optional<std::size_t> total, std::string_view pace,
                        std::string_view what, std::size_t columns) {
    constexpr std::size_t width = 20;
    std::string bar = std::to_string(done);
    if (total) {
        const std::size_t filled = *total == 0 ? width : width * done / *total;
        bar = "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] " + bar +
              " of " + std::to_string(*total);
    }
    bar += "  ";
    if (!pace.empty()) {
        bar += std::string(pace) + "  ";
    }
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

std::string paceText(std::size_t done, std::optional<std::size_t> total, double seconds) {
    if (done == 0 || seconds <= 0) {
        return "";
    }
    const double rate = static_cast<double>(done) / seconds;
    std::string text = fmt::format("{:.1f}/s", rate);
    if (total && *total >= done) {
        constexpr unsigned minute = 60;
        constexpr unsigned hour = 60 * minute;
        const auto left = static_cast<std::uint64_t>(static_cast<double>(*total - done) / rate);
        text += left < hour ? fmt::format(", {}:{:02} left", left / minute, left % minute)
                            : fmt::format(", {}:{:02}:{:02} left", left / hour,
                                          left % hour / minute, left % minute);
    }
    return text;
}

std::size_t terminalColumns() {
    winsize size{};
    constexpr std::size_t usual = 80;
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : usual;
}

} // namespace Corvid::Tool
