#!/usr/bin/env python3
"""check_threads.py <src>: every header that declares a class or a function says which threads may use it.

A tag in its leading comment holds for whatever in the header has no other; docs/architecture.md says what the tags mean.
"""
import re
import sys

from sources import Source, walk

TAG = re.compile(r"\[(gui|tick|input-timer|input|player|events|any|owner|base)\b")


def main():
    root = sys.argv[1]
    headers = [Source(root, path) for path in walk(root, (".h", ".hpp"))]
    asked = [h for h in headers if any(d.kind in ("class", "function") for d in h.declared())]
    silent = [h.path for h in asked if not TAG.search(h.text)]
    for path in silent:
        print(f"{path}: does not say which threads may use it")
    if silent or not asked:
        print(f"{len(silent)} of {len(asked)} headers are silent about threads.")
        sys.exit(1)
    print(f"{len(asked)} headers say which threads may use them.")


main()
