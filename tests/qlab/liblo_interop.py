#!/usr/bin/env python3
"""Reads and writes OSC packets with liblo, an OSC implementation independent of ours.

    liblo_interop.py encode DIR     writes one packet file per message into DIR and prints, as
                                    JSON, what each file holds
    liblo_interop.py decode FILE..  prints, as JSON, what liblo reads from each packet file

python3-liblo 0.10 cannot serialise a message, so packets are caught as UDP datagrams that liblo
sends to a plain socket. Its server hands blobs over as NUL-terminated text (a blob of exactly four
bytes comes back with whatever follows it in memory), so packets are read with liblo's own C
deserialiser through ctypes instead. Exit status 3 means liblo cannot be loaded.
"""

import ctypes
import ctypes.util
import json
import math
import os
import socket
import struct
import sys

try:
    import liblo
except ImportError as error:
    print(f"liblo cannot be imported: {error}", file=sys.stderr)
    sys.exit(3)


def load_c_library():
    name = ctypes.util.find_library("lo")
    if name is None:
        print("liblo's C library cannot be found", file=sys.stderr)
        sys.exit(3)
    library = ctypes.CDLL(name)
    pointer = ctypes.c_void_p
    library.lo_message_deserialise.restype = pointer
    library.lo_message_deserialise.argtypes = [pointer, ctypes.c_size_t, ctypes.POINTER(ctypes.c_int)]
    library.lo_message_get_types.restype = ctypes.c_char_p
    library.lo_message_get_types.argtypes = [pointer]
    library.lo_message_get_argv.restype = ctypes.POINTER(pointer)
    library.lo_message_get_argv.argtypes = [pointer]
    library.lo_blob_datasize.restype = ctypes.c_uint32
    library.lo_blob_datasize.argtypes = [pointer]
    library.lo_blob_dataptr.restype = pointer
    library.lo_blob_dataptr.argtypes = [pointer]
    library.lo_get_path.restype = ctypes.c_char_p
    library.lo_get_path.argtypes = [pointer, ctypes.c_ssize_t]
    library.lo_message_free.argtypes = [pointer]
    return library


def float_bits(value):
    return struct.pack(">f", value).hex()


def double_bits(value):
    return struct.pack(">d", value).hex()


def timetag_raw(seconds):
    # pyliblo splits a time into whole seconds and a binary fraction of 2^32.
    whole = math.floor(seconds)
    return (whole << 32) | int((seconds - whole) * 4294967296.0)


# Each message: a name, an address and (tag, value) pairs as liblo takes them. pyliblo refuses
# an empty blob, so that case is left to the byte vectors of the C++ tests.
MESSAGES = [
    ("no_arguments", "/workspaces", []),
    ("address_of_whole_words", "/abc", []),
    ("updates", "/updates", [("i", 1)]),
    ("ints", "/i", [("i", 0), ("i", -1), ("i", 2147483647), ("i", -2147483648), ("i", 0x01020304)]),
    ("floats", "/f", [("f", 1.5), ("f", -0.0), ("f", 0.1), ("f", float("inf")), ("f", float("-inf")),
                      ("f", float("nan")), ("f", 1e-45), ("f", 3.4028234663852886e38)]),
    ("strings", "/s", [("s", ""), ("s", "abc"), ("s", "abcd"), ("s", "h\u00e9llo \u266a \U0001f3b5"),
                       ("s", '{"status":"ok","data":[]}')]),
    ("blobs", "/b", [("b", [1]), ("b", [1, 2, 3, 4]), ("b", [1, 2, 3, 4, 5]),
                     ("b", [0xC0, 0xDB, 0xDC, 0xDD, 0x00])]),
    ("true_false_nil", "/x", [("T", None), ("F", None), ("N", None)]),
    ("mixed", "/mix", [("i", -1), ("f", 0.25), ("s", "hi"), ("b", [0xFF]), ("T", None), ("N", None)]),
    ("long_address", "/workspace/0A1B2C3D-4E5F/cue_id/6789/valuesForKeys",
     [("s", '["number","name","type"]')]),
    ("int64", "/h", [("h", 0x0000000100000002), ("h", -1), ("h", 0x7FFFFFFF80000000)]),
    ("double", "/d", [("d", 1.5), ("d", 0.1), ("d", 1e300), ("d", -1e300)]),
    ("symbol", "/S", [("S", "sym")]),
    ("infinitum", "/I", [("I", None)]),
    ("timetag", "/t", [("t", 1.5), ("t", 2.25)]),
    ("char", "/c", [("c", "x")]),
]


