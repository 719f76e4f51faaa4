#!/usr/bin/env python3
"""The rules of the house that a compiler does not see: layering.py ROOT

Reads every C++ file of the checkout but for tests and benchmarks, which may include anything. Prints
one line per finding, "file:line: what", and exits with 1 if there is one, or nothing to read.
"""

import os
import posixpath
import re
import sys

# What each layer, a folder, may include besides itself. A folder in a folder is a layer of its own.
SERVICES = {"services", "services/text", "services/disk", "services/raster"}
BELOW_CHARTS = SERVICES | {"device"}
BELOW_MARKS = BELOW_CHARTS | {"charts/values"}
BELOW_STRIPS = BELOW_MARKS | {"charts/marks"}
BELOW_DRAWING = BELOW_STRIPS | {"charts/strips"}
BELOW_COMMANDS = BELOW_DRAWING | {"charts"}
COMMANDS = {"files", "settings", "export"}
ALLOWED = {
    "app": BELOW_COMMANDS | COMMANDS,
    "files": BELOW_COMMANDS,
    "settings": BELOW_COMMANDS,
    "export": BELOW_COMMANDS,
    "charts": BELOW_DRAWING,
    "charts/strips": BELOW_STRIPS,
    "charts/marks": BELOW_MARKS,
    "charts/values": BELOW_CHARTS,
    "device": SERVICES,
    "services": {"services/text", "services/raster"},
    "services/text": set(),
    "services/raster": set(),
    "services/disk": {"services/text"},
    # These two implement headers of the rooms around them, for one system and one toolkit.
    "services/disk/posix": {"services/disk", "services/text"},
    "services/qt": SERVICES,
    "tools": BELOW_COMMANDS | COMMANDS,
}
# The one place that puts program and toolkit together.
MAY_INCLUDE_TOOLKIT = {"app/main.cpp"}

UNCHECKED_FOLDERS = {"tests", "benchmarks", "build"}
HEADER_ENDINGS = (".h", ".hpp")
SOURCE_ENDINGS = (".cpp", ".cc", ".cxx", ".mm")

# What can hold a quote, a comment sign or a word of the language without meaning it. Numbers and
# names are here to be stepped over whole: 1'000 opens no character, and fooR"x" no raw string.
TOKEN = re.compile(
    r"""
    (?P<comment>//(?:\\\n|[^\n])*|/\*.*?(?:\*/|\Z))
    |(?P<literal>(?:u8|[uUL])?R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"
        |"(?:\\.|[^"\\\n])*"
        |'(?:\\.|[^'\\\n])*')
    |\.?\d(?:[eEpP][+-]|'?[\w.])*
    |[A-Za-z_]\w*
    """,
    re.DOTALL | re.VERBOSE,
)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include\b[ \t]*("[^"\n]*"|<[^>\n]*>)?', re.MULTILINE)
PRAGMA_ONCE = re.compile(r"^[ \t]*#[ \t]*pragma[ \t]+once\b", re.MULTILINE)
EXTERN = re.compile(r"\bextern\b")
QT_CLASS_OR_MODULE = re.compile(r"Q[A-Z]|Qt([A-Z]|$)")
QT_FILE = re.compile(r"q\w*\.h")
# The operating system's own headers, and the only layers that include them.
SYSTEM_HEADER = re.compile(r"(fcntl|unistd|dirent|signal|poll|pwd|windows|winbase)\.h|(sys|linux)/.*")
SYSTEM_LAYERS = {"services/disk/posix"}


def blanked(text, kinds):
    """The text with what is of these kinds replaced by blanks, line for line."""

    def blank(match):
        if match.lastgroup is None or not any(match[kind] is not None for kind in kinds):
            return match[0]
        return re.sub(r"[^\n]", " ", match[0])

    return TOKEN.sub(blank, text)


def layer_of(path):
    """The layer a file or an included path belongs to, or None."""
    folders = path.split("/")[:-1]
    while folders and "/".join(folders) not in ALLOWED:
        folders.pop()
    return "/".join(folders) or None


def is_qt(included):
    parts = included.split("/")
    return bool(QT_CLASS_OR_MODULE.match(parts[0]) or QT_FILE.fullmatch(parts[-1]))


