"""The object model: values on their way in and out, arguments that are refused, buffers."""

import array
import ctypes
import gc
import inspect
import itertools
import math
import re
import weakref
from pathlib import Path

import numpy as np
import orif
import pytest

ROOT = Path(__file__).resolve().parents[2]
# Members that Python has beyond those of the automation classes: how an item is read into a buffer.
ADDED = {"DataNumReg": {"GetValues"}}


@pytest.fixture
def core():
    core = orif.Core(simulate=True)
    assert core.Connect("demo")
    return core


@pytest.fixture
def table(core):
    return core.DataTable()


def public(one):
    return {name for name in dir(one) if not name.startswith("_")}


def test_every_member_of_every_class_is_there():
    # The automation classes list their own; from 101 on they are for hosts without outputs.
    rows = (ROOT / "automation/Members.cpp").read_text()
    classes = re.findall(r"const Member (\w+)Members\[\] = \{(.*?)\};", rows, re.DOTALL)
    assert len(classes) == 12
    for name, members in classes:
        listed = {m for i, m in re.findall(r"\((\d+), L\"(\w+)\"", members) if int(i) < 100}
        added = ADDED.get(name, set())
        if name not in ("Core", "DataTable"):
            added = added | {"GetTypeName", "AddUserMessage", "ObjectID"}
        assert public(getattr(orif, name)) - added == listed - added, name
    # The headers have no member that is missing.
    for name in [n for n in dir(orif) if n.startswith(("Core", "Data", "Single"))]:
        (header,) = (ROOT / "orif").glob(f"*/{name}.h")
        body = re.split(r"\n (?:public|protected|private):", header.read_text())[1]
        found = set(re.findall(r"\b([A-Z]\w+|mlng\w+)\([^()]*\)(?: const)? noexcept;", body))
        assert found and found - {name} <= public(getattr(orif, name)), name
    kinds = re.findall(r"^  (\w+) = (\d+),", (ROOT / "orif/items/DataType.h").read_text(), re.M)
    assert len(kinds) == 37
    for name, value in kinds:
        assert getattr(orif, name) == int(value) and getattr(orif, name).name == name


def test_every_member_is_documented_in_terms_of_python():
    for one in [getattr(orif, n) for n in dir(orif) if n.startswith(("Core", "Data", "Single"))]:
        for text in [one.__doc__] + [getattr(one, m).__doc__ for m in public(one)]:
            assert text and not re.search(r"::|\bfalse\b|\btrue\b|empty reference|std\b", text), text
    assert str(inspect.signature(orif.Core.ClearAlarm)) == "(self, /, vlngType=0)"
    assert str(inspect.signature(orif.Core)) == "(component=None, *, simulate=None)"
    assert "mm" in orif.DataPosReg.GetValue.__doc__


def test_values_come_back_with_the_result(core, table):
    numbers = table.AddNumReg(orif.NUMREG_INT, 1, 5)
    reals = table.AddNumReg(DataType=orif.NUMREG_REAL, StartIndex=6, EndIndex=9)
    text = table.AddString(orif.STRREG, 1, 3)
    payload = table.AddSysVar(orif.SYSVAR_REAL, "$PAYLOAD")
    task = table.AddTask(orif.TASK, 1)
    alarm = table.AddAlarm(orif.ALARM_LIST, 1)
    assert numbers.GetValue(1) == (False, None)  # not refreshed yet
    assert numbers.SetValue(2, 7) and numbers.SetValues(3, [8, 9], 2)
    assert reals.SetValue(6, 2.5) and reals.SetValues(7, (1, 2.25), 2)
    assert reals.SetValuesReal(Count=1, Value=array.array("f", [-0.5]), Index=9)
    assert text.SetValue(2, "Ä") and text.Update()
    assert payload.SetValue(12)
    assert table.Refresh()
    assert [numbers.GetValue(i) for i in (2, 3, 4)] == [(True, 7), (True, 8), (True, 9)]
    values = [reals.GetValue(i)[1] for i in (6, 7, 8, 9)]
    assert values == [2.5, 1.0, 2.25, -0.5] and {type(v) for v in values} == {float}
    assert text.GetValue(Index=2) == (True, "Ä")
    assert payload.GetValue() == (True, 12.0)
    assert numbers.GetValue(6) == (False, None)
    ok, program, line, state, parent = task.GetValue()
    assert ok and program and isinstance(line, int) and isinstance(state, int)
    assert len(alarm.GetValue(1)) == 15
    assert table.GetLastDataFloat(11) == (True, 2.5)
    # Items of a class of their own, always by the same object.
    assert table.Item(1) is numbers and type(table.Item(4)) is orif.DataSysVar
    assert table.Item(9) is None and numbers.DataTable() is table
    assert numbers.DataType() is orif.NUMREG_INT
    assert table.AddStringEx(1000, "SR[", 4, 4).DataType() == 1000


