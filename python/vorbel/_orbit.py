"""The orbit of a satellite."""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any, Callable

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel import _core, _time
from vorbel._blocks import BLOCK, numbers
from vorbel._core import CVorbel, Instant
from vorbel._results import States
from vorbel._time import Floats, InstantLike, Times


class Orbit:
    """Position and velocity of a satellite at any time of a span, Earth-fixed.

    It does not change, any number of threads may use it, and it can be pickled. Times are seconds since its epoch or
    ``datetime64``.
    """

    def __init__(self, core: _core.Orbit, made: tuple[Callable[..., Orbit], tuple[Any, ...]]) -> None:
        """For the package itself; a caller makes an orbit by one of the class methods."""
        self._core = core
        self._made = made

    @classmethod
    def from_vectors(
        cls,
        times: ArrayLike | Sequence[Instant],
        positions: ArrayLike,
        velocities: ArrayLike,
        *,
        epoch: InstantLike | None = None,
        even_times: float | None = None,
    ) -> Orbit:
        """Interpolate state vectors: any number from two, at any spacing, in any order; equal vectors count once.

        :param times: shape (n,): ``datetime64``, ISO 8601 text or Instants of UTC, or seconds since `epoch`
        :param positions: shape (n, 3), m, Earth-fixed
        :param velocities: shape (n, 3), m/s, relative to the Earth
        :param epoch: the instant from which the orbit's times count; the first vector's if it is left out
        :param even_times: s, for times that are evenly spaced but for their rounding to so much (1e-6 in annotation
            files): they are put back onto the even grid, since positions that belong to the times before rounding
            waver by millimetres. Times that this would move farther stay as they are, as all do if it is left out
        :raises ValueError: fewer than two instants, more than 600 s between two, a value that is not finite, vectors
            that contradict each other, shapes that do not fit, seconds without an epoch, or `even_times` not above 0
        """
        start = None if epoch is None else _time.instant(epoch)
        seconds, fractions = _instants(times, start)
        states = np.concatenate([_triples(positions, "positions"), _triples(velocities, "velocities")], axis=1)
        if len(states) != len(seconds):
            raise ValueError(f"an orbit needs as many times as states, not {len(seconds)} times and {len(states)}")
        if even_times is not None and not even_times > 0.0:
            raise ValueError(f"even_times is the resolution of the times in s, above 0, not {even_times}")
        return cls._from_split(seconds, fractions, states, start, even_times)

    @classmethod
    def _from_split(
        cls,
        seconds: NDArray[np.int64],
        fractions: Floats,
        states: Floats,
        start: Instant | None,
        resolution: float | None = None,
    ) -> Orbit:
        if start is None:
            if len(seconds) == 0:
                raise ValueError("an orbit needs two state vectors at least")
            first = np.lexsort((fractions, seconds))[0]
            start = Instant(int(seconds[first]), float(fractions[first]))
        core = _core.Orbit.from_vectors(seconds, fractions, states, start, resolution)
        return cls(core, (cls._from_split, (seconds, fractions, states, start, resolution)))

    @classmethod
    def propagated(
        cls,
        time: InstantLike,
        position: ArrayLike,
        velocity: ArrayLike,
        *,
        before: float,
        after: float,
        drag: float = 0.0,
    ) -> Orbit:
        """Propagate one state vector to both sides by the class.

        :param time: the instant of the vector, which becomes the epoch
        :param position: shape (3,), m, Earth-fixed
        :param velocity: shape (3,), m/s, relative to the Earth
        :param before: s, how far the span reaches back, from 0 to 10^6
        :param after: s, how far it reaches forward, from 0 to 10^6
        :param drag: km^2/kg as in fVector
        :raises ValueError: numbers that are not finite or no orbit, a span that reaches too far
        """
        start = _time.instant(time)
        state = np.concatenate([_triple(position, "the position"), _triple(velocity, "the velocity")])
        return cls._from_state(start, state.tolist(), before, after, drag)

    @classmethod
    def _from_state(cls, start: Instant, state: list[float], before: float, after: float, drag: float) -> Orbit:
        core = _core.Orbit.propagated(start, state, before, after, drag)
        return cls(core, (cls._from_state, (start, state, before, after, drag)))

    @classmethod
    def from_trajectory(cls, trajectory: CVorbel) -> Orbit:
        """Read a propagated trajectory out, over what its history really covers; its end state is the epoch.

        :raises ValueError: a trajectory that was not propagated, or in the absolute frame
        """
        own = CVorbel(trajectory)
        return cls(_core.Orbit.from_trajectory(own), (cls.from_trajectory, (own,)))

    def extended(self, before: float, after: float) -> Orbit:
        """Continue the orbit by propagation from its outermost vectors, by s that are not negative.

        Decimetres are lost in a minute; `covered` keeps the part between the vectors.
        """
        return Orbit(self._core.extended(before, after), (Orbit.extended, (self, before, after)))

    def __reduce__(self) -> tuple[Callable[..., Orbit], tuple[Any, ...]]:
        return self._made

    def __repr__(self) -> str:
        first, last = self.span
        return f"<Orbit from {self.epoch.later(first)} to {self.epoch.later(last)} UTC, epoch {self.epoch}>"

    @property
    def epoch(self) -> Instant:
        """The instant from which all times count."""
        return self._core.epoch

    @property
    def span(self) -> tuple[float, float]:
        """First and last time that can be asked for, seconds since the epoch."""
        return self._core.span

    @property
    def covered(self) -> tuple[float, float]:
        """The part of the span between the vectors, seconds since the epoch; outside it the orbit was extended."""
        return self._core.covered

    def seconds(self, times: ArrayLike) -> Floats:
        """Return ``datetime64`` as seconds since the epoch, of the same shape; NaT becomes not-a-number."""
        return _time.seconds_since(self.epoch, times)

    def datetime64(self, seconds: ArrayLike) -> Times:
        """Return seconds since the epoch as ``datetime64[ns]``, rounded to 1 ns: 7.5 um of a low orbit's flight."""
        return _time.datetime64(self.epoch, seconds)

    def at(self, times: ArrayLike) -> States:
        """Return the states at times of any shape: m and m/s, Earth-fixed, and a status each.

        Outside the span the status is ``outside_orbit`` and the numbers are not-a-number.
        """
        values = self.seconds(times)
        flat = np.ascontiguousarray(values.reshape(-1))
        arrays = States.room(("x", "y", "z", "vx", "vy", "vz", "status"), values.shape)
        parts = {name: array.reshape(-1) for name, array in arrays.items()}
        for begin in range(0, flat.size, BLOCK):
            block = slice(begin, begin + BLOCK)
            self._core.at(flat[block], **{name: part[block] for name, part in parts.items()})
        return States(**arrays)


