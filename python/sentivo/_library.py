"""Finding and loading libsentivo.so, and the prototypes of its C interface.

The library is looked for, in this order:

1. the file named by the environment variable ``SENTIVO_LIBRARY`` (when it is
   set, nothing else is tried, so that a wrong path is reported, not hidden);
2. ``libsentivo.so`` or ``libsentivo.so.2`` in the package's own folder;
3. ``libsentivo.so.2``, then ``libsentivo.so``, through the system's loader
   (``LD_LIBRARY_PATH``, the ldconfig cache, the standard folders).

The library is loaded on first use, so that ``import sentivo`` works without it.
"""

import ctypes
import os
import threading
from pathlib import Path

ENVIRONMENT_VARIABLE = "SENTIVO_LIBRARY"
_LOADER_NAMES = ("libsentivo.so.2", "libsentivo.so")

_c_uint32_p = ctypes.POINTER(ctypes.c_uint32)
_c_double_p = ctypes.POINTER(ctypes.c_double)
_c_void_p_p = ctypes.POINTER(ctypes.c_void_p)

# name: (argument types); every function but the description returns int32.
_PROTOTYPES = {
    "SentivoInitialize": (ctypes.c_void_p,),
    "SentivoUninitialize": (),
    "SentivoCreateHandle": (_c_void_p_p,),
    "SentivoDestroyHandle": (_c_void_p_p,),
    "SentivoReset": (ctypes.c_void_p,),
    "SentivoSetImage": (ctypes.c_void_p, ctypes.c_int32, ctypes.c_void_p, ctypes.c_uint32),
    "SentivoDetectFinger": (ctypes.c_void_p,),
    "SentivoDetectFake": (ctypes.c_void_p, _c_double_p),
    "SentivoEvaluateLiveliness": (ctypes.c_void_p, _c_double_p),
    "SentivoSetPropertyA": (ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p),
    "SentivoGetPropertyA": (ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p, _c_uint32_p),
}

_lock = threading.Lock()
_library = None
_library_path = None


def _candidates():
    """(what to pass to dlopen, how it was found) in the order of the lookup."""
    from_environment = os.environ.get(ENVIRONMENT_VARIABLE)
    if from_environment:
        return [(from_environment, ENVIRONMENT_VARIABLE + "=" + from_environment)]
    here = Path(__file__).resolve().parent
    found = [(str(here / name), "next to the package") for name in ("libsentivo.so", "libsentivo.so.2")
             if (here / name).exists()]
    return found + [(name, "the loader") for name in _LOADER_NAMES]


def _bind(library, origin):
    for name, argtypes in _PROTOTYPES.items():
        try:
            function = getattr(library, name)
        except AttributeError:
            raise OSError("%s is not the sentivo library: it lacks %s" % (origin, name)) from None
        function.argtypes = argtypes
        function.restype = ctypes.c_int32
    try:
        describe = library.SentivoGetErrorDescriptionA
    except AttributeError:
        raise OSError("%s is not the sentivo library: it lacks SentivoGetErrorDescriptionA"
                      % origin) from None
    describe.argtypes = (ctypes.c_int32,)
    describe.restype = ctypes.c_char_p


def load():
    """The loaded library; raises OSError saying where it looked."""
    global _library, _library_path
    with _lock:
        if _library is not None:
            return _library
        failures = []
        for path, origin in _candidates():
            try:
                library = ctypes.CDLL(path)
            except OSError as error:
                failures.append("%s (%s)" % (origin, error))
                continue
            _bind(library, origin)
            _library, _library_path = library, path
            return library
        raise OSError("libsentivo.so not found; tried " + "; ".join(failures) +
                      ". Set %s to the library's path, put it next to the package, or on the"
                      " loader's path (LD_LIBRARY_PATH)." % ENVIRONMENT_VARIABLE)


def library_path():
    """What the library was loaded from: a path, or a name the loader resolved."""
    load()
    return _library_path


def describe(code):
    """The library's description of an error code."""
    text = load().SentivoGetErrorDescriptionA(int(code))
    return text.decode("utf-8", errors="replace") if text else ""
