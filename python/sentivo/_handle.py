"""A detector handle of the library, and the rate-table queries."""

import ctypes
import math
import os
import threading
import weakref

from . import _library
from ._bitmap import image_block
from ._types import ERROR_NO_HANDLE, ERROR_TEMPLATE_SIZE, SUCCESS, Result, SentivoError, Threshold

SLOTS = ("current", "backlight", "dark")
_QUERIES = {"far": "dQueryFAR", "frr": "dQueryFRR", "score": "dQueryScore"}
_QUERY_RANGES = {"far": (0.0, 1.0), "frr": (0.0, 1.0), "score": (0.0, 100.0)}


def _release(library, pointer):
    # Runs once, from close() or when the handle is collected.
    library.SentivoDestroyHandle(ctypes.byref(pointer))
    library.SentivoUninitialize()


def _check(code, detail=None):
    if code != SUCCESS:
        raise SentivoError(code, detail)


class Handle:
    """One detector with its own images and settings.

    A handle serves one thread at a time (calls from several threads wait for
    each other, so sharing one costs the parallelism); give each thread or
    worker process its own. Use it as a
    context manager, or call close(); a handle that is collected is closed.

    security_level sets the property nSecurityLevel (1 strict, any other value
    relaxed); movement_detection sets bMovementDetection. None keeps the
    library's setting.
    """

    def __init__(self, *, security_level=None, movement_detection=None):
        library = _library.load()
        _check(library.SentivoInitialize(None))
        pointer = ctypes.c_void_p()
        code = library.SentivoCreateHandle(ctypes.byref(pointer))
        if code != SUCCESS:
            library.SentivoUninitialize()
            raise SentivoError(code)
        self._library = library
        self._pointer = pointer
        self._lock = threading.RLock()
        self._finalizer = weakref.finalize(self, _release, library, pointer)
        if security_level is not None:
            self.set_property("nSecurityLevel", str(int(security_level)))
        if movement_detection is not None:
            self.set_property("bMovementDetection", "True" if movement_detection else "False")

    def __enter__(self):
        return self

    def __exit__(self, *exc_info):
        self.close()

    def __reduce__(self):
        raise TypeError("a sentivo.Handle belongs to the process that made it; "
                        "create one in each worker instead of sending it")

    def close(self):
        """Frees the handle; later calls raise SentivoError. Closing twice is harmless."""
        with self._lock:
            self._finalizer()

    @property
    def closed(self):
        return not self._finalizer.alive

    def _call(self, name, *args):
        """Runs one library function on this handle under its lock; returns the code."""
        with self._lock:
            if not self._finalizer.alive:
                raise SentivoError(ERROR_NO_HANDLE, "the handle is closed")
            return getattr(self._library, name)(self._pointer, *args)

    # Images

    def set_image(self, index, image):
        """Puts an image into slot index (0 current, 1 backlight, 2 dark): a
        (480, 320) uint8 array, rows as stored, or a bitmap file's path. None
        empties the slot."""
        if index not in (0, 1, 2):
            raise ValueError("image index must be 0 (current), 1 (backlight) or 2 (dark), not %r"
                             % (index,))
        if image is None:
            _check(self._call("SentivoSetImage", index, None, 0))
            return
        is_path = isinstance(image, (str, bytes, os.PathLike))
        what = os.fsdecode(image) if is_path else "%s image" % SLOTS[index]
        # A writable copy: the library rewrites the palette of the block it gets.
        data = image_block(image, what)
        block = ctypes.create_string_buffer(data, len(data))
        _check(self._call("SentivoSetImage", index, block, len(block)), what)

    def set_capture(self, current, backlight, dark):
        """Puts the three images of one capture into their slots."""
        for index, image in enumerate((current, backlight, dark)):
            if image is None:
                raise TypeError("%s image: expected a numpy array of shape (480, 320) and dtype"
                                " uint8 or a bitmap path, not None" % SLOTS[index])
            self.set_image(index, image)

    def reset(self):
        """Drops the images; settings and the last finger detection stay."""
        _check(self._call("SentivoReset"))

    # Detection: the outcome of a detection is a Result, whatever its code.

    def _result(self, code, score=None):
        return Result(code, _library.describe(code), score if code == SUCCESS else None)

    def detect_finger(self):
        """Whether a finger lies on the platen, still (against the previous
        detection on this handle) and in a usable place."""
        return self._result(self._call("SentivoDetectFinger"))

    def detect_fake(self):
        """The fake half alone, on a finger the last detection found."""
        score = ctypes.c_double(0.0)
        return self._result(self._call("SentivoDetectFake", ctypes.byref(score)), score.value)

    def evaluate(self):
        """Both halves in one pass."""
        score = ctypes.c_double(0.0)
        return self._result(self._call("SentivoEvaluateLiveliness", ctypes.byref(score)), score.value)

    def score(self, current, backlight, dark):
        """Judges one capture as a scanner sees a still finger: the finger
        detection once, then the evaluation, as the second of two identical
        captures, so that a still capture passes the movement test. Earlier
        captures on this handle do not matter."""
        with self._lock:  # the steps of one capture stay together on a shared handle
            self.set_capture(current, backlight, dark)
            self.detect_finger()
            return self.evaluate()

    # Properties

    def get_property(self, name):
        """A property's value as text (names ignore letter case)."""
        encoded = name.encode()
        size = ctypes.c_uint32(0)
        while True:
            buffer = ctypes.create_string_buffer(size.value) if size.value else None
            code = self._call("SentivoGetPropertyA", encoded, buffer, ctypes.byref(size))
            if code == SUCCESS:
                return buffer.value.decode("utf-8", errors="replace")
            if code != ERROR_TEMPLATE_SIZE or size.value == 0:  # too small: size tells the need
                raise SentivoError(code, "property %s" % name)

    def set_property(self, name, value):
        """Sets a property from its text (numbers and True/False as the library reads them)."""
        if isinstance(value, bool):
            value = "True" if value else "False"
        elif isinstance(value, float):
            value = repr(value)
        _check(self._call("SentivoSetPropertyA", name.encode(), str(value).encode()),
               "property %s = %s" % (name, value))

    @property
    def version(self):
        return self.get_property("Version")

    def threshold(self, *, far=None, frr=None, score=None):
        """The rate-table row for one wanted value: a false acceptance rate
        (far, a fraction: 0.01 = 1 %), a false rejection rate (frr) or a score
        threshold. A capture is judged live when its score is at least the
        row's score."""
        given = {key: value for key, value in (("far", far), ("frr", frr), ("score", score))
                 if value is not None}
        if len(given) != 1:
            raise TypeError("threshold() takes exactly one of far=, frr= or score=")
        (key, value), = given.items()
        value = float(value)
        low, high = _QUERY_RANGES[key]
        if not (math.isfinite(value) and low <= value <= high):
            raise ValueError("%s must lie between %g and %g, not %r" % (key, low, high, value))
        self.set_property(_QUERIES[key], value)
        return Threshold(*(float(self.get_property(_QUERIES[name])) for name in ("score", "far", "frr")))


def version():
    """The library's version text."""
    with Handle() as handle:
        return handle.version


def threshold(*, far=None, frr=None, score=None):
    """Handle.threshold on a handle of its own."""
    with Handle() as handle:
        return handle.threshold(far=far, frr=frr, score=score)
