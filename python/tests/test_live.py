"""Controllers by name: values, writing, failures, and what they are asked for wrongly."""

import datetime
import gc
import os
import pickle
import threading
import time
import weakref

import orif
import pytest


def test_values_have_pythons_types_and_tags_tell_the_rest(orif_robot, orif_connect):
    robot = orif_robot
    robot["R[1]"] = 42
    robot["R[2]"] = 42.7
    robot["R[1].comment"] = "Parts"
    robot["SR[1]"] = "Größe 7"
    robot["DO[1]"] = True
    robot["GO[1]"] = 17
    robot["$PAYLOAD"] = 6.5
    robot["PR[1]"] = orif.Position(1, 2, 3, 4, 5, 6, config=(1, 0, 1, 0, 0, 0, 0), UF=2, UT=3)
    robot["PR[2]"] = orif.Position.from_joint(10, 20, 30)
    robot.tasks = [orif.Task("MAIN", 7, 2)]
    robot.alarms = [orif.Alarm("2026-01-01 09:30:12", 57, 3, message="GRIP-003")]
    names = ["R[1-2]", "SR[1]", "DO[1-2]", "GO[1]", "$PAYLOAD:real", "PR[1-2]", "PRG[1]", "ALM[1]"]
    before = datetime.datetime.now(datetime.timezone.utc)
    cell = orif_connect(names, comments=True)

    assert [cell[n] for n in ("R[1]", "R[2]", "SR[1]", "DO[1]", "DO[2]", "GO[1]", "$PAYLOAD")] == [
        42, 42.7, "Größe 7", True, False, 17, 6.5]
    assert [type(cell[n]) for n in ("R[1]", "R[2]", "DO[1]")] == [int, float, bool]
    assert cell["r[1]"] == cell["R[1]:int"] == 42
    home = cell["PR[1]"]
    assert home[:6] == (1, 2, 3, 4, 5, 6) and home.X == cell["PR[1].X"] == 1 and home.joint is None
    assert (home.config, home.UF, home.UT) == ((1, 0, 1, 0, 0, 0, 0), 2, 3)
    assert cell["PR[2]"].joint[:3] == (10, 20, 30) and cell["PR[2]"].X is None
    assert cell["PRG[1]"][:3] == ("MAIN", 7, 2)
    assert (cell["ALM[1]"].time, cell["ALM[1]"].message) == ("2026-01-01 09:30:12", "GRIP-003")

    tag = cell.tag("PR[1].X")
    assert (tag.value, tag.unit, tag.quality, tag.item, tag.reason) == (1.0, "mm", "good", "PR[1]", None)
    assert before - datetime.timedelta(seconds=1) < tag.time <= datetime.datetime.now(datetime.timezone.utc)
    assert cell.tag("R[1]").comment == "Parts" and cell.tag("SR[1]").comment == ""
    values = cell.values()
    assert tuple(values) == cell.names == tuple(cell) and len(cell) == len(values)
    assert values["R[2]"] == 42.7 and values["PR[2].X"] is None
    assert "R[1]" in cell and "PR[1]" in cell and "R[3]" not in cell and 5 not in cell
    assert repr(cell) == f"<Controller cell1 up, {len(cell)} tags>"
    assert repr(tag) == "<Tag PR[1].X=1.0 mm good>"


class Interrupted:
    def __float__(self):
        raise KeyboardInterrupt


def test_a_controller_without_its_constructor_refuses_everything():
    class Hasty(orif.Controller):
        def __init__(self):
            self.tried = []
            for use in (
                lambda: self["R[1]"], lambda: self.refresh(), lambda: self.values(), lambda: self.names,
                lambda: "R[1]" in self or self._find("R[1]"), lambda: self.link, lambda: self.host,
                lambda: self.watch(), lambda: repr(self), lambda: self.close(), lambda: self.write({}),
            ):
                with pytest.raises(TypeError, match="not made by its constructor"):
                    use()
                self.tried.append(use)
            super().__init__("demo", ["R[1]"], simulate=True)

    with Hasty() as cell:
        cell.refresh()
        assert len(cell.tried) == 11 and cell["R[1]"] == 120


