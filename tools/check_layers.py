#!/usr/bin/env python3
"""Checks the arrows between the layers, by what CMake knows of them: tools/check_layers.py [build folder]

An include of another layer names one of its public headers and is linked directly, in the open where a public header of
ours includes it and in private elsewhere; nothing is linked that nothing includes; the folders form no circle, and none
has more than a third of the lines.
"""
import collections
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+["<]([^">]+)[">]', re.MULTILINE)
PREFIX = "velcoran_"
PROVIDERS = {"db/sqlite", "db/odbc"}
# What the host does not reach, although no circle would come of it: it sees the window by its objects alone. An export
# without a window is made of the parts below it.
WINDOW = {"component", "form", "viewer", "controls", "dialogs", "desktop"}
REPORT = {"lookup", "query", "report", "filters"}
UNATTENDED = {"host/unattended"}
RULES = {"form/rules"}


def is_forbidden(user, used):
    if user.startswith("host/"):
        if user in UNATTENDED:
            return used not in RULES and top(used) in WINDOW
        return top(used) in WINDOW | REPORT
    return used in PROVIDERS and top(user) != "db"


def top(folder):
    return folder.split("/")[0]


def read_layers(build):
    layers = {}
    lines = (build / "layers.txt").read_text(encoding="utf-8").splitlines()
    for folder, public, private, links, handed_on in zip(*[iter(lines)] * 5):
        targets = {name for name in links.split(";") if name.startswith(PREFIX)} - {"velcoran_build_options"}
        layers[folder] = {
            "target": PREFIX + folder.replace("/", "_"),
            "public": set(filter(None, public.split(";"))),
            "headers": set(filter(None, public.split(";"))) | set(filter(None, private.split(";"))),
            "links": targets,
            "open": {name for name in handed_on.split(";") if name in targets},
        }
    return layers


def includes_of(folder, layers):
    """Pairs of a file of the folder and a header of another layer that it includes."""
    for path in sorted(pathlib.Path(folder).glob("*.h")) + sorted(pathlib.Path(folder).glob("*.cpp")):
        for included in INCLUDE.findall(path.read_text(encoding="utf-8")):
            other, _, header = included.rpartition("/")
            if other == "velcoran" or (other in layers and other != folder):
                yield path, other, header


def check_layer(folder, layers):
    layer, used, used_openly = layers[folder], set(), set()
    for path, other, header in includes_of(folder, layers):
        target = "velcoran_headers" if other == "velcoran" else layers[other]["target"]
        used.add(target)
        if path.name in layer["public"]:
            used_openly.add(target)
        if other != "velcoran" and header not in layers[other]["public"]:
            yield f"{path}: {header} is private to {other}"
        if is_forbidden(folder, other):
            yield f"{path}: {folder} must not use {other}"
    for target in sorted(used - layer["links"]):
        yield f"{folder}: includes {target} without linking it"
    for target in sorted(layer["links"] - used):
        yield f"{folder}: links {target} without including it"
    for target in sorted(used_openly - layer["open"]):
        yield f"{folder}: a public header needs {target}, which is linked in private"
    for target in sorted((layer["open"] & used) - used_openly):
        yield f"{folder}: hands on {target}, which no public header needs"


def circle(folders, arrows):
    """A folder that reaches itself, or nothing."""
    left = set(folders)
    while left:
        free = {folder for folder in left if not arrows[folder] & left}
        if not free:
            return sorted(left)
        left -= free
    return []


def check_house(layers):
    of_target = {layer["target"]: folder for folder, layer in layers.items()}
    arrows = collections.defaultdict(set)
    for folder, layer in layers.items():
        for target in layer["links"] & set(of_target):
            if top(of_target[target]) != top(folder):
                arrows[top(folder)].add(top(of_target[target]))
    tops = sorted({top(folder) for folder in layers})
    stuck = circle(tops, arrows)
    if stuck:
        yield "a circle between folders: " + ", ".join(stuck)
    lines = collections.Counter()
    for folder in tops + ["include"]:
        for path in list(pathlib.Path(folder).rglob("*.h")) + list(pathlib.Path(folder).rglob("*.cpp")):
            lines[folder] += len(path.read_text(encoding="utf-8").splitlines())
    for folder, count in lines.items():
        if count * 3 > sum(lines.values()):
            yield f"{folder}: more than a third of the lines"


def main():
    layers = read_layers(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/release"))
    bad = [line for folder in layers for line in check_layer(folder, layers)] + list(check_house(layers))
    print("\n".join(bad) or f"{len(layers)} layers: arrows go down only")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
