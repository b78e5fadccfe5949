#!/usr/bin/env python3
"""Times the Python package beside other software on the same terrain and orbit, and beside its own kernels.

usage: benchmarks/python_peers.py [--edge N] [--rounds N]; script/bench --python runs it

Times are of the processor, in one thread: what others do on the machine meanwhile hardly counts. The sides of a table
take turns, and the fastest of their rounds counts.
"""

from __future__ import annotations

import argparse
import importlib.metadata
import os
import platform
import subprocess
import sys
import time
from collections.abc import Callable
from pathlib import Path
from typing import NamedTuple

# One thread for all, also in what numpy calls.
os.environ["OMP_NUM_THREADS"] = os.environ["OPENBLAS_NUM_THREADS"] = "1"

import numpy as np
import vorbel
import xarray
from sarsen import geocoding, scene
from sarsen.orbit import OrbitPolyfitInterpolator
from vorbel import _core

SWATH = (
    Path(__file__).parents[1] / "examples/products/s1a-iw1-slc-hh-20220414t102211-20220414t102236-042768-051aa4-001.xml"
)
VECTORS_EVERY = 10.0  # s, as the product has them
SPEED = 7600.0  # m/s of the satellite, to tell times in metres


class Seen(NamedTuple):
    """When (s since the orbit's epoch) and at which slant range (m) points are seen."""

    time: np.ndarray
    slant_range: np.ndarray


class Work:
    """A terrain of hills in the image of a real product, and its orbit as each side wants it."""

    def __init__(self, edge: int) -> None:
        """Make a raster of edge x edge cells."""
        product = vorbel.read_sentinel1(SWATH)
        corners = product.ground([4000.0, 9000.0], [6000.0, 15000.0], 300.0)
        self.latitude = np.linspace(corners.latitude.max(), corners.latitude.min(), edge)
        self.longitude = np.linspace(corners.longitude.min(), corners.longitude.max(), edge)
        north, east = 111.2 * self.latitude[:, None], 70.3 * self.longitude
        self.heights = 440.0 + 400.0 * np.sin(0.9 * north + 0.4 * np.sin(0.7 * east)) * np.sin(0.6 * east - 0.2 * north)
        self.orbit = product.orbit
        times = np.arange(product.orbit.span[0], product.orbit.span[1] + 1e-6, VECTORS_EVERY)
        states = product.orbit.at(times)
        self.times = times
        self.states = np.array([states.x, states.y, states.z, states.vx, states.vy, states.vz])
        self.points = cartesian(self.latitude[:, None], self.longitude, self.heights)

        self.raster = xarray.DataArray(self.heights, {"y": self.latitude, "x": self.longitude}, ("y", "x"))
        self.given = scene.convert_to_dem_ecef(self.raster, source_crs="EPSG:4979")
        self.epoch = product.orbit.datetime64(0.0)
        vectors = xarray.DataArray(
            self.states[:3],
            {"axis": [0, 1, 2], "azimuth_time": product.orbit.datetime64(times)},
            ("axis", "azimuth_time"),
        )
        self.fitted = OrbitPolyfitInterpolator.from_position(vectors)

    def ours(self) -> Seen:
        """Latitudes, longitudes and heights to time and range."""
        seen = vorbel.ground_to_pixel(self.orbit, self.latitude[:, None], self.longitude, self.heights, side="right")
        return Seen(seen.time, seen.slant_range)

    def ours_from_cartesian(self) -> Seen:
        """Earth-fixed points to time and range."""
        seen = vorbel.cartesian_to_pixel(self.orbit, *self.points, side="right")
        return Seen(seen.time, seen.slant_range)

    def sarsen(self) -> Seen:
        """Latitudes, longitudes and heights by sarsen, with its own tolerance."""
        return self._sarsen(scene.convert_to_dem_ecef(self.raster, source_crs="EPSG:4979"))

    def sarsen_from_cartesian(self) -> Seen:
        """Earth-fixed points by sarsen."""
        return self._sarsen(self.given)

    def _sarsen(self, points: xarray.DataArray) -> Seen:
        found = geocoding.backward_geocode(points, self.fitted)
        distance = np.sqrt((found.dem_distance**2).sum("axis"))
        return Seen((found.azimuth_time.values - self.epoch) / np.timedelta64(1, "s"), distance.values)

    def newton(self) -> Seen:
        """Latitudes, longitudes and heights by numpy."""
        return self._newton(cartesian(self.latitude[:, None], self.longitude, self.heights))

    def newton_from_cartesian(self) -> Seen:
        """Earth-fixed points by Newton's method on polynomials through the vectors, until its steps are below 1 mm."""
        return self._newton(self.points)

    def _newton(self, points: tuple[np.ndarray, ...]) -> Seen:
        fitted = [np.polynomial.Polynomial.fit(self.times, axis, 9) for axis in self.states]
        positions, velocities = fitted[:3], fitted[3:]
        accelerations = [velocity.deriv() for velocity in velocities]
        t = np.full(points[0].shape, self.times.mean())
        for _ in range(20):
            d = [point - position(t) for point, position in zip(points, positions)]
            v = [velocity(t) for velocity in velocities]
            slope = sum(a(t) * x - y * y for a, x, y in zip(accelerations, d, v))
            step = sum(x * y for x, y in zip(d, v)) / slope
            t -= step
            if np.abs(step).max() * SPEED < 1e-3:
                break
        return Seen(t, np.sqrt(sum((point - position(t)) ** 2 for point, position in zip(points, positions))))


