"""Products of Sentinel-1 and their orbit files."""

from __future__ import annotations

import os
import zlib
from collections.abc import Iterable, Mapping, Sequence
from pathlib import Path, PurePosixPath
from typing import TYPE_CHECKING, Any, Callable, TypeVar, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from vorbel import _core, _time
from vorbel._blocks import Floats, Layout, numbers, thread_count
from vorbel._core import Instant, LookSide
from vorbel._ground import OUTPUTS, output_rooms
from vorbel._orbit import Orbit
from vorbel._results import DopplerCentroid, FrequencyRate, GroundPoints, ImagePositions, RadarPositions
from vorbel._time import InstantLike, Times

if TYPE_CHECKING:
    import xarray
    from matplotlib.axes import Axes

_Read = TypeVar("_Read")
PathLike = Union[str, "os.PathLike[str]"]

_AROUND = 180.0  # s; three times what a product takes of an orbit file on each side
_BLOCK = 1 << 16  # pixels at a time: their times and ranges stay in the second cache
_LARGEST = 64 << 20  # bytes; the largest real file has 5 MB


class OrbitFile:
    """State vectors of one satellite, from one file or several."""

    def __init__(self, core: _core.OrbitFile) -> None:
        """For the package itself; a caller makes one by read_orbits()."""
        self._core = core

    def __reduce__(self) -> tuple[Callable[..., OrbitFile], tuple[Any, ...]]:
        return _orbit_file, (self.source, self.mission, self.type, *self._core.vectors)

    def __repr__(self) -> str:
        return f"<OrbitFile {self.source}: {self.mission} {self.type}, {len(self.times)} vectors>"

    @property
    def source(self) -> str:
        """The name of the file."""
        return self._core.source

    @property
    def mission(self) -> str:
        """Such as "S1A"; empty if the file does not say."""
        return self._core.mission

    @property
    def type(self) -> str:
        """Such as "AUX_POEORB"; empty of a table."""
        return self._core.type

    @property
    def times(self) -> Times:
        """Of the vectors, UTC, ``datetime64[ns]``, shape (n,)."""
        seconds, fractions, _ = self._core.vectors
        return _time.datetime64(Instant(0), fractions) + seconds * np.timedelta64(1, "s")

    @property
    def states(self) -> Floats:
        """Positions (m) and velocities (m/s), Earth-fixed, shape (n, 6)."""
        return self._core.vectors[2]

    def _between(self, first: Instant, last: Instant) -> OrbitFile:
        seconds, fractions, states = self._core.vectors
        near = (seconds >= first.seconds) & (seconds <= last.seconds)
        return _orbit_file(self.source, self.mission, self.type, seconds[near], fractions[near], states[near])

    def orbit(self, epoch: InstantLike | None = None) -> Orbit:
        """Interpolate all vectors; times count from `epoch` or from the first vector."""
        return Orbit._from_split(*self._core.vectors, None if epoch is None else _time.instant(epoch))


def read_orbits(paths: PathLike | Iterable[PathLike]) -> OrbitFile:
    """Read orbit files of one satellite: precise or restituted (XML), or tables of state vectors (CSV).

    Of several files the first gives all its vectors, each other one those outside what the files before it span.

    :raises OSError: a file that cannot be read
    :raises ValueError: a file that is no orbit file, or files of different satellites; one sentence says which
    """
    _need_readers()
    files = [paths] if isinstance(paths, (str, os.PathLike)) else list(paths)
    parsed = [_told(_core.OrbitFile.parse, _text(Path(path)), Path(path).name) for path in files]
    return OrbitFile(parsed[0] if len(parsed) == 1 else _core.OrbitFile.merged(parsed))


