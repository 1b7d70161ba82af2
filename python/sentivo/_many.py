"""Scoring many captures, in this thread, on a concurrent.futures executor or
on a Dask distributed cluster, with one handle per worker thread."""

import functools
import os
import threading
from collections.abc import Mapping, Sequence

from ._handle import SLOTS, Handle
from ._types import Result, SentivoError

_ERROR_MODES = ("raise", "result")
_local = threading.local()


def _thread_handle(settings):
    """This thread's handle for these settings. A process made by fork finds
    its parent's handles in the thread's storage and makes its own instead."""
    if getattr(_local, "pid", None) != os.getpid():
        _local.pid = os.getpid()
        _local.handles = {}
    handle = _local.handles.get(settings)
    if handle is None:
        security_level, movement_detection = settings
        handle = Handle(security_level=security_level, movement_detection=movement_detection)
        _local.handles[settings] = handle
    return handle


def capture_images(capture):
    """(current, backlight, dark) of a capture given as a folder holding
    current.bmp, backlight.bmp and dark.bmp, as a mapping with those three
    keys, or as a sequence of three images (arrays or paths)."""
    if isinstance(capture, (str, bytes, os.PathLike)):
        folder = os.fsdecode(capture)
        return tuple(os.path.join(folder, slot + ".bmp") for slot in SLOTS)
    if isinstance(capture, Mapping):
        missing = [slot for slot in SLOTS if slot not in capture]
        if missing:
            raise KeyError("capture lacks %s" % ", ".join(missing))
        return tuple(capture[slot] for slot in SLOTS)
    if isinstance(capture, Sequence) or hasattr(capture, "__len__"):
        if len(capture) != 3:
            raise ValueError("a capture is three images (current, backlight, dark), not %d"
                             % len(capture))
        return tuple(capture)
    raise TypeError("a capture is a folder, a mapping or three images, not %s"
                    % type(capture).__name__)


def _score_one(capture, settings, on_error):
    images = capture_images(capture)
    try:
        return _thread_handle(settings).score(*images)
    except SentivoError as error:
        if on_error == "raise":
            raise
        return Result(error.code, str(error), None)


def score(current, backlight, dark, *, security_level=None, movement_detection=None):
    """Judges one capture (see Handle.score) on this thread's own handle."""
    return _thread_handle((security_level, movement_detection)).score(current, backlight, dark)


def _is_dask_client(executor):
    return type(executor).__module__.split(".")[0] == "distributed" and hasattr(executor, "gather")


def score_many(captures, executor=None, *, security_level=None, movement_detection=None,
               on_error="raise"):
    """Scores every capture and returns their Results in input order.

    captures: an iterable of captures (see capture_images). executor: None
    (this thread), a concurrent.futures executor (threads or processes), or a
    Dask distributed Client, the way to spread a large evaluation over many
    machines (paths must then be readable on every worker). Each worker thread
    uses a handle of its own.

    on_error: "raise" lets the first image that cannot be read or is refused
    raise its SentivoError; "result" gives that capture a Result with the
    error's code and a message naming the file, and goes on.
    """
    if on_error not in _ERROR_MODES:
        raise ValueError("on_error must be 'raise' or 'result', not %r" % (on_error,))
    job = functools.partial(_score_one, settings=(security_level, movement_detection),
                            on_error=on_error)
    captures = list(captures)
    if executor is None:
        return [job(capture) for capture in captures]
    if _is_dask_client(executor):
        futures = executor.map(job, captures, pure=False)
        return executor.gather(futures)
    return list(executor.map(job, captures))
