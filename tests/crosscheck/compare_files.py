# Reads Gerber and GDSII files of the same layer and tells where they differ. Run by KLayout:
#   klayout -zz -nc -rd pairs=LIST -rd results=FILE -r compare_files.py
# LIST has a line a pair: Gerber file, GDSII file, separated by a tab. FILE gets a line for each: what is wrong, or nothing.
import math
import os
import re

import pya

# Nanometres, as everything here.
# What both readings may be off by: a chord from its arc (90 in the GDSII file, CHORD in what becomes of the Gerber file), and
# the roundings. Together they stay below BAND, so that edges which lie a micrometre apart are always found.
CHORD = 200.0
BAND = 700
# Farther from one centre than this the ends of an arc lie on no circle: what it looks like is its reader's choice.
ROUNDING = 100.0
# KLayout draws so much of an arc as one chord, however large it is.
KLAYOUT_STEP = math.pi / 16

PROJECT = """<?xml version="1.0" encoding="utf-8"?>
<pcb-project>
 <free-layer-mapping>true</free-layer-mapping>
 <layout-layers><layout-layer>1/0</layout-layer></layout-layers>
 <free-files>
  <free-file><filename>%s</filename><layout-layers><index>0</index></layout-layers></free-file>
 </free-files>
 <explicit-trans>r0 *1 0,0</explicit-trans>
 <num-circle-points>%d</num-circle-points>
 <merge-flag>false</merge-flag>
 <dbu>0.001</dbu>
 <cell-name>GERBER</cell-name>
</pcb-project>
"""

# Mode, X, Y, I, J, operation: each may be missing.
OPERATION = re.compile(r"(?:G0([123]))?(?:X(-?\d+))?(?:Y(-?\d+))?(?:I(-?\d+)J(-?\d+))?(D0[123])?\*$")
CIRCLES = (
    re.compile(r"%ADD\d+C,([\d.]+)"),
    re.compile(r"%ADD\d+O,([\d.]+)X[\d.]+"),
    re.compile(r"1,1,([\d.]+),"),
    re.compile(r"7,[^,]+,[^,]+,([\d.]+),"),
)


def angle_of_chord(radius, limit):
    """The angle whose chord stays within CHORD of its arc, at most `limit`."""
    return limit if radius <= CHORD else min(limit, 2.0 * math.acos(1.0 - CHORD / radius))


def parts(start, end, center, clockwise):
    """Corners on an arc, without its start, close enough for chords; nothing when it has no one radius."""
    radii = [math.hypot(p[0] - center[0], p[1] - center[1]) for p in (start, end)]
    if abs(radii[0] - radii[1]) > ROUNDING or radii[0] == 0.0:
        return []
    angles = [math.atan2(p[1] - center[1], p[0] - center[0]) for p in (start, end)]
    turn = angles[1] - angles[0]
    if clockwise:
        turn = turn - 2.0 * math.pi if turn >= 0.0 else turn
    else:
        turn = turn + 2.0 * math.pi if turn <= 0.0 else turn
    count = max(1, math.ceil(abs(turn) / angle_of_chord(radii[0], KLAYOUT_STEP)))
    corners = []
    for i in range(1, count):
        angle = angles[0] + turn * i / count
        radius = radii[0] + (radii[1] - radii[0]) * i / count
        corners.append((round(center[0] + radius * math.cos(angle)), round(center[1] + radius * math.sin(angle))))
    return corners + [end]


