"""Usage: report.py MCBIN EXAMPLES. Runs `mcbin` and reads its HTML page with an XML parser."""

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


class Report(unittest.TestCase):
    def test_of_a_run_is_a_page_of_its_own(self):
        with tempfile.TemporaryDirectory() as directory:
            for command in (["supervised", "--target", "species"], ["equal-frequency"],
                            ["equal-frequency", "--target", "species"]):
                path = os.path.join(directory, "report.html")
                outcome = run(*command, "--report", path, EXAMPLES + "/iris.csv")
                self.assertEqual(outcome.returncode, 0, outcome.stderr)
                page = ElementTree.parse(path)
                self.assertEqual(len(list(page.iter(TAG + "section"))), 4)
                self.assertFalse([*page.iter(TAG + "script"), *page.iter(TAG + "link")])
                for element in page.iter():
                    self.assertNotIn("src", element.attrib)
                    self.assertTrue(element.get("href", "#").startswith("#"))
                with open(path, encoding="utf-8") as file:
                    self.assertNotIn("url(http", file.read())
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
            for flag, most_lines, width in (("-h", 35, 92), ("--help", 100, 100)):
                lines = run(command, flag).stdout.splitlines()
                self.assertTrue(lines[2].startswith("  mcbin " + command), lines[2])
                self.assertLessEqual(len(lines), most_lines, command)
                self.assertLessEqual(max(map(len, lines)), width, (command, flag))
            with open("/dev/full", "w", encoding="utf-8") as full:
                outcome = subprocess.run([MCBIN, command, "--help"], stdout=full, check=False,
                                         stderr=subprocess.PIPE, text=True)
            self.assertEqual(outcome.returncode, 1)
            self.assertIn("cannot write to standard output", outcome.stderr)
            wrongs = [["--no-such"], ["--no-such=1"], ["--target"], ["-x"]]
            if command in ("apply", "export", "report"):  # the others take any number of files
                wrongs.append(["a", "b", "c"])
            for wrong in wrongs:
                outcome = run(command, *wrong, text="")
                self.assertEqual((outcome.returncode, outcome.stdout), (2, ""), (command, wrong))
        for wrong in (["report", "x", "--woe-adjust", "-1"], ["report", "x", "--woe-adjust", "nan"],
                      self.COMMAND + ["--small-bins", "nan"],
                      self.COMMAND + ["--json", "a", "--json", "b"],
                      self.COMMAND + ["--prebins", "1e99"], self.COMMAND + ["--quiet=perhaps"]):
            self.assertEqual(run(*wrong).returncode, 2, wrong)


if __name__ == "__main__":
    unittest.main()
