"""Ground points of lines and scenes of pixels."""

from __future__ import annotations

from collections.abc import Iterable, Mapping
from typing import Any, Callable

from numpy.typing import ArrayLike, NDArray

from vorbel import _core
from vorbel._blocks import Floats, Layout, Side, Spread, look_side, numbers, thread_count
from vorbel._orbit import Orbit
from vorbel._results import GroundPoints

_TAKES: dict[str, tuple[Spread, ...]] = {
    **dict.fromkeys(("slant_range", "range_rate", "height"), ("one", "samples")),
    **dict.fromkeys(("time", "pitch", "yaw", "roll"), ("one", "lines")),
}

OUTPUTS = ("latitude", "longitude", "incidence", "status")


def pixel_to_ground(
    orbit: Orbit,
    time: ArrayLike,
    slant_range: ArrayLike,
    *,
    side: Side,
    range_rate: ArrayLike = 0.0,
    height: ArrayLike = 0.0,
    outputs: Iterable[str] = OUTPUTS,
    threads: int = 1,
) -> GroundPoints:
    """Return the ground points at slant range and range rate (range-Doppler solution), at exact geodetic heights.

    The arrays are broadcast together: a column of times, shape (lines, 1), against a row of ranges, shape (samples,),
    is a scene of shape (lines, samples). Contiguous float64 is not copied.

    :param time: seconds since the orbit's epoch, or ``datetime64``
    :param slant_range: m, one way
    :param side: to which side of its flight direction the radar looks
    :param range_rate: m/s, positive when the range grows; 0 is zero-Doppler geometry
    :param height: m above the WGS 84 ellipsoid (not above the sea), from -12000 to 12000
    :param outputs: names of the fields of GroundPoints to compute
    :param threads: 0 for one for each processor; the results do not depend on it
    :raises ValueError: shapes that cannot be broadcast together, an unknown output or side
    :raises KeyboardInterrupt: Ctrl-C is heard after each million points
    """
    inputs = {
        "time": orbit.seconds(time),
        "slant_range": numbers(slant_range, "slant_range"),
        "range_rate": numbers(range_rate, "range_rate"),
        "height": numbers(height, "height"),
    }
    return _ground(_core.pixel_to_ground, orbit, side, inputs, outputs, threads)


def beam_to_ground(
    orbit: Orbit,
    time: ArrayLike,
    slant_range: ArrayLike,
    *,
    side: Side,
    pitch: ArrayLike = 0.0,
    yaw: ArrayLike = 0.0,
    roll: ArrayLike = 0.0,
    height: ArrayLike = 0.0,
    outputs: Iterable[str] = OUTPUTS,
    threads: int = 1,
) -> GroundPoints:
    """Return the ground points in the beam of an attitude; their ``range_rate`` is the Doppler centroid there.

    The attitude turns the antenna out of the radius-aligned frame, Rz(yaw) Rx(roll) Ry(pitch): yaw about the radius,
    roll about the along-track axis, pitch about the orbit normal.

    :param pitch: degrees; so are yaw and roll
    :param outputs: names of the fields of GroundPoints to compute

    The other arguments, the broadcasting and the errors are those of pixel_to_ground().
    """
    inputs = {
        "time": orbit.seconds(time),
        "slant_range": numbers(slant_range, "slant_range"),
        "pitch": numbers(pitch, "pitch"),
        "yaw": numbers(yaw, "yaw"),
        "roll": numbers(roll, "roll"),
        "height": numbers(height, "height"),
    }
    return _ground(_core.beam_to_ground, orbit, side, inputs, outputs, threads)


def doppler_centroid(
    orbit: Orbit,
    time: ArrayLike,
    slant_range: ArrayLike,
    *,
    side: Side,
    pitch: ArrayLike = 0.0,
    yaw: ArrayLike = 0.0,
    roll: ArrayLike = 0.0,
    height: ArrayLike = 0.0,
    threads: int = 1,
) -> GroundPoints:
    """Return the Doppler centroid of a beam: ``range_rate`` (m/s, positive when the range grows) and ``status``.

    beam_to_ground() with these two outputs. The frequency is ``doppler_frequency(range_rate, wavelength)``.
    """
    return beam_to_ground(
        orbit,
        time,
        slant_range,
        side=side,
        pitch=pitch,
        yaw=yaw,
        roll=roll,
        height=height,
        outputs=("range_rate", "status"),
        threads=threads,
    )


def doppler_frequency(range_rate: ArrayLike, wavelength: float) -> Floats:
    """Return the Doppler frequency (Hz) of a range rate (m/s) at a wavelength (m): positive when the range shrinks."""
    return numbers(range_rate, "range_rate") * (-2.0 / wavelength)


def range_rate(doppler_frequency: ArrayLike, wavelength: float) -> Floats:
    """Return the range rate (m/s) of a Doppler frequency (Hz) at a wavelength (m): positive when the range grows."""
    return numbers(doppler_frequency, "doppler_frequency") * (-0.5 * wavelength)


def output_rooms(results: Mapping[str, NDArray[Any]]) -> dict[str, NDArray[Any]]:
    """Return the outputs by the kernels' names: what a kernel takes under a name, it gives under another."""
    return {f"{name}_out" if name in ("height", "range_rate") else name: array for name, array in results.items()}


def _ground(
    kernel: Callable[..., None],
    orbit: Orbit,
    side: Side,
    arrays: dict[str, Floats],
    outputs: Iterable[str],
    threads: int,
) -> GroundPoints:
    looks, count = look_side(side), thread_count(threads)
    layout = Layout(**arrays)
    inputs = layout.inputs(arrays, _TAKES)
    results = GroundPoints.room(outputs, layout.shape)
    rooms = output_rooms(results)
    for block in layout.blocks():
        lines, samples = block.last_line - block.line, block.last_sample - block.sample
        given = {name: array.of(block) for name, array in inputs.items()}
        kernel(orbit._core, looks, lines, samples, count, **given, **layout.outputs(rooms, block))
    return GroundPoints(**results)
