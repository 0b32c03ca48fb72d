#include "host/dataio/DataSink.h"

namespace Corvid::DataIO {

DataSink::~DataSink() = default;

} // namespace Corvid::DataIO
