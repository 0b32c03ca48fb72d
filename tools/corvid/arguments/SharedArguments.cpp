#include "tools/corvid/arguments/SharedArguments.h"

#include "Corvid/Version.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace Corvid::Tool {

namespace {

constexpr std::uint32_t mostMemory = 1U << 30; // MiB

/// "K/N"; nothing for other text.
std::optional<BatchOptions::Shard> shardOf(const std::string& text) {
    const auto number = [](const char* begin, const char* end, std::uint64_t& value) {
        const auto [stop, error] = std::from_chars(begin, end, value);
        return error == std::errc() && stop == end;
    };
    const char* const end = text.data() + text.size();
    const char* const slash = std::find(text.data(), end, '/');
    BatchOptions::Shard shard;
    const bool isOne = slash != end && number(text.data(), slash, shard.number) &&
                       number(slash + 1, end, shard.count) && shard.number >= 1 &&
                       shard.number <= shard.count;
    return isOne ? std::optional(shard) : std::nullopt;
}

} // namespace

CLI::Validator someName() {
    return CLI::Validator(
        [](const std::string& text) {
            return text.empty() ? std::string("expected a name, not ''") : std::string();
        },
        "");
}

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
    verb.add_flag("--no-remote", options.remote.isForbidden,
                  "Refuse clips on servers, https:// and http://, instead of reading them")
        ->group(input);
    verb.add_flag("--download", options.remote.mayDownload,
                  "Read all of a clip where its server sends no parts of files")
        ->excludes("--no-remote")
        ->group(input);
}

void declareFiles(CLI::App& verb, BatchOptions& batch, const char* what) {
    verb.add_option("CLIP.mxf", batch.files, what)->type_name("CLIP.mxf")->group(input);
}

void declareBatch(CLI::App& verb, BatchOptions& batch) {
    verb.add_flag("--recursive", batch.recursive,
                  "Read the MXF files in the folders that are named, and in folders in these")
        ->group(manyFiles);
    verb.add_option("--files-from", batch.list,
                    "File with the names of more files, one a line; - is standard input")
        ->type_name("FILE")
        ->check(someName())
        ->group(manyFiles);
    verb.add_option_function<std::string>(
            "--shard",
            [&batch](const std::string& text) {
                batch.shard = shardOf(text).value_or(BatchOptions::Shard{});
            },
            "Read part K of N parts of the files: those whose path has a hash (FNV-1a, 64 bits) "
            "of K-1 modulo N")
        ->type_name("K/N")
        ->check(
            [](const std::string& text) {
                return shardOf(text) ? std::string()
                                     : "expected two numbers such as 1/4, not '" + text + "'";
            },
            "")
        ->group(manyFiles);
    verb.add_option("--jobs", batch.jobs, "Processes at once (default: 1)")
        ->type_name("N")
        ->check(numberFromOne(mostJobs))
        ->group(manyFiles);
    verb.add_option("--memory-per-job", batch.memoryPerJob, "MiB of memory that a process may use")
        ->type_name("MIB")
        ->check(numberFromOne(mostMemory))
        ->group(manyFiles);
    verb.add_option("--output-dir", batch.outputFolder,
                    "Folder for the results, each at the path of its file with a suffix")
        ->type_name("DIR")
        ->check(someName())
        ->group(manyFiles);
    verb.add_option("--log", batch.log, "File to which a line of JSON is added for each file")
        ->type_name("FILE")
        ->check(someName())
        ->group(manyFiles);
    verb.add_flag("--resume", batch.resumes, "Leave out the files that the log says are done")
        ->group(manyFiles);
}

void completeBatch(const CLI::App& verb, BatchOptions& batch) {
    if (batch.files.empty() && batch.list.empty()) {
        throw CLI::RequiredError("CLIP.mxf");
    }
    batch.verb = verb.get_name();
    batch.fingerprint = std::string(CORVID_VERSION) + '\0' + batch.verb + '\0';
    for (const CLI::Option* option : verb.get_options()) {
        const std::string name = option->get_name();
        if (option->get_positional() || option->get_group() == manyFiles || name == "--force") {
            continue;
        }
        for (const std::string& value : option->results()) {
            batch.fingerprint.append(name).append(1, '=').append(value).append(1, '\0');
        }
    }
}

void declareZeros(CLI::App& verb, BatchOptions& batch) {
    verb.add_flag("-0,--null", batch.listHasZeros,
                  "Names in the list of --files-from end with zeros instead of line breaks")
        ->group(manyFiles);
}

void declareMany(CLI::App& verb, BatchOptions& batch) {
    declareZeros(verb, batch);
    declareBatch(verb, batch);
    verb.parse_complete_callback([&verb, &batch] { completeBatch(verb, batch); });
}

void declareForce(CLI::App& verb, bool& force, const char* what) {
    verb.add_flag("--force", force, what)->group(output);
}

void declareStrictness(CLI::App& verb, bool& wanted, const char* what) {
    verb.add_flag("--warnings-as-errors", wanted, what)->group(processing);
}

} // namespace Corvid::Tool
