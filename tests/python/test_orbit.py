"""Orbits and instants from Python."""

from __future__ import annotations

import copy
import datetime
import pickle

import numpy as np
import pytest
from numpy.typing import NDArray
from vorbel import CVorbel, Instant, Orbit, Status

Vectors = tuple[NDArray[np.datetime64], NDArray[np.float64]]


def test_states_are_those_of_the_trajectory(trajectory: CVorbel, orbit: Orbit) -> None:
    times = np.arange(2.5, 120.0, 5.0).reshape(4, 6)
    states = orbit.at(times)
    assert states.shape == (4, 6)
    for index in np.ndindex(4, 6):
        there = trajectory.Lagrange(trajectory.getVector().time - (120.0 - times[index]), 7)
        # the scale of the class resolves 5e-7 s, 3.6 mm of flight
        assert states.x[index] == pytest.approx(1000.0 * there.x, abs=5e-3)
        assert states.vz[index] == pytest.approx(1000.0 * there.vz, abs=1e-5)
    outside = orbit.at([-1.0, 60.0, np.nan])
    assert outside.status.tolist() == [Status.outside_orbit, Status.ok, Status.bad_input]
    assert np.isnan(outside.vy).tolist() == [True, False, True]


def test_vectors_come_in_any_form(vectors: Vectors, orbit: Orbit) -> None:
    times, states = vectors
    position, velocity = states[:, :3], states[:, 3:]
    probe = orbit.at([3.0, 77.0])
    same = [
        Orbit.from_vectors(times[::-1], position[::-1], velocity[::-1]),
        Orbit.from_vectors([str(time) for time in times], position.tolist(), velocity.tolist()),
        Orbit.from_vectors([Instant.parse(str(time)) for time in times], position, velocity),
        Orbit.from_vectors(np.arange(0, 121, 10), position, velocity, epoch=times[0]),
        pickle.loads(pickle.dumps(orbit)),
        copy.deepcopy(orbit),
    ]
    for other in same:
        assert other.epoch == orbit.epoch
        assert other.span == other.covered == (0.0, 120.0)
        assert np.array_equal(other.at([3.0, 77.0]).y, probe.y)
    later = Orbit.from_vectors(times, position, velocity, epoch="2022-04-14T10:22:17.036420")
    assert later.span == (-10.0, 110.0)

    for error, sentence, arguments in (
        (ValueError, "as many times as states", (times[:5], position, velocity)),
        (ValueError, r"positions have shape \(n, 3\)", (times, states, velocity)),
        (ValueError, "need the epoch", (np.arange(13.0), position, velocity)),
        (ValueError, "NaT", (np.where(times == times[3], np.datetime64("NaT"), times), position, velocity)),
        (ValueError, "two", (times[:1], position[:1], velocity[:1])),
        (ValueError, "two", (np.array([], "M8[s]"), np.empty((0, 3)), np.empty((0, 3)))),
        (TypeError, "velocities must be real", (times, position, velocity.astype(str))),
    ):
        with pytest.raises(error, match=sentence):
            Orbit.from_vectors(*arguments)


def test_orbits_come_from_one_vector_and_from_the_class(trajectory: CVorbel, vectors: Vectors, orbit: Orbit) -> None:
    times, states = vectors
    probes = np.array([1.0, 61.0, 119.0])
    read = Orbit.from_trajectory(trajectory)
    single = Orbit.propagated(times[6], states[6, :3], states[6, 3:], before=60.0, after=70.0)
    longer = orbit.extended(5.0, 60.0)
    assert single.span == single.covered == (-60.0, 70.0)
    assert longer.span == (-5.0, 180.0)
    assert longer.covered == (0.0, 120.0)
    assert read.epoch.since(orbit.epoch) == pytest.approx(120.0, abs=1e-6)
    for other, epoch in ((read, 120.0), (single, 60.0), (longer, 0.0), (pickle.loads(pickle.dumps(longer)), 0.0)):
        # three ways through the same force model
        assert other.at(probes - epoch).x == pytest.approx(orbit.at(probes).x, abs=0.02)
    for one in (read, single):
        again = pickle.loads(pickle.dumps(one))
        assert np.array_equal(again.at([-3.0]).x, one.at([-3.0]).x)
    with pytest.raises(ValueError, match=r"shape \(3,\)"):
        Orbit.propagated(times[0], states[0], states[0], before=1.0, after=1.0)
    with pytest.raises(ValueError, match="propagated"):
        Orbit.from_trajectory(CVorbel())


def test_instants_keep_more_than_nanoseconds(orbit: Orbit) -> None:
    fine = "2022-04-14T10:22:07.036420000001"
    state = [7e6, 0.0, 0.0], [0.0, 1e3, 7.4e3]
    epoch = Orbit.propagated(fine, *state, before=0.0, after=1.0).epoch
    assert epoch == Instant.parse(fine)
    assert hash(epoch) == hash(copy.copy(epoch))
    assert epoch > orbit.epoch
    assert epoch.since(orbit.epoch) == pytest.approx(1e-12, rel=1e-3)

    at = np.array([["2022-04-14T10:22:08.036420001", "NaT"], ["1969-12-31T23:59:59.999999999", "2022-04-14"]], "M8[ns]")
    seconds = orbit.seconds(at)
    assert seconds[0, 0] == pytest.approx(1.000000001, abs=1e-15)
    assert np.isnan(seconds[0, 1])
    assert np.array_equal(orbit.datetime64(seconds[0]), at[0], equal_nan=True)
    assert np.abs(orbit.datetime64(seconds[1]) - at[1]).max() < np.timedelta64(1, "us")  # 52 years before the epoch
    assert orbit.seconds(np.timedelta64(0) + np.datetime64("2022-04-14T10:22", "m")) == pytest.approx(
        -7.03642, abs=1e-12
    )
    early = Orbit.propagated(np.datetime64(-1, "ps"), *state, before=0.0, after=1.0).epoch
    assert early.seconds == -1
    assert early.fraction == pytest.approx(1.0 - 1e-12, abs=1e-16)
    with pytest.raises(TypeError, match="datetime64"):
        orbit.seconds(["soon"])

    here = datetime.timezone(datetime.timedelta(hours=2))
    aware = datetime.datetime(2022, 4, 14, 12, 22, 7, 36420, here)
    assert Orbit.propagated(aware, *state, before=0.0, after=1.0).epoch == orbit.epoch
    for bad in (5, "14 April"):
        with pytest.raises((TypeError, ValueError)):
            Orbit.propagated(bad, *state, before=0.0, after=1.0)  # type: ignore[arg-type]
