"""A handle judging captures: outcomes, the still-finger rule, settings, the
rate table and the handle's life."""

import pickle
import threading

import pytest

import sentivo
from conftest import CODES, FINGER_HALF_FAILURES, FINGER_HALF_PASSES, capture_files

FINGER_HALF_CODES = set(FINGER_HALF_FAILURES.values())


def test_each_finger_half_failure_comes_back_with_its_code_and_the_library_text():
    with sentivo.Handle() as handle:
        for name, code in FINGER_HALF_FAILURES.items():
            result = handle.score(*capture_files(name))
            assert (name, result.code, result.score) == (name, code, None)
            assert not result.ok and not result.is_live(0.0)
        skewed = handle.score(*capture_files("skewed"))
    assert skewed.message == "The fingerprint has to be placed straightly. Adjust finger placement."


def test_a_well_placed_finger_passes_the_finger_half_and_a_score_lies_on_the_scale():
    with sentivo.Handle() as handle:
        for name in FINGER_HALF_PASSES:
            result = handle.score(*capture_files(name))
            assert result.code not in FINGER_HALF_CODES, (name, result)
            if result.ok:
                assert 0.0 <= result.score <= 100.0, (name, result)
                assert result.is_live(result.score) and not result.is_live(result.score + 1e-9)
            else:
                assert result.score is None, (name, result)


def test_score_judges_a_still_finger_whatever_the_handle_saw_before():
    moving = CODES["ZRC_ERROR_BITMAP_NO_FINGER"]
    with sentivo.Handle() as handle:
        # A new handle has no earlier capture: the finger counts as moving.
        handle.set_capture(*capture_files("live_a"))
        assert handle.detect_finger().code == moving
        assert handle.detect_finger().ok
        # The same finger 36 rows lower moved against the capture before it.
        handle.set_capture(*capture_files("moving_1"))
        assert handle.detect_finger().ok
        handle.set_capture(*capture_files("moving_2"))
        assert handle.detect_finger().code == moving
        # score() judges moving_2 as the second of two identical captures.
        assert handle.score(*capture_files("moving_2")).code not in FINGER_HALF_CODES

    names = ["skewed", "moving_1", "live_a", "moving_2", "too_small", "no_finger", "live_b"]
    fresh = {}
    for name in names:
        with sentivo.Handle() as handle:
            fresh[name] = handle.score(*capture_files(name))
    with sentivo.Handle() as handle:
        for order in (names, names[::-1]):
            assert [handle.score(*capture_files(name)) for name in order] == [fresh[n] for n in order]


def test_settings_reach_the_library():
    with sentivo.Handle(movement_detection=False, security_level=2) as handle:
        assert handle.get_property("bMovementDetection") == "False"
        assert handle.get_property("NSECURITYLEVEL") == "2"
        # Without the movement test the first detection of a new handle passes.
        handle.set_capture(*capture_files("live_a"))
        assert handle.detect_finger().ok
        handle.set_property("bMovementDetection", True)
        assert handle.get_property("bMovementDetection") == "True"
        assert handle.version == sentivo.version() == sentivo.__version__

        with pytest.raises(sentivo.SentivoError) as unknown:
            handle.get_property("dNoSuchThing")
        assert unknown.value.code == CODES["ZRC_ERROR_UNKNOWN_PARAMETER"]
        assert "dNoSuchThing" in str(unknown.value)
        with pytest.raises(sentivo.SentivoError) as read_only:
            handle.set_property("Version", "9.9")
        assert read_only.value.code == CODES["ZRC_ERROR_PARAM_IS_READONLY"]
        assert read_only.value.description == "The requested parameter is read only."


