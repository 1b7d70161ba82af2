"""Where the package finds libsentivo.so, each way tried in a fresh interpreter
on a copy of the installed package."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

import sentivo

BUILT_LIBRARY = os.environ.get("SENTIVO_LIBRARY")
needs_library_path = pytest.mark.skipif(not BUILT_LIBRARY, reason="SENTIVO_LIBRARY is not set")
PROBE = "import sentivo\nprint('imported')\nprint(sentivo.library_path())\nprint(sentivo.version())\n"


def run_probe(package_root, library=None, loader_path=None):
    env = {key: value for key, value in os.environ.items()
           if key not in ("SENTIVO_LIBRARY", "LD_LIBRARY_PATH", "PYTHONPATH")}
    env["PYTHONPATH"] = str(package_root)
    if library is not None:
        env["SENTIVO_LIBRARY"] = library
    if loader_path is not None:
        env["LD_LIBRARY_PATH"] = loader_path
    done = subprocess.run([sys.executable, "-c", PROBE], env=env, cwd=str(package_root),
                          capture_output=True, text=True, timeout=60)
    return done.returncode, done.stdout.splitlines(), done.stderr


@pytest.fixture
def package_copy(tmp_path):
    """A copy of the installed package that a fresh interpreter imports first."""
    shutil.copytree(Path(sentivo.__file__).parent, tmp_path / "sentivo",
                    ignore=shutil.ignore_patterns("__pycache__", "*.so*"))
    return tmp_path


def test_the_suite_runs_on_the_installed_package():
    if os.environ.get("SENTIVO_EXPECT_INSTALLED") != "1":
        pytest.skip("run from the source folder")
    assert Path(sentivo.__file__).resolve().is_relative_to(Path(sys.prefix).resolve())


@needs_library_path
def test_the_library_is_found_next_to_the_package_and_the_variable_wins(package_copy):
    beside = package_copy / "sentivo" / "libsentivo.so"
    shutil.copyfile(BUILT_LIBRARY, beside)
    code, out, err = run_probe(package_copy)
    assert code == 0, err
    assert out == ["imported", str(beside), sentivo.__version__]

    code, out, err = run_probe(package_copy, library=BUILT_LIBRARY)
    assert code == 0, err
    assert out[1] == BUILT_LIBRARY


@needs_library_path
def test_the_loader_finds_the_library_on_its_path(package_copy):
    folder = str(Path(BUILT_LIBRARY).resolve().parent)
    assert (Path(folder) / "libsentivo.so.2").exists()
    code, out, err = run_probe(package_copy, loader_path=folder)
    assert code == 0, err
    assert out == ["imported", "libsentivo.so.2", sentivo.__version__]


def test_a_wrong_library_is_reported_on_first_use_not_on_import(package_copy, tmp_path):
    missing = str(tmp_path / "nowhere" / "libsentivo.so")
    code, out, err = run_probe(package_copy, library=missing)
    assert code != 0 and out == ["imported"]
    assert "OSError" in err and "SENTIVO_LIBRARY=" + missing in err

    # A shared library that is not this one: it lacks the functions.
    code, out, err = run_probe(package_copy, library="libm.so.6")
    assert code != 0 and out == ["imported"]
    assert "is not the sentivo library: it lacks Sentivo" in err
