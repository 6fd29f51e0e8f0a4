"""Watches in all forms, Ctrl-C, and cells that are served, killed and started again."""

import asyncio
import os
import shutil
import signal
import subprocess
import sys
import textwrap
import threading
import time

import orif
import pytest


def until(watch, condition, most=2000):
    seen = []
    for change in watch:
        seen.append(change)
        assert len(seen) < most
        if condition(change):
            return seen


def test_a_watch_tells_what_changes_and_the_link(orif_robot, orif_connect):
    cell = orif_connect(["R[1-2]", "PR[1].X", "SR[1]", "R[10001]"])
    orif_robot["PR[1]"] = orif.Position(850, 0, 0, 0, 0, 0)
    watch = cell.watch(every=0.005)
    first = [next(watch) for _ in range(5)]
    assert [str(each) for each in first] == [
        "R[1]=0", "R[2]=0", "PR[1].X=850.0 mm", "SR[1]=''",
        "R[10001]=refused: R[10001]: Index out of range (SetRAssignment, status -15)"]
    assert first[4].reason.status == -15 and first[0].time.tzinfo is not None
    orif_robot["R[2]"] = 2.5
    cell.refresh()  # somebody else's refresh takes nothing from the watch
    assert next(watch)[:2] == ("R[2]", 2.5)
    orif_robot.cut_link()
    lost = next(watch)
    assert lost.is_link and lost.value == "lost" and lost.reason.words == "Connection lost"
    threading.Timer(0.1, orif_robot.restore_link).start()
    assert str(next(watch)) == "link=back"
    assert {next(watch).name for _ in range(5)} == set(cell.names)  # all of them, after the gap
    orif_robot.cut_link()
    with pytest.raises(orif.NotConnected, match="Connection lost"):
        until(cell.watch(every=0.005, raise_lost=True), lambda change: False)
    watch.stop()
    assert list(watch) == []
    orif_robot.restore_link()
    watch = orif_connect(["R[1]"]).watch(every=0.005, raise_lost=True)
    next(watch)
    orif_robot.fail_next("ReadRShort", -20, "Busy")
    with pytest.raises(orif.Refused, match="Busy"):
        next(watch)
    assert next(watch).value == "back"


def test_what_is_no_number_changes_once_and_a_closed_controller_stays_closed(orif_robot, orif_connect):
    orif_robot["R[1]"] = float("nan")
    cell = orif_connect(["R[1-2]"])
    watch = cell.watch(every=0.001)
    threading.Timer(0.1, lambda: orif_robot.__setitem__("R[2]", 1)).start()
    assert [next(watch).name for _ in range(3)] == ["R[1]", "R[2]", "R[2]"]
    threading.Timer(0.1, cell.close).start()
    assert list(watch) == [] and cell.link == "closed"


def test_async_watches_leave_the_loop_free(orif_robot, orif_connect):
    cell = orif_connect(["R[1]"])

    async def changes(seen):
        async for change in cell.watch(every=0.01):
            seen.append(change.value)
            if change.value == 3:
                return

    async def both():
        one, two = [], []
        tasks = [asyncio.ensure_future(changes(one)), asyncio.ensure_future(changes(two))]
        for value in (1, 2, 3):
            await asyncio.sleep(0.05)
            orif_robot["R[1]"] = value
        await asyncio.wait_for(asyncio.gather(*tasks), 5)
        return one, two

    assert asyncio.run(both()) == ([0, 1, 2, 3], [0, 1, 2, 3])

    async def cancelled():
        await asyncio.wait_for(changes([]), 0.1)

    with pytest.raises(asyncio.TimeoutError):
        orif_robot["R[1]"] = 0
        asyncio.run(cancelled())

    async def stopped():
        watch = cell.watch(every=30)
        threading.Timer(0.1, watch.stop).start()
        return [change.value async for change in watch]

    started = time.monotonic()
    assert asyncio.run(stopped()) == [0] and time.monotonic() - started < 5