def include_complaint(file, layer, spelled):
    """What is wrong with this include of this file, or None. `spelled` has its quotes or brackets."""
    if not spelled:
        return "an include must name its file"
    included = spelled[1:-1]
    quoted = spelled[0] == '"'
    target = layer_of(included)

    if is_qt(included) and target is None:
        return None if layer == "services/qt" else f"{spelled}: only services/qt includes Qt"
    if SYSTEM_HEADER.fullmatch(included) and layer not in SYSTEM_LAYERS:
        return f"{spelled}: only {' and '.join(sorted(SYSTEM_LAYERS))} include the system's headers"
    if not quoted:
        # With the checkout on the include path, brackets find our own headers as well.
        return None if target is None else f"{spelled}: our own headers stand in quotes"
    if "/" not in included or included.startswith("/") or posixpath.normpath(included) != included:
        return f"{spelled}: includes are rooted at the checkout"
    if included.split("/")[0] in ("..", "."):
        return f"{spelled}: includes are rooted at the checkout"
    if target is None:
        return f"{spelled}: no layer of the program"
    if target == "services/qt":
        if layer == "services/qt" or file in MAY_INCLUDE_TOOLKIT:
            return None
        return f"{spelled}: only app/main.cpp includes services/qt"
    if target != layer and target not in ALLOWED[layer]:
        return f"{spelled}: {layer} does not include {target}"
    return None


def file_findings(file, content):
    """(line, what) for every finding in one file, given by its path in the checkout and its bytes."""
    layer = layer_of(file)
    if layer is None:
        return [(1, "a C++ file outside the layers")]
    try:
        text = content.decode("utf-8").replace("\r\n", "\n")
    except UnicodeDecodeError as error:
        return [(content.count(b"\n", 0, error.start) + 1, "not UTF-8")]

    found = []
    without_comments = blanked(text, ["comment"])
    code = blanked(text, ["comment", "literal"])
    for match in INCLUDE.finditer(without_comments):
        # An include inside a raw string is text: there the blanked code has no "#".
        if "#" not in code[match.start() : match.end()]:
            continue
        complaint = include_complaint(file, layer, match[1])
        if complaint:
            found.append((text.count("\n", 0, match.start()) + 1, complaint))
    if file.endswith(SOURCE_ENDINGS):
        for match in EXTERN.finditer(code):
            line = text.count("\n", 0, match.start()) + 1
            found.append((line, "extern in a source file; declare it in its owner's header"))
    if file.endswith(HEADER_ENDINGS) and not PRAGMA_ONCE.search(code):
        found.append((1, "a header without #pragma once"))
    return sorted(found)


def cpp_files(root):
    """The paths of the files to check, relative to the root, with forward slashes."""
    for directory, folders, names in os.walk(root):
        top = os.path.samefile(directory, root)
        folders[:] = sorted(
            folder
            for folder in folders
            if not folder.startswith(".")
            and not (top and folder in UNCHECKED_FOLDERS)
            # Somebody's own build directory, whatever its name.
            and not os.path.exists(os.path.join(directory, folder, "CMakeCache.txt"))
        )
        for name in sorted(names):
            if name.endswith(HEADER_ENDINGS + SOURCE_ENDINGS):
                yield os.path.relpath(os.path.join(directory, name), root).replace(os.sep, "/")


def findings(root):
    """All lines to report. A tree without a C++ file is a finding: then the root is wrong."""
    lines = []
    files = list(cpp_files(root))
    if not files:
        lines.append(f"{root}:1: no C++ files found")
    for file in files:
        with open(os.path.join(root, file), "rb") as stream:
            content = stream.read()
        lines += [f"{file}:{line}: {what}" for line, what in file_findings(file, content)]
    return lines


def main(arguments):
    if len(arguments) != 1 or not os.path.isdir(arguments[0]):
        print("usage: layering.py ROOT", file=sys.stderr)
        return 2
    # File names may be any bytes.
    sys.stdout.reconfigure(errors="backslashreplace")
    lines = findings(arguments[0])
    for line in lines:
        print(line)
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
