#!/usr/bin/python3
"""Draws the sketches of the documentation: draw.py [FOLDER]. Scripts/pictures runs it."""

import math
import os
import sys

AIR, SOLID, MOVING, GONE = "#cfe0f3", "#f3d3b0", "#d8c6ea", "#e4e4e4"
INK, LINE, SOLID_INK, TIE, FAINT = "#1c2128", "#7a8591", "#b35a00", "#0b5cb8", "#59636e"


class Drawing:
    """A sketch in SVG; places in pixels, y downwards."""

    def __init__(self, width, height, title):
        self.parts = ['<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 %d %d" width="%d" height="%d" '
                      'font-family="Liberation Sans, Arial, sans-serif" font-size="14">' %
                      (width, height, width, height), "<title>%s</title>" % title,
                      '<rect width="100%" height="100%" fill="#ffffff"/>']

    def add(self, name, **attributes):
        text = attributes.pop("text", None)
        words = "".join(' %s="%s"' % (key.replace("_", "-"), self.form(value)) for key, value in attributes.items())
        self.parts.append("<%s%s/>" % (name, words) if text is None else "<%s%s>%s</%s>" % (name, words, text, name))

    @staticmethod
    def form(value):
        return "%.4g" % value if isinstance(value, float) else value

    def polygon(self, points, fill="none", stroke=LINE, width=1.2, dash=None):
        more = {"stroke_dasharray": dash} if dash else {}
        self.add("polygon", points=" ".join("%.4g,%.4g" % point for point in points), fill=fill, stroke=stroke,
                 stroke_width=width, stroke_linejoin="round", **more)

    def line(self, a, b, stroke=LINE, width=1.2, dash=None):
        more = {"stroke_dasharray": dash} if dash else {}
        self.add("line", x1=float(a[0]), y1=float(a[1]), x2=float(b[0]), y2=float(b[1]), stroke=stroke,
                 stroke_width=width, **more)

    def dot(self, at, fill=INK, stroke=INK, radius=4):
        self.add("circle", cx=float(at[0]), cy=float(at[1]), r=radius, fill=fill, stroke=stroke, stroke_width=1.6)

    def text(self, at, text, fill=INK, anchor="middle", **more):
        self.add("text", x=float(at[0]), y=float(at[1]), fill=fill, text_anchor=anchor, text=text, **more)

    def arrow(self, a, b, stroke=TIE, width=1.6, dash=None, both=False):
        """A line with a head at b, and at a if both; it ends short of the places."""
        length = math.dist(a, b)
        x, y = (b[0] - a[0]) / length, (b[1] - a[1]) / length
        a, b = (a[0] + 6 * x, a[1] + 6 * y), (b[0] - 7 * x, b[1] - 7 * y)
        self.line(a, b, stroke, width, dash)
        for end, sign in [(b, 1)] + ([(a, -1)] if both else []):
            tip = [(end[0], end[1])] + [(end[0] - sign * 8 * x + side * 4 * y, end[1] - sign * 8 * y - side * 4 * x)
                                        for side in (1, -1)]
            self.polygon(tip, stroke, stroke)

    def save(self, path):
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(self.parts + ["</svg>", ""]))


def grid(corner, size, columns, rows):
    """The places of a grid, by rows."""
    return [[(corner[0] + size[0] * column / columns, corner[1] + size[1] * row / rows)
             for column in range(columns + 1)] for row in range(rows + 1)]


def triangles(drawing, places, fill, skip=()):
    """The cells of a grid, each as two triangles."""
    for row in range(len(places) - 1):
        for column in range(len(places[0]) - 1):
            if (row, column) not in skip:
                a, b = places[row][column], places[row][column + 1]
                c, d = places[row + 1][column + 1], places[row + 1][column]
                drawing.polygon([a, b, c], fill)
                drawing.polygon([a, c, d], fill)


def frame(drawing, places, stroke=INK):
    drawing.polygon([places[0][0], places[0][-1], places[-1][-1], places[-1][0]], "none", stroke, 2.2)


def column(places, index):
    return [row[index] for row in places]


def before_and_after(name, title):
    drawing = Drawing(720, 250, title)
    drawing.text((180, 18), "before", FAINT)
    drawing.text((540, 18), "after", FAINT)
    drawing.line((360, 14), (360, 236), "#d3d8de")
    return drawing


def block(drawing, corner, size, cells, fill):
    places = grid(corner, size, *cells)
    triangles(drawing, places, fill)
    frame(drawing, places)
    return places


