"""What calls over many points return."""

from __future__ import annotations

import dataclasses
from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any, NoReturn

import numpy as np
from numpy.typing import NDArray

Floats = NDArray[np.float64]
StatusArray = NDArray[np.uint8]

_TYPES: dict[str, type[np.generic]] = {"status": np.uint8, "side": np.int32, "mask": np.uint8}


@dataclass(init=False, repr=False, eq=False)
class Results:
    """Arrays of one shape, by name. One that was not asked for is missing, and says so when it is read."""

    def __init__(self, **arrays: NDArray[Any]) -> None:
        """Hold the arrays under their names."""
        self.__dict__.update(arrays)

    def __getattr__(self, name: str) -> NoReturn:
        if name in {field.name for field in dataclasses.fields(self)}:
            raise AttributeError(f"'{name}' was not computed; it must be among the outputs that the call asks for")
        raise AttributeError(f"{type(self).__name__} has no '{name}'")

    def __repr__(self) -> str:
        arrays = ", ".join(f"{name}={value!r}" for name, value in self.__dict__.items())
        return f"{type(self).__name__}({arrays})"

    @property
    def shape(self) -> tuple[int, ...]:
        """The shape of every array."""
        array: NDArray[Any] = next(iter(self.__dict__.values()))
        return array.shape

    @classmethod
    def room(cls, outputs: Iterable[str], shape: tuple[int, ...]) -> dict[str, NDArray[Any]]:
        """Make room for the outputs that are asked for.

        :raises ValueError: a name that is none of an output, or no name at all
        """
        names = [field.name for field in dataclasses.fields(cls)]
        wanted = list(outputs)
        for name in wanted:
            if name not in names:
                raise ValueError(f"no output '{name}'; outputs: {', '.join(names)}")
        if not wanted:
            raise ValueError("no output is asked for")
        return {name: np.empty(shape, _TYPES.get(name, np.float64)) for name in wanted}


@dataclass(init=False, repr=False, eq=False)
class States(Results):
    """States of a satellite, Earth-fixed; arrays of one shape."""

    x: Floats  #: m
    y: Floats  #: m
    z: Floats  #: m
    vx: Floats  #: m/s, relative to the Earth
    vy: Floats  #: m/s
    vz: Floats  #: m/s
    status: StatusArray  #: values of Status


@dataclass(init=False, repr=False, eq=False)
class GroundPoints(Results):
    """Points on the ground; arrays of one shape, not-a-number where the status is neither ``ok`` nor ``layover``."""

    latitude: Floats  #: geodetic, degrees
    longitude: Floats  #: degrees, [-180, 180)
    height: Floats  #: m above the WGS 84 ellipsoid: the one given
    x: Floats  #: m, Earth-fixed
    y: Floats  #: m
    z: Floats  #: m
    incidence: Floats  #: degrees between the line of sight and the ellipsoid's normal at the point
    look_angle: Floats  #: degrees at the satellite between the Earth's centre and the line of sight
    azimuth: Floats  #: degrees from north over east, [0, 360): where the radar looks, at the point
    range_rate: Floats  #: m/s, positive when the range grows: the one given or, of a beam, the Doppler centroid
    status: StatusArray  #: values of Status


@dataclass(init=False, repr=False, eq=False)
class PixelPositions(Results):
    """Where the radar sees points; arrays of one shape, not-a-number where the status is not ``ok``."""

    time: Floats  #: s since the orbit's epoch
    slant_range: Floats  #: m, one way
    range_rate: Floats  #: m/s, positive when the range grows
    side: NDArray[np.int32]  #: values of LookSide; right where there is no position
    status: StatusArray  #: values of Status


@dataclass(init=False, repr=False, eq=False)
class RadarPositions(Results):
    """Where the radar saw pixels; arrays of one shape, not-a-number outside the image."""

    time: Floats  #: s since the epoch, zero-Doppler
    slant_range: Floats  #: m, one way


@dataclass(init=False, repr=False, eq=False)
class ImagePositions(Results):
    """Places in an image, counted from 0 at the centres; arrays of one shape, not-a-number outside the image."""

    line: Floats  #: where bursts overlap, in the one whose ends are farther
    pixel: Floats  #: the same in both
    other_line: Floats  #: in the other burst; not-a-number where there is none


@dataclass(init=False, repr=False, eq=False)
class Heights(Results):
    """Heights of a surface; arrays of one shape."""

    height: Floats  #: m above the WGS 84 ellipsoid
    status: StatusArray  #: values of Status


@dataclass(init=False, repr=False, eq=False)
class TerrainPoints(Results):
    """Points on the terrain; arrays of one shape, not-a-number where the status is neither ``ok`` nor ``layover``."""

    latitude: Floats  #: geodetic, degrees
    longitude: Floats  #: degrees, [-180, 180)
    height: Floats  #: m above the WGS 84 ellipsoid
    x: Floats  #: m, Earth-fixed
    y: Floats  #: m
    z: Floats  #: m
    incidence: Floats  #: degrees between the line of sight and the ellipsoid's normal at the point
    local_incidence: Floats  #: degrees between the line of sight and the terrain's normal at the point
    look_angle: Floats  #: degrees at the satellite between the Earth's centre and the line of sight
    mask: NDArray[np.uint8]  #: LAYOVER_MASK, SHADOW_MASK, both or 0; whatever the status is
    status: StatusArray  #: values of Status


@dataclass(frozen=True, eq=False)
class DopplerCentroid:
    """A Doppler centroid over the swath, as a product has it: Hz over powers of two-way range time, lowest first."""

    time: float  #: s since the product's epoch
    reference_time: float  #: s, two-way; the powers are of (two-way range time - reference_time)
    geometry: Floats  #: from orbit and attitude
    data: Floats  #: measured in the echoes


@dataclass(frozen=True, eq=False)
class FrequencyRate:
    """The azimuth frequency rate over the swath: Hz/s over powers of two-way range time, lowest first."""

    time: float  #: s since the product's epoch
    reference_time: float  #: s, two-way; the powers are of (two-way range time - reference_time)
    coefficients: Floats
