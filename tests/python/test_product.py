"""Products, orbit files, and their lazy datasets."""

from __future__ import annotations

import pickle
import zipfile
from pathlib import Path
from xml.etree import ElementTree

import numpy as np
import pytest
import vorbel
import xarray
from vorbel import Product, Status

EXTRACTS = Path(__file__).parents[2] / "examples" / "products"
BURSTS, HAWAII, STRIPMAP, GROUND_RANGE = (
    next(EXTRACTS.glob(f"{name}-*.xml")) for name in ("s1a-iw1-slc", "s1a-iw3-slc", "s1a-s3-slc", "s1a-iw-grd")
)
FOLLOWING = sorted(EXTRACTS.glob("*RESORB*.EOF"))
ORBIT = next(EXTRACTS.glob("*POEORB*.EOF"))


@pytest.fixture(scope="module")
def product() -> Product:
    return vorbel.read_sentinel1(BURSTS)


@pytest.mark.parametrize("path", [BURSTS, HAWAII, STRIPMAP, GROUND_RANGE])
def test_the_products_own_grid_is_met(path: Path) -> None:
    product = vorbel.read_sentinel1(path)
    grid = product.grid
    points = vorbel.pixel_to_ground(
        product.orbit, grid["time"], grid["slant_range"], side=product.side, height=grid["height"]
    )
    east = np.cos(np.radians(grid["latitude"])) * 111e3
    assert (points.status == Status.ok).all()
    assert np.abs(points.latitude - grid["latitude"]).max() * 111e3 < 0.03  # m
    assert np.abs((points.longitude - grid["longitude"] + 180.0) % 360.0 - 180.0).max() < 0.03 / east.min()

    inside = grid["line"] < product.shape[0]
    line, pixel = grid["line"][inside], grid["pixel"][inside]
    radar = product.to_radar(line, pixel)
    back = product.to_image(radar.time, radar.slant_range)
    same = np.minimum(np.abs(back.line - line), np.nan_to_num(np.abs(back.other_line - line), nan=np.inf))
    assert same.max() < 1e-5
    assert np.abs(back.pixel - pixel).max() < 1e-5
    assert np.isnan(product.to_radar([-1.0, 0.0], 0.0).time).tolist() == [True, False]


def test_products_come_from_folders_and_archives(tmp_path: Path) -> None:
    folder = tmp_path / "S1A.SAFE"
    (folder / "annotation" / "calibration").mkdir(parents=True)
    (folder / "annotation" / "calibration" / "noise.xml").write_text("<noise/>")
    for path in (BURSTS, HAWAII):
        (folder / "annotation" / path.name).write_bytes(path.read_bytes())
    archive = tmp_path / "S1A.zip"
    with zipfile.ZipFile(archive, "w") as packed:
        for file in folder.rglob("*.xml"):
            packed.write(file, file.relative_to(tmp_path))
    for path in (folder, archive):
        assert vorbel.read_sentinel1(path, swath="IW1").source == BURSTS.name
        assert vorbel.read_sentinel1(str(path), polarisation="vv").source == HAWAII.name
        with pytest.raises(ValueError, match="several annotations, choose by swath and polarisation: s1a-iw1-slc-hh"):
            vorbel.read_sentinel1(path)
        with pytest.raises(ValueError, match="no annotation of swath IW2"):
            vorbel.read_sentinel1(path, swath="IW2")
    with pytest.raises(FileNotFoundError):
        vorbel.read_sentinel1(tmp_path / "nothing.xml")
    with pytest.raises(ValueError, match=r"noise\.xml"):
        vorbel.read_sentinel1(folder / "annotation" / "calibration" / "noise.xml")


