"""The defaults store, read as another program reads it: the SQLite file, opened read-only."""

import contextlib
import json
import sqlite3

SESSION_KEYS = ("SessionActive", "SessionGoals", "SessionId", "TimeRemaining", "SessionDuration",
                "SessionProgress", "LastUpdate")
TIMER_KEYS = ("TimerStartTime", "TimerOriginalDuration", "TimerIsActive", "TimerSessionGoal")

# Seconds from 1970-01-01 to 2001-01-01 UTC: dates are stored as seconds since the latter.
REFERENCE_DATE = 978_307_200.0

# What a user who has seen onboarding has.
PREFERENCES = {"defaultDuration": 1500, "defaultBlockedApps": [], "defaultBlockedWebsites": [],
               "notificationsEnabled": True, "soundEnabled": True, "lastGoal": "",
               "lastReflection": "", "hasCompletedOnboarding": True}


class Store:
    def __init__(self, data_home):
        self.file = data_home / "com.tarne.app" / "defaults.sqlite"

    def plant(self, key, document):
        """Puts a JSON document into a store that no program has open, and makes it if need be."""
        self.plant_value(key, "data", json.dumps(document).encode())

    def plant_countdown(self, start, duration, goal):
        """A session as a program that was killed leaves it; `start` in seconds since 2001."""
        self.plant_value("TimerStartTime", "date", float(start))
        self.plant_value("TimerOriginalDuration", "double", float(duration))
        self.plant_value("TimerIsActive", "boolean", 1)
        self.plant_value("TimerSessionGoal", "text", goal)

    def plant_value(self, key, kind, value):
        self.file.parent.mkdir(mode=0o700, parents=True, exist_ok=True)
        with contextlib.closing(sqlite3.connect(self.file)) as connection, connection:
            if not connection.execute("PRAGMA user_version").fetchone()[0]:
                connection.executescript("""
                    CREATE TABLE defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL,
                                           value ANY NOT NULL, sum INTEGER) STRICT;
                    PRAGMA user_version = 1;""")
            connection.execute("INSERT OR REPLACE INTO defaults VALUES (?, ?, ?, NULL)",
                               (key, kind, value))
        self.file.chmod(0o600)

    def rows(self):
        """All values as {key: (type, value)}, of one moment; empty while there is no store."""
        if not self.file.exists():
            return {}
        connection = sqlite3.connect(f"file:{self.file}?mode=ro", uri=True, timeout=10)
        try:
            return {key: (kind, value) for key, kind, value
                    in connection.execute("SELECT key, type, value FROM defaults")}
        except sqlite3.OperationalError as error:
            if "no such table" in str(error):
                return {}
            raise
        finally:
            connection.close()

    def values(self, keys):
        rows = self.rows()
        return {key: rows[key][1] for key in keys if key in rows}

    def document(self, key):
        """The JSON document under a key, None while the key is absent."""
        kind, value = self.rows().get(key, (None, None))
        if kind is None:
            return None
        assert kind == "data", f"{key} is stored as {kind}"
        return json.loads(value)

    def size_of(self, key):
        """The number of bytes of a value, which is not read."""
        with contextlib.closing(sqlite3.connect(f"file:{self.file}?mode=ro", uri=True,
                                                timeout=10)) as connection:
            row = connection.execute("SELECT length(value) FROM defaults WHERE key = ?",
                                     (key,)).fetchone()
            return row[0] if row else 0

    def history(self):
        return self.document("SessionHistory") or []

    def is_whole(self):
        """SQLite's own verdict over the file, for after a crash."""
        connection = sqlite3.connect(f"file:{self.file}?mode=ro", uri=True, timeout=10)
        try:
            return connection.execute("PRAGMA integrity_check").fetchone() == ("ok",)
        finally:
            connection.close()