def split():
    drawing = before_and_after("split", "A face between fluid and solid is doubled")
    left = block(drawing, (30, 50), (150, 135), (3, 3), AIR)
    right = block(drawing, (180, 50), (130, 135), (3, 3), SOLID)
    for place in column(left, -1):
        drawing.dot(place)
    drawing.text((105, 208), "air")
    drawing.text((245, 208), "wall")
    drawing.text((180, 232), "face 2 bounds both")
    left = block(drawing, (385, 50), (135, 135), (3, 3), AIR)
    right = block(drawing, (565, 50), (130, 135), (3, 3), SOLID)
    for a, b in zip(column(left, -1), column(right, 0)):
        drawing.dot(a)
        drawing.dot(b, "#ffffff", SOLID_INK)
    drawing.arrow((520, 73), (565, 73), both=True)
    drawing.text((542, 40), "solid_face, fluid_face", TIE)
    drawing.text((495, 208), "face 2")
    drawing.text((605, 208), "face_2:solid", SOLID_INK)
    drawing.text((540, 232), "drawn apart; both lie in the same place", FAINT)
    return drawing


def ring(drawing, corner, cell, hole, fill):
    """A grid of 6 by 4 cells with a hole of 2 by 2."""
    places = grid(corner, (6 * cell, 4 * cell), 6, 4)
    triangles(drawing, places, fill, {(row, column) for row in (1, 2) for column in (2, 3)} if hole else ())
    frame(drawing, places)
    return places


def rim(corner, cell, grow=0):
    """The places around the hole, moved away from its middle."""
    middle = (corner[0] + 3 * cell, corner[1] + 2 * cell)
    around = [(0, 0), (1, 0), (2, 0), (2, 1), (2, 2), (1, 2), (0, 2), (0, 1)]
    size = cell + grow
    return [(middle[0] + (x - 1) * size, middle[1] + (y - 1) * size) for x, y in around]


def inner(drawing, corner, cell, fill, shrink=0, stroke=INK):
    places = grid((corner[0] + 2 * cell + shrink, corner[1] + cell + shrink), (2 * cell - 2 * shrink,) * 2, 2, 2)
    triangles(drawing, places, fill)
    frame(drawing, places, stroke)
    return places


def replicate():
    drawing = before_and_after("replicate", "A moving region gets a replica")
    ring(drawing, (75, 45), 35, True, AIR)
    inner(drawing, (75, 45), 35, MOVING)
    drawing.text((180, 208), "block moves through air")
    drawing.text((180, 232), "motion_type on block", TIE)
    ring(drawing, (375, 45), 35, True, AIR)
    inner(drawing, (375, 45), 35, AIR)
    places = grid((610, 80), (70, 70), 2, 2)
    triangles(drawing, places, MOVING)
    frame(drawing, places, SOLID_INK)
    drawing.arrow((515, 115), (610, 115), both=True)
    drawing.text((480, 208), "block is fluid now")
    drawing.text((645, 172), "block:replica", SOLID_INK)
    drawing.text((540, 232), "drawn beside; it lies in the place of block", FAINT)
    return drawing


def peripheral():
    drawing = before_and_after("peripheral", "The faces between a rotating device and its fluid are doubled")
    corner = (75, 45)
    ring(drawing, corner, 35, True, AIR)
    inner(drawing, corner, 35, MOVING)
    for place in rim(corner, 35):
        drawing.dot(place)
    drawing.text((180, 208), "the rotor shares its vertices with the air")
    corner = (435, 45)
    ring(drawing, corner, 35, True, AIR)
    inner(drawing, corner, 35, MOVING, 12)
    for outside, inside in zip(rim(corner, 35), rim(corner, 35, -12)):
        drawing.line(outside, inside, TIE, 1.2, "3 2")
        drawing.dot(outside, "#ffffff", SOLID_INK)
        drawing.dot(inside)
    drawing.text((540, 208), "stator_vertex, rotor_vertex", TIE)
    drawing.text((540, 232), "drawn smaller; both lie in the same place", FAINT)
    return drawing


WEDGE = [(0, 0, 0), (1.2, 0, 0), (0.45, 1, 0), (0, 0, 1.25), (1.2, 0, 1.25), (0.45, 1, 1.25)]


def project(point, origin, scale=95):
    x, y, z = point
    return (origin[0] + scale * (x + 0.42 * y), origin[1] - scale * (z + 0.36 * y))


