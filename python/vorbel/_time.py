"""Instants of UTC as numpy has them, and as seconds since an epoch."""

from __future__ import annotations

import datetime
from typing import Any, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel._core import Instant

Floats = NDArray[np.float64]
Times = NDArray[np.datetime64]
InstantLike = Union[Instant, str, np.datetime64, datetime.datetime]

_NANOSECONDS = 1_000_000_000


def instant(value: InstantLike) -> Instant:
    """Return an instant from what describes one: itself, ISO 8601 text, ``datetime64`` or ``datetime``, all in UTC.

    :raises ValueError: text of another form, or not-a-time
    :raises TypeError: anything else
    """
    if isinstance(value, Instant):
        return value
    if isinstance(value, str):
        return Instant.parse(value)
    if isinstance(value, datetime.datetime):
        if value.tzinfo is not None:
            value = value.astimezone(datetime.timezone.utc).replace(tzinfo=None)
        value = np.datetime64(value, "us")
    if not isinstance(value, np.datetime64):
        raise TypeError(f"an instant is an Instant, text, datetime64 or datetime, not {type(value).__name__}")
    if np.isnat(value):
        raise ValueError("NaT is no instant")
    seconds, fractions = split(np.asarray(value))
    return Instant(int(seconds), float(fractions))


def split(times: Times) -> tuple[NDArray[np.int64], Floats]:
    """Return whole seconds since 1970 and the fractions of a second after them, of instants that are not NaT."""
    whole = times.astype("M8[s]")
    unit = np.timedelta64(1, "s")
    return whole.astype(np.int64), np.asarray((times - whole) / unit, np.float64)


def seconds_since(epoch: Instant, times: ArrayLike) -> Floats:
    """Return times as seconds since an epoch, float64 of the same shape.

    Numbers count as seconds already; contiguous float64 is not copied. ``datetime64`` of any unit is turned exactly;
    not-a-time becomes not-a-number.

    :raises TypeError: neither numbers nor ``datetime64``
    """
    array: NDArray[Any] = np.asarray(times)
    if array.dtype.kind in "fiu":
        return np.asarray(array, np.float64)
    if array.dtype.kind != "M":
        raise TypeError(f"times are seconds since the orbit's epoch or datetime64, not {array.dtype}")
    missing = np.isnat(array)
    seconds, fractions = split(np.where(missing, np.datetime64(0, "s"), array))
    result = (seconds - epoch.seconds) + (fractions - epoch.fraction)
    return np.where(missing, np.nan, result)


def datetime64(epoch: Instant, seconds: ArrayLike) -> Times:
    """Return seconds since an epoch as ``datetime64[ns]``, rounded to the nanosecond; not-a-number becomes NaT.

    A nanosecond is 7.5 um of a low orbit's flight. ``datetime64[ns]`` reaches from 1678 to 2262.
    """
    values = np.asarray(seconds, np.float64)
    missing = ~np.isfinite(values)
    values = np.where(missing, 0.0, values)
    whole = np.floor(values)
    nanoseconds = np.rint((values - whole + epoch.fraction) * _NANOSECONDS).astype(np.int64)
    count = (whole.astype(np.int64) + epoch.seconds) * _NANOSECONDS + nanoseconds
    return np.where(missing, np.datetime64("NaT", "ns"), count.view("M8[ns]"))
