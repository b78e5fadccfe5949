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
from vorbel._orbit import Orbit
from vorbel._results import GroundPoints, States

__all__ = [
    "CVorbel",
    "Elements_Struct",
    "Ephemeris_Struct",
    "Geopoint",
    "GroundPoints",
    "Instant",
    "LookSide",
    "Orbit",
    "States",
    "Status",
    "beam_to_ground",
    "doppler_centroid",
    "doppler_frequency",
    "fVector",
    "fVectorSimple",
    "pixel_to_ground",
    "range_rate",
]
