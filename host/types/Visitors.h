#pragma once

#include "Corvid/Export.h"

namespace Corvid::Types {

#define CORVID_VALUE_TYPE(Class, Id, Form) class Class;
#include "host/types/ValueTypes.def"

namespace Visitors {

/// Work on a value by its concrete type. The operations have a fixed order that all visitors
/// of the system share.
class CORVID_EXPORT Visitor {
public:
    virtual ~Visitor();
#define CORVID_VALUE_TYPE(Class, Id, Form) virtual void visit(const Class& value) = 0;
#include "host/types/ValueTypes.def"
};

/// The same for values that may be changed.
class CORVID_EXPORT NonConstVisitor {
public:
    virtual ~NonConstVisitor();
#define CORVID_VALUE_TYPE(Class, Id, Form) virtual void visit(Class& value) = 0;
#include "host/types/ValueTypes.def"
};

/// Does nothing for any type: the base of visitors that care for a few.
class CORVID_EXPORT NullVisitor : public Visitor {
public:
    ~NullVisitor() override;
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void visit(const Class&) override {}
#include "host/types/ValueTypes.def"
};

} // namespace Visitors

} // namespace Corvid::Types
