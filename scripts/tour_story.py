"""What the editing steps of the tour make of a configuration, byte by byte."""

import struct

import korvane_files

CA_BLOCK = 629728  # in the image
CA_COUNT, CA_SECTIONS, CA_ENTRIES = CA_BLOCK + 6, CA_BLOCK + 8, CA_BLOCK + 12


def _edit_conditional_access(image: bytearray) -> None:
    """One system is added, the second one changed, and then the first one deleted."""
    entries = [(32514, 201, 159, 131, 3, 0), (32600, 106, 140, 141, 2, 0)]
    struct.pack_into("<HB", image, CA_COUNT, len(entries), 2)
    packed = b"".join(struct.pack("<HHBBBB", *entry) for entry in entries)
    image[CA_ENTRIES:CA_ENTRIES + 80] = packed.ljust(80, b"\0")


def edited(before: korvane_files.Configuration) -> korvane_files.Configuration:
    image = bytearray(before.image)
    _edit_conditional_access(image)
    return before._replace(image=bytes(image))
