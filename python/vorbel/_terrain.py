"""Terrain, and where the radar sees it."""

from __future__ import annotations

from collections.abc import Iterable
from typing import TYPE_CHECKING, Any, Callable, Literal

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel import _core
from vorbel._blocks import Floats, Layout, Side, Spread, look_side, numbers, thread_count
from vorbel._coordinates import LATITUDES, LONGITUDES, dimension
from vorbel._orbit import Orbit
from vorbel._results import Heights, TerrainPoints

if TYPE_CHECKING:
    import xarray

#: bits of the output ``mask``
LAYOVER_MASK = 1  #: the radar sees several points of the terrain at this range
SHADOW_MASK = 2  #: the terrain has points at this range that it hides from the radar

OUTPUTS = ("latitude", "longitude", "height", "status")


class Terrain:
    """A raster of heights above the WGS 84 ellipsoid (not above the sea) and the bilinear surface through them.

    The surface ends at the outermost values, unless the raster closes around the Earth. A cell that lacks one of its
    four values is a hole. The raster is not copied where it runs from north to south, contiguous, in float32, float64
    or int16; it must stay as it is then.
    """

    def __init__(
        self, heights: NDArray[Any], latitude: ArrayLike, longitude: ArrayLike, *, void: float | None = None
    ) -> None:
        """Make a terrain of a raster.

        :param heights: shape (rows, columns), m above the WGS 84 ellipsoid; ellipsoidal() makes them of heights above
            the geoid
        :param latitude: of the centres of the rows, equally spaced, in either direction, degrees
        :param longitude: of the centres of the columns, equally spaced and eastward, degrees, any turn
        :param void: the value of a missing height, beside not-a-number
        :raises ValueError: coordinates that are not equally spaced or do not fit, a raster that leaves the Earth
        """
        rows, latitude_step = _equal_steps(latitude, "latitude")
        columns, longitude_step = _equal_steps(longitude, "longitude")
        array: NDArray[Any] = np.asarray(heights)
        if array.shape != (len(rows), len(columns)):
            raise ValueError(f"heights have shape {array.shape}, the coordinates {(len(rows), len(columns))}")
        if longitude_step < 0.0:
            raise ValueError("longitude must run eastward")
        if latitude_step > 0.0:
            array, rows = array[::-1], rows[::-1]
        if array.dtype not in (np.float32, np.float64, np.int16):
            array = numbers(array, "heights")
        self.heights = np.ascontiguousarray(array)
        self.latitude = rows
        self.longitude = columns
        self.void = void
        missing = float("nan") if void is None else void
        self._core = _core.Terrain(self.heights, rows[0], columns[0], abs(latitude_step), longitude_step, missing)

    @classmethod
    def from_xarray(cls, heights: xarray.DataArray, *, void: float | None = None) -> Terrain:
        """Make a terrain of a DataArray with coordinates of latitude and longitude in degrees, of cell centres.

        The coordinates are called ``latitude``, ``lat`` or ``y``, and ``longitude``, ``lon`` or ``x``, as rioxarray
        does. A leading dimension of one band is left out; the attribute ``_FillValue`` serves as `void`.
        """
        heights = heights.squeeze(drop=True)
        y, x = dimension(heights, LATITUDES), dimension(heights, LONGITUDES)
        if void is None and "_FillValue" in heights.attrs:
            void = float(heights.attrs["_FillValue"])
        array = heights.transpose(y, x)
        return cls(array.values, array[y].values, array[x].values, void=void)

    def __reduce__(self) -> tuple[Callable[..., Terrain], tuple[Any, ...]]:
        return _terrain, (self.heights, self.latitude, self.longitude, self.void)

    def at(self, latitude: ArrayLike, longitude: ArrayLike) -> Heights:
        """Return the height of the surface at points (degrees), broadcast together: m, not-a-number unless ``ok``."""
        arrays = {"latitude": numbers(latitude, "latitude"), "longitude": numbers(longitude, "longitude")}
        layout = Layout(**arrays)
        inputs = layout.inputs(arrays, {})
        results = Heights.room(("height", "status"), layout.shape)
        for block in layout.blocks():
            given: dict[str, NDArray[Any]] = {name: array.of(block) for name, array in inputs.items()}
            self._core.heights(**given, **layout.outputs(results, block))
        return Heights(**results)


