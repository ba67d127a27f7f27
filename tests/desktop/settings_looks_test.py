"""How the settings window looks where the desktop asks for something else: its accent, larger texts,
another direction of reading; and how the preview in it follows what is chosen."""

import subprocess
import unittest

from at_rest import at_rest
from desktop_session import eventually, run_tests
from settings_board import BoardSession, event
from settings_window_test import DISPLAY_TOGGLES, PORTAL, SMART_TOGGLES

REVIEW = event("Work", "Review", 5)
THEMES_OWN = (53, 132, 228)
# That can be seen in a light window, and in a dark one, so that they are shown as they are. Red comes
# second, since it is what the portal begins with.
LIGHT, DARK = 2, 1
ACCENTS = {LIGHT: ((26, 128, 51), (204, 26, 26)), DARK: ((255, 153, 102), (51, 204, 102))}
REACHED = {
    "Sources": ["Done"],
    "Display": ["Dashboard display", *DISPLAY_TOGGLES, "Done"],
    "Smart Next": [*SMART_TOGGLES, "Ignored words", "Done"],
    "Style": ["Theme", "Primary color", "Glass strength", "Done"],
}
FOOTER = 100
# Half as large again as the usual 96 for an inch.
LARGE_TEXTS = "Xft.dpi: 144\n"
# In the window: within the preview's panel, below its texts and below the palette that hangs over it.
ON_PREVIEW = (380, 500)


class Session(BoardSession):
    def __init__(self, **environment):
        super().__init__(REVIEW)
        self.environment.update(environment)

    def start_portal(self):
        with open(PORTAL, encoding="utf-8") as file:
            self._portal = self.start("/usr/bin/python3", "-B", "-c", file.read(), stdin=subprocess.PIPE)
        eventually("the portal is there", lambda: "ready" in self._portal.lines)

    def tell_portal(self, *numbers):
        self._portal.process.stdin.write((" ".join(map(str, numbers)) + "\n").encode())
        self._portal.process.stdin.flush()

    def done_button(self, color=THEMES_OWN):
        """From where to where the button at the foot is in its colour; None where it is not."""
        picture = self.window_picture()
        foot = picture.cropped(0, picture.height - FOOTER, picture.width, FOOTER)
        rows = [foot.count(color, top=y, bottom=y + 1) for y in range(FOOTER)]
        if max(rows) < 20:
            return None
        row = rows.index(max(rows))
        columns = [x for x in range(foot.width) if foot.pixel(x, row) == color]
        return (columns[0], columns[-1] + 1)

    def reach_everything(self):
        for tab, names in REACHED.items():
            self.choose_tab(tab)
            for name in names:
                self.go_to(name)
        self.choose_tab("Sources")
        self.go_to_row("Work")

    def drag(self, *points):
        """Through points in the window, with others in between."""
        left, top, _, _ = self.window_place()
        path = []
        for (x, y), (to_x, to_y) in zip(points, points[1:]):
            for part in (0.25, 0.5, 0.75, 1):
                along = (left + x + part * (to_x - x), top + y + part * (to_y - y))
                path += ["mousemove", *(str(round(at)) for at in along)]
        self.ask("xdotool", *path)

    def preview(self):
        left, top, _, _ = self.window_place()
        return self.picture().pixel(left + ON_PREVIEW[0], top + ON_PREVIEW[1])

    def preview_other_than(self, known):
        eventually("the preview is another", lambda: self.preview() != known)
        return at_rest("the preview", self.preview)


class PortalSession(Session):
    def start_accessible(self):
        super().start_accessible()
        self.start_portal()


class LargeTextsSession(Session):
    def start_accessible(self):
        super().start_accessible()
        self.write(LARGE_TEXTS, "resources")
        self.ask("xrdb", "-nocpp", "-merge", self.path("resources"))


class Accent(unittest.TestCase):
    def is_the_desktops(self):
        with PortalSession() as xfce:
            for scheme, accents in ACCENTS.items():
                xfce.tell_portal(scheme)
                for accent in accents:
                    self.assertIsNone(xfce.done_button(accent))
                    xfce.tell_portal(*(part / 255 for part in accent))
                    eventually("Done is in the accent", lambda accent=accent: xfce.done_button(accent))
            xfce.tell_portal(-1, -1, -1)
            eventually("Done is no more in it", lambda: not xfce.done_button(accents[-1]))