def cartesian(latitude: np.ndarray, longitude: np.ndarray, height: np.ndarray) -> tuple[np.ndarray, ...]:
    """Return Earth-fixed x, y, z (m) of points on WGS 84 (degrees, m)."""
    a, e2 = 6378137.0, 0.0066943799901413165
    sine, cosine = np.sin(np.radians(latitude)), np.cos(np.radians(latitude))
    across = a / np.sqrt(1.0 - e2 * sine * sine)
    east = np.radians(longitude)
    return (
        (across + height) * cosine * np.cos(east),
        (across + height) * cosine * np.sin(east),
        (across * (1.0 - e2) + height) * sine,
    )


def fastest(sides: list[Callable[[], object]], rounds: int) -> list[float]:
    """Return the least time of the processor (s) that each side took, while they take turns."""
    least = [float("inf")] * len(sides)
    for _ in range(rounds):
        for i, side in enumerate(sides):
            start = time.process_time()
            side()
            least[i] = min(least[i], time.process_time() - start)
    return least


def peers(work: Work, rounds: int) -> str:
    """Return the table of the peers."""
    sarsen = f"sarsen {importlib.metadata.version('sarsen')}"
    newton = "Newton's method in numpy"
    groups = {
        "latitude, longitude, height": (work.ours, {sarsen: work.sarsen, newton: work.newton}),
        "Earth-fixed points": (
            work.ours_from_cartesian,
            {sarsen: work.sarsen_from_cartesian, newton: work.newton_from_cartesian},
        ),
    }
    lines = [
        "| Ground to pixel, from | ns a cell | Beside it | ns a cell | Ratio | Azimuth differs, m | Range differs, m |",
        "|:--|--:|:--|--:|--:|--:|--:|",
    ]
    for name, (ours, others) in groups.items():
        own, *theirs = fastest([ours, *others.values()], rounds)
        reference = ours()
        cell = 1e9 / reference.time.size
        for (other, side), spent in zip(others.items(), theirs):
            found = side()
            azimuth = np.abs(found.time - reference.time).max() * SPEED
            distance = np.abs(found.slant_range - reference.slant_range).max()
            times = f"{own * cell:.1f} | {other} | {spent * cell:.0f} | {spent / own:.0f}"
            lines.append(f"| {name} | {times} | {azimuth:.1e} | {distance:.1e} |")
    return "\n".join(lines)


def overhead(work: Work, rounds: int) -> str:
    """Return the table of what the package adds to the kernels of the library, for 10^6 points."""
    edge = 1000
    orbit, right = work.orbit, vorbel.LookSide.right
    times, ranges = np.linspace(5.0, 20.0, edge), np.linspace(805e3, 850e3, edge)
    ground = vorbel.pixel_to_ground(orbit, times[:, None], ranges, side=right)
    latitude, longitude = ground.latitude.reshape(-1), ground.longitude.reshape(-1)

    def room(*names: str) -> dict[str, np.ndarray]:
        return {name: np.empty(edge * edge, np.uint8 if name == "status" else np.float64) for name in names}

    def to_ground() -> None:
        _core.pixel_to_ground(
            *(orbit._core, right, edge, edge, 1),
            time=times, slant_range=ranges, **room("latitude", "longitude", "incidence", "status"),
        )  # fmt: skip

    def to_pixel() -> None:
        _core.ground_to_pixel(
            *(orbit._core, right, 1), latitude=latitude, longitude=longitude, **room("time", "slant_range", "status")
        )

    rows = {
        "pixel_to_ground": (to_ground, lambda: vorbel.pixel_to_ground(orbit, times[:, None], ranges, side=right)),
        "ground_to_pixel": (to_pixel, lambda: vorbel.ground_to_pixel(orbit, latitude, longitude, side=right)),
    }
    lines = ["| 10^6 points | Kernel, ms | From Python, ms | Python adds |", "|:--|--:|--:|--:|"]
    for name, (kernel, call) in rows.items():
        bare, whole = fastest([kernel, call], 20 * rounds)
        lines.append(f"| {name} | {bare * 1e3:.2f} | {whole * 1e3:.2f} | {(whole / bare - 1.0) * 100.0:.1f} % |")
    return "\n".join(lines)


def import_time(rounds: int) -> str:
    """Return what `import vorbel` takes in a fresh interpreter, how much of that is numpy's, and the versions."""
    program = "import time; t = time.process_time(); import {}; print(time.process_time() - t)"

    def imported(name: str) -> float:
        run = [sys.executable, "-c", program.format(name)]
        return min(float(subprocess.run(run, check=True, capture_output=True).stdout) for _ in range(rounds))

    with_python = f"Python {platform.python_version()}, numpy {np.__version__}"
    return f"`import vorbel`: {imported('vorbel'):.3f} s, of which numpy {imported('numpy'):.3f} s; {with_python}."


def main() -> int:
    """Print the tables."""
    parser = argparse.ArgumentParser(description="Time the Python package beside other software.")
    parser.add_argument("--edge", type=int, default=1000, help="rows and columns of the terrain (1000)")
    parser.add_argument("--rounds", type=int, default=5, help="of each side (5)")
    options = parser.parse_args()
    if options.edge < 2 or options.rounds < 1:
        parser.error("--edge is 2 or more, --rounds 1 or more")
    work = Work(options.edge)
    print(peers(work, options.rounds), overhead(work, options.rounds), import_time(2 * options.rounds), sep="\n\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
