"""What the command answers, on the extracts of real products that the examples keep.

usage: command.py COMMAND FOLDER MANUAL
"""

import csv
import json
import math
import re
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

COMMAND, FOLDER, MANUAL = sys.argv.pop(1), Path(sys.argv.pop(1)), Path(sys.argv.pop(1))
BURSTS, HAWAII, STRIP_MAP, GROUND_RANGE = (
    next(FOLDER.glob(name)) for name in ("s1a-iw1-*.xml", "s1a-iw3-*.xml", "s1a-s3-*.xml", "s1a-iw-grd-*.xml")
)
ORBIT = next(FOLDER.glob("*POEORB*.EOF"))


def call(*arguments, text=""):
    return subprocess.run(
        [COMMAND, *map(str, arguments)], input=text.encode(), capture_output=True, timeout=300, check=False
    )


def answer(*arguments, text=""):
    done = call(*arguments, text=text)
    assert done.returncode == 0, done.stderr.decode()
    return done.stdout.decode()


def table(text):
    return list(csv.DictReader(text.splitlines()))


def grid_of(product):
    """The points of the product's own geolocation grid."""
    names = ("line", "pixel", "latitude", "longitude", "height", "incidenceAngle")
    points = ElementTree.parse(product).iter("geolocationGridPoint")
    return [{name: float(point.findtext(name)) for name in names} for point in points]


def metres(a, b):
    """Roughly, between two points."""
    latitude, longitude = (float(a[name]) - float(b[name]) for name in ("latitude", "longitude"))
    return 111300 * math.hypot(latitude, math.remainder(longitude, 360) * math.cos(math.radians(float(b["latitude"]))))


def write_raster(path, north, west, step, rows):
    """A GeoTIFF of one strip; its corner is the outer one of the first value."""
    values = [value for row in rows for value in row]
    doubles = struct.pack("<9d", step, step, 0, 0, 0, 0, west, north, 0)
    keys = struct.pack("<8H", 1, 1, 0, 1, 2048, 0, 1, 4326)
    tags = [(256, 4, 1, len(rows[0])), (257, 4, 1, len(rows)), (258, 3, 1, 32), (259, 3, 1, 1), (262, 3, 1, 1)]
    tags += [(273, 4, 1, 512), (277, 3, 1, 1), (278, 4, 1, len(rows)), (279, 4, 1, 4 * len(values)), (339, 3, 1, 3)]
    tags += [(33550, 12, 3, 256), (33922, 12, 6, 280), (34735, 3, 8, 328)]
    directory = struct.pack("<H", len(tags)) + b"".join(struct.pack("<HHII", *tag) for tag in tags) + bytes(4)
    head = (b"II*\0" + struct.pack("<I", 8) + directory).ljust(256, b"\0") + doubles + keys
    path.write_bytes(head.ljust(512, b"\0") + struct.pack(f"<{len(values)}f", *values))


