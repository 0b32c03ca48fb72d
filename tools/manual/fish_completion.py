"""Completion for fish (complete(1))."""


def quoted(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def words_of(values, verbs):
    """What completes a value, instead of the files that fish offers otherwise."""
    choices = values.get("choices", []) + (verbs if values.get("verbs") else [])
    if choices:
        return f"-x -a {quoted(' '.join(choices))}"
    if values.get("folders"):
        return "-x -a '(__fish_complete_directories)'"
    suffixes = [suffix for suffix in values.get("files", []) if suffix]
    if suffixes:
        return f"-x -k -a {quoted(f'(__fish_complete_suffix .{suffixes[0]})')}"
    return "-r -F" if "files" in values else "-x"


def line(condition, option, verbs):
    parts = ["complete -c corvid", f"-n {quoted(condition)}"]
    for name in option["names"]:
        parts.append(f"-l {name[2:]}" if name.startswith("--") else f"-s {name[1:]}")
    if "argument" in option:
        parts.append(words_of(option["values"], verbs))
    if not option["positional"]:
        parts.append(f"-d {quoted(option['description'])}")
    return " ".join(parts)


def completion_of(command):
    verbs = [verb["name"] for verb in command["verbs"]]
    lines = [
        "# Completion of corvid for fish. tools/manual/make_manual.py writes this file.",
        "",
        "complete -c corvid -f",
    ]
    for verb in command["verbs"]:
        lines.append(
            f"complete -c corvid -n '__fish_use_subcommand' -a {verb['name']} "
            f"-d {quoted(verb['description'])}"
        )
    for option in command["options"]:
        lines.append(line("__fish_use_subcommand", option, verbs))
    for verb in command["verbs"]:
        lines.append("")
        condition = f"__fish_seen_subcommand_from {verb['name']}"
        for option in verb["options"]:
            # Of an argument that can be anything there is nothing to offer.
            if not option["positional"] or option["values"]:
                lines.append(line(condition, option, verbs))
    return "\n".join(lines) + "\n"
