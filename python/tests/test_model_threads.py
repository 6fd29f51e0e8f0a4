"""The object model and threads, waits, and the end of the interpreter. A served cell that is frozen
shows what happens while a call waits."""

import os
import re
import shutil
import signal
import subprocess
import sys
import threading
import time

import orif
import pytest


class Served:
    """The demonstration cell in a process of its own."""

    def __init__(self):
        self.process = subprocess.Popen(
            [shutil.which("orif") or "orif", "simulate", "--serve", "127.0.0.1:0"],
            stdout=subprocess.PIPE,
            text=True,
        )
        self.host = re.search(r"sim://\S+", self.process.stdout.readline()).group()

    def freeze(self):
        self.process.send_signal(signal.SIGSTOP)

    def thaw(self):
        self.process.send_signal(signal.SIGCONT)


@pytest.fixture
def served():
    cell = Served()
    yield cell
    cell.process.kill()
    cell.process.communicate()


def connected(served):
    core = orif.Core(component=os.environ["ORVEX_COMMLIB"])
    assert core.Connect(served.host)
    return core


def in_thread(call, *arguments):
    thread = threading.Thread(target=call, args=arguments)
    thread.start()
    return thread


def wait_until_used(table):
    while repr(table) != "<orif.DataTable in use by another thread>":
        time.sleep(0.001)


def test_other_threads_run_while_a_call_waits_and_the_unit_waits_for_it(served):
    core = connected(served)
    table = core.DataTable()
    item = table.AddNumReg(orif.NUMREG_INT, 1, 10)
    assert table.Refresh()
    ended = []

    def call(member, *arguments):
        member(*arguments)
        ended.append(member.__name__)

    served.freeze()
    refreshing = in_thread(call, table.Refresh)
    wait_until_used(table)
    reading = in_thread(call, item.GetValue, 1)
    other = orif.Core(simulate=True)  # another unit waits for nobody
    assert other.Connect("demo") and other.DataTable().Count() == 0
    assert not ended
    served.thaw()
    refreshing.join()
    reading.join()
    assert set(ended) == {"Refresh", "GetValue"} and item.GetValue(3) == (True, 42)


def test_objects_that_are_dropped_during_a_call_end_after_it(served):
    core = connected(served)
    table = core.DataTable()
    item = table.AddNumReg(orif.NUMREG_INT, 1, 10)
    answers = []
    served.freeze()
    refreshing = in_thread(lambda refresh: answers.append(refresh()), table.Refresh)
    wait_until_used(table)
    del core, item  # neither waits
    assert not answers
    served.thaw()
    refreshing.join()
    assert answers == [True] and not table.Valid() and table.Count() == 0


def test_ctrl_c_ends_the_wait_for_another_thread(served):
    core = connected(served)
    table = core.DataTable()
    table.AddNumReg(orif.NUMREG_INT, 1, 10)
    served.freeze()
    refreshing = in_thread(table.Refresh)
    wait_until_used(table)
    sent = []

    def interrupt():
        time.sleep(0.1)
        sent.append(time.monotonic())
        os.kill(os.getpid(), signal.SIGINT)

    interrupting = in_thread(interrupt)
    with pytest.raises(KeyboardInterrupt):
        table.Count()
    assert time.monotonic() - sent[0] < 0.5  # 0.05 by itself
    served.thaw()
    refreshing.join()
    interrupting.join()
    assert table.Count() == 1


def test_threads_that_use_and_drop_one_unit_at_once():
    core = orif.Core(simulate=True)
    core.Connect("demo")
    table = core.DataTable()
    item = table.AddNumReg(orif.NUMREG_INT, 1, 10)
    failures = []

    def use(number):
        for i in range(300):
            if not (table.Refresh() and item.SetValue(number, i)):
                failures.append("use")
            if table.Item(1) is not item or item.DataTable() is not table:
                failures.append("identity")
            if not core.ReadSDI(1, [0] * 4, 4) or not core.GetLib() or not item.GetValue(1)[0]:
                failures.append("read")
            table.AddSysVar(orif.SYSVAR_INT, "$NOTHING")

    threads = [in_thread(use, number) for number in range(1, 5)]
    for thread in threads:
        thread.join()
    assert not failures and table.Refresh()
    assert [item.GetValue(number)[1] for number in range(1, 5)] == [299] * 4


@pytest.mark.parametrize(
    "program",
    [
        "keep = core, table, item",
        "import sys; sys.keep = item; del core",
        "del table, item",
        "import atexit; atexit.register(lambda: table.Refresh())",
        "class Late:\n    def __del__(self): print(item.GetValue(1), table.Refresh())\nlate = Late()",
        "import threading\n"
        "def again():\n"
        "    while True: table.Refresh(); item.GetValue(1)\n"
        "for _ in range(3): threading.Thread(target=again, daemon=True).start()\n"
        "import time; time.sleep(0.05)",
        "import os, signal\n"
        "if os.fork() == 0:\n"
        "    os._exit(0 if orif.Core(simulate=True).Connect('demo') else 1)\n"
        "assert os.wait()[1] == 0",
    ],
)
def test_the_interpreter_ends_quietly(program):
    setup = (
        "import orif\n"
        "core = orif.Core(simulate=True); core.Connect('demo')\n"
        "table = core.DataTable(); item = table.AddNumReg(orif.NUMREG_INT, 1, 10); table.Refresh()\n"
    )
    for _ in range(3):
        ended = subprocess.run(
            [sys.executable, "-X", "dev", "-c", setup + program], capture_output=True, text=True, timeout=60
        )
        assert (ended.returncode, ended.stderr) == (0, "")
        assert "__del__" not in program or ended.stdout == "(True, 120) True\n"


def test_the_interpreter_ends_while_a_thread_waits_for_the_controller(served):
    program = (
        "import array, orif, os, threading, time\n"
        f"core = orif.Core(); core.Connect({served.host!r})\n"
        f"core.TimeOutValue = 700; os.kill({served.process.pid}, {int(signal.SIGSTOP)})\n"
        "read = lambda: core.ReadSDI(1, array.array('h', [0] * 4), 4)\n"
        "threading.Thread(target=read, daemon=True).start()\n"
        "time.sleep(0.2)\n"
        # The end takes until the thread comes back from its call.
        "class Late:\n    def __del__(self, sleep=time.sleep): sleep(1)\n"
        "import sys; sys.late = Late()\n"
    )
    ended = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=60)
    assert (ended.returncode, ended.stderr) == (0, "")
