#include "tools/corvid/Check.h"
#include "tools/corvid/FromXml.h"
#include "tools/corvid/Schema.h"
#include "tools/corvid/ToXml.h"
#include "tools/corvid/XmlModule.h"

extern "C" __attribute__((visibility("default"))) const Corvid::Tool::XmlVerbs* corvidXmlVerbs() {
    static constexpr Corvid::Tool::XmlVerbs verbs{&Corvid::Tool::check, &Corvid::Tool::toXml,
                                                  &Corvid::Tool::fromXml, &Corvid::Tool::schema};
    return &verbs;
}
