"""A handle judging captures: outcomes, the still-finger rule, settings, the
rate table and the handle's life."""

import pickle
import threading

import pytest

import sentivo
from conftest import CODES, FINGER_HALF_FAILURES, FINGER_HALF_PASSES, capture_files

FINGER_HALF_CODES = set(FINGER_HALF_FAILURES.values())


def test_outcomes_come_back_as_results_with_the_library_text():
    with sentivo.Handle() as handle:
        for name, code in FINGER_HALF_FAILURES.items():
            assert (name, handle.score(*capture_files(name)).code) == (name, code)
        skewed = handle.score(*capture_files("skewed"))
        assert skewed.message == "The fingerprint has to be placed straightly. Adjust finger placement."
        assert skewed.score is None and not skewed.is_live(0.0)
        # A well-placed finger passes the finger half; a score lies on the scale.
        for name in FINGER_HALF_PASSES:
            result = handle.score(*capture_files(name))
            assert result.code not in FINGER_HALF_CODES, (name, result)
            assert (0.0 <= result.score <= 100.0) if result.ok else result.score is None, result


def test_score_judges_a_still_finger_whatever_the_handle_saw_before():
    moving = CODES["ZRC_ERROR_BITMAP_NO_FINGER"]
    with sentivo.Handle() as handle:
        # A new handle has no earlier capture: the finger counts as moving.
        handle.set_capture(*capture_files("live_a"))
        assert handle.detect_finger().code == moving
        assert handle.detect_finger().ok
        # moving_2 is the finger of moving_1 36 rows lower.
        handle.set_capture(*capture_files("moving_1"))
        assert handle.detect_finger().ok
        handle.set_capture(*capture_files("moving_2"))
        assert handle.detect_finger().code == moving
        assert handle.score(*capture_files("moving_2")).code not in FINGER_HALF_CODES

    names = ["skewed", "moving_1", "live_a", "moving_2", "too_small", "live_b"]
    fresh = {}
    for name in names:
        with sentivo.Handle() as handle:
            fresh[name] = handle.score(*capture_files(name))
    with sentivo.Handle() as handle:
        for order in (names, names[::-1]):
            assert [handle.score(*capture_files(name)) for name in order] == [fresh[n] for n in order]


def test_settings_and_properties_reach_the_library():
    with sentivo.Handle(movement_detection=False, security_level=2) as handle:
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
        assert read_only.value.description == "The requested parameter is read only."


def test_threshold_follows_the_rate_table():
    # No fake gets through only at the top of the scale, no live finger is
    # turned away only at its bottom.
    assert sentivo.threshold(far=0.0).score == 100.0
    assert sentivo.threshold(frr=0.0).score == 0.0
    rates = [0.001, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5]
    rows = [sentivo.threshold(far=far) for far in rates]
    assert [row.far for row in rows] == rates  # the asked value is kept
    # Accepting more fakes lowers the threshold and rejects fewer live fingers.
    assert all(a.score >= b.score and a.frr >= b.frr for a, b in zip(rows, rows[1:]))
    assert rows[0].score > rows[-1].score
    low, high = sentivo.threshold(score=10.0), sentivo.threshold(score=90.0)
    assert low.far > high.far and low.frr < high.frr and high.score == 90.0

    with pytest.raises(TypeError, match="exactly one"):
        sentivo.threshold(far=0.1, frr=0.1)
    for bad in ({"far": -0.01}, {"frr": 1.5}, {"score": 101}, {"far": float("nan")}):
        with pytest.raises(ValueError, match=next(iter(bad))):
            sentivo.threshold(**bad)


def test_a_handle_lives_until_closed_and_stays_in_its_process():
    with sentivo.Handle() as handle:
        assert handle.evaluate().code == CODES["ZRC_ERROR_PARAM_IS_MISSING"]  # no images yet
        with pytest.raises(TypeError, match="worker"):
            pickle.dumps(handle)
    assert handle.closed
    handle.close()  # a second close is harmless
    for call in (handle.evaluate, lambda: handle.set_image(0, capture_files("live_a")[0])):
        with pytest.raises(sentivo.SentivoError, match="closed") as closed:
            call()
        assert closed.value.code == CODES["ZRC_ERROR_NO_HANDLE"]


def test_threads_with_own_or_shared_handles_agree_with_one_thread():
    names = ["live_a", "skewed", "moving_2", "too_small", "overexposed"] * 3
    with sentivo.Handle() as handle:
        expected = [handle.score(*capture_files(name)) for name in names]
    start = threading.Barrier(4)

    def on_four_threads(handle_for):
        outcomes = {}

        def work(worker):
            handle = handle_for()
            start.wait()
            outcomes[worker] = [handle.score(*capture_files(name)) for name in names]

        threads = [threading.Thread(target=work, args=(i,)) for i in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        return outcomes

    assert on_four_threads(sentivo.Handle) == {i: expected for i in range(4)}
    # One handle shared: slower, but each capture is still judged whole.
    with sentivo.Handle() as shared:
        assert on_four_threads(lambda: shared) == {i: expected for i in range(4)}
