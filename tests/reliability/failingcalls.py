"""Usage: failingcalls.py LIBRARY PROGRAM EXAMPLES GROUP

Runs a program again and again with LIBRARY preloaded, which makes one of its system calls fail:
each call once with every error it may meet, and with every later call failing alike. PROGRAM is
`mcbin` or, for the group `library`, the host of the library that stands beside this file. The groups
`supervised` and `equal-frequency` make bins, `others` is the other commands. In `signals`, a signal
comes at each call; in `limits`, files, descriptors or standard streams are out of order.

Whatever fails: no crash, no hang, no temporary file that stays, no output that is wrong or torn
when the program says that all is well, and a word when it does not.
"""

import collections
import errno
import os
import re
import resource
import shutil
import signal
import stat
import subprocess
import sys
import tempfile

LIBRARY, PROGRAM, EXAMPLES, GROUP = sys.argv[1:]
SECONDS = 300  # whoever takes longer hangs
OLD = b"what stood here before"
GOES_ON = {0, errno.EINTR}  # a short count, a signal: no error
RETRIED = {"read", "write", "pread", "pwrite", "poll"}
REMOVING = {"unlink", "unlinkat", "remove", "rmdir"}
LOOKING = {"statx", "fstat", "fstatat", "getdents64", "openat", "flock"}
# A directory for temporary files, one of those, or an unfinished output.
IS_TEMPORARY = re.compile(r"mcbin-[^/]*(/[0-9a-f]+)?$")

Call = collections.namedtuple("Call", "name errors fault subject")
Outcome = collections.namedtuple("Outcome", "code out err calls files modes")


