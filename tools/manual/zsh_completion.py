"""Completion for zsh, with _arguments (zshcompsys(1))."""

FRAME = """\
#compdef corvid
# Completion of corvid for zsh. tools/manual/make_manual.py writes this file.

_corvid_verbs() {
    local -a verbs=(
@VERBS@
    )
    _describe verb verbs
}

_corvid() {
    local context state line
    typeset -A opt_args
    _arguments -C \\
@OPTIONS@
        '1:verb:_corvid_verbs' \\
        '*:: :->arguments'
    [[ $state == arguments ]] || return
    case $words[1] in
@ARGUMENTS@
    esac
}

_corvid "$@"
"""


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def escaped(text):
    """Text inside a specification of _arguments."""
    for each in "\\[]:":
        text = text.replace(each, "\\" + each)
    return text


def action_of(option):
    values = option["values"]
    if "files" in values:
        suffixes = [suffix for suffix in values["files"] if suffix]
        pattern = f"*.(#i)({'|'.join(suffixes)})(-.)" if suffixes else ""
        return f'_files -g "{pattern}"' if pattern else "_files"
    if values.get("folders"):
        return "_directories"
    if values.get("verbs"):
        return "_corvid_verbs"
    return f"({' '.join(values['choices'])})" if "choices" in values else " "


def specification_of(option):
    """An option or argument as _arguments takes it."""
    message = escaped(option.get("argument", ""))
    value = f":{message}:{action_of(option)}" if "argument" in option else ""
    if option["positional"]:
        place = "*" if option["repeatable"] else "" if option["required"] else ":"
        return quoted(f"{place}{value}")
    explanation = f"[{escaped(option['description'])}]"
    names = option["names"]
    front = "*" if option["repeatable"] else f"({' '.join(names)})" if len(names) > 1 else ""
    # A long option may have its value after "=".
    forms = [name + ("=" if value and name.startswith("--") else "") for name in names]
    if value:
        forms = [form if form.endswith("=") else form + "+" for form in forms]
    return " ".join(quoted(f"{front}{form}{explanation}{value}") for form in forms)


def completion_of(command):
    verbs = [
        "        " + quoted(f"{verb['name']}:{verb['description']}") for verb in command["verbs"]
    ]
    options = [f"        {specification_of(option)} \\" for option in command["options"]]
    arguments = []
    for verb in command["verbs"]:
        lines = [specification_of(option) for option in verb["options"]]
        joined = " \\\n            ".join(lines)
        arguments.append(f"    {verb['name']})\n        _arguments -s \\\n            {joined}\n        ;;")
    return (
        FRAME.replace("@VERBS@", "\n".join(verbs))
        .replace("@OPTIONS@", "\n".join(options))
        .replace("@ARGUMENTS@", "\n".join(arguments))
    )
