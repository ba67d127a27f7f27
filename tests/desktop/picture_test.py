"""The comparisons that the desktop tests rest on, tried on pictures of a few pixels."""

import unittest

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
