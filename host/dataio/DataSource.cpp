#include "host/dataio/DataSource.h"

namespace Corvid::DataIO {

DataSource::~DataSource() = default;

} // namespace Corvid::DataIO
