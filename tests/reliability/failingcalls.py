"""Usage: failingcalls.py LIBRARY PROGRAM EXAMPLES library|bins|others

Runs a program again and again with LIBRARY preloaded, which makes one of its system calls fail:
each call once with every error it may meet, and with every later call failing alike. PROGRAM is
`mcbin` or, for `library`, the host of the library that stands beside this file.

Whatever fails: no crash, no hang, no temporary file that stays, no output that is wrong or torn
when the program says that all is well, and a word when it does not.
"""

import collections
import errno
import os
import shutil
import stat
import subprocess
import sys
import tempfile

LIBRARY, PROGRAM, EXAMPLES, GROUP = sys.argv[1:]
SECONDS = 20
OLD = b"what stood here before"
NO_ERRORS = {0, errno.EINTR}  # a short count, a signal: the program goes on
RETRIED = {"read", "write", "pread", "pwrite", "poll"}
REMOVING = {"unlink", "unlinkat", "remove", "rmdir"}

Call = collections.namedtuple("Call", "name errors fault subject")
Outcome = collections.namedtuple("Outcome", "code out err calls files modes")


class Subject:
    """A command in a directory of its own, `outputs` being the files it writes there.

    Without `every_error`, a call fails with the first of its errors alone: for slow commands.
    """

    def __init__(self, words, outputs=(), text=b"", every_error=True):
        self.words, self.outputs, self.text = words.split(), outputs, text
        self.every_error = every_error
        base = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        self.directory = tempfile.mkdtemp(prefix="failing-calls-", dir=base)
        self.log = os.path.join(self.directory, "log")
        self.work = os.path.join(self.directory, "work")
        os.makedirs(os.path.join(self.work, "tmp"))
        for source, target in INPUTS.items():
            os.symlink(source, os.path.join(self.directory, target))

    def clear(self):
        for name in self.files():
            path = os.path.join(self.work, name)
            shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
        for name in self.outputs:
            with open(os.path.join(self.work, name), "wb") as file:
                file.write(OLD)
            os.chmod(os.path.join(self.work, name), 0o600)

    def files(self):
        """All that lies where the program writes."""
        names = [name for name in os.listdir(self.work) if name != "tmp"]
        return names + ["tmp/" + name for name in os.listdir(os.path.join(self.work, "tmp"))]

    def run(self, number=None, error=0, on=False):
        if os.path.exists(self.log):
            os.remove(self.log)
        environment = {"LD_PRELOAD": LIBRARY, "FAILING_CALLS_LOG": self.log, "TMPDIR": "tmp",
                       "LC_ALL": "C.UTF-8", "PATH": os.environ["PATH"]}
        if number is not None:
            environment["FAILING_CALLS_NUMBER"] = str(number)
            environment["FAILING_CALLS_ERROR"] = str(error)
            environment["FAILING_CALLS_ON"] = str(int(on))
        try:
            done = subprocess.run([PROGRAM, *self.words], input=self.text, capture_output=True,
                                  env=environment, cwd=self.work, timeout=SECONDS)
            code, out, err = done.returncode, done.stdout, done.stderr
        except subprocess.TimeoutExpired:
            code, out, err = None, b"", b""
        files, modes = {}, {}
        for name in self.files():
            path = os.path.join(self.work, name)
            modes[name] = stat.S_IMODE(os.lstat(path).st_mode)
            if name in self.outputs:
                with open(path, "rb") as file:
                    files[name] = file.read()
        return Outcome(code, out, err, self.calls(), files, modes)

    def calls(self):
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding="utf-8", errors="replace") as file:
            rows = [line.rstrip("\n").split(" ", 3) for line in file]
        return [Call(name, int(count), None if fault == "-" else int(fault), subject)
                for name, count, fault, subject in rows]

    def leftovers(self, outcome):
        return sorted(set(outcome.modes) - set(self.outputs))

    def faults(self, good, outcome):
        """What is wrong with a run in which `outcome.calls` failed, `good` being one without."""
        if outcome.code is None:
            yield "hangs"
            return
        if outcome.code < 0 or outcome.code > 1:
            yield f"ends with {outcome.code}"
        told = any(call.subject == "standard 2" for call in outcome.calls)
        if outcome.code != 0 and not outcome.err and not told:
            yield "fails without a word"
        # The library prints a line about a file that it cannot open.
        if outcome.code == 0 and outcome.out != good.out and GROUP != "library":
            yield "wrong on standard output"
        for name in self.outputs:
            content = outcome.files.get(name)
            if content != good.files[name] and (outcome.code == 0 or content != OLD):
                yield f"{name} is " + ("missing" if content is None else
                                       "old" if content == OLD else "torn")
            if outcome.modes.get(name, 0o600) & 0o077:
                yield f"{name} may be read by others"
        if outcome.code != 0 and all(call.fault in NO_ERRORS and call.name in RETRIED
                                     for call in outcome.calls):
            yield "fails without an error"
        yield from self.what_stays(outcome)

    def what_stays(self, outcome):
        """Files may stay where their removal failed, and then only until the next run."""
        left = self.leftovers(outcome)
        if not left:
            return
        if not any(removes(call) for call in outcome.calls):
            yield "leaves files"
        elif GROUP != "library" and self.leftovers(self.run()):
            yield "leaves files that the next run leaves too"

    def sweep(self):
        """The number of runs, and what is wrong with them: an example by what happened."""
        self.clear()
        good = self.run()
        assert good.code == 0 and not self.leftovers(good), (self.words, good.code, good.err)
        found, runs = {}, 0
        for number, call in enumerate(good.calls, 1):
            errors = range(call.errors if self.every_error else 1)
            for error, on in [(error, False) for error in errors] + [(0, True)]:
                self.clear()
                outcome = self.run(number, error, on)
                runs += 1
                failed = outcome.calls[0] if outcome.calls else call
                how = f"{failed.name} fails {'for good' if on else 'once'}, {describe(failed.fault)}"
                for fault in self.faults(good, outcome):
                    where = f"call {number}, {failed.subject}: {outcome.err.decode(errors='replace')}"
                    found.setdefault(f"{how}: {fault}", where.strip()[:400])
        shutil.rmtree(self.directory)
        return runs, found


