"""What every desktop is tried for. A check is a function that takes the Trial and fails with an
AssertionError; SETTINGS tells what the program is set to while it runs, and USES which operations
of the row it takes."""

import functools

from at_rest import sleeps
from desktop_session import eventually, happens
from row import FIRST_BACKGROUND, SECOND_BACKGROUND
from trial import require, throughout

ALL_SCREENS = {"displayMode": "all"}


def check(*uses, **settings):
    def marked(function):
        function.uses = uses
        function.settings = settings
        function.title = function.__name__.replace("_", " ")
        return function

    return marked


@check(displayMode="main")
def stands_on_the_main_screen_alone(trial):
    trial.find_board(trial.main)
    for other in trial.screens[1:]:
        require(trial.is_untouched(other), "%s is not the main screen" % other.name)


@check("second_screen", displayMode="selected")
def stands_on_the_selected_screen_alone(trial):
    selected = trial.screens[-1]
    trial.find_board(selected)
    for other in trial.screens[:-1]:
        require(trial.is_untouched(other), "%s is not selected" % other.name)


@check(**ALL_SCREENS)
def stands_on_every_screen(trial):
    for screen in trial.screens:
        trial.find_board(screen)


@check(**ALL_SCREENS)
def lies_over_the_background(trial):
    for screen in trial.screens:
        trial.see(screen, "over the background")
        x, y = trial.beside_the_board(screen)
        beside = trial.row.picture(screen).pixel(x, y)
        require(beside == trial.bare[screen.name].pixel(x, y), "the board covers what is beside it")


@check("open_window", **ALL_SCREENS)
def is_covered_by_an_ordinary_window(trial):
    with trial.with_window(trial.main):
        eventually("the window covers the board", lambda: trial.is_covered(trial.main))
        throughout("the window covers the board", lambda: trial.is_covered(trial.main))
    trial.see(trial.main, "after the window was closed")


@check("press_key", "open_window", **ALL_SCREENS)
def takes_neither_focus_nor_keys(trial):
    with trial.with_window(trial.main) as window:
        last = trial.screens[-1]
        trial.end()
        if last is not trial.main:
            eventually("the first one is gone", lambda: trial.is_absent(last))
        trial.running = trial.row.start_board()
        # There again, with its calendars read, it would have what it wants.
        if last is not trial.main:
            trial.see(last, "behind a window elsewhere")
        else:
            throughout("the window covers the board", lambda: trial.is_covered(trial.main), 3)
        before = window.lines.count("key")
        trial.row.press_key()
        eventually("the window gets the key", lambda: window.lines.count("key") > before)
    trial.see(trial.main, "after the window was closed")


@check("reaches_below", **ALL_SCREENS)
def lets_clicks_through(trial):
    x, y = trial.on_the_board(trial.main)
    # The desktop may still be getting ready for clicks of any kind.
    eventually("a click reaches what is below", lambda: trial.row.reaches_below(trial.main, x, y))
    trial.see(trial.main, "after a click went through")


@check("click", "open_window", **ALL_SCREENS)
def stays_in_place_after_the_desktop_was_clicked(trial):
    for place in (trial.beside_the_board(trial.main), trial.on_the_board(trial.main)):
        trial.row.click(trial.main, *place)
        trial.see(trial.main, "after a click")
    with trial.with_window(trial.main):
        eventually("the window covers the board", lambda: trial.is_covered(trial.main))
    trial.see(trial.main, "after the window was closed")


@check("listed", "open_window", **ALL_SCREENS)
def is_not_offered_among_the_windows(trial):
    with trial.with_window(trial.main, "offered"):
        eventually("an ordinary window is listed", lambda: _mentions(trial, "offered"))
        require(not _mentions(trial, "orvane"), "the board is listed: %s" % trial.row.listed())


def _mentions(trial, word):
    return any(word in title.lower() for title in trial.row.listed())


@check("show_workspace", **ALL_SCREENS)
def stands_on_every_workspace(trial):
    try:
        trial.row.show_workspace(1)
        trial.see(trial.main, "on another workspace")
    finally:
        trial.row.show_workspace(0)
    trial.see(trial.main, "back on the first workspace")


@check("show_desktop", "open_window", **ALL_SCREENS)
def stays_when_the_desktop_is_shown(trial):
    with trial.with_window(trial.main):
        eventually("the window covers the board", lambda: trial.is_covered(trial.main))
        trial.row.show_desktop(True)
        trial.see(trial.main, "while the desktop is shown")
        trial.row.show_desktop(False)
        eventually("the window covers the board again", lambda: trial.is_covered(trial.main))
    trial.see(trial.main, "after the desktop was shown")


@check("set_background", **ALL_SCREENS)
def follows_another_background(trial):
    before = trial.row.picture(trial.main)
    try:
        _change_background(trial, SECOND_BACKGROUND)
        trial.see(trial.main, "over another background")
        eventually("the other background shines through", lambda: _has_turned(trial, before))
    finally:
        _change_background(trial, FIRST_BACKGROUND)
    trial.see(trial.main, "over the first background again")


def _change_background(trial, color):
    trial.row.set_background(color)
    beside = trial.beside_the_board(trial.main)
    eventually("the background changes", lambda: trial.row.picture(trial.main).pixel(*beside) == color)
    trial.background = color


