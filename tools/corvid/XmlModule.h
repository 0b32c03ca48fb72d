#pragma once

namespace Corvid::Tool {

class Messages;
struct CheckOptions;
struct FromXmlOptions;
struct SchemaOptions;
struct ToXmlOptions;

/// The verbs that need XML, as the module offers them.
///
/// Xerces-C and XQilla pull in some forty shared libraries, whose loading costs more than all that
/// `corvid info` does. So these verbs stand in a module of their own that is loaded when one of
/// them is called. Module and command are built together: there is no other version to be met.
struct XmlVerbs {
    void (*check)(const CheckOptions& options, Messages& messages);
    void (*toXml)(const ToXmlOptions& options, Messages& messages);
    void (*fromXml)(const FromXmlOptions& options, Messages& messages);
    void (*schema)(const SchemaOptions& options, Messages& messages);
};

/// Loads the module on first use; it stays.
/// @throws IOError  it is not where it was installed.
const XmlVerbs& xmlVerbs();

} // namespace Corvid::Tool

/// What the module exports: pointer to its XmlVerbs.
extern "C" const Corvid::Tool::XmlVerbs* corvidXmlVerbs();
