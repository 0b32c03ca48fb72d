#include "tests/support/RichModel.h"

#include "tests/support/ThingsDictionary.h"

namespace Corvid::Testing {

namespace {

using namespace Types;

template <class Kind, class T>
void addItems(Model& model, Model::Set& set, const std::string& tag, const T& value) {
    auto items = Templates::auto_ptr<Collection>(new Kind(value.serializedSize()));
    items->add(value.clone());
    items->add(value.clone());
    model.element<Metadata::CollectionElement>(set, tag).set(std::move(items));
}

/// Gives the set a value of the type, an array and a batch.
template <class T>
void add(Model& model, Model::Set& set, const std::string& type, const T& value) {
    model.value(set, type, value);
    addItems<Array>(model, set, type + "Array", value);
    addItems<Batch>(model, set, type + "Batch", value);
}

void addThing(Model& model) {
    auto& thing = model.set("Thing", 3);
    const u8 bytes[] = {0, 0x7F, 0xFF};
    add(model, thing, "UInt8", UInt8(255));
    add(model, thing, "Int64", Int64(-5));
    add(model, thing, "Boolean", Boolean(true));
    add(model, thing, "UTF16String", UTF16String(Platform::fromUtf8("text & more").c_str()));
    add(model, thing, "ISO7String", ISO7String("a <&> b"));
    add(model, thing, "Rational", Rational(25, 1));
    add(model, thing, "Timestamp", Timestamp(2026, 1, 2, 3, 4, 5, 8));
    add(model, thing, "UUID", Testing::uuid(77));
    add(model, thing, "RGBALayout", RGBALayout());
    add(model, thing, "J2KPictureComponent", J2KPictureComponent(7, 1, 255));
    add(model, thing, "DataStream", DataStream(bytes, 3));
    add(model, thing, "ProductVersion", ProductVersion(1, 2, 3, 4, ProductVersion::privateBuild));
    model.reference(thing, "StrongReference", 4);
    model.reference(thing, "WeakReference", 1);
    model.references(thing, "StrongReferenceArray", {5});
    model.references(thing, "WeakReferenceBatch", {4, 99});
    model.misplaced<Metadata::SimpleElement>(thing, "OtherNumber").set(UInt8(7).clone());
    model.unknown(thing, 0x7F01, "bytes");
}

} // namespace

Model emptyModel() { return Model::extendedBy(thingsDictionary()); }

void fillRichly(Model& model) {
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", VersionType(1, 3));
    model.references(preface, "DescriptiveSchemes", {});
    model.reference(preface, "ContentStorageObject", 2);
    model.references(model.set("ContentStorage", 2), "Packages", {3});
    addThing(model);
    for (const u8 instance : {u8{4}, u8{5}, u8{6}}) { // the last one outside of the tree
        model.value(model.set("Other", instance), "OtherNumber", UInt8(instance));
    }
    model.darkGroup(7);
    model.darkSet(Model::darkKey(), 4, "dark");
}

} // namespace Corvid::Testing