def solid(drawing, points, faces, origin, shift, fill):
    places = [project([p + s for p, s in zip(point, shift)], origin) for point in points]
    for face in faces:
        drawing.polygon([places[index] for index in face], fill, INK, 1.4)
    return places


def wedges():
    drawing = before_and_after("wedges", "A wedge is cut into three tetrahedra")
    places = solid(drawing, WEDGE, [(0, 2, 5, 3), (1, 2, 5, 4), (0, 1, 2), (3, 4, 5), (0, 1, 4, 3)], (105, 200),
                   (0, 0, 0), SOLID)
    drawing.line(places[0], places[2], INK, 1, "4 3")
    drawing.line(places[2], places[1], INK, 1, "4 3")
    drawing.line(places[2], places[5], INK, 1, "4 3")
    for index, (dx, dy) in enumerate([(-12, 6), (12, 6), (10, -6), (-12, 2), (12, 2), (2, -10)]):
        drawing.text((places[index][0] + dx, places[index][1] + dy + 2), str(index))
    tetrahedra = [((0, 1, 2, 5), (385, 200)), ((0, 1, 4, 5), (498, 200)), ((0, 3, 4, 5), (611, 200))]
    for corners, origin in tetrahedra:
        places = {index: project(WEDGE[index], origin, 66) for index in corners}
        for left_out in corners:
            drawing.polygon([places[index] for index in corners if index != left_out], SOLID + "aa", INK, 1.3)
        for index in corners:
            drawing.text((places[index][0] + (9 if WEDGE[index][0] > 0.3 else -9), places[index][1] + 4), str(index),
                         font_size=12)
    return drawing


def remove():
    drawing = before_and_after("remove", "What belongs to no element goes")
    for origin, is_before in ((30, True), (400, False)):
        block(drawing, (origin, 60), (180, 120), (4, 3), AIR)
        if is_before:
            drawing.polygon([(235, 70), (300, 85), (255, 130)], GONE, LINE, 1.4, "4 3")
            drawing.line((245, 150), (310, 165), LINE, 1.6, "4 3")
            for place in ((235, 70), (300, 85), (255, 130), (245, 150), (310, 165), (285, 195)):
                drawing.dot(place, GONE, LINE)
            drawing.text((270, 52), "face without element", FAINT)
            drawing.text((300, 146), "edge", FAINT)
            drawing.text((285, 217), "vertex", FAINT)
    return drawing


def renumber():
    drawing = before_and_after("renumber", "The gaps in the ids are closed")
    for origin, numbers in ((50, [1, 2, 5, 6, 9, 12]), (410, [1, 2, 3, 4, 5, 6])):
        places = grid((origin, 70), (240, 110), 2, 1)
        triangles(drawing, places, AIR)
        frame(drawing, places)
        for place, number in zip(places[0] + places[1], numbers):
            drawing.dot(place)
            drawing.text((place[0], place[1] + (-12 if place[1] < 100 else 22)), str(number))
    drawing.text((180, 232), "3, 4, 7, 8, 10, 11 are gone", FAINT)
    drawing.text((540, 232), "in the order of the old ids", FAINT)
    return drawing


def uneven(drawing, corner, size, left, right, fill):
    """A block whose left and right sides are divided differently, at parts of their height."""
    x, y = corner
    a = [(x, y + size[1] * part) for part in left]
    b = [(x + size[0], y + size[1] * part) for part in right]
    i = j = 0
    while i < len(a) - 1 or j < len(b) - 1:
        is_left = j == len(b) - 1 or (i < len(a) - 1 and left[i + 1] <= right[j + 1])
        drawing.polygon([a[i], b[j], a[i + 1] if is_left else b[j + 1]], fill)
        i, j = (i + 1, j) if is_left else (i, j + 1)
    drawing.polygon([a[0], b[0], b[-1], a[-1]], "none", INK, 2.2)
    return a, b


THIRDS, HALVES = [0, 1 / 3, 2 / 3, 1], [0, 0.5, 1]


def periodic():
    drawing = before_and_after("periodic", "The vertices of periodic faces are tied to the partner face")
    uneven(drawing, (80, 50), (200, 130), THIRDS, HALVES, AIR)
    drawing.text((62, 120), "side 1", anchor="end")
    drawing.text((296, 120), "side 2", anchor="start")
    drawing.text((180, 208), "periodic_pair_id, periodic_side_id", TIE)
    left, right = uneven(drawing, (440, 50), (200, 130), THIRDS, HALVES, AIR)
    for place in left + right:
        drawing.dot(place)
    for a, b, weight, drop in ((left[1], right[0], "1/3", -10), (left[1], right[1], "2/3", 18)):
        drawing.arrow(a, b)
        drawing.text(((a[0] + b[0]) / 2, (a[1] + b[1]) / 2 + drop), weight, TIE)
    drawing.text((540, 208), "periodic_entity_id, periodic_weights", TIE)
    drawing.text((540, 232), "one vertex of many; the others likewise", FAINT)
    return drawing


