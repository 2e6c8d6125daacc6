#!/usr/bin/python3
"""Tests tools/demo as a program: it fails when a step does not happen, opens the panel on a user's display, and
terminates everything it has started, however it exits.

usage: tests/integration/test_demo.py BUILD-DIRECTORY [Class.test]
"""

import json
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

DEMO = Path(__file__).resolve().parents[2] / "tools/demo"
BUILD = None
PATIENCE_SECONDS = 60


def wait_until(condition):
    """Polls until the condition is true or the time is up; returns its last result."""
    deadline = time.monotonic() + PATIENCE_SECONDS
    while not (result := condition()) and time.monotonic() < deadline:
        time.sleep(0.02)
    return result


def state_of(pid):
    """The fields of /proc/PID/stat after the name; None if there is no such process, or only a zombie."""
    try:
        fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    except (FileNotFoundError, ProcessLookupError):
        return None
    return None if fields[0] == "Z" else fields


def children_of(parent):
    """The ids of the running child processes, by program name."""
    found = {}
    for entry in Path("/proc").glob("[0-9]*"):
        fields = state_of(entry.name)
        if fields and int(fields[1]) == parent:
            name = (entry / "cmdline").read_bytes().split(b"\0")[0].decode()
            found[Path(name).name] = int(entry.name)
    return found


class DemoTest(unittest.TestCase):
    """Runs the demo in a folder of its own."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def start(self, *arguments, display=None):
        environment = {name: value for name, value in os.environ.items() if name != "DISPLAY"}
        environment["XDG_CONFIG_HOME"] = self.folder.name
        if display:
            environment["DISPLAY"] = display
        demo = subprocess.Popen([DEMO, "--build", BUILD, "--out", self.folder.name, *arguments], env=environment,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, encoding="utf-8")
        self.addCleanup(lambda: (demo.kill(), demo.communicate()))
        return demo

    def read_until(self, demo, beginning):
        for line in demo.stdout:
            if line.startswith(beginning):
                return line[len(beginning):].strip()
        self.fail(f"no line begins with '{beginning}': {demo.stderr.read()}")

    def assert_all_ended(self, processes):
        self.assertTrue(wait_until(lambda: not any(state_of(pid) for pid in processes.values())), processes)


class Demo(DemoTest):
    """Without a user's display: the demo starts an X server."""

    def start_and_find_programs(self, *arguments):
        demo = self.start(*arguments)
        self.read_until(demo, "The panel is opened")
        programs = children_of(demo.pid)
        self.assertEqual(set(programs), {"Xvfb", "zentri-service", "zentri-host"})
        return demo, programs

    def test_ControlCEndsEverythingItStarted(self):
        demo, programs = self.start_and_find_programs()
        demo.send_signal(signal.SIGINT)
        self.assertEqual(demo.wait(PATIENCE_SECONDS), 130)
        self.assert_all_ended(programs)

    def test_LeavesNothingBehindWhenKilled(self):
        demo, programs = self.start_and_find_programs()
        demo.kill()
        demo.wait()
        self.assert_all_ended(programs)

    def test_FailsWhenAStepDoesNotHappen(self):
        demo, programs = self.start_and_find_programs("--patience", "2")
        os.kill(programs["zentri-service"], signal.SIGKILL)
        output, errors = demo.communicate(timeout=PATIENCE_SECONDS)
        self.assertEqual(demo.returncode, 1, output + errors)
        self.assertRegex(errors, "demo: .*did not happen within 2 s")
        self.assertNotIn("Every step happened", output)
        self.assert_all_ended(programs)

    def test_FailsWhenTheHostDies(self):
        demo, programs = self.start_and_find_programs()
        os.kill(programs["zentri-host"], signal.SIGKILL)
        output, errors = demo.communicate(timeout=PATIENCE_SECONDS)
        self.assertEqual(demo.returncode, 1, output + errors)
        self.assertIn("demo: the host closed the connection", errors)
        self.assert_all_ended(programs)

    def test_ReportsAMissingProgramInOneLine(self):
        demo = self.start("--build", "/nowhere")
        _, errors = demo.communicate(timeout=PATIENCE_SECONDS)
        self.assertEqual(demo.returncode, 1)
        self.assertRegex(errors, r"\Ademo: /nowhere/bin/zentri-service is missing[^\n]*\n\Z")


class Interactive(DemoTest):
    """On the user's display."""

    def setUp(self):
        super().setUp()
        server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1440x900x24", "-nolisten", "tcp",
                                   "-noreset"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(lambda: (server.terminate(), server.communicate()))
        self.display = ":" + server.stdout.readline().strip()
        self.demo = self.start("--interactive", "--", "--control", "0", display=self.display)
        self.read_until(self.demo, "The service listens on ")
        port = int(self.read_until(self.demo, "control: 127.0.0.1:"))
        self.programs = children_of(self.demo.pid)
        self.assertEqual(set(self.programs), {"zentri-service", "zentri-host"})
        connection = socket.create_connection(("127.0.0.1", port), PATIENCE_SECONDS)
        self.addCleanup(connection.close)
        self.host = connection.makefile("rw", encoding="utf-8", newline="\n")
        self.addCleanup(self.host.close)

    def ask(self, command):
        self.host.write(json.dumps({"cmd": command}) + "\n")
        self.host.flush()
        return json.loads(self.host.readline())

    def panel_is_open(self):
        return any(window["kind"] == "palette" and window["visible"] for window in self.ask("windows")["windows"])

    def test_OpensThePanelAndStaysOpenUntilControlC(self):
        self.assertTrue(wait_until(self.panel_is_open))
        self.assertTrue(wait_until(lambda: "Zentri:用户数据初始化完成" in self.ask("commandLine")["text"]))
        self.assertIsNone(self.demo.poll())
        self.demo.send_signal(signal.SIGINT)
        self.assertEqual(self.demo.wait(PATIENCE_SECONDS), 130)
        self.assert_all_ended(self.programs)

    def test_ClosingTheHostEndsTheServiceToo(self):
        self.ask("quit")
        self.assertEqual(self.demo.wait(PATIENCE_SECONDS), 0)
        self.assert_all_ended(self.programs)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
