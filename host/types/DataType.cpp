#include "host/types/DataType.h"

namespace Corvid::Types {

DataType::~DataType() = default;

void DataType::serialize(DataIO::DataSink& sink) const {
    sink.write(rawBuffer(), serializedSize());
}

SimpleDataType::~SimpleDataType() = default;

} // namespace Corvid::Types
