#!/usr/bin/env python3
"""Makes the pictures in docs/pictures from a real product's geometry: needs vorbel, xarray and matplotlib.

usage: docs/make_pictures.py
"""

from __future__ import annotations

from pathlib import Path

import matplotlib as mpl
import numpy as np
import vorbel
from matplotlib.figure import Figure
from PIL import Image

HERE = Path(__file__).parent
EXTRACTS = HERE.parent / "examples" / "products"
GULF, HAWAII = (next(EXTRACTS.glob(f"s1a-iw{swath}-slc-*.xml")) for swath in (1, 3))


def mountains(rows: int, columns: int, step: float) -> np.ndarray:
    """Return heights (m) of made mountains, of a random field whose spectrum falls as that of real relief does.

    :param step: m between rows and between columns
    """
    field = np.fft.rfft2(np.random.default_rng(5).standard_normal((rows, columns)))
    waves = np.hypot(np.fft.fftfreq(rows, step)[:, None], np.fft.rfftfreq(columns, step))  # 1/m
    spectrum = (waves**2 + (1.0 / 9e3) ** 2) ** -1.17 * np.exp(-((waves * 200.0) ** 2))
    heights = np.fft.irfft2(field * spectrum, (rows, columns))
    heights = (heights - heights.min()) / np.ptp(heights)
    return 3000.0 * heights**1.5


def save(figure: Figure, name: str) -> None:
    """Write a picture of few colours, which makes a small file."""
    path = HERE / "pictures" / name
    figure.savefig(path, dpi=100)
    Image.open(path).convert("RGB").quantize(128, dither=Image.Dither.NONE).save(path, optimize=True)


def main() -> None:
    """Make both pictures."""
    mpl.use("agg")
    from matplotlib import pyplot

    figure, axes = pyplot.subplots(figsize=(7.0, 4.4), layout="constrained")
    vorbel.read_sentinel1(GULF).plot(axes=axes)
    save(figure, "product.png")

    product = vorbel.read_sentinel1(HAWAII)
    middle = product.ground(product.shape[0] // 2, product.shape[1] // 2)
    rows, columns, step = 500, 620, 30.0
    degree = 111.2e3 * np.array([1.0, np.cos(np.radians(float(middle.latitude)))])  # m, of latitude and longitude
    latitude = float(middle.latitude) - step / degree[0] * (np.arange(rows) - rows / 2)
    longitude = float(middle.longitude) + step / degree[1] * (np.arange(columns) - columns / 2)
    terrain = vorbel.Terrain(mountains(rows, columns, step), latitude, longitude)
    figure, axes = pyplot.subplots(figsize=(6.6, 5.4), layout="constrained")
    vorbel.plot_terrain(product, terrain, axes=axes)
    save(figure, "terrain.png")


if __name__ == "__main__":
    main()
