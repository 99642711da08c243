#!/usr/bin/env python3
"""check_vocabulary.py <src> [--table <Layers.cmake>] [--cmake <cmake>]

A number of the MIDI standard, and any other that the headers of KIVORA_VOCABULARY name, is used by its name: no leaf
that may use these headers writes a status byte or a controller's number itself or gives it a second name.
"""
import collections
import os
import re

from layer_table import LayerTable, options, report
from sources import Source, walk

NUMBER = re.compile(r"(0x[0-9A-Fa-f]+|\d+(?:\.\d+)?)[uUlLfF]*$")
CONSTANT = re.compile(r"k[A-Z]\w*$")
COMPARISONS = ("==", "!=", "<", ">", "<=", ">=")
CLOSING = {"(": ")", "{": "}", "[": "]"}
# Where a call or a braced message has a controller's number: the place among its arguments.
CONTROLLER_PLACES = {"CtrlEvent": 2, "SendController": 0, "kControlChange": 1}


def value_of(token):
    parts = NUMBER.match(token.replace("'", ""))
    if not parts:
        return None
    if "." in parts[1]:
        return float(parts[1])
    return int(parts[1], 16) if is_hex(parts[1]) else int(parts[1])


def is_hex(token):
    return token.lower().startswith("0x")


def constants(tokens):
    """Each constant that is defined by a single number: its name, the number, the place of the number."""
    for i in range(len(tokens) - 3):
        if CONSTANT.match(tokens[i]) and tokens[i + 1] in ("=", "{") and tokens[i + 3] in (";", "}", ",", ")"):
            value = value_of(tokens[i + 2])
            if value is not None:
                yield tokens[i], value, i + 2


def arguments(tokens, i):
    """The tokens of each argument from place i on, up to the bracket that closes them."""
    found, depth = [[]], 0
    while i < len(tokens):
        token = tokens[i]
        if token in CLOSING.values() and depth == 0 or token == ";":
            break
        depth += (token in CLOSING) - (token in CLOSING.values())
        if token == "," and depth == 0:
            found.append([])
        else:
            found[-1].append(token)
        i += 1
    return found


def joined(tokens):
    """The tokens with comparisons of two characters in one."""
    out = []
    for token in tokens:
        if out and token == "=" and out[-1] in ("=", "!", "<", ">"):
            out[-1] += "="
        else:
            out.append(token)
    return out


Word = collections.namedtuple("Word", "name value header is_hex")


class Check:
    def __init__(self, root, table):
        self.root = root
        self.table = table
        self.violations = []
        self.words = []
        for header in table.row("KIVORA_VOCABULARY"):
            if os.path.exists(os.path.join(root, header)):
                tokens = joined(Source(root, header).tokens)
                self.words += [Word(name, value, header, is_hex(tokens[place]))
                               for name, value, place in constants(tokens)]
        self.files = [path for path in walk(root) if path not in table.row("KIVORA_VOCABULARY")]

    def known(self, path):
        """The words of the leaves that the file's leaf stands on, by whatever way."""
        below = [self.table.leaf_of(path)]
        for leaf in below:
            below += [lower for lower in self.table.layer(leaf) if lower not in below]
        return [word for word in self.words if self.table.leaf_of(word.header) in below]

    def run(self):
        for path in self.files:
            words = self.known(path)
            if words:
                tokens = joined(Source(self.root, path).tokens)
                self.check_constants(path, tokens, words)
                self.check_numbers(path, tokens, words)
                self.check_controllers(path, tokens, words)

    def refuse(self, path, text):
        self.violations.append(f"{path}: {text}")

    def check_constants(self, path, tokens, words):
        statuses = {word.value: word for word in words if word.is_hex and word.value % 0x10 == 0}
        for name, value, place in constants(tokens):
            same = [w for w in words if w.value == value and w.name[1:] in name]
            if not same and is_hex(tokens[place]) and value in statuses:
                same = [statuses[value]]
            if same:
                self.refuse(path, f"{name} is {same[0].name} of {same[0].header}")

    def check_numbers(self, path, tokens, words):
        """Fractions, and bytes that are compared, combined or handed on, unless they mask or mix a colour."""
        by_value = {word.value: word for word in words if word.is_hex or isinstance(word.value, float)}
        for i, token in enumerate(tokens):
            value = value_of(token) if token[0].isdigit() else None
            if value not in by_value or isinstance(value, float) != isinstance(by_value[value].value, float) or (
                    isinstance(value, int) and not is_hex(token)):
                continue
            before, following = tokens[i - 1], tokens[i + 1]
            is_mask = "&" in (before, following)
            is_of_colour = any(is_hex(t) for t in (tokens[i - 2] if before == "," else "",
                                                   tokens[i + 2] if following == "," else ""))
            is_argument = before in ("(", "{", ",") and following in (",", ")", "}") and not is_of_colour
            is_compared = before == "case" or before in COMPARISONS or following in COMPARISONS
            if isinstance(value, float) or is_compared or following == "|" or (is_argument and not is_mask):
                self.refuse(path, f"writes {token}, which is {by_value[value].name} of {by_value[value].header}")

    def check_controllers(self, path, tokens, words):
        by_value = {word.value: word for word in words if "Controller" in word.header}

        def refuse(token):
            word = by_value.get(value_of(token))
            if word:
                self.refuse(path, f"writes the controller {token}, which is {word.name} of {word.header}")

        for i, token in enumerate(tokens[:-2]):
            place = CONTROLLER_PLACES.get(token)
            if place is not None and tokens[i + 1] in ("(", "{", ","):
                given = arguments(tokens, i + 2)
                if len(given) > place and len(given[place]) == 1:
                    refuse(given[place][0])
            if token in ("data1", "controller") and tokens[i + 1] in COMPARISONS:
                refuse(tokens[i + 2])


def main():
    chosen = options().parse_args()
    check = Check(chosen.sources, LayerTable(chosen.cmake, chosen.table))
    check.run()
    report(check.violations, "numbers of the vocabulary are written out.",
           f"{len(check.files)} files use the {len(check.words)} words of the vocabulary.")


main()
