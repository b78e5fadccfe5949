"""The distributed example, on a scheduler and workers started by hand."""

from __future__ import annotations

import json
import signal
import subprocess
import sys
import time
from collections.abc import Iterator
from pathlib import Path

import pytest

EXAMPLE = Path(__file__).parents[2] / "examples" / "geocode_distributed.py"

Cluster = tuple[str, list["subprocess.Popen[bytes]"]]


@pytest.fixture
def cluster(tmp_path: Path) -> Iterator[Cluster]:
    """The address of a scheduler, and its two workers of one thread, which nothing starts again."""
    pytest.importorskip("distributed")
    file = tmp_path / "scheduler.json"
    dask, told = [sys.executable, "-m", "dask"], ["--scheduler-file", str(file), "--host", "127.0.0.1"]
    scheduler = subprocess.Popen([*dask, "scheduler", *told, "--port", "0", "--no-dashboard"], cwd=tmp_path)
    work = [*dask, "worker", *told, "--nthreads", "1", "--no-nanny", "--no-dashboard"]
    workers = [subprocess.Popen(work, cwd=tmp_path) for _ in range(2)]
    try:
        deadline = time.monotonic() + 60.0
        while not (file.exists() and file.stat().st_size) and time.monotonic() < deadline:
            time.sleep(0.1)
        yield json.loads(file.read_text())["address"], workers
    finally:
        for process in (*workers, scheduler):
            process.kill()
            process.wait()


@pytest.mark.slow
def test_a_killed_worker_costs_no_result(cluster: Cluster) -> None:
    address, workers = cluster
    command = [sys.executable, str(EXAMPLE), "--scheduler", address, "--workers", "2", "--kill", "--check"]
    size = ["--edge", "1200", "--lines", "300", "--chunk", "300"]
    example = subprocess.run([*command, *size], capture_output=True, text=True, timeout=240)
    assert example.returncode == 0, example.stdout + example.stderr
    # lines of 21169 pixels, and cells on the image or near it
    assert "swath: 6,350,700 points in 71 chunks, 6,350,700 of them located" in example.stdout
    assert "terrain: 1,440,000 points in 16 chunks, 1,440,000 of them located" in example.stdout
    assert example.stdout.count("in one process: the same bits") == 2
    assert sorted(worker.poll() or 0 for worker in workers) == [-signal.SIGKILL, 0]