def test_threshold_follows_the_rate_table():
    # No fake gets through only at the top of the scale, no live finger is
    # turned away only at its bottom.
    assert sentivo.threshold(far=0.0).score == 100.0
    assert sentivo.threshold(frr=0.0).score == 0.0
    assert sentivo.threshold(far=1.0).score == 0.0

    rates = [0.001, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5]
    rows = [sentivo.threshold(far=far) for far in rates]
    assert [row.far for row in rows] == rates  # the asked value is kept
    assert all(0.0 <= row.score <= 100.0 and 0.0 <= row.frr <= 1.0 for row in rows)
    # Accepting more fakes lowers the threshold and rejects fewer live fingers.
    assert all(a.score >= b.score and a.frr >= b.frr for a, b in zip(rows, rows[1:]))
    assert rows[0].score > rows[-1].score

    by_score = [sentivo.threshold(score=s) for s in (10.0, 50.0, 90.0)]
    assert [row.score for row in by_score] == [10.0, 50.0, 90.0]
    assert by_score[0].far > by_score[1].far > by_score[2].far
    assert by_score[0].frr < by_score[1].frr < by_score[2].frr
    with sentivo.Handle() as handle:
        assert handle.threshold(frr=0.1).frr == 0.1

    for bad in ({}, {"far": 0.1, "frr": 0.1}):
        with pytest.raises(TypeError, match="exactly one"):
            sentivo.threshold(**bad)
    for bad in ({"far": -0.01}, {"frr": 1.5}, {"score": 101}, {"far": float("nan")}):
        with pytest.raises(ValueError, match=next(iter(bad))):
            sentivo.threshold(**bad)


def test_a_handle_lives_until_closed_and_stays_in_its_process():
    with sentivo.Handle() as handle:
        assert not handle.closed
    assert handle.closed
    handle.close()  # a second close is harmless
    for call in (handle.detect_finger, handle.evaluate, lambda: handle.get_property("Version"),
                 lambda: handle.set_image(0, capture_files("live_a")[0])):
        with pytest.raises(sentivo.SentivoError) as closed:
            call()
        assert closed.value.code == CODES["ZRC_ERROR_NO_HANDLE"] and "closed" in str(closed.value)
    with sentivo.Handle() as handle, pytest.raises(TypeError, match="worker"):
        pickle.dumps(handle)

    with sentivo.Handle() as handle:
        assert handle.evaluate().code == CODES["ZRC_ERROR_PARAM_IS_MISSING"]  # no images yet
        handle.set_capture(*capture_files("live_a"))
        handle.reset()
        assert handle.evaluate().code == CODES["ZRC_ERROR_PARAM_IS_MISSING"]


def test_an_error_survives_pickling_with_its_code_and_text():
    error = sentivo.SentivoError(CODES["ZRC_ERROR_FILE_OPEN_FAIL"], "a.bmp: No such file")
    copy = pickle.loads(pickle.dumps(error))
    assert (copy.code, copy.detail, copy.description, str(copy)) == (
        error.code, "a.bmp: No such file", "Failed to open the specified file.",
        "a.bmp: No such file: Failed to open the specified file. (code -200)")


def test_handles_on_several_threads_at_once_agree_with_one_handle_alone():
    names = ["live_a", "skewed", "moving_2", "too_small", "live_c", "overexposed"] * 3
    with sentivo.Handle() as handle:
        expected = [handle.score(*capture_files(name)) for name in names]
    outcomes = {}
    start = threading.Barrier(4)

    def run_four(work):
        threads = [threading.Thread(target=work, args=(i,)) for i in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def own_handle(worker):
        with sentivo.Handle() as own:
            start.wait()
            outcomes[worker] = [own.score(*capture_files(name)) for name in names]

    run_four(own_handle)
    assert outcomes == {i: expected for i in range(4)}

    # One handle shared: slower, but each capture is still judged whole.
    outcomes.clear()
    with sentivo.Handle() as shared:
        def shared_handle(worker):
            start.wait()
            outcomes[worker] = [shared.score(*capture_files(name)) for name in names]

        run_four(shared_handle)
    assert outcomes == {i: expected for i in range(4)}