class Subject:
    """A command in a directory of its own, `outputs` being the files it writes there.

    Without `every_error`, a call fails with the first of its errors alone, for slow commands.
    """

    def __init__(self, words, outputs=(), text=b"", every_error=True):
        self.words, self.outputs, self.text = words.split(), outputs, text
        self.every_error = every_error
        self.directory = tempfile.mkdtemp(dir=BASE)
        self.log = os.path.join(self.directory, "log")
        self.work = os.path.join(self.directory, "work")
        os.makedirs(os.path.join(self.work, "tmp"))
        for name in os.listdir(BASE):
            if os.path.isfile(os.path.join(BASE, name)):
                os.symlink(os.path.join("..", name), os.path.join(self.directory, name))
        self.found, self.runs = {}, 0
        self.good = self.run()
        assert self.good.code == 0 and not self.leftovers(self.good), (words, self.good)

    def files(self):
        """All that lies where the program writes."""
        names = [name for name in os.listdir(self.work) if name != "tmp"]
        return names + ["tmp/" + name for name in os.listdir(os.path.join(self.work, "tmp"))]

    def run(self, cleared=True, preloaded=True, stdout=None, stderr=subprocess.PIPE, prepare=None,
            **plan):
        """`plan` is what the environment tells the library; `prepare` runs before the program.

        Standard output is a file, but a pipe where standard input is.
        """
        if cleared:
            self.clear()
        if os.path.exists(self.log):
            os.remove(self.log)
        environment = {"TMPDIR": "tmp", "LC_ALL": "C.UTF-8", "PATH": os.environ["PATH"]}
        if preloaded:
            environment.update({"LD_PRELOAD": LIBRARY, "FAILING_CALLS_LOG": self.log})
        environment.update({f"FAILING_CALLS_{key.upper()}": str(int(value))
                            for key, value in plan.items()})
        self.runs += 1
        with open(os.path.join(self.directory, "out"), "w+b") as file:
            try:
                done = subprocess.run(
                    [PROGRAM, *self.words], input=self.text, timeout=SECONDS, env=environment,
                    stdout=stdout or (subprocess.PIPE if self.text else file), stderr=stderr,
                    cwd=self.work, preexec_fn=prepare)
                code, out, err = done.returncode, done.stdout, done.stderr
            except subprocess.TimeoutExpired:
                code, out, err = None, b"", b""
            if stdout is None and out is None:
                file.seek(0)
                out = file.read()
        files, modes = {}, {}
        for name in self.files():
            path = os.path.join(self.work, name)
            modes[name] = stat.S_IMODE(os.lstat(path).st_mode)
            if name in self.outputs:
                with open(path, "rb") as file:
                    files[name] = file.read()
        return Outcome(code, out, err, self.calls(), files, modes)

    def clear(self):
        for name in self.files():
            path = os.path.join(self.work, name)
            shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)
        for name in self.outputs:
            path = os.path.join(self.work, name)
            with open(path, "wb") as file:
                file.write(OLD)
            os.chmod(path, 0o600)

    def calls(self):
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding="utf-8", errors="replace") as file:
            rows = [line.rstrip("\n").split(" ", 3) for line in file]
        return [Call(name, int(count), None if fault == "-" else int(fault), subject)
                for name, count, fault, subject in (row for row in rows if len(row) == 4)]

    def leftovers(self, outcome):
        return sorted(set(outcome.modes) - set(self.outputs))

    def note(self, how, where, outcome, faults):
        """Keeps an example of each fault."""
        for fault in faults:
            text = f"{where}: {(outcome.err or b'').decode(errors='replace')}"
            self.found.setdefault(f"{how}: {fault}", text.strip()[:400])

    # What is wrong with a run.

    def wrong_outputs(self, outcome):
        """An output is the new one, or the old one where the program did not say 0."""
        done = outcome.code == 0
        # The library prints a line about a file that it cannot open.
        if done and outcome.out not in (self.good.out, None) and GROUP != "library":
            yield "wrong on standard output"
        for name in self.outputs:
            content = outcome.files.get(name)
            if content != self.good.files[name] and (done or content != OLD):
                yield f"{name} is " + ("missing" if content is None else
                                       "old" if content == OLD else "torn")
            if outcome.modes.get(name, 0o600) & 0o077:
                yield f"{name} may be read by others"

    def faults(self, outcome, codes=(0, 1)):
        if outcome.code not in codes:
            yield "hangs" if outcome.code is None else f"ends with {outcome.code}"
        told = any(call.subject == "standard 2" for call in outcome.calls)
        if outcome.code == 1 and outcome.err == b"" and not told:
            yield "fails without a word"
        has_null = all(call.subject != "/dev/null" for call in outcome.calls)
        if has_null and GROUP != "library" and b"BinaryRecordIterator" in (outcome.err or b""):
            yield "shows what the library prints"
        yield from self.wrong_outputs(outcome)

    def what_stays(self, outcome, excused):
        """Files stay only where their removal could not be, and then until the next run."""
        if not self.leftovers(outcome):
            return
        if not excused:
            yield "leaves files"
        elif GROUP != "library":
            again = self.run(cleared=False)
            if again.code != 0 or again.files != self.good.files:
                yield f"spoils the next run: {again.err.decode(errors='replace').strip()}"
            elif self.leftovers(again):
                yield "leaves files that the next run leaves too"

    # What is done to it.

    def fail_calls(self):
        for number, call in enumerate(self.good.calls, 1):
            errors = range(call.errors if self.every_error else 1)
            for error, on in [(error, on) for error in errors for on in (False, True)]:
                outcome = self.run(number=number, error=error, on=on)
                failed = outcome.calls[0] if outcome.calls else call
                faults = list(self.faults(outcome))
                faults += self.what_stays(outcome, any(map(removes, outcome.calls)))
                if outcome.code != 0 and all(call.fault in GOES_ON and call.name in RETRIED
                                             for call in outcome.calls):
                    faults.append("fails without an error")
                how = f"{failed.name} fails {'for good' if on else 'once'}, {describe(failed.fault)}"
                self.note(how, f"call {number}, {failed.subject}", outcome, faults)

    def send_signals(self):
        last_write = max(number for number, call in enumerate(self.good.calls, 1)
                         if call.name == "write" and call.subject != "standard 2")
        for number, call in enumerate(self.good.calls, 1):
            where = f"call {number}, {call.name} of {call.subject}"
            sent = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)[number % 3]
            outcome = self.run(number=number, signal=sent)
            codes = (130, -sent) if number <= last_write else (0, 130, -sent)  # before it is ready
            faults = [*self.faults(outcome, codes), *self.what_stays(outcome, False)]
            if outcome.code == 130 and not outcome.err.endswith(b"mcbin: cancelled\n"):
                faults.append("is cancelled without a word")
            self.note(sent.name, where, outcome, faults)
            outcome = self.run(number=number, signal=signal.SIGKILL)
            self.note("SIGKILL", where, outcome,
                      [*self.faults(outcome, (-signal.SIGKILL,)), *self.what_stays(outcome, True)])

    def limit(self):
        limits = [("files of %d bytes", resource.RLIMIT_FSIZE, size)
                  for size in (0, 1, 100, 1000, 4096, 10000, 40000)]
        limits += [("%d descriptors", resource.RLIMIT_NOFILE, count) for count in range(4, 16)]
        disturbances = {text % value: {"prepare": lambda what=what, value=value:
                                       resource.setrlimit(what, (value, value))}
                        for text, what, value in limits}
        with open("/dev/full", "wb") as full:
            disturbances |= {
                "no standard output": {"prepare": lambda: os.close(1)},
                "no standard error": {"prepare": lambda: os.close(2), "stderr": full},
                "no standard streams": {"prepare": lambda: os.closerange(0, 3), "stderr": full},
                "standard error full": {"stderr": full},
                "standard output full": {"stdout": full},
                "both full": {"stdout": full, "stderr": full}}
            for how, arguments in disturbances.items():
                outcome = self.run(preloaded=False, **arguments)
                if outcome.code == 127 and b"shared libraries" in outcome.err:
                    continue  # not begun
                self.note(how, "", outcome,
                          [*self.faults(outcome), *self.what_stays(outcome, False)])