def test_writes_at_once_and_positions_as_a_whole(orif_robot, orif_connect):
    robot = orif_robot
    robot["PR[1]"] = orif.Position(1, 2, 3, 4, 5, 6)
    robot["$SPEED"] = 1.0
    cell = orif_connect(["R[1-9]", "PR[1-3]", "SR[1]", "DO[1]", "GO[1]", "$SPEED:real"])
    cell["R[1]"] = 5
    cell["r[2]"] = 2.5
    cell.tag("SR[1]").write("ok")
    cell.write({"DO[1]": 1, "GO[1]": 7, "$SPEED": 3, "PR[1].Z": 30, "PR[1].X": 10})
    assert [robot[n] for n in ("R[1]", "R[2]", "SR[1]", "DO[1]", "GO[1]", "$SPEED")] == [
        5, 2.5, "ok", True, 7, 3.0]
    assert robot["PR[1]"][:6] == (10, 2, 30, 4, 5, 6)
    cell["PR[2]"] = (1, 2, 3, 4, 5, 6)
    cell["PR[3]"] = orif.Position.from_joint(1, 2, 3, 4, 5, 6, UT=4)
    cell["PR[1]"] = robot["PR[1]"]._replace(R=60.0)
    assert robot["PR[2]"].cartesian[:6] == (1, 2, 3, 4, 5, 6) and robot["PR[2]"].joint is None
    assert robot["PR[3]"].joint[:6] == (1, 2, 3, 4, 5, 6) and robot["PR[3]"].UT == 4
    assert robot["PR[1]"].R == 60
    cell["PR[1]"] = orif.Position(Z=99.5)
    assert robot["PR[1]"][:6] == (10, 2, 99.5, 4, 5, 60)
    numpy = pytest.importorskip("numpy")
    cell.write({"R[3]": numpy.int32(3), "R[4]": numpy.float32(0.5), "DO[1]": numpy.bool_(False)})
    cell["PR[2]"] = numpy.arange(6.0)
    cell["R[5]"] = numpy.array(1.5)
    assert robot["R[5]"] == 1.5
    with pytest.raises(KeyboardInterrupt):
        cell["R[1]"] = Interrupted()
    assert (robot["R[3]"], robot["R[4]"], robot["DO[1]"], robot["PR[2]"].Y) == (3, 0.5, False, 1.0)
    robot.alarms = [orif.Alarm(message="Stop")]
    cell.clear_alarms()
    assert robot.alarms == [] and robot.commands == ["CLRALM"]


@pytest.mark.parametrize(
    "use, said, suggestion",
    [
        (lambda c: c["R[1..3]"], "'R[1..3]': not an item; nearest is R[1-3]", "R[1-3]"),
        (lambda c: c["PR[1].XX"], "'PR[1].XX': PR[1] has no field XX; nearest is .X", "PR[1].X"),
        (lambda c: c["R[99]"], "'R[99]' is none of the tags of cell1", ""),
        (lambda c: c.tag("PR[1]"), "'PR[1]' has fields; name one of them: PR[1].X", "PR[1].X"),
        (lambda c: c.write({"R[1]": "x"}), "R[1]: 'x' is not a number", ""),
        (lambda c: c.write({"R[1]": None}), "R[1]: None is no value to write", ""),
        (lambda c: c.write({"R[1]": {}}), "R[1]: cannot write a value of type dict", ""),
        (lambda c: c.write({"R[1]": 2**80}), "R[1]: the number does not fit", ""),
        (lambda c: c.write({"PR[1]": range(10)}), "PR[1]: a position has X, Y, Z", ""),
        (lambda c: c.write({"PR[1]": 5}), "PR[1]: 5 is no Position and no sequence of numbers", ""),
        (lambda c: c.write({"PR[1]": orif.Position()}), "PR[1]: a Position without values", ""),
        (lambda c: c.write({"PR[1]": orif.Position(config=5)}), "PR[1]: Position(config=5) is no Position", ""),
        (lambda c: c.write({"PR[1]": orif.Position(X="x")}), "PR[1]: Position(X='x') is no Position", ""),
        (lambda c: c.write({"PR[1]": orif.Position(config=(1, 0))}), "PR[1]: a configuration has seven", ""),
        (lambda c: c.__init__("a", []), "a controller is made once", ""),
        (lambda c: c.watch(every=0), "a period is from 0.001 s to a day", ""),
        (lambda c: orif.Controller("", []), "no controller is named; say its host", ""),
        (lambda c: orif.Controller("a", "R[1]"), "tags is a list of names", '["R[1]"]'),
        (lambda c: orif.Controller("a", [], encoding="klingon"), "there is no encoding 'klingon'", ""),
        (lambda c: orif.Controller("a", [], timeout=0.05), "a time-out is 100 ms or more", ""),
        (lambda c: orif.Controller("a", [], simulate="x.txt"), "'x.txt' is no cell", ""),
        (lambda c: orif.SimulatedCell("none.json"), "none.json", ""),
        (lambda c: orif.SimulatedCell().serve(), "the cell has no controller to serve", ""),
    ],
)
def test_an_error_of_use_tells_what_would_be_right(use, said, suggestion, orif_connect):
    cell = orif_connect(["R[1]", "PR[1]"])
    with pytest.raises(orif.UsageError) as raised:
        use(cell)
    assert str(raised.value).startswith(said) or said in str(raised.value).split(":")[0]
    assert raised.value.suggestion == suggestion
    assert isinstance(raised.value, (orif.Error, ValueError))
    with pytest.raises(TypeError):
        cell[5]