def test_positions(core, table):
    item = table.AddPosReg(orif.POSREG, 1, 1, 2)
    here = table.AddCurPos(orif.CURPOS, 1)
    staged = table.AddPosRegXyzwpr(orif.POSREG_XYZWPR, 1, 3, 3)
    groups = table.AddPosRegMG(orif.POSREGMG, "C,J6", 4, 4)
    xyzwpr = [100.5, 2, 3, 4, 5, 6, 0, 0, 0]
    assert item.SetValueXyzwpr(2, xyzwpr, np.array([1, 0, 1, 0, 0, 0, 0]), 1, 2)
    assert staged.SetValueXyzwpr2(3, *xyzwpr, 0, 1, 0, 0, 0, 0, 0) and staged.Update()
    assert groups.SetValueJoint(4, 2, range(1, 7)) and groups.Update()
    assert table.Refresh()
    assert item.GetValueXyzwpr(2)[:11] == (True, *xyzwpr, 1)
    assert groups.GetValueJoint(4, Group=2)[:7] == (True, 1, 2, 3, 4, 5, 6)
    assert here.GetValueJoint()[0] and isinstance(here, orif.SinglePosition)
    config = [9] * 8
    joint = array.array("f", [7] * 10)
    read = np.full(9, 7, "f")
    ok, uf, ut, valid_c, valid_j = item.GetValue(2, read, config, joint)
    assert ok and valid_c == 1 and read.tolist() == xyzwpr
    assert config == [1, 0, 1, 0, 0, 0, 0, 9] and joint[9] == 7


def test_representations(core, table):
    assert repr(orif.Core(simulate=True)) == "<orif.Core not connected>"
    assert repr(core) == "<orif.Core connected>"
    item = table.AddNumReg(orif.NUMREG_REAL, 3, 8)
    assert repr(item) == "<orif.DataNumReg NUMREG_REAL 3 to 8, valid>"
    name = table.AddSysVar(orif.SYSVAR_INT, "$SPEED")
    assert repr(table) == f"<orif.DataTable {table.Count()} item{'s' * bool(name)}, valid>"
    item.Kill()
    assert repr(item).endswith("invalid>")


@pytest.mark.parametrize(
    "call, message",
    [
        ("item.GetValue()", "GetValue() lacks the argument 'Index'"),
        ("item.GetValue(1, 2)", "GetValue() takes 1 argument, not 2"),
        ("item.GetValue(1, Index=1)", "GetValue() got the argument 'Index' twice"),
        ("item.GetValue(index=1)", "GetValue() has no argument 'index'"),
        ("item.GetValue('1')", "GetValue() argument 'Index': must be int, not str"),
        ("item.GetValue(1.0)", "GetValue() argument 'Index': must be int, not float"),
        ("item.SetValue(1, None)", "SetValue() argument 'Value': must be a number, not NoneType"),
        ("item.SetValues(1, 'ab', 2)", "argument 'Value': must be a sequence of numbers, not str"),
        ("item.SetValuesInt(1, [1.5], 1)", "argument 'Value': must be int, not float"),
        ("core.Connect(b'demo', 1)", "Connect() takes 1 argument, not 2"),
        ("core.AddUserMessage(None)", "AddUserMessage() argument 'vstrMessage': must be str"),
        ("setattr(core, 'DebugLog', 'no')", "must be int, not str"),
        ("setattr(item, '__class__', orif.DataPosReg)", "__class__ assignment"),
        ("core.Connect(1)", "Connect() argument 'HostName': must be str, not int"),
        ("orif.Core('a', simulate=True)", "a component or a simulation, not both"),
        ("orif.Core(simulate=object())", "simulate must be"),
        ("orif.DataNumReg()", "cannot create 'orif.DataNumReg' instances"),
        ("orif.DataTable.Refresh(item)", "descriptor 'Refresh'"),
    ],
)
def test_arguments_of_a_wrong_kind_raise(core, table, call, message):
    item = table.AddNumReg(orif.NUMREG_INT, 1, 3)
    with pytest.raises(TypeError, match=re.escape(message)):
        eval(call)


