#!/usr/bin/env python3
"""Says whether a simulated device holds exactly the configuration of a file.

compare_device.py [--edited] STATE CONFIGURATION

STATE is what korvane-sim wrote, CONFIGURATION a .dat file that the panel exported. Exit code 0:
what the device was given and what it works with both equal the file, or with --edited what the
tour's story makes of it; 1: they do not.
"""

import sys

sys.dont_write_bytecode = True  # leaves the source tree as it was
import korvane_files
import tour_story


def main() -> int:
    arguments = sys.argv[1:]
    edited = arguments[:1] == ["--edited"]
    if len(arguments) != 2 + edited:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    was_set, applied = korvane_files.read_state_file(arguments[-2])
    expected = korvane_files.read_configuration_file(arguments[-1])
    if edited:
        expected = tour_story.edited(expected)
    problems = [f"set: {line}" for line in korvane_files.differences(was_set, expected)]
    problems += [f"applied: {line}" for line in korvane_files.differences(applied, expected)]
    for problem in problems:
        print(f"device: {problem}")
    if not problems:
        size = sum(map(len, expected))
        print(f"device: holds what the panel sent, byte for byte ({size} bytes)")
    return 1 if problems else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, ValueError) as error:
        sys.exit(f"compare_device: {error}")
