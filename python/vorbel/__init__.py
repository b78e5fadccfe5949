"""Sky mechanics for satellite radar imaging."""

from __future__ import annotations

from vorbel._core import (
    CVorbel,
    Elements_Struct,
    Ephemeris_Struct,
    Geopoint,
    fVector,
    fVectorSimple,
)

__all__ = [
    "CVorbel",
    "Elements_Struct",
    "Ephemeris_Struct",
    "Geopoint",
    "fVector",
    "fVectorSimple",
]