class Product:
    """The geometry of a product's image: its orbit, and when and at which range the radar saw each pixel.

    Lines and pixels count from 0 at their centres. Times are seconds since `epoch`, which is the orbit's epoch too. It
    does not change, and can be pickled.
    """

    def __init__(self, text: bytes, source: str, orbit: OrbitFile | None, bistatic: bool) -> None:
        """For the package itself; a caller makes one by read_sentinel1()."""
        self._core = _told(_core.Product.make, text, source, orbit and orbit._core, bistatic)
        if orbit is not None:
            orbit = orbit._between(self._core.start_time.later(-_AROUND), self._core.stop_time.later(_AROUND))
        self._made = (zlib.compress(text), source, orbit, bistatic)

    def __reduce__(self) -> tuple[Callable[..., Product], tuple[Any, ...]]:
        return _product, self._made

    def __repr__(self) -> str:
        c = self._core
        return (
            f"<Product {c.source}: {c.mission} {c.product_type} {c.swath} {c.polarisation} of {c.start_time} UTC,"
            f" {c.lines} lines of {c.samples} pixels ({c.kind})>"
        )

    @property
    def source(self) -> str:
        """The name of the annotation file."""
        return self._core.source

    @property
    def annotation(self) -> Mapping[str, Any]:
        """What the annotation says: identification, image and range timing."""
        names = (
            *("mission", "product_type", "mode", "swath", "polarisation", "flight", "absolute_orbit"),
            *("start_time", "stop_time", "kind", "lines", "samples", "line_interval", "lines_per_burst"),
            *("slant_range_time", "range_sampling_rate", "range_pixel_spacing", "radar_frequency", "wavelength"),
            "attitude_frame",
        )
        return {name: getattr(self._core, name) for name in names}

    @property
    def epoch(self) -> Instant:
        """The instant from which all times count: that of the first line."""
        return self._core.epoch

    @property
    def side(self) -> LookSide:
        """To which side of its flight direction the radar looks."""
        return self._core.side

    @property
    def orbit(self) -> Orbit:
        """The orbit, interpolated between the product's own vectors or those of the orbit file."""
        return Orbit(self._core.orbit, (_orbit_of, (self,)))

    @property
    def shape(self) -> tuple[int, int]:
        """Lines and samples of the image."""
        return self._core.lines, self._core.samples

    @property
    def wavelength(self) -> float:
        """Of the carrier, m."""
        return self._core.wavelength

    @property
    def burst_times(self) -> Floats:
        """Times of the first lines of the bursts, which begin every `annotation["lines_per_burst"]` lines."""
        return self._core.burst_times

    @property
    def grid(self) -> dict[str, Floats]:
        """The product's own geolocation grid, an array of shape (n,) for each column.

        ``time`` (s), ``slant_range`` (m), ``line``, ``pixel``, ``latitude``, ``longitude``, ``incidence`` (degrees) and
        ``height`` (m above the WGS 84 ellipsoid).
        """
        return self._core.grid

    @property
    def vectors(self) -> dict[str, Floats]:
        """The product's own state vectors, whatever orbit it was read with.

        ``time`` (s since the epoch, shape (n,), rounded to 1e-6 s in the file), ``position`` (m) and ``velocity``
        (m/s), Earth-fixed, shape (n, 3).
        """
        seconds, fractions, states = self._core.vectors
        time = (seconds - self.epoch.seconds) + (fractions - self.epoch.fraction)
        return {"time": time, "position": states[:, :3], "velocity": states[:, 3:]}

    @property
    def attitude(self) -> dict[str, Floats]:
        """The satellite's attitude, as the file has it: an array of n rows for each column.

        ``time`` (s since the epoch), ``quaternion`` (between the satellite and the frame that
        ``annotation["attitude_frame"]`` names, in the order of the file, shape (n, 4)), ``rate`` (rad/s about x, y and
        z, shape (n, 3)), ``roll``, ``pitch`` and ``yaw`` (degrees).
        """
        return self._core.attitude

    @property
    def doppler_centroids(self) -> list[DopplerCentroid]:
        """The Doppler centroids of the file, in order of time."""
        return [
            DopplerCentroid(time, reference, np.array(geometry), np.array(data))
            for time, reference, geometry, data in self._core.doppler_centroids
        ]

    @property
    def frequency_rates(self) -> list[FrequencyRate]:
        """The azimuth frequency rates of the file, in order of time."""
        return [
            FrequencyRate(time, reference, np.array(coefficients))
            for time, reference, coefficients in self._core.frequency_rates
        ]

    def to_radar(self, line: ArrayLike, pixel: ArrayLike) -> RadarPositions:
        """Return zero-Doppler time and slant range of pixels, broadcast together; not-a-number outside the image."""
        arrays = {"line": numbers(line, "line"), "pixel": numbers(pixel, "pixel")}
        return RadarPositions(**self._map(self._core.to_radar, arrays, ("time", "slant_range")))

    def to_image(self, time: ArrayLike, slant_range: ArrayLike) -> ImagePositions:
        """Return the places of times (s or ``datetime64``) and slant ranges (m), not-a-number outside the image.

        Where bursts overlap, ``line`` is in the one whose ends are farther, and ``other_line`` in the other.
        """
        arrays = {"time": self.orbit.seconds(time), "slant_range": numbers(slant_range, "slant_range")}
        return ImagePositions(**self._map(self._core.to_image, arrays, ("line", "pixel", "other_line")))

    @staticmethod
    def _map(kernel: Callable[..., None], arrays: dict[str, Floats], outputs: Sequence[str]) -> dict[str, Floats]:
        layout = Layout(**arrays)
        inputs = layout.inputs(arrays, {})
        results = {name: np.empty(layout.shape) for name in outputs}
        for block in layout.blocks():
            given = {name: array.of(block) for name, array in inputs.items()}
            kernel(**given, **layout.outputs(results, block))
        return results

    def ground(
        self,
        line: ArrayLike,
        pixel: ArrayLike,
        height: ArrayLike = 0.0,
        *,
        outputs: Iterable[str] = OUTPUTS,
        threads: int = 1,
    ) -> GroundPoints:
        """Return the ground points of pixels: a column of lines against a row of pixels is a part of the image.

        :param height: m above the WGS 84 ellipsoid (not above the sea)
        :param outputs: names of the fields of GroundPoints to compute
        :param threads: 0 for one for each processor

        Outside the image the status is ``bad_input``.
        """
        arrays = {"line": numbers(line, "line"), "pixel": numbers(pixel, "pixel"), "height": numbers(height, "height")}
        count = thread_count(threads)
        layout = Layout(**arrays)
        inputs = layout.inputs(arrays, {"height": ("one", "samples")})
        results = GroundPoints.room(outputs, layout.shape)
        rooms = output_rooms(results)
        for block in layout.blocks(_BLOCK):
            given: dict[str, NDArray[Any]] = {name: array.of(block) for name, array in inputs.items()}
            image = given.pop("line"), given.pop("pixel")
            given["time"], given["slant_range"] = np.empty_like(image)
            self._core.to_radar(*image, given["time"], given["slant_range"])
            lines, samples = block.last_line - block.line, block.last_sample - block.sample
            _core.pixel_to_ground(
                self._core.orbit, self.side, lines, samples, count, **given, **layout.outputs(rooms, block)
            )
        return GroundPoints(**results)

    def dataset(
        self,
        *,
        height: float | xarray.DataArray = 0.0,
        chunks: tuple[int, int] = (1024, 1024),
        burst: int | None = None,
    ) -> xarray.Dataset:
        """Return latitude, longitude, incidence and status of the image or of a burst, computed when asked for.

        Needs xarray and dask. The dimensions are ``azimuth_time``, of the lines, and ``slant_range_time``, two-way, s
        (``ground_range``, m, of a ground range image). A chunk takes 50 bytes for each pixel, its results
        included, and up to 30 MB more.

        :param height: m above the WGS 84 ellipsoid: one, or a DataArray of the same dimensions
        :param chunks: lines and samples of a chunk
        :param burst: counted from 0; None for the whole image, whose lines overlap in time where bursts meet
        :raises ValueError: a burst that the image does not have
        """
        from vorbel._lazy import dataset

        return dataset(self, height, chunks, burst)

    def plot(self, *, height: float = 0.0, axes: Axes | None = None) -> Axes:
        """Draw where the image lies: footprint, bursts, incidence and the satellite's track. Needs matplotlib.

        :param height: m above the WGS 84 ellipsoid, at which the image is drawn
        :param axes: to draw into; None for new ones
        """
        from vorbel._plot import plot

        return plot(self, height=height, axes=axes)


