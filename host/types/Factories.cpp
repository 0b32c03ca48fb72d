#include "host/types/Factories.h"

namespace Corvid::Types {

namespace Identifiers {

namespace {

template <class T, class = void> constexpr int sizeOfType = 0;
template <class T> constexpr int sizeOfType<T, std::void_t<decltype(T::fixedSize)>> = T::fixedSize;

} // namespace

int typeSize(Identifier type) noexcept {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return sizeOfType<Types::Class>;
#include "host/types/ValueTypes.def"
    }
    return 0;
}

const char* typeName(Identifier type) noexcept {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return #Class;
#include "host/types/ValueTypes.def"
    }
    return nullptr;
}

} // namespace Identifiers

namespace Factories {

namespace {

template <class T> Templates::auto_ptr<SimpleDataType> make(ByteView bytes) {
    if constexpr (std::is_base_of_v<SimpleDataType, T>) {
        if (T::fits(bytes)) {
            return Templates::auto_ptr<SimpleDataType>(new T(bytes));
        }
    }
    return {};
}

} // namespace

Templates::auto_ptr<SimpleDataType> fromBytes(Identifiers::Identifier type, ByteView bytes) {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return make<Class>(bytes);
#include "host/types/ValueTypes.def"
    }
    return {};
}

bool readCollectionHead(ByteView bytes, CollectionBytes& result) noexcept {
    constexpr std::size_t headSize = 8;
    if (bytes.size < headSize) {
        return false;
    }
    result.count = readBigEndian<u32>(bytes.data);
    result.itemSize = readBigEndian<u32>(bytes.data + 4);
    result.items = bytes.data + headSize;
    return u64{result.count} * result.itemSize == bytes.size - headSize &&
           (result.count == 0 || result.itemSize != 0);
}

Templates::auto_ptr<Collection> collectionFromBytes(Identifiers::Identifier kind,
                                                    Identifiers::Identifier item, ByteView bytes) {
    CollectionBytes head;
    if (bytes.size > ByteRun::greatestSize || !readCollectionHead(bytes, head)) {
        return {};
    }
    const int itemSize = static_cast<int>(head.itemSize);
    const int typeSize = Identifiers::typeSize(item);
    if (head.count != 0 && typeSize != 0 && itemSize != typeSize) {
        return {};
    }
    auto collection = kind == Identifiers::Array
                          ? Templates::auto_ptr<Collection>(new Array(itemSize))
                          : Templates::auto_ptr<Collection>(new Batch(itemSize));
    for (u32 i = 0; i != head.count; ++i) {
        auto value = fromBytes(item, head.item(i));
        if (!value) {
            return {};
        }
        collection->add(std::move(value));
    }
    return collection;
}

} // namespace Factories

} // namespace Corvid::Types
