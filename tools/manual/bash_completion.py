"""Completion for bash 4 and newer; it needs nothing but bash."""

FRAME = """\
# Completion of corvid for bash. tools/manual/make_manual.py writes this file.

_corvid_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

# _corvid_files WORD PATTERN...: folders, and files that match a pattern; any where none does.
_corvid_files() {
    local word=$1 pattern
    shift
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(
        for pattern; do compgen -f -X "!$pattern" -- "$word"; done
        compgen -d -- "$word"
    )
    ((${#COMPREPLY[@]})) || mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

_corvid_folders() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$1")
}

_corvid() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} verb= each
    COMPREPLY=()
    # bash makes --option=value three words.
    if [[ $word == = ]]; then
        word=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for each in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $each != -* ]]; then
            verb=$each
            break
        fi
    done
    case $verb:$before in
@VALUES@
    esac
    case $verb:$word in
@WORDS@
    esac
}

complete -F _corvid corvid
"""


def any_case(suffix):
    return "".join(f"[{letter.lower()}{letter.upper()}]" for letter in suffix)


def calls_for(values, verbs):
    """The call that completes what may have these values; nothing where that can be anything."""
    if "files" in values:
        patterns = [f"*.{any_case(suffix)}" if suffix else "*" for suffix in values["files"]]
        return ' '.join(['_corvid_files "$word"', *(f"'{pattern}'" for pattern in patterns)])
    if values.get("folders"):
        return '_corvid_folders "$word"'
    choices = values.get("choices", []) + (verbs if values.get("verbs") else [])
    return f"_corvid_words '{' '.join(choices)}' \"$word\"" if choices else ""


def united(options):
    """What the arguments of a verb may be, in one."""
    values = {}
    for option in options:
        for kind, each in option.get("values", {}).items():
            if isinstance(each, list):
                values[kind] = list(dict.fromkeys(values.get(kind, []) + each))
            else:
                values[kind] = each
    return values


def row(pattern, call, ends):
    """A row of a case; one that ends keeps the words from being completed as an argument."""
    commands = "; ".join(filter(None, [call, "return" if ends else ""]))
    return f"    {pattern}) {commands} ;;"


def names_of(options):
    return " ".join(name for option in options for name in option["names"])


def completion_of(command):
    verbs = [verb["name"] for verb in command["verbs"]]
    values, words = [], []
    for verb in command["verbs"]:
        positional = [option for option in verb["options"] if option["positional"]]
        named = [option for option in verb["options"] if not option["positional"]]
        for option in named:
            if "argument" in option:
                pattern = " | ".join(f"{verb['name']}:{name}" for name in option["names"])
                values.append(row(pattern, calls_for(option["values"], verbs), True))
        words.append(
            row(f"{verb['name']}:-*", f"_corvid_words '{names_of(named)}' \"$word\"", False)
        )
        words.append(row(f"{verb['name']}:*", calls_for(united(positional), verbs), False))
    options = names_of(command["options"])
    words.append(row(":-*", f"_corvid_words '{options}' \"$word\"", False))
    words.append(row(":*", f"_corvid_words '{' '.join(verbs)}' \"$word\"", False))
    return FRAME.replace("@VALUES@", "\n".join(values)).replace("@WORDS@", "\n".join(words))