class Command(unittest.TestCase):
    def test_agrees_with_the_products_own_grids(self):
        # m on the ground, lines and pixels: what the grids' own rounding and scatter leave
        for product, most, lines, pixels in (
            (BURSTS, 0.02, 0.001, 0.0005),
            (HAWAII, 0.1, 0.01, 0.002),
            (STRIP_MAP, 0.02, 0.004, 0.001),
            (GROUND_RANGE, 0.02, 0.001, 0.0005),
        ):
            grid = grid_of(product)
            asked = "".join(f"{p['height']!r},{p['pixel']},{p['line']}\n" for p in grid)
            for point, found in zip(grid, table(answer("locate", product, text="height,pixel,line\n" + asked))):
                self.assertEqual(found["status"], "ok")
                self.assertLess(metres(found, point), most)
                # the products measure it from the direction of the Earth's centre, not from the normal
                self.assertAlmostEqual(float(found["incidence"]), point["incidenceAngle"], delta=0.06)
            asked = "".join(f"{p['latitude']!r},{p['longitude']!r},{p['height']!r}\n" for p in grid)
            for point, found in zip(
                grid, table(answer("project", product, text="latitude,longitude,height\n" + asked)), strict=True
            ):
                line = [float(found[name]) for name in ("line", "other_line") if found.get(name)]
                self.assertLess(min(abs(each - point["line"]) for each in line), lines)
                self.assertLess(abs(float(found["pixel"]) - point["pixel"]), pixels)

    def test_takes_an_orbit_file_and_a_line_without_its_correction(self):
        there, precise, line_time = (
            json.loads(answer("locate", HAWAII, "--line", 7000, "--pixel", 12000, "--json", *more))
            for more in ([], ["--orbit", ORBIT], ["--line-times"])
        )
        self.assertTrue(0.001 < metres(there, precise) < 0.1)
        # of the third swath, half the delay since the middle one is worth a metre or two
        self.assertTrue(0.5 < metres(there, line_time) < 3)

    def test_keeps_a_table_as_it_is_and_adds_to_it(self):
        text = '\ufeffname,"pixel",line\r\n"a, ""b""",1200,500\r\n\r\nc,x,1\nd,30000,1\ne," 1200",500.0'
        done = call("locate", BURSTS, "--height", "100", text=text)
        header, *rows = done.stdout.decode().splitlines()
        self.assertEqual(header, 'name,"pixel",line,latitude,longitude,height,incidence,status')
        one = json.loads(answer("locate", BURSTS, "--line", 500, "--pixel", 1200, "--height", 100, "--json"))
        added = f"{one['latitude']:.9f},{one['longitude']:.9f},100.0000,{one['incidence']:.6f},ok"
        self.assertEqual(
            rows,
            [f'"a, ""b""",1200,500,{added}', "c,x,1,,,,,bad_input", "d,30000,1,,,,,outside_image"]
            + [f'e," 1200",500.0,{added}'],
        )
        self.assertEqual(
            done.stderr.decode().splitlines(), ["4 rows, 2 without an answer: 1 bad_input, 1 outside_image"]
        )

    def test_long_tables_come_in_order_whatever_the_blocks(self):
        count = 200000
        text = "line,pixel,id\n" + "".join(f"{i % 7 * 100}.0,{i % 11 * 1000}.0,{i}\n" for i in range(count))
        rows = table(answer("locate", BURSTS, text=text))
        self.assertEqual([row.pop("id") for row in rows], [str(i) for i in range(count)])
        for i in range(77, count):
            self.assertEqual(rows[i], rows[i % 77])
        self.assertEqual(len({tuple(row.values()) for row in rows}), 77)

    def test_grid_ends_at_the_last_pixel_and_answers_as_locate(self):
        rows = table(answer("grid", BURSTS, "--step", 7000, 20000, "--height", 50))
        self.assertEqual(
            [(row["line"], row["pixel"]) for row in rows],
            [(line, pixel) for line in ("0", "7000", "13499") for pixel in ("0", "20000", "21168")],
        )
        one = json.loads(answer("locate", BURSTS, "--line", 7000, "--pixel", 20000, "--height", 50, "--json"))
        for name in ("latitude", "longitude", "incidence", "slant_range"):
            self.assertEqual(float(rows[4][name]), one[name])
        self.assertEqual(rows[4]["time"], one["time"])

    def test_footprints_hold_their_products(self):
        for product in (BURSTS, GROUND_RANGE):
            feature = json.loads(answer("footprint", product))["features"][0]["geometry"]
            crosses = product == GROUND_RANGE
            self.assertEqual(feature["type"], "MultiPolygon" if crosses else "Polygon")
            rings = [polygon[0] for polygon in (feature["coordinates"] if crosses else [feature["coordinates"]])]
            for ring in rings:
                self.assertEqual(ring[0], ring[-1])
                self.assertGreater(sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(ring, ring[1:])), 0)
            for point in grid_of(product):
                edge = min(
                    metres({"latitude": y, "longitude": x}, point) for ring in rings for x, y in ring
                )
                # the farthest from the nearest corner stand in the middle of the image
                self.assertLess(edge, 130e3)
        bursts = json.loads(answer("footprint", "--bursts", BURSTS))["features"]
        self.assertEqual([burst["properties"]["burst"] for burst in bursts], list(range(1, 10)))
        latitudes = [min(y for x, y in burst["geometry"]["coordinates"][0]) for burst in bursts]
        # 2.76 s of flight, and a few lines more or less that are valid
        for a, b in zip(latitudes, latitudes[1:]):
            self.assertAlmostEqual((a - b) * 111.3, 18.4, delta=0.8)

    def test_doppler_is_the_products_to_a_twentieth_of_a_hertz(self):
        got = json.loads(answer("doppler", BURSTS, "--json"))
        self.assertEqual(len(got["rows"]) % 3, 0)
        self.assertLess(got["rms_hz"], 0.05)
        without = json.loads(answer("doppler", BURSTS, "--json", "--ut1-utc", 0))
        self.assertAlmostEqual(without["rms_hz"], 1.04, delta=0.06)  # what the Earth's rotation is worth

    def test_terrain_stands_where_its_file_says(self):
        centre = json.loads(answer("locate", BURSTS, "--line", 7000, "--pixel", 9000, "--json"))
        north, west, step, count = round(centre["latitude"]) + 1.0, round(centre["longitude"]) - 1.0, 0.01, 200

        def height(latitude, longitude):
            return 300 + 100 * (latitude - north) + 50 * (longitude - west)

        rows = [
            [height(north - (row + 0.5) * step, west + (column + 0.5) * step) for column in range(count)]
            for row in range(count)
        ]
        with tempfile.TemporaryDirectory() as folder:
            plane, geoid, cut = (Path(folder) / name for name in ("plane.tif", "geoid.tif", "cut.tif"))
            write_raster(plane, north, west, step, rows)
            write_raster(geoid, north + 1, west - 1, 1, [[-30.0] * 5] * 5)
            cut.write_bytes(plane.read_bytes()[:90000])
            for more, shift in (([], 0), (["--geoid", geoid], -30)):
                point = json.loads(
                    answer("locate", BURSTS, "--line", 7000, "--pixel", 9000, "--json", "--terrain", plane, *more)
                )
                # m, of heights in single precision
                self.assertAlmostEqual(
                    point["height"], height(point["latitude"], point["longitude"]) + shift, delta=1e-3
                )
                place = ["--lat", point["latitude"], "--lon", point["longitude"], "--terrain", plane, *more]
                back = json.loads(answer("project", BURSTS, "--json", *place))
                self.assertAlmostEqual(back["line"], 7000, delta=1e-4)
                self.assertAlmostEqual(back["pixel"], 9000, delta=1e-4)
            for file in (cut, BURSTS):
                done = call("locate", BURSTS, "--line", 7000, "--pixel", 9000, "--terrain", file)
                self.assertEqual((done.returncode, done.stderr.count(b"\n")), (1, 1))

    def test_says_in_one_line_what_is_wrong(self):
        with tempfile.NamedTemporaryFile(suffix=".xml") as file:
            file.write(BURSTS.read_bytes()[:5000])
            file.flush()
            data = [
                (["info", file.name], "", Path(file.name).name),
                (["info", "no-such-file.xml"], "", "no-such-file.xml"),
                (["locate", BURSTS, "--line", 1e6, "--pixel", 0], "", "outside_image"),
                (["locate", BURSTS], "", "empty"),
                (["locate", BURSTS], "line,px\n1,2\n", "pixel"),
                (["locate", BURSTS], "line,pixel,latitude\n1,2,3\n", "latitude"),
                (["locate", BURSTS], "line,pixel\n1,2\n3\n", "line 3"),
                (["locate", BURSTS], 'line,pixel\n1,"2\n', "quote"),
                (["locate", BURSTS], "line,pixel\n1," + "2" * 2000000, "longer"),
                (["footprint", "--bursts", STRIP_MAP], "", "no bursts"),
                (["locate", BURSTS, "--line", 1, "--pixel", 1, "--orbit", ORBIT], "", "cover"),
            ]
            calls = [
                ([], "", "required"),
                (["lokate", BURSTS], "", "lokate"),
                (["locate", BURSTS, "--line", 1], "", "--line and --pixel"),
                (["locate", BURSTS, "--line", "x", "--pixel", 1], "", "--line"),
                (["locate", BURSTS, "--json"], "line,pixel\n", "--json"),
                (["project", BURSTS, "--geoid", "g.tif"], "", "--terrain"),
                (["grid", BURSTS, "--step", 0], "", "--step"),
                (["locate", BURSTS, "--heigth", 1], "", "--heigth"),
            ]
            for code, cases in ((1, data), (2, calls)):
                for arguments, text, said in cases:
                    done = call(*arguments, text=text)
                    message = done.stderr.decode()
                    self.assertEqual(done.returncode, code, (arguments, message))
                    self.assertRegex(message, r"\Avorbel: [^\n]*\n\Z")
                    self.assertIn(said, message)

    def test_the_manual_has_every_command_and_option(self):
        def options(text):
            return set(re.findall(r"--[a-z][a-z0-9-]+", text)) - {"--help", "--version"}

        page = MANUAL.read_text().replace("\\-", "-")
        there = set()
        for command in re.findall(r"^  (\w+) {4,}", answer("--help").split("Subcommands:")[1], re.MULTILINE):
            self.assertIn(f"\n.B vorbel {command}\n", page)
            there |= options(answer(command, "--help"))
        self.assertEqual(options(page), there)

    def test_every_command_has_an_example(self):
        for name in ("info", "locate", "project", "grid", "footprint", "doppler"):
            self.assertIn(f"Example:\n  vorbel {name} ", answer(name, "--help"))


unittest.main()
