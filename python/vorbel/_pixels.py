"""When and at which range the radar sees points of the ground."""

from __future__ import annotations

from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel import _core
from vorbel._blocks import Floats, Layout, Side, Spread, look_side, numbers, thread_count
from vorbel._orbit import Orbit
from vorbel._results import PixelPositions

OUTPUTS = ("time", "slant_range", "status")


@dataclass(frozen=True)
class DopplerPolynomial:
    """Range rates over slant range, as products give their Doppler centroid."""

    #: m/s over powers of (slant range - reference_range) in m, lowest first
    coefficients: ArrayLike
    #: m
    reference_range: float = 0.0


def ground_to_pixel(
    orbit: Orbit,
    latitude: ArrayLike,
    longitude: ArrayLike,
    height: ArrayLike = 0.0,
    *,
    side: Side | None,
    range_rate: ArrayLike | DopplerPolynomial = 0.0,
    not_before: ArrayLike | None = None,
    outputs: Iterable[str] = OUTPUTS,
    threads: int = 1,
) -> PixelPositions:
    """Return time and slant range at which the radar sees points, in the first pass at or after `not_before`.

    The arrays are broadcast together: a column of latitudes against a row of longitudes is a map. The inverse of
    pixel_to_ground(), to 1e-9 s and 1 um. A point without a position has the status ``wrong_side`` if it is seen on the
    other side only, ``beyond_horizon`` if the satellite comes abreast of it but below its horizon, or
    ``outside_orbit``.

    :param latitude: geodetic, degrees
    :param longitude: degrees
    :param height: m above the WGS 84 ellipsoid (not above the sea), from -12000 to 12000
    :param side: to which side of its flight direction the radar looks; None: to either, see the output ``side``
    :param range_rate: m/s at which the radar sees the points, positive when the range grows, or a polynomial of range
    :param not_before: seconds since the orbit's epoch, or ``datetime64``; None for the first pass of all
    :param outputs: names of the fields of PixelPositions to compute
    :param threads: 0 for one for each processor; the results do not depend on it
    :raises ValueError: shapes that cannot be broadcast together, an unknown output or side
    :raises KeyboardInterrupt: Ctrl-C is heard after each million points
    """
    points = {"latitude": numbers(latitude, "latitude"), "longitude": numbers(longitude, "longitude")}
    points["height"] = numbers(height, "height")
    return _positions(orbit, points, side, range_rate, not_before, outputs, threads)


def cartesian_to_pixel(
    orbit: Orbit,
    x: ArrayLike,
    y: ArrayLike,
    z: ArrayLike,
    *,
    side: Side | None,
    range_rate: ArrayLike | DopplerPolynomial = 0.0,
    not_before: ArrayLike | None = None,
    outputs: Iterable[str] = OUTPUTS,
    threads: int = 1,
) -> PixelPositions:
    """Return time and slant range at which the radar sees Earth-fixed points (m), within 12 km of the ellipsoid.

    The other arguments, the broadcasting and the errors are those of ground_to_pixel().
    """
    points = {"x": numbers(x, "x"), "y": numbers(y, "y"), "z": numbers(z, "z")}
    return _positions(orbit, points, side, range_rate, not_before, outputs, threads)


def _positions(
    orbit: Orbit,
    arrays: dict[str, Floats],
    side: Side | None,
    range_rate: ArrayLike | DopplerPolynomial,
    not_before: ArrayLike | None,
    outputs: Iterable[str],
    threads: int,
) -> PixelPositions:
    looks = None if side is None else look_side(side)
    count = thread_count(threads)
    coefficients, reference = None, 0.0
    if isinstance(range_rate, DopplerPolynomial):
        coefficients = np.ascontiguousarray(np.atleast_1d(numbers(range_rate.coefficients, "coefficients")))
        reference = range_rate.reference_range
    else:
        arrays["range_rate"] = numbers(range_rate, "range_rate")
    if not_before is not None:
        arrays["not_before"] = orbit.seconds(not_before)
    layout = Layout(**arrays)
    takes: dict[str, tuple[Spread, ...]] = dict.fromkeys(("height", "range_rate", "not_before"), ("one",))
    inputs = layout.inputs(arrays, takes)
    results = PixelPositions.room(outputs, layout.shape)
    rooms = {f"{name}_out" if name in ("range_rate", "side") else name: array for name, array in results.items()}
    for block in layout.blocks():
        given: dict[str, NDArray[Any]] = {name: array.of(block) for name, array in inputs.items()}
        _core.ground_to_pixel(
            orbit._core,
            looks,
            count,
            coefficients=coefficients,
            reference_range=reference,
            **given,
            **layout.outputs(rooms, block),
        )
    return PixelPositions(**results)