def removes(call):
    """Whether a call removes a file, or looks at or into what is to be removed."""
    looks = call.name in ("statx", "fstat", "fdopendir", "readdir", "openat", "open")
    return call.name in REMOVING or looks and ("mcbin-" in call.subject or GROUP == "library")


def describe(fault):
    return {None: "nothing", 0: "a short count"}.get(fault) or errno.errorcode.get(fault, fault)


def many_records(path):
    """More than the library keeps in memory of a variable."""
    with open(path, "w", encoding="ascii") as file:
        file.write("a,b,t,w\n")
        for i in range(10400):
            file.write(f"{'' if i % 7 == 3 else i / 4},{i * 37 % 101},{'xyz'[i // 3500]},{i % 3}\n")


def subjects():
    if GROUP == "library":
        return [Subject(f"{method} {records} tmp", every_error=records == 40)
                for method in ("supervised", "equal-frequency") for records in (40, 10007)]
    outputs = ("bins.json", "page.html")
    if GROUP == "bins":
        return [Subject(f"{method} ../{data} --jobs {jobs} --json bins.json --report page.html",
                        outputs, every_error=data == "few.csv")
                for method in ("supervised --target t --weight w", "equal-frequency --bins 3")
                for data in ("few.csv", "many.csv") for jobs in (1, 2)]
    with open(os.path.join(EXAMPLES, "iris.csv"), "rb") as file:
        text = file.read()
    return [Subject("supervised --target species --json - -", text=text),
            Subject("apply --as label ../bins.json ../iris.csv"),
            Subject("apply ../bins.json -", text=text),
            Subject("evaluate ../bins.json ../iris.csv"),
            Subject("export --format sql --table t -o out ../bins.json", ("out",)),
            Subject("export --format python ../bins.json"),
            Subject("report ../bins.json -o out", ("out",))]


def main():
    global INPUTS
    with tempfile.TemporaryDirectory() as directory:
        many, few = os.path.join(directory, "many.csv"), os.path.join(directory, "few.csv")
        bins, iris = os.path.join(directory, "bins.json"), os.path.join(EXAMPLES, "iris.csv")
        many_records(many)
        with open(few, "w", encoding="ascii") as file:
            file.write("a,b,t,w\n" + "".join(f"{i},{i % 5},{'xy'[i // 9]},1\n" for i in range(18)))
        INPUTS = {many: "many.csv", few: "few.csv", iris: "iris.csv", bins: "bins.json"}
        if GROUP != "library":
            subprocess.run([PROGRAM, "supervised", "--quiet", "--target", "species", "--json", bins,
                            iris], check=True, stdout=subprocess.DEVNULL)
        total, faults = 0, 0
        for subject in subjects():
            runs, found = subject.sweep()
            print(f"{' '.join(subject.words)}: {runs} runs")
            for fault, example in found.items():
                print(f"  {fault}\n    {example}")
            total += runs
            faults += len(found)
        print(f"{total} runs, {faults} kinds of faults")
        sys.exit(1 if faults or not total else 0)


main()