def test_numbers_that_do_not_fit(core, table):
    item = table.AddNumReg(orif.NUMREG_INT, 1, 3)
    real = table.AddNumReg(orif.NUMREG_REAL, 4, 6)
    for call in (
        lambda: item.GetValue(2**31),
        lambda: core.ReadSDI(1, [2**15], 1),
        lambda: item.SetValuesInt(1, [2**31], 1),
        lambda: real.SetValuesReal(4, [1e39], 1),
        lambda: item.SetValue(1, 10**400),
        lambda: setattr(core, "ClientID", 2**15),
    ):
        with pytest.raises(OverflowError):
            call()
    # The object model has an answer to these of its own.
    assert not item.SetValue(1, 2**31) and not item.SetValues(1, [1.5], 1)
    assert real.SetValue(4, 2**31) and real.SetValuesReal(5, [math.inf], 1)
    with pytest.raises(AttributeError):
        del core.TimeOutValue
    core.TimeOutValue, core.ClientID = 1500, 7
    assert (core.TimeOutValue, core.ClientID, core.DebugLog) == (1500, 7, False)


def test_buffers_are_filled_in_place(core, table):
    item = table.AddNumReg(orif.NUMREG_INT, 1, 20)
    assert item.SetValuesInt(1, np.arange(20, dtype="i"), 20) and table.Refresh()
    wide = np.full(40, -1, "i")
    assert item.GetValues(1, wide[::2], 20)  # strides
    assert wide.tolist() == [v for i in range(20) for v in (i, -1)]
    backwards = np.zeros(20, "i")
    assert item.GetValues(1, backwards[::-1], 20) and backwards[0] == 19
    crooked = np.zeros(81, "B")[1:].view("i")  # not aligned
    assert item.GetValues(1, crooked, 20) and crooked[19] == 19
    part = memoryview(array.array("i", [5] * 4))
    assert item.GetValues(3, part[:2], 2) and part.tolist() == [2, 3, 5, 5]
    assert not item.GetValues(1, part, 5) and not item.GetValues(19, part, 3)
    assert not item.GetValues(2**31 - 1, part, 2) and not item.GetValues(1, part, 0)
    plain = (ctypes.c_int * 4)()  # has no strides
    assert item.GetValues(3, plain, 3) and list(plain) == [2, 3, 4, 0]
    assert core.ReadSDO(1, (ctypes.c_short * 3)(), 3)
    # Writes take any dtype that converts, and count like the members do.
    assert item.SetValuesInt(1, np.array([3, 4]), 2) and item.SetValuesInt(3, wide[:4:2], 2)
    assert not item.SetValuesInt(1, [1], 2)
    signals = array.array("h", [1, 0, 1])
    assert core.WriteSDO(1, signals, 3)
    states = [7, 7, 7, 7]
    assert core.ReadSDO(1, states, 3) and states == [1, 0, 1, 7]
    assert core.WriteSDO(1, np.array([False, True, True]), 3)
    assert core.ReadSDO(1, states, 3) and states == [0, 1, 1, 7]
    assert item.SetValue(5, np.array(1.0)) and item.SetValue(6, np.bool_(True))
    assert table.Refresh() and [item.GetValue(i)[1] for i in (5, 6)] == [1, -1]
    groups = np.zeros(2, "i")
    assert core.WriteGO(1, [5, 6], 2) and core.ReadGO(1, groups, 2) and list(groups) == [5, 6]


def test_buffers_of_another_kind_are_refused_before_anything_is_read(core, table):
    item = table.AddNumReg(orif.NUMREG_REAL, 1, 4)
    position = table.AddPosReg(orif.POSREG, 1, 1, 1)
    table.Refresh()
    frozen = np.zeros(4, "f")
    frozen.flags.writeable = False
    closed = memoryview(array.array("f", [0] * 4))
    closed.release()
    for refused, message in [
        (np.zeros(4), "must hold float32, not float64|must hold int32, not float64"),
        (np.zeros(4, "i"), "must hold float32, as the item does"),
        (np.zeros(4, ">f4"), "must hold"),
        (np.zeros((2, 2), "f"), "must have one dimension, not 2"),
        (np.float32(1), "must have one dimension, not 0"),
        (frozen, "must be writable"),
        (bytearray(16), "elements of format 'B'"),
        ((1, 2), "bytes-like"),
        (closed, "'Values': operation forbidden on released memoryview"),
    ]:
        with pytest.raises(TypeError, match=message):
            item.GetValues(1, refused, 4)
    untouched = np.full(9, 7, "f")
    with pytest.raises(TypeError, match="'Joint': must be a writable buffer of float32 or a list"):
        position.GetValue(1, untouched, [0] * 7, (0,) * 9)
    assert set(untouched) == {7}
    with pytest.raises(TypeError, match="'Config': must be int, not NoneType"):
        position.GetValue(1, untouched, [None] * 7, [0] * 9)


class Number:
    """Does something while it is converted, the first time."""

    def __init__(self, first):
        self.first = [first]

    def __index__(self):
        return self.first.pop()() or 0 if self.first else 0


