"""Pictures of products and terrains."""

from __future__ import annotations

from pathlib import Path

import numpy as np
import pytest
import vorbel
from vorbel import _plot

mpl = pytest.importorskip("matplotlib")
mpl.use("agg")

EXTRACTS = Path(__file__).parents[2] / "examples" / "products"
IW, GRD = (next(EXTRACTS.glob(f"{name}-*.xml")) for name in ("s1a-iw3-slc", "s1a-iw-grd"))


def test_a_ridge_lays_over_in_front_and_throws_its_shadow_behind() -> None:
    product = vorbel.read_sentinel1(IW)
    middle = product.ground(7000.0, 11000.0, outputs=("latitude", "longitude", "incidence", "azimuth"))
    incidence = np.radians(float(middle.incidence))
    north = np.linspace(900.0, -900.0, 61)  # m from the middle of the image
    east = np.arange(-3000.0, 3000.0, 20.0)
    turn = np.radians(float(middle.azimuth))
    behind = north[:, None] * np.cos(turn) + east * np.sin(turn)  # m in the direction of sight
    height, front, back = 500.0, 250.0, 100.0  # m: steeper than the line of sight on both sides
    ridge = np.interp(behind, (-front, 0.0, back), (0.0, height, 0.0))
    latitude = float(middle.latitude) + north / 110700.0
    longitude = float(middle.longitude) + east / (111300.0 * np.cos(np.radians(float(middle.latitude))))
    terrain = vorbel.Terrain(ridge, latitude, longitude)
    classes = _plot.terrain_classes(product, terrain)

    reach = height * np.tan(incidence)
    before = height / np.tan(incidence) - front
    inner = np.s_[5:-5, :]
    behind, classes = behind[inner], classes[inner]
    assert (classes[(behind > 40.0) & (behind < 0.93 * reach)] == _plot.SHADOW).all()
    # At its foot the ridge folds the range: there the radar sees one point.
    folded = (behind > -front - 0.9 * before) & (behind < -40.0) & (np.abs(behind + front) > 20.0)
    assert (classes[folded] == _plot.LAYOVER).all()
    assert (classes[(behind > 1.1 * reach) | (behind < -front - 1.2 * before)] == 0).all()
    with pytest.raises(ValueError, match="side"):
        _plot.terrain_classes(product.orbit, terrain)

    axes = vorbel.plot_terrain(product, terrain)
    legend = axes.get_legend()
    told = [text.get_text() for text in legend.get_texts()] if legend else []
    share = 100.0 * np.count_nonzero(_plot.terrain_classes(product, terrain) == _plot.SHADOW) / ridge.size
    assert f"shadow {share:.1f} %" in told


@pytest.mark.parametrize("path", [IW, GRD])
def test_a_product_is_drawn_where_it_lies(path: Path) -> None:
    product = vorbel.read_sentinel1(path)
    axes = product.plot(height=100.0)
    drawn = {line.get_label(): np.array(line.get_data()) for line in axes.lines}
    corner = product.ground(product.shape[0] - 1, product.shape[1] - 1, 100.0)
    longitude, latitude = drawn["footprint"]
    away = (longitude - corner.longitude + 180.0) % 360.0 - 180.0
    assert np.hypot(away, latitude - corner.latitude).min() < 1e-9
    assert np.ptp(np.concatenate([longitude, drawn["track"][0]])) < 15.0  # across 180 degrees too
    assert len(axes.lines) == 3 + len(product.burst_times)

    # The satellite stands on the normal of the ellipsoid over the track.
    east, north = np.radians(drawn["track"])
    normal = np.stack([np.cos(north) * np.cos(east), np.cos(north) * np.sin(east), np.sin(north)])
    across = 6378137.0 / np.sqrt(1.0 - 0.0066943799901413165 * np.sin(north) ** 2)
    foot = across * normal * np.array([1.0, 1.0, 1.0 - 0.0066943799901413165])[:, None]
    line = np.linspace(0.0, product.shape[0] - 1.0, east.size)
    state = product.orbit.at(product.to_radar(line, product.shape[1] // 2).time)
    up = np.stack([state.x, state.y, state.z]) - foot
    assert np.abs(np.cross(up / np.linalg.norm(up, axis=0), normal, axis=0)).max() < 1e-9
