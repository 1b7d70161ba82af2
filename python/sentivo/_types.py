"""What the package hands back: a capture's result, a threshold, and its error."""

from dataclasses import dataclass
from typing import NamedTuple, Optional

from . import _library

# The codes of sentivo_errors.h that the package itself raises.
SUCCESS = 0
ERROR_TEMPLATE_SIZE = -21
ERROR_NO_HANDLE = -42
ERROR_FILE_OPEN_FAIL = -200
ERROR_BMP_NO_SIGNATURE = -210


class SentivoError(Exception):
    """A library call failed, or a capture's image could not be handed over.

    ``code`` is the library's error code (negative), ``description`` its text
    in the library, ``detail`` what failed (a file, a property), or None.
    """

    def __init__(self, code, detail=None, description=None):
        self.code = int(code)
        self.detail = detail
        self.description = _library.describe(code) if description is None else description
        super().__init__(self.code, detail)

    def __str__(self):
        text = "%s (code %d)" % (self.description, self.code)
        return "%s: %s" % (self.detail, text) if self.detail else text

    def __reduce__(self):
        # Carries the description along, so that a process that never loaded
        # the library (a Dask client) can still unpickle it.
        return (SentivoError, (self.code, self.detail, self.description))


@dataclass(frozen=True)
class Result:
    """The outcome of one detection: the library's code and description, and
    the liveness score from 0 to 100 (higher = more live), None without one."""

    code: int
    message: str
    score: Optional[float] = None

    @property
    def ok(self):
        return self.code == SUCCESS

    def is_live(self, threshold):
        """Whether the capture scored at least the threshold (a number, or a
        Threshold as ``sentivo.threshold`` gives it)."""
        limit = threshold.score if isinstance(threshold, Threshold) else threshold
        return self.score is not None and self.score >= limit


class Threshold(NamedTuple):
    """A row of the library's rate table: the score threshold and the false
    acceptance and false rejection rates (fractions) that go with it."""

    score: float
    far: float
    frr: float
