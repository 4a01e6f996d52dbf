"""What the editing steps of the tour make of the sample configuration, byte by byte."""

import struct
from typing import NamedTuple

import korvane_files

FRAME = 7856
CONTINUOUS, SHORT_TIME = 640, 314884  # places in the image
NETWORK_NAME = 33  # first its length
POINT_COUNT, NEIGHBOUR_COUNT = 300, 432
CONTINUOUS_SERVICES, CONDITIONAL_ACCESS = 629128, 629728
OUTPUT = 629820
LAST_CHANNEL_ID = OUTPUT + 36
DESCRIPTION, DESCRIPTION_COUNT = 1046, 41840
MEDIA, ESG, DATA = 1, 3, 5


def _change(image: bytearray, count_at: tuple, first: int, size: int, drop, *added: bytes,
            at: int | None = None) -> None:
    """Of the records from `first` on, whose number is at `count_at`, one goes and others come."""
    where, form = count_at
    records = [image[first + i * size:first + (i + 1) * size]
               for i in range(struct.unpack_from(form, image, where)[0])]
    had = len(records)
    place = had if at is None else at
    records[place:place] = added
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


def _channel(address: str, port: int, kind: int, **fields: int) -> bytearray:
    channel = bytearray(korvane_files.CHANNEL)
    channel[4:8] = map(int, address.split("."))
    struct.pack_into("<H", channel, 8, port)
    channel[12] = kind
    for at, value in fields.items():
        channel[int(at[2:])] = value
    return channel


def _edited_channels(before: bytes) -> bytes:
    """Channels come behind the seven of video, the eight of audio and the two of ECM, and the last
    of data broadcast goes."""
    size = korvane_files.CHANNEL
    records = [bytearray(before[at:at + size]) for at in range(0, len(before), size)]
    # H.264, a frame rate, of 30 Hz; HE-AAC, 48 kHz; UDP.
    video = _channel("239.1.10.50", 5050, 0, at16=1, at20=1, at32=1, at49=96)
    audio = _channel("239.1.11.50", 5150, 1, at36=1, at38=1, at42=7, at49=97)
    ecm = _channel("239.1.14.50", 6150, 4, at0=2, at48=133)
    struct.pack_into("<I", ecm, 56, 1000)  # ms between sections
    for number, channel in enumerate((video, audio, ecm), len(records) + 1):
        struct.pack_into("<I", channel, 52, number)
    del records[-2]
    for place, channel in ((7, video), (16, audio), (23, ecm)):
        records.insert(place, channel)
    for position, record in enumerate(records):
        record[1] = position
    return b"".join(records)


class _Service(NamedTuple):
    number: int
    id: int
    kind: int
    name: str
    bandwidth: int
    components: tuple  # of the channels, by their positions
    scrambled: int = 0
    internal: int = 0

    def slot(self, channels: bytes) -> bytes:
        size = korvane_files.CHANNEL
        components = b"".join(channels[at * size:(at + 1) * size] for at in self.components)
        head = struct.pack("<BBHHHBBBx", self.number, self.scrambled, self.id, self.id,
                           len(self.components), 1, self.kind, self.internal)
        return head + components.ljust(8 * size, b"\0") + struct.pack("<I", self.bandwidth)

    def description(self) -> bytes:
        return struct.pack("<H3s3x256s", self.id, b"zho", self.name.encode("gbk")).ljust(
            DESCRIPTION, b"\0")


MOVIES = _Service(1, 501, MEDIA, "端到端电影", 480_000, (7, 16, 23), scrambled=1)
GUIDE = _Service(2, 502, ESG, "端到端指南", 128_000, (), internal=1)
NEWS = _Service(1, 503, DATA, "端到端数据", 200_000, (26,))


def _frame(parameters: bytes, slots: int, services: tuple, channels: bytes) -> bytes:
    """Its slots have no numbers yet."""
    head = parameters + bytes([slots, *bytes(40), len(services)])
    return (head + b"".join(service.slot(channels) for service in services)).ljust(FRAME, b"\0")


def _number_slots(image: bytearray, table: int, first_frame: int, slot: int) -> None:
    for frame in range(first_frame, image[table + 3]):
        at = table + 4 + frame * FRAME + 6
        count = image[at]
        image[at + 1:at + 1 + count] = range(slot, slot + count)
        slot += count


def _edit_frames(image: bytearray, channels: bytes) -> None:
    """One comes before the third of the continuous table, one before the second short-time one."""
    _change(image, (CONTINUOUS + 3, "<B"), CONTINUOUS + 4, FRAME, None,
            _frame(bytes([9, 1, 1, 1, 1, 2]), 4, (MOVIES, GUIDE), channels), at=2)
    _number_slots(image, CONTINUOUS, 0, 0)
    _change(image, (SHORT_TIME + 3, "<B"), SHORT_TIME + 4, FRAME, None,
            _frame(bytes([10, 1, 1, 0, 1, 0]), 2, (NEWS,), channels), at=1)
    _number_slots(image, SHORT_TIME, 1, 33)
    own_channel = image[CONTINUOUS + 1]
    _change(image, (CONTINUOUS_SERVICES + 6, "<H"), CONTINUOUS_SERVICES + 8, 4, None,
            *(struct.pack("<HBB", service.id, own_channel, 0) for service in (MOVIES, GUIDE)), at=2)


def _edited_descriptions(before: bytes) -> bytes:
    """Those of the continuous frames come first; the control tables' own frame has none."""
    descriptions = bytearray(before)
    for at, services in ((2, (MOVIES, GUIDE)), (15, (NEWS,))):
        _change(descriptions, (DESCRIPTION_COUNT, "<I"), 0, DESCRIPTION, None,
                *(service.description() for service in services), at=at)
    return bytes(descriptions)


def _edit_output(image: bytearray) -> None:
    alarms = image[OUTPUT + 15]
    struct.pack_into("<HHBB", image, OUTPUT, 300, 12, 0, 2)
    struct.pack_into("<BBBBBBBBBI", image, OUTPUT + 7, 1, 7, 0, 1, 10, 20, 30, 41, alarms & ~32,
                     12_000_000)


def _edited_params() -> bytes:
    texts = ("10.20.30.40", "255.255.0.0", "10.20.0.1", "10.20.0.2", "00112233445A", "10.30.30.40",
             "255.255.255.0", "10.30.30.1", "02112233445B")
    return b"".join(text.encode().ljust(16, b"\0") for text in texts)


def edited(before: korvane_files.Configuration) -> korvane_files.Configuration:
    image = bytearray(before.image)
    channels = _edited_channels(before.channels)
    for edit in (_edit_network, _edit_service_frequencies, _edit_conditional_access, _edit_output):
        edit(image)
    _edit_frames(image, channels)
    image[LAST_CHANNEL_ID] += 3
    return before._replace(channels=channels, image=bytes(image),
                           descriptions=_edited_descriptions(before.descriptions),
                           params=_edited_params())
