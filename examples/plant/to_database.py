#!/usr/bin/python3
"""Writes what gateways publish to a broker into an SQLite database, as it comes, until it is stopped.

It knows the topics and nothing else of the gateways. The broker keeps what comes while it is away, and hands a message
over again if it was not acknowledged; a value that is there already is left alone. So it may be stopped, killed and
started again at any time. Needs the Debian packages python3 and python3-paho-mqtt.
"""

import argparse
import json
import sqlite3
import sys
import urllib.parse
from pathlib import Path

import paho.mqtt.client as mqtt

TABLES = """
PRAGMA journal_mode = WAL;
PRAGMA synchronous = NORMAL;

-- All values, each once. A gateway that loses its state counts rows from the beginning again, at another time.
CREATE TABLE IF NOT EXISTS readings (
  gateway TEXT NOT NULL, cell TEXT NOT NULL, tag TEXT NOT NULL, number INTEGER NOT NULL, time TEXT NOT NULL,
  value, unit TEXT NOT NULL, quality TEXT NOT NULL, reason TEXT, late INTEGER NOT NULL,
  PRIMARY KEY (gateway, cell, tag, number, time)) WITHOUT ROWID;

-- The last state of each cell, and of each gateway, where cell is empty.
CREATE TABLE IF NOT EXISTS states (
  gateway TEXT NOT NULL, cell TEXT NOT NULL, state TEXT NOT NULL, reason TEXT, time TEXT,
  PRIMARY KEY (gateway, cell)) WITHOUT ROWID;
"""


# What a message raises that is not a gateway's, whatever is in it.
UNFIT = (
    ValueError,
    LookupError,
    TypeError,
    AttributeError,
    OverflowError,
    RecursionError,
    sqlite3.InterfaceError,
    sqlite3.IntegrityError,
    sqlite3.ProgrammingError,
)


class Database:
    def __init__(self, file, prefix):
        self.levels = prefix.count("/") + 1
        self.connection = sqlite3.connect(file, timeout=60)
        self.connection.executescript(TABLES)

    def take(self, topic, payload):
        """Stores one message. Raises one of UNFIT if it cannot be one of a gateway."""
        path = [urllib.parse.unquote(part) for part in topic.split("/")[self.levels :]]
        message = json.loads(payload)
        with self.connection:  # one transaction
            match path:
                case [gateway, "state"]:
                    self._state(gateway, "", message)
                case [gateway, cell, "state"]:
                    self._state(gateway, cell, message)
                case [gateway, cell, "row"]:
                    for tag, reading in message["values"].items():
                        self._reading(gateway, cell, tag, message, reading)
                case [gateway, cell, tag]:
                    self._reading(gateway, cell, tag, message, message)
                case _:
                    raise ValueError("unknown topic")

    def _state(self, gateway, cell, message):
        self.connection.execute(
            "INSERT OR REPLACE INTO states VALUES (?, ?, ?, ?, ?)",
            (gateway, cell, message["state"], message.get("reason"), message.get("time")),
        )

    def _reading(self, gateway, cell, tag, row, reading):
        self.connection.execute(
            "INSERT OR IGNORE INTO readings VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
            (
                gateway,
                cell,
                tag,
                row["number"],
                reading["time"],
                reading["value"],
                reading["unit"],
                reading["quality"],
                reading.get("reason"),
                row.get("late", False),
            ),
        )


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("database", help="file, made if there is none")
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=1883)
    parser.add_argument("--ca", help="certificate that signed the broker's; turns TLS on")
    parser.add_argument("--user")
    parser.add_argument("--password-file", type=Path)
    parser.add_argument("--prefix", default="orif", help="of the topics (orif)")
    parser.add_argument("--client", default="orif-to-database", help="a name that no other client of the broker has")
    arguments = parser.parse_args()

    database = Database(arguments.database, arguments.prefix)
    client = mqtt.Client(arguments.client, clean_session=False)  # the broker keeps what comes meanwhile
    if arguments.ca:
        client.tls_set(arguments.ca)
    if arguments.user:
        password = arguments.password_file.read_text(encoding="utf-8").rstrip("\n") if arguments.password_file else None
        client.username_pw_set(arguments.user, password)

    def on_connect(client, _userdata, _flags, code):
        print(f"broker: {mqtt.connack_string(code)}", file=sys.stderr, flush=True)
        if code == 0:
            client.subscribe(f"{arguments.prefix}/#", qos=1)

    def on_message(_client, _userdata, message):
        # The message is acknowledged after this, so an error of the database ends the program with nothing lost.
        # One that can never be stored must not come again for ever.
        try:
            database.take(message.topic, message.payload)
        except UNFIT as error:
            print(f"left out: {message.topic!r}: {error!r}", file=sys.stderr, flush=True)

    client.on_connect = on_connect
    client.on_message = on_message
    client.reconnect_delay_set(1, 30)
    try:
        client.connect_async(arguments.host, arguments.port, keepalive=30)
        client.loop_forever(retry_first_connection=True)
    except KeyboardInterrupt:
        pass


if __name__ == "__main__":
    main()
