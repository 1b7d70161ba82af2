"""Images in: arrays and bitmap files give the library the same bitmap, and
whatever cannot be an image is refused with a clear error."""

import struct

import numpy as np
import pytest

import sentivo
from sentivo import _bitmap
from conftest import (CODES, FINGER_HALF_FAILURES, PRINTS, capture_arrays, capture_files,
                      read_pixels)


def test_an_array_makes_the_same_block_as_the_bitmap_file_it_came_from():
    for path in sorted(PRINTS.glob("*.bmp"))[:3]:
        assert _bitmap.block_from_array(read_pixels(path)) == path.read_bytes()[14:], path
    # Row 0 of the array is the first row of the block's pixels.
    image = np.zeros((480, 320), np.uint8)
    image[0, :3], image[479, 319] = (7, 8, 9), 5
    block = _bitmap.block_from_array(image)
    assert block[1064:1067] == bytes((7, 8, 9)) and block[-1] == 5 and len(block) == 154664

    with sentivo.Handle() as handle:
        for name in ["live_a", "moving_2"] + list(FINGER_HALF_FAILURES):
            assert handle.score(*capture_arrays(name)) == handle.score(*capture_files(name)), name


def test_an_array_of_the_wrong_shape_or_type_is_refused_by_name():
    good = np.zeros((480, 320), np.uint8)
    wrong = [
        (np.zeros((320, 480), np.uint8), ValueError, r"shape \(480, 320\).*\(320, 480\)"),
        (np.zeros((480, 320, 3), np.uint8), ValueError, r"shape \(480, 320\)"),
        (np.zeros((480, 320), float), TypeError, "uint8.*float64"),
        (good.tolist(), TypeError, "numpy array.*list"),
        (None, TypeError, "numpy array.*not None"),
    ]
    with sentivo.Handle() as handle:
        for image, error, pattern in wrong:
            with pytest.raises(error, match="backlight image: expected .*" + pattern):
                handle.score(good, image, good)
        with pytest.raises(ValueError, match="index"):
            handle.set_image(3, good)


def test_a_file_that_is_no_usable_bitmap_is_refused_by_name(tmp_path):
    current, backlight, dark = capture_files("live_a")
    truncated, notes, small = tmp_path / "truncated.bmp", tmp_path / "notes.bmp", tmp_path / "small.bmp"
    truncated.write_bytes(open(current, "rb").read()[:5000])
    notes.write_text("not an image\n")
    # A well-formed 8-bit bitmap of 16 x 16 pixels.
    small.write_bytes(struct.pack("<2sIHHI", b"BM", 1334, 0, 0, 1078) +
                      struct.pack("<IiiHHIIiiII", 40, 16, 16, 1, 8, 0, 256, 19685, 19685, 256, 0) +
                      bytes(1024 + 256))
    cases = [(tmp_path / "missing.bmp", CODES["ZRC_ERROR_FILE_OPEN_FAIL"]),
             (tmp_path, CODES["ZRC_ERROR_FILE_OPEN_FAIL"]),  # a folder
             (notes, CODES["ZRC_ERROR_BMP_NO_SIGNATURE"]),
             (small, CODES["ZRC_ERROR_BITMAP_DIMENSION"]),
             (truncated, None)]
    with sentivo.Handle() as handle:
        for path, code in cases:
            for files in ((str(path), backlight, dark), (current, backlight, path)):
                with pytest.raises(sentivo.SentivoError) as refused:
                    handle.score(*files)
                assert refused.value.code == code if code else refused.value.code < 0, path
                assert str(refused.value).startswith(str(path) + ":"), str(refused.value)
        # Nothing of a refused capture lingers.
        assert handle.score(current, backlight, dark) == sentivo.Handle().score(current, backlight, dark)
