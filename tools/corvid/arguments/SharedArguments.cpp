#include "tools/corvid/arguments/SharedArguments.h"

#include <algorithm>

namespace Corvid::Tool {

CLI::Validator oneOf(std::vector<std::string> values) {
    return CLI::Validator(
        [values = std::move(values)](const std::string& text) {
            const bool isOne = std::find(values.begin(), values.end(), text) != values.end();
            return isOne ? std::string()
                         : "expected " + CLI::detail::join(values, " or ") + ", not '" + text + "'";
        },
        "");
}

CLI::Validator numberFromOne(std::uint32_t greatest) {
    return CLI::Validator(
        [greatest](std::string& text) {
            return CLI::Range(std::uint32_t{1}, greatest)(text).empty()
                       ? std::string()
                       : "expected a number from 1 to " + std::to_string(greatest) + ", not '" +
                             text + "'";
        },
        "");
}

void declareDictionaries(CLI::App& verb, DictionaryChoice& choice) {
    verb.add_option("--dictionary", choice.files,
                    "Definitions of sets and properties beside the built-in ones; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false)
        ->group(input);
    verb.add_flag("--no-vendor-dictionaries", choice.registeredOnly,
                  "Know the sets and properties of the SMPTE registers alone, not what else is in "
                  "use")
        ->group(input);
}

void declareReading(CLI::App& verb, ClipOptions& options) {
    declareDictionaries(verb, options.dictionaries);
    verb.add_option("--partition", options.partition,
                    "Partition to read the metadata of: auto (the last complete copy), header, "
                    "footer, or the "
                    "number of a partition, from 0")
        ->type_name("auto|header|footer|N")
        ->check(
            [](const std::string& text) {
                return isPartitionChoice(text)
                           ? std::string()
                           : "expected auto, header, footer or a number, not '" + text + "'";
            },
            "")
        ->capture_default_str()
        ->group(input);
}

void declareClip(CLI::App& verb, ClipOptions& options) {
    verb.add_option("CLIP.mxf", options.path, "MXF file to read; - is standard input")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    declareReading(verb, options);
}

void declareForce(CLI::App& verb, bool& force, const char* what) {
    verb.add_flag("--force", force, what)->group(output);
}

void declareStrictness(CLI::App& verb, bool& wanted, const char* what) {
    verb.add_flag("--warnings-as-errors", wanted, what)->group(processing);
}

} // namespace Corvid::Tool
