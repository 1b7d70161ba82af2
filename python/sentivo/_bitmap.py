"""Turning an image (a numpy array or a bitmap file) into the in-memory bitmap
the library takes: the info header, the palette and the pixels, without the
14-byte file header."""

import os
import struct

import numpy as np

from ._types import ERROR_BMP_NO_SIGNATURE, ERROR_FILE_OPEN_FAIL, SentivoError

WIDTH = 320
HEIGHT = 480
SHAPE = (HEIGHT, WIDTH)
FILE_HEADER_SIZE = 14
_PELS_PER_METRE_500_DPI = 19685

# A 40-byte info header for an uncompressed 8-bit 320 x 480 image at 500 dpi,
# positive height (rows as stored), 256 palette entries; then a grey palette.
_INFO_HEADER = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 8, 0, WIDTH * HEIGHT,
                           _PELS_PER_METRE_500_DPI, _PELS_PER_METRE_500_DPI, 256, 256)
_GREY_PALETTE = bytes(value for grey in range(256) for value in (grey, grey, grey, 0))


def block_from_array(image, what="image"):
    """The bitmap block of a (480, 320) uint8 array; row 0 is the first row of
    the block's pixels (the bottom row of the picture, as a bitmap stores it)."""
    if not isinstance(image, np.ndarray):
        raise TypeError("%s: expected a numpy array of shape %s and dtype uint8 or a bitmap path,"
                        " not %s" % (what, SHAPE, type(image).__name__))
    if image.dtype != np.uint8:
        raise TypeError("%s: expected dtype uint8, not %s" % (what, image.dtype))
    if image.shape != SHAPE:
        raise ValueError("%s: expected shape %s (rows, columns), not %s" % (what, SHAPE, image.shape))
    return _INFO_HEADER + _GREY_PALETTE + np.ascontiguousarray(image).tobytes()


def block_from_file(path):
    """The block behind the file header of a bitmap file. Whether the block
    itself is a usable image is the library's to judge."""
    try:
        with open(path, "rb") as file:
            data = file.read()
    except OSError as error:
        raise SentivoError(ERROR_FILE_OPEN_FAIL, "%s: %s" % (os.fsdecode(path), error.strerror)) from None
    if len(data) <= FILE_HEADER_SIZE or data[:2] != b"BM":
        raise SentivoError(ERROR_BMP_NO_SIGNATURE, "%s: not a bitmap file" % os.fsdecode(path))
    return data[FILE_HEADER_SIZE:]


def image_block(image, what="image"):
    """The block of an array or of a bitmap file given by its path."""
    if isinstance(image, (str, bytes, os.PathLike)):
        return block_from_file(image)
    return block_from_array(image, what)
