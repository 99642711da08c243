"""What the checks read of the sources: their code without comments and texts, and the names that headers declare."""
import os
import re
from collections import namedtuple

COMMENT_OR_TEXT = re.compile(
    r"""//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'""", re.S)
DIRECTIVE = re.compile(r"^[ \t]*#(?:[^\n\\]|\\.|\\\n)*", re.M)
MACRO = re.compile(r"^[ \t]*#[ \t]*define[ \t]+([A-Z][A-Z0-9_]+)\b", re.M)
TOKEN = re.compile(r"::|->|\d(?:['\w.]|(?<=[eE])[+-])*|\w+|\S")
WORD = re.compile(r"[A-Za-z_]\w*$")
CONSTANT = re.compile(r"k[A-Z]\w*$")
TYPE_WORDS = ("class", "struct", "union", "enum")

# The kind is class (struct and union too), type (enumerations and aliases), function, constant or macro.
Declared = namedtuple("Declared", "namespace name kind")


def walk(root, endings=(".h", ".hpp", ".cpp", ".cc")):
    """The paths below the root of all files with one of the endings, in order."""
    found = []
    for folder, _, names in os.walk(root):
        found += [os.path.relpath(os.path.join(folder, n), root) for n in names if n.endswith(endings)]
    return sorted(found)


def without_comments(text):
    """The text with blanks for comments and an empty text for each text; lines stay where they are."""
    def blank(match):
        kept = "\n" * match[0].count("\n")
        return ('""' if match[0][0] in "\"R'" else " ") + kept
    return COMMENT_OR_TEXT.sub(blank, text)


class Source:
    """A file: its text, its code, its tokens without the preprocessor's lines."""

    def __init__(self, root, path):
        with open(os.path.join(root, path), encoding="utf-8") as file:
            self.text = file.read()
        self.path = path
        self.code = without_comments(self.text)
        self.tokens = TOKEN.findall(DIRECTIVE.sub("", self.code))
        self.scopes = self._find_scopes()

    def _find_scopes(self):
        """The namespaces whose names the file may use without a qualifier."""
        found = {""}
        for name in re.findall(r"\bnamespace\s+(\w+(?:::\w+)*)\s*[{;]", self.code):
            parts = name.split("::")
            outer = [scope + "::" for scope in found if scope] if name.count("::") == 0 else []
            for begin in [""] + outer:
                found.update(begin + "::".join(parts[:count]) for count in range(1, len(parts) + 1))
        return found

    def declared(self):
        """What the file declares at the scope of a namespace, but for forward declarations of types."""
        return [Declared("", name, "macro") for name in MACRO.findall(self.code)] + list(_declared(self.tokens))

    def types_anywhere(self):
        """The names of the types that the file declares at any scope, but for forward declarations."""
        found = set()
        for i, token in enumerate(self.tokens):
            if token in TYPE_WORDS or token == "using":
                names = [k for k in range(i + 1, min(i + 4, len(self.tokens) - 1))
                         if WORD.match(self.tokens[k]) and self.tokens[k] not in TYPE_WORDS]
                following = self.tokens[names[0] + 1] if names else ";"
                if following == "=" or (token != "using" and following != ";"):
                    found.add(self.tokens[names[0]])
        return found


def _skip(tokens, i, opening, closing):
    """The place behind the bracket that closes the one at i."""
    depth = 0
    while i < len(tokens):
        depth += (tokens[i] == opening) - (tokens[i] == closing)
        i += 1
        if depth == 0:
            break
    return i


def _declared(tokens):
    scopes = []
    i = 0
    while i < len(tokens):
        token = tokens[i]
        if token == "namespace":
            end = next(k for k in range(i, len(tokens)) if tokens[k] in "{;=")
            if tokens[end] == "{":
                scopes.append("".join(tokens[i + 1:end]))
            i = end + 1
        elif token == "extern" and tokens[i + 1:i + 3] == ['""', "{"]:
            scopes.append("")
            i += 3
        elif token == "}":
            if scopes:
                scopes.pop()
            i += 1
        else:
            head, body, i = _statement(tokens, i)
            scope = "::".join(s for s in scopes if s)
            yield from (Declared(scope, name, kind) for name, kind in _names(head, body))


def _statement(tokens, i):
    """The next statement: what stands before its first braces, what in them, and the place behind it."""
    head = []
    if tokens[i] == "template":
        i = _skip(tokens, i + 1, "<", ">")
    body = None
    is_function = False
    while i < len(tokens) and tokens[i] != ";":
        token = tokens[i]
        if token == "{":
            end = _skip(tokens, i, "{", "}")
            body = body if body is not None else tokens[i + 1:end - 1]
            i = end
            if is_function or (i < len(tokens) and tokens[i] == "}"):
                return head, body, i  # a function's body ends the statement
        elif token == "[" and tokens[i + 1] == "[":
            i = _skip(tokens, i, "[", "]")
        elif token in "([" or token == "=":
            is_type = head and head[0] in TYPE_WORDS
            is_function = is_function or (token == "(" and "=" not in head and body is None and not is_type)
            head.append(token)
            i = i + 1 if token == "=" else _skip(tokens, i, token, ")" if token == "(" else "]")
        else:
            if body is None:
                head.append(token)
            i += 1
    return head, body, i + 1


def _names(head, body):
    first = next((k for k, token in enumerate(head) if token in ("(", "[", "=")), len(head))
    before = head[:first]
    if not before or "operator" in before or before[0] in ("friend", "static_assert"):
        return
    if before[0] in ("using", "typedef"):
        if "=" in head or before[0] == "typedef":
            yield before[-1], "type"
        return
    if before[0] in TYPE_WORDS:
        if body is None:
            return  # a forward declaration
        base = head.index(":") if ":" in head else len(head)
        kind = "type" if head[0] == "enum" else "class"
        yield from ((name, kind) for name in [t for t in head[1:base] if WORD.match(t) and t != "final"][-1:])
        if head[0] == "enum" and head[1] not in ("class", "struct"):
            starts = [0] + [k + 1 for k, t in enumerate(body) if t == ","]
            yield from ((body[k], "constant") for k in starts if k < len(body) and WORD.match(body[k]))
        return
    if len(before) > 1 and WORD.match(before[-1]) and before[-2] != "::":
        is_function = head[first:first + 1] == ["("] and not CONSTANT.match(before[-1])
        yield before[-1], "function" if is_function else "constant"
