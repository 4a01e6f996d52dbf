#!/usr/bin/env python3
"""The command line against the real simulator over UDP: what it tells, what the device then holds."""

import json
import os
import signal
import subprocess
import sys
import time
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))
from e2e_test import DEADLINE_S, ROOT, Device, files  # noqa: E402

PROGRAM = os.environ.get("KORVANE_PROGRAM", str(ROOT / "build/native/korvane")).split()


class CommandLine(unittest.TestCase):
    def device(self, *faults):
        device = Device("cli-" + self._testMethodName, faults, ())
        self.addCleanup(device.__exit__)
        self.folder, self.address = device.folder, device.address
        return device

    def command(self, *arguments, **more):
        return subprocess.Popen([*PROGRAM, *arguments], cwd=self.folder, encoding="utf-8",
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, **more)

    def korvane(self, code, *arguments, typed=""):
        """What it answers, and what it says beside that; it must end with this code."""
        with self.command(*arguments) as process:
            answer, notes = process.communicate(typed, DEADLINE_S)
        self.assertEqual(process.returncode, code, f"{arguments}: {answer}{notes}")
        return answer, notes

    def changed(self, source, target):
        """A text that asks for another bandwidth of service 101."""
        tree = json.loads((self.folder / source).read_text(encoding="utf-8"))
        tree["continuousMultiplexTable"]["frames"][1]["services"][0]["bandwidthLimit"] = 490000
        (self.folder / target).write_text(json.dumps(tree, ensure_ascii=False), encoding="utf-8")

    def kept(self):
        return list(self.folder.glob(self.address + "-*.dat"))

    def test_a_station_is_read_changed_and_watched(self):
        # No second answers in the midst of a transfer: one that comes late is no answer at all.
        device = self.device("loss=100@GetInputChannels:1", "late@GetDeviceParams:1",
                             "lost-answer@SetImageBlockA:1")
        place = "device:" + self.address
        self.korvane(0, "fetch", self.address, "a.json")
        self.korvane(0, "convert", "a.json", "a.dat")
        self.assertIn("新闻综合频道", self.korvane(0, "show", "a.dat")[0])
        text = self.korvane(0, "fetch", self.address, "-")[0]
        self.assertEqual(self.korvane(0, "check", "-", typed=text)[0], "")
        self.changed("a.json", "b.json")
        line = "frame 1, service 101: bandwidth 500000 → 490000 bit/s\n"
        self.assertEqual(self.korvane(1, "diff", place, "b.json")[0], line)
        patch = json.loads(self.korvane(1, "diff", "--json", "a.json", "b.json")[0])
        self.assertEqual([step["value"] for step in patch], [490000])
        self.korvane(1, "send", "b.json", self.address, typed="n\n")
        notes = self.korvane(0, "send", "b.json", self.address, typed="y\n")[1]
        self.assertIn("waiting 10 s", notes)
        self.korvane(0, "diff", self.kept()[0].name, "a.dat")
        self.korvane(0, "diff", "b.json", place)
        self.korvane(0, "status", self.address, "--csv", "s.csv")
        self.watch()
        self.korvane(0, "params", "set", self.address, "managementHost=10.9.8.7", "--yes")
        self.assertIn("managementHost=10.9.8.7\n", self.korvane(0, "params", "get", self.address)[0])
        self.korvane(0, "convert", "b.json", "b.dat")
        was_set, applied = device.stop()
        sent = files.read_configuration_file(self.folder / "b.dat")
        for held in (was_set, applied):
            self.assertIn(b"10.9.8.7\0", held.params)
            self.assertEqual(files.differences(held, sent._replace(params=held.params)), [])

    def watch(self):
        """Until three rows are there, and Ctrl-C."""
        table, deadline = self.folder / "s.csv", time.monotonic() + DEADLINE_S
        with self.command("status", self.address, "--watch", "1", "--csv", "s.csv") as process:
            while table.read_bytes().count(b"\n") < 4 and time.monotonic() < deadline:
                time.sleep(0.02)
            process.send_signal(signal.SIGINT)
            process.communicate(timeout=DEADLINE_S)
        self.assertEqual(process.returncode, 0)
        rows = table.read_text().splitlines()
        self.assertEqual({row.count(",") for row in rows}, {rows[0].count(",")})

    def test_the_buttons(self):
        self.device()
        (self.folder / "vxWorks").write_bytes(bytes(30000))
        for arguments in (("upgrade", "vxWorks", self.address), ("restore", self.address),
                          ("reboot", self.address)):
            self.korvane(1, *arguments, typed="\n")
            self.korvane(0, *arguments, "--yes")
        self.assertIn("no answer", self.korvane(4, "status", self.address)[1])

    def test_a_silent_device(self):
        self.device("silence")
        for arguments in (("fetch", self.address, "a.dat"), ("status", self.address),
                          ("check", "device:" + self.address), ("reboot", self.address, "-y")):
            self.korvane(4, *arguments)
        self.assertFalse((self.folder / "a.dat").exists())

    def test_a_refusal_midway_is_told_and_put_right(self):
        device = self.device("refuse=7@SetImageBlockC:1")
        self.korvane(0, "fetch", self.address, "a.json")
        self.changed("a.json", "b.json")
        notes = self.korvane(5, "send", "b.json", self.address, "--yes", "--restore-on-failure")[1]
        self.assertIn("refused SetImageBlockC with status 7", notes)
        self.assertIn("up to SetImageBlockC, and was not told to make it take effect", notes)
        self.assertIn("has again what it had", notes)
        was_set, applied = device.stop()
        self.assertEqual(files.differences(was_set, files.read_configuration_file(self.kept()[0])),
                         [])
        self.assertEqual(files.differences(was_set, applied), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
