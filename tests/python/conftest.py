"""Where the tests get what stands outside the package."""

from __future__ import annotations

import os
import subprocess

import numpy as np
import pytest
from numpy.typing import NDArray
from vorbel import CVorbel, Orbit, fVector


@pytest.fixture(scope="session")
def operations() -> dict[str, NDArray[np.float64]]:
    """Every value that each operation of the C++ class returns over a fixed set of inputs, by the operation's name."""
    program = os.environ.get("VORBEL_BITS")
    if not program:
        pytest.skip("VORBEL_BITS names no vorbel_bits, the program that prints what the C++ class returns")
    lines = subprocess.run([program, "--all"], check=True, capture_output=True, text=True).stdout.splitlines()
    words = (line.split() for line in lines)
    return {name: np.array([int(bits, 16) for bits in values], np.uint64).view(np.float64) for name, *values in words}


EPOCH = np.datetime64("2022-04-14T10:22:07.036420", "ns")


@pytest.fixture(scope="session")
def trajectory() -> CVorbel:
    """A Sentinel-1 orbit of 2022-04-14 that the class propagates, ending 120 s after EPOCH."""
    day = 44664
    state = fVector(
        2557.460552509, -3657.848009796, 5481.070859608, 1.600023313, -5.810531656, -4.613139702, day,
        (day - 1) * 86400 + 37327.036420,
    )  # fmt: skip
    result = CVorbel()
    result.InitLagrange(state, 120.0, 0)
    return result


@pytest.fixture(scope="session")
def vectors(trajectory: CVorbel) -> tuple[NDArray[np.datetime64], NDArray[np.float64]]:
    """Its states every 10 s from EPOCH: instants, and position (m) and velocity (m/s), shape (13, 6)."""
    end = trajectory.getVector()
    states = []
    for back in range(120, -1, -10):
        s = trajectory.Lagrange(end.time - back, 7)
        states.append([1000.0 * value for value in (s.x, s.y, s.z, s.vx, s.vy, s.vz)])
    return np.arange(EPOCH, EPOCH + np.timedelta64(121, "s"), np.timedelta64(10, "s")), np.array(states)


@pytest.fixture(scope="session")
def orbit(vectors: tuple[NDArray[np.datetime64], NDArray[np.float64]]) -> Orbit:
    """The same orbit, interpolated between these states."""
    times, states = vectors
    return Orbit.from_vectors(times, states[:, :3], states[:, 3:])
