"""What configuration files and the simulator's state files hold, for scripts that compare them.

A configuration file is in host (little-endian) order, a state file as the bytes travel on the wire.
"""

import struct
from pathlib import Path
from typing import Iterator, NamedTuple

FILE_HEAD = 36
CHANNEL = 120
IMAGE = 629896
DEVICE_PARAMS = 144
DESCRIPTIONS = 41944
BLOCK_2002 = 974
CHANNEL_LIST = 1 + 60 * CHANNEL
CONFIGURATION = IMAGE + DESCRIPTIONS + BLOCK_2002 + CHANNEL_LIST
STATE_SET = 16 + 2 * DEVICE_PARAMS
STATE_SIZE = STATE_SET + 2 * CONFIGURATION

CHANNEL_FIELDS = ((8, 2), (22, 2), (28, 2), (30, 2), (32, 2), (40, 2), (42, 2), (44, 4), (52, 4),
                  (56, 4))


class Configuration(NamedTuple):
    """Everything in host order."""
    channels: bytes       # the records in use, back to back
    image: bytes
    descriptions: bytes
    params: bytes         # the device's own settings


def _channel_fields(at: int) -> Iterator[tuple]:
    for offset, size in CHANNEL_FIELDS:
        yield at + offset, size


def _network_fields() -> Iterator[tuple]:
    yield 24, 2
    yield 296, 4
    for slot in range(16):
        yield 304 + 8 * slot + 4, 4
        yield 436 + 12 * slot + 4, 4
        yield 436 + 12 * slot + 8, 4


def _multiplex_fields(block: int) -> Iterator[tuple]:
    for frame in range(40):
        for service in range(8):
            at = block + 4 + frame * 7856 + 48 + service * 976
            yield from ((at + 2, 2), (at + 4, 2), (at + 6, 2), (at + 972, 4))
            for component in range(8):
                yield from _channel_fields(at + 12 + component * CHANNEL)


def _service_table_fields(block: int) -> Iterator[tuple]:
    yield from ((block + 4, 2), (block + 6, 2))
    for entry in range(40):
        yield block + 8 + 4 * entry, 2


def _image_fields() -> Iterator[tuple]:
    yield 8, 2
    yield from _network_fields()
    yield from _multiplex_fields(640)
    yield from _multiplex_fields(314884)
    yield from _service_table_fields(629128)
    yield from _service_table_fields(629296)
    yield 629464 + 2, 2
    yield 629728 + 6, 2
    for entry in range(10):
        yield 629728 + 12 + 8 * entry, 2
        yield 629728 + 14 + 8 * entry, 2
    yield from ((629820, 2), (629822, 2), (629836, 4))


def _description_fields() -> Iterator[tuple]:
    for slot in range(40):
        yield 1046 * slot, 2
    yield 41840, 4


def _turned(data: bytes, fields: Iterator[tuple]) -> bytes:
    out = bytearray(data)
    for offset, size in fields:
        out[offset:offset + size] = out[offset:offset + size][::-1]
    return bytes(out)


def _turned_channels(records: bytes) -> bytes:
    return _turned(records, (field for at in range(0, len(records), CHANNEL)
                             for field in _channel_fields(at)))


def read_configuration_file(path) -> Configuration:
    data = Path(path).read_bytes()
    version, count = struct.unpack_from("<I28xI", data)
    end = FILE_HEAD + count * CHANNEL
    if version != 4108 or len(data) != end + IMAGE + DEVICE_PARAMS + DESCRIPTIONS:
        raise ValueError(f"{path}: not a whole configuration file")
    params = end + IMAGE
    return Configuration(data[FILE_HEAD:end], data[end:params], data[-DESCRIPTIONS:],
                         data[params:params + DEVICE_PARAMS])


def _configuration_at(data: bytes, at: int, params: int) -> Configuration:
    channel_list = at + IMAGE + DESCRIPTIONS + BLOCK_2002
    records = data[channel_list + 1:channel_list + 1 + data[channel_list] * CHANNEL]
    descriptions = data[at + IMAGE:at + IMAGE + DESCRIPTIONS]
    return Configuration(_turned_channels(records), _turned(data[at:at + IMAGE], _image_fields()),
                         _turned(descriptions, _description_fields()),
                         data[params:params + DEVICE_PARAMS])


def read_state_file(path) -> tuple:
    """The configuration as set and as applied."""
    data = Path(path).read_bytes()
    if data[:8] != b"KVSIM001" or len(data) != STATE_SIZE:
        raise ValueError(f"{path}: not a whole state file")
    return (_configuration_at(data, STATE_SET, 16),
            _configuration_at(data, STATE_SET + CONFIGURATION, 16 + DEVICE_PARAMS))


def differences(first: Configuration, second: Configuration) -> list:
    """One line for each part in which the two differ."""
    lines = []
    for name, one, other in zip(Configuration._fields, first, second):
        if one == other:
            continue
        where = next((i for i, (a, b) in enumerate(zip(one, other)) if a != b),
                     min(len(one), len(other)))
        lines.append(f"{name}: first difference at byte {where} ({len(one)} and {len(other)} bytes)")
    return lines
