#!/usr/bin/python3
"""Prints the bytes of a .geo_model or .geo_mesh file, each item with its offset and what it means.

dump.py FILE

Knows nothing but what Documentation/FileFormats.md says, and needs no library: a start for readers in other
languages. Values of attributes are read as far as they are numbers, texts and lists of these.
"""

import signal
import struct
import sys

TEXTS = {1: "?", 2: ">i", 6: ">d"}
VARIANTS = {0: "none", 1: "bool", 2: "int", 6: "double", 9: "list", 10: "text", 127: "user type"}
VERTEX, REGION = 0, 3
NAMES = ["vertex", "edge", "face", "region"]
PLURALS = ["vertices", "edges", "faces", "regions"]


class Dump:
    """A file, read from front to back; each item that is read is printed."""

    def __init__(self, data):
        self.data, self.at, self.indent = data, 0, 0

    def take(self, size, meaning, value_of):
        """Reads that many bytes and prints them, 12 in a line, with their meaning and value."""
        piece = self.data[self.at:self.at + size]
        if len(piece) < size:
            sys.exit("the file ends at byte %d, within: %s" % (len(self.data), meaning))
        value = value_of(piece)
        for start in range(0, max(size, 1), 12):
            text = "%s%s" % ("  " * self.indent, meaning.replace("$", str(value))) if start == 0 else ""
            print(("%06x  %-36s %s" % (self.at + start, piece[start:start + 12].hex(" "), text)).rstrip())
        self.at += size
        return value

    def number(self, form, meaning):
        return self.take(struct.calcsize(form), meaning, lambda piece: struct.unpack(form, piece)[0])

    def integer(self, meaning):
        return self.number(">i", meaning)

    def reals(self, count, meaning):
        def value_of(piece):
            return ", ".join("%.6g" % value for value in struct.unpack(">%dd" % count, piece))
        return self.take(8 * count, meaning, value_of)

    def text(self, meaning, encoding="utf-16-be"):
        """A length in bytes, all bits set for a null text, and the text."""
        length = self.number(">I", meaning + ", bytes")
        if length == 0xffffffff or length == 0:
            return ""
        return self.take(length, meaning + " \"$\"", lambda piece: piece.decode(encoding).rstrip("\0"))

    def variant(self, meaning):
        """A value with its type ahead of it."""
        kind = self.number(">I", meaning + ": type $")
        self.number(">B", "whether it is null")
        if kind == 9:
            for number in range(self.number(">I", "items")):
                self.variant("item %d" % number)
        elif kind == 10:
            self.text(meaning)
        elif kind == 127:
            self.user_type(self.text("name of the type", "latin-1"))
        elif kind in TEXTS:
            self.number(TEXTS[kind], meaning + " = $")
        elif kind != 0:
            sys.exit("a value of type %d, which this does not read" % kind)

    def user_type(self, name):
        count = {"Vector": 3, "Matrix": 9}.get(name.split("::")[-1])
        if count is None:
            sys.exit("a value of the type %s, which this does not read" % name)
        self.reals(count, "its numbers $")

    def attributes(self, of):
        """An attribute record."""
        for _ in range(self.integer("attributes of %s: $" % of)):
            self.indent += 1
            self.variant(self.text("tag", "latin-1"))
            self.indent -= 1

    def head(self):
        """The format; old files begin with the version, of a major number from 10 to 14."""
        first = struct.unpack(">i", self.data[:4])[0]
        has_old_head = 10 <= first <= 14
        form = 1 if has_old_head else self.integer("format $")
        for part in ("major", "minor", "build"):
            self.integer("version, %s: $" % part)
        return form

    def box(self, of):
        self.reals(3, "box of %s, low corner $" % of)
        self.reals(3, "box of %s, high corner $" % of)

    # .geo_model

    def model(self):
        self.head()
        self.box("the model")
        if self.integer("refinement regions: $"):
            sys.exit("refinement regions, which this does not read")
        self.attributes("the model")
        counts = [self.model_entities(dimension) for dimension in range(4)]
        for dimension, count in enumerate(counts):
            for place in range(count):
                self.neighbours(dimension, place)

    def model_entities(self, dimension):
        count = self.integer("model entities of dimension %d: $" % dimension)
        for _ in range(count):
            name = NAMES[dimension] + " %d" % self.integer("id of a " + NAMES[dimension] + ": $")
            self.indent += 1
            self.text("tag of " + name)
            self.text("name of " + name)
            self.attributes(name)
            self.shape(dimension, name)
            self.indent -= 1
        return count

    def shape(self, dimension, name):
        if dimension == VERTEX:
            self.reals(3, "point $")
            return
        self.box(name)
        self.reals(1, ("length", "area", "volume")[dimension - 1] + " $")
        self.reals(3, "centroid $")
        if dimension != REGION:
            self.reals(3, "normal $")
            self.number("?", "planar: $")

    def neighbours(self, dimension, place):
        for other in range(4):
            if other != dimension:
                name = "neighbours of %s no. %d, %s" % (NAMES[dimension], place + 1, PLURALS[other])
                for _ in range(self.integer(name + ": $")):
                    self.integer("  id $")

    # .geo_mesh

    def mesh(self):
        form = self.head()
        self.attributes("the mesh")
        tags = self.dictionary() if form == 3 else {}
        for dimension in range(4):
            for _ in range(self.integer("mesh entities of dimension %d: $" % dimension)):
                self.mesh_entity(form, dimension)
            if form == 3:
                self.attribute_section(tags)

    def dictionary(self):
        tags = {}
        while True:
            number = self.number(">h", "number of a tag: $")
            if number == -1:
                return tags
            tags[number] = self.text("tag", "latin-1")

    def mesh_entity(self, form, dimension):
        self.integer("id of a mesh " + NAMES[dimension] + ": $")
        self.indent += 1
        if form == 1 or dimension == VERTEX:
            self.integer("dimension of the model entity that it stands on: $")
        self.integer("id of the model entity that it stands on: $")
        if form != 3:
            self.attributes("it")
        if dimension == VERTEX:
            self.reals(3, "point $")
        else:
            for _ in range(self.integer("vertices: $")):
                self.integer("  id $")
        self.indent -= 1

    def attribute_section(self, tags):
        while self.integer("attribute of the mesh entity $ (-1: no more)") != -1:
            self.variant(tags[self.number(">h", "number of its tag: $")])


def main():
    with open(sys.argv[1], "rb") as file:
        dump = Dump(file.read())
    if sys.argv[1].endswith(".geo_model"):
        dump.model()
    else:
        dump.mesh()
    print("%06x  end%s" % (dump.at, "" if dump.at == len(dump.data) else ", though more follows"))


if __name__ == "__main__":
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)  # ends in silence where head has read enough
    main()
