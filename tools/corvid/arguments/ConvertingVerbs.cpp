#include "tools/corvid/FromXml.h"
#include "tools/corvid/Schema.h"
#include "tools/corvid/ToJson.h"
#include "tools/corvid/ToXml.h"
#include "tools/corvid/arguments/SharedArguments.h"
#include "tools/corvid/arguments/Verbs.h"
#include "tools/corvid/xml/XmlModule.h"

#include <memory>

namespace Corvid::Tool {

namespace {

/// Loads the module when there is something to validate, and not before.
void validateInModule(const unsigned char* bytes, std::size_t length,
                      const MetaMetadata::Dictionary& dictionary, Messages& messages) {
    xmlModule().validate(bytes, length, dictionary, messages);
}

/// The same where a document is read leniently.
Editing::DocumentMetadata readLenientlyInModule(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers) {
    return xmlModule().readLeniently(source, dictionary, identifiers);
}

/// What of a clip is written, and how sets refer to each other.
template <class Options>
void declareContent(CLI::App& verb, const std::shared_ptr<Options>& options) {
    verb.add_option_function<std::string>(
            "--references",
            [options](const std::string& how) { options->referencesAsValues = how == "values"; },
            "links: sets are side by side and refer to each other; values: a set is inside "
            "the property that owns it")
        ->type_name("links|values")
        ->check(oneOf({"links", "values"}))
        ->default_str("links")
        ->group(processing);
    verb.add_flag("--structural-only", options->structuralOnly,
                  "Leave out sets that are not structural metadata")
        ->group(processing);
    verb.add_option("--start", options->start, "Begin with this set instead of the Preface")
        ->type_name("INSTANCEUID")
        ->group(processing);
}

template <class Options>
void declareOutput(CLI::App& verb, const std::shared_ptr<Options>& options) {
    verb.add_option("-o,--output", options->output, "File to write; - is standard output")
        ->type_name("FILE")
        ->check(someName())
        ->capture_default_str()
        ->group(output);
    declareForce(verb, options->force, "Write also where an MXF file is, which is lost");
}

} // namespace

Work declareToXml(CLI::App& verb) {
    using XMLUtils::EncodingType;
    const auto options = std::make_shared<ToXmlOptions>();
    declareFiles(verb, options->batch, "MXF files to read; - is standard input");
    declareReading(verb, options->clip);
    declareContent(verb, options);
    verb.add_flag("--replace-invalid", options->replaceInvalid,
                  "Write U+FFFD for characters that XML can't hold, and say where, instead of "
                  "refusing them")
        ->group(processing);
    verb.add_flag_function(
            "--validate", [options](std::int64_t) { options->validate = validateInModule; },
            "Check the document against its schema before it is written")
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    declareOutput(verb, options);
    verb.add_option_function<std::string>(
            "--encoding",
            [options](const std::string& name) {
                options->encoding = name == "utf-16" ? EncodingType::utf16 : EncodingType::utf8;
            },
            "Encoding of the text")
        ->type_name("utf-8|utf-16")
        ->check(oneOf({"utf-8", "utf-16"}))
        ->default_str("utf-8")
        ->group(output);
    verb.add_flag("--compact", options->compact, "No line breaks and no indentation")
        ->group(output);
    declareMany(verb, options->batch);
    return [options](Messages& messages) { toXml(*options, messages); };
}

Work declareToJson(CLI::App& verb) {
    const auto options = std::make_shared<ToJsonOptions>();
    declareFiles(verb, options->batch, "MXF files to read; - is standard input");
    declareReading(verb, options->clip);
    declareContent(verb, options);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    declareOutput(verb, options);
    verb.add_flag("--compact", options->compact, "No line breaks and no indentation")
        ->group(output);
    declareMany(verb, options->batch);
    return [options](Messages& messages) { toJson(*options, messages); };
}

Work declareFromXml(CLI::App& verb) {
    const auto options = std::make_shared<FromXmlOptions>();
    verb.add_option("DOC.xml", options->path, "Document to read; - is standard input")
        ->required()
        ->type_name("DOC.xml")
        ->group(input);
    declareDictionaries(verb, options->dictionaries);
    verb.add_flag_function(
            "--new-identifiers",
            [options](std::int64_t) { options->identifiers = Editing::DocumentIdentifiers::fresh; },
            "Give every set a new InstanceUID instead of the one in the document")
        ->group(processing);
    verb.add_flag_function(
            "--lenient", [options](std::int64_t) { options->lenient = readLenientlyInModule; },
            "Read what can be read, as the library does, instead of refusing a document "
            "with mistakes")
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    verb.add_option("-o,--output", options->output, "File to write; - is standard output")
        ->required()
        ->type_name("FILE")
        ->check(someName())
        ->group(output);
    declareForce(
        verb, options->force,
        "Write also where an MXF file with more than a header partition is, which is lost");
    verb.add_option("--kag", options->kagSize,
                    "KAG size in bytes: the metadata begins and ends at multiples of it")
        ->type_name("N")
        ->check(numberFromOne(greatestKagSize))
        ->capture_default_str()
        ->group(output);
    return [options](Messages& messages) { fromXml(*options, messages); };
}

Work declareSchema(CLI::App& verb) {
    const auto options = std::make_shared<SchemaOptions>();
    declareDictionaries(verb, options->dictionaries);
    verb.add_option("-o,--output", options->folder,
                    "Folder for the schemas, one file per namespace")
        ->type_name("DIR")
        ->check(someName())
        ->capture_default_str()
        ->group(output);
    declareForce(verb, options->force, "Write also where an MXF file is, which is lost");
    verb.add_flag("--json", options->json, "Write the JSON Schema of what to-json writes instead")
        ->group(output);
    return [options](Messages& messages) {
        options->json ? jsonSchema(*options, messages) : xmlModule().schema(*options, messages);
    };
}

} // namespace Corvid::Tool
