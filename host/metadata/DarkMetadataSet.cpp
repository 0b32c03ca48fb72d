#include "host/metadata/DarkMetadataSet.h"

namespace Corvid::Metadata {

DarkMetadataSet::DarkMetadataSet(const KLV::Key& key, unsigned char berLength, KLV::Value& value)
    : key_(key), berLength_(berLength), value_(value.slice()) {}

} // namespace Corvid::Metadata
