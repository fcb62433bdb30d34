"""The engines that run what `mcbin export` writes."""

import csv
import datetime
import getpass
import glob
import io
import os
import shutil
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from urllib.parse import quote, unquote_plus

SKIPPED = 77


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


def skip(what):
    """Ends with what ctest takes for skipped."""
    print(f"skipped: there is no {what}")
    sys.exit(SKIPPED)


def is_time(column):
    return any(isinstance(value, datetime.datetime) for value in column)


def is_text(column):
    return any(isinstance(value, str) for value in column)


def number(value):
    return None if value is None or isinstance(value, str) else float(value)


def whole(value):
    found = number(value)
    return int(found) if found is not None and found.is_integer() and abs(found) < 2 ** 53 else None


def text(value):
    return value if value is None or isinstance(value, str) else repr(float(value))


class Engine:
    """One engine. `evaluate` returns the new columns for the values of the old ones."""

    has_nan = True
    has_infinity = True
    has_controls = True  # control characters in texts
    has_text_columns = True  # for numbers
    has_times = True
    no_value = None

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        pass


class SqlEngine(Engine):
    """One that reads SQL: makes a table of the values and runs the query."""

    text_type = "TEXT"
    number_type = "DOUBLE PRECISION"
    time_type = "TIMESTAMP"

    def quoted(self, name):
        return quoted(name)

    def options(self, table):
        return ["--format", "sql", "--dialect", self.dialect, "--table", quoted(table)]

    def evaluate(self, text, table, names, columns):
        types = [self.text_type if is_text(column) else
                 self.time_type if is_time(column) else self.number_type for column in columns]
        fields = [f"{self.quoted(name)} {kind}" for name, kind in zip(names, types)]
        self.execute(f"CREATE TABLE {self.quoted(table)} ({', '.join(fields)})")
        try:
            self.insert(table, columns)
            rows = self.execute(text)
        finally:
            self.execute(f"DROP TABLE {self.quoted(table)}")
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
    has_times = False
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
            skip("duckdb in Python")
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
            skip("PostgreSQL server")
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


class MariaDb(SqlEngine):
    """A server of its own in a private directory, without accounts."""

    dialect = "mysql"
    time_type = "DATETIME(6)"
    has_nan = False
    has_infinity = False
    text_type = "TEXT CHARACTER SET utf8mb4 COLLATE utf8mb4_general_ci"  # A is a, blanks are nothing

    def __init__(self):
        self.program = shutil.which("mariadbd", path=os.environ["PATH"] + ":/usr/sbin")
        if self.program is None:
            skip("MariaDB server")
        try:
            import pymysql
        except ImportError:
            skip("pymysql in Python")
        self.pymysql = pymysql

    def __enter__(self):
        self.directory = tempfile.mkdtemp(prefix="mcbin-mariadb-")
        socket = os.path.join(self.directory, "socket")
        with open(os.path.join(self.directory, "log"), "wb") as log:
            self.server = subprocess.Popen(
                [self.program, "--no-defaults", "--user=" + getpass.getuser(), "--skip-grant-tables",
                 "--skip-networking", "--datadir=" + self.directory, "--socket=" + socket,
                 "--pid-file=" + os.path.join(self.directory, "pid")], stdout=log, stderr=log)
        try:
            while not os.path.exists(socket):
                if self.server.poll() is not None:
                    raise RuntimeError("MariaDB does not start")
                time.sleep(0.1)
            connection = self.pymysql.connect(unix_socket=socket, charset="utf8mb4", autocommit=True)
            self.cursor = connection.cursor()
            self.cursor.execute("CREATE DATABASE bins")
            self.cursor.execute("USE bins")
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *unused):
        self.server.terminate()
        self.server.wait()
        shutil.rmtree(self.directory)

    def quoted(self, name):
        return "`" + name.replace("`", "``") + "`"

    def execute(self, text):
        self.cursor.execute(text)
        return self.cursor.fetchall()

    def insert(self, table, columns):
        marks = ", ".join("%s" for _ in columns)
        self.cursor.executemany(f"INSERT INTO {self.quoted(table)} VALUES ({marks})",
                                list(zip(*columns)))


