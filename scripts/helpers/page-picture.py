#!/usr/bin/env python3
"""Makes the picture of the page, of a simulated plant that has run for so many minutes: an hour for
a whole plot."""

import json
import math
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from browser import Browser
from plant import free_port, until

SIZE = (1180, 780)


def cell(name, phase, extra=()):
    def ramp(tag, low, high, over):
        values = {"from": low, "to": high, "over": over}
        return {"what": tag, "ramp": values, "then": "bounce"}

    # A motor that warms up and cools down with its load.
    def degrees(i):
        i += 5 * phase
        return round(52 + 7 * math.sin(i / 17) + 3 * math.sin(i / 5) + 2 * math.sin(i), 1)

    heat = [[f"{10 * i}s", degrees(i)] for i in range(400)]
    return {
        "host": name,
        "positions": {"POS[0]": {"xyzwpr": [850, 0, 620, 180, 0, 90]}},
        "strings": {"SR[1]": {"value": "BRACKET-7"}},
        "behaviour": [
            {"what": "R[1]", "ramp": {"from": 4180 + phase, "to": 40180, "over": "10h"}},
            {"what": "R[2]", "path": heat},
            {"what": "DO[1]", "cycle": [[1, "30s"], [0, "20s"]]},
            ramp("POS[0].X", 850.0, 640.0, "41s"),
            ramp("POS[0].Z", 620.0, 410.0, "67s"),
            *extra,
        ],
    }


def main(file, minutes):
    page = free_port()
    alarm = {"id": 57, "number": 3, "message": "Part not held", "at": "1s"}
    presses = [
        cell(f"press{i}", 7 * i, [{"alarm": alarm}] if i == 4 else []) for i in range(1, 10)
    ]
    cells = []
    for press in presses:
        name = press["host"]
        content = {"name": name, "controllers": [press]}
        pathlib.Path(name + ".json").write_text(json.dumps(content), encoding="utf-8")
        cells.append({"name": name, "simulate": name + ".json"})
    cells[6] = {"name": "press7", "host": f"sim://127.0.0.1:{free_port()}"}
    config = {
        "gateway": "hall1",
        "broker": {"host": "127.0.0.1", "port": free_port()},
        "buffer": {"file": "buffer.db"},
        "page": {"port": page},
        "defaults": {
            "period": "500ms",
            "tags": ["R[1-2]", "SR[1]", "POS[0]", "DO[1-8]", "ALM[1-2]"],
        },
        "cells": cells,
    }
    pathlib.Path("cells.json").write_text(json.dumps(config), encoding="utf-8")
    gateway = subprocess.Popen(["orif-gateway", "cells.json"], stderr=subprocess.DEVNULL)
    browser = None
    try:
        time.sleep(60 * minutes)
        browser = Browser(f"http://127.0.0.1:{page}/")
        browser.size(SIZE, scale=2)
        browser.open("#cell=press3&tag=R%5B2%5D")
        browser.reads("#figures", "Last hour")
        until("values are there", lambda: browser.value("R[1]")[1] == "good")
        time.sleep(1)
        browser.picture(file)
    finally:
        if browser:
            browser.close()
        gateway.kill()
        gateway.wait()


if __name__ == "__main__":
    FILE = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        main(FILE, float(sys.argv[2]))