def extruded():
    drawing = before_and_after("extruded", "The vertices of extruded faces are tied to the partner face")
    uneven(drawing, (30, 50), (150, 130), [0, 0.25, 0.5, 0.75, 1], THIRDS, AIR)
    uneven(drawing, (186, 50), (130, 130), HALVES, THIRDS, SOLID)
    drawing.text((180, 208), "two faces in one place, not joined")
    drawing.text((180, 232), "extruded_face on one of them", TIE)
    left = uneven(drawing, (385, 50), (135, 130), [0, 0.25, 0.5, 0.75, 1], THIRDS, AIR)[1]
    right = uneven(drawing, (575, 50), (120, 130), HALVES, THIRDS, SOLID)[0]
    for place in left + right:
        drawing.dot(place)
    drawing.arrow(left[1], right[0])
    drawing.arrow(left[1], right[1])
    drawing.text((542, 58), "1/2", TIE)
    drawing.text((542, 122), "1/2", TIE)
    drawing.text((540, 208), "extruded_entity_id, extruded_weights", TIE)
    drawing.text((540, 232), "drawn apart; both lie in the same place", FAINT)
    return drawing


def classification():
    drawing = Drawing(736, 300, "A model, and the mesh that stands on it")
    corner, size = (40, 55), (250, 180)
    drawing.polygon([(40, 55), (170, 55), (170, 235), (40, 235)], AIR, INK, 2.4)
    drawing.polygon([(170, 55), (290, 55), (290, 235), (170, 235)], SOLID, INK, 2.4)
    drawing.text((105, 150), "face 1")
    drawing.text((230, 150), "face 2")
    drawing.text((162, 152), "edge 7", TIE, "middle", transform="rotate(-90 162 152)")
    for x in (40, 170, 290):
        for y in (55, 235):
            drawing.dot((x, y), "#b3202c", "#b3202c", 5)
    drawing.text((165, 30), "model", FAINT)
    drawing.text((170, 262), "vertex 5", "#b3202c")
    drawing.arrow((405, 145), (318, 145), INK)
    drawing.text((362, 130), "stands on")
    left = grid((425, 55), (130, 180), 2, 3)
    right = grid((555, 55), (120, 180), 2, 3)
    triangles(drawing, left, "#e4eef9")
    triangles(drawing, right, "#fae8d6")
    for places in (left, right):
        for row in (0, -1):
            drawing.line(places[row][0], places[row][-1], TIE, 3)
    for places, index in ((left, 0), (left, -1), (right, -1)):
        drawing.line(places[0][index], places[-1][index], TIE, 3)
    for places, fill in ((left, "#3a7abf"), (right, "#d9822b")):
        for row in (1, 2):
            drawing.dot(places[row][1], fill, fill)
    on_edges = [places[row][1] for places in (left, right) for row in (0, -1)]
    on_edges += [places[row][index] for places, index in ((left, 0), (left, -1), (right, -1)) for row in (1, 2)]
    for place in on_edges:
        drawing.dot(place, "#ffffff", TIE)
    for place in (left[0][0], left[-1][0], left[0][-1], left[-1][-1], right[0][-1], right[-1][-1]):
        drawing.dot(place, "#b3202c", "#b3202c", 5)
    drawing.text((550, 30), "mesh", FAINT)
    drawing.dot((54, 286), "#b3202c", "#b3202c", 5)
    drawing.text((66, 291), "on a model vertex", anchor="start")
    drawing.dot((216, 286), "#ffffff", TIE)
    drawing.text((228, 291), "and thick lines: on a model edge", anchor="start")
    drawing.dot((480, 286), "#3a7abf", "#3a7abf")
    drawing.dot((493, 286), "#d9822b", "#d9822b")
    drawing.text((504, 291), "and triangles: on a model face", anchor="start")
    return drawing


def box(drawing, at, text, fill):
    drawing.add("rect", x=float(at[0] - 62), y=float(at[1] - 17), width=124, height=34, rx=6, fill=fill, stroke=LINE)
    drawing.text((at[0], at[1] + 5), text)


