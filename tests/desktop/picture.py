"""Screenshots as values: read from a PPM, asked for their pixels, kept as PNG."""

import os
import struct
import zlib


class Picture:
    """width × height pixels; pixel(x, y) is a tuple of red, green and blue in 0…255."""

    def __init__(self, width, height, data):
        self.width = width
        self.height = height
        self._data = data

    @classmethod
    def from_ppm(cls, content):
        """Of the binary kind with 255 levels and no comments, as grim and others write it."""
        fields = content.split(maxsplit=4)
        if len(fields) < 4 or fields[0] != b"P6" or fields[3] != b"255":
            raise ValueError("not a PPM of 255 levels")
        width, height = int(fields[1]), int(fields[2])
        size = 3 * width * height
        # One white space ends the header; a pixel may look like another.
        return cls(width, height, content[len(content) - size :])

    def cropped(self, left, top, width, height):
        rows = (3 * (y * self.width + left) for y in range(top, top + height))
        return Picture(width, height, b"".join(self._data[i : i + 3 * width] for i in rows))

    def beside(self, other):
        """Both in one picture, tops aligned; what only one is tall enough for is black."""
        height = max(self.height, other.height)
        rows = []
        for y in range(height):
            for it in (self, other):
                row = it._data[3 * y * it.width : 3 * (y + 1) * it.width]
                rows.append(row or bytes(3 * it.width))
        return Picture(self.width + other.width, height, b"".join(rows))

    @classmethod
    def from_bgrx(cls, width, height, stride, content):
        """Of rows of four bytes a pixel: blue, green, red and one that does not count."""
        rows = []
        for y in range(height):
            row = content[y * stride : y * stride + 4 * width]
            plain = bytearray(3 * width)
            plain[0::3], plain[1::3], plain[2::3] = row[2::4], row[1::4], row[0::4]
            rows.append(bytes(plain))
        return cls(width, height, b"".join(rows))

    def pixel(self, x, y):
        start = 3 * (y * self.width + x)
        return tuple(self._data[start : start + 3])

    def count(self, color, left=0, top=0, right=None, bottom=None):
        """How many pixels of a rectangle, whose right and bottom are outside, have the color."""
        right = self.width if right is None else right
        bottom = self.height if bottom is None else bottom
        found = 0
        for y in range(top, bottom):
            row = self._data[3 * (y * self.width + left) : 3 * (y * self.width + right)]
            masks = [self._mask(row[part::3], color[part]) for part in range(3)]
            found += (masks[0] & masks[1] & masks[2]).bit_count()
        return found

    def contrast(self, box, stripe):
        """The most by which stripes of that width differ from their neighbours in a box (left, top,
        right, bottom), in parts of color. Colors that change slowly add little to it."""
        left, top, right, bottom = box
        brightness = lambda x, y: sum(self.pixel(x, y))
        return max(
            abs(brightness(x, y) - brightness(x + stripe, y))
            for y in range(top, bottom)
            for x in range(left, right - stripe)
        )

    @staticmethod
    def _mask(values, wanted):
        """A number with one bit for each value that is the wanted one."""
        table = bytes(1 if value == wanted else 0 for value in range(256))
        return int.from_bytes(values.translate(table), "big")

    def differing_box(self, other):
        """(left, top, right, bottom) around the pixels in which the two differ, or None."""
        if (self.width, self.height) != (other.width, other.height):
            return (0, 0, max(self.width, other.width), max(self.height, other.height))
        stride = 3 * self.width
        rows, first, last = [], self.width, -1
        for y in range(self.height):
            mine, theirs = (it._data[y * stride : (y + 1) * stride] for it in (self, other))
            if mine == theirs:
                continue
            bits = int.from_bytes(mine, "big") ^ int.from_bytes(theirs, "big")
            rows.append(y)
            first = min(first, (8 * stride - bits.bit_length()) // 8 // 3)
            lowest = (bits & -bits).bit_length() - 1
            last = max(last, (stride - 1 - lowest // 8) // 3)
        return (first, rows[0], last + 1, rows[-1] + 1) if rows else None

    def __eq__(self, other):
        return (self.width, self.height, self._data) == (other.width, other.height, other._data)

    def save(self, path):
        with open(path, "wb") as file:
            file.write(b"P6\n%d %d\n255\n" % (self.width, self.height))
            file.write(self._data)

    def save_png(self, path):
        def chunk(kind, content):
            check = struct.pack(">I", zlib.crc32(kind + content))
            return struct.pack(">I", len(content)) + kind + content + check

        stride = 3 * self.width
        lines = b"".join(b"\0" + self._data[y * stride : (y + 1) * stride] for y in range(self.height))
        eight_bits_of_color = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", eight_bits_of_color))
            file.write(chunk(b"IDAT", zlib.compress(lines, 6)) + chunk(b"IEND", b""))


def keep(picture, name):
    """For whoever wants to look at it: in the folder that ORVANE_PICTURES names, if any."""
    folder = os.environ.get("ORVANE_PICTURES")
    if not folder:
        return
    os.makedirs(folder, exist_ok=True)
    path = os.path.join(folder, name + ".png")
    # Tests that run beside each other may keep the same one.
    draft = "%s.%d" % (path, os.getpid())
    picture.save_png(draft)
    os.replace(draft, path)
