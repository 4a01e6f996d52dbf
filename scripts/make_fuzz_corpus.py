#!/usr/bin/env python3
"""Makes the fuzz targets' starting corpus: make_fuzz_corpus.py DIRECTORY

Small, well-formed inputs from which the fuzzers mutate. Written from the formats themselves, so
that it needs no build.
"""
import pathlib
import struct
import sys

IMAGE, OLD_IMAGE, PARAMS, DESCRIPTIONS = 629896, 163976, 144, 41944
CHANNEL, FRAME, SERVICE = 120, 7856, 976


def channel(kind, port):
    record = bytearray(CHANNEL)
    record[4:8] = bytes([225, 1, 1, kind])
    struct.pack_into("<H", record, 8, port)
    record[12] = kind
    return bytes(record)


def image(order):
    """A configuration with two frames, services and components, in '<' or '>' byte order."""
    data = bytearray(IMAGE)
    struct.pack_into(order + "H", data, 24, 7)
    data[33:38] = b"\x04Test"
    data[300], data[432] = 1, 1
    for block in (640, 314884):
        data[block + 3] = 2
        for frame in range(2):
            slot = block + 4 + frame * FRAME
            data[slot], data[slot + 6], data[slot + 47] = frame, 2, 1
            service = slot + 48
            struct.pack_into(order + "HHH", data, service + 2, 100 + frame, 100 + frame, 1)
            data[service + 12:service + 12 + CHANNEL] = channel(0, 5000)
            struct.pack_into(order + "I", data, service + 972, 400000)
    for block in (629128, 629296):
        struct.pack_into(order + "H", data, block + 6, 1)
    struct.pack_into(order + "H", data, 629728 + 6, 1)
    return bytes(data)


def old_image():
    data = bytearray(OLD_IMAGE)
    for block in (640, 81924):
        data[block + 3] = 1
        data[block + 4 + 47] = 3
    return bytes(data)


def config_file(version, channels, body, tail=b""):
    head = struct.pack("<I28xI", version, len(channels))
    return head + b"".join(channels) + body + tail


def datagram(data):
    return struct.pack("<H", len(data)) + data


def answer(code, payload=b"", status=0):
    return struct.pack(">III", code, status, len(payload)) + payload


def main():
    root = pathlib.Path(sys.argv[1])
    channels = [channel(kind, 5000 + kind) for kind in range(8)]
    tail = bytes(PARAMS) + bytes(DESCRIPTIONS)
    corpora = {
        "config_file": {
            "current": config_file(4108, channels, image("<"), tail),
            "no-descriptions": config_file(4108, [], image("<"), bytes(PARAMS)),
            "older": config_file(4107, channels[:1], old_image(), tail),
            "unknown-version": config_file(4109, channels[:1], b""),
            "too-many-channels": struct.pack("<I28xI", 4108, 0xFFFFFFFF),
        },
        "config_image": {"wire": image(">"), "empty": bytes(64), "ones": b"\xff" * 4096},
        # The first byte chooses the command by its place in the command table.
        "answer": {
            "bare": b"\x00" + datagram(answer(1)),
            "refused": b"\x07" + datagram(answer(2000, status=5)),
            "channels": b"\x01" + datagram(answer(2, b"\x02" + channel(0, 1) + channel(1, 2))),
            "params": b"\x03" + datagram(answer(101, bytes(PARAMS))),
            "train": b"\x06" + datagram(struct.pack(">BBHI", 0x11, 0x22, 0, DESCRIPTIONS + 12))
                     + datagram(answer(104, bytes(DESCRIPTIONS))[:30720])
                     + datagram(answer(104, bytes(DESCRIPTIONS))[30720:]),
            "nothing-announced": b"\x06" + datagram(struct.pack(">BBHI", 0x11, 0x22, 0, 0)),
        },
    }
    for name, seeds in corpora.items():
        folder = root / name
        folder.mkdir(parents=True, exist_ok=True)
        for seed, data in seeds.items():
            (folder / seed).write_bytes(data)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main()
