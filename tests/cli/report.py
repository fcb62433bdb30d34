"""Usage: report.py MCBIN EXAMPLES. Runs `mcbin` and reads its HTML page with an XML parser."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

MCBIN, EXAMPLES = sys.argv.pop(1), sys.argv.pop(1)
TAG = "{http://www.w3.org/1999/xhtml}"


def run(*arguments, text=None, **environment):
    settings = {"LC_ALL": "C.UTF-8", "PATH": os.environ["PATH"], **environment}
    return subprocess.run([MCBIN, *arguments], input=text, capture_output=True, text=True,
                          encoding="utf-8", env=settings)


def bin_file(results, classes=("no", "yes")):
    """`results` maps a name to the class weights of its bins, whose cut points are 1, 2, 3..."""
    rows = []
    for name, weights in results.items():
        total = sum(map(sum, weights))
        rows.append({"attribute": name, "target": "t",
                     "status": {"code": 0, "severity": "ok", "text": "ok"},
                     "cut_points": list(range(1, len(weights))),
                     "bin_weights": [sum(row) for row in weights], "class_weights": weights,
                     "valid_weight": total, "weight_with_missing": total + 7,
                     "distinct_values": 9, "minimum": 0, "maximum": 9,
                     "model_entropy": 0.5, "information_gain": 0.25})
    return json.dumps({
        "format": "mcbin-bins", "version": 1, "tool": "mcbin", "algorithm": "supervised",
        "closed": "right", "settings": {"prebin_above": 0, "prebins": 2, "small_bins": 0},
        "source": {"name": "s", "delimiter": ",", "na": [], "records": 1,
                   "dropped": {"missing_weight": 0, "zero_weight": 0,
                               "weight_rounded_to_zero": 0}},
        "attributes": [{"name": name, "kind": "continuous"} for name in results],
        "targets": [{"name": "t", "kind": "string-categorical", "categories": list(classes)}],
        "results": rows})


def page_of(text, *options):
    outcome = run("report", "-", *options, text=text)
    assert outcome.returncode == 0, outcome.stderr
    return ElementTree.fromstring(outcome.stdout), outcome.stdout


def texts(page, tag):
    return ["".join(element.itertext()) for element in page.iter(TAG + tag)]


class Report(unittest.TestCase):
    def test_needs_no_network_and_no_script(self):
        page, source = page_of(bin_file({"a": [[3, 1], [1, 3]]}))
        self.assertFalse(list(page.iter(TAG + "script")) + list(page.iter(TAG + "link")))
        for element in page.iter():
            self.assertNotIn("src", element.attrib)
            self.assertTrue(element.get("href", "#").startswith("#"))
        self.assertNotIn("url(http", source)

    def test_names_stay_text(self):
        name, label = "<script>&\"'</td>\u00e4\n\u202e", "]]><b>"
        page, _ = page_of(bin_file({name: [[3, 1], [1, 3]]}, ("x", label)))
        printed = name.replace("\n", "\\n").replace("\u202e", "\\u202E")
        self.assertIn(printed, texts(page, "a"))
        self.assertIn(label, texts(page, "th"))

    def test_runs_write_it_too(self):
        with tempfile.TemporaryDirectory() as directory:
            for command in (["supervised", "--target", "species"], ["equal-frequency"]):
                path = os.path.join(directory, "report.html")
                outcome = run(*command, "--report", path, EXAMPLES + "/iris.csv")
                self.assertEqual(outcome.returncode, 0, outcome.stderr)
                self.assertEqual(len(list(ElementTree.parse(path).iter(TAG + "section"))), 4)
                self.assertEqual(os.listdir(directory), ["report.html"])


class Terminal(unittest.TestCase):
    COMMAND = ["supervised", "--target", "species", EXAMPLES + "/iris.csv"]

    def test_bars_need_utf8_and_colours_an_order(self):
        for arguments, environment, bars, colours in (
                ([], {}, True, False),
                ([], {"LC_ALL": "C"}, False, False),
                ([], {"LC_ALL": "", "LANG": "de_DE.UTF-8"}, True, False),
                (["--color", "always"], {"NO_COLOR": "1"}, True, True),
                (["--color", "never"], {}, True, False)):
            out = run(*self.COMMAND, *arguments, **environment).stdout
            self.assertEqual("█" in out, bars, (arguments, environment))
            self.assertEqual("\x1b[" in out, colours, (arguments, environment))

    def test_help_fits_a_screen_and_wrong_usage_is_2(self):
        commands = ["supervised", "equal-frequency", "apply", "evaluate", "export", "report"]
        for command in commands:
            lines = run(command, "--help").stdout.splitlines()
            self.assertTrue(lines[2].startswith("  mcbin " + command), lines[2])
            self.assertLessEqual(len(lines), 45, command)
            self.assertLessEqual(max(map(len, lines)), 100, command)
            with open("/dev/full", "w", encoding="utf-8") as full:
                outcome = subprocess.run([MCBIN, command, "--help"], stdout=full, check=False,
                                         stderr=subprocess.PIPE, text=True)
            self.assertEqual(outcome.returncode, 1)
            self.assertIn("cannot write to standard output", outcome.stderr)
            for wrong in (["--no-such"], ["--no-such=1"], ["a", "b", "c"], ["--target"], ["-x"]):
                outcome = run(command, *wrong, text="")
                self.assertEqual((outcome.returncode, outcome.stdout), (2, ""), (command, wrong))
        for wrong in (["report", "x", "--woe-adjust", "-1"], ["report", "x", "--woe-adjust", "nan"],
                      self.COMMAND + ["--small-bins", "nan"],
                      self.COMMAND + ["--json", "a", "--json", "b"],
                      self.COMMAND + ["--prebins", "1e99"], self.COMMAND + ["--quiet=perhaps"]):
            self.assertEqual(run(*wrong).returncode, 2, wrong)


if __name__ == "__main__":
    unittest.main()
