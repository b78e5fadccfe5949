"""The class from Python: its numbers, its records and how they live."""

from __future__ import annotations

import copy
import gc
import pickle
from collections import defaultdict
from dataclasses import dataclass

import numpy as np
import pytest
import vorbel
from numpy.typing import NDArray
from vorbel import CVorbel, Elements_Struct, Ephemeris_Struct, Geopoint, fVector, fVectorSimple

CASES = 150
STATE = ("x", "y", "z", "vx", "vy", "vz", "date", "time", "drag")
FIELDS = {
    fVector: STATE,
    fVectorSimple: ("user1", "user2", "user3", *STATE[:6]),
    Geopoint: ("a", "f", "x", "y", "z", "lat", "lon", "h", "kind"),
    Ephemeris_Struct: ("year", "month", "day", "hour", "minute", "second", "date", "time", "system", "extra", "state"),
    Elements_Struct: ("date", "time", "a", "e", "incl", "raan", "u", "nu"),
}


def numbers(value: object) -> list[float]:
    """What the program of the C++ side prints of a value."""
    if isinstance(value, (list, tuple, np.ndarray)):
        return [number for part in value for number in numbers(part)]
    for record, fields in FIELDS.items():
        if isinstance(value, record):
            return [number for field in fields for number in numbers(getattr(value, field))]
    return [float(value)]  # type: ignore[arg-type]


@dataclass
class Inputs:
    state: fVector
    ephemeris: Ephemeris_Struct
    elements: Elements_Struct
    numbers: list[float]

    def __init__(self, row: list[float]) -> None:
        self.state = fVector(*row[:9])
        year, month, day, hour, minute = (int(value) for value in row[9:14])
        date, system = int(row[15]), int(row[17])
        self.ephemeris = Ephemeris_Struct(
            year, month, day, hour, minute, row[14], date, row[16], system, fVector(*row[19:28]), row[18]
        )
        self.elements = Elements_Struct(1900, 1, 1, 0, 0, 0.0, int(row[28]), *row[29:36])
        self.numbers = row[36:]


def evaluate(i: Inputs) -> dict[str, list[object]]:
    """Every operation with the inputs of a case, in the order of the program of the C++ side."""
    out: dict[str, list[object]] = {}
    dt, step, back, a, b, rng, rate, rng2, rate2, pitch, yaw, roll, lat, lon, height, angle, *rest = i.numbers
    system, own_step, side = (int(value) for value in rest)
    o = CVorbel()

    def whole() -> list[object]:
        history = copy.deepcopy(o.GetfVector(1))  # whose records live on
        return [o.getVector(), o.getStep(), o.GetSystem(), o.dGetSat_radius(), o.GetEllipsoid(), history]

    o.SetSystem(system)
    out["runceK"] = [o.runceK(i.state, step)]
    o.SetProgParam(i.state, step, system)
    out["SetProgParam"] = whole()
    out["prog"] = [o.prog(step * -6.5)]
    out["prog(object)"] = whole()
    state = o.getVector()
    out["adams"] = [o.adams(state, -step if step > 0 else abs(step))]
    o.setVector(state)
    out["adams(object)"] = whole()

    out["matr_bariz"] = list(o.matr_bariz(i.state))
    out["matr_barizRECT"] = list(o.matr_barizRECT(i.state))
    out["StarTime"] = [o.StarTime(i.state.date)]
    out["ABS_Grnv"] = [o.ABS_Grnv(i.state)]
    out["ABS_Grnv(angle)"] = [o.ABS_Grnv(i.state, angle)]
    out["ABS_GrnvR_t"] = [o.ABS_GrnvR_t(i.state, angle, i.state.time - dt)]
    out["Grnv_ABS"] = [o.Grnv_ABS(i.state)]
    out["Grinvich_to_ABS"] = [o.Grinvich_to_ABS(i.ephemeris)]
    i.ephemeris.state.drag = 0.0  # which C++ does not carry into a new record
    out["ABS_to_Grinvich"] = [o.ABS_to_Grinvich(i.ephemeris)]
    out["Elements_to_Ephemeris"] = [o.Elements_to_Ephemeris(i.elements, system)]
    elements = o.Ephemeris_to_Elements(i.ephemeris)
    assert (elements.date, elements.time) == (i.ephemeris.date, i.ephemeris.time)
    elements.date, elements.time = 0, 0.0  # which C++ leaves to the caller
    out["Ephemeris_to_Elements"] = [elements]

    if own_step:
        o.InitLagrange(i.state, dt, step, system)
    else:
        o.InitLagrange(i.state, dt, system)
    out["InitLagrange(step)" if own_step else "InitLagrange"] = whole()

    offset = back * o.getStep()
    time = o.getVector().time - offset
    for order in (0, 1, 2, 3, 4, 7, 8):
        read_out = o.GetFunLagrangeOpt(order)(o, time)
        out[f"GetFunLagrangeOpt({order})"] = [read_out]
        out[f"Lagrange({order})"] = [o.Lagrange(time, order)]
        out[f"s_Lagrange_m_Fv_t({order})"] = [CVorbel.s_Lagrange_m_Fv_t(o, offset, order)]
        if order < 8:
            assert CVorbel.ms_afunLagrangeOpt[order](o, time) == read_out
            assert getattr(CVorbel, f"s_LagrangeOpt_{order if order < 5 else 567}")(o, time) == read_out
    out["Lagrange4"] = [o.Lagrange4(time)]
    out["s_Lagrange4"] = [CVorbel.s_Lagrange4(o, time)]
    out["Lagrange4_rFv_t"] = [o.Lagrange4_rFv_t(offset)]
    out["s_Lagrange4_m_Fv_t"] = [CVorbel.s_Lagrange4_m_Fv_t(o, offset)]
    point = Geopoint(x=a, z=height)
    out["dLagrange4_rFv_t"] = [o.dLagrange4_rFv_t(point, offset)]
    out["s_dLagrange4_rFv_t"] = [CVorbel.s_dLagrange4_rFv_t(o, point, offset)]

    o.SetEllipsoid(a, b)
    out["GeoProssess"] = [o.GeoProssess(time, rng, rate, side)]
    out["centroid"] = [o.centroid(time, rng, pitch, yaw, roll, side)]
    out["centroid_NEW"] = [o.centroid_NEW(time, rng, pitch, yaw, roll, side)]
    out["radial_speed"] = list(o.radial_speed(time, lat, lon, height))
    out["attitude"] = list(o.attitude(time))
    out["PitchYaw"] = list(o.PitchYaw(time, rng, rate, rng2, rate2, side))
    out["GeoLocation"] = [o.GeoLocation(min(time, o.getVector().time), rng, side, pitch, yaw, roll)]
    return out


