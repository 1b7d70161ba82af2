"""Images in: arrays and bitmap files give the library the same bitmap, and
whatever cannot be an image is refused with a clear error."""

import struct

import numpy as np
import pytest

import sentivo
from sentivo import _bitmap
from conftest import CODES, FINGER_HALF_FAILURES, PRINTS, capture_arrays, capture_files, read_pixels


def write_bitmap(path, width, height, bits=8):
    """A bitmap file with a grey palette (8 bits) or none (24 bits)."""
    palette = bytes(v for g in range(256) for v in (g, g, g, 0)) if bits == 8 else b""
    row = (width * bits // 8 + 3) & ~3
    offset = 14 + 40 + len(palette)
    header = struct.pack("<2sIHHI", b"BM", offset + row * height, 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, row * height, 19685, 19685,
                       256 if bits == 8 else 0, 0)
    path.write_bytes(header + info + palette + bytes(row * height))
    return str(path)


def test_an_array_makes_the_same_block_as_the_bitmap_file_it_came_from():
    for path in sorted(PRINTS.glob("*.bmp"))[:3]:
        data = path.read_bytes()
        assert _bitmap.block_from_array(read_pixels(path)) == data[14:], path
        assert _bitmap.block_from_file(path) == data[14:]
    # Row 0 of the array is the first row of the block's pixels.
    image = np.zeros((480, 320), np.uint8)
    image[0, :3] = (7, 8, 9)
    image[479, 319] = 5
    block = _bitmap.block_from_array(image)
    assert len(block) == 40 + 1024 + 320 * 480
    assert block[1064:1067] == bytes((7, 8, 9)) and block[-1] == 5


def test_arrays_and_paths_are_judged_alike():
    names = ["live_a", "moving_2"] + list(FINGER_HALF_FAILURES)
    with sentivo.Handle() as handle:
        for name in names:
            arrays = capture_arrays(name)
            by_path = handle.score(*capture_files(name))
            assert handle.score(*arrays) == by_path, name
            # A strided view of a larger array holds the same pixels.
            views = []
            for image in arrays:
                larger = np.zeros((960, 640), np.uint8)
                larger[::2, ::2] = image
                views.append(larger[::2, ::2])
            assert handle.score(*views) == by_path, name
            mixed = (arrays[0], capture_files(name)[1], arrays[2])
            assert handle.score(*mixed) == by_path, name


def test_an_array_of_the_wrong_shape_or_type_is_refused_by_name():
    good = np.zeros((480, 320), np.uint8)
    wrong = [
        (np.zeros((320, 480), np.uint8), ValueError, r"shape \(480, 320\).*\(320, 480\)"),
        (np.zeros((480, 320, 3), np.uint8), ValueError, r"shape \(480, 320\)"),
        (np.zeros((480, 320), np.uint16), TypeError, "uint8.*uint16"),
        (np.zeros((480, 320), float), TypeError, "uint8.*float64"),
        (good.tolist(), TypeError, "numpy array.*list"),
        (None, TypeError, "numpy array.*not None"),
    ]
    with sentivo.Handle() as handle:
        for image, error, pattern in wrong:
            with pytest.raises(error, match=pattern):
                handle.score(good, image, good)
            with pytest.raises(error, match="backlight image"):
                handle.score(good, image, good)
        with pytest.raises(ValueError, match="index"):
            handle.set_image(3, good)


def test_a_file_that_is_no_usable_bitmap_is_refused_by_name(tmp_path):
    current, backlight, dark = capture_files("live_a")
    data = (tmp_path / "whole.bmp")
    data.write_bytes(open(current, "rb").read())
    truncated = tmp_path / "truncated.bmp"
    truncated.write_bytes(data.read_bytes()[:5000])
    (tmp_path / "empty.bmp").write_bytes(b"")
    (tmp_path / "notes.bmp").write_text("not an image\n")
    cases = [
        (str(tmp_path / "missing.bmp"), CODES["ZRC_ERROR_FILE_OPEN_FAIL"]),
        (str(tmp_path), CODES["ZRC_ERROR_FILE_OPEN_FAIL"]),  # a folder
        (str(tmp_path / "empty.bmp"), CODES["ZRC_ERROR_BMP_NO_SIGNATURE"]),
        (str(tmp_path / "notes.bmp"), CODES["ZRC_ERROR_BMP_NO_SIGNATURE"]),
        (write_bitmap(tmp_path / "small.bmp", 16, 16), CODES["ZRC_ERROR_BITMAP_DIMENSION"]),
        (write_bitmap(tmp_path / "colour.bmp", 320, 480, 24), CODES["ZRC_ERROR_BITMAP_BITCOUNT"]),
        (str(truncated), None),
    ]
    with sentivo.Handle() as handle:
        for path, code in cases:
            for files in ((path, backlight, dark), (current, backlight, path)):
                with pytest.raises(sentivo.SentivoError) as refused:
                    handle.score(*files)
                assert refused.value.code < 0 and (code is None or refused.value.code == code), path
                assert str(refused.value).startswith(path + ":"), str(refused.value)
        # Nothing of a refused capture lingers: the next one is judged as it is.
        assert handle.score(current, backlight, dark) == sentivo.Handle().score(current, backlight, dark)
