"""The row on what KWin for X11 blurs, over a desktop of stripes."""

from desktop_session import eventually, program
from neighbours import hexadecimal
from row import FIRST_BACKGROUND
from run import keep_picture, run_named
from trial import require
from x11_shell_rows import KWin

STRIPE = 8
# Where the cards of both columns are free of text, and beside all cards.
LEFT, RIGHT = (80, 47, 380, 55), (450, 47, 870, 55)
BESIDE = (1000, 600, 1200, 610)
SETTINGS = """[Compositing]
Backend=OpenGL
OpenGLIsUnsafe=false
[Plugins]
blurEnabled=true
"""
REGION = "_KDE_NET_WM_BLUR_BEHIND_REGION"


class KWinBlur(KWin):
    name = "kwin-x11-blur"
    needs = (*KWin.needs, "gdbus", "gapplication")
    monitors = ("DP-1",)

    def begin(self):
        self.write(SETTINGS, ".config", "kwinrc")
        super().begin()

    def begin_desktop(self):
        width, height = self.size
        place = ("0", "0", str(width), str(height))
        client = program("tests", "x11_client")
        desktop = self.start(client, "stripes", "desktop", hexadecimal(FIRST_BACKGROUND), *place)
        eventually("the desktop is there", lambda: "ready" in desktop.lines)

    def ask_of_blur(self, method):
        command = ("gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path", "/Effects")
        return self.ask(*command, "--method", "org.kde.kwin.Effects." + method, "blur")

    def toggle_focus(self):
        self.ask("gapplication", "action", "org.orvane.Orvane", "toggle-focus")

    def contrast(self, box):
        return self.picture(self.screens()[0]).contrast(box, STRIPE)


def is_soft(row, box):
    return row.contrast(box) < row.contrast(BESIDE) / 4


def is_blurred(row):
    eventually("there are stripes", lambda: row.contrast(BESIDE) > 200)
    eventually("the stripes behind the cards are soft", lambda: is_soft(row, LEFT) and is_soft(row, RIGHT))


def is_blurred_behind_what_focus_mode_leaves(row):
    row.toggle_focus()
    bare = row.contrast(BESIDE)
    eventually("the hidden cards blur nothing", lambda: row.contrast(RIGHT) == bare)
    # They come back a little later than they went.
    row.toggle_focus()
    eventually("all of them do again", lambda: is_soft(row, LEFT) and is_soft(row, RIGHT))


def is_blurred_while_the_effect_is_on(row):
    row.ask_of_blur("unloadEffect")
    eventually("KWin blurs no more", lambda: REGION + ":  not found" in row.root_property(REGION))
    eventually("the glass is a tint", lambda: row.contrast(LEFT) > row.contrast(BESIDE) / 3)
    row.ask_of_blur("loadEffect")
    is_blurred(row)


def try_blur(row, report):
    row.prepare(displayMode="main", glassOpacity=0.4)
    running = row.start_board()
    report.attempt("what lies behind the glass is blurred", is_blurred, row)
    keep_picture(row)
    report.attempt("so it is in focus mode", is_blurred_behind_what_focus_mode_leaves, row)
    report.attempt("and while the effect is on", is_blurred_while_the_effect_is_on, row)
    report.attempt("ends well", lambda: require(running.end() == 0, "it does not"))


if __name__ == "__main__":
    run_named(KWinBlur, trying=try_blur)
