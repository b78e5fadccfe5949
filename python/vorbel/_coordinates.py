"""Names of the coordinates of rasters."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    import xarray

LATITUDES = ("latitude", "lat", "y")
LONGITUDES = ("longitude", "lon", "x")


def dimension(array: xarray.DataArray, names: tuple[str, ...]) -> str:
    """Return the dimension of a raster that has coordinates and one of the names.

    :raises ValueError: there is none
    """
    for name in names:
        if name in array.dims and name in array.coords:
            return name
    raise ValueError(f"a raster has a dimension with coordinates named {', '.join(names[:-1])} or {names[-1]}")
