"""What the editing steps of the tour make of the sample configuration, byte by byte."""

import struct

import korvane_files

NETWORK_NAME = 33  # places in the image: first the name's length
POINT_COUNT, NEIGHBOUR_COUNT = 300, 432
CONTINUOUS_SERVICES, CONDITIONAL_ACCESS = 629128, 629728
LAST_CHANNEL_ID = 629856


def _change(image: bytearray, count_at: tuple, first: int, size: int, drop, *added: bytes) -> None:
    """Of the records from `first` on, whose number is at `count_at`, one goes and others come."""
    where, form = count_at
    records = [image[first + i * size:first + (i + 1) * size]
               for i in range(struct.unpack_from(form, image, where)[0])]
    had = len(records)
    records += added
    if drop is not None:
        del records[drop]
    struct.pack_into(form, image, where, len(records))
    room = max(had, len(records)) * size
    image[first:first + room] = b"".join(records).ljust(room, b"\0")


def _edit_network(image: bytearray) -> None:
    name = "端到端测试网".encode("gbk")
    image[NETWORK_NAME:NETWORK_NAME + 257] = bytes([len(name)]) + name.ljust(256, b"\0")
    _change(image, (POINT_COUNT, "<B"), POINT_COUNT + 4, 8, 1,
            struct.pack("<BBHI", 30, 1, 0, 666 * 100_000))
    _change(image, (NEIGHBOUR_COUNT, "<B"), NEIGHBOUR_COUNT + 4, 12, None,
            struct.pack("<BBBBII", 2, 44, 0, 0, 12, 762 * 100_000))


def _edit_service_frequencies(image: bytearray) -> None:
    _change(image, (CONTINUOUS_SERVICES + 6, "<H"), CONTINUOUS_SERVICES + 8, 4, 12,
            struct.pack("<HBB", 103, 24, 0))


def _edit_conditional_access(image: bytearray) -> None:
    entries = CONDITIONAL_ACCESS + 12
    image[CONDITIONAL_ACCESS + 8] = 2  # sections
    image[entries + 8 + 4], image[entries + 8 + 6] = 159, 3
    _change(image, (CONDITIONAL_ACCESS + 6, "<H"), entries, 8, 0,
            struct.pack("<HHBBBB", 32600, 106, 140, 141, 2, 0))


def _edited_channels(before: bytes) -> bytes:
    """A video channel comes behind the seven there are, the last of data broadcast goes."""
    size = korvane_files.CHANNEL
    records = [bytearray(before[at:at + size]) for at in range(0, len(before), size)]
    channel = bytearray(size)
    channel[4:8] = 239, 1, 10, 50
    channel[16] = channel[20] = channel[32] = 1  # H.264; a frame rate, of 30 Hz
    channel[49] = 96
    struct.pack_into("<H", channel, 8, 5050)
    struct.pack_into("<I", channel, 52, len(records) + 1)
    records.insert(7, channel)
    del records[-2]
    for position, record in enumerate(records):
        record[1] = position
    return b"".join(records)


def edited(before: korvane_files.Configuration) -> korvane_files.Configuration:
    image = bytearray(before.image)
    for edit in (_edit_network, _edit_service_frequencies, _edit_conditional_access):
        edit(image)
    image[LAST_CHANNEL_ID] += 1
    return before._replace(channels=_edited_channels(before.channels), image=bytes(image))