def test_a_cancelled_wait_takes_nothing_from_an_async_watch(orif_robot, orif_cell):
    async def values(cell, raise_lost):
        watch = cell.watch(every=0.01, raise_lost=raise_lost)
        await watch.__anext__()
        orif_robot.answer_after(0.3)
        if raise_lost:
            orif_robot.cut_link()
        else:
            orif_robot["R[1]"] = 7
        while True:
            try:
                return (await asyncio.wait_for(watch.__anext__(), 0.1)).value
            except asyncio.TimeoutError:
                await asyncio.sleep(0.5)

    with orif_cell.serve() as served:
        with orif.Controller(served.host, ["R[1]"], timeout=1.0) as cell:
            assert asyncio.run(values(cell, False)) == 7
            orif_robot.recover()
            with pytest.raises(orif.NotConnected):
                asyncio.run(values(cell, True))


def test_a_callback_has_a_thread_and_its_exception_comes_back(orif_robot, orif_connect, monkeypatch):
    cell = orif_connect(["R[1]"])
    seen, five = [], threading.Event()

    def tell(change):
        seen.append((change.value, threading.current_thread() is threading.main_thread()))
        if change.value == 5:
            five.set()

    with cell.watch(0.005, tell) as watch:
        cell["R[1]"] = 5
        assert five.wait(5)
    assert seen[-1] == (5, False) and watch.stop()

    def fail(change):
        raise KeyError(change.name)

    watch = cell.watch(0.005, fail)
    with pytest.raises(KeyError, match="R"):
        watch._thread.join(5)
        watch.stop()
    watch = cell.watch(0.005, lambda change: None)
    cell.close()
    assert not watch._thread.is_alive() and cell.link == "closed"
    told = []
    monkeypatch.setattr(threading, "excepthook", told.append)
    watch = cell.watch(0.005, fail)
    watch._thread.join(5)
    cell.close()
    assert [(each.exc_type, each.thread) for each in told] == [(KeyError, watch._thread)] and watch.stop()
    both = threading.Barrier(2)
    watches = [cell.watch(0.005, lambda change: both.wait() and 0 or cell.close()) for _ in range(2)]
    for watch in watches:  # neither waits for the other
        watch._thread.join(5)
        assert watch.stop()
    itself = []
    watch = cell.watch(0.005, lambda change: itself.append(watch.stop()))
    watch._thread.join(5)
    assert itself == [True] and watch.stop()


