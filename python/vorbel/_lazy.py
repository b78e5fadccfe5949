"""Products and terrains as xarray has them, computed chunk by chunk."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel._blocks import Side, look_side
from vorbel._coordinates import LATITUDES, LONGITUDES, dimension
from vorbel._orbit import Orbit
from vorbel._pixels import DopplerPolynomial, ground_to_pixel
from vorbel._product import Product

if TYPE_CHECKING:
    import xarray

_DEGREES = {"units": "degrees"}
_GROUND = {
    "latitude": {"long_name": "geodetic latitude, WGS 84", **_DEGREES},
    "longitude": {"long_name": "longitude", **_DEGREES},
    "incidence": {"long_name": "angle between the line of sight and the ellipsoid's normal", **_DEGREES},
    "status": {"long_name": "value of vorbel.Status"},
}
_RADAR = {
    "time": {"long_name": "zero-Doppler time since the epoch", "units": "s"},
    "slant_range": {"long_name": "one-way slant range", "units": "m"},
    "line": {"long_name": "line of the image, counted from 0 at its centre"},
    "pixel": {"long_name": "pixel of the line, counted from 0 at its centre"},
    "status": {"long_name": "value of vorbel.Status"},
}


def dataset(
    product: Product, height: float | xarray.DataArray, chunks: tuple[int, int], burst: int | None
) -> xarray.Dataset:
    """See Product.dataset()."""
    import dask.array
    import xarray

    lines, samples = product.shape
    first = 0
    if burst is not None:
        bursts = len(product.burst_times)
        if not 0 <= burst < bursts:
            raise ValueError(f"the image has {bursts} bursts, counted from 0, and no burst {burst}")
        lines = product.annotation["lines_per_burst"]
        first = burst * lines
    across = product.to_radar(first, np.arange(samples))
    columns: tuple[str, Any, dict[str, str]] = (
        "ground_range",
        np.arange(samples) * product.annotation["range_pixel_spacing"],
        {"units": "m"},
    )
    if product.annotation["kind"] != "ground range":
        columns = ("slant_range_time", 2.0 / 299792458.0 * across.slant_range, {"units": "s"})
    axes = ("azimuth_time", columns[0])
    # An array of the image's own chunks: dask would warn of two axes that come together.
    image = xarray.DataArray(dask.array.zeros((lines, samples), chunks=chunks, dtype=bool), dims=axes)
    line = xarray.DataArray(dask.array.arange(first, first + lines, chunks=chunks[0], dtype=np.float64), dims=axes[0])
    pixel = xarray.DataArray(dask.array.arange(samples, chunks=chunks[1], dtype=np.float64), dims=axes[1])
    arrays = xarray.apply_ufunc(
        _locate,
        image,
        line,
        pixel,
        height,
        kwargs={"product": product},
        dask="parallelized",
        output_core_dims=[[]] * len(_GROUND),
        output_dtypes=[np.float64] * (len(_GROUND) - 1) + [np.uint8],
    )
    middle = product.to_radar(np.arange(first, first + lines), samples // 2).time
    time = ("azimuth_time", product.orbit.datetime64(middle), {"long_name": "UTC in the middle of the line"})
    return xarray.Dataset(
        {name: array.assign_attrs(_GROUND[name]) for name, array in zip(_GROUND, arrays)},
        coords={axes[0]: time, axes[1]: columns},
    )


def geocode(
    source: Product | Orbit,
    heights: xarray.DataArray,
    *,
    side: Side | None = None,
    range_rate: ArrayLike | DopplerPolynomial = 0.0,
    threads: int = 1,
) -> xarray.Dataset:
    """Return when and at which range the radar sees every cell of a raster of heights, and where in the image.

    Chunk by chunk and when asked for if the heights are a dask array, at once otherwise. A chunk takes 70
    bytes for each cell, its results included, and up to 30 MB more; workers of dask use one thread each. Needs
    xarray.

    :param source: a product, or an orbit with a `side`, which gives no line and pixel
    :param heights: m above the WGS 84 ellipsoid, not above the sea (see ellipsoidal()), with latitude and longitude in
        degrees as coordinates, named as for Terrain.from_xarray()
    :param side: to which side of its flight direction the radar looks; a product knows
    :param range_rate: m/s at which the radar sees the points, or a polynomial of slant range
    :param threads: 0 for one for each processor
    :return: variables ``time`` (s since the epoch), ``slant_range`` (m), ``status`` and, of a product, ``line`` and
        ``pixel``, which are not-a-number outside its image, on the dimensions of the heights
    :raises ValueError: an orbit without a side, heights without coordinates
    """
    import xarray

    product = source if isinstance(source, Product) else None
    orbit = source.orbit if isinstance(source, Product) else source
    if side is None:
        if product is None:
            raise ValueError("an orbit does not know to which side the radar looks")
        side = product.side
    names = [name for name in _RADAR if product is not None or name not in ("line", "pixel")]
    y, x = dimension(heights, LATITUDES), dimension(heights, LONGITUDES)
    arrays = xarray.apply_ufunc(
        _find,
        heights,
        heights[y],
        heights[x],
        kwargs={"source": source, "side": look_side(side), "range_rate": range_rate, "threads": threads},
        dask="parallelized",
        output_core_dims=[[]] * len(names),
        output_dtypes=[np.uint8 if name == "status" else np.float64 for name in names],
    )
    attributes = {"epoch": orbit.epoch.text(9)}
    return xarray.Dataset(
        {name: array.assign_attrs(_RADAR[name]) for name, array in zip(names, arrays)}, attrs=attributes
    )


def _locate(
    image: NDArray[np.bool_],
    line: NDArray[np.float64],
    pixel: NDArray[np.float64],
    height: NDArray[np.float64],
    product: Product,
) -> tuple[NDArray[Any], ...]:
    points = product.ground(line, pixel, height, outputs=_GROUND)
    return tuple(getattr(points, name) for name in _GROUND)


def _find(
    heights: NDArray[Any],
    latitude: NDArray[np.float64],
    longitude: NDArray[np.float64],
    source: Product | Orbit,
    side: Side,
    range_rate: ArrayLike | DopplerPolynomial,
    threads: int,
) -> tuple[NDArray[Any], ...]:
    orbit = source.orbit if isinstance(source, Product) else source
    seen = ground_to_pixel(orbit, latitude, longitude, heights, side=side, range_rate=range_rate, threads=threads)
    if not isinstance(source, Product):
        return seen.time, seen.slant_range, seen.status
    place = source.to_image(seen.time, seen.slant_range)
    return seen.time, seen.slant_range, place.line, place.pixel, seen.status
