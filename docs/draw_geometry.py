#!/usr/bin/env python3
"""Draws docs/imaging_geometry.svg: the range sphere, the Doppler cone, the terrain and the names of the angles.

usage: docs/draw_geometry.py [FILE]; needs numpy. Every line is calculated from one small scene, not to scale: distances
are in units of a fifth of the satellite's height, over an Earth that is too small.
"""

from __future__ import annotations

import sys
from pathlib import Path

import numpy as np

WIDTH, HEIGHT = 900, 700
EARTH = 42.0  # radius
SATELLITE = np.array([0.0, 0.0, 5.2])  # x along the flight, y to the side that the radar looks to, z up
FLIGHT = np.array([1.0, 0.0, 0.0])
NORTH = np.array([0.97, -0.10, 0.0])  # of the scene, for the azimuth
SQUINT = np.radians(19.0)  # between the line of sight and the plane across the flight
ROLL = np.radians(43.0)  # of the line of sight in that plane, from the nadir

# The eye looks from behind and the right of the flight, from above.
AZIMUTH, ELEVATION, SCALE, CENTRE = np.radians(24.0), np.radians(22.0), 84.0, (150.0, 520.0)

SPHERE, CONE, LAND, SIGHT, TEXT = "#1f6fb2", "#c46a12", "#6d8f4e", "#b3261e", "#222222"


def project(points: np.ndarray) -> np.ndarray:
    """Return places on the page, x to the right and y downwards, of points of shape (n, 3)."""
    points = np.atleast_2d(points)
    right = np.array([np.sin(AZIMUTH), np.cos(AZIMUTH), 0.0])
    back = np.array([np.cos(AZIMUTH), -np.sin(AZIMUTH), 0.0])
    up = np.cos(ELEVATION) * np.array([0.0, 0.0, 1.0]) + np.sin(ELEVATION) * back
    return np.stack([CENTRE[0] + SCALE * points @ right, CENTRE[1] - SCALE * points @ up], axis=1)


def hills(x: np.ndarray, y: np.ndarray) -> np.ndarray:
    """Return the height of the terrain above the round Earth."""
    peaks = ((2.5, 5.5, 0.8, 0.62), (0.5, 4.6, 0.55, 0.55), (3.6, 3.6, 0.5, 0.55), (-0.6, 6.2, 0.5, 0.5))
    return sum(h * np.exp(-((x - px) ** 2 + (y - py) ** 2) / (2.0 * w * w)) for px, py, h, w in peaks)


def ground(x: np.ndarray, y: np.ndarray, terrain: bool = False) -> np.ndarray:
    """Return points of the round Earth, or of the terrain on it, over x and y."""
    x, y = np.broadcast_arrays(np.asarray(x, float), np.asarray(y, float))
    z = np.sqrt(EARTH**2 - x**2 - y**2) - EARTH
    return np.stack([x, y, z + hills(x, y) if terrain else z], axis=-1)


def sight(squint: float, roll: float) -> np.ndarray:
    """Return the direction from the satellite at a squint angle, and rolled from the nadir before."""
    return np.array([np.sin(squint), np.cos(squint) * np.sin(roll), -np.cos(squint) * np.cos(roll)])


def reach(direction: np.ndarray, terrain: bool) -> float:
    """Return the distance from the satellite to the surface."""
    distances = np.linspace(1.0, 14.0, 20001)
    points = SATELLITE + distances[:, None] * direction
    above = points[:, 2] - ground(points[:, 0], points[:, 1], terrain)[:, 2]
    below = np.flatnonzero(above < 0.0)
    return float(distances[below[0]]) if below.size else float("nan")


def arc(centre: np.ndarray, first: np.ndarray, last: np.ndarray, radius: float) -> np.ndarray:
    """Return points of an arc between two unit directions."""
    angle = np.arccos(first @ last)
    across = (last - (first @ last) * first) / np.sin(angle)
    turn = np.linspace(0.0, angle, 40)[:, None]
    return centre + radius * (np.cos(turn) * first + np.sin(turn) * across)


def contour(distance: float, squints: np.ndarray, roll: float) -> np.ndarray:
    """Return the points of the terrain at a distance from the satellite, near a roll angle."""
    rolls = np.linspace(roll - 0.1, roll + 0.1, 2001)
    found = []
    for squint in squints:
        points = SATELLITE + distance * np.array([sight(squint, angle) for angle in rolls])
        above = points[:, 2] - ground(points[:, 0], points[:, 1], True)[:, 2]
        crossings = np.flatnonzero(np.diff(np.sign(above)))
        if crossings.size:
            found.append(points[crossings[np.argmin(np.abs(rolls[crossings] - roll))]])
    return np.array(found)