class Spark(SqlEngine):
    """Where a text that is no number becomes NULL; otherwise Spark ends the query."""

    dialect = "spark"

    def __init__(self):
        if shutil.which("java") is None:
            skip("Java for Spark")
        try:
            from pyspark.sql import SparkSession
        except ImportError:
            skip("pyspark in Python")
        settings = {"spark.ui.enabled": "false", "spark.sql.ansi.enabled": "false",
                    "spark.log.level": "ERROR", "spark.driver.bindAddress": "127.0.0.1",
                    "spark.driver.host": "127.0.0.1"}
        self.session = SparkSession.builder.master("local[1]").config(map=settings).getOrCreate()

    def __exit__(self, *unused):
        self.session.stop()

    def evaluate(self, text, table, names, columns):
        from pyspark.sql import types
        fields = [types.StructField(name, types.StringType() if is_text(column) else
                                    types.TimestampType() if is_time(column) else types.DoubleType())
                  for name, column in zip(names, columns)]
        rows = list(zip(*(column if is_text(column) or is_time(column) else map(number, column)
                          for column in columns)))
        frame = self.session.createDataFrame(rows, types.StructType(fields))
        frame.createOrReplaceTempView("`" + table.replace("`", "``") + "`")
        return list(zip(*self.session.sql(text).collect()))[len(names):]


class Python(Engine):
    """Evaluates NumPy arrays, and columns of every kind that the libraries at hand have."""

    no_value = -1

    def __init__(self):
        try:
            import numpy
        except ImportError:
            skip("numpy in Python")
        self.numpy = numpy
        self.kinds = [(text, list)]  # what a value becomes, and the column
        for add in (self.add_pandas, self.add_polars, self.add_arrow):
            try:
                add()
            except ImportError as error:
                print(f"not tried: {error}")

    def add_pandas(self):
        import pandas
        for convert, kind in ((None, "object"), (number, "Float64"), (whole, "Int64"),
                              (text, "str"), (text, "string[python]"), (None, "category")):
            self.kinds.append((convert, lambda column, kind=kind: pandas.Series(column, dtype=kind)))

    def add_polars(self):
        import polars
        for convert, kind in ((number, polars.Float64), (whole, polars.Int64),
                              (text, polars.String), (text, polars.Categorical)):
            self.kinds.append((convert, lambda column, kind=kind: polars.Series(column, dtype=kind)))

    def add_arrow(self):
        import pyarrow

        def chunked(column, kind, encode):
            halves = [pyarrow.array(half, kind) for half in (column[:9], column[9:])]
            return pyarrow.chunked_array([encode(half) for half in halves])
        for convert, kind in ((number, pyarrow.float64()), (whole, pyarrow.int64()),
                              (text, pyarrow.string())):
            for encode in (lambda half: half, lambda half: half.dictionary_encode()):
                self.kinds.append((convert, lambda column, kind=kind, encode=encode:
                                   chunked(column, kind, encode)))

    def options(self, unused):
        return ["--format", "python"]

    def evaluate(self, module_text, unused, names, columns):
        module = {}
        exec(compile(module_text, "bins.py", "exec"), module)
        assign_bins = module["assign_bins"]
        if is_time(columns[0]):
            return self.evaluate_times(assign_bins, names, columns)
        arrays = {name: self.numpy.array(column, dtype=object if is_text(column) else float)
                  for name, column in zip(names, columns)}
        bins = list(assign_bins(arrays).values())
        for convert, make in self.kinds:
            given = [[convert(value) if convert else value for value in column]
                     for column in columns]
            found = assign_bins({name: make(column) for name, column in zip(names, given)})
            for column, values, wanted, new in zip(columns, given, bins, found.values()):
                missing = wanted[column.index(None)]
                wanted = [missing if value is None else bin for value, bin in zip(values, wanted)]
                self.numpy.testing.assert_array_equal(new, self.numpy.array(wanted, new.dtype))
        return bins


    def evaluate_times(self, assign_bins, names, columns):
        bins = list(assign_bins(dict(zip(names, columns))).values())
        kinds = [lambda column: self.numpy.array(column, "datetime64[us]"),
                 lambda column: [value and value.isoformat() + "Z" for value in column]]
        for library, kind in (("pandas", "Series"), ("polars", "Series"), ("pyarrow", "array")):
            try:
                kinds.append(getattr(__import__(library), kind))
            except ImportError as error:
                print(f"not tried: {error}")
        for make in kinds:
            found = assign_bins({name: make(column) for name, column in zip(names, columns)})
            for wanted, new in zip(bins, found.values()):
                self.numpy.testing.assert_array_equal(new, wanted)
        cut, late = list(assign_bins({"when": ["1969-12-31T23:59:59.7499999",
                                               "1969-12-31T23:59:59.7500001"]}).values())[0]
        assert cut != late, "decimals behind a microsecond count"
        for text in ("20240131", "2024-02-30", "2024-01-31T24:00", "2024-01-31T12:30+01:60"):
            self.numpy.testing.assert_raises(ValueError, assign_bins, {"when": [text]})
        return bins


