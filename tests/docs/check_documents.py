#!/usr/bin/env python3
"""check_documents.py <source folder> <program> [document ...]: the links and commands of the documents are true.

Looks at every Markdown file of the project and at the manual, or at the documents that are named. A link leads to a file or a
heading that is there. A command names a program's option, a preset, a target, a script or a package that is there; those of the
program that only tell something are run. The index of a folder "decisions" has each page of it once, by number and with the
page's own title, and says which page follows one that was overturned.
"""
import html
import json
import os
import re
import subprocess
import sys
import urllib.parse

source, program = sys.argv[1:3]
named = sys.argv[3:]
wrong = []
looked = {"links": 0, "commands": 0}
ADDRESS = re.compile(r"^[a-z]+:")

# Run as they stand; each ends by itself and changes nothing.
TELLS = {"--help", "--version", "--list-ports"}
# What Debian brings for playing, of which the documents speak.
BESIDE = {"fluid-soundfont-gm", "timgm6mb-soundfont", "rtkit", "alsa-utils", "aconnectgui"}


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def documents():
    for folder, folders, files in os.walk(source):
        folders[:] = [f for f in folders if f not in ("build", "out", ".git", "fixtures") and not f.startswith(".")]
        for name in files:
            if name.endswith(".md") or (name.endswith(".html") and "/help/" in folder + "/"):
                yield os.path.join(folder, name)


def anchors(path):
    text = read(path)
    if path.endswith(".html"):
        return set(re.findall(r'\bid="([^"]+)"', text))
    slugs = set()
    for heading in re.findall(r"^#+ (.*)$", text, re.M):
        plain = re.sub(r"[`*]|\[([^\]]*)\]\([^)]*\)", r"\1", heading).strip().lower()
        slugs.add(re.sub(r"[^\w\- ]", "", plain).replace(" ", "-"))
    return slugs


def check_link(document, target):
    if ADDRESS.match(target):
        return  # of another machine
    looked["links"] += 1
    path, _, anchor = target.partition("#")
    path = urllib.parse.unquote(path)
    full = os.path.normpath(os.path.join(os.path.dirname(document), path)) if path else document
    if not os.path.exists(full):
        # The manual's pictures are drawn by the program when it is built.
        drawn = os.path.join(os.path.dirname(program), "Help", os.path.relpath(full, source + "/resources/help"))
        if "/help/" not in full or not os.path.exists(drawn):
            wrong.append(f"{document}: there is no {target}")
        return
    if anchor and os.path.isfile(full) and anchor not in anchors(full):
        wrong.append(f"{document}: there is no {target}")


def check_paths(document):
    """Files of the project that are named in the text. Decisions tell of their own time."""
    if document.endswith(".html") or "/decisions/" in document or document.endswith("CHANGELOG.md"):
        return
    for path in re.findall(r"`((?:src|resources|packaging|cmake|docs|tests|scripts|benchmarks)/[\w./-]+)`", read(document)):
        looked["links"] += 1
        if not re.search(r"(\b|_)xx(\b|_)|/sources$|mismatch", path) and not os.path.exists(os.path.join(source, path)):
            wrong.append(f"{document}: there is no {path}")


def check_index(index):
    folder = os.path.dirname(index)
    titles = {}
    for page in os.listdir(folder):
        if re.match(r"\d{4}-.*\.md$", page):
            text = read(os.path.join(folder, page))
            successor = re.search(r"^Followed by \[(\d{4})\]", text, re.M)
            titles[page] = text.split("\n")[0] + (f" (followed by {successor[1]})" if successor else "")
    rows = re.findall(r"^\| \[(\d+)\]\(([^)]*)\) \| (.*) \|$", read(index), re.M)
    listed = [page for number, page, title in rows]
    for page in sorted(set(titles) - set(listed)):
        wrong.append(f"{index}: {page} is not listed")
    for page, following in zip(listed, listed[1:]):
        if page >= following:
            wrong.append(f"{index}: {following} stands behind {page}")
    for number, page, title in rows:
        if page in titles and f"# {number}: {title}" != titles[page]:
            wrong.append(f"{index}: {page} is called {titles[page]}")