class Drawing:
    """The elements of an SVG file."""

    def __init__(self) -> None:
        """Begin with a white page."""
        self.elements = [f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#ffffff"/>']

    def line(self, points: np.ndarray, colour: str, width: float = 1.5, extra: str = "") -> None:
        """Draw a line through points."""
        self._path(points, f'fill="none" stroke="{colour}" stroke-width="{width}" stroke-linejoin="round" {extra}')

    def surface(self, points: np.ndarray, colour: str, opacity: float) -> None:
        """Fill a polygon."""
        self._path(points, f'fill="{colour}" fill-opacity="{opacity}"', "Z")

    def _path(self, points: np.ndarray, style: str, end: str = "") -> None:
        places = project(points[~np.isnan(points).any(axis=1)])
        steps = " L".join(f"{x:.1f} {y:.1f}" for x, y in places)
        self.elements.append(f'<path d="M{steps}{end}" {style.strip()}/>')

    def arrow(self, start: np.ndarray, end: np.ndarray, colour: str, width: float = 2.0) -> None:
        """Draw an arrow."""
        (x1, y1), (x2, y2) = project(np.array([start, end]))
        length = np.hypot(x2 - x1, y2 - y1)
        ux, uy = (x2 - x1) / length, (y2 - y1) / length
        self.line(np.array([start, end]), colour, width)
        head = " ".join(f"{x2 - 11 * ux - s * uy:.1f},{y2 - 11 * uy + s * ux:.1f}" for s in (4.5, -4.5))
        self.elements.append(f'<polygon points="{x2 + 2 * ux:.1f},{y2 + 2 * uy:.1f} {head}" fill="{colour}"/>')

    def dot(self, point: np.ndarray, colour: str, radius: float = 4.0) -> None:
        """Mark a point."""
        x, y = project(point)[0]
        self.elements.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{radius}" fill="{colour}"/>')

    def text(
        self, point: np.ndarray, text: str, colour: str, dx: float = 0, dy: float = 0, anchor: str = "start"
    ) -> None:
        """Write at a point, moved on the page."""
        x, y = project(point)[0]
        self.elements.append(
            f'<text x="{x + dx:.1f}" y="{y + dy:.1f}" fill="{colour}" text-anchor="{anchor}" stroke="#ffffff"'
            f' stroke-width="4" stroke-linejoin="round" paint-order="stroke">{text}</text>'
        )

    def write(self, path: Path) -> None:
        """Write the file."""
        head = (
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" font-family="DejaVu Sans, Verdana,'
            ' Arial, sans-serif" font-size="17">\n<title>Imaging geometry of a radar on a satellite</title>\n'
        )
        path.write_text(head + "\n".join(self.elements) + "\n</svg>\n", encoding="utf-8")


def main(path: Path) -> None:
    """Draw the scene."""
    d = Drawing()
    to_point = sight(SQUINT, ROLL)
    distance = reach(to_point, terrain=True)
    point = SATELLITE + distance * to_point
    nadir, down = np.zeros(3), np.array([0.0, 0.0, -1.0])
    centre = np.array([0.0, 0.0, -EARTH])
    up = (point - centre) / np.linalg.norm(point - centre)

    # the Earth, and the terrain on it, from the back to the front
    xs, ys = np.linspace(-1.6, 4.6, 63), np.linspace(-0.9, 7.1, 81)
    edge = [ground(xs, ys[0]), ground(xs[-1], ys), ground(xs[::-1], ys[-1]), ground(xs[0], ys[::-1])]
    d.surface(np.concatenate(edge), "#eef3e8", 1.0)
    for x in xs[::8]:
        d.line(ground(x, ys), "#cfd9c4", 0.8)
    for y in ys[::8]:
        d.line(ground(xs, y), "#cfd9c4", 0.8)
    for x in np.linspace(4.6, -1.2, 59):
        profile = ground(x, ys[28:], True)
        d.surface(np.concatenate([profile, ground(x, ys[[-1, 28]])]), "#e3ecd8", 0.9)
        d.line(profile, LAND, 0.6, 'stroke-opacity="0.65"')

    # the sphere of the slant range: a piece around the line of sight, and where it meets the terrain
    squints, rolls = np.radians(np.linspace(-2.0, 36.0, 39)), np.radians(np.linspace(34.0, 53.0, 22))
    piece = np.array([[SATELLITE + distance * sight(s, r) for r in rolls] for s in squints])
    d.surface(np.concatenate([piece[:, 0], piece[-1], piece[::-1, -1], piece[0, ::-1]]), SPHERE, 0.16)
    for line in (*piece[::6], *piece.transpose(1, 0, 2)[::7]):
        d.line(line, SPHERE, 0.6, 'stroke-opacity="0.55"')
    d.line(contour(distance, squints, ROLL), SPHERE, 2.2)

    # the cone of the Doppler frequency: a piece of all directions at the squint angle
    cone = [sight(SQUINT, roll) for roll in np.radians(np.linspace(0.0, 50.0, 51))]
    feet = np.array([SATELLITE + reach(direction, terrain=True) * direction for direction in cone])
    d.surface(np.concatenate([[SATELLITE], feet]), CONE, 0.14)
    for foot in feet[::4]:
        d.line(np.array([SATELLITE, foot]), CONE, 0.7, 'stroke-opacity="0.5"')
    d.line(feet, CONE, 2.2)

    # the directions
    d.line(np.array([SATELLITE, nadir]), TEXT, 1.2, 'stroke-dasharray="6 5"')
    across = sight(0.0, ROLL)
    d.line(np.array([SATELLITE, SATELLITE + 4.4 * across]), TEXT, 1.2, 'stroke-dasharray="2 4"')
    d.line(np.array([point, point + 1.9 * up]), TEXT, 1.2, 'stroke-dasharray="6 5"')
    d.arrow(SATELLITE, SATELLITE + 2.6 * FLIGHT, TEXT)
    d.line(np.array([SATELLITE, point]), SIGHT, 2.6)

    # the angles
    d.line(arc(SATELLITE, down, to_point, 1.5), SIGHT, 1.6)
    d.line(arc(SATELLITE, across, to_point, 3.4), CONE, 1.6)
    d.line(arc(point, up, -to_point, 1.2), SIGHT, 1.6)
    flat = to_point - (to_point @ up) * up
    flat /= np.linalg.norm(flat)
    north = NORTH - (NORTH @ up) * up
    north /= np.linalg.norm(north)
    d.arrow(point, point + 1.5 * north, TEXT, 1.4)
    d.line(np.array([point, point + 1.35 * flat]), SIGHT, 1.4, 'stroke-dasharray="5 4"')
    d.line(arc(point, north, flat, 0.8), SIGHT, 1.6)
    for mark in (nadir, SATELLITE):
        d.dot(mark, TEXT)
    d.dot(point, SIGHT, 5.0)

    d.text(SATELLITE, "satellite", TEXT, -12, 4, "end")
    d.text(SATELLITE + 2.6 * FLIGHT, "direction of flight", TEXT, 10, -2)
    d.text(nadir, "nadir", TEXT, 0, 24, "middle")
    d.text(SATELLITE + 0.45 * distance * to_point, "slant range", SIGHT, 26, -22)
    d.text(arc(SATELLITE, down, to_point, 1.5)[0], "look angle", SIGHT, -10, -6, "end")
    d.text(arc(SATELLITE, across, to_point, 3.4)[0], "squint angle", CONE, -8, 26, "middle")
    d.text(SATELLITE + 4.4 * across, "square to the flight", TEXT, -20, 18, "middle")
    d.text(arc(point, up, -to_point, 1.2)[0], "incidence angle", SIGHT, 8, -2)
    d.text(arc(point, north, flat, 0.8)[28], "azimuth", SIGHT, 6, 22)
    d.text(point + 1.5 * north, "north", TEXT, 8, 2)
    d.text(point + 1.9 * up, "vertical", TEXT, 0, -8, "middle")
    d.text(piece[0, 8], "sphere of the slant range", SPHERE, -12, 22, "end")
    d.text(feet[16], "cone of the Doppler frequency", CONE, 20, 44, "middle")
    d.text(ground(1.6, 7.1, True), "terrain", "#4d6b32", 30, 28, "middle")
    d.write(path)


if __name__ == "__main__":
    main(Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent / "imaging_geometry.svg")
