#!/usr/bin/env python3
"""Fails when a file of src/ or tools/ includes a header of a higher layer.

    scripts/check-layers.py [ROOT]            check the tree at ROOT (default: this checkout)
    scripts/check-layers.py --explain [ROOT]  also print each folder's layer and every file's

Exit 0 when every include runs down or across the layers, 1 with one line per offending
include, 2 when the tree cannot be checked (a folder missing from LAYERS, no src/).
"""

import argparse
import re
import sys
from pathlib import Path

# Folder -> (rank, layer name). The longest matching folder wins, so a subfolder may sit above
# or below its parent. A file may include files of its own rank or lower.
LAYERS = {
    "src/common": (0, "pure logic"),
    "src/measurement": (0, "pure logic"),
    "src/settings": (0, "pure logic"),
    "src/model": (0, "pure logic"),
    "src/qlab": (0, "pure logic"),
    "src/sessions": (0, "pure logic"),
    "src/network": (0, "pure logic"),
    "src/exposure": (0, "pure logic"),
    "src/replay": (0, "pure logic"),
    "src/updates": (0, "pure logic"),
    "src/mics": (0, "pure logic"),
    "src/dante": (0, "pure logic"),
    "src/audio": (1, "drivers"),
    "src/qlab/client": (1, "drivers"),
    "src/recording": (1, "drivers"),
    "src/network/avahi": (1, "drivers"),
    "src/dante/monitor": (1, "drivers"),
    "src/updates": (0, "pure logic"),
    "src/updates/client": (1, "drivers"),
    "src/mics/link": (1, "drivers"),
    "src/crew": (1, "drivers"),
    "src/station": (2, "central model"),
    "src/views": (3, "views"),
    "src/app": (4, "executables"),
    "tools": (4, "executables"),
}

# Quoted includes that are not beside the including file are looked up in these folders, in
# this order, as the build's include paths do.
INCLUDE_ROOTS = ["src", "tools"]

SCANNED = ["src", "tools"]
SOURCE_SUFFIXES = {".h", ".hpp", ".cpp", ".cc"}

# Qt modules the pure-logic layer must not use, so that it builds and is tested with QtCore
# alone and without a disk. Matched against the name inside <...>: module folders, then class-name prefixes.
LOGIC_RANK = 0
FORBIDDEN_QT_MODULES = ("QtGui", "QtNetwork", "QtMultimedia", "QtQml", "QtQuick", "QtOpenGL")
FORBIDDEN_QT_CLASS_PREFIXES = {
    "QtGui": ("QGui", "QColor", "QFont", "QImage", "QPixmap", "QPainter", "QIcon", "QPalette",
              "QKeySequence", "QScreen", "QWindow", "QOffscreenSurface", "QSurfaceFormat",
              "QOpenGL", "QPen", "QBrush", "QCursor", "QClipboard", "QDesktopServices",
              "QStyleHints", "QTextDocument", "QKeyEvent", "QMouseEvent"),
    "QtNetwork": ("QTcp", "QUdp", "QNetwork", "QHostAddress", "QHostInfo", "QAbstractSocket",
                  "QLocalSocket", "QLocalServer", "QSsl", "QDns", "QHttp"),
    "QtMultimedia": ("QAudio", "QMedia", "QSound", "QCamera", "QVideo"),
    "QtQml": ("QQml", "QJSEngine", "QJSValue"),
    "QtQuick": ("QQuick", "QSG"),
    # Files and processes are drivers' business; preferences (QSettings) are the settings layer's.
    "disk or process I/O": ("QFile", "QSaveFile", "QDir", "QTemporary", "QLockFile",
                            "QStorageInfo", "QProcess"),
}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def layer_of(relative_folder):
    """(folder, rank, name) of the longest LAYERS entry containing the folder, or None."""
    parts = Path(relative_folder).parts
    for length in range(len(parts), 0, -1):
        key = "/".join(parts[:length])
        if key in LAYERS:
            rank, name = LAYERS[key]
            return key, rank, name
    return None


