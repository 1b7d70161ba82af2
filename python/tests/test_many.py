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

# Captures with outcomes that differ from their neighbours', so that a
# result out of place shows.
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


def test_every_form_of_a_capture_gives_the_same_result(expected):
    forms = [
        [str(capture(name)) for name in NAMES],
        [capture(name) for name in NAMES],
        [dict(zip(("dark", "current", "backlight"), (f[2], f[0], f[1])))
         for f in map(capture_files, NAMES)],
        [capture_arrays(name) for name in NAMES],
        (capture_files(name) for name in NAMES),  # any iterable
    ]
    for captures in forms:
        assert sentivo.score_many(captures) == expected
    assert [sentivo.score(*capture_files(name)) for name in NAMES] == expected

    with pytest.raises(KeyError, match="dark"):
        sentivo.score_many([{"current": "a.bmp", "backlight": "b.bmp"}])
    with pytest.raises(ValueError, match="three images"):
        sentivo.score_many([capture_files("live_a")[:2]])
    with pytest.raises(TypeError, match="int"):
        sentivo.score_many([7])
    with pytest.raises(ValueError, match="on_error"):
        sentivo.score_many([], on_error="ignore")


def test_settings_reach_every_worker():
    names = ["skewed", "live_a", "moving_2"]
    expected = []
    for name in names:
        # Without the movement test a new handle needs no earlier capture.
        with sentivo.Handle(security_level=2, movement_detection=False) as handle:
            handle.set_capture(*capture_files(name))
            expected.append(handle.evaluate())
    # The skew check belongs to the strict level only.
    assert expected[0] != sentivo.score(*capture_files("skewed"))
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for executor in (None, pool):
            assert sentivo.score_many(map(capture, names), executor, security_level=2,
                                      movement_detection=False) == expected
    assert [sentivo.score(*capture_files(n), security_level=2, movement_detection=False)
            for n in names] == expected


def test_thread_and_process_pools_keep_the_input_order(expected):
    captures = [capture_files(name) for name in NAMES]
    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        assert sentivo.score_many(captures, pool) == expected
        assert sentivo.score_many([capture_arrays(n) for n in NAMES], pool) == expected
    # The parent holds a handle of its own before it forks its workers.
    sentivo.score(*captures[0])
    for method in ("fork", "spawn"):
        context = multiprocessing.get_context(method)
        with concurrent.futures.ProcessPoolExecutor(2, mp_context=context) as pool:
            assert sentivo.score_many(captures, pool) == expected, method


def test_each_worker_thread_has_a_handle_of_its_own():
    settings = (None, None)
    start = threading.Barrier(4)

    def handle_of_this_thread(_):
        start.wait(timeout=30)  # all four threads at once
        return id(_many._thread_handle(settings))

    with concurrent.futures.ThreadPoolExecutor(4) as pool:
        seen = list(pool.map(handle_of_this_thread, range(4)))
    assert len(set(seen)) == 4
    assert _many._thread_handle(settings) is _many._thread_handle(settings)
    assert _many._thread_handle((2, None)) is not _many._thread_handle(settings)


def test_a_capture_that_cannot_be_read_stops_the_run_or_gets_its_own_result(tmp_path, expected):
    missing = str(tmp_path / "missing" / "current.bmp")
    current, backlight, dark = capture_files("live_a")
    captures = [capture_files(n) for n in NAMES[:3]] + [(missing, backlight, dark)] + \
        [capture_files(n) for n in NAMES[3:]]
    with concurrent.futures.ProcessPoolExecutor(2) as processes, \
            concurrent.futures.ThreadPoolExecutor(2) as threads:
        for executor in (None, threads, processes):
            with pytest.raises(sentivo.SentivoError) as stopped:
                sentivo.score_many(captures, executor)
            assert stopped.value.code == CODES["ZRC_ERROR_FILE_OPEN_FAIL"]
            assert missing in str(stopped.value)

            results = sentivo.score_many(captures, executor, on_error="result")
            refused = results.pop(3)
            assert results == expected
            assert refused.code == CODES["ZRC_ERROR_FILE_OPEN_FAIL"] and refused.score is None
            assert missing in refused.message


def test_a_dask_cluster_of_two_worker_processes_scores_like_one_thread(tmp_path, expected):
    distributed = pytest.importorskip("distributed")
    missing = str(tmp_path / "missing.bmp")
    with distributed.LocalCluster(n_workers=2, threads_per_worker=2, processes=True,
                                  dashboard_address=None, silence_logs=logging.ERROR) as cluster, \
            distributed.Client(cluster) as client:
        assert len(client.scheduler_info()["workers"]) == 2
        captures = [capture_files(name) for name in NAMES] * 3
        assert sentivo.score_many(captures, client) == expected * 3
        # Arrays travel to the workers too.
        assert sentivo.score_many([capture_arrays(n) for n in NAMES], client) == expected

        bad = [capture_files("live_a"), (missing,) + capture_files("live_a")[1:]]
        with pytest.raises(sentivo.SentivoError) as stopped:
            sentivo.score_many(bad, client)
        assert stopped.value.code == CODES["ZRC_ERROR_FILE_OPEN_FAIL"] and missing in str(stopped.value)
        kept = sentivo.score_many(bad, client, on_error="result")
        assert kept[0] == expected[1] and kept[1].code == CODES["ZRC_ERROR_FILE_OPEN_FAIL"]
