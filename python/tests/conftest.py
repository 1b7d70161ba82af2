"""Shared test data: the conformance captures of the source tree, the error
codes as the public header names them, and an independent bitmap reader."""

import os
import re
import struct
from pathlib import Path

import numpy as np

SOURCE_DIR = Path(os.environ.get("SENTIVO_SOURCE_DIR", Path(__file__).resolve().parents[2]))
SYNTHETIC = SOURCE_DIR / "tests" / "conformance" / "synthetic"
PRINTS = SOURCE_DIR / "tests" / "data" / "fingerprints"


def _header_codes():
    text = (SOURCE_DIR / "include" / "sentivo" / "sentivo_errors.h").read_text()
    return {name: int(value) for name, value in
            re.findall(r"#define\s+(\w+)\s+\(?(-?\d+)\)?", text)}


CODES = _header_codes()

# Captures made to fail the finger half, each in its own way.
FINGER_HALF_FAILURES = {
    "no_finger": CODES["ZRC_ERROR_BITMAP_NO_FINGER"],
    "too_small": CODES["ZRC_ERROR_LD_FINGERPRINT_TOO_SMALL"],
    "lower_empty": CODES["ZRC_ERROR_LD_NO_FINGERPRINT_IN_LOWER_AREA"],
    "skewed": CODES["ZRC_ERROR_LD_FINGER_PLACED_SKEWLY"],
    "overexposed": CODES["ZRC_ERROR_LD_ILLUMINATION_TOO_HIGH"],
}
# Captures whose finger lies well: only the fake half decides them.
FINGER_HALF_PASSES = ["live_a", "live_b", "live_c", "smooth_a", "smooth_b", "moving_1",
                      "moving_2", "no_falloff"]


def capture(name):
    """The folder of a synthetic conformance capture."""
    return SYNTHETIC / name


def capture_files(name):
    return tuple(str(capture(name) / (slot + ".bmp")) for slot in ("current", "backlight", "dark"))


def read_pixels(path):
    """The pixels of an 8-bit 320 x 480 bitmap file, rows as stored."""
    data = Path(path).read_bytes()
    offset, = struct.unpack_from("<I", data, 10)
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    assert (width, height, bits) == (320, 480, 8), path
    return np.frombuffer(data, np.uint8, count=width * height, offset=offset).reshape(height, width)


def capture_arrays(name):
    return tuple(read_pixels(path) for path in capture_files(name))

