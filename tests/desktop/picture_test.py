"""The comparisons that the desktop tests rest on, tried on pictures of a few pixels."""

import os
import struct
import tempfile
import unittest
import zlib

from desktop_session import run_tests
from picture import Picture

RED, BLUE = (255, 0, 0), (0, 0, 255)


def painted(width, height, dots=()):
    data = bytearray(bytes(RED) * (width * height))
    for x, y in dots:
        data[3 * (y * width + x) : 3 * (y * width + x) + 3] = bytes(BLUE)
    return Picture(width, height, bytes(data))


class Pictures(unittest.TestCase):
    def are_read_from_a_file(self):
        # The first pixel begins with what looks like a line's end.
        picture = Picture.from_ppm(b"P6\n2 1\n255\n\n\x01\x02\x03\x04\x05")
        self.assertEqual(picture.pixel(0, 0), (10, 1, 2))
        self.assertEqual(picture.pixel(1, 0), (3, 4, 5))

    def are_read_from_rows_with_padding(self):
        rows = b"\x01\x02\x03\xff" + b"\x04\x05\x06\xff" + b"pads"
        picture = Picture.from_bgrx(2, 2, 12, rows + rows)
        for y in (0, 1):
            self.assertEqual([picture.pixel(x, y) for x in (0, 1)], [(3, 2, 1), (6, 5, 4)])

    def are_cut_and_joined(self):
        picture = painted(4, 3, [(2, 1)])
        part = picture.cropped(1, 1, 2, 1)
        self.assertEqual([part.pixel(x, 0) for x in (0, 1)], [RED, BLUE])
        both = part.beside(painted(1, 2))
        self.assertEqual((both.width, both.height), (3, 2))
        self.assertEqual([both.pixel(x, 0) for x in range(3)], [RED, BLUE, RED])
        self.assertEqual([both.pixel(x, 1) for x in range(3)], [(0, 0, 0), (0, 0, 0), RED])

    def are_kept_as_png(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "kept.png")
            painted(2, 1, [(1, 0)]).save_png(path)
            with open(path, "rb") as file:
                content = file.read()
        self.assertEqual(content[:8], b"\x89PNG\r\n\x1a\n")
        start = content.index(b"IDAT")
        (length,) = struct.unpack(">I", content[start - 4 : start])
        lines = zlib.decompress(content[start + 4 : start + 4 + length])
        self.assertEqual(lines, b"\0" + bytes(RED + BLUE))

    def count_a_color_within_a_rectangle(self):
        picture = painted(5, 4, [(0, 0), (2, 1), (4, 3)])
        self.assertEqual(picture.count(BLUE), 3)
        self.assertEqual(picture.count(RED), 17)
        self.assertEqual(picture.count(BLUE, left=1, top=1, right=4, bottom=3), 1)
        self.assertEqual(picture.count((255, 0, 255)), 0)

    def tell_where_they_differ(self):
        bare = painted(6, 5)
        self.assertIsNone(bare.differing_box(painted(6, 5)))
        self.assertEqual(bare.differing_box(painted(6, 5, [(3, 2)])), (3, 2, 4, 3))
        self.assertEqual(bare.differing_box(painted(6, 5, [(5, 0), (1, 4)])), (1, 0, 6, 5))
        self.assertEqual(bare.differing_box(painted(6, 5, [(0, 0)])), (0, 0, 1, 1))
        self.assertIsNotNone(bare.differing_box(painted(5, 5)))


if __name__ == "__main__":
    run_tests()
