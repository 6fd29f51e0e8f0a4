"""The subscriber finds what is wrong on the wire: messages made by hand, each time one fault."""

import json

from subscriber import Message, Wrong, check

SESSION = 3_000_000_000


def state(where, **members):
    time = {} if members["state"] == "offline" else {"time": "2026-11-22T00:31:58.000Z"}
    return [f"orif/hall1/{where}", {"session": 3, **time, **members}]


def tag(number, value=1, second=1, **members):
    reading = {"value": value, "unit": "", "quality": "good"}
    time = f"2026-11-22T00:32:{second:02}.000Z"
    reading |= {"time": time, "number": SESSION + number}
    return ["orif/hall1/press/R[1]", {**reading, **members}]


def row(number, full=False, **members):
    _, reading = tag(number, second=number)
    values = {"R[1]": {k: v for k, v in reading.items() if k != "number"}}
    whole = {"number": SESSION + number, "time": reading["time"], "full": full, "values": values}
    return ["orif/hall1/press/row", {**whole, **members}]


ONLINE = state("state", state="online", version="0.2.0", cells=1, buffered=0, dropped=0)
UP = state("press/state", state="up", reason="", host="a", tags=1)
BEGIN = [ONLINE, UP]
RIGHT = [
    *BEGIN,
    tag(1, 10, 1),
    tag(2, 10, 1, quality="stale", reason="gone"),
    tag(3, 11, 3, late=True),
    tag(5, 13, 5),
    tag(4, 12, 4, late=True),
    tag(4, 12, 4, late=True),
    row(6, True),
    row(7, late=True),
    state("state", state="offline", reason="connection lost"),
]
FAULTS = {
    "a gap": [*BEGIN, tag(1), tag(3)],
    "no first row": [*BEGIN, tag(2)],
    "no birth of the gateway": [UP, tag(1)],
    "no birth of the cell": [ONLINE, tag(1)],
    "a duplicate with another value": [*BEGIN, tag(1, 1), tag(1, 2)],
    "a duplicate with another time": [*BEGIN, tag(1, 1, 1), tag(1, 1, 2)],
    "time runs backward": [*BEGIN, tag(1, 1, 2), tag(2, 1, 1)],
    "late rows out of order": [*BEGIN, tag(2, late=True), tag(1, late=True)],
    "a session that is none": [*BEGIN, tag(-SESSION + 5)],
    "good, with a reason": [*BEGIN, tag(1, reason="none")],
    "stale, without a reason": [*BEGIN, tag(1, quality="stale")],
    "refused, with a value": [*BEGIN, tag(1, quality="refused", reason="unknown")],
    "a quality that is none": [*BEGIN, tag(1, quality="bad", reason="")],
    "a time that is none": [*BEGIN, tag(1, time="2026-11-22 00:32:01")],
    "an unknown field": [*BEGIN, tag(1, more=1)],
    "an empty row": [*BEGIN, row(1, values={})],
    "lost, without a reason": [ONLINE, [UP[0], {**UP[1], "state": "lost"}]],
    "no state of the gateway": [UP],
    "another topic": [["orif/hall1/press/R/1", {}]],
}
PAYLOADS = {
    "no JSON": b'{"value":',
    "no UTF-8": b'{"value":"\xff"}',
    "no number": b'{"value":NaN}',
    "a key twice": b'{"value":1,"value":2}',
    "no object": b"[]",
}


def messages(made, retain=()):
    packed = [(t, p if isinstance(p, bytes) else json.dumps(p).encode()) for t, p in made]
    return [Message(i, t, p, i in retain) for i, (t, p) in enumerate(packed)]


def refused(what, *arguments, **named):
    try:
        check(*arguments, **named)
    except Wrong:
        return
    raise SystemExit(f"not found: {what}")


right = messages(RIGHT)
kept = {m.topic: m.payload for m in [right[10], right[1], right[5], right[8]]}
seen = check(right, kept=kept)["hall1"]
if (seen.late, seen.duplicates, len(seen.rows["press"])) != (4, 1, 7):
    raise SystemExit(f"{seen.late} late, {seen.duplicates} twice, {len(seen.rows['press'])} rows")
check(messages(FAULTS["a gap"]), dropped=1)
check(messages(FAULTS["time runs backward"]), clock_set=True)
for fault, made in FAULTS.items():
    refused(fault, messages(made))
for fault, payload in PAYLOADS.items():
    refused(fault, messages([["orif/hall1/press/R[1]", payload]]))
refused("a late row is retained", messages([*BEGIN, tag(1, late=True)], retain=(2,)))
for topic, payload in kept.items():
    refused("not retained", right, kept={t: p for t, p in kept.items() if t != topic})
    refused("retained is another", right, kept={**kept, topic: payload.replace(b"3", b"4")})
refused("retained, and never live", right, kept={**kept, "orif/hall1/press/R[9]": b"{}"})