def test_a_refusal_has_its_operation_status_item_and_words(orif_robot, orif_connect):
    cell = orif_connect(["R[1-3]", "R[10001]"])
    with pytest.raises(orif.Refused) as raised:
        cell["R[10001]"]
    error = raised.value
    assert (error.item, error.operation, error.status) == ("R[10001]", "SetRAssignment", -15)
    assert error.words == "Index out of range"
    assert str(error) == "R[10001]: Index out of range (SetRAssignment, status -15)" == str(error.reason)
    assert cell.tag("R[10001]").quality == "refused" and cell.values()["R[10001]"] is None

    orif_robot.fail_next("WriteRFloat", -20, "Register is write-protected")
    with pytest.raises(orif.Refused) as raised:
        cell.write({"R[1]": 1, "R[2]": 2.5, "R[3]": 3})
    assert raised.value.written == ("R[1]",) and raised.value.item == "R[2]"
    assert (orif_robot["R[1]"], orif_robot["R[2]"], orif_robot["R[3]"]) == (1, 0, 0)
    copy = pickle.loads(pickle.dumps(raised.value))
    assert str(copy) == str(raised.value) and copy.status == -20 and copy.written == ("R[1]",)


def test_a_lost_link_raises_and_comes_back_by_itself(orif_robot, orif_connect):
    cell = orif_connect(["R[1]"])
    orif_robot["R[1]"] = 1
    orif_robot.cut_link()
    with pytest.raises(orif.NotConnected) as raised:
        cell.refresh()
    assert raised.value.words == "Connection lost" and cell.link == "lost"
    assert cell["R[1]"] == 0 and cell.tag("R[1]").quality == "stale"  # the last that was read
    with pytest.raises(orif.NotConnected, match="the link to cell1 is lost"):
        cell["R[1]"] = 2
    orif_robot.restore_link()
    end = time.monotonic() + 5
    while True:
        try:
            cell.refresh()
            break
        except orif.NotConnected:
            assert time.monotonic() < end
            time.sleep(0.01)
    assert cell["R[1]"] == 1 and cell.link == "up"
    cell.close()
    cell["R[1]"] = 3  # connects again
    assert orif_robot["R[1]"] == 3
    with pytest.raises(orif.NotConnected):
        orif.Controller("cell1", ["R[1]"], component="/nowhere.so").refresh()
    with pytest.raises(orif.NotConnected, match="not read yet"):
        orif.Controller("cell1", ["R[1]"], component="/nowhere.so")["R[1]"]


@pytest.mark.parametrize(
    "name, value, said",
    [
        ("R[1]", 2**40, "R[1]: the number does not fit 32 bits"),
        ("R[1]", "1", "R[1]: the value must be a number"),
        ("R[1]", (1, 2, 3), "R[1]: it is no position"),
        ("R[1]", None, "R[1]: None is no value to write"),
        ("SR[1]", 1, "SR[1]: the value must be a text"),
        ("PR[1]", 5, "PR[1]: the value must be a Position"),
        ("PR[1]", orif.Position(config=(1, 0)), "PR[1]: a configuration has seven numbers"),
        ("PR[1]", orif.Position(1, config=(2**15,) * 7), "PR[1]: a configuration and frames are"),
    ],
)
def test_a_simulated_controller_refuses_what_does_not_fit(name, value, said, orif_robot):
    with pytest.raises(orif.UsageError) as raised:
        orif_robot[name] = value
    assert str(raised.value).startswith(said)


