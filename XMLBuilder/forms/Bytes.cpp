#include "XMLBuilder/forms/Bytes.h"

#include "XMLBuilder/format/HexBytes.h"
#include "host/base/Hex.h"
#include "host/dataio/Memory.h"
#include "host/klv/Value.h"

namespace Corvid::XMLBuilder::ValueForms {

void Bytes::write(DocumentSink& to, const Types::DataType& value) {
    to.text(Hex::encoded<std::u16string>(value.rawBuffer(), value.byteCount(), Hex::upper));
}

ParsedValue Bytes::parse(ValueInput& from, As<Types::DataStream>) {
    const FieldBytes bytes = parseHexBytes(from.text());
    return give(Types::DataStream(bytes.data(), static_cast<Types::u32>(bytes.size())));
}

ParsedValue Bytes::parse(ValueInput& from, As<Types::Unknown>) {
    const FieldBytes bytes = parseHexBytes(from.text());
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, source.remaining());
    return give(Types::Unknown(value));
}

ParsedValue Bytes::parse(ValueInput& from, As<Types::DataValue>) {
    if (from.isElementAlone()) {
        return {};
    }
    const FieldBytes bytes = parseHexBytes(from.text());
    return give(Types::DataValue(Types::ByteView{bytes.data(), bytes.size()}));
}

} // namespace Corvid::XMLBuilder::ValueForms