def _instants(times: ArrayLike | Sequence[Instant], epoch: Instant | None) -> tuple[NDArray[np.int64], Floats]:
    array: NDArray[Any] = np.asarray(times)
    if array.ndim != 1:
        raise ValueError(f"the times of state vectors have one dimension, not shape {array.shape}")
    if array.dtype.kind == "M":
        if np.isnat(array).any():
            raise ValueError("a state vector's time is NaT")
        return _time.split(array)
    if array.dtype.kind in "fiu":
        if epoch is None:
            raise ValueError("times in seconds need the epoch from which they count")
        if not np.isfinite(array).all():
            raise ValueError("a state vector's time is not finite")
        each = [epoch.later(float(seconds)) for seconds in array]
    else:
        each = [_time.instant(value) for value in array]
    return np.array([i.seconds for i in each], np.int64), np.array([i.fraction for i in each], np.float64)


def _triples(values: ArrayLike, name: str) -> Floats:
    array = numbers(values, name)
    if array.ndim != 2 or array.shape[1] != 3:
        raise ValueError(f"{name} have shape (n, 3), not {array.shape}")
    return array


def _triple(values: ArrayLike, name: str) -> Floats:
    array = numbers(values, name)
    if array.shape != (3,):
        raise ValueError(f"{name} has shape (3,), not {array.shape}")
    return array
