"""Liveness detection for optical fingerprint captures: Python bindings of
libsentivo over its C interface.

    import sentivo
    result = sentivo.score("current.bmp", "backlight.bmp", "dark.bmp")
    print(result.code, result.message, result.score)

Images are bitmap file paths or numpy arrays of shape (480, 320), dtype uint8,
rows as a bitmap stores them (row 0 is the bottom row of the picture).
"""

from ._handle import Handle, threshold, version
from ._library import library_path
from ._many import capture_images, score, score_many
from ._types import Result, SentivoError, Threshold

__version__ = "2.0.1012.0"

__all__ = [
    "Handle",
    "Result",
    "SentivoError",
    "Threshold",
    "capture_images",
    "library_path",
    "score",
    "score_many",
    "threshold",
    "version",
]
