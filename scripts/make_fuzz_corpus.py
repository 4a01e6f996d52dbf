#!/usr/bin/env python3
"""Makes the fuzz targets' starting corpus: make_fuzz_corpus.py DIRECTORY

Small, well-formed inputs from which the fuzzers mutate. Written from the formats themselves, so
that it needs no build.
"""
import json
import pathlib
import struct
import sys

IMAGE, OLD_IMAGE, PARAMS, DESCRIPTIONS = 629896, 163976, 144, 41944
CHANNEL, FRAME, SERVICE = 120, 7856, 976
OLD_FRAME, OLD_SERVICE = 2032, 496
# Where an image of each layout has its blocks of frames, and the entries' counts behind them.
BLOCKS, ENTRY_COUNTS = (640, 314884), (629134, 629302, 629734)
OLD_BLOCKS, OLD_ENTRY_COUNTS = (640, 81924), (163214, 163382, 163814)


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
    for block in BLOCKS:
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


def frame_zero(services):
    """An image of the older layout: both tables with frame 0 of so many services by its count."""
    data = bytearray(OLD_IMAGE)
    for block in OLD_BLOCKS:
        data[block + 3] = 1
        data[block + 4 + 47] = services
        for service in range(4):
            at = block + 4 + 48 + service * OLD_SERVICE
            struct.pack_into("<BxHHH", data, at, service, 1 + service, 1 + service, 1)
    return bytes(data)


def lying(size, blocks, frame_size, service_size, entry_counts):
    """An image of either layout with every count above its array; the same in both byte orders."""
    data = bytearray(size)
    data[33], data[300], data[432] = 0xFF, 0xFF, 0xFF
    for block in blocks:
        data[block + 3] = 0xFF
        for frame in range(40):
            slot = block + 4 + frame * frame_size
            data[slot], data[slot + 6], data[slot + 47] = frame, 0xFF, 0xFF
            for service in range(slot + 48, slot + frame_size, service_size):
                data[service + 6:service + 8] = b"\xff\xff"
    for count in entry_counts:
        data[count:count + 2] = b"\xff\xff"
    return bytes(data)


LYING = lying(IMAGE, BLOCKS, FRAME, SERVICE, ENTRY_COUNTS)
OLD_LYING = lying(OLD_IMAGE, OLD_BLOCKS, OLD_FRAME, OLD_SERVICE, OLD_ENTRY_COUNTS)


def config_file(version, channels, body, tail=b""):
    head = struct.pack("<I28xI", version, len(channels))
    return head + b"".join(channels) + body + tail


def text_channel(kind, **fields):
    return {"type": kind, "channelId": 1, "receiveAddress": "225.1.1.1:5000", "receiveMode": 2,
            **fields}


STREAM = {"rtcpSync": True, "payloadType": 96}
TEXT_CHANNELS = [
    text_channel("video", **STREAM, videoCoding="H.264", videoFrameRateGiven=2, videoFrameRate=9,
                 position=3, carried60="01" * 60),
    text_channel("audio", **STREAM, audioCoding="AAC", audioParametersGiven=False,
                 audioSampleRate="48KHz", carried22="0102"),
    text_channel("ESG", streamParameter=0),
    text_channel("ECM", dataUnitType=129, maxSendIntervalMs=1000),
    text_channel(9, audioCoding="AAC"),
]


def text_table():
    service = {"subFrameNumber": 1, "serviceId": 101, "serviceType": "media", "scrambled": False,
               "encapsulation": "mode 1", "esgInternal": True, "bandwidthLimit": 480000,
               "components": TEXT_CHANNELS}
    frame = {"id": 1, "rsCodeRate": "(240, 224)", "byteInterleaving": "mode 1",
             "ldpcCodeRate": "1/2", "modulation": "QPSK", "scrambling": "mode 0",
             "timeSlots": [0, 1], "services": [service]}
    return {"tableId": 2, "channelNumber": 20, "frames": [frame]}


