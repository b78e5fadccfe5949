"""Scenes of ground points from Python."""

from __future__ import annotations

import _thread
import signal
import threading
import time
import tracemalloc
from typing import Any

import numpy as np
import pytest
import vorbel
from numpy.typing import NDArray
from vorbel import CVorbel, LookSide, Orbit, Status, beam_to_ground, pixel_to_ground

ALL = ("latitude", "longitude", "height", "x", "y", "z", "incidence", "look_angle", "azimuth", "range_rate", "status")


def spread(*shapes: tuple[int, ...]) -> list[NDArray[np.float64]]:
    """Times, ranges, rates and heights of these shapes, all different."""
    between = ((20.0, 100.0), (790e3, 900e3), (-50.0, 50.0), (-100.0, 8000.0))
    return [np.linspace(*ends, int(np.prod(shape))).reshape(shape) for ends, shape in zip(between, shapes)]


@pytest.mark.parametrize("block", [1 << 20, 100, 7])
@pytest.mark.parametrize(
    "shapes",
    [
        ((9, 1), (40,), (), (9, 40)),
        ((40,), (9, 1), (40,), (9, 1)),
        ((40,), (40,), (40,), (1,)),
        ((9, 40), (40,), (9, 1), ()),
        ((3, 2, 1), (40,), (2, 1), (3, 1, 40)),
        ((), (), (), ()),
        ((5, 1), (0,), (), ()),
    ],
)
def test_every_way_to_broadcast_means_the_same(
    orbit: Orbit, monkeypatch: pytest.MonkeyPatch, shapes: tuple[tuple[int, ...], ...], block: int
) -> None:
    arrays = spread(*shapes)
    monkeypatch.setattr(vorbel._blocks, "BLOCK", block)
    calls: list[tuple[Any, tuple[str, str]]] = [
        (pixel_to_ground, ("range_rate", "height")),
        (beam_to_ground, ("yaw", "height")),
    ]
    for function, names in calls:
        scene = function(orbit, *arrays[:2], side="left", outputs=ALL, threads=2, **dict(zip(names, arrays[2:])))
        assert scene.shape == np.broadcast_shapes(*shapes)
        whole = np.broadcast_arrays(*arrays)
        for index in np.ndindex(scene.shape):
            when, distance, third, height = (float(array[index]) for array in whole)
            one = function(orbit, when, distance, side="left", outputs=ALL, **{names[0]: third, names[1]: height})
            for name in ALL:
                assert np.array_equal(getattr(scene, name)[index], getattr(one, name), equal_nan=True), (index, name)


def test_points_are_those_of_the_class(trajectory: CVorbel, orbit: Orbit) -> None:
    end = trajectory.getVector().time
    for side, sign in ((LookSide.left, 1), (LookSide.right, -1)):
        there = trajectory.GeoProssess(end - 60.0, 850.0, 0.02, sign)
        here = pixel_to_ground(orbit, 60.0, 850e3, range_rate=20.0, side=side, outputs=ALL)
        assert [here.x, here.y, here.z] == pytest.approx([1e3 * there.x, 1e3 * there.y, 1e3 * there.z], abs=0.02)
        # the latitude of the class is of first order in the flattening
        assert here.latitude == pytest.approx(there.lat, abs=1e-6)
        assert here.longitude % 360.0 == pytest.approx(there.lon, abs=1e-7)

        angles = np.array([1.5, -2.0, 0.5])
        pitch, yaw, roll = np.radians(angles)
        beam = beam_to_ground(orbit, 60.0, 850e3, side=side, pitch=1.5, yaw=-2.0, roll=0.5, outputs=ALL)
        point = trajectory.GeoLocation(end - 60.0, 850.0, sign, pitch, yaw, roll)
        assert [beam.x, beam.y, beam.z] == pytest.approx([1e3 * point.x, 1e3 * point.y, 1e3 * point.z], abs=0.02)
        rate = 1e3 * trajectory.centroid(end - 60.0, 850.0, pitch, yaw, roll, sign)
        assert beam.range_rate == pytest.approx(rate, abs=1e-4)
        centroid = vorbel.doppler_centroid(orbit, 60.0, 850e3, side=side, pitch=1.5, yaw=-2.0, roll=0.5)
        assert centroid.range_rate == beam.range_rate
    assert vorbel.doppler_frequency(vorbel.range_rate([-100.0, 5.0], 0.0555), 0.0555) == pytest.approx([-100.0, 5.0])
    assert vorbel.range_rate(100.0, 0.0555) < 0.0


def test_a_bad_point_says_why_and_spoils_no_neighbour(orbit: Orbit) -> None:
    when = np.array([50.0, 50.0, 50.0, 500.0, np.nan, 50.0])
    distance = np.array([850e3, 300e3, 5000e3, 850e3, 850e3, np.inf])
    points = pixel_to_ground(orbit, when, distance, side="right", outputs=ALL)
    reasons = [Status.range_too_short, Status.beyond_horizon, Status.outside_orbit, Status.bad_input, Status.bad_input]
    assert points.status.tolist() == [Status.ok, *reasons]
    for name in ALL[:-1]:
        assert np.isnan(getattr(points, name)).tolist() == [False] + 5 * [True]
    missing = pixel_to_ground(orbit, np.array(["2022-04-14T10:23", "NaT"], "M8[s]"), 850e3, side="right")
    assert missing.status.tolist() == [Status.ok, Status.bad_input]


