#include "tools/corvid/ExitStatus.h"

#include "tools/corvid/output/Output.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <exception>
#include <new>

namespace Corvid::Tool {

namespace {

int run(const std::function<void()>& work, Messages& messages) {
    const auto textOf = [](const Exceptions::BaseException& error) {
        return Platform::toUtf8(error.message());
    };
    try {
        work();
        return exitDone;
    } catch (const EndedWith& end) {
        return end.status;
    } catch (const UsageError& error) {
        messages.error("", error.text);
        messages.write(error.help);
        return exitUsage;
    } catch (const OutputError& error) {
        if (!error.isClosedPipe()) {
            messages.error(error.target(), textOf(error));
        }
        return exitNoFile;
    } catch (const Exceptions::IOError& error) {
        messages.error(textOf(error));
        return exitNoFile;
    } catch (const Exceptions::InvalidDictionary& error) {
        // It names the text and the line itself.
        messages.error("", textOf(error));
        return exitRefused;
    } catch (const Exceptions::BaseException& error) {
        messages.error(textOf(error));
        return exitRefused;
    } catch (const std::bad_alloc&) {
        messages.error("not enough memory");
        return exitRefused;
    } catch (const std::exception& error) {
        messages.error(error.what());
        return exitRefused;
    }
}

} // namespace

void refuseWarnings(bool wanted, const Messages& messages) {
    if (const std::size_t count = messages.warningCount(); wanted && count != 0) {
        throw Exceptions::InvalidFormat(std::to_string(count) +
                                            (count == 1 ? " warning" : " warnings") +
                                            ", and --warnings-as-errors",
                                        CORVID_HERE);
    }
}

int guard(const std::function<void()>& work, Messages& messages) {
    const int status = run(work, messages);
    messages.flush();
    return status;
}

} // namespace Corvid::Tool