class Texts(unittest.TestCase):
    def grow_and_everything_is_still_reached(self):
        with Session() as usual:
            left, right = eventually("there is the button", usual.done_button)
        with LargeTextsSession() as xfce:
            self.assertEqual(xfce.window_place()[2:], (760, 620))
            larger = eventually("there is the button", xfce.done_button)
            self.assertGreater(larger[1] - larger[0], right - left + 10)
            xfce.reach_everything()


class Direction(unittest.TestCase):
    def is_that_of_the_language(self):
        with Session(LANG="C.UTF-8", LANGUAGE="he") as xfce:
            left, right = eventually("there is the button", xfce.done_button)
            self.assertLess(right, xfce.window_place()[2] / 2)
            self.assertLess(left, 60)
            xfce.reach_everything()


class Preview(unittest.TestCase):
    def follows_theme_color_and_strength(self):
        with Session() as xfce:
            xfce.choose_tab("Style")
            vivid = xfce.preview_other_than((0, 0, 0))
            xfce.pick("Theme", 2)
            light = xfce.preview_other_than(vivid)
            self.assertGreater(sum(light), sum(vivid) + 150)
            xfce.pick("Theme", 1)
            dark = xfce.preview_other_than(light)
            self.assertLess(sum(dark), sum(light) - 150)
            xfce.pick("Theme", 0)
            eventually("the preview is as before", lambda: xfce.preview() == vivid)
            xfce.accessible.set_value("Glass strength", 0.45)
            weak = xfce.preview_other_than(vivid)
            xfce.accessible.set_value("Glass strength", 0.95)
            strong = xfce.preview_other_than(weak)
            self.assertNotEqual(weak, strong)
            xfce.accessible.act("Primary color", "push button")
            eventually("the palette is there", lambda: xfce.has_focus("radio button"))
            xfce.accessible.act("Red", "radio button")
            red = xfce.preview_other_than(strong)
            self.assertGreater(red[0] - red[2], strong[0] - strong[2] + 60)

    def follows_a_slider_under_the_pointer_and_is_no_handle_itself(self):
        with Session() as xfce:
            xfce.choose_tab("Style")
            seen = [xfce.preview_other_than((0, 0, 0))]
            self._follows_the_slider(xfce, seen)
            self._is_no_handle(xfce)
            self.assertEqual(xfce.preview(), seen[-1])
            self.assertEqual(xfce.board.output, "")

    def _follows_the_slider(self, xfce, seen):
        x, y, width, height = xfce.accessible.place("Glass strength", "slider")
        on_slider = lambda along: (x + along * width, y + height / 2)
        strengths = [self._strength(xfce)]
        xfce.drag((0, 0), on_slider(0.7))
        xfce.ask("xdotool", "mousedown", "1")
        for start, end in ((0.7, 0.6), (0.6, 0.3), (0.3, 0.1)):
            xfce.drag(on_slider(start), on_slider(end))
            seen.append(xfce.preview_other_than(seen[-1]))
            strengths.append(self._strength(xfce))
        xfce.ask("xdotool", "mouseup", "1")
        self.assertEqual(strengths, sorted(set(strengths), reverse=True))
        xfce.expect("glassOpacity", strengths[-1])
        self.assertEqual(self._strength(xfce), strengths[-1])

    def _is_no_handle(self, xfce):
        x, y, width, height = xfce.accessible.place("Preview", "image")
        place, focused = xfce.window_place(), xfce.accessible.focused()
        start, end = (x + 40, y + 60), (x + width - 60, y + height - 20)
        xfce.drag((0, 0), start)
        before = at_rest("the window", xfce.window_picture)
        xfce.ask("xdotool", "mousedown", "1")
        xfce.drag(start, end, (x + width / 2, y - 90), start)
        xfce.ask("xdotool", "mouseup", "1")
        eventually("all is as it was", lambda: xfce.window_picture() == before)
        self.assertEqual((xfce.window_place(), xfce.accessible.focused()), (place, focused))

    @staticmethod
    def _strength(xfce):
        return xfce.accessible.look("Glass strength", "slider")["value"]


if __name__ == "__main__":
    run_tests()
