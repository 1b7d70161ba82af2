"""score_many: the same results in input order on every kind of executor,
one handle per worker thread, and a capture that cannot be read."""

import concurrent.futures
import logging
import multiprocessing
import threading

import pytest

import sentivo
from sentivo import _many
from conftest import CODES, capture, capture_arrays, capture_files

# Neighbours differ in outcome, so that a result out of place shows.
NAMES = ["skewed", "live_a", "too_small", "moving_2", "no_finger", "overexposed", "lower_empty",
         "live_b", "skewed", "moving_1", "too_small", "smooth_a"]


@pytest.fixture(scope="module")
def expected():
    """Each capture judged on a handle of its own."""
    results = []
    for name in NAMES:
        with sentivo.Handle() as handle:
            results.append(handle.score(*capture_files(name)))
    return results


def test_every_form_of_a_capture_and_every_setting_is_honoured(expected):
    mappings = [dict(zip(("dark", "current", "backlight"), (f[2], f[0], f[1])))
                for f in map(capture_files, NAMES)]
    for captures in ([str(capture(n)) for n in NAMES], map(capture, NAMES), mappings,
                     [capture_arrays(n) for n in NAMES]):
        assert sentivo.score_many(captures) == expected
    for bad, error in (([{"current": "a.bmp"}], KeyError), ([capture_files("live_a")[:2]], ValueError),
                       ([7], TypeError)):
        with pytest.raises(error):
            sentivo.score_many(bad)

    relaxed = []
    for name in ("skewed", "live_a"):
        # Without the movement test a new handle needs no earlier capture.
        with sentivo.Handle(security_level=2, movement_detection=False) as handle:
            handle.set_capture(*capture_files(name))
            relaxed.append(handle.evaluate())
    assert relaxed[0] != expected[0]  # the skew check belongs to the strict level
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        assert sentivo.score_many(map(capture, ("skewed", "live_a")), pool, security_level=2,
                                  movement_detection=False) == relaxed


def test_thread_and_process_pools_keep_the_input_order(expected):
    captures = [capture_files(name) for name in NAMES]
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert sentivo.score_many(captures, pool) == expected
    # The parent holds a handle of its own before it forks its workers.
    sentivo.score(*captures[0])
    for method in ("fork", "spawn"):
        context = multiprocessing.get_context(method)
        with concurrent.futures.ProcessPoolExecutor(2, mp_context=context) as pool:
            assert sentivo.score_many(captures, pool) == expected, method


def test_each_worker_thread_has_a_handle_of_its_own():
    start = threading.Barrier(4)

    def handle_of_this_thread(_):
        start.wait(timeout=30)  # all four threads at once
        return id(_many._thread_handle((None, None)))

    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert len(set(pool.map(handle_of_this_thread, range(4)))) == 4
    assert _many._thread_handle((None, None)) is _many._thread_handle((None, None))


def check_a_missing_file(executor, expected, missing):
    """The first unreadable capture stops the run, or gets its own result."""
    captures = [capture_files(n) for n in NAMES]
    captures.insert(3, (missing,) + captures[0][1:])
    with pytest.raises(sentivo.SentivoError) as stopped:
        sentivo.score_many(captures, executor)
    assert stopped.value.code == CODES["ZRC_ERROR_FILE_OPEN_FAIL"] and missing in str(stopped.value)
    results = sentivo.score_many(captures, executor, on_error="result")
    refused = results.pop(3)
    assert results == expected
    assert (refused.code, refused.score) == (CODES["ZRC_ERROR_FILE_OPEN_FAIL"], None)
    assert missing in refused.message


def test_a_capture_that_cannot_be_read_in_this_thread_or_in_a_process(tmp_path, expected):
    check_a_missing_file(None, expected, str(tmp_path / "missing.bmp"))
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        check_a_missing_file(pool, expected, str(tmp_path / "missing.bmp"))
    with pytest.raises(ValueError, match="on_error"):
        sentivo.score_many([], on_error="ignore")


def test_a_dask_cluster_of_two_worker_processes_scores_like_one_thread(tmp_path, expected):
    distributed = pytest.importorskip("distributed")
    with distributed.LocalCluster(n_workers=2, threads_per_worker=2, processes=True,
                                  dashboard_address=None, silence_logs=logging.ERROR) as cluster, \
            distributed.Client(cluster) as client:
        assert len(client.scheduler_info()["workers"]) == 2
        captures = [capture_files(name) for name in NAMES] * 3
        assert sentivo.score_many(captures, client) == expected * 3
        assert sentivo.score_many([capture_arrays(n) for n in NAMES], client) == expected
        check_a_missing_file(client, expected, str(tmp_path / "missing.bmp"))