def test_orbit_files_serve_products() -> None:
    file = vorbel.read_orbits(ORBIT)
    both = vorbel.read_orbits([ORBIT, ORBIT])
    assert (file.mission, file.type) == ("S1A", "AUX_POEORB")
    assert np.array_equal(both.times, file.times)
    assert both.orbit(file.times[1]).span[0] == -10.0
    own = vorbel.read_sentinel1(HAWAII)
    for orbit in (ORBIT, [str(ORBIT)], file, pickle.loads(pickle.dumps(file))):
        precise = vorbel.read_sentinel1(HAWAII, orbit=orbit)
        moved = precise.orbit.at([0.0, 10.0]).x - own.orbit.at([0.0, 10.0]).x
        assert 0.0 < np.abs(moved).max() < 0.2  # m between the precise orbit and the product's
    again = pickle.loads(pickle.dumps(precise))
    assert np.array_equal(again.orbit.at([5.0]).x, precise.orbit.at([5.0]).x)
    assert np.array_equal(again.to_radar(10.0, 10.0).time, precise.to_radar(10.0, 10.0).time)
    with pytest.raises(ValueError, match="cover"):
        vorbel.read_sentinel1(BURSTS, orbit=ORBIT)


def test_orbit_files_that_follow_each_other_are_one_orbit() -> None:
    def apart(one: vorbel.Orbit, other: vorbel.Orbit, times: np.ndarray) -> np.ndarray:
        a, b = one.at(one.seconds(times)), other.at(other.seconds(times))
        return np.sqrt((a.x - b.x) ** 2 + (a.y - b.y) ** 2 + (a.z - b.z) ** 2)

    files = [vorbel.read_orbits(path) for path in FOLLOWING]
    merged = vorbel.read_orbits(FOLLOWING)
    first, second, both = (file.orbit() for file in (*files, merged))
    end = files[0].times[-1]
    assert files[1].times[0] < end < files[1].times[-1]
    before, after = (end + direction * np.arange(0, 60_000, 500).astype("m8[ms]") for direction in (-1, 1))
    assert 0.009 < apart(first, second, before).min() <= apart(first, second, before).max() < 0.010  # m
    assert apart(both, first, before).max() < 0.0005
    assert apart(both, second, after[60:]).max() < 0.0001
    assert (np.diff(apart(both, second, after[:60])) < 0.0005).all()  # glides from one to the other


@pytest.mark.parametrize("path", [BURSTS, GROUND_RANGE])
def test_vectors_of_rounded_times_make_the_products_orbit(path: Path) -> None:
    product = vorbel.read_sentinel1(path)
    backwards = {name: array[::-1] for name, array in product.vectors.items()}
    given = [backwards[name] for name in ("time", "position", "velocity")]
    even = vorbel.Orbit.from_vectors(*given, epoch=product.epoch, even_times=1e-6)
    uneven = vorbel.Orbit.from_vectors(*given, epoch=product.epoch)
    times = np.linspace(*product.orbit.span, 500)[1:-1]
    assert np.abs(even.at(times).x - product.orbit.at(times).x).max() < 1e-6  # m
    assert np.abs(uneven.at(times).x - product.orbit.at(times).x).max() > 1e-4
    assert np.array_equal(pickle.loads(pickle.dumps(even)).at(times).x, even.at(times).x)
    with pytest.raises(ValueError, match="even_times"):
        vorbel.Orbit.from_vectors(*given, epoch=product.epoch, even_times=0.0)


def test_attitude_and_doppler_are_those_of_the_file(product: Product) -> None:
    file = ElementTree.parse(BURSTS)

    def columns(record: str, *names: str) -> np.ndarray:
        return np.array([[float(found.findtext(name) or "nan") for name in names] for found in file.iter(record)])

    def seconds(record: str, name: str) -> np.ndarray:
        return product.orbit.seconds(np.array([found.findtext(name) for found in file.iter(record)], "M8[ns]"))

    def polynomials(record: str, name: str) -> list[list[float]]:
        return [[float(number) for number in (found.findtext(name) or "").split()] for found in file.iter(record)]

    attitude, centroids, rates = product.attitude, product.doppler_centroids, product.frequency_rates
    assert attitude["time"] == pytest.approx(seconds("attitude", "time"), abs=1e-9)
    assert np.array_equal(attitude["quaternion"], columns("attitude", "q0", "q1", "q2", "q3"))
    assert np.array_equal(attitude["rate"], columns("attitude", "wx", "wy", "wz"))
    for name in ("roll", "pitch", "yaw"):
        assert np.array_equal(attitude[name], columns("attitude", name)[:, 0])
    assert [c.time for c in centroids] == pytest.approx(seconds("dcEstimate", "azimuthTime"), abs=1e-9)
    assert [c.reference_time for c in centroids] == columns("dcEstimate", "t0")[:, 0].tolist()
    assert [c.geometry.tolist() for c in centroids] == polynomials("dcEstimate", "geometryDcPolynomial")
    assert [c.data.tolist() for c in centroids] == polynomials("dcEstimate", "dataDcPolynomial")
    assert [r.reference_time for r in rates] == columns("azimuthFmRate", "t0")[:, 0].tolist()
    assert [r.coefficients.tolist() for r in rates] == polynomials("azimuthFmRate", "azimuthFmRatePolynomial")


