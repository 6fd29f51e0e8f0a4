"""Watches a cell while its link is lost and comes back, and then in a thread of its own."""

import threading

import orif

simulated = orif.SimulatedCell(True)
robot = simulated["demo"]
retry = orif.Retry(first=0.05, most=0.1)

with orif.Controller("demo", ["R[1-2]", "DO[1]"], simulate=simulated, retry=retry) as cell:
    told = 0
    for change in cell.watch(every=0.02):
        print(change)
        told += 1
        if told == 3:  # all values have been told
            robot["R[1]"] = 121
        if change.name == "R[1]" and change.value == 121 and not change.is_link:
            robot.cut_link()
            threading.Timer(0.2, robot.restore_link).start()
        if change.is_link and change.value == "back":
            break

    done = threading.Event()

    def show(change: orif.Change) -> None:
        if change.name == "R[2]":
            print("in a thread:", change)
        if change.value == 4:
            done.set()

    with cell.watch(every=0.02, callback=show):
        cell["R[2]"] = 4
        done.wait(5)
