"""What is compared: the program, and what a user would otherwise put together. Each shows the date,
something that moves on once a second, and the day's agenda."""

import json
import os

import agenda

CONKY = """
conky.config = {
  out_to_x = true, update_interval = 1, double_buffer = true, no_buffers = true,
  own_window = true, own_window_type = "desktop", own_window_class = "agenda",
  own_window_hints = "undecorated,below,sticky,skip_taskbar,skip_pager",
  own_window_colour = "182033", default_color = "f0f2f6", draw_shades = false,
  use_xft = true, font = "DejaVu Sans:size=11", override_utf8_locale = true,
  alignment = "top_left", gap_x = 24, gap_y = 24,
  minimum_width = 440, minimum_height = 540, maximum_width = 440,
  cpu_avg_samples = 1, net_avg_samples = 1,
}
conky.text = [[
${font DejaVu Sans:size=14}${time %%A, %%e %%B}${font}
${font DejaVu Sans:size=44}%(moving)s${font}
%(lines)s
]]
"""

COUNTDOWN = """#!/bin/sh
# The time left until midnight, as a bar's user writes it.
left=$(( 86400 - $(date +%s) % 86400 ))
printf '%02d:%02d:%02d\\n' $(( left / 3600 )) $(( left / 60 % 60 )) $(( left % 60 ))
"""

WAYBAR_STYLE = """
* { font-family: "DejaVu Sans"; font-size: 11pt; }
window#waybar { background: rgba(24, 32, 51, 0.7); color: #f0f2f6; }
#clock.moving, #custom-moving { font-size: 44pt; }
"""


def script(session, name, text):
    session.write(text, name)
    os.chmod(session.path(name), 0o755)
    return session.path(name)


def orvane(session, path):
    session.write(agenda.calendar(), ".local", "share", "orvane", "calendars", "day", "day.ics")
    return [path]


def conky(moving):
    def command(session, _):
        text = CONKY % {"moving": moving(session), "lines": "\n".join(agenda.lines())}
        session.write(text, "conky.conf")
        return ["conky", "-c", session.path("conky.conf")]

    return command


def waybar(moving):
    def command(session, _):
        shown = "\n".join(agenda.lines())
        session.write(json.dumps({"text": shown}) + "\n", "agenda.json")
        name, module = moving(session)
        bar = {
            "layer": "bottom", "position": "left", "width": 440, "height": 540, "exclusive": False,
            "modules-left": ["clock#date", name, "custom/agenda"],
            "clock#date": {"interval": 60, "format": "{:%A, %e %B}", "tooltip": False},
            name: {**module, "interval": 1, "tooltip": False},
            "custom/agenda": {"exec": "cat " + session.path("agenda.json"), "return-type": "json",
                              "interval": 60, "tooltip": False},
        }
        session.write(json.dumps(bar), "waybar.json")
        session.write(WAYBAR_STYLE, "waybar.css")
        return ["waybar", "-c", session.path("waybar.json"), "-s", session.path("waybar.css")]

    return command


def conky_script(session):
    return "${exec %s}" % script(session, "countdown", COUNTDOWN)


def waybar_script(session):
    return "custom/moving", {"exec": script(session, "countdown", COUNTDOWN)}


# Name and how to start it, by display. The first is what the others are compared with.
CONTENDERS = {
    "x11": {
        "Orvane": orvane,
        "Conky, clock": conky(lambda _: "${time %H:%M:%S}"),
        "Conky, countdown script": conky(conky_script),
    },
    "sway": {
        "Orvane": orvane,
        "Waybar, clock": waybar(lambda _: ("clock#moving", {"format": "{:%H:%M:%S}"})),
        "Waybar, countdown script": waybar(waybar_script),
    },
}
