#!/usr/bin/env python3
"""The real panel in its real host under Wine, against the real simulator over UDP.

Each test runs the host's tour and then looks at what the device holds. run.sh sets the scene.
"""

import os
import shutil
import signal
import struct
import subprocess
import sys
import time
import unittest
import zlib
from pathlib import Path
from types import SimpleNamespace

ROOT = Path(__file__).resolve().parents[2]
HOST = ROOT / "build/windows-x86/KorvaneHost.exe"
SIMULATOR = ROOT / "build/native/korvane-sim"
OUT = ROOT / "build/e2e"
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
import korvane_files as files  # noqa: E402
import tour_story  # noqa: E402

DEADLINE_S = 240  # of anything that is waited for; far beyond what a slow machine needs
NO_CONNECTION = "连接设备失败,请检查网络连接"
NO_UNDERSTANDING = "与设备通信错误，请重试"

PICTURES = """
    host-start host-wrong-address 0104-main-panel question-fetch 1023-progress-fetch
    1003-input-channels 1036-0-1047-network-information 1036-1-1050-continuous-multiplex
    1036-2-1052-continuous-services 1036-3-1050-short-time-multiplex
    1036-4-1052-short-time-services 1036-5-1092-conditional-access
    1076-monitoring-1084-frame-structure 1076-monitoring-1080-service-list
    1076-monitoring-1089-graphic-monitor 1076-monitoring-alarms 1076-monitoring-lost-link
    file-dialog-export
    1003-input-channels-edited 1041-video-channel refusal-channel-address
    1036-0-1047-network-information-edited 1056-frequency-point refusal-frequency-point
    1059-neighbour-network 1036-2-1052-continuous-services-edited 1002-service-frequency
    1095-ca-system refusal-unit-type question-delete 1036-5-1092-conditional-access-edited
    message-exported file-dialog-import question-import-network message-imported question-restore
    question-save 1023-progress-save question-reboot 1028-about host-disconnected
    1018-system-network refusal-mac question-settings question-restart message-restarting
    1018-system-output refusal-system-rate 1018-system-firmware refusal-firmware question-upgrade
    1023-progress-upgrade message-upgraded
    1029-edited 1029-edits-of-last-time 1029-edits-recovered
""".split()


class Device:
    """A simulated device at a loopback address that nobody else uses."""

    def __init__(self, name, faults=(), options=("--reboot-time", "2000")):
        self.folder = OUT / name
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        self.state, self.log = self.folder / "device.state", self.folder / "simulator.log"
        self.console = self.folder / "console.txt"
        self.console.touch()
        self.lines = subprocess.Popen(["tail", "-n", "+1", "-s", "0.1", "-f", self.console],
                                      stdout=subprocess.PIPE)
        arguments = [*options, "--state", self.state, *(f"--fault={fault}" for fault in faults)]
        for last in range(40, 90):
            self.address = f"127.0.0.{last}"
            with open(self.log, "w") as log:
                self.process = subprocess.Popen(
                    [SIMULATOR, "--address", self.address, *arguments], stdin=self.lines.stdout,
                    stdout=log, stderr=subprocess.STDOUT)
            if self.starts():
                return
        raise AssertionError(f"no free address: {self.log.read_text()}")

    def starts(self):
        deadline = time.monotonic() + DEADLINE_S
        while time.monotonic() < deadline and self.process.poll() is None:
            if "listening on" in self.log.read_text():
                return True
            time.sleep(0.02)
        return False

    def stop(self):
        """Ends it, which saves its state; returns that: what was set, what is applied."""
        self.process.terminate()
        code = self.process.wait(DEADLINE_S)
        if code != 0:
            raise AssertionError(f"the simulator ended with {code}: {self.log.read_text()}")
        return files.read_state_file(self.state)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in (self.process, self.lines):
            process.kill()
            process.wait()
        self.lines.stdout.close()


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run_tour(name, *arguments, faults=()):
    """The host's exit code and transcript, and what the device then holds."""
    with Device(name, faults) as device:
        folder, transcript = device.folder, device.folder / "transcript.txt"
        command = ["bash", ROOT / "scripts/with_wine.sh", HOST, "--tour", windows_path(folder),
                   *arguments, device.address]
        if not faults:
            command[-1:] = ["--console", windows_path(device.console), device.address]
        with open(transcript, "w") as out, open(folder / "host.log", "w") as errors:
            code = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=out, stderr=errors,
                                  timeout=DEADLINE_S, check=False).returncode
        was_set, applied = device.stop()
    return SimpleNamespace(folder=folder, code=code, was_set=was_set, applied=applied,
                           transcript=transcript.read_text(encoding="utf-8"),
                           device_log=device.log.read_text())


def picture_colours(path):
    """How many different bytes a PNG's pixels have; raises when it is none."""
    data = path.read_bytes()
    at, packed = 8, b""
    while at < len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        if kind == b"IDAT":
            packed += data[at + 8:at + 8 + size]
        at += 12 + size
    return len(set(zlib.decompress(packed)))