def resolve(root, including_file, included):
    """The included file relative to root, or None when it is not part of the tree."""
    beside = (including_file.parent / included).resolve()
    if beside.is_file() and beside.is_relative_to(root):
        return beside.relative_to(root)
    first = Path(included).parts[0]
    for include_root in INCLUDE_ROOTS:
        # A missing header of a known folder still belongs to that folder's layer.
        if (root / include_root / first).is_dir():
            return Path(include_root) / included
    return None


def forbidden_qt_module(header):
    module = header.split("/")[0]
    if module.startswith(FORBIDDEN_QT_MODULES):
        return module
    for module, prefixes in FORBIDDEN_QT_CLASS_PREFIXES.items():
        if header.startswith(prefixes):
            return module
    return None


def describe(folder, layer):
    key, rank, name = layer
    where = "" if folder == key else f"as {key}, "
    return f"{folder} ({where}rank {rank}, {name})"


def check(root, explain):
    problems = []
    unknown_folders = {}
    files = sorted(
        path
        for scanned in SCANNED
        if (root / scanned).is_dir()
        for path in (root / scanned).rglob("*")
        if path.is_file() and path.suffix in SOURCE_SUFFIXES
    )
    for path in files:
        relative = path.relative_to(root)
        own = layer_of(relative.parent)
        if own is None:
            unknown_folders.setdefault(relative.parent.as_posix(), relative.as_posix())
            continue
        here = describe(relative.parent.as_posix(), own)
        if explain:
            print(f"{relative}: {here}")
        lines = path.read_text(encoding="utf-8", errors="replace").splitlines()
        for number, line in enumerate(lines, start=1):
            match = INCLUDE.match(line)
            if not match:
                continue
            bracket, included = match.groups()
            where = f"{relative}:{number}"
            if bracket == "<":
                module = forbidden_qt_module(included) if own[1] == LOGIC_RANK else None
                if module:
                    problems.append(f"{where}: <{included}> is {module}, which {here} may not use")
                continue
            target = resolve(root, path, included)
            if target is None:
                continue
            theirs = layer_of(target.parent)
            if theirs is None:
                unknown_folders.setdefault(target.parent.as_posix(), where)
            elif theirs[1] > own[1]:
                problems.append(f'{where}: "{included}" runs up the layers: {here} '
                                f"includes {describe(target.parent.as_posix(), theirs)}")
    return files, problems, unknown_folders


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("root", nargs="?", default=Path(__file__).resolve().parent.parent,
                        type=Path, help="the checkout to check")
    parser.add_argument("--explain", "-v", action="store_true",
                        help="print the layer table and the layer of every file")
    arguments = parser.parse_args()
    root = arguments.root.resolve()

    if not (root / "src").is_dir():
        print(f"check-layers: no src/ folder in {root}", file=sys.stderr)
        return 2
    if arguments.explain:
        for folder, (rank, name) in sorted(LAYERS.items(), key=lambda item: (item[1][0], item[0])):
            present = "" if (root / folder).is_dir() else "  (not in this tree)"
            print(f"rank {rank}  {name:<14} {folder}{present}")
        print()

    files, problems, unknown_folders = check(root, arguments.explain)
    if unknown_folders:
        for folder, example in sorted(unknown_folders.items()):
            print(f"check-layers: {folder} has no layer (seen at {example}); add it, or a "
                  f"parent, to LAYERS in scripts/check-layers.py", file=sys.stderr)
        return 2
    for problem in problems:
        print(problem)
    if problems:
        print(f"check-layers: {len(problems)} include(s) against the layers in {len(files)} "
              f"files", file=sys.stderr)
        return 1
    if arguments.explain:
        print(f"check-layers: {len(files)} files, every include within the layers")
    return 0


if __name__ == "__main__":
    sys.exit(main())