def test_every_operation_returns_the_bits_of_cpp(operations: dict[str, NDArray[np.float64]]) -> None:
    there = {name: iter(values) for name, values in operations.items() if not name.endswith("/edge")}
    inputs = operations["(inputs)"].reshape(1500, -1)
    different: dict[str, int] = defaultdict(int)
    called = set()
    for row in inputs[:CASES]:
        for name, values in evaluate(Inputs(row.tolist())).items():
            here = np.array(numbers(values))
            expected = np.fromiter(there[name], float, len(here))
            called.add(name)
            different[name] += not np.array_equal(here, expected, equal_nan=True)
    assert {name: count for name, count in different.items() if count} == {}
    # The other two write through a pointer what `Lagrange` returns, and stand for the inputs.
    assert {name for name in there if not name.startswith(("Lagrange(out)", "(inputs)"))} == called


def test_records_are_values() -> None:
    state = fVector(1.0, z=2.0, drag=1e-8)
    record = Ephemeris_Struct(date=44664, state=state)
    assert eval(repr(record), vars(vorbel)) == record
    for twin in (copy.copy(record), copy.deepcopy(record), pickle.loads(pickle.dumps(record))):
        assert twin == record
        twin.state.z = 3.0
        assert twin != record
    assert state.z == record.state.z == 2.0
    with pytest.raises(TypeError):
        hash(state)
    with pytest.raises(TypeError):
        fVector(velocity=1.0)  # type: ignore[call-arg]


def test_the_objects_own_records_live_as_long_as_it_and_copies_stand_alone() -> None:
    source = CVorbel()
    source.InitLagrange(fVector(x=7000.0, vy=7.5, time=10.0), 30.0, 1)
    copies = [CVorbel(source), copy.copy(source), copy.deepcopy(source), pickle.loads(pickle.dumps(source))]
    end = source.GetfVector(0)
    history = source.GetfVector(1)
    assert isinstance(end, fVector)
    assert isinstance(history, list)
    end.x = 1.0
    assert source.getVector().x == 1.0
    assert source.GetfVector(2) is None
    assert all(one.getVector().x != 1.0 and one.Lagrange(25.0, 7) == copies[0].Lagrange(25.0, 7) for one in copies)
    del source
    gc.collect()
    assert end.x == 1.0
    assert history[7].time == 1.0