def run(program, *, interrupt=None, timeout=20):
    process = subprocess.Popen(
        [sys.executable, "-c", textwrap.dedent(program)], text=True,
        stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if interrupt:
        assert process.stdout.readline().strip() == "ready"
        time.sleep(interrupt)
        process.send_signal(signal.SIGINT)
    out, err = process.communicate(timeout=timeout)
    return process.returncode, out, err


WAITS = {
    "watch": "for change in cell.watch(every=30): pass",
    "callback": "cell.watch(30, lambda change: None)._thread.join()",
    "record": "orif.record(cell, path, every=30)",
    "lock": "threading.Thread(target=slow, daemon=True).start(); time.sleep(0.2); print(cell['R[1]'])",
}


@pytest.mark.parametrize("wait", WAITS)
def test_ctrl_c_ends_every_wait_soon(wait, tmp_path):
    code, out, err = run(f"""
        import orif, os, sys, threading, time, signal
        path = {str(tmp_path / 'run.csv')!r}
        simulated = orif.SimulatedCell(True)
        served = simulated.serve()
        cell = orif.Controller(served.host, ["R[1]"], timeout=3.0)
        cell.refresh()
        def slow():
            simulated["demo"].answer_after(2.0)
            cell.refresh()
        def interrupted(*_):
            global at
            at = time.monotonic()
            raise KeyboardInterrupt
        signal.signal(signal.SIGINT, interrupted)
        print("ready", flush=True)
        try:
            {WAITS[wait]}
        except KeyboardInterrupt:
            print("late" if time.monotonic() - at > 0.1 else "soon")
        os._exit(0)
        """, interrupt=0.6)
    assert (code, out, err) == (0, "soon\n", "")


@pytest.mark.parametrize("end", ["pass", "del cell, watch", "sys.exit(0)", "threading.Thread(target=use).start()"])
def test_the_interpreter_ends_quietly(end):
    code, out, err = run(f"""
        import orif, sys, threading, time
        cell = orif.Controller("demo", ["R[1-100]"], simulate=True)
        cell.refresh()
        watch = cell.watch(0.001, lambda change: None)
        def use(most=0.3, cell=cell):
            stop = time.monotonic() + most
            while time.monotonic() < stop: cell.refresh()
        threading.Thread(target=use, args=(1e9,), daemon=True).start()
        served = orif.SimulatedCell(True).serve()
        remote = orif.Controller(served.host, ["R[1]"])
        remote.refresh()
        {end}
        """)
    assert (code, out, err) == (0, "", "")


def test_the_interpreter_ends_although_a_thread_sleeps_with_the_controller_and_tells_what_is_left():
    code, out, err = run("""
        import orif, sys, threading, time
        served = orif.SimulatedCell(True).serve()
        cell = orif.Controller(served.host, ["R[1]"])
        cell.refresh()
        def use():
            while True: cell.refresh()
        for _ in range(3): threading.Thread(target=use, daemon=True).start()
        orif.Controller("demo", ["R[1]"], simulate=True).watch(0.01, lambda change: 1 / 0)
        time.sleep(0.2)
        class Late:
            def __del__(self, cell=cell, error=RuntimeError, print=print):
                try: cell.refresh()
                except error as raised: print(raised)
        sys.late = Late()
        """)
    assert code == 0 and out in ("", "another thread uses this, and the interpreter ends\n")
    assert err.startswith("Exception in thread orif watch demo") and err.endswith("division by zero\n")


@pytest.mark.skipif(shutil.which("orif") is None, reason="the tool is not built")
def test_a_watch_comes_back_when_the_served_cell_is_killed_and_started_again(free_port):
    def serve():
        process = subprocess.Popen(["orif", "simulate", "--serve", f":{free_port}"],
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert process.stdout.readline()
        return process

    server = serve()
    try:
        retry = orif.Retry(0.05, 0.1, 0)
        with orif.Controller(f"sim://127.0.0.1:{free_port}", ["R[1-3]"], timeout=1.0, retry=retry) as cell:
            watch = cell.watch(every=0.02)
            assert [next(watch).value for _ in range(3)] == [120, 3, 42.5]
            cell["R[1]"] = 7
            assert next(watch).value == 7
            server.kill()
            server.wait()
            assert until(watch, lambda change: change.is_link)[-1].value == "lost"
            server = serve()
            assert until(watch, lambda change: change.is_link)[-1].value == "back"
            assert next(watch)[:2] == ("R[1]", 120)  # a new cell
    finally:
        server.kill()
        server.wait()


@pytest.fixture
def free_port():
    import socket

    with socket.socket() as found:
        found.bind(("127.0.0.1", 0))
        return found.getsockname()[1]


def test_a_cell_built_in_code_is_served_and_makes_trouble(orif_robot, orif_cell, tmp_path):
    with orif_cell.serve() as served:
        retry = orif.Retry(0.01, 0.05, 0)
        with orif.Controller(served.host, ["R[1]"], timeout=0.3, retry=retry) as cell:
            cell["R[1]"] = 5
            assert orif_robot["R[1]"] == 5
            orif_robot.answer_after(1.0)
            started = time.monotonic()
            with pytest.raises(orif.Refused, match="Communication time-out|no answer"):
                cell.refresh()
            assert 0.25 < time.monotonic() - started < 2
            orif_robot.recover()
            cell.refresh()
            assert cell["R[1]"] == 5
    assert orif_cell.now == 0
    scenario = tmp_path / "cell.json"
    scenario.write_text("""{"name": "Press", "controllers": [{"host": "press", "behaviour": [
        {"what": "R[1]", "ramp": {"from": 0, "to": 100, "over": "10s"}}]}]}""")
    press = orif.SimulatedCell(scenario)
    press.advance(5)
    assert press["press"]["R[1]"] == 50 and press.hosts == ["press"] and press.now == 5.0
    assert repr(press) == "<SimulatedCell press>"
    clocked = orif.SimulatedCell(scenario, real_time=True)
    time.sleep(0.1)
    assert clocked["press"]["R[1]"] >= 1 and clocked.now >= 0.1  # nobody else looks at it
    served = press.serve()
    stopping = [threading.Thread(target=served.stop) for _ in range(8)]
    for thread in stopping:
        thread.start()
    for thread in stopping:
        thread.join(5)
        assert not thread.is_alive()
    for wrong in ("R[10001]", "$NONE", "POS[1]", "R[1-2]", "PR[1].X"):
        with pytest.raises(orif.UsageError):
            press["press"][wrong]
    with orif.Controller("press", ["R[1]"], simulate=scenario) as cell:  # follows the clock
        watch = cell.watch(every=0.05)
        assert next(watch).value < next(watch).value
