#!/usr/bin/env python3
"""Checks the order of the floors: a folder of src/ includes only from itself and from lower ones.

The include root is shared by all folders, so the link lines alone do not stop a header that needs nothing linked.
"""
import pathlib
import re
import sys

# For each folder, those it may include from.
LOGIC = ["companion", "core", "session", "conditions", "entry", "design", "tabulation", "exchange"]
ALLOWED = {folder: set(LOGIC[: index + 1]) for index, folder in enumerate(LOGIC)}
ALLOWED["ui"] = {"companion", "core", "ui"}
ALLOWED["apps"] = set(LOGIC) | {"ui", "apps"}
WINDOWS = {"ui", "apps"}
WIDGET_HEADERS = re.compile(r"Q(Application|Dialog|MainWindow|Widget|Painter|Pixmap|Image|Font|Clipboard)\b|QtWidgets|QtGui")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]')


def faults_of(path, relative):
    parts = relative.parts
    folder = parts[0]
    in_window = folder in WINDOWS or "windows" in parts[:-1]
    allowed = ALLOWED.get(folder)
    if allowed is None:
        yield f"{relative}: {folder} is no folder of the house"
        return
    if in_window:
        allowed = allowed | {"ui"}
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        bracket, name = match.groups()
        target = name.split("/")[0]
        if bracket == '"' and name.startswith("ui_") and path.with_name(name[3:-2] + ".ui").exists():
            continue  # made from it by uic
        if bracket == '"' and target not in ALLOWED and not (path.parent / name).exists():
            yield f"{relative}:{number}: {name} is not below src/"
        elif bracket == '"' and target in ALLOWED and target not in allowed:
            yield f"{relative}:{number}: {folder} must not include {name}"
        elif bracket == '"' and "/windows/" in name and not in_window:
            yield f"{relative}:{number}: logic must not include the window {name}"
        elif bracket == "<" and not in_window and WIDGET_HEADERS.match(name):
            yield f"{relative}:{number}: logic must not include {name}"
        elif bracket == "<" and folder == "companion" and name.startswith("Q"):
            yield f"{relative}:{number}: the companion library knows no Qt"


def check(source):
    files = sorted(p for p in source.rglob("*") if p.suffix in (".h", ".cpp", ".c"))
    return [fault for path in files for fault in faults_of(path, path.relative_to(source))], len(files)


def main():
    faults, count = check(pathlib.Path(sys.argv[1]))
    for fault in faults:
        print(fault)
    print(f"{count} files, {len(faults)} faults")
    return 1 if faults or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
