#!/usr/bin/env python3
"""The real panel in its real host under Wine, against the real simulator over UDP.

Each test runs the host's tour and then looks at what the device holds. Uses the display of the
environment, else a virtual one of its own.
"""

import argparse
import os
import shutil
import struct
import subprocess
import sys
import time
import unittest
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
import korvane_files as files  # noqa: E402

DEADLINE_S = 240  # of anything that is waited for; far beyond what a slow machine needs
NO_CONNECTION = "连接设备失败,请检查网络连接"
NO_UNDERSTANDING = "与设备通信错误，请重试"

PICTURES = """
    host-start host-wrong-address 0104-main-panel question-fetch 1023-progress-fetch
    1003-input-channels 1036-0-1047-network-information 1036-1-1050-continuous-multiplex
    1036-2-1052-continuous-services 1036-3-1050-short-time-multiplex
    1036-4-1052-short-time-services 1036-5-1092-conditional-access
    1076-monitoring-1084-frame-structure 1076-monitoring-1080-service-list
    1076-monitoring-1089-graphic-monitor file-dialog-export
    message-exported file-dialog-import question-import-network message-imported question-restore
    question-save 1023-progress-save question-reboot 1028-about host-disconnected
""".split()
# Pages with tabs have a picture for each of them.
TABBED = ["1076-monitoring", "1018-system"]

options = argparse.Namespace()


def wait_for(what, condition):
    deadline = time.monotonic() + DEADLINE_S
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(f"waited for {what}")
        time.sleep(0.02)


class Device:
    """A simulated device at a loopback address that nobody else uses."""

    def __init__(self, folder, *faults):
        self.state = folder / "device.state"
        self.log = folder / "simulator.log"
        for last in range(40, 90):
            self.address = f"127.0.0.{last}"
            self.start(faults)
            wait_for("the simulator", lambda: self.listening() or self.process.poll() is not None)
            if self.listening():
                return
        raise AssertionError(f"no free address: {self.log.read_text()}")

    def start(self, faults):
        command = [options.simulator, "--address", self.address, "--state", str(self.state)]
        for fault in faults:
            command += ["--fault", fault]
        with open(self.log, "w") as log:
            self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log,
                                            stderr=subprocess.STDOUT)

    def listening(self):
        return "listening on" in self.log.read_text()

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
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run_tour(folder, address, *arguments):
    """The host's exit code and the transcript."""
    command = ["bash", str(ROOT / "scripts/with_wine.sh"), options.host, "--tour",
               windows_path(folder), *arguments, address]
    transcript = folder / "transcript.txt"
    with open(transcript, "w") as out, open(folder / "host.log", "w") as errors:
        code = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=out, stderr=errors,
                              timeout=DEADLINE_S, check=False).returncode
    return code, transcript.read_text(encoding="utf-8")


def picture_colours(path):
    """How many different bytes a PNG's pixels have; raises when it is none."""
    data = path.read_bytes()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise AssertionError(f"{path.name} is no PNG")
    at, packed = 8, b""
    while at < len(data):
        size, kind = struct.unpack_from(">I4s", data, at)
        if kind == b"IDAT":
            packed += data[at + 8:at + 8 + size]
        at += 12 + size
    return len(set(zlib.decompress(packed)))


def new_folder(name):
    folder = Path(options.out) / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def changed_file(source, target):
    """A configuration that differs from the sample in each part that travels by itself."""
    data = bytearray(source.read_bytes())
    channels = struct.unpack_from("<I", data, 32)[0]
    image = files.FILE_HEAD + channels * files.CHANNEL
    struct.pack_into("<H", data, files.FILE_HEAD + 8, 0x1234)         # port of the first channel
    struct.pack_into("<H", data, image + 8, 0xBEEF)                   # header value
    struct.pack_into("<H", data, image + 24, 0x0A0B)                  # network number
    name = "端到端测试网".encode("gbk")
    data[image + 33] = len(name)
    data[image + 34:image + 290] = name.ljust(256, b"\0")
    for block in (640, 314884):                                       # bandwidth of a service
        struct.pack_into("<I", data, image + block + 4 + 48 + 972, 0x00ABCDEF)
    for block in (629128, 629296):                                    # both service tables' values
        struct.pack_into("<H", data, image + block + 4, 0x0C0D)
    data[image + 629464 + 40:image + 629464 + 44] = b"e2e\0"          # 264-byte block
    data[image + 629728 + 8] ^= 1                                     # CA block
    struct.pack_into("<I", data, image + 629836, 0x00654321)          # system bit rate
    descriptions = len(data) - files.DESCRIPTIONS
    name = "改过的节目".encode("gbk")
    data[descriptions + 8:descriptions + 8 + len(name) + 1] = name + b"\0"
    target.write_bytes(data)