def test_datasets_are_computed_block_by_block(product: Product, monkeypatch: pytest.MonkeyPatch) -> None:
    located = []
    ground = Product.ground

    def counted(self: Product, line: np.ndarray, pixel: np.ndarray, *rest: object, **named: object) -> object:
        located.append((line.size, pixel.size))
        return ground(self, line, pixel, *rest, **named)  # type: ignore[arg-type]

    monkeypatch.setattr(Product, "ground", counted)
    data = product.dataset(height=100.0, chunks=(500, 2000))
    assert not located
    assert len(pickle.dumps(dict(data.latitude.__dask_graph__()))) < 2_000_000  # of an image of 2 GB
    part = data.isel(azimuth_time=slice(700, 703), slant_range_time=slice(4100, 4105))
    values = part.compute(scheduler="synchronous")
    assert located == [(500, 2000)]
    expected = ground(product, np.arange(700.0, 703.0)[:, None], np.arange(4100.0, 4105.0), 100.0)
    for name in ("latitude", "longitude", "incidence", "status"):
        assert np.array_equal(values[name], getattr(expected, name))
    assert values.latitude.dims == ("azimuth_time", "slant_range_time")
    assert values.slant_range_time.values == pytest.approx(
        2.0 * product.to_radar(700.0, np.arange(4100, 4105)).slant_range / 299792458.0, rel=1e-14
    )

    heights = xarray.DataArray(np.full(product.dataset(burst=1).latitude.shape, 100.0, np.float32), dims=part.dims)
    burst = product.dataset(burst=1, height=heights)
    start = product.annotation["lines_per_burst"]
    assert burst.azimuth_time.to_index().is_monotonic_increasing
    assert np.array_equal(burst.latitude[10, :3], ground(product, start + 10.0, np.arange(3.0), 100.0).latitude)
    with pytest.raises(ValueError, match="no burst 9"):
        product.dataset(burst=9)
    assert vorbel.read_sentinel1(GROUND_RANGE).dataset().latitude.dims == ("azimuth_time", "ground_range")


def test_rasters_are_geocoded_chunk_by_chunk(product: Product) -> None:
    corner = product.ground(6000.0, [8000.0, 9000.0], 200.0)
    latitude = np.linspace(corner.latitude[0], corner.latitude[1], 30)
    longitude = np.linspace(corner.longitude[0], corner.longitude[1], 40)
    heights = xarray.DataArray(np.full((30, 40), 200.0), {"y": latitude, "x": longitude}, ("y", "x"))
    at_once = vorbel.geocode(product, heights)
    lazy = vorbel.geocode(product, heights.chunk({"y": 7, "x": 11}))
    assert lazy.line.chunks == (4 * (7,) + (2,), 3 * (11,) + (7,))
    xarray.testing.assert_identical(lazy.compute(scheduler="threads"), at_once)
    assert at_once.pixel.values[0, 0] == pytest.approx(8000.0, abs=1e-4)
    assert (at_once.status == Status.ok).all()
    radar = product.to_radar(at_once.line, at_once.pixel)
    assert radar.slant_range == pytest.approx(at_once.slant_range.values, abs=1e-4)

    alone = vorbel.geocode(product.orbit, heights.rename(y="lat", x="lon"), side="right")
    assert "line" not in alone
    assert np.array_equal(alone.time, at_once.time)
    with pytest.raises(ValueError, match="side"):
        vorbel.geocode(product.orbit, heights)