def pixel_to_terrain(
    orbit: Orbit,
    time: ArrayLike,
    slant_range: ArrayLike,
    terrain: Terrain,
    *,
    side: Side,
    range_rate: ArrayLike = 0.0,
    choice: Literal["smallest look angle", "greatest look angle"] = "smallest look angle",
    outputs: Iterable[str] = OUTPUTS,
    threads: int = 1,
) -> TerrainPoints:
    """Return the points where the sphere of the slant range, the cone of the range rate and the terrain meet.

    Where the radar sees one point at the range, the status is ``ok``; where it sees several, ``layover``, and `choice`
    says which one it is; where the terrain hides all, ``hidden``.

    :param time: seconds since the orbit's epoch, or ``datetime64``
    :param slant_range: m, one way
    :param terrain: heights above the WGS 84 ellipsoid
    :param side: to which side of its flight direction the radar looks
    :param range_rate: m/s, positive when the range grows
    :param outputs: names of the fields of TerrainPoints to compute
    :param threads: 0 for one for each processor; the results do not depend on it
    :raises ValueError: shapes that cannot be broadcast together, an unknown output, side or choice
    """
    arrays = {
        "time": orbit.seconds(time),
        "slant_range": numbers(slant_range, "slant_range"),
        "range_rate": numbers(range_rate, "range_rate"),
    }
    looks, count = look_side(side), thread_count(threads)
    choices = ("smallest look angle", "greatest look angle")
    if choice not in choices:
        raise ValueError(f"the choice among several points is one of {choices}, not {choice!r}")
    layout = Layout(**arrays)
    takes: dict[str, tuple[Spread, ...]] = dict.fromkeys(("slant_range", "range_rate"), ("one", "samples"))
    inputs = layout.inputs(arrays, {"time": ("one", "lines"), **takes})
    results = TerrainPoints.room(outputs, layout.shape)
    for block in layout.blocks():
        lines, samples = block.last_line - block.line, block.last_sample - block.sample
        given: dict[str, NDArray[Any]] = {name: array.of(block) for name, array in inputs.items()}
        _core.pixel_to_terrain(
            orbit._core,
            looks,
            terrain._core,
            choice == choices[1],
            lines,
            samples,
            count,
            **given,
            **layout.outputs(results, block),
        )
    return TerrainPoints(**results)


def ellipsoidal(
    heights: Any,
    geoid: ArrayLike | Terrain | Callable[[Floats, Floats], ArrayLike],
    latitude: ArrayLike | None = None,
    longitude: ArrayLike | None = None,
) -> Any:
    """Return heights above the WGS 84 ellipsoid of heights above the geoid (above the sea), in m.

    :param heights: an array or a DataArray; a DataArray comes back as one
    :param geoid: the height of the geoid above the ellipsoid, m: an array that goes with `heights`, a Terrain made of
        such a raster, which is interpolated, or a function of latitude and longitude (degrees)
    :param latitude: of the heights, degrees, shaped to go with them; of a DataArray its coordinate serves
    :param longitude: likewise
    :raises ValueError: a raster or function, and no latitude and longitude; a raster that does not reach all heights
    """
    if not isinstance(geoid, Terrain) and not callable(geoid):
        return heights + np.asarray(geoid)
    if latitude is None or longitude is None:
        if not hasattr(heights, "coords"):
            raise ValueError("a geoid that is a raster or a function needs the latitude and longitude of the heights")
        y, x = dimension(heights, LATITUDES), dimension(heights, LONGITUDES)
        axes = {name: tuple(-1 if name == other else 1 for other in heights.dims) for name in (y, x)}
        latitude = heights[y].values.reshape(axes[y])
        longitude = heights[x].values.reshape(axes[x])
    latitude, longitude = numbers(latitude, "latitude"), numbers(longitude, "longitude")
    if isinstance(geoid, Terrain):
        undulation = geoid.at(latitude, longitude)
        if (undulation.status != 0).any():
            raise ValueError("the raster of the geoid does not reach all heights")
        return heights + undulation.height
    return heights + np.asarray(geoid(latitude, longitude))


def _terrain(heights: NDArray[Any], latitude: Floats, longitude: Floats, void: float | None) -> Terrain:
    return Terrain(heights, latitude, longitude, void=void)


def _equal_steps(values: ArrayLike, name: str) -> tuple[Floats, float]:
    array = numbers(values, name)
    if array.ndim != 1 or len(array) < 2:
        raise ValueError(f"the {name} of a raster has one dimension and two values at least, not shape {array.shape}")
    step = float(array[-1] - array[0]) / (len(array) - 1)
    # What text and float32 leave of equal steps: a thousandth of one.
    if not step or not (np.abs(np.diff(array) - step) < 1e-3 * abs(step)).all():
        raise ValueError(f"the {name} of a raster is equally spaced, this one is not")
    return array, step
