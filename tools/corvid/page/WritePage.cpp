#include "tools/corvid/page/WritePage.h"

#include "host/dataio/BufferedSink.h"
#include "tools/corvid/page/HtmlText.h"
#include "tools/corvid/page/PageComparison.h"
#include "tools/corvid/page/PageData.h"
#include "tools/corvid/page/PageShell.h"
#include "tools/corvid/reports/ChangeReport.h"
#include "tools/corvid/reports/SummaryReport.h"
#include "tools/corvid/terminal/Printable.h"

namespace Corvid::Tool {

namespace {

void write(DataIO::DataSink& sink, std::string_view text) {
    sink.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

std::string differencesText(const PageComparison& comparison, const Inspection::Summary& after) {
    return "Compared with " + printable(comparison.before.summary.file) + ", from it to " +
           printable(after.file) + ":\n" +
           toText(comparison.changes, comparison.otherInstanceUIDs, comparison.dictionary) + "\n";
}

} // namespace

void writePage(const PageContent& content, const PageComparison* comparison,
               DataIO::DataSink& sink) {
    const Inspection::Summary& summary = content.summary;
    const PageShell& shell = pageShell();
    SummaryText everything;
    everything.warnings = true;
    everything.all = true;

    DataIO::BufferedSink page(sink);
    write(page, shell.beforeTitle);
    write(page, htmlText(printable(summary.essence.title.empty() ? summary.file
                                                                 : summary.essence.title)));
    write(page, shell.beforeSummary);
    if (comparison != nullptr) {
        write(page, htmlText(differencesText(*comparison, summary)));
    }
    write(page, htmlText(toText(summary, content.warnings, everything)));
    write(page, shell.beforeData);
    HtmlJsonSink json(page);
    writePageData(content, comparison, json);
    write(page, shell.end);
    page.flush();
}

} // namespace Corvid::Tool
