#pragma once

#include "tools/corvid/FromXml.h"
#include "tools/corvid/xml/DocumentValidator.h"

namespace Corvid::Tool {

class Messages;
struct SchemaOptions;

/// What of the command needs Xerces-C and XQilla, as the module offers it.
///
/// These pull in some forty shared libraries, whose loading costs more than all that `corvid info`
/// or `corvid to-xml` does with a small file. So what needs them is in a module of its own that
/// is loaded when it is called. Module and command are built together: there is no other version to
/// be met. A build with static libraries has it in the command, where it costs no loading.
struct XmlModule {
    void (*schema)(const SchemaOptions& options, Messages& messages);
    DocumentValidator validate;
    LenientReader readLeniently;
};

/// Loads the module on first use; it stays.
/// @throws IOError  it is not where it was installed.
const XmlModule& xmlModule();

} // namespace Corvid::Tool

/// What the module exports: pointer to its XmlModule.
extern "C" const Corvid::Tool::XmlModule* corvidXmlModule();
