"""What the settings window changes, seen on the board beside it."""

import unittest

from desktop_session import eventually, run_tests
from settings_board import DIGITS, ON_DATE, ON_EVENTS, BoardSession, event, task, tomorrow

BREAKFAST = event("Home", "Breakfast", 2)
REVIEW = event("Work", "Review", 5)
# Within the settings window, below its lowest control.
ON_WINDOW = (1200, 850)
BLACK = (0, 0, 0)


def has_text(picture):
    """Texts are much lighter than the glass that they stand on."""
    grays = [sum(picture.pixel(x, y)) for y in range(picture.height) for x in range(picture.width)]
    return max(grays) > 600


def is_colored(picture):
    """Whether what is lightest in it, its digits, is of a colour; the glass is blue."""
    colors = [picture.pixel(x, y) for y in range(picture.height) for x in range(picture.width)]
    red, _, blue = max(colors, key=lambda color: color[0])
    return red - blue > 100


class Effects(unittest.TestCase):
    def of_the_chosen_calendars(self):
        with BoardSession(BREAKFAST, REVIEW) as xfce:
            eventually("both are listed", xfce.lists_two_events)
            both = xfce.title_other_than()
            xfce.go_to_row("Work")
            xfce.press("space")
            eventually("there is one row", lambda: not xfce.lists_two_events())
            review = xfce.title_other_than(both)
            xfce.accessible.act("All", "push button", "Calendars")
            eventually("both are listed again", xfce.lists_two_events)
            xfce.title_again(both)
            xfce.go_to_row("Home")
            xfce.press("space")
            eventually("there is one row", lambda: not xfce.lists_two_events())
            self.assertNotEqual(xfce.title(), review)
            xfce.title_again(both)

    def of_the_chosen_lists(self):
        with BoardSession(task("Errands", "Stamps", 2), task("House", "Windows", 5)) as xfce:
            stamps = xfce.title_other_than()
            xfce.go_to_row("House")
            xfce.press("space")
            xfce.title_other_than(stamps)
            xfce.accessible.act("All", "push button", "Reminder Lists")
            xfce.title_again(stamps)

    def of_what_drives_next_up(self):
        with BoardSession(REVIEW, task("Errands", "Stamps", 6)) as xfce:
            xfce.choose_tab("Smart Next")
            review = xfce.title_other_than()
            xfce.toggle("Calendar events can drive Next Up")
            stamps = xfce.title_other_than(review)
            xfce.toggle("Reminders with due dates can drive Next Up")
            nothing = xfce.title_other_than(review, stamps)
            xfce.toggle("Reminders with due dates can drive Next Up")
            xfce.title_again(stamps)
            xfce.toggle("Calendar events can drive Next Up")
            xfce.title_again(review)
            self.assertNotEqual(nothing, xfce.title())

    def of_days_that_count(self):
        with BoardSession(tomorrow("Home", "Trip"), event("Work", "Review", 14)) as xfce:
            xfce.choose_tab("Smart Next")
            review = xfce.title_other_than()
            xfce.toggle("Allow all-day events to drive Next Up")
            xfce.title_other_than(review)
            xfce.toggle("Allow all-day events to drive Next Up")
            xfce.title_again(review)

    def of_ignored_words(self):
        with BoardSession(BREAKFAST, REVIEW) as xfce:
            xfce.choose_tab("Smart Next")
            breakfast = xfce.title_other_than()
            xfce.accessible.set_text("Ignored words", "tea, FAST")
            review = xfce.title_other_than(breakfast)
            xfce.accessible.set_text("Ignored words", "tea, fast, view")
            xfce.title_other_than(breakfast, review)
            xfce.accessible.set_text("Ignored words", "")
            xfce.title_again(breakfast)

    def of_urgency(self):
        with BoardSession(event("Home", "Breakfast", 0.2)) as xfce:
            xfce.choose_tab("Smart Next")
            eventually("it is urgent", lambda: is_colored(xfce.part(DIGITS)))
            xfce.toggle("Use urgency colors as deadlines approach")
            eventually("it does not show", lambda: not is_colored(xfce.part(DIGITS)))
            self.assertTrue(has_text(xfce.part(DIGITS)))
            xfce.toggle("Use urgency colors as deadlines approach")
            eventually("it shows again", lambda: is_colored(xfce.part(DIGITS)))

    def of_focus_mode(self):
        with BoardSession(BREAKFAST) as xfce:
            xfce.choose_tab("Display")
            events = xfce.picture().pixel(*ON_EVENTS)
            self.assertNotEqual(events, BLACK)
            xfce.toggle("Focus mode")
            eventually("the cards on the right go", lambda: xfce.picture().pixel(*ON_EVENTS) == BLACK)
            self.assertNotEqual(xfce.picture().pixel(*ON_DATE), BLACK)
            xfce.toggle("Focus mode")
            eventually("they are there again", lambda: xfce.picture().pixel(*ON_EVENTS) == events)

    def of_spaces(self):
        with BoardSession(BREAKFAST) as xfce:
            xfce.choose_tab("Display")
            xfce.toggle("Show on every Space")
            xfce.expect("showOnAllSpaces", False)
            xfce.ask("xdotool", "set_desktop", "1")
            eventually("the board stays behind", lambda: xfce.picture().pixel(*ON_DATE) == BLACK)
            xfce.ask("xdotool", "set_desktop", "0")
            eventually("it is there", lambda: xfce.picture().pixel(*ON_DATE) != BLACK)
            xfce.toggle("Show on every Space")
            xfce.expect("showOnAllSpaces", True)
            xfce.ask("xdotool", "set_desktop", "1")
            eventually("the window stays behind", lambda: xfce.picture().pixel(*ON_WINDOW) == BLACK)
            eventually("the board comes along", lambda: xfce.picture().pixel(*ON_DATE) != BLACK)

    def after_a_restart(self):
        with BoardSession(BREAKFAST, REVIEW) as xfce:
            vivid, breakfast = xfce.picture().pixel(*ON_DATE), xfce.title_other_than()
            xfce.go_to_row("Work")
            xfce.press("space")
            xfce.title_other_than(breakfast)
            xfce.choose_tab("Style")
            xfce.pick("Theme", 2)
            xfce.expect("themeMode", "light")
            xfce.accessible.set_value("Glass strength", 0.5)
            xfce.expect("glassOpacity", 0.5)
            eventually("the board is light", lambda: sum(xfce.picture().pixel(*ON_DATE)) > sum(vivid) + 150)
            light, review = xfce.resting_colors(), xfce.title()
            self.assertEqual(xfce.end_board(), 0)
            eventually("the board is gone", lambda: xfce.picture().pixel(*ON_DATE) == BLACK)
            xfce.start_board()
            eventually("the cards are as they were", lambda: xfce.colors() == light)
            xfce.title_again(review)
            self.assertEqual(xfce.board.output, "")


if __name__ == "__main__":
    run_tests()
