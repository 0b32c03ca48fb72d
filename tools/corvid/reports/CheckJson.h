#pragma once

#include "tools/corvid/reports/CheckReport.h"
#include "tools/corvid/reports/JsonStream.h"

namespace Corvid::Tool {

/// What a check says of a file for programs: JSON with the keys that docs/check.md names.
nlohmann::ordered_json toJson(const CheckedFile& file);

/// The report of a check of one file.
class CheckJson {
public:
    /// @param sink  is borrowed.
    explicit CheckJson(DataIO::DataSink& sink);

    void add(const CheckedFile& file);
    /// Ends the report.
    void finish(const CheckTally& tally);

private:
    JsonStream json_;
};

} // namespace Corvid::Tool