def adjacency():
    drawing = Drawing(760, 340, "Which entity knows which")
    kinds = ["region", "face", "edge", "vertex"]
    rows = [70 + 72 * row for row in range(4)]
    model = [(150, y) for y in rows]
    mesh = [(480, y) for y in rows]
    drawing.text((150, 30), "model", FAINT)
    drawing.text((480, 30), "mesh", FAINT)
    for a, b in ((0, 1), (1, 2), (2, 3)):
        drawing.arrow((150, rows[a] + 14), (150, rows[b] - 14), INK, both=True)
    drawing.add("path", d="M 88 70 C 20 110, 20 240, 88 286", fill="none", stroke=INK, stroke_width=1.6)
    drawing.text((20, 184), "all pairs of dimensions", INK, "middle", transform="rotate(-90 20 184)")
    for y in rows:
        drawing.arrow((418, y), (212, y), INK, both=True)
    drawing.text((315, 60), "parent, children", INK)
    for index, bend in ((0, 150), (1, 105), (2, 60)):
        y, end = rows[index], rows[3]
        drawing.add("path", d="M 542 %d C %d %d, %d %d, 546 %d" % (y, 542 + bend, y + 10, 542 + bend, end - 20, end),
                    fill="none", stroke=INK, stroke_width=2.4)
    drawing.polygon([(543, 286), (553, 281), (552, 290)], INK, INK)
    drawing.text((704, 160), "vertices, in")
    drawing.text((704, 178), "node order")
    for index in (0, 1, 2):
        y = rows[index]
        drawing.add("path", d="M 440 %d C %d %d, %d %d, 440 %d" %
                    (rows[3] - 17, 400 - 20 * (2 - index), rows[3] - 40, 400 - 20 * (2 - index), y + 40, y + 17),
                    fill="none", stroke=TIE, stroke_width=1.6, stroke_dasharray="5 4")
    for a, b in ((1, 0), (2, 1)):
        drawing.arrow((505, rows[a] - 14), (505, rows[b] + 14), TIE, dash="5 4")
    for places, fill in ((model, SOLID), (mesh, AIR)):
        for place, kind in zip(places, kinds):
            box(drawing, place, kind, fill)
    drawing.line((150, 325), (190, 325), INK, 2.4)
    drawing.text((198, 330), "stored in the files", anchor="start")
    drawing.line((390, 325), (430, 325), TIE, 1.6, "5 4")
    drawing.text((438, 330), "derived: setUpwardAdjacencies()", TIE, "start")
    return drawing


def item(drawing, at, size, text, fill, stroke=INK, dash=None):
    """A text in a frame, which begins at a place."""
    (x, y), (width, height) = at, size
    drawing.polygon([(x, y), (x + width, y), (x + width, y + height), (x, y + height)], fill, stroke, 1.4, dash)
    drawing.text((x + width / 2, y + height / 2 + 5), text, stroke)


def stored():
    drawing = Drawing(760, 380, "What is stored, and what is made of it")
    drawing.text((160, 26), "stored in the files", FAINT)
    drawing.text((575, 26), "made of it", FAINT)
    rows = [("ids", "next free id", "while reading"),
            ("parent of a mesh entity", "children of a model entity", "while reading"),
            ("vertices of an element", "what uses a vertex, edge or face", "after reading"),
            ("points of vertices", "centroid and normal of an element", "at each call"),
            (None, "those of the mesh on a model entity", "at the first call")]
    for row, (source, made, when) in enumerate(rows):
        y = 42 + 50 * row
        if source:
            item(drawing, (40, y), (240, 34), source, AIR)
        begin = (280, y + 17) if source else (280, y - 33)
        drawing.arrow((begin[0] - 4, begin[1]), (446, y + 17), TIE, dash="5 4")
        item(drawing, (440, y), (270, 34), made, "#ffffff", TIE, "5 4")
        drawing.text((360, y + 10 if source else y + 16), when, TIE, font_size=12)
    item(drawing, (40, 300), (670, 58), "", SOLID)
    drawing.text((375, 324), "names, tags, attributes; neighbours within the model; box, length, area, volume,")
    drawing.text((375, 344), "centroid and normal of a model entity: stored, and nothing is made of them")
    return drawing


SKETCHES = [classification, adjacency, stored, wedges, replicate, split, peripheral, remove, renumber, periodic, extruded]


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    for sketch in SKETCHES:
        sketch().save(os.path.join(folder, sketch.__name__ + ".svg"))


if __name__ == "__main__":
    main()
