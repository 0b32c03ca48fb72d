"""A document as a tree of nodes whose prefixes are resolved, read with expat alone."""
import xml.parsers.expat

XMLNS = "http://www.w3.org/2000/xmlns/"


class Malformed(Exception):
    pass


class Node:
    """`name` is the qualified name; `attributes` maps (URI, qualified name) to text."""

    def __init__(self, name, uri, attributes=None, text="", children=()):
        self.name, self.uri, self.text = name, uri, text
        self.attributes, self.children = attributes or {}, list(children)
        self.declarations = {}

    @property
    def local(self):
        return self.name.rpartition(":")[2]

    @property
    def space(self):
        return self.uri, self.name.rpartition(":")[0]

    def attribute(self, uri, local):
        return next(
            (
                text
                for (space, name), text in self.attributes.items()
                if space == uri and name.rpartition(":")[2] == local
            ),
            None,
        )


def parse(content):
    """The root of the document. Text between child elements is dropped when it is white space."""
    stack, roots, scopes = [], [], [{"xml": "http://www.w3.org/XML/1998/namespace", "": ""}]

    def resolve(name, is_attribute=False):
        prefix = name.rpartition(":")[0]
        if is_attribute and not prefix:
            return ""
        if prefix not in scopes[-1]:
            raise Malformed("prefix of %s is not bound" % name)
        return scopes[-1][prefix]

    def start(name, attributes):
        declared = {
            key[6:]: value
            for key, value in attributes.items()
            if key == "xmlns" or key.startswith("xmlns:")
        }
        scopes.append({**scopes[-1], **declared} if declared else scopes[-1])
        node = Node(name, resolve(name))
        node.declarations = declared
        node.attributes = {
            (resolve(key, True), key): value
            for key, value in attributes.items()
            if key != "xmlns" and not key.startswith("xmlns:")
        }
        (stack[-1].children if stack else roots).append(node)
        stack.append(node)

    def end(_name):
        node = stack.pop()
        scopes.pop()
        if node.children:
            if node.text.strip(" \t\r\n"):
                raise Malformed(
                    "text %r among the children of %s" % (node.text.strip()[:40], node.name)
                )
            node.text = ""

    def characters(text):
        stack[-1].text += text

    parser = xml.parsers.expat.ParserCreate()
    parser.buffer_text = True
    parser.StartElementHandler, parser.EndElementHandler = start, end
    parser.CharacterDataHandler = characters
    try:
        parser.Parse(content, True)
    except xml.parsers.expat.ExpatError as error:
        raise Malformed(str(error)) from error
    return roots[0]


def serialise(node):
    """Text of the document, for tests that damage one."""

    def escaped(text):
        return "".join("&#%d;" % ord(c) if c in '<>&"\r\n\t' else c for c in text)

    attributes = [("xmlns:" + p if p else "xmlns", uri) for p, uri in node.declarations.items()]
    attributes += [(name, text) for (_, name), text in node.attributes.items()]
    return "<%s%s>%s%s</%s>" % (
        node.name,
        "".join(' %s="%s"' % (name, escaped(text)) for name, text in attributes),
        escaped(node.text),
        "".join(serialise(child) for child in node.children),
        node.name,
    )