def read_sentinel1(
    path: PathLike,
    *,
    orbit: OrbitFile | PathLike | Sequence[PathLike] | None = None,
    swath: str | None = None,
    polarisation: str | None = None,
    bistatic: bool = True,
) -> Product:
    """Read the geometry of a Sentinel-1 product.

    :param path: an annotation file (XML), or a SAFE folder or a zip of one
    :param orbit: an orbit file or several, read or by path; None for the product's own vectors
    :param swath: such as "IW1", where a product has several
    :param polarisation: such as "VV", where a product has several
    :param bistatic: True: times of pixels are zero-Doppler times, as those of the product's own grid; False: those of
        their lines, up to 0.3 ms off
    :raises OSError: a file that cannot be read
    :raises ValueError: no annotation file, or several to choose from; an orbit that does not cover the product; what
        the file lacks or contradicts. One sentence says which
    """
    _need_readers()
    if orbit is not None and not isinstance(orbit, OrbitFile):
        orbit = read_orbits(orbit)
    text, source = _annotation(Path(path), swath, polarisation)
    return Product(text, source, orbit, bistatic)


def _annotation(path: Path, swath: str | None, polarisation: str | None) -> tuple[bytes, str]:
    if path.is_dir():
        files = {file.name: file for file in (path / "annotation").glob("*.xml")}
        name = _chosen(path, list(files), swath, polarisation)
        return _text(files[name]), name
    import zipfile  # which takes long to import

    if zipfile.is_zipfile(path):
        with zipfile.ZipFile(path) as archive:
            members = {
                PurePosixPath(info.filename).name: info
                for info in archive.infolist()
                if PurePosixPath(info.filename).parent.name == "annotation" and info.filename.endswith(".xml")
            }
            name = _chosen(path, list(members), swath, polarisation)
            if members[name].file_size > _LARGEST:
                raise ValueError(f"{name} in {path.name} is larger than 64 MiB")
            return archive.read(members[name]), name
    return _text(path), path.name


