"""What a screen reader knows of a session, and can do in it."""

import json
import os
import subprocess

from desktop_session import eventually

AGENT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "accessible_agent.py")
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


class Accessible:
    """Controls are known by their name, and where that is not enough by role and description."""

    def __init__(self, session):
        session.start(LAUNCHER, "--launch-immediately")
        with open(AGENT, encoding="utf-8") as file:
            source = file.read()
        # The script lies where the session's user may not look.
        self._agent = session.start("/usr/bin/python3", "-B", "-c", source, stdin=subprocess.PIPE)
        self._asked = 0

    def _ask(self, **request):
        self._agent.process.stdin.write((json.dumps(request) + "\n").encode())
        self._agent.process.stdin.flush()
        self._asked += 1
        lines = eventually("the agent answers", self._answers, 30)
        return json.loads(lines[self._asked - 1])

    def _answers(self):
        if not self._agent.is_running():
            raise AssertionError("the agent has ended: %s" % self._agent.output)
        lines = [line for line in self._agent.lines if line.startswith("{")]
        complete = self._agent.output.endswith("\n")
        return lines if complete and len(lines) >= self._asked else None

    def _must(self, **request):
        answer = self._ask(**request)
        if "error" in answer:
            raise AssertionError("%s: %s" % (request, answer["error"]))
        return answer["answer"]

    def tree(self):
        return self._must(do="tree")

    def names(self, *roles):
        return [known["name"] for known in self.tree() if known["role"] in roles]

    def look(self, name, role=None, description=None):
        """None where there is no such control."""
        return self._ask(do="look", name=name, role=role, description=description).get("answer")

    def act(self, name, role=None, description=None):
        if not self._must(do="act", name=name, role=role, description=description):
            raise AssertionError("%s does nothing" % name)

    def set_value(self, name, value):
        self._must(do="set_value", name=name, value=value, role="slider")

    def set_text(self, name, text):
        self._must(do="set_text", name=name, text=text, role="text")

    def text(self, name):
        return self._must(do="text", name=name, role="text")

    def place(self, name, role=None):
        """Left, top, width and height within its window."""
        return tuple(self._must(do="place", name=name, role=role))

    def places(self, role):
        """The names of all controls of a role, with their places."""
        return [(name, tuple(place)) for name, *place in self._must(do="places", role=role)]

    def focused(self):
        """The control that has the focus; None where there is none."""
        return self._must(do="focused")
