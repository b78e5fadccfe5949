"""Sky mechanics for satellite radar imaging.

``CVorbel`` is the class of the C++ library, with its units (km, radians) and bits. All else works on arrays: metres,
degrees, heights above the WGS 84 ellipsoid, times as seconds since an orbit's epoch or ``datetime64``, and a status for
each point.
"""

from __future__ import annotations

from vorbel._core import (
    CVorbel,
    Elements_Struct,
    Ephemeris_Struct,
    Geopoint,
    Instant,
    LookSide,
    Status,
    fVector,
    fVectorSimple,
)
from vorbel._ground import beam_to_ground, doppler_centroid, doppler_frequency, pixel_to_ground, range_rate
from vorbel._lazy import geocode
from vorbel._orbit import Orbit
from vorbel._pixels import DopplerPolynomial, cartesian_to_pixel, ground_to_pixel
from vorbel._plot import plot_terrain
from vorbel._product import OrbitFile, Product, read_orbits, read_sentinel1
from vorbel._results import (
    DopplerCentroid,
    FrequencyRate,
    GroundPoints,
    Heights,
    ImagePositions,
    PixelPositions,
    RadarPositions,
    States,
    TerrainPoints,
)
from vorbel._terrain import LAYOVER_MASK, SHADOW_MASK, Terrain, ellipsoidal, pixel_to_terrain

__all__ = [
    "LAYOVER_MASK",
    "SHADOW_MASK",
    "CVorbel",
    "DopplerCentroid",
    "DopplerPolynomial",
    "Elements_Struct",
    "Ephemeris_Struct",
    "FrequencyRate",
    "Geopoint",
    "GroundPoints",
    "Heights",
    "ImagePositions",
    "Instant",
    "LookSide",
    "Orbit",
    "OrbitFile",
    "PixelPositions",
    "Product",
    "RadarPositions",
    "States",
    "Status",
    "Terrain",
    "TerrainPoints",
    "beam_to_ground",
    "cartesian_to_pixel",
    "doppler_centroid",
    "doppler_frequency",
    "ellipsoidal",
    "fVector",
    "fVectorSimple",
    "geocode",
    "ground_to_pixel",
    "pixel_to_ground",
    "pixel_to_terrain",
    "plot_terrain",
    "range_rate",
    "read_orbits",
    "read_sentinel1",
]
