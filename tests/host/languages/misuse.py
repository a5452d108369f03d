"""Misuses of the engine and of the host library from Python: each gives a status, and the process lives.

    misuse.py LIBRARY RAW_FILE
"""

import ctypes
import math
import os
import resource
import sys
import tempfile
import threading
from ctypes import byref, c_char_p, c_float, c_int32, c_size_t, c_uint32, c_void_p

(OK, INVALID_ARGUMENT, INVALID_HANDLE, FORKED, NOT_FOUND, NOT_A_PHOTOGRAPH, DAMAGED, UNSUPPORTED, OUT_OF_MEMORY,
 CANCELED, STALE, TIMED_OUT, BUFFER_TOO_SMALL, EXISTS, ACCESS_DENIED, DISK_FULL, IO_ERROR, INTERNAL) = range(18)
METADATA_NONE = 2
LARGE_SIDE = 12000
HEADROOM = 100 << 20  # bytes

LIBRARY = ctypes.CDLL(sys.argv[1])
RAW_FILE = os.fsencode(sys.argv[2])
SCRATCH = tempfile.TemporaryDirectory()
FOLDER = os.fsencode(SCRATCH.name)


class SaveOptions(ctypes.Structure):
    _fields_ = [("struct_size", c_uint32), ("format", c_int32), ("quality", c_int32), ("bits", c_int32),
                ("max_width", c_int32), ("max_height", c_int32), ("metadata", c_int32), ("overwrite", c_int32),
                ("no_profile", c_int32), ("copyright", c_char_p), ("mark", c_char_p)]


def call(name, *arguments):
    return getattr(LIBRARY, "lumvik_host_" + name)(*arguments)


def name_of(status):
    return call("status_name", status).decode()


def text():
    return call("last_error").decode()


def path(name):
    return os.path.join(FOLDER, name)


def opened(function, *arguments):
    handle = c_void_p()
    status = call(function, *arguments, byref(handle))
    if status != OK:
        raise RuntimeError(text())
    return handle


def save(name, bits=0):
    options = SaveOptions(struct_size=ctypes.sizeof(SaveOptions), metadata=METADATA_NONE, bits=bits, overwrite=1)
    return call("save", PHOTO, path(name), byref(options))


def set_number(key, value):
    return call("settings_set_number", SETTINGS, key, c_float(value))


def zero_radius():
    set_number(b"sharpening_amount", 50)
    return set_number(b"sharpening_radius", 0)


def cutout_of_a_crop():
    """The mask has the size of the image before cropping."""
    cropped = opened("settings_create")
    status = (call("find_subject", PHOTO, c_float(-1), c_float(-1))
              or call("settings_set_number", cropped, b"crop.w", c_float(0.5))
              or call("set_settings", PHOTO, cropped) or call("save_cutout", PHOTO, path(b"cutout.png"), None))
    call("settings_close", cropped)
    call("set_settings", PHOTO, None)
    return status


def out_of_memory():
    size = 3 * LARGE_SIDE**2
    with open(path(b"large.bmp"), "wb") as file:
        file.write(b"BM" + b"".join(n.to_bytes(4, "little") for n in (size + 54, 0, 54, 40, LARGE_SIDE, LARGE_SIDE)))
        file.write(b"\1\0\x18\0")
        file.truncate(size + 54)
    with open("/proc/self/statm", encoding="ascii") as file:
        used = int(file.read().split()[0]) * resource.getpagesize()
    limits = resource.getrlimit(resource.RLIMIT_AS)
    resource.setrlimit(resource.RLIMIT_AS, (used + HEADROOM, limits[1]))
    try:
        return call("open", path(b"large.bmp"), None, byref(c_void_p()))
    finally:
        resource.setrlimit(resource.RLIMIT_AS, limits)