class Jpmml(Engine):
    """JPMML-Evaluator, which scripts/engines puts beside the Python packages.

    It evaluates models: one is made here that does nothing but hand out the bins.
    """

    has_controls = False
    has_text_columns = False

    def __init__(self):
        self.jars = os.path.join(sys.prefix, "jpmml", "*")
        if not glob.glob(self.jars) or shutil.which("javac") is None:
            skip("JPMML-Evaluator (scripts/engines) or Java compiler")

    def __enter__(self):
        program = os.path.join(os.path.dirname(__file__), "jpmml", "EvaluatePmml.java")
        self.java = subprocess.Popen(
            ["java", "-XX:TieredStopAtLevel=1", "-cp", self.jars, program],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8")
        return self

    def __exit__(self, *unused):
        self.java.stdin.close()
        self.java.wait()

    def options(self, unused):
        return ["--format", "pmml"]

    def evaluate(self, text, unused, names, columns):
        space = "http://www.dmg.org/PMML-4_4"
        ElementTree.register_namespace("", space)
        root = ElementTree.fromstring(text.encode())
        assert root.tag == f"{{{space}}}PMML" and root.get("version") == "4.4"
        derived = list(root.find(f"{{{space}}}TransformationDictionary"))
        assert [field.get("name") for field in derived] == [name + "~" for name in names]

        def add(parent, tag, **attributes):
            return ElementTree.SubElement(parent, f"{{{space}}}{tag}", attributes)
        model = add(root, "RegressionModel", functionName="regression")
        schema, output = add(model, "MiningSchema"), add(model, "Output")
        add(model, "RegressionTable", intercept="0")
        for number, (name, field) in enumerate(zip(names, derived)):
            add(schema, "MiningField", name=name)
            result = add(output, "OutputField", name=str(number), feature="transformedValue",
                         optype=field.get("optype"), dataType=field.get("dataType"))
            add(result, "FieldRef", field=field.get("name"))
        with tempfile.NamedTemporaryFile(suffix=".pmml") as file:
            file.write(ElementTree.tostring(root, encoding="utf-8"))
            file.flush()
            rows = list(zip(*columns))
            lines = [f"{file.name}\t{len(rows)}", "\t".join(map(quote, names))]
            lines += ["\t".join(map(self.write, row)) for row in rows]
            self.java.stdin.write("\n".join(lines) + "\n")
            self.java.stdin.flush()
            results = [self.java.stdout.readline().rstrip("\n").split("\t") for _ in rows]
        return list(zip(*(map(self.read, fields) for fields in results)))

    @staticmethod
    def write(value):
        if value is None:
            return ""
        if isinstance(value, (str, datetime.datetime)):
            return "s" + quote(value if isinstance(value, str) else value.isoformat())
        return "d" + quote(repr(value).replace("inf", "Infinity").replace("nan", "NaN"))

    @staticmethod
    def read(field):
        return unquote_plus(field[1:]) if field else None


ENGINES = {"sqlite": Sqlite, "duckdb": DuckDb, "postgresql": Postgresql, "mysql": MariaDb,
           "spark": Spark, "python": Python, "jpmml": Jpmml}