def test_what_an_element_does_while_it_is_converted(core, table):
    item = table.AddNumReg(orif.NUMREG_INT, 1, 3)
    for raised in (KeyboardInterrupt, MemoryError):
        def fail(raised=raised):
            raise raised

        for call in (item.SetValuesInt, item.SetValues):
            with pytest.raises(raised):
                call(1, [Number(fail)], 1)
        with pytest.raises(raised):
            item.SetValue(1, Number(fail))
    config = [0] * 7
    position = table.AddPosReg(orif.POSREG, 1, 1, 1)
    assert table.Refresh()
    with pytest.raises(TypeError, match="a list was shortened during the call"):
        position.GetValue(1, [0] * 9, config, [0.0] * 8 + [Number(config.clear)])


def test_every_text_comes_back_as_it_was(table):
    item = table.AddString(orif.STRREG, 1, 1)
    for sent, read in [
        ("Grüße, 機械", "Grüße, 機械"),
        (b"\xffold\xe9", "\udcffold\udce9"),
        ("\udcff", "\udcff"),
    ]:
        assert item.SetValue(1, sent) and item.Update() and table.Refresh()
        assert item.GetValue(1) == (True, read)
    with pytest.raises(UnicodeEncodeError):
        item.SetValue(1, "\ud800")


def test_lower_core_object(core):
    lower = core.GetLib()
    assert lower is core.GetLib()
    states = np.zeros(3, "h")
    # What the library does for ReadSDO.
    assert lower.Invoke(lower.Lookup("ReadSDO"), 1, [np.int16(1), states, np.int16(3)]) == 0
    assert core.WriteSDO(1, [1, 1, 0], 3)
    lower.Invoke(27, 1, [np.int16(1), states, np.int16(3)])
    assert list(states) == [1, 1, 0]
    with pytest.raises(RuntimeError, match="Unknown operation"):
        lower.Lookup("Nothing")
    with pytest.raises(TypeError):
        lower.Invoke(27, 1, [np.int16(1), states[::2], np.int16(1)])
    core.Disconnect()
    assert core.GetLib() is None


def check_without_core(objects):
    for one in objects:
        if isinstance(one, orif.DataItem):
            assert one.GetValue(1) == (False, None) and not one.Valid()
            assert not one.DataTable().Refresh()
        elif isinstance(one, orif.DataTable):
            assert one.AddNumReg(orif.NUMREG_INT, 1, 2) is None and one.Count() == 0
        else:
            assert one.Lookup("Connect") == 11


@pytest.mark.parametrize("order", itertools.permutations(("core", "table", "item", "lower")))
def test_objects_end_in_any_order(order):
    core = orif.Core(simulate=True)
    core.Connect("demo")
    table = core.DataTable()
    objects = {
        "core": core,
        "table": table,
        "item": table.AddNumReg(orif.NUMREG_INT, 1, 2),
        "lower": core.GetLib(),
    }
    seen = [weakref.ref(one) for one in objects.values()]
    del core, table
    for name in order:
        del objects[name]
        gc.collect()
        if "core" not in objects:
            check_without_core(objects.values())
    assert [one() for one in seen] == [None] * 4


def test_an_object_that_ends_does_not_come_back(table):
    table.AddNumReg(orif.NUMREG_INT, 1, 2)
    table.Refresh()
    for _ in range(100):
        again = []
        one = table.Item(1)
        seen = weakref.ref(one, lambda _: again.append(table.Item(1)))
        del one
        assert seen() is None and again[0].GetValue(1)[0]


def test_a_class_can_be_derived_and_be_part_of_a_circle():
    class Cell(orif.Core):
        def __init__(self, *arguments, **names):
            self.table = self.DataTable()
            self.me = self

    cell = Cell(simulate=True)
    seen = weakref.ref(cell)
    table = cell.table
    del cell
    gc.collect()
    assert seen() is None and not table.Valid()


def test_ten_thousand_lives_add_no_memory():
    def live():
        core = orif.Core(simulate=True)
        core.Connect("demo")
        table = core.DataTable()
        item = table.AddNumReg(orif.NUMREG_INT, 1, 50)
        position = table.AddPosReg(orif.POSREG, 1, 1, 1)
        table.Refresh()
        item.GetValue(1)
        position.GetValue(1, np.zeros(9, "f"), [0] * 7, [0.0] * 9)
        for call in (lambda: item.GetValue("1"), lambda: item.GetValues(1, b"", 1)):
            with pytest.raises(TypeError):
                call()

    def pages():
        gc.collect()
        return int(Path("/proc/self/statm").read_text().split()[1])

    for _ in range(500):
        live()
    before = pages()
    for _ in range(10000):
        live()
    assert pages() - before < 100  # 40 bytes a life
