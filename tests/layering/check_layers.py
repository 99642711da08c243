#!/usr/bin/env python3
"""check_layers.py <src> [--table <Layers.cmake>] [--cmake <cmake>] [--every-row]

Holds what every file under src includes and names against the table of the leaves. With --every-row it also refuses the
rows of the table that no file needs. Prints a line for each violation, and fails when there is one.
"""
import collections
import os
import re
import sys

from layer_table import LayerTable, options, report
from sources import Source, walk

INCLUDE = re.compile(r"^[ \t]*#[ \t]*include[ \t]*(.*)$", re.M)
INCLUDED = re.compile(r"([<\"])([^>\"]+)[>\"]")
QT_MODULE = re.compile(r"Qt([A-Z][A-Za-z0-9]*)/")
QUALIFIER = re.compile(r"\w+$")


def matching(expressions, name):
    """The first of the expressions that is the whole name, or None; a dot in them is a dot."""
    return next((e for e in expressions if re.fullmatch(e.replace(".", r"\."), name)), None)


class Check:
    def __init__(self, root, table):
        self.root = root
        self.table = table
        self.violations = []
        self.sources = {path: Source(root, path) for path in walk(root)}
        self.included = collections.defaultdict(list)  # by a file, of the project
        self.needed = collections.defaultdict(set)  # by a leaf: the rows' entries that something rests on

    def refuse(self, text):
        if text not in self.violations:
            self.violations.append(text)

    def run(self):
        if not self.sources:
            sys.exit(f"No source file under {self.root}.")
        for row in self.table.strangers():
            self.refuse(f"the table has a row of nothing that it lists: {row}")
        layers = {leaf: self.table.layer(leaf) for leaf in self.table.leaves}
        self.find_cycle("the table of the leaves has a cycle", layers)
        self.learn_names()
        for source in self.sources.values():
            leaf = self.table.leaf_of(source.path)
            if not leaf:
                self.refuse(f"{source.path}: stands in no leaf of the table")
                continue
            self.check_includes(source, leaf)
            self.check_names(source, leaf)
        self.find_cycle("files that include each other in a cycle", self.included)

    def find_cycle(self, text, edges):
        done, way = set(), []

        def follow(node):
            if node in way:
                self.refuse(f"{text}: {', '.join(way[way.index(node):])}")
            elif node not in done:
                way.append(node)
                for following in edges.get(node, ()):
                    follow(following)
                way.pop()
                done.add(node)
        for node in list(edges):
            follow(node)

    # Includes.

    def check_includes(self, source, leaf):
        for line in INCLUDE.findall(source.text):
            parts = INCLUDED.match(line)
            if not parts:
                self.refuse(f"{source.path}: an include that names no file: {line}")
                continue
            bracket, header = parts.groups()
            exists = os.path.exists(os.path.join(self.root, header))
            if re.search(r"(^|/)\.\.?/", header):
                self.refuse(f"{source.path}: includes {header}, by a relative path")
            elif exists and bracket == "<":
                self.refuse(f"{source.path}: includes the project's {header} in angle brackets")
            elif exists:
                self.included[source.path].append(header)
                self.check_use(source, leaf, [header], "include", header)
            elif not self.is_allowed_outside(source, leaf, header):
                quoted = f"\"{header}\", which does not stand under src/" if bracket == "\"" else f"<{header}>"
                self.refuse(f"{source.path}: {leaf} may not include {quoted}")

    def is_allowed_outside(self, source, leaf, header):
        if matching(self.table.row("KIVORA_HEADERS"), header):
            return True
        if matching(self.table.row("KIVORA_QT_HEADERS"), header):
            modules = [m.removeprefix("Qt6::") for m in self.table.external(leaf) if m.startswith("Qt6::")]
            if "Widgets" in modules:
                modules.append("Gui")
            named = QT_MODULE.match(header)
            return named[1] in modules + ["Core"] if named and modules else bool(modules)
        for folder in self.table.header_rows(source.path):
            entry = matching(self.table.headers(folder), header)
            if entry:
                self.needed["KIVORA_HEADERS", folder].add(entry)
                return True
        return False

    def check_use(self, source, leaf, headers, deed, what):
        """One of the headers, each of which has it, has to be open to the leaf."""
        refusal = None
        for header in headers:
            used = self.table.leaf_of(header)
            if used == leaf:
                return
            only = self.table.only(leaf, used)
            entry = matching(only, header)
            if used not in self.table.layer(leaf):
                refusal = f"{source.path}: {leaf} may not {deed} {used} ({what})"
            elif only and not entry:
                refusal = f"{source.path}: of {used}, {leaf} may {deed} only {', '.join(only)}, not {what} ({header})"
            else:
                self.needed["KIVORA_LAYER", leaf].add(used)
                self.needed["KIVORA_ONLY", leaf, used].add(entry)
                return
        self.refuse(refusal)

    # Names.

    def learn_names(self):
        self.declared = collections.defaultdict(list)  # by a name: (declaration, header)
        self.namespaces = collections.defaultdict(list)  # by a namespace: the headers that declare something in it
        self.own_types = collections.defaultdict(set)  # by a leaf: its types of any scope
        for source in self.sources.values():
            self.own_types[self.table.leaf_of(source.path)] |= source.types_anywhere()
            if source.path.endswith(".h"):
                for declaration in source.declared():
                    self.declared[declaration.name].append((declaration, source.path))
                    parts = declaration.namespace.split("::")
                    for count in range(1, len(parts) + 1):
                        self.namespaces["::".join(parts[:count])].append(source.path)
        self.namespaces.pop("", None)
        self.namespace_parts = {namespace.rpartition("::")[2] for namespace in self.namespaces}

    def check_names(self, source, leaf):
        tokens = source.tokens
        for i, token in enumerate(tokens):
            if token not in self.declared and token not in self.namespace_parts:
                continue
            qualifier, first = self.qualifier(tokens, i)
            before = tokens[first - 1] if first > 0 else ""
            if before in (".", "->") or (before == "case" and tokens[i + 1] != "::"):
                continue
            self.check_name(source, leaf, qualifier, token)
            full = "::".join(filter(None, (qualifier, token)))
            opens = before == "namespace" and tokens[first - 2:first - 1] != ["using"]
            if full in self.namespaces and not opens and not self.qualifies(full, tokens, i):
                self.check_use(source, leaf, self.namespaces[full], "name", full)

    def qualifies(self, full, tokens, i):
        """Whether the namespace is there for a name that is looked at itself."""
        following = tokens[i + 1:i + 3]
        return len(following) == 2 and following[0] == "::" and (
            following[1] in self.declared or f"{full}::{following[1]}" in self.namespaces)

    @staticmethod
    def qualifier(tokens, i):
        """What qualifies the name (None: nothing; an empty text: the global scope), and the place where it begins."""
        parts = []
        found = False
        while i >= 1 and tokens[i - 1] == "::":
            found = True
            i -= 1
            if i == 0 or not QUALIFIER.match(tokens[i - 1]):
                break
            i -= 1
            parts.insert(0, tokens[i])
        return "::".join(parts) if found else None, i

    def check_name(self, source, leaf, qualifier, name):
        if qualifier is None:
            # A value of this name may be a member or a variable; a type may be one of the leaf's own.
            found = [(d, h) for d, h in self.declared[name]
                     if d.kind not in ("function", "constant") and d.namespace in source.scopes]
            if name in self.own_types[leaf]:
                return
        else:
            ending = "::" + qualifier if qualifier else ""
            found = [(d, h) for d, h in self.declared[name] if ("::" + d.namespace).endswith(ending)
                     and d.kind != "macro" and (qualifier or not d.namespace)]
        if found:
            full = "::".join(filter(None, (found[0][0].namespace, name)))
            self.check_use(source, leaf, [header for _, header in found], "name", full)

    # Rows.

    def check_rows(self):
        """Refuses what the table grants and nobody needs."""
        for leaf in self.table.leaves:
            for used in self.table.layer(leaf):
                if used not in self.needed["KIVORA_LAYER", leaf]:
                    self.refuse(f"the table lets {leaf} use {used}, and no file does")
                for entry in self.table.only(leaf, used):
                    if entry not in self.needed["KIVORA_ONLY", leaf, used]:
                        self.refuse(f"the table lets {leaf} use {entry}, and no file does")
            with open(os.path.join(self.root, leaf, "CMakeLists.txt"), encoding="utf-8") as file:
                linked = file.read().split()
            for target in self.table.external(leaf):
                if target not in [word.rstrip(")") for word in linked]:
                    self.refuse(f"the table lets {leaf} link {target}, and its CMakeLists.txt does not")
        for folder in self.table.folders():
            for entry in self.table.headers(folder):
                if entry not in self.needed["KIVORA_HEADERS", folder]:
                    self.refuse(f"the table lets {folder} include {entry}, and no file does")


def main():
    parser = options()
    parser.add_argument("--every-row", action="store_true")
    chosen = parser.parse_args()
    check = Check(chosen.sources, LayerTable(chosen.cmake, chosen.table))
    check.run()
    if chosen.every_row:
        check.check_rows()
    report(check.violations, "of the uses or rows of the layers are not allowed.",
           f"{len(check.sources)} files keep to the table.")


main()