def _has_turned(trial, before):
    """Most of the board, from the first background, which has more red, to the second, which has
    more blue."""
    now = trial.row.picture(trial.main)
    points = trial.points[trial.main.name]
    pairs = [(now.pixel(*place), before.pixel(*place)) for place in points]
    return sum(it[0] < was[0] and it[2] > was[2] for it, was in pairs) > len(points) / 2


@check("restart_shell", "open_window", **ALL_SCREENS)
def stays_in_place_after_the_desktop_was_restarted(trial):
    trial.row.restart_shell()
    trial.settle(trial.main, "after the restart")
    with trial.with_window(trial.main):
        eventually("the window covers the board", lambda: trial.is_covered(trial.main))
    trial.see(trial.main, "after the window was closed")
    if "reaches_below" not in trial.row.lacks:
        place = trial.on_the_board(trial.main)
        eventually(
            "a click reaches what is below", lambda: trial.row.reaches_below(trial.main, *place)
        )


@check("one_workspace_only", "show_workspace", displayMode="all", showOnAllSpaces=False)
def stands_on_one_workspace_alone_when_so_set(trial):
    for screen in trial.screens:
        trial.find_board(screen)
    try:
        trial.row.show_workspace(1)
        eventually("the other workspace is bare", lambda: trial.is_absent(trial.main))
        throughout("the other workspace is bare", lambda: trial.is_absent(trial.main))
    finally:
        trial.row.show_workspace(0)
    trial.see(trial.main, "back on its workspace")


COMMON = (
    stands_on_the_main_screen_alone,
    stands_on_the_selected_screen_alone,
    stands_on_every_screen,
    lies_over_the_background,
    is_covered_by_an_ordinary_window,
    takes_neither_focus_nor_keys,
    lets_clicks_through,
    stays_in_place_after_the_desktop_was_clicked,
    is_not_offered_among_the_windows,
    stands_on_every_workspace,
    stays_when_the_desktop_is_shown,
    follows_another_background,
    stays_in_place_after_the_desktop_was_restarted,
    stands_on_one_workspace_alone_when_so_set,
)


# Others that are made with the board on all screens know where it is.
LOOK_ON_ALL_SCREENS = (stands_on_every_screen, stands_on_one_workspace_alone_when_so_set)


def leaves_nothing(trial):
    """Ends the program, after each run of checks with the same settings."""
    written = trial.running.output
    require(trial.running.is_running(), "it ended by itself: " + written)
    status = trial.end()
    require(status == 0, "exit status %s: %s" % (status, written))
    require(not written, "it wrote: " + written)
    for screen in trial.screens:
        if not happens(lambda each=screen: _is_bare(trial, each), 20):
            what = "%s does not look as it did before, between %s and %s"
            require(False, what % (screen.name, *_corners(trial, screen)))
    eventually("nothing is left of it", lambda: not trial.row.traces())


def _is_bare(trial, screen):
    """Apart from what the desktop itself changes, such as a clock."""
    return not trial.differing_points(screen, trial.row.picture(screen))


def _corners(trial, screen):
    """Of the box around all that differs: that tells what it is."""
    box = trial.row.picture(screen).differing_box(trial.bare[screen.name])
    left, top, right, bottom = box or (0, 0, 0, 0)
    return (left, top), (right, bottom)


# ---- Of some rows alone


@check("fill_screen", displayMode="main")
def sleeps_behind_a_window_that_fills_the_screen(trial):
    """For desktops on X11 that compose, which no server tells of."""
    trial.find_board(trial.main)
    window = trial.row.fill_screen("filling", trial.main)
    try:
        eventually("the window covers the board", lambda: trial.is_covered(trial.main))
        eventually("the program sleeps", lambda: sleeps(trial.running), 60)
        require(trial.is_covered(trial.main), "the window is gone")
    finally:
        window.end()
    trial.see(trial.main, "after the window was closed")
    eventually("it goes on", lambda: not sleeps(trial.running), 60)


@check(**ALL_SCREENS)
def comes_back_after_the_desktop_was_shown(trial):
    """For desktops that count the board among the windows that make way."""
    trial.row.show_desktop(True)
    try:
        eventually("the board is put aside", lambda: trial.is_absent(trial.main))
    finally:
        trial.row.show_desktop(False)
    trial.see(trial.main, "after the desktop was shown")


def _on_one_workspace(function):
    @functools.wraps(function)
    def tried(trial):
        function(trial)

    tried.settings = {**function.settings, "showOnAllSpaces": False}
    tried.title = function.title + " on one workspace"
    return tried


# On X11 the board is then another kind of window, for which each desktop has rules of its own.
_EACH_ON_ONE_WORKSPACE = tuple(
    _on_one_workspace(each)
    for each in (
        is_covered_by_an_ordinary_window,
        takes_neither_focus_nor_keys,
        lets_clicks_through,
        stays_in_place_after_the_desktop_was_clicked,
        is_not_offered_among_the_windows,
    )
)
ON_ONE_WORKSPACE = (*_EACH_ON_ONE_WORKSPACE, _on_one_workspace(stays_when_the_desktop_is_shown))
# Where that kind of window makes way with the others.
PUT_ASIDE_ON_ONE_WORKSPACE = (
    *_EACH_ON_ONE_WORKSPACE,
    _on_one_workspace(comes_back_after_the_desktop_was_shown),
)
