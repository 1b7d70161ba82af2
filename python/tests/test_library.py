"""Where the package finds libsentivo.so, each way tried in a fresh interpreter
on a copy of the installed package."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

import sentivo

BUILT = os.environ.get("SENTIVO_LIBRARY")


def probe(package_root, **env_changes):
    """Imports the copy, then loads the library: (exit status, output lines, errors)."""
    env = {k: v for k, v in os.environ.items() if k not in ("SENTIVO_LIBRARY", "LD_LIBRARY_PATH")}
    env.update(env_changes, PYTHONPATH=str(package_root))
    script = "import sentivo\nprint('imported')\nprint(sentivo.library_path())\nprint(sentivo.version())"
    done = subprocess.run([sys.executable, "-c", script], env=env, cwd=str(package_root),
                          capture_output=True, text=True, timeout=60)
    return done.returncode, done.stdout.splitlines(), done.stderr


@pytest.fixture
def package_copy(tmp_path):
    shutil.copytree(Path(sentivo.__file__).parent, tmp_path / "sentivo",
                    ignore=shutil.ignore_patterns("__pycache__", "*.so*"))
    return tmp_path


@pytest.mark.skipif(not BUILT, reason="SENTIVO_LIBRARY is not set")
def test_the_variable_wins_then_the_package_folder_then_the_loader(package_copy):
    beside = package_copy / "sentivo" / "libsentivo.so"
    assert probe(package_copy, LD_LIBRARY_PATH=str(Path(BUILT).parent)) == (
        0, ["imported", "libsentivo.so.2", sentivo.__version__], "")
    shutil.copyfile(BUILT, beside)
    assert probe(package_copy) == (0, ["imported", str(beside), sentivo.__version__], "")
    assert probe(package_copy, SENTIVO_LIBRARY=BUILT)[1][1] == BUILT


def test_a_wrong_library_is_reported_on_first_use_not_on_import(package_copy, tmp_path):
    missing = str(tmp_path / "nowhere" / "libsentivo.so")
    code, out, err = probe(package_copy, SENTIVO_LIBRARY=missing)
    assert code != 0 and out == ["imported"] and "OSError" in err and "SENTIVO_LIBRARY=" + missing in err
    # A shared library that is not this one lacks the functions.
    code, out, err = probe(package_copy, SENTIVO_LIBRARY="libm.so.6")
    assert code != 0 and out == ["imported"] and "is not the sentivo library: it lacks Sentivo" in err


def test_the_suite_runs_on_the_installed_package():
    if os.environ.get("SENTIVO_EXPECT_INSTALLED") != "1":
        pytest.skip("run from the source folder")
    assert Path(sentivo.__file__).resolve().is_relative_to(Path(sys.prefix).resolve())