def divide_arcs(source, target):
    """Copies a Gerber file with each arc as several: KLayout makes 32 chords of a circle, of any size. Nothing else changes: an
    arc whose mode was not stated since the last G36 or G37 stays as it is. Returns complaints and the largest circle's radius."""
    complaints = []
    largest = 0.0
    mode = None
    at = (0, 0)
    with open(source) as lines, open(target, "w") as copy:
        text = lines.read()
        for needed in ("%FSLAX46Y46*%\n", "%MOMM*%\n", "G75*\n"):
            if needed not in text:
                complaints.append("it has no " + needed.strip())
        for line in text.splitlines(True):
            for pattern in CIRCLES:
                match = pattern.match(line)
                if match:
                    largest = max(largest, float(match.group(1)) * 1e6 / 2)
            if line.startswith(("G36", "G37")):
                mode = None
            match = OPERATION.match(line)
            if not match:
                if line[0] in "XYIJ":
                    complaints.append("no operation was expected in this form: " + line.strip())
                copy.write(line)
                continue
            stated, x, y, i, j, operation = match.groups()
            mode = int(stated) if stated else mode
            end = (int(x) if x else at[0], int(y) if y else at[1])
            corners = []
            if i is not None:
                center = (at[0] + int(i), at[1] + int(j))
                if mode in (2, 3):
                    corners = parts(at, end, center, mode == 2)
                    if not corners:
                        complaints.append("the ends of the arc to %d, %d nm lie on no circle about its centre" % end)
                else:
                    complaints.append("the arc to %d, %d nm has no mode of its own behind G36 or G37" % end)
            if not corners:
                copy.write(line)
            elif stated:
                copy.write("G0%s*\n" % stated)
            for corner in corners:
                offset = (center[0] - at[0], center[1] - at[1])
                copy.write("X%dY%dI%dJ%d%s*\n" % (corner + offset + (operation or "",)))
                at = corner
            at = end
    return complaints, largest


def region_of(layout, layers):
    region = pya.Region()
    for cell in layout.top_cells():
        for layer in layers:
            region.insert(cell.begin_shapes_rec(layer))
    return region


def read_gerber(file):
    """KLayout's reading, and complaints about the file."""
    divided = file + ".divided"
    complaints, radius = divide_arcs(file, divided)
    project = file + ".pcb"
    # KLayout sets half of the points aside for each end of a stroke.
    points = 4 * math.ceil(math.pi / 2 / angle_of_chord(radius, math.pi / 8))
    with open(project, "w") as out:
        out.write(PROJECT % (os.path.basename(divided), points))
    layout = pya.Layout()
    layout.read(project)
    os.remove(project)
    os.remove(divided)
    return layout, region_of(layout, layout.layer_indexes()), complaints


def read_gds(file):
    layout = pya.Layout()
    layout.read(file)
    if abs(layout.dbu - 0.001) > 1e-9:
        raise RuntimeError("%s has a unit of %g um" % (file, layout.dbu))
    image = [layer for layer in layout.layer_indexes() if layout.get_info(layer).datatype == 0]
    return layout, region_of(layout, image)


def difference(gerber_file, gds_file):
    # The layouts own the shapes: they have to outlive the regions.
    gerber_layout, gerber, complaints = read_gerber(gerber_file)
    gds_layout, gds = read_gds(gds_file)
    # What lies in one file only, without the bands along edges: less than BAND wide they vanish.
    places = sorted((gerber ^ gds).sized(-BAND // 2).merged().each(), key=lambda place: -place.area())
    if places:
        center = places[0].bbox().center()
        inside = not (pya.Region(places[0]) & gerber).is_empty()
        complaints.append(
            "%d places differ, %.6f mm2 in all; the largest, at %.4f, %.4f mm, is in the %s file only"
            % (
                len(places),
                sum(place.area() for place in places) / 1e12,
                center.x / 1e6,
                center.y / 1e6,
                "Gerber" if inside else "GDSII",
            )
        )
    return complaints


with open(pairs) as todo, open(results, "w") as told:
    for line in todo:
        try:
            found = difference(*line.rstrip("\n").split("\t"))
        except Exception as error:  # each pair has to have its line
            found = [str(error).replace("\n", " ")]
        told.write("; ".join(found[:5]) + (" and %d more" % (len(found) - 5) if len(found) > 5 else "") + "\n")
        told.flush()
