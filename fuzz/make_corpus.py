#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""make_corpus.py FOLDER: writes the first inputs of every fuzzer below the folder. What a fuzzer finds later is added by
hand, under a name that says what it was; this script leaves such files alone."""
import gzip
import hashlib
import io
import json
import pathlib
import struct
import sys
import tarfile

top = pathlib.Path(sys.argv[1])


def put(fuzzer, name, data):
    folder = top / fuzzer
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data if isinstance(data, bytes) else data.encode())


def word(number):
    return struct.pack("<I", number)


def text(value):
    """A text as the fuzzers take one: its length first. Rooms of 256 and more have a length of four bytes."""
    return bytes([len(value)]) + value.encode()


def long_text(value):
    return word(len(value)) + value.encode()


# One question each, with a good reply, a wild one, and one with words changed.
for question in range(39):
    reply = bytes([0]) + bytes([0]) + word(0x90020709)
    put("driver_replies", f"good-{question:02}", bytes([question]) + reply * 6)
    put("driver_replies", f"wild-{question:02}", bytes([question]) + bytes([0, 2]) + bytes(range(1, 200)))
    changed = bytes([0, 3 << 2]) + word(5) + b"".join(bytes([at]) + word(0xFFFFFFF0) for at in (3, 6, 7)) + b"\0"
    put("driver_replies", f"changed-{question:02}", bytes([question]) + changed * 3)
for question in range(12):
    for name, value in (("short", "1"), ("number", "0x90020709"), ("long", "v" * 255)):
        answer = bytes([0, 0]) + long_text(value)
        put("environment", f"{name}-{question:02}", bytes([question]) + b"\x40" + answer * 3)

put("footprint", "three-steps", "\x04" + "t0_s=0\nt0_ms=80\nt0_des=bios init\nt1_s=0\nt1_ms=610\nt1_des=kernel\n"
    "t2_s=3\nt2_ms=250\nt2_des=ready\n")
put("footprint", "a-key-is-missing", "\x03t0_s=0\nt0_des=x\n")
put("footprint", "a-long-description", "\x02t0_s=1\nt0_ms=2\nt0_des=" + "d" * 600)
put("footprint", "empty", "")
put("footprint", "numbers-that-wrap", "\x01t0_s=99999999999999999999\nt0_ms=-1\nt0_des=\r\n")
for name, value in (("one", "0x1"), ("none", ""), ("wrapping", "0x" + "f" * 28), ("no-number", "flag")):
    put("start_flag", name, b"\0\x02" + value.encode() * 2)
for mode in ("ptn_iot", "ptn_iot2", "base", ""):
    for flag in ("0", "0x55aa", "0x55aa" + "0" * 40):
        put("work_mode", f"{mode or 'empty'}-{len(flag)}",
            b"".join(b"\0" + text(value) for value in (mode, "ptn_iot", flag, "100")))
put("work_mode", "nothing-set", b"\xff\xff\xff\xff")

mounts = "/dev/root / ext2 rw 0 0\n/dev/pramdisk /opt/moxv8/bim tmpfs rw 0 0\nproc /proc proc rw 0 0\n"
put("mount_table", "usual", "\x04" + mounts)
put("mount_table", "a-long-line", "\x02/dev/pramdisk /" + "d" * 1500 + " tmpfs rw 0 0\n")
put("mount_table", "escapes", "\x02/dev/x /a\\040b\\012 tmpfs rw 0 0\n# none\n\n x\n")
put("mount_table", "no-end", "\x01/dev/pramdisk /opt/moxv8/bim tmpfs")


def entries(keyword, room, names):
    return text(keyword) + bytes([room]) + b"".join(text(name) for name in names)


put("directories", "found", entries("Image", 127, [".", "..", "Image-5.10", "a_blackbox"]))
put("directories", "hidden-at-the-end", entries("Image", 127, ["Image-5.10-priv"]))
put("directories", "too-long", entries("I", 3, ["Image-" + "x" * 200]))
put("directories", "boxes", entries("box", 63, ["box_blackbox", "b" * 80 + "box_blackbox", "other"]))
put("calls", "nothing", "")
for which in range(10):
    put("calls", f"each-{which}", bytes([which]) + bytes(range(64)) * 3)
    put("calls", f"empty-{which}", bytes([which]) + bytes(40))

put("profiles", "small", 'name = "x"\ndescription = "y"\n[items."/dev/board0"]\n"hard type" = 0x90000713\n')
put("profiles", "everything", '''name = "all"
description = "every key"
address = "02:4d:4f:58:50:0e"
occupied-slots = [1, 2]
logic-id = 0x6001
watchdog-period-ms = 5
watchdog-threshold = 2
mcu-die-id = "4d58"
crl-module = true
tpm2 = true
cgroup = true
boot-files = ["Image-5.10", "dtb"]
footprint = "t0_s=0"
[reset]
reason = 0x10100d9
date = "2024-03-01 08:00:05"
[items."/dev/board0"]
"hard type" = 0x90000713
"tpm active" = 1
[boot-env]
BOOTMEDIA = "NOR"
[platform-env]
curworkmode = "base"
[memory-env]
pack_type = "145"
''')
put("profiles", "wrong-key", 'colour = "red"\n')
put("profiles", "wrong-type", "name = 5\n")
put("profiles", "not-closed", '[items."/dev/board0"\n')


def package(change=lambda manifest: None, compress=False, cut=None):
    contents = {"boot/bios.bin": b"bios", "bin/app": b"application" * 9}
    manifest = {"format": 1, "name": "n", "version": "v", "files": [
        {"id": hex(i + 1), "name": name, "size": len(data), "sha256": hashlib.sha256(data).hexdigest()}
        for i, (name, data) in enumerate(contents.items())]}
    change(manifest)
    first = json.dumps(manifest).encode()
    digest = f"{hashlib.sha256(first).hexdigest()}  manifest.json\n".encode()
    out = io.BytesIO()
    with tarfile.open(fileobj=out, mode="w", format=tarfile.USTAR_FORMAT) as archive:
        for name, data in {"manifest.json": first, "manifest.sha256": digest, **contents}.items():
            entry = tarfile.TarInfo(name)
            entry.size = len(data)
            archive.addfile(entry, io.BytesIO(data))
    data = out.getvalue()
    data = data[:7168] if not compress else gzip.compress(data, mtime=0)
    return data[:cut] if cut else data


put("packages", "whole", package())
put("packages", "compressed", package(compress=True))
put("packages", "cut", package(cut=2500))
put("packages", "upward-name", package(lambda manifest: manifest["files"][0].update(name="../x")))
put("packages", "huge-size", package(lambda manifest: manifest["files"][0].update(size=2**63)))
put("packages", "no-files", package(lambda manifest: manifest.update(files=[])))
put("packages", "wrong-format", package(lambda manifest: manifest.update(format="1")))
put("packages", "no-archive", "no archive")
put("planted", "harmless", "MOX?")