def changed_file(source, target):
    """A configuration that differs from the sample in each part that travels by itself."""
    data = bytearray(source.read_bytes())
    channels = files.FILE_HEAD
    image = channels + data[32] * files.CHANNEL
    descriptions = len(data) - files.DESCRIPTIONS
    network, service = "端到端测试网".encode("gbk"), "改过的节目".encode("gbk")
    for at, changed in (
            (channels + 8, b"\x34\x12"),                       # port of the first channel
            (image + 8, b"\xEF\xBE"),                          # header value
            (image + 24, b"\x0B\x0A"),                         # network number
            (image + 33, bytes([len(network)]) + network.ljust(256, b"\0")),
            (image + 640 + 4 + 48 + 972, b"\xEF\xCD\xAB\0"),    # bandwidths of services
            (image + 314884 + 4 + 48 + 972, b"\xEF\xCD\xAB\0"),
            (image + 629128 + 4, b"\x0D\x0C"),                 # both service tables' values
            (image + 629296 + 4, b"\x0D\x0C"),
            (image + 629464 + 40, b"e2e\0"),                   # 264-byte block
            (image + 629728 + 8, bytes([data[image + 629728 + 8] ^ 1])),  # CA block
            (image + 629836, b"\x21\x43\x65\0"),              # system bit rate
            (descriptions + 8, service + b"\0")):
        data[at:at + len(changed)] = changed
    target.write_bytes(data)


class EndToEnd(unittest.TestCase):
    """The device of the first tour works as it should; the others start from what that left."""

    @classmethod
    def setUpClass(cls):
        with Device("untouched") as device:
            cls.before = device.stop()
        cls.first = run_tour("first")

    def tour(self, expected, *arguments, faults=()):
        tour = run_tour(self._testMethodName, *arguments, faults=faults)
        self.assert_ended(tour, expected)
        return tour

    def assert_ended(self, tour, expected):
        errors = (tour.folder / "host.log").read_text()
        self.assertEqual(tour.code, expected, tour.transcript + errors)

    def assert_holds(self, configuration, file):
        """All but the device's own settings, which a save does not send."""
        expected = files.read_configuration_file(file)._replace(params=configuration.params)
        self.assertEqual(files.differences(configuration, expected), [])

    def test_all_steps_go_well_and_are_pictured(self):
        self.assert_ended(self.first, 0)
        pictures = {path.stem: path for path in self.first.folder.glob("*.png")}
        self.assertEqual([name for name in PICTURES if name not in pictures], [])
        self.assertTrue(any(name.startswith("1018-system") for name in pictures))
        for name, path in pictures.items():
            self.assertGreater(picture_colours(path), 8, f"{name} shows nothing")

    def test_the_device_holds_what_was_edited_and_else_what_it_held(self):
        self.assert_holds(self.before[0], self.first.folder / "exported.dat")
        for held in (self.first.was_set, self.first.applied):
            self.assertEqual(files.differences(held, tour_story.edited(self.before[0])), [])
        for line in ("ActivateConfig", "softH264EP.out received whole, checksum right",
                     "silent for 2000 ms, then control port 10.20.30.40"):
            self.assertIn(line, self.first.device_log)

    def test_an_imported_change_reaches_the_device_through_a_bad_network(self):
        change = OUT / "change.dat"
        changed_file(self.first.folder / "exported.dat", change)
        tour = self.tour(0, "--attempts", "100", "--import", windows_path(change), faults=[
            "loss=1", "duplicate=1:12", "late@GetDeviceParams:1", "late@SetImageBlockC:1",
            "lost-answer@SetImageBlockA:1", "cut=3@GetImageBlockB:1"])
        self.assert_holds(tour.was_set, change)
        self.assert_holds(tour.applied, change)

    def test_edits_survive_a_host_that_is_killed(self):
        with Device("killed") as device:
            unsaved = HOST.parent / f"{device.address}.unsaved.dat"
            unsaved.unlink(missing_ok=True)
            command = ["bash", ROOT / "scripts/with_wine.sh", HOST, "--tour",
                       windows_path(device.folder), "--console", windows_path(device.console),
                       device.address]
            host = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                    stderr=subprocess.DEVNULL, start_new_session=True)
            try:
                deadline = time.monotonic() + DEADLINE_S
                while not unsaved.exists() and host.poll() is None:
                    self.assertLess(time.monotonic(), deadline)
                    time.sleep(0.02)
            finally:
                os.killpg(host.pid, signal.SIGKILL)
                host.wait()
            left = unsaved.read_bytes()
            command[3:-1] = ["--tour", windows_path(device.folder), "--recover"]
            again = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True,
                                   timeout=DEADLINE_S, check=False)
            self.assertEqual(again.returncode, 0, again.stdout)
            self.assertEqual((device.folder / "exported.dat").read_bytes(), left)
            was_set, _ = device.stop()
            unsaved.unlink()
        recovered = files.read_configuration_file(device.folder / "exported.dat")
        self.assertNotEqual(files.differences(recovered, was_set), [])

    def test_a_silent_device_is_reported(self):
        tour = self.tour(1, faults=["silence"])
        # Which of the two depends on whether this machine lets Wine send echo requests.
        texts = f"({NO_CONNECTION}|{NO_UNDERSTANDING})"
        self.assertRegex(tour.transcript, f'FAIL \\d+ fetch from the device: .*"{texts}"')


if __name__ == "__main__":
    unittest.main(verbosity=2)
