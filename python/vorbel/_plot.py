"""Pictures of products and terrains, by matplotlib."""

from __future__ import annotations

from typing import TYPE_CHECKING, Literal

import numpy as np
from numpy.typing import NDArray

from vorbel._blocks import Floats, Side
from vorbel._core import Status
from vorbel._ground import pixel_to_ground
from vorbel._orbit import Orbit
from vorbel._pixels import ground_to_pixel
from vorbel._product import Product
from vorbel._terrain import LAYOVER_MASK, SHADOW_MASK, Terrain, pixel_to_terrain

if TYPE_CHECKING:
    import xarray
    from matplotlib.axes import Axes

_ALONG, _ACROSS = 40, 60  # points by which a line of the image or of a burst is drawn
_SEEN_WITHIN = 1.0  # m; a cell this near to a point that the radar sees at its range is that point
_CHOICES: tuple[Literal["smallest look angle", "greatest look angle"], ...] = (
    "smallest look angle",
    "greatest look angle",
)
_DEGREE = 111.2e3  # m of a degree of latitude
_WGS84_A, _WGS84_E2 = 6378137.0, 0.0066943799901413165

LAYOVER, SHADOW = 1, 2  #: values of terrain_classes()


def plot(product: Product, *, height: float = 0.0, axes: Axes | None = None) -> Axes:
    """Draw where a product lies: footprint, bursts, incidence and the satellite's track. Needs matplotlib.

    The axes are longitude and latitude in degrees. Longitudes go on beyond 180 degrees where an image does.

    :param height: m above the WGS 84 ellipsoid, at which the image is drawn
    :param axes: to draw into; None for new ones
    """
    lines, samples = product.shape
    line, pixel = np.linspace(0.0, lines - 1.0, _ALONG), np.linspace(0.0, samples - 1.0, _ACROSS)
    image = product.ground(line[:, None], pixel, height)
    start = float(image.longitude[0, 0])
    axes = axes or _new_axes()
    incidence = axes.pcolormesh(
        _near(image.longitude, start), image.latitude, image.incidence, shading="gouraud", cmap="viridis", zorder=1
    )
    colours = axes.figure.colorbar(incidence, ax=axes, shrink=0.7)
    colours.set_label("incidence angle, degrees")

    count = len(product.burst_times)
    length = product.annotation["lines_per_burst"] if count else lines
    for burst in range(count):
        outline = _outline(product, burst * length, (burst + 1) * length - 1, height)
        label = "bursts" if burst == 0 else None
        axes.plot(_near(outline[1], start), outline[0], color="white", linewidth=0.8, label=label, zorder=2)
    outline = _outline(product, 0, lines - 1, height)
    axes.plot(_near(outline[1], start), outline[0], color="black", label="footprint", zorder=3)

    seen = product.to_radar(line, samples // 2)
    satellite = product.orbit.at(seen.time)
    latitude, longitude = _below(satellite.x, satellite.y, satellite.z)
    longitude = _near(longitude, start)
    axes.plot(longitude, latitude, color="tab:red", label="track", zorder=3)
    arrow = {"arrowstyle": "-|>", "color": "tab:red", "mutation_scale": 16}
    axes.annotate("", (longitude[-1], latitude[-1]), (longitude[-2], latitude[-2]), arrowprops=arrow)
    half = _ALONG // 2
    far = _near(image.longitude[half, -1:], start)[0], image.latitude[half, -1]
    sight = ([longitude[half], far[0]], [latitude[half], far[1]])
    axes.plot(*sight, color="tab:red", linewidth=0.8, linestyle=":", label="line of sight", zorder=1)
    axes.legend(loc="best", facecolor="lightgray")
    a = product.annotation
    axes.set_title(
        f"{a['mission']} {a['swath']} {a['polarisation']}, {a['start_time'].text(0)} UTC, {a['flight'].lower()}"
    )
    return _mapped(axes, np.concatenate([outline[0], latitude]))


def plot_terrain(
    source: Product | Orbit,
    terrain: Terrain | xarray.DataArray,
    *,
    side: Side | None = None,
    axes: Axes | None = None,
) -> Axes:
    """Draw the relief of a terrain, and over it where the radar sees layover and where shadow. Needs matplotlib.

    An arrow shows in which direction the radar looks. The grey relief is lit from the north-west.

    :param source: a product, or an orbit with a `side`
    :param terrain: heights above the WGS 84 ellipsoid; a DataArray as for Terrain.from_xarray()
    :param side: to which side of its flight direction the radar looks; a product knows
    :param axes: to draw into; None for new ones
    :raises ValueError: an orbit without a side
    """
    from matplotlib.colors import LightSource, ListedColormap
    from matplotlib.patches import Patch

    if not isinstance(terrain, Terrain):
        terrain = Terrain.from_xarray(terrain)
    classes = terrain_classes(source, terrain, side)
    heights = _heights(terrain)
    latitude, longitude = terrain.latitude, terrain.longitude
    dy = _DEGREE * abs(latitude[1] - latitude[0])
    dx = _DEGREE * abs(longitude[1] - longitude[0]) * np.cos(np.radians(latitude.mean()))
    half_y, half_x = abs(latitude[1] - latitude[0]) / 2.0, (longitude[1] - longitude[0]) / 2.0
    extent = (longitude[0] - half_x, longitude[-1] + half_x, latitude[-1] - half_y, latitude[0] + half_y)
    axes = axes or _new_axes()
    relief = LightSource(315, 45).hillshade(np.nan_to_num(heights), dx=dx, dy=dy)
    axes.imshow(relief, extent=extent, cmap="gray", vmin=-0.2, vmax=1.1, interpolation="nearest", aspect="auto")
    colours = {"layover": "tab:orange", "shadow": "tab:blue"}
    marked = np.ma.masked_equal(classes, 0)
    palette = ListedColormap(list(colours.values()))
    axes.imshow(marked, extent=extent, cmap=palette, vmin=1, vmax=2, alpha=0.7, interpolation="nearest", aspect="auto")
    known = np.count_nonzero(np.isfinite(heights)) or 1
    labels = (
        Patch(color=colour, label=f"{name} {100.0 * np.count_nonzero(classes == value) / known:.1f} %")
        for (name, colour), value in zip(colours.items(), (LAYOVER, SHADOW))
    )
    axes.legend(handles=list(labels), loc="upper right")
    _line_of_sight(axes, source, terrain, side)
    return _mapped(axes, latitude)


def terrain_classes(source: Product | Orbit, terrain: Terrain, side: Side | None = None) -> NDArray[np.uint8]:
    """Return 0, LAYOVER or SHADOW for each cell of a terrain, rows from north to south.

    A cell is layover if the radar sees several points at its range, and the cell is one of them or lies between them;
    it is shadow if others hide it. Cells without a height, and those that the radar does not reach, are 0.
    """
    orbit, side = _radar(source, side)
    heights = _heights(terrain)
    latitude, longitude = np.broadcast_arrays(terrain.latitude[:, None], terrain.longitude)
    cells = ground_to_pixel(orbit, latitude, longitude, heights, side=side)
    found = cells.status == Status.ok
    latitude, longitude, height = latitude[found], longitude[found], heights[found]
    apart = np.full(height.shape, np.inf)
    seen = []
    for choice in _CHOICES:
        points = pixel_to_terrain(
            orbit,
            cells.time[found],
            cells.slant_range[found],
            terrain,
            side=side,
            choice=choice,
            outputs=("latitude", "longitude", "height", "mask"),
        )
        east = (_near(points.longitude, longitude) - longitude) * np.cos(np.radians(latitude))
        apart = np.fmin(apart, _DEGREE * np.hypot(points.latitude - latitude, east))
        seen.append(points.height)
    # At one range and time a point is the higher the greater its look angle.
    between = (seen[0] < height) & (height < seen[1])
    hidden = (points.mask & SHADOW_MASK != 0) & (apart > _SEEN_WITHIN) & ~between
    classes = np.zeros(heights.shape, np.uint8)
    classes[found] = np.where(hidden, SHADOW, np.where(points.mask & LAYOVER_MASK != 0, LAYOVER, 0))
    return classes


def _radar(source: Product | Orbit, side: Side | None) -> tuple[Orbit, Side]:
    """Return the orbit, and the side to which the radar looks."""
    if isinstance(source, Product):
        return source.orbit, source.side if side is None else side
    if side is None:
        raise ValueError("an orbit does not know to which side the radar looks")
    return source, side


def _line_of_sight(axes: Axes, source: Product | Orbit, terrain: Terrain, side: Side | None) -> None:
    orbit, side = _radar(source, side)
    seen = ground_to_pixel(orbit, terrain.latitude.mean(), terrain.longitude.mean(), side=side)
    azimuth = pixel_to_ground(orbit, seen.time, seen.slant_range, side=side, outputs=["azimuth"]).azimuth
    if np.isfinite(azimuth):
        turn = np.radians(float(azimuth))
        behind = (-45.0 * np.sin(turn), -45.0 * np.cos(turn))  # points of the page
        style = {"arrowstyle": "-|>", "color": "black", "linewidth": 2.5, "mutation_scale": 20}
        axes.annotate(
            "the radar looks",
            (0.3, 0.08),
            behind,
            xycoords="axes fraction",
            textcoords="offset points",
            arrowprops=style,
            ha="right" if behind[0] < 0.0 else "left",
            va="center",
            bbox={"boxstyle": "round", "facecolor": "white", "alpha": 0.8, "linewidth": 0.0},
        )


def _heights(terrain: Terrain) -> Floats:
    """Return the heights with not-a-number where one is missing."""
    heights = terrain.heights.astype(np.float64)
    if terrain.void is not None:
        heights[heights == terrain.void] = np.nan
    return heights


def _outline(product: Product, first: int, last: int, height: float) -> tuple[Floats, Floats]:
    """Return latitude and longitude around the lines from first to last."""
    along, across = np.linspace(first, last, _ALONG), np.linspace(0.0, product.shape[1] - 1.0, _ACROSS)
    line = np.concatenate([np.full(_ACROSS, first), along, np.full(_ACROSS, last), along[::-1]])
    pixel = np.concatenate([across, np.full(_ALONG, across[-1]), across[::-1], np.zeros(_ALONG)])
    points = product.ground(line, pixel, height, outputs=("latitude", "longitude"))
    return points.latitude, points.longitude


def _below(x: Floats, y: Floats, z: Floats) -> tuple[Floats, Floats]:
    """Return geodetic latitude and longitude of Earth-fixed points (m)."""
    across = np.hypot(x, y)
    latitude = np.arctan2(z, across)
    for _ in range(6):
        sine = np.sin(latitude)
        latitude = np.arctan2(z + _WGS84_E2 * _WGS84_A * sine / np.sqrt(1.0 - _WGS84_E2 * sine * sine), across)
    return np.degrees(latitude), np.degrees(np.arctan2(y, x))


def _near(longitude: Floats, other: Floats | float) -> Floats:
    """Return longitudes within half a turn of others."""
    return np.asarray(other + (longitude - other + 180.0) % 360.0 - 180.0)


def _new_axes() -> Axes:
    from matplotlib import pyplot

    return pyplot.subplots(layout="constrained")[1]


def _mapped(axes: Axes, latitude: Floats) -> Axes:
    """Label the axes, and give a degree of longitude its length."""
    axes.set_xlabel("longitude, degrees")
    axes.set_ylabel("latitude, degrees")
    axes.set_aspect(1.0 / np.cos(np.radians(np.nanmean(latitude))))
    return axes
