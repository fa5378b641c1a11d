#!/usr/bin/env python3
"""Fails on an include below src/ that goes against the direction of the folders' dependencies, or to a header that is not there.

DEPENDENCIES names for each folder the folders whose headers it may include; a header belongs to the longest entry that
its path begins with. What a folder links in its CMakeLists.txt is the same list.
"""
import pathlib
import re
import sys

# The declarations of the host's CAM library lie in run/, but are the host's: nobody's, in the order of the folders.
INTERFACE = ("plugin/interface", "run/orvexapi.h", "run/progressvalue.h")
# Made by CMake, so that they are no files below src/: the export macros beside the headers that name them, and the version.
GENERATED = (
    "plugin/interface/export_macro.h",
    "plugin/interface/pluginmanager_export.h",
    "run/orvexapi_export.h",
    "version.h",
)
CAM = ("cam/base", "cam/model", "cam/polygon", "cam/odb", "cam/gdsii", "cam/gerber", "cam/excellon", "cam/export", "cam/database")

DEPENDENCIES = {
    **{entry: () for entry in INTERFACE},
    "platform": (),
    "archive": ("platform",),
    "cam/base": (),
    "cam/model": ("cam/base",),
    "cam/polygon": ("cam/base", "cam/model"),
    "cam/odb": ("cam/base", "cam/model"),
    "cam/gdsii": ("cam/base", "cam/model", "cam/polygon"),
    "cam/gerber": ("cam/base", "cam/model", "cam/polygon"),
    "cam/excellon": ("cam/base", "cam/model"),
    "cam/export": ("cam/base", "cam/model", "cam/odb", "cam/gdsii", "cam/gerber"),
    "cam/verify": ("cam/base", "cam/model", "cam/polygon", "cam/odb", "cam/gdsii", "cam/gerber", "cam/excellon"),
    "cam/database": ("cam/base",),
    "cam": (*INTERFACE, *CAM),
    "drawing": ("cam/base", "cam/model", "cam/polygon", "cam/odb", "cam/gdsii", "cam/gerber", "cam/excellon"),
    "pluginmanger": INTERFACE,
    "run": (*INTERFACE, "platform"),
    "import": (*INTERFACE, "platform", "archive", "run"),
    "export": (*INTERFACE, "platform", "run"),
    "plugin": (*INTERFACE, "platform", "import", "export", "run"),
    "workbench": (*INTERFACE, "platform", "pluginmanger", "drawing", "cam", *CAM, "cam/verify"),
    "convert": (*INTERFACE, "platform", "archive", "cam/base", "cam/model", "cam/polygon", "cam/odb", "cam/export", "cam/verify"),
}
# What judges the writers shares points, polygons and the readers with them, and nothing of their ways of drawing.
ONLY = {
    "cam/verify": {
        "cam/polygon": ("gridpolygon.h", "arrangement.h", "orientation.h"),
        "cam/gdsii": ("gdsimage.h", "gdsreader.h"),
        "cam/gerber": ("gerberimage.h", "gerberreader.h"),
        "cam/model": ("contour.h", "exportoptions.h", "layerimage.h", "point.h", "trigonometry.h"),
    },
}
INTERFACE_MAY = {"plugin/interface": INTERFACE, "run/orvexapi.h": INTERFACE}


def folder_of(path):
    """The entry of DEPENDENCIES that the file or header `path` (below src/) belongs to."""
    entries = [entry for entry in DEPENDENCIES if path == entry or path.startswith(entry + "/")]
    return max(entries, key=len, default=None)


def main():
    source = pathlib.Path(__file__).resolve().parent.parent / "src"
    failures = []
    for file in sorted(source.rglob("*.h")) + sorted(source.rglob("*.cpp")):
        path = file.relative_to(source).as_posix()
        folder = folder_of(path)
        if folder is None:
            failures.append(f"src/{path}: its folder has no entry in scripts/check_includes.py")
            continue
        allowed = (folder, *DEPENDENCIES[folder], *INTERFACE_MAY.get(folder, ()))
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if not match:
                continue
            header = match.group(1)
            if header in GENERATED:
                continue
            if not (source / header).is_file():
                failures.append(f'src/{path}:{number}: "{header}" is no header below src/')
            elif folder_of(header) not in allowed:
                failures.append(f'src/{path}:{number}: {folder} may not include "{header}"')
            elif header.rpartition("/")[2] not in ONLY.get(folder, {}).get(folder_of(header), (header.rpartition("/")[2],)):
                failures.append(f'src/{path}:{number}: {folder} may not include "{header}", only {", ".join(ONLY[folder][folder_of(header)])}')
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
