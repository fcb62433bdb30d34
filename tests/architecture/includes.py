"""Usage: includes.py [ROOT]

Reads the #include lines of everything below ROOT, the project it stands in unless told otherwise, and
lists those that point upwards or in a circle: python3 tests/architecture/includes.py
docs/architecture.md shows the house; here stand its rules, and a new folder gets its line below.
"""

import os
import re
import sys

# Each layer may use those that stand before it, and no other.
LAYERS = ["src", "binmodel", "io", "csv", "cli"]

# What a folder, or a file beside the folders, may use of its layer. Other files beside them, such as
# the header that gathers all the others, may use everything there and are used by nothing.
FOLDERS = {
    "src/host": [],
    "src/common": ["src/host"],
    "src/version.h": ["src/common"],
    "src/output": ["src/common", "src/host"],
    "src/metadata": ["src/common", "src/host"],
    "src/algorithm": ["src/metadata", "src/output", "src/version.h", "src/common", "src/host"],
    "binmodel/text": [],
    "binmodel/model": ["binmodel/text"],
    "binmodel/file": ["binmodel/model", "binmodel/text"],
    "binmodel/measure": ["binmodel/model", "binmodel/text"],
    "binmodel/apply": ["binmodel/measure", "binmodel/model", "binmodel/text"],
    "binmodel/refine": ["binmodel/measure", "binmodel/model", "binmodel/text"],
    "binmodel/run": ["binmodel/apply", "binmodel/measure", "binmodel/model", "binmodel/text"],
    "binmodel/export": ["binmodel/apply", "binmodel/measure", "binmodel/model", "binmodel/text"],
    "binmodel/report": ["binmodel/apply", "binmodel/measure", "binmodel/model", "binmodel/text"],
    "cli/terminal": [],
    "cli/commands": ["cli/terminal"],
    "cli/options": ["cli/commands", "cli/terminal"],
    "cli/shell": ["cli/options"],
}

GENERATED = {"src/host/buildconfig.h"}
# What public headers of one library name as hosts do, too: <mcbinning/common/mcstatus.h>.
PUBLISHED = {"mcbinning/": "src/", "mcbinmodel/": "binmodel/"}
INCLUDE = re.compile(r'#include (?:"([^"]+)"|<((?:mcbinning|mcbinmodel)/[^>]+)>)')


def source_files(root):
    for layer in LAYERS:
        for directory, _, names in os.walk(os.path.join(root, layer)):
            for name in names:
                if name.endswith((".h", ".cpp")):
                    yield os.path.relpath(os.path.join(directory, name), root)


def resolve(name, by, files):
    """The file that `by` means: beside it, or counted from the root or from src/."""
    beside = os.path.normpath(os.path.join(os.path.dirname(by), name))
    return next((path for path in (beside, name, os.path.join("src", name)) if path in files), None)


def place_of(path):
    """Its name in the rules; None for a file beside the folders that they do not name."""
    parts = path.split("/")
    return "/".join(parts[:2]) if len(parts) > 2 or path in FOLDERS else None


def why_not(user, used):
    """What is wrong with an include, or None."""
    layer, other = user.split("/")[0], used.split("/")[0]
    if layer != other:
        below = LAYERS.index(other) < LAYERS.index(layer)
        return None if below else f"{layer}/ is below {other}/"
    place, other = place_of(user), place_of(used)
    if place is None or place == other or place not in FOLDERS or other in FOLDERS[place]:
        return None
    return f"{place} is not above {other or used}"


def circles(includes):
    """Each way along the includes that comes back to where it began."""
    done, way = set(), []

    def visit(path):
        if path in way:
            yield [*way[way.index(path):], path]
        elif path not in done:
            way.append(path)
            for used in includes[path]:
                yield from visit(used)
            done.add(way.pop())

    for path in sorted(includes):
        yield from visit(path)


def main(root):
    files = set(source_files(root)) | GENERATED
    includes, faults = {path: [] for path in files}, []
    for path in sorted(files - GENERATED):
        place = place_of(path)
        if place and place not in FOLDERS:
            faults.append(f"{path}: there is no rule for {place}")
        with open(os.path.join(root, path), encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                found = INCLUDE.match(line)
                if not found:
                    continue
                name = found[1] or found[2]
                for prefix, folder in PUBLISHED.items():
                    name = folder + name[len(prefix):] if name.startswith(prefix) else name
                used = resolve(name, path, files)
                fault = why_not(path, used) if used else "there is no such file"
                if fault:
                    faults.append(f"{path}:{number}: {line.strip()}: {fault}")
                if used:
                    includes[path].append(used)
    faults += ["a circle: " + " -> ".join(circle) for circle in circles(includes)]
    for fault in faults:
        print(fault)
    print(f"{len(files)} files, {sum(map(len, includes.values()))} includes, {len(faults)} faults")
    return 1 if faults or not any(includes.values()) else 0


if __name__ == "__main__":
    HERE = os.path.dirname(os.path.abspath(__file__))
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, "..", "..")))