def describe(tag, value):
    """The argument as the C++ test expects to find it."""
    if tag == "i":
        return {"tag": tag, "value": value}
    if tag == "f":
        return {"tag": tag, "bits": float_bits(value)}
    if tag in ("s", "S"):
        return {"tag": tag, "value": value}
    if tag == "b":
        return {"tag": tag, "hex": bytes(value).hex()}
    if tag == "h":
        return {"tag": tag, "raw": f"{value & 0xFFFFFFFFFFFFFFFF:016x}"}
    if tag == "t":
        return {"tag": tag, "raw": f"{timetag_raw(value):016x}"}
    if tag == "d":
        return {"tag": tag, "bits": double_bits(value)}
    if tag == "c":
        return {"tag": tag, "value": value}
    return {"tag": tag}


def encode(directory):
    receiver = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    receiver.bind(("127.0.0.1", 0))
    receiver.settimeout(5)
    target = liblo.Address("127.0.0.1", receiver.getsockname()[1], liblo.UDP)
    manifest = []
    for name, address, arguments in MESSAGES:
        message = liblo.Message(address, *[(tag, value) for tag, value in arguments])
        liblo.send(target, message)
        packet = receiver.recv(65536)
        path = os.path.join(directory, name + ".osc")
        with open(path, "wb") as file:
            file.write(packet)
        manifest.append({"name": name, "file": path, "address": address,
                         "arguments": [describe(tag, value) for tag, value in arguments]})
    receiver.close()
    json.dump(manifest, sys.stdout)


def read_argument(library, tag, pointer):
    """One argument of a deserialised message, which liblo has turned to host byte order."""
    if tag == "i":
        return {"tag": tag, "value": ctypes.cast(pointer, ctypes.POINTER(ctypes.c_int32))[0]}
    if tag == "f":
        word = ctypes.cast(pointer, ctypes.POINTER(ctypes.c_uint32))[0]
        return {"tag": tag, "bits": struct.pack(">I", word).hex()}
    if tag in ("s", "S"):
        return {"tag": tag, "value": ctypes.cast(pointer, ctypes.c_char_p).value.decode("utf-8")}
    if tag == "b":
        size = library.lo_blob_datasize(pointer)
        return {"tag": tag, "hex": ctypes.string_at(library.lo_blob_dataptr(pointer), size).hex()}
    return {"tag": tag}


def decode(paths):
    library = load_c_library()
    results = []
    for path in paths:
        with open(path, "rb") as file:
            packet = file.read()
        buffer = ctypes.create_string_buffer(packet, len(packet))
        status = ctypes.c_int(0)
        message = library.lo_message_deserialise(buffer, len(packet), ctypes.byref(status))
        if not message:
            results.append({"file": path, "accepted": False, "status": status.value})
            continue
        address = library.lo_get_path(buffer, len(packet)).decode("utf-8")
        types = library.lo_message_get_types(message).decode("ascii")
        argv = library.lo_message_get_argv(message)
        arguments = [read_argument(library, tag, argv[index]) for index, tag in enumerate(types)]
        library.lo_message_free(message)
        results.append({"file": path, "accepted": True, "address": address, "arguments": arguments})
    json.dump(results, sys.stdout)


def main():
    if len(sys.argv) >= 3 and sys.argv[1] == "encode":
        encode(sys.argv[2])
    elif len(sys.argv) >= 2 and sys.argv[1] == "decode":
        decode(sys.argv[2:])
    else:
        print(__doc__, file=sys.stderr)
        sys.exit(2)


if __name__ == "__main__":
    main()