def text_form(**changes):
    """A configuration as text, with an entry in each list, but for what `changes` says."""
    point = {"channelNumber": 20, "centreFrequency": "474.125 MHz", "bandwidth": "8M"}
    port = {"address": "192.168.1.20", "subnetMask": "255.255.255.0", "gateway": {"bytes": "ff"}}
    pairs = {"tableId": 3, "entries": [{"serviceId": 101, "channelNumber": 20}]}
    return {
        "format": "korvane configuration 1",
        "network": {"tableId": 1, "networkLevel": 3, "countryCode": "CHN", "networkNumber": 7,
                    "networkName": "节目", "frequencyPoint": point, "otherFrequencyPoints": [point],
                    "otherNetworks": [{"networkLevel": 1, "networkNumber": 2, **point}]},
        "continuousMultiplexTable": text_table(),
        "shortTimeMultiplexTable": text_table(),
        "continuousServiceTable": pairs,
        "shortTimeServiceTable": pairs,
        "caDescriptionTable": {"tableId": 6, "sendFlag": 1, "sectionCount": 0, "systems": [
            {"caSystemId": 1, "serviceId": 101, "emmDataUnitType": 128, "ecmDataUnitType": 129,
             "ecmTransferMode": 0}]},
        "inputChannels": TEXT_CHANNELS,
        "serviceDescriptions": [{"serviceId": 101, "language": "zho", "serviceName": "频道",
                                 "provider": {"bytes": "00ff"}}],
        "outputParameters": {
            "pmsPid": 256, "deviceNumber": 1, "timeLabelEnabled": True, "updateSequenceAdvance": 1,
            "sendNextFrameParameters": False, "transmitDelaySeconds": 2, "clockSource": "external",
            "isBackup": False, "backupAddress": "10.1.2.3", "alarmOn1pps": True,
            "alarmOn10m": False, "alarmOnTod": True, "alarmSwitches": "08",
            "systemBitRate": 8000000, "lastChannelId": 27},
        "parameters264": {"softwareVersion": "V2", "hardwareVersion": "V1"},
        "deviceParameters": {"controlPort": port, "controlMac": "", "managementHost": "",
                             "servicePort": port, "serviceMac": ""},
        "imageHeader": {"length": "0c"},
        **changes,
    }


def text(tree):
    return json.dumps(tree, ensure_ascii=False, indent=2).encode()


def datagram(data):
    return struct.pack("<H", len(data)) + data


def answer(code, payload=b"", status=0):
    return struct.pack(">III", code, status, len(payload)) + payload


def main():
    root = pathlib.Path(sys.argv[1])
    channels = [channel(kind, 5000 + kind) for kind in range(8)]
    tail = bytes(PARAMS) + bytes(DESCRIPTIONS)
    lying_tail = bytes(PARAMS) + b"\xff" * DESCRIPTIONS
    older = config_file(4107, channels[:1], frame_zero(3), tail)
    corpora = {
        "config_file": {
            "current": config_file(4108, channels, image("<"), tail),
            "no-descriptions": config_file(4108, [], image("<"), bytes(PARAMS)),
            "empty": config_file(4108, [], b""),
            "lying": config_file(4108, channels, LYING, lying_tail),
            "longer": config_file(4108, channels[:2], image("<"), tail + b"more" * 100),
            "older": older,
            "older-empty": config_file(4107, [], b""),
            "older-lying": config_file(4107, channels, OLD_LYING, lying_tail),
            "older-longer": older + b"more" * 100,
            **{f"older-services-{n}": config_file(4107, [], frame_zero(n)) for n in (0, 4, 5, 8, 255)},
            # Amid the channel, the first frame, a service, the image's last bytes, what follows it.
            **{f"older-cut-{n}": older[:n] for n in (35, 37, 155, 157, 799, 803, 845, 1341, 82081,
                                                     164131, 164133, 164275, 164277, 206219)},
            "unknown-version": config_file(4109, channels[:1], b""),
            "too-many-channels": struct.pack("<I28xI", 4108, 0xFFFFFFFF),
        },
        "config_image": {"wire": image(">"), "empty": bytes(64), "ones": b"\xff" * 4096,
                         "lying": LYING, "older-layout-lying": OLD_LYING},
        "text_form": {
            "sound": text(text_form()),
            "remainder": text(text_form(remainder=[{"offset": 629893, "bytes": "07"}])),
            "contradiction": text(text_form(remainder=[{"offset": 300, "bytes": "07"}])),
            "beyond": text(text_form(remainder=[{"offset": 671984, "bytes": "07"}])),
            "no-remainder": text(text_form(remainder=7)),
            "unknown": text(text_form(**{"b\u0007d" * 20: 7})),
            "other-format": text(text_form(format="other")),
            "too-many": text(text_form(inputChannels=TEXT_CHANNELS * 13)),
            "twice": b'{"a": [0, {"b": 1, "b": 2}]}',
            "deep": b'{"a": ' + b"[" * 20,
            "many-keys": b"{" + b",".join(b'"%d": -1' % n for n in range(70)) + b"}",
            "cut": text(text_form())[:3000],
            "too-large": b"[1e999]",
            "no-object": b"[null, 1.5]",
            "file": older,
            "file-lying": config_file(4107, channels, OLD_LYING[:9000]),
        },
        # The first byte chooses the command by its place in the command table.
        "answer": {
            "bare": b"\x00" + datagram(answer(1)),
            "refused": b"\x07" + datagram(answer(2000, status=5)),
            "channels": b"\x01" + datagram(answer(2, b"\x02" + channel(0, 1) + channel(1, 2))),
            "more-than-sent": b"\x01" + datagram(answer(2, b"\x03" + channel(0, 1) + channel(1, 2))),
            "more-than-kept": b"\x01" + datagram(answer(2, b"\xff" + channel(0, 1) * 61)),
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