def test_a_simulated_controller_takes_numpy_and_any_bytes(orif_robot):
    numpy = pytest.importorskip("numpy")
    orif_robot["R[1]"], orif_robot["R[2]"] = numpy.float32(1.5), numpy.array(2.5)
    orif_robot["DO[1]"], orif_robot["GO[1]"] = numpy.bool_(True), numpy.int64(3)
    orif_robot["PR[1]"] = numpy.arange(6)
    assert [orif_robot[n] for n in ("R[1]", "R[2]", "DO[1]", "GO[1]")] == [1.5, 2.5, True, 3]
    assert orif_robot["PR[1]"].cartesian[:6] == (0, 1, 2, 3, 4, 5)
    orif_robot["SR[1]"] = b"\xe9"
    orif_robot.tasks, orif_robot.alarms = [orif.Task("\udce9")], [orif.Alarm(message="\udce9")]
    assert orif_robot["SR[1]"] == orif_robot.tasks[0].program == orif_robot.alarms[0].message == "\udce9"


def test_texts_have_the_encoding_of_the_controller(orif_robot, orif_connect):
    cell = orif_connect(["SR[1-2]"], encoding="shift_jis")
    cell["SR[1]"] = "部品"
    cell.refresh()
    assert cell["SR[1]"] == "部品"
    assert orif_robot["SR[1]"].encode("utf-8", "surrogateescape") == "部品".encode("shift-jis")
    with pytest.raises(orif.UsageError, match="not in shift-jis"):
        cell["SR[2]"] = "ß"
    plain = orif_connect(["SR[1]"])
    assert plain["SR[1]"].encode("utf-8", "surrogateescape") == "部品".encode("shift-jis")


def test_threads_wait_for_each_other_on_one_controller(orif_robot, orif_connect):
    cell = orif_connect(["R[1-200]", "PR[1-5]", "DO[1-16]"])
    errors, end = [], time.monotonic() + 1.0

    def use(what):
        try:
            while time.monotonic() < end:
                what()
        except BaseException as error:
            errors.append(error)

    def lose():
        orif_robot.lose_connections()
        time.sleep(0.05)

    def refresh():
        try:
            cell.refresh()
        except orif.NotConnected:
            pass

    def write():
        try:
            cell.write({"R[1]": 5, "R[2]": 2.5, "DO[1]": True})
        except orif.NotConnected:
            pass

    work = [refresh, refresh, write, cell.values, lose, lambda: cell["R[7]"], lambda: cell["PR[3]"],
            lambda: repr(cell.tag("R[3]")), lambda: list(zip(range(3), cell.watch(0.001)))]
    threads = [threading.Thread(target=use, args=(each,)) for each in work]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(20)
    assert errors == [] and not any(thread.is_alive() for thread in threads)


def test_objects_go_in_any_order(orif_cell):
    tag = orif.Controller("cell1", ["R[1]"], simulate=orif_cell).tag("R[1]")
    assert (tag.value, tag.quality) == (None, "stale")  # it keeps its controller
    for first in range(4):
        cell = orif.SimulatedCell(True)
        objects = [cell, cell["demo"], orif.Controller("demo", ["R[1]"], simulate=cell), None]
        objects[2].refresh()
        objects[3] = objects[2].watch(every=0.001)
        next(objects[3])
        gone = weakref.ref(objects[2])
        del cell
        while objects:
            objects.pop(first % len(objects))
            gc.collect()
        assert gone() is None


@pytest.mark.skipif("PYTHONMALLOC" in os.environ, reason="a sanitizer keeps what is freed")
def test_lives_leave_nothing_behind(orif_cell):
    resource = pytest.importorskip("resource")

    def live(times):
        for _ in range(times):
            with orif.Controller("cell1", ["R[1-5]", "PR[1]"], simulate=orif_cell) as cell:
                cell.refresh()
                cell.values(), cell["PR[1]"], next(cell.watch())
        gc.collect()
        return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss

    before = live(300)
    assert live(10000) - before < 2000  # KiB; one value left behind in each life is more
