"""Terrain from Python."""

from __future__ import annotations

import pickle
from typing import Any

import numpy as np
import pytest
import vorbel
import xarray
from vorbel import Orbit, Status, Terrain, pixel_to_ground, pixel_to_terrain

ALL = ("latitude", "longitude", "height", "x", "y", "z", "incidence", "local_incidence", "look_angle", "mask", "status")
TIMES, RANGES = np.linspace(50.0, 52.0, 5)[:, None], np.linspace(830e3, 850e3, 6)


@pytest.fixture(scope="module")
def middle(orbit: Orbit) -> tuple[float, float]:
    """Latitude and longitude in the middle of TIMES and RANGES."""
    point = pixel_to_ground(orbit, 51.0, 840e3, side="right")
    return float(point.latitude), float(point.longitude)


def plane(middle: tuple[float, float], north: float = 0.0, dtype: Any = np.float32) -> Terrain:
    """A plane of 500 m that rises by so much to the north of the middle of the scene, in m for a degree."""
    latitude, longitude = middle[0] + np.linspace(1.0, -1.0, 201), middle[1] + np.linspace(-1.5, 1.5, 301)
    return Terrain(
        (500.0 + north * (latitude - middle[0])[:, None] + 0.0 * longitude).astype(dtype), latitude, longitude
    )


def test_a_plane_is_the_surface_of_its_height(orbit: Orbit, middle: tuple[float, float]) -> None:
    flat = pixel_to_ground(
        orbit, TIMES, RANGES, height=500.0, side="right", outputs=("latitude", "longitude", "incidence")
    )
    for dtype in (np.float32, np.float64, np.int16):
        seen = pixel_to_terrain(orbit, TIMES, RANGES, plane(middle, dtype=dtype), side="right", outputs=ALL, threads=2)
        assert (seen.status == Status.ok).all()
        assert not seen.mask.any()
        assert seen.height == pytest.approx(np.full((5, 6), 500.0), abs=1e-6)
        assert seen.latitude == pytest.approx(flat.latitude, abs=1e-10)
        assert seen.longitude == pytest.approx(flat.longitude, abs=1e-10)
        assert seen.incidence == pytest.approx(flat.incidence, abs=1e-9)
        assert seen.local_incidence == pytest.approx(seen.incidence, abs=0.02)  # the raster's chords
    left = pixel_to_terrain(orbit, 51.0, 840e3, plane(middle), side="left")
    assert left.status == Status.outside_terrain


def test_rasters_lie_where_their_coordinates_say(orbit: Orbit, middle: tuple[float, float]) -> None:
    slope = plane(middle, north=300.0)
    south_first = Terrain(slope.heights[::-1], slope.latitude[::-1], slope.longitude)
    array = xarray.DataArray(
        slope.heights[None], {"y": slope.latitude, "x": slope.longitude}, ("band", "y", "x"), attrs={"_FillValue": -1.0}
    )
    turned = Terrain.from_xarray(array.transpose("x", "y", "band"))
    again = pickle.loads(pickle.dumps(turned))
    assert turned.void == again.void == -1.0
    latitude, longitude = middle[0] + np.array([0.234, -0.5])[:, None], middle[1] + np.array([0.1, 361.0])
    for terrain in (slope, south_first, turned, again):
        heights = terrain.at(latitude, longitude)
        assert heights.height == pytest.approx((500.0 + 300.0 * (latitude - middle[0])) + np.zeros(2), abs=1e-3)
        seen = pixel_to_terrain(orbit, TIMES, RANGES, terrain, side="right", outputs=ALL)
        assert seen.height == pytest.approx(
            terrain.at(seen.latitude, seen.longitude).height, abs=7e-5
        )  # steps of 1/8192
    heights = slope.at([middle[0], middle[0] + 2.0, np.nan], middle[1])
    assert heights.status.tolist() == [Status.ok, Status.outside_terrain, Status.bad_input]

    holed = slope.heights.copy()
    holed[100, 150] = -1.0
    assert Terrain(holed, slope.latitude, slope.longitude, void=-1.0).at(*middle).status == Status.hole_in_terrain
    for sentence, arguments in (
        ("equally spaced", (holed, np.geomspace(51.0, 49.0, 201), slope.longitude)),
        ("eastward", (holed, slope.latitude, slope.longitude[::-1])),
        (r"shape \(201, 301\), the coordinates \(201, 300\)", (holed, slope.latitude, slope.longitude[:-1])),
    ):
        with pytest.raises(ValueError, match=sentence):
            Terrain(*arguments)
    with pytest.raises(ValueError, match="coordinates named latitude, lat or y"):
        Terrain.from_xarray(array.rename(y="northing"))


def test_the_sides_of_a_steep_ridge_are_laid_over_and_hidden(orbit: Orbit, middle: tuple[float, float]) -> None:
    terrain = plane(middle)
    ridge = terrain.heights + 4000.0 * np.exp(-(((terrain.longitude - middle[1]) / 0.02) ** 2)).astype(np.float32)
    steep = Terrain(ridge, terrain.latitude, terrain.longitude)
    ranges = np.linspace(830e3, 850e3, 400)
    near = pixel_to_terrain(orbit, 51.0, ranges, steep, side="right", outputs=ALL)
    far = pixel_to_terrain(orbit, 51.0, ranges, steep, side="right", outputs=ALL, choice="greatest look angle")
    several = near.status == Status.layover
    assert np.array_equal(several, far.status == Status.layover)
    assert several.sum() > 10
    assert (far.look_angle[several] > near.look_angle[several]).all()
    assert np.array_equal(near.mask & vorbel.LAYOVER_MASK != 0, several)
    assert (near.mask & vorbel.SHADOW_MASK != 0).any()
    with pytest.raises(ValueError, match="'smallest look angle', 'greatest look angle'"):
        pixel_to_terrain(orbit, 51.0, ranges, steep, side="right", choice="first")  # type: ignore[arg-type]


def test_the_ellipsoid_lies_below_a_geoid_of_positive_height(middle: tuple[float, float]) -> None:
    geoid = plane(middle, north=10.0)  # as if it were one
    sea = np.full((2, 3), 7.0)
    latitude, longitude = middle[0] + np.array([0.5, 0.0]), middle[1] + np.array([0.0, 0.2, 0.4])
    expected = np.array([[512.0] * 3, [507.0] * 3])
    raster = xarray.DataArray(sea, {"lat": latitude, "lon": longitude}, ("lat", "lon"))
    assert np.array_equal(vorbel.ellipsoidal(sea, [[505.0], [500.0]]), expected)
    assert vorbel.ellipsoidal(sea, geoid, latitude[:, None], longitude) == pytest.approx(expected, abs=1e-4)
    for undulation in (geoid, lambda lat, lon: 500.0 + 10.0 * (lat - middle[0]) + 0.0 * lon):
        above = vorbel.ellipsoidal(raster, undulation)
        assert isinstance(above, xarray.DataArray)
        assert above.values == pytest.approx(expected, abs=1e-4)
    with pytest.raises(ValueError, match="latitude and longitude"):
        vorbel.ellipsoidal(sea, geoid)
    with pytest.raises(ValueError, match="does not reach"):
        vorbel.ellipsoidal(sea, geoid, 0.0, 0.0)