def test_bad_calls_are_told_in_a_sentence(orbit: Orbit) -> None:
    good: dict[str, Any] = {"time": 50.0, "slant_range": 850e3, "side": "right"}
    for error, sentence, change in (
        (
            ValueError,
            r"time \(3, 1\), slant_range \(4, 2\)",
            {"time": np.zeros((3, 1)), "slant_range": np.ones((4, 2))},
        ),
        (ValueError, "'left' or to the 'right', not to 'down'", {"side": "down"}),
        (ValueError, "no output 'lat'", {"outputs": ("lat",)}),
        (ValueError, "no output is asked", {"outputs": ()}),
        (ValueError, "threads is 0", {"threads": -1}),
        (TypeError, "height must be real", {"height": "sea"}),
        (TypeError, "slant_range must be real", {"slant_range": 1j}),
    ):
        with pytest.raises(error, match=sentence):
            pixel_to_ground(orbit, **{**good, **change})
    with pytest.raises(AttributeError, match="'azimuth' was not computed"):
        _ = pixel_to_ground(orbit, **good).azimuth


def test_a_call_needs_no_memory_beside_its_results(orbit: Orbit) -> None:
    lines, samples = 1000, 2000
    when, distance = np.linspace(10.0, 90.0, lines)[:, None], np.linspace(800e3, 900e3, samples)
    height = np.zeros((lines, samples))
    tracemalloc.start()
    pixel_to_ground(orbit, when, distance, height=height, side="right", outputs=("latitude", "status"))
    results = lines * samples * 9
    assert tracemalloc.get_traced_memory()[1] < results + 300_000
    tracemalloc.stop()


def test_others_run_meanwhile_and_ctrl_c_is_heard(orbit: Orbit) -> None:
    scene: Any = (np.linspace(10.0, 90.0, 20_000)[:, None], np.linspace(800e3, 900e3, 20_000))

    def interrupt() -> None:
        for _ in range(200):
            time.sleep(0.001)
        _thread.interrupt_main()

    other = threading.Thread(target=interrupt)
    # a shell lets what it runs in the background ignore it
    before = signal.signal(signal.SIGINT, signal.default_int_handler)
    begin = time.process_time()
    other.start()
    try:
        with pytest.raises(KeyboardInterrupt):
            pixel_to_ground(orbit, *scene, side="right", outputs=("status",))
    finally:
        signal.signal(signal.SIGINT, before)
    # while a block held the interpreter, the other thread would wait for its end after every tick
    assert time.process_time() - begin < 5.0
    other.join()


def test_points_are_found_again(orbit: Orbit, monkeypatch: pytest.MonkeyPatch) -> None:
    when, distance, rate, height = spread((6, 1), (8,), (8,), (6, 8))
    kinds: list[tuple[Any, Any]] = [
        (rate, rate),
        (-20.0 + 1e-4 * (distance - 800e3), vorbel.DopplerPolynomial([-20.0, 1e-4], 800e3)),
    ]
    for side in ("left", "right"):
        for rates, same in kinds:
            ground = pixel_to_ground(orbit, when, distance, side=side, range_rate=rates, height=height, outputs=ALL)
            monkeypatch.setattr(vorbel._blocks, "BLOCK", 20)
            outputs = ("time", "slant_range", "range_rate", "side", "status")
            calls: list[tuple[Any, tuple[NDArray[np.float64], ...]]] = [
                (vorbel.ground_to_pixel, (ground.latitude, ground.longitude, ground.height)),
                (vorbel.cartesian_to_pixel, (ground.x, ground.y, ground.z)),
            ]
            for function, points in calls:
                found = function(orbit, *points, side=None, range_rate=same, outputs=outputs, threads=2)
                assert (found.status == Status.ok).all()
                assert (found.side == LookSide[side]).all()
                assert found.time == pytest.approx(np.broadcast_to(when, (6, 8)), abs=2e-9)
                assert found.slant_range == pytest.approx(np.broadcast_to(distance, (6, 8)), abs=2e-6)
                assert found.range_rate == pytest.approx(np.broadcast_to(rates, (6, 8)), abs=1e-6)
    point = (float(ground.latitude[0, 0]), float(ground.longitude[0, 0]))
    assert vorbel.ground_to_pixel(orbit, *point, side="left").status == Status.wrong_side
    assert vorbel.ground_to_pixel(orbit, *point, side=None, not_before=orbit.datetime64(119.0)).status != Status.ok
    maps = vorbel.ground_to_pixel(
        orbit, np.linspace(50.0, 51.0, 3)[:, None], np.linspace(-62.0, -61.0, 4), side="right"
    )
    assert maps.shape == (3, 4)
