#include "host/types/DataType.h"

namespace Corvid::Types {

DataType::~DataType() = default;

void DataType::serialize(DataIO::DataSink& sink) const { sink.write(rawBuffer(), byteCount()); }

std::size_t DataType::byteCount() const { return serializedSize(); }

SimpleDataType::~SimpleDataType() = default;

} // namespace Corvid::Types
