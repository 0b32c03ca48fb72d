#include "tools/corvid/batch/Progress.h"

#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/ProgressBar.h"

namespace Corvid::Tool {

void Progress::show(std::size_t done, std::optional<std::size_t> total, const std::string& file) {
    constexpr auto interval = std::chrono::milliseconds(100);
    const auto now = Clock::now();
    if (!messages_.showsProgress() || now - shown_ < interval) {
        return;
    }
    shown_ = now;
    const std::chrono::duration<double> seconds = now - begin_;
    const std::string pace = paceText(done, total, seconds.count());
    messages_.showProgress(progressBar(done, total, pace, file, terminalColumns()));
}

} // namespace Corvid::Tool
