#!/usr/bin/env python3
"""Locates a whole swath and geocodes a terrain of 10^8 cells on several worker processes of dask.

On workers that it starts itself:

    examples/geocode_distributed.py --workers 2

On a scheduler and workers started by hand, on this machine or on others that have vorbel:

    dask scheduler --host 127.0.0.1 --port 8786 --no-dashboard
    dask worker tcp://127.0.0.1:8786 --nthreads 1 --no-dashboard        (once for each worker)
    examples/geocode_distributed.py --scheduler tcp://127.0.0.1:8786

--kill kills a worker in the middle of the terrain, --check compares the results with those of one process, bit for bit.
Small enough to be tried in seconds: --edge 2000 --lines 1500.

Needs xarray, dask and distributed.
"""

from __future__ import annotations

import argparse
import os
import resource
import signal
import sys
import time
import zlib
from pathlib import Path
from typing import Any

import dask
import dask.array
import numpy as np
import vorbel
import xarray
from dask.distributed import Client, LocalCluster, as_completed

SWATH = Path(__file__).parent / "products" / "s1a-iw1-slc-hh-20220414t102211-20220414t102236-042768-051aa4-001.xml"


def hills(sea: np.ndarray, latitude: np.ndarray, longitude: np.ndarray) -> np.ndarray:
    """Return heights from 0 to 900 m above the ellipsoid, of hills a few kilometres wide, on a raster; degrees."""
    north, east = 111.2 * latitude[:, None], 70.3 * longitude  # km
    ridges = np.sin(0.9 * north + 0.4 * np.sin(0.7 * east)) * np.sin(0.6 * east - 0.2 * north)
    return sea + 440.0 + 380.0 * ridges + 60.0 * np.sin(3.1 * east) * np.sin(2.7 * north) * ridges


def terrain(product: vorbel.Product, edge: int, chunk: int) -> xarray.DataArray:
    """Return edge x edge cells of hills over the image of a product, which are made when a worker needs them."""
    grid = product.grid
    rows = np.linspace(grid["latitude"].max(), grid["latitude"].min(), edge)
    columns = np.linspace(grid["longitude"].min(), grid["longitude"].max(), edge)
    latitude, longitude = (dask.array.from_array(axis, chunks=chunk) for axis in (rows, columns))
    sea = dask.array.zeros((edge, edge), chunks=chunk)
    heights = dask.array.blockwise(hills, "yx", sea, "yx", latitude, "y", longitude, "x", dtype=np.float64)
    return xarray.DataArray(heights, {"latitude": rows, "longitude": columns}, ("latitude", "longitude"))


def summary(*arrays: np.ndarray) -> np.ndarray:
    """Return a checksum of the arrays of a chunk, the number of its points, and how many the status calls located."""
    checksum = 0
    for array in arrays:
        checksum = zlib.crc32(np.ascontiguousarray(array).data, checksum)
    status = arrays[-1]
    return np.array([[[checksum, status.size, np.count_nonzero(status == vorbel.Status.ok.value)]]])


def tasks(data: xarray.Dataset) -> list[Any]:
    """Return a task for each chunk: it computes the chunk on a worker, and only its summary travels."""
    arrays = [data[name].data for name in data if name != "status"]
    one_each = tuple((1,) * count for count in data.status.data.numblocks)
    # One array of all summaries, not a graph for each variable: dask would compute the chunk once for each.
    summaries = dask.array.map_blocks(
        summary, *arrays, data.status.data, dtype=np.int64, new_axis=2, chunks=(*one_each, (3,))
    )
    return list(summaries.to_delayed().ravel())


def run(client: Client, work: list[Any], kill: bool = False) -> np.ndarray:
    """Have the workers do the tasks; after a quarter of them, kill a worker of this machine if that is asked for.

    Return the summaries, an array of shape (tasks, 3).
    """
    futures = client.compute(work)
    if kill:
        for done, _ in enumerate(as_completed(futures), 1):
            if 4 * done >= len(futures):
                break
        os.kill(next(iter(client.run(os.getpid).values())), signal.SIGKILL)
    return np.array(client.gather(futures)).reshape(-1, 3)


def memory() -> float:
    """Return the peak memory of this process, in MB."""
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / (1e6 if sys.platform == "darwin" else 1e3)


def report(name: str, client: Client, work: list[Any], kill: bool, check: bool) -> bool:
    """Do the tasks, print what that took, and return whether the results are those of one process."""
    workers = len(client.run(memory))
    start = time.perf_counter()
    results = run(client, work, kill)
    seconds = time.perf_counter() - start
    _, points, located = results.sum(axis=0)
    print(f"{name}: {points:,} points in {len(results)} chunks, {located:,} of them located, in {seconds:.1f} s")
    print(f"  {points / seconds / workers / 1e6:.2f} million points a second and worker")
    peaks = ", ".join(f"{peak:.0f} MB" for peak in client.run(memory).values())
    print(f"  peak memory of the workers: {peaks}")
    if kill:
        print("  one worker was killed in the middle; these are the ones that live")
    if not check:
        return True
    start = time.perf_counter()
    same = np.array_equal(results, np.array(dask.compute(*work, scheduler="synchronous")).reshape(-1, 3))
    seconds = time.perf_counter() - start
    print(f"  in one process: {'the same bits' if same else 'OTHER RESULTS'} in {seconds:.1f} s")
    return same


def number(text: str) -> int:
    """Read a whole number above 0."""
    value = int(text)
    if value < 1:
        raise ValueError
    return value


def main() -> int:
    """Run the example."""
    parser = argparse.ArgumentParser(description="Locate a swath and geocode a terrain on workers of dask.")
    parser.add_argument("product", nargs="?", default=SWATH, help="annotation file, SAFE folder or zip of one")
    parser.add_argument("--edge", type=number, default=10000, help="the terrain has as many rows and columns (10000)")
    parser.add_argument("--lines", type=number, help="of the swath (all)")
    parser.add_argument("--chunk", type=number, default=1000, help="rows and columns, or lines and pixels (1000)")
    parser.add_argument("--workers", type=number, default=2, help="to start, or to wait for (2)")
    parser.add_argument("--scheduler", metavar="ADDRESS", help="use the workers of this scheduler instead")
    parser.add_argument("--kill", action="store_true", help="kill a worker in the middle of the terrain")
    parser.add_argument("--check", action="store_true", help="compare with the results of one process")
    options = parser.parse_args()
    try:
        product = vorbel.read_sentinel1(options.product)
    except (OSError, ValueError) as error:
        print(f"geocode_distributed: {error}", file=sys.stderr)
        return 1
    swath = product.dataset(height=200.0, chunks=(options.chunk, options.chunk))
    swath = swath.isel(azimuth_time=slice(options.lines))
    cells = vorbel.geocode(product, terrain(product, options.edge, options.chunk))

    cluster = None
    if options.scheduler is None:
        cluster = LocalCluster(
            n_workers=options.workers, threads_per_worker=1, host="127.0.0.1", dashboard_address=None
        )
    try:
        client = Client(cluster or options.scheduler, timeout="10s")
        client.wait_for_workers(options.workers, timeout=60)
    except (OSError, ValueError, TimeoutError) as error:
        print(f"geocode_distributed: no {options.workers} workers at {options.scheduler}: {error}", file=sys.stderr)
        return 1
    with client:
        idle = client.run(memory).values()
        print(f"{len(idle)} workers of one thread, which take {max(idle):.0f} MB before they have work")
        same = report("swath", client, tasks(swath), False, options.check)
        same &= report("terrain", client, tasks(cells), options.kill, options.check)
    if cluster is not None:
        cluster.close()
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())
