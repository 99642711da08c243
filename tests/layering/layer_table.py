"""The table of the leaves, as CMake reads it, and how a check of it begins and ends."""
import argparse
import os
import subprocess
import sys


def identifier(folder):
    """A folder's name in the names of the table's rows."""
    return folder.replace("/", "_")


def inside(path, folder):
    return path.startswith(folder + "/")


class LayerTable:
    """Rows are lists; a row that is not there is empty."""

    KINDS = ("KIVORA_LAYER_", "KIVORA_EXTERNAL_", "KIVORA_HEADERS_", "KIVORA_ONLY_")

    def __init__(self, cmake, path):
        script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "PrintTable.cmake")
        printed = subprocess.run([cmake, "-DTABLE=" + os.path.abspath(path), "-P", script], check=True,
                                 capture_output=True, encoding="utf-8").stdout
        rows = (line.split("=", 1) for line in printed.splitlines())
        self._rows = {name: [entry for entry in value.split(";") if entry] for name, value in rows}
        self.leaves = self.row("KIVORA_LEAVES")

    def row(self, name):
        return self._rows.get(name, [])

    def layer(self, leaf):
        return self.row("KIVORA_LAYER_" + identifier(leaf))

    def external(self, leaf):
        return self.row("KIVORA_EXTERNAL_" + identifier(leaf))

    def only(self, leaf, used):
        """Expressions for the headers that the leaf may use of the other; none: every one."""
        return self.row(f"KIVORA_ONLY_{identifier(leaf)}_{identifier(used)}")

    def folders(self):
        """Every folder that may have a row of headers."""
        return self.leaves + self.row("KIVORA_FOLDERS")

    def header_rows(self, path):
        """The folders with a row of headers that hold for the file: its leaf, and folders of the leaf that hold it."""
        parts = [f for f in self.row("KIVORA_FOLDERS") if inside(path, f)]
        return [self.leaf_of(path)] + parts

    def headers(self, folder):
        return self.row("KIVORA_HEADERS_" + identifier(folder))

    def leaf_of(self, path):
        """The leaf with the longest folder that holds the path; an empty text for none."""
        return max((leaf for leaf in self.leaves if inside(path, leaf)), key=len, default="")

    def strangers(self):
        """The rows of things that the table does not have."""
        known = {"KIVORA_ONLY_%s_%s" % (identifier(a), identifier(b)) for a in self.leaves for b in self.layer(a)}
        for folder in self.folders():
            known.add("KIVORA_HEADERS_" + identifier(folder))
        for leaf in self.leaves:
            known.update(kind + identifier(leaf) for kind in ("KIVORA_LAYER_", "KIVORA_EXTERNAL_"))
        return sorted(name for name in self._rows if name.startswith(self.KINDS) and name not in known)


def options():
    """The command line of a check: the folder of the sources, the table, and the CMake that reads it."""
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser()
    parser.add_argument("sources")
    parser.add_argument("--table", default=os.path.join(here, "../../cmake/Layers.cmake"))
    parser.add_argument("--cmake", default="cmake")
    return parser


def report(violations, of_violations, of_none):
    """Prints what a check has found, or that it is nothing, and leaves with the exit code for it."""
    if violations:
        print(*violations, sep="\n")
        print(f"{len(violations)} {of_violations}")
        sys.exit(1)
    print(of_none)