def commands(document):
    text = read(document)
    if document.endswith(".html"):
        pieces = re.findall(r"<(?:code|pre)>(.*?)</(?:code|pre)>", text, re.S)
        pieces = [html.unescape(re.sub(r"<[^>]*>", "", piece)) for piece in pieces]
    else:
        pieces = re.findall(r"^(?:    |\t)(.*)$", text, re.M)
        pieces += [line for block in re.findall(r"^```[a-z]*\n(.*?)^```", text, re.S | re.M) for line in block.split("\n")]
        pieces += re.findall(r"`([^`\n]+)`", text)
    for piece in pieces:
        for line in piece.split("\n"):
            for command in re.split(r"&&|;|\|", re.sub(r"\s#\s.*", "", line)):
                words = re.findall(r'"[^"]*"|\S+', command)
                while words and re.match(r"^[A-Z_]+=", words[0]):
                    words.pop(0)  # variables before the command
                if words:
                    yield words


OPTIONS = None


def options():
    global OPTIONS
    if OPTIONS is None:
        told = subprocess.run([program, "--locale", "en_US", "--help"], capture_output=True, text=True, check=True).stdout
        OPTIONS = set(re.findall(r"--?[a-z][a-z-]*", told))
    return OPTIONS


def presets():
    data = json.loads(read(os.path.join(source, "CMakePresets.json")))
    return {p["name"] for kind in ("configurePresets", "buildPresets", "testPresets") for p in data.get(kind, [])}


def targets():
    found = {"all"}
    for folder, folders, files in os.walk(source):
        folders[:] = [f for f in folders if f not in ("build", "out", ".git")]
        for name in files:
            if name == "CMakeLists.txt" or name.endswith(".cmake"):
                found |= set(re.findall(r"add_custom_target\((\w+)", read(os.path.join(folder, name))))
    return found


def packages():
    found = set(BESIDE)
    for name in ("scripts/packages.sh", "packaging/debian/control"):
        found |= set(re.findall(r"[a-z0-9][a-z0-9.+-]+", read(os.path.join(source, name))))
    return found


def check_command(document, words):
    def refuse(what):
        wrong.append(f"{document}: {' '.join(words)}: there is no {what}")

    name = words[0]
    if name in ("kivora", "build/release/bin/kivora"):
        looked["commands"] += 1
        used = [w.split("=")[0] for w in words[1:] if re.match(r"^--?[a-z]", w)]
        for option in used:
            if option not in options():
                refuse(f"option {option}")
        if used and set(used) <= TELLS:
            result = subprocess.run([program, *words[1:]], capture_output=True, check=False)
            if result.returncode != 0:
                wrong.append(f"{document}: {' '.join(words)} ends with {result.returncode}")
    elif name in ("cmake", "ctest"):
        looked["commands"] += 1
        for option, value in zip(words, words[1:]):
            if option == "--preset" and value not in presets():
                refuse(f"preset {value}")
            if option == "--target" and value not in targets():
                refuse(f"target {value}")
            if option == "-P" and not os.path.exists(os.path.join(source, value)):
                refuse(value)
    elif re.match(r"^(\./|scripts/|tests/|\.ci/)[\w./-]+$", name) and not name.endswith("/") or name == "bash":
        script = words[1] if name == "bash" and len(words) > 1 else name
        looked["commands"] += 1
        if not os.path.exists(os.path.join(source, script)):
            refuse(script)
    elif name in ("sudo", "apt", "apt-get") and "install" in words:
        looked["commands"] += 1
        for package in words[words.index("install") + 1:]:
            if not package.startswith(("-", "./")) and package not in packages():
                refuse(f"package {package}")


for document in named or sorted(documents()):
    text = read(document)
    plain = re.sub(r"^(?:    |\t).*$|`[^`\n]*`", "", text, flags=re.M)
    links = (re.findall(r'(?:href|src)="([^"]+)"', text) if document.endswith(".html")
             else re.findall(r"\]\(([^)\s]+)\)", plain))
    for link in links:
        check_link(document, link)
    check_paths(document)
    if document.endswith("/decisions/README.md"):
        check_index(document)
    for words in commands(document):
        check_command(document, words)

print(f"{looked['links']} links, {looked['commands']} commands")
for line in wrong:
    print("WRONG", line)
if not looked["links"] or not looked["commands"]:
    sys.exit("Nothing was looked at.")
sys.exit(1 if wrong else 0)
