"""What a compositor saw of a client's layer surfaces, from the protocol trace that libwayland
writes: when each picture came, how much of it was said to have changed, how large buffers are."""

import re
import time
from dataclasses import dataclass, field

_LINE = re.compile(r"^\[\s*(\d+)\.(\d+)\]\s+(\w+)@(\d+)\.(\w+)\((.*)\)$")
_NEW_ID = re.compile(r"new id (?:\w+)@(\d+)")


@dataclass
class Frame:
    """One commit with a picture. `time` is seconds since 1970."""

    time: float
    buffer: tuple  # width, height
    changed: list = field(default_factory=list)  # x, y, width, height

    @property
    def changed_pixels(self):
        return sum(width * height for _, _, width, height in self.changed)


def _absolute(micros):
    # The trace has the wall clock in microseconds, of which 32 bits are left.
    now = int(time.time() * 1e6)
    return (now - ((now - micros) % 2**32)) / 1e6


class ProtocolTrace:
    """`surfaces` has the frames of every layer surface of the name space, in order of creation."""

    def __init__(self, lines, name_space):
        self.surfaces = []
        self.layers = []
        self._name_space = name_space
        self._of_object = {}
        self._buffers = {}
        self._attached = {}
        self._changed = {}
        for line in lines:
            found = _LINE.match(line.strip())
            if found:
                micros = int(found[1]) * 1000 + int(found[2])
                self._take(_absolute(micros), found[3], int(found[4]), found[5], found[6])

    def _take(self, at, interface, number, message, arguments):
        if message == "get_layer_surface" and '"%s"' % self._name_space in arguments:
            surface = int(re.search(r"wl_surface@(\d+)", arguments)[1])
            self.layers.append(int(arguments.rsplit(",", 2)[1]))
            self._of_object[surface] = len(self.surfaces)
            self.surfaces.append([])
        elif message == "create_buffer":
            fields = arguments.split(", ")
            self._buffers[int(_NEW_ID.search(arguments)[1])] = (int(fields[2]), int(fields[3]))
        elif interface == "wl_surface" and number in self._of_object:
            self._take_of_surface(at, number, message, arguments)

    def _take_of_surface(self, at, number, message, arguments):
        if message == "attach":
            attached = re.match(r"wl_buffer@(\d+)", arguments)
            self._attached[number] = self._buffers[int(attached[1])] if attached else None
        elif message == "damage_buffer":
            rect = tuple(int(value) for value in arguments.split(", "))
            self._changed.setdefault(number, []).append(rect)
        elif message == "commit":
            buffer = self._attached.pop(number, None)
            changed = self._changed.pop(number, [])
            if buffer:
                self.surfaces[self._of_object[number]].append(Frame(at, buffer, changed))
        elif message == "destroy":
            del self._of_object[number]