def removes(call):
    """Whether a call removes a file, or looks at or into what is to be removed."""
    looks = call.name in LOOKING and (GROUP == "library" or IS_TEMPORARY.search(call.subject))
    return call.name in REMOVING or bool(looks)


def describe(fault):
    return {None: "nothing", 0: "a short count"}.get(fault) or errno.errorcode.get(fault, fault)


def many_records(path):
    """More than the library keeps in memory of a variable."""
    with open(path, "w", encoding="ascii") as file:
        file.write("a,b,t,w\n")
        for i in range(10400):
            file.write(f"{'' if i % 7 == 3 else i / 4},{i * 37 % 101},{'xyz'[i // 3500]},{i % 3}\n")


def long_records(path):
    """More than the tool reads at a time, in three blocks; the numbers are few."""
    with open(path, "w", encoding="ascii") as file:
        file.write("a,b,t,w,long\n")
        for i in range(4200):
            file.write(f"{i / 4},{i * 37 % 101},{'xyz'[i // 1500]},{i % 3},{'long ' * 60}\n")


def few_records(path):
    with open(path, "w", encoding="ascii") as file:
        file.write("a,b,t,w\n" + "".join(f"{i},{i % 5},{'xy'[i // 9]},1\n" for i in range(18)))


METHODS = {"supervised": "supervised --target t --weight w",
           "equal-frequency": "equal-frequency --bins 3"}


def bins(method, jobs, data="few.csv"):
    return Subject(f"{METHODS[method]} ../{data} --jobs {jobs} --json bins.json --report page.html",
                   ("bins.json", "page.html"), every_error=data == "few.csv")


def others():
    with open(os.path.join(EXAMPLES, "iris.csv"), "rb") as file:
        text = file.read()
    yield Subject("supervised --target species --json - -", text=text)
    yield Subject("apply --as label ../bins.json ../iris.csv")
    yield Subject("apply ../bins.json -", text=text)
    yield Subject("evaluate ../bins.json ../iris.csv")
    yield Subject("export --format sql --table t -o out ../bins.json", ("out",))
    yield Subject("export --format python ../bins.json")
    yield Subject("report ../bins.json -o out", ("out",))


def trials():
    """What is tried on which commands."""
    if GROUP == "library":
        for method in METHODS:
            for records in (40, 10007):
                yield (Subject(f"{method} {records} tmp", every_error=records == 40),
                       Subject.fail_calls)
    if GROUP in METHODS:
        for jobs, data in ((1, "few.csv"), (1, "many.csv"), (2, "many.csv"), (2, "long.csv")):
            yield bins(GROUP, jobs, data), Subject.fail_calls
    if GROUP == "others":
        yield from ((subject, Subject.fail_calls) for subject in others())
    if GROUP in ("signals", "limits"):
        what = Subject.send_signals if GROUP == "signals" else Subject.limit
        yield from ((bins(method, 2), what) for method in METHODS)
        yield from ((subject, what) for subject in others())


def main():
    for number in (signal.SIGINT, signal.SIGHUP):  # which a job in the background may ignore
        signal.signal(number, signal.default_int_handler)
    os.symlink(os.path.join(EXAMPLES, "iris.csv"), os.path.join(BASE, "iris.csv"))
    many_records(os.path.join(BASE, "many.csv"))
    long_records(os.path.join(BASE, "long.csv"))
    few_records(os.path.join(BASE, "few.csv"))
    if GROUP != "library":
        subprocess.run([PROGRAM, "supervised", "--quiet", "--target", "species", "--json",
                        "bins.json", "iris.csv"], check=True, cwd=BASE, stdout=subprocess.DEVNULL)
    runs, faults = 0, 0
    for subject, what in trials():
        what(subject)
        print(f"{' '.join(subject.words)}: {subject.runs} runs")
        for fault, example in subject.found.items():
            print(f"  {fault}\n    {example}")
        runs += subject.runs
        faults += len(subject.found)
    print(f"{runs} runs, {faults} kinds of faults")
    return 1 if faults or not runs else 0


IN_MEMORY = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
with tempfile.TemporaryDirectory(prefix="failing-calls-", dir=IN_MEMORY) as BASE:
    sys.exit(main())
