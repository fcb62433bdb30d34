"""The engines that run what `mcbin export` writes."""

import csv
import glob
import io
import os
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

SKIPPED = 77


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def is_text(column):
    return any(isinstance(value, str) for value in column)


class Engine:
    """One engine. `evaluate` returns the new columns for the values of the old ones."""

    has_nan = True
    has_intervals = True  # of missing values
    has_controls = True  # control characters in texts
    no_value = None

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        pass


class SqlEngine(Engine):
    """One that reads SQL: makes a table of the values and runs the query."""

    text_type = "TEXT"

    def options(self, table):
        return ["--format", "sql", "--dialect", self.dialect, "--table", quoted(table)]

    def evaluate(self, text, table, names, columns):
        types = [self.text_type if is_text(column) else "DOUBLE PRECISION" for column in columns]
        fields = [f"{quoted(name)} {kind}" for name, kind in zip(names, types)]
        self.execute(f"CREATE TABLE {quoted(table)} ({', '.join(fields)})")
        self.insert(table, columns)
        rows = self.execute(text)
        self.execute(f"DROP TABLE {quoted(table)}")
        return list(zip(*rows))[len(names):]


class ConnectionEngine(SqlEngine):
    """One with a Python connection, which hands over doubles as they are."""

    def execute(self, text):
        return self.connection.execute(text).fetchall()

    def insert(self, table, columns):
        marks = ", ".join("?" for _ in columns)
        self.connection.executemany(f"INSERT INTO {quoted(table)} VALUES ({marks})",
                                    list(zip(*columns)))


class Sqlite(ConnectionEngine):
    dialect = "sqlite"
    text_type = "TEXT COLLATE NOCASE"  # categories differ all the same

    def __init__(self):
        import sqlite3
        self.connection = sqlite3.connect(":memory:")


class DuckDb(ConnectionEngine):
    dialect = "duckdb"

    def __init__(self):
        try:
            import duckdb
        except ImportError:
            sys.exit(SKIPPED)
        self.connection = duckdb.connect()


class Postgresql(SqlEngine):
    """A server of its own in a private directory, reached through a socket in there.

    The server refuses to run as root, so for root it runs as another user.
    """

    dialect = "postgresql"

    def __init__(self):
        found = shutil.which("initdb") or max(glob.glob("/usr/lib/postgresql/*/bin/initdb"),
                                              default=None)
        if found is None:
            sys.exit(SKIPPED)
        self.programs = os.path.dirname(os.path.realpath(found))
        self.directory = tempfile.mkdtemp(prefix="mcbin-postgresql-")
        self.user = {}
        if os.geteuid() == 0:
            self.user = {"user": "nobody", "group": "nogroup", "extra_groups": []}
            shutil.chown(self.directory, "nobody", "nogroup")

    def run(self, program, *arguments, text=None):
        return subprocess.run([os.path.join(self.programs, program), *arguments], input=text,
                              stdout=subprocess.PIPE, encoding="utf-8", check=True,
                              cwd=self.directory, **self.user).stdout

    def __enter__(self):
        self.data = os.path.join(self.directory, "data")
        log = os.path.join(self.directory, "log")
        try:
            self.run("initdb", "-D", self.data, "-U", "mcbin", "-A", "trust", "-E", "UTF8",
                     "--locale=C", "--no-sync")
            settings = f"-c listen_addresses='' -c unix_socket_directories={self.directory}"
            self.run("pg_ctl", "-D", self.data, "-l", log, "-o", settings, "-w", "start")
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *unused):
        if os.path.exists(os.path.join(self.data, "postmaster.pid")):
            self.run("pg_ctl", "-D", self.data, "-m", "immediate", "-w", "stop")
        shutil.rmtree(self.directory)

    def psql(self, text):
        return self.run("psql", "-h", self.directory, "-U", "mcbin", "-d", "postgres", "-X", "-q",
                        "--csv", "-t", "-v", "ON_ERROR_STOP=1", "-P", "null=\x01", text=text)

    def execute(self, text):
        rows = csv.reader(io.StringIO(self.psql(text + ";"), newline=""))
        return [[None if field == "\x01" else field for field in row] for row in rows]

    def insert(self, table, columns):
        lines = io.StringIO(newline="")
        writer = csv.writer(lines, lineterminator="\n")
        for row in zip(*columns):
            writer.writerow(["\x01" if value is None else value for value in row])
        self.psql(f"COPY {quoted(table)} FROM STDIN (FORMAT csv, NULL '\x01');\n"
                  f"{lines.getvalue()}\\.\n")


class Python(Engine):
    no_value = -1

    def __init__(self):
        try:
            import numpy
        except ImportError:
            sys.exit(SKIPPED)
        self.numpy = numpy

    def options(self, unused):
        return ["--format", "python"]

    def evaluate(self, text, unused, names, columns):
        module = {}
        exec(compile(text, "bins.py", "exec"), module)
        arrays = {name: self.numpy.array(column, dtype=object if is_text(column) else float)
                  for name, column in zip(names, columns)}
        return list(module["assign_bins"](arrays).values())


class Pmml(Engine):
    """Evaluates the part of PMML that is written, by its own rules."""

    has_nan = False
    has_intervals = False
    has_controls = False

    def options(self, unused):
        return ["--format", "pmml"]

    def evaluate(self, text, unused, names, columns):
        root = ElementTree.fromstring(text.encode())
        space = root.tag[:-len("PMML")]
        for element in root.iter():
            element.tag = element.tag.removeprefix(space)
        assert space == "{http://www.dmg.org/PMML-4_4}" and root.get("version") == "4.4"
        assert [child.tag for child in root] == ["Header", "DataDictionary",
                                                 "TransformationDictionary"]
        fields = {field.get("name"): field for field in root.find("DataDictionary")}
        assert list(fields) == names
        derived = list(root.find("TransformationDictionary"))
        assert [field.get("name") for field in derived] == [name + "~" for name in names]
        return [[self.derive(field[0], fields[name], value) for value in column]
                for name, field, column in zip(names, derived, columns)]

    def derive(self, expression, field, value):
        read = str if field.get("dataType") == "string" else float
        missing = [read(each.get("value")) for each in field
                   if each.get("property") == "missing"]
        if value is None or value in missing:
            return expression.get("mapMissingTo")
        if expression.tag == "MapValues":
            for row in expression.find("InlineTable"):
                if read(row.find("category").text) == value:
                    return row.findtext("bin")
            return expression.get("defaultValue")
        for each in expression:
            interval = each.find("Interval")
            low = float(interval.get("leftMargin", "-inf"))
            high = float(interval.get("rightMargin", "inf"))
            right = {"openClosed": True, "closedOpen": False}[interval.get("closure")]
            above = value > low if right else value >= low
            below = value <= high if right else value < high
            if (above or interval.get("leftMargin") is None) and (
                    below or interval.get("rightMargin") is None):
                return each.get("binValue")
        return expression.get("defaultValue")


ENGINES = {"sqlite": Sqlite, "duckdb": DuckDb, "postgresql": Postgresql, "python": Python,
           "pmml": Pmml}