def _chosen(path: Path, names: list[str], swath: str | None, polarisation: str | None) -> str:
    """Return the annotation of a swath and polarisation, which its name tells: s1a-iw1-slc-vv-..."""

    def fits(name: str) -> bool:
        parts = name.lower().split("-")
        return len(parts) > 3 and all(
            wanted is None or wanted.lower() == part for wanted, part in ((swath, parts[1]), (polarisation, parts[3]))
        )

    fitting = sorted(filter(fits, names))
    if len(fitting) == 1:
        return fitting[0]
    if not fitting:
        there = ", ".join(sorted(names)) or "no XML file in a folder 'annotation'"
        raise ValueError(f"{path.name} has no annotation of swath {swath}, polarisation {polarisation}: {there}")
    raise ValueError(f"{path.name} has several annotations, choose by swath and polarisation: {', '.join(fitting)}")


def _text(path: Path) -> bytes:
    if path.stat().st_size > _LARGEST:
        raise ValueError(f"{path.name} is larger than 64 MiB")
    return path.read_bytes()


def _told(function: Callable[..., _Read], *arguments: object) -> _Read:
    """Call a reader; what it finds wrong with a file is a ValueError here."""
    try:
        return function(*arguments)
    except RuntimeError as error:
        raise ValueError(str(error)) from None


def _need_readers() -> None:
    if not hasattr(_core, "Product"):
        raise RuntimeError("this vorbel was built without its product readers, since pugixml was missing")


def _orbit_file(*content: Any) -> OrbitFile:
    return OrbitFile(_core.OrbitFile(*content))


def _product(text: bytes, source: str, orbit: OrbitFile | None, bistatic: bool) -> Product:
    return Product(zlib.decompress(text), source, orbit, bistatic)


def _orbit_of(product: Product) -> Orbit:
    return product.orbit