class EndToEnd(unittest.TestCase):
    """The device of the first tour works as it should; the others start from what that left."""

    @classmethod
    def setUpClass(cls):
        cls.first = new_folder("first")
        with Device(cls.first) as device:
            cls.before = device.stop()
        with Device(cls.first) as device:
            cls.code, cls.transcript = run_tour(cls.first, device.address)
            cls.was_set, cls.applied = device.stop()

    def setUp(self):
        self.folder = new_folder(self._testMethodName)

    def assert_tour(self, code, transcript, expected):
        log = self.folder / "host.log"
        self.assertEqual(code, expected, transcript + (log.read_text() if log.exists() else ""))

    def assert_holds(self, configuration, file):
        expected = files.read_configuration_file(file)
        self.assertEqual(files.differences(configuration, expected), [])

    def test_all_steps_go_well_and_are_pictured(self):
        self.assert_tour(self.code, self.transcript, 0)
        names = [path.stem for path in self.first.glob("*.png")]
        self.assertEqual([name for name in PICTURES if name not in names], [])
        for tabbed in TABBED:
            self.assertTrue(any(name.startswith(tabbed) for name in names), tabbed)
        for path in self.first.glob("*.png"):
            self.assertGreater(picture_colours(path), 8, f"{path.name} shows nothing")

    def test_fetch_and_save_leave_the_device_as_it_was(self):
        self.assertEqual(files.differences(self.was_set, self.before[0]), [])
        self.assert_holds(self.applied, self.first / "exported.dat")
        self.assertIn("ActivateConfig", (self.first / "simulator.log").read_text())

    def test_an_imported_change_reaches_the_device_through_a_bad_network(self):
        change = self.folder / "change.dat"
        changed_file(self.first / "exported.dat", change)
        faults = ["loss=1", "duplicate=1:12", "late@GetDeviceParams:1", "late@SetImageBlockC:1",
                  "lost-answer@SetImageBlockA:1", "cut=3@GetImageBlockB:1"]
        with Device(self.folder, *faults) as device:
            code, transcript = run_tour(self.folder, device.address, "--attempts", "100",
                                        "--import", windows_path(change))
            was_set, applied = device.stop()
        self.assert_tour(code, transcript, 0)
        self.assert_holds(was_set, change)
        self.assert_holds(applied, change)

    def test_a_refused_block_ends_the_save_with_its_message(self):
        with Device(self.folder, "refuse=5@SetImageBlock92") as device:
            code, transcript = run_tour(self.folder, device.address)
            applied = device.stop()[1]
        self.assert_tour(code, transcript, 1)
        self.assertRegex(transcript, f'FAIL \\d+ save to the device: .*"{NO_UNDERSTANDING}"')
        self.assertEqual(files.differences(applied, self.before[1]), [])
        self.assertNotIn("ActivateConfig", device.log.read_text())

    def test_a_silent_device_is_reported(self):
        with Device(self.folder, "silence") as device:
            code, transcript = run_tour(self.folder, device.address)
            device.stop()
        self.assert_tour(code, transcript, 1)
        # Which of the two depends on whether this machine lets Wine send echo requests.
        texts = f"({NO_CONNECTION}|{NO_UNDERSTANDING})"
        self.assertRegex(transcript, f'FAIL \\d+ fetch from the device: .*"{texts}"')


def start_display():
    read, write = os.pipe()
    process = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
        pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as number:
        os.environ["DISPLAY"] = ":" + number.readline().strip()
    return process


def warm_up_wine():
    """Starts Wine's services, so that no test waits for them."""
    subprocess.run(["bash", str(ROOT / "scripts/with_wine.sh"), "cmd", "/c", "exit"],
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, timeout=DEADLINE_S, check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name, text in (("host", "KorvaneHost.exe, with Korvane.dll beside it"),
                       ("simulator", "korvane-sim"), ("out", "folder for what the tests leave")):
        parser.add_argument("--" + name, required=True, type=os.path.abspath, help=text)
    parser.add_argument("tests", nargs="*", help="names of single tests")
    parser.parse_args(namespace=options)
    display = None if os.environ.get("DISPLAY") else start_display()
    try:
        warm_up_wine()
        names = ["EndToEnd." + name for name in options.tests]
        unittest.main(argv=[sys.argv[0], *names], verbosity=2)
    finally:
        if display:
            display.terminate()
            display.wait()


if __name__ == "__main__":
    main()