def two_threads():
    statuses = []

    def render():
        histogram = (c_uint32 * 1024)()
        statuses.extend(call("get_histogram", PHOTO, byref(histogram)) for _ in range(5))

    threads = [threading.Thread(target=render) for _ in range(2)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    return max(statuses)


def after_close(function):
    closed = opened("settings_create")
    call("settings_close", closed)
    return call(function, closed)


def release_twice():
    json = c_void_p()
    status = call("settings_to_json", SETTINGS, byref(json))
    call("free", json)
    call("free", json)
    return status


def forked_child():
    child = os.fork()
    if child == 0:
        # The child uses its own objects.
        own = opened("settings_create")
        os._exit(call("settings_clear", own) or call("render", PHOTO))
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


def callback_that_raises():
    """Python prints the exception and returns to the library."""
    callback = ctypes.CFUNCTYPE(None, c_void_p, c_void_p)(lambda frame, user: 1 // 0)
    sys.unraisablehook = lambda unraisable: None
    return call("post", PHOTO, None, None, callback, None, None) or call("wait", PHOTO, ctypes.c_uint64(0), -1)


MISUSES = [
    ("saving to a path without a dot", lambda: save(b"out"), INVALID_ARGUMENT),
    ("saving with an unknown extension", lambda: save(b"out.xyz"), INVALID_ARGUMENT),
    ("saving into a missing folder", lambda: save(b"missing/out.jpg"), NOT_FOUND),
    ("saving a JPEG with 16 bits", lambda: save(b"out.jpg", bits=16), INVALID_ARGUMENT),
    ("sharpening with radius 0", zero_radius, INVALID_ARGUMENT),
    ("a setting that is NaN", lambda: set_number(b"exposure", math.nan), INVALID_ARGUMENT),
    ("an infinite setting", lambda: set_number(b"tint", -math.inf), INVALID_ARGUMENT),
    ("a setting far out of range", lambda: set_number(b"clarity", 1e30), INVALID_ARGUMENT),
    ("a cutout of a cropped photo", cutout_of_a_crop, UNSUPPORTED),
    ("running out of memory", out_of_memory, OUT_OF_MEMORY),
    ("two threads with one photo", two_threads, OK),
    ("use after closing", lambda: after_close("settings_clear"), INVALID_HANDLE),
    ("closing twice", lambda: after_close("settings_close"), INVALID_HANDLE),
    ("releasing twice", release_twice, OK),
    ("a handle of another kind", lambda: call("render", SETTINGS), INVALID_HANDLE),
    ("a made-up handle", lambda: call("render", c_void_p(0xDEAD)), INVALID_HANDLE),
    ("a null handle", lambda: call("render", None), INVALID_HANDLE),
    ("a null path", lambda: call("open", None, None, byref(c_void_p())), INVALID_ARGUMENT),
    ("a path that is not UTF-8", lambda: call("open", b"\xff\xfe", None, byref(c_void_p())), NOT_FOUND),
    ("a null output", lambda: call("settings_create", None), INVALID_ARGUMENT),
    ("a struct without its size", lambda: call("get_info", PHOTO, ctypes.create_string_buffer(200)), INVALID_ARGUMENT),
    ("a buffer that is too small",
     lambda: call("get_preview", PHOTO, None, ctypes.create_string_buffer(4), c_size_t(4), None, None),
     BUFFER_TOO_SMALL),
    ("a callback that raises", callback_that_raises, OK),
    ("the parent's photo in a forked child", forked_child, FORKED),
]


def main():
    wrong = 0
    for what, misuse, expected in MISUSES:
        status = misuse()
        if status != expected:
            print(f"{what}: {name_of(status)}, not {name_of(expected)}: {text()}")
            wrong += 1
    # After all this both objects are of use.
    if save(b"out.jpg") != OK or call("settings_clear", SETTINGS) != OK:
        print(f"the photo is not of use afterwards: {text()}")
        wrong += 1
    call("settings_close", SETTINGS)
    call("close", PHOTO)
    print(f"{len(MISUSES)} misuses, {wrong} wrong")
    return 1 if wrong else 0


for returning_text in ("status_name", "last_error"):
    getattr(LIBRARY, "lumvik_host_" + returning_text).restype = c_char_p
PHOTO = opened("open", RAW_FILE, None)
SETTINGS = opened("settings_create")
sys.exit(main())
