"""The board of the running program on a row's desktop, and what can be seen of it."""

import time

from desktop_session import eventually
from row import FIRST_BACKGROUND, WINDOW

# Every so many pixels, both ways, one is looked at.
STEP = 7
# A board with a few cards has far more of these.
FEWEST_POINTS = 150
# What an icon, a window's title or the countdown's digits may take away.
MOST, FEW = 0.9, 0.1


def throughout(what, condition, seconds=1.0):
    """Fails as soon as the condition is not met in that time."""
    limit = time.monotonic() + seconds
    while True:
        if not condition():
            raise AssertionError("did not last: " + what)
        if time.monotonic() > limit:
            return
        time.sleep(0.1)


def require(met, what):
    if not met:
        raise AssertionError(what)


class Trial:
    def __init__(self, row):
        self.row = row
        self.screens = row.screens()
        self.running = None
        # Of each screen by its name: how it looked without the board, and where the board is.
        self.bare = {}
        self.points = {}
        self.background = FIRST_BACKGROUND

    @property
    def main(self):
        return self.screens[0]

    # ---- Beginning and end

    def begin(self, settings):
        """Starts the program. Which screens it stands on is for the checks to find out."""
        self.row.prepare(**settings)
        for screen in self.screens:
            self.bare[screen.name] = self._quiet_picture(screen)
        self.points = {}
        self.running = self.row.start_board()

    def end(self):
        """Answers the exit status; the program need not be running any more."""
        running, self.running = self.running, None
        return running.end()

    def _quiet_picture(self, screen):
        last = [self.row.picture(screen)]

        def is_quiet():
            time.sleep(0.25)
            previous, last[0] = last[0], self.row.picture(screen)
            return previous == last[0]

        eventually("%s is quiet" % screen.name, is_quiet)
        return last[0]

    # ---- Seeing

    def differing_points(self, screen, picture):
        bare = self.bare[screen.name]
        step = max(1, round(STEP * screen.scale))
        places = (
            (x, y)
            for y in range(step, screen.height, step)
            for x in range(step, screen.width, step)
        )
        return [place for place in places if picture.pixel(*place) != bare.pixel(*place)]

    def find_board(self, screen):
        """Waits until the board stands on the screen, with its lists; remembers where."""
        found = [[]]

        def is_settled():
            previous = found[0]
            found[0] = self.differing_points(screen, self.row.picture(screen))
            return len(found[0]) >= FEWEST_POINTS and abs(len(found[0]) - len(previous)) < 5

        def is_settled_for_long():
            if not is_settled():
                return False
            time.sleep(1.1)
            return is_settled()

        eventually("the board stands on %s" % screen.name, is_settled_for_long, 40)
        self.points[screen.name] = found[0]

    def is_untouched(self, screen):
        return len(self.differing_points(screen, self.row.picture(screen))) < FEWEST_POINTS / 10

    def share(self, screen, differs_from):
        """The part of the board's points that have another colour."""
        picture = self.row.picture(screen)
        points = self.points[screen.name]
        return sum(picture.pixel(*place) != differs_from for place in points) / len(points)

    def is_seen(self, screen):
        """Where the board is, there is neither the bare background nor a window."""
        picture = self.row.picture(screen)
        points = self.points[screen.name]
        others = (self.background, WINDOW)
        seen = sum(picture.pixel(*place) not in others for place in points) / len(points)
        return seen > MOST

    def is_covered(self, screen):
        return 1 - self.share(screen, WINDOW) > MOST

    def is_absent(self, screen):
        return self.share(screen, self.background) < FEW

    def see(self, screen, after):
        eventually("the board is seen on %s %s" % (screen.name, after), lambda: self.is_seen(screen))
        throughout("the board is seen on %s %s" % (screen.name, after), lambda: self.is_seen(screen))

    def settle(self, screen, after):
        """Like see(), for what takes the desktop itself a while, with the board coming and going
        in it as its parts do."""
        what = "the board is seen on %s %s" % (screen.name, after)
        eventually("%s, and stays" % what, lambda: self._is_seen_throughout(what, screen), 30)

    def _is_seen_throughout(self, what, screen):
        try:
            throughout(what, lambda: self.is_seen(screen))
        except AssertionError:
            return False
        return True

    # ---- Places

    def on_the_board(self, screen):
        """A place of a card, away from edges where desktops put their icons: one that is clicked
        looks otherwise ever after."""
        points = self.points[screen.name]
        left, top = points[0]
        near = (left + round(250 * screen.scale), top + round(125 * screen.scale))
        return min(points, key=lambda it: abs(it[0] - near[0]) + abs(it[1] - near[1]))

    def beside_the_board(self, screen):
        return (screen.width - round(130 * screen.scale), screen.height - round(70 * screen.scale))

    # ---- Doing

    def with_window(self, screen, title="ordinary"):
        return _Window(self, screen, title)


class _Window:
    """An ordinary window that is there for the time of a `with`."""

    def __init__(self, trial, screen, title):
        self._trial = trial
        self._screen = screen
        self._title = title

    def __enter__(self):
        self._window = self._trial.row.open_window(self._title, self._screen)
        return self._window

    def __exit__(self, *_):
        self._window.end()
