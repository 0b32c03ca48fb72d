"""Manual pages: one for the command, one for each verb (man-pages(7), groff_man(7))."""


def escaped(text):
    """Text in which nothing is markup. A hyphen is one that can be copied into a shell."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def sentence(text):
    return text if text.endswith(".") else text + "."


def bold(text):
    return f"\\fB{escaped(text)}\\fR"


def italic(text):
    return f"\\fI{escaped(text)}\\fR"


def head(title, summary):
    # No date: pages are the same until the command line changes.
    return [
        f'.TH {escaped(title.upper())} 1 "" "Corvid" "User Commands"',
        ".SH NAME",
        f"{escaped(title)} \\- {escaped(summary[0].lower() + summary[1:])}",
    ]


def argument_of(option):
    """An argument in the synopsis, with what says whether it may be left out or repeated."""
    text = italic(option["argument"])
    if not option["required"]:
        text = f"[{text}]"
    return text + ("..." if option["repeatable"] else "")


def entry_of(option):
    """An option and what it does."""
    argument = option.get("argument")
    if option["positional"]:
        title = italic(argument)
    else:
        title = ", ".join(map(bold, option["names"]))
        title += f" {italic(argument)}" if argument else ""
    lines = [".TP", title, escaped(sentence(option["description"]))]
    if option.get("default"):
        lines.append(f"The default is {bold(option['default'])}.")
    return lines


def options_of(options):
    """All options, a section for each group."""
    lines = []
    groups = list(dict.fromkeys(option["group"] for option in options))
    for group in groups:
        title = group.upper() if group.upper() == "OPTIONS" else group.upper() + " OPTIONS"
        lines.append(f".SH {title}")
        for option in options:
            if option["group"] == group:
                lines += entry_of(option)
    return lines


def statuses_of(command):
    lines = [".SH EXIT STATUS"]
    for each in command["exitStatuses"]:
        lines += [".TP", bold(str(each["status"])), escaped(sentence(each["meaning"]))]
    return lines


def references(names):
    last = names[-1]
    return [f".BR {escaped(name)} (1){'' if name is last else ','}" for name in names]


def page_of_command(command, verbs):
    lines = head(command["name"], command["description"])
    lines += [
        ".SH SYNOPSIS",
        f"{bold(command['name'])} {italic('VERB')} [{italic('OPTION')}]... {italic('ARGUMENT')}...",
        ".SH DESCRIPTION",
        escaped(sentence(command["description"])),
        "Each verb has a page of its own.",
        "Results go to standard output, messages to standard error;",
        f"{bold('-')} is standard input or standard output.",
        ".SH VERBS",
    ]
    for verb in verbs:
        lines += [".TP", bold(verb["name"]), escaped(sentence(verb["description"]))]
    lines += [
        ".TP",
        f"{bold('help')} [{italic('VERB')}]",
        "Show the verbs, or the options of a verb.",
    ]
    lines += options_of(command["options"])
    lines += statuses_of(command)
    lines += [".SH SEE ALSO"]
    lines += references([f"{command['name']}-{verb['name']}" for verb in verbs])
    return "\n".join(lines) + "\n"


def page_of_verb(command, verb, verbs):
    positional = [option for option in verb["options"] if option["positional"]]
    name = f"{command['name']}-{verb['name']}"
    lines = head(name, verb["description"])
    lines += [
        ".SH SYNOPSIS",
        " ".join(
            [bold(command["name"]), bold(verb["name"]), f"[{italic('OPTION')}]..."]
            + [argument_of(option) for option in positional]
        ),
        ".SH DESCRIPTION",
        escaped(sentence(verb["description"])),
    ]
    for option in positional:
        lines += entry_of(option)
    lines += options_of([option for option in verb["options"] if not option["positional"]])
    lines += statuses_of(command)
    lines += [".SH SEE ALSO"]
    others = [each["name"] for each in verbs if each is not verb]
    lines += references([command["name"], *(f"{command['name']}-{each}" for each in others)])
    return "\n".join(lines) + "\n"


def pages_of(command):
    """Name and text of each page."""
    verbs = [verb for verb in command["verbs"] if verb["name"] != "help"]
    yield command["name"], page_of_command(command, verbs)
    for verb in verbs:
        yield f"{command['name']}-{verb['name']}", page_of_verb(command, verb, verbs)
