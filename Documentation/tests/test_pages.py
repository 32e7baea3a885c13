"""Faults that run_pages.py has to find in a page."""

import contextlib
import io
import os
import tempfile
import unittest

import run_pages


def faults_of(text):
    """What is wrong with the blocks of a page, and what was not run."""
    counts = {"run": 0, "texts": 0, "not run": []}
    with tempfile.TemporaryDirectory() as folder:
        page = os.path.join(folder, "page.md")
        with open(page, "w", encoding="utf-8") as file:
            file.write(text)
        faults = run_pages.run_page(page, os.path.join(folder, "work"), counts)
    return [fault.replace(page, "page") for fault in faults], [r.replace(page, "page") for r in counts["not run"]]


def block(language, text):
    return "Text\n\n```%s\n%s\n```\n" % (language, text)


class Pages(unittest.TestCase):

    def check(self, text, *faults, not_run=()):
        self.assertEqual(faults_of(text), (list(faults), list(not_run)))

    def test_sound(self):
        self.check(block("console", "$ echo a; echo b\na\nb\n$ true\n$ seq 9\n1\n...\n8\n9\n$ echo took 7 s\ntook ... s"))
        self.check(block("sh", "echo a\ntest -d Cases") + block("json", '"a": 1') + block("python", "a = 1"))
        self.check(block("pycon", ">>> 1 + 1\n2") + block("text", "no command"))

    def test_sessions(self):
        """The blocks of a page go on where the one before ended, in the folder of the page; other pages do not."""
        made = block("pycon", ">>> with open('made', 'w') as file:\n...     a = file.write('four')")
        self.check(made + block("console", "$ cat made; echo\nfour") + block("pycon", ">>> a\n4"))
        self.assertIn("NameError: name 'a' is not defined", faults_of(block("pycon", ">>> a\n4"))[0][0])

    def test_other_output(self):
        self.check(block("console", "$ echo a\nb"), "page:3: $ echo a\nwrote\na\n\nand not\nb")
        self.check(block("console", "$ seq 3\n1\n...\n4"), "page:3: $ seq 3\nwrote\n1\n2\n3\n\nand not\n1\n...\n4")
        self.check(block("console", "$ echo a"), "page:3: $ echo a\nwrote\na\n\nand not\n")

    def test_errors_come_behind(self):
        self.check(block("console", "$ echo e >&2; echo o; exit 3\no\ne"))

    def test_failures(self):
        self.check(block("sh", "false\ntrue"), "page:3: ended with the code 1:\n")
        self.check(block("sh", "false | true"), "page:3: ended with the code 1:\n")
        self.check(block("console", "$ exit 4"), "page:3: $ exit 4\nended with the code 4")
        self.assertIn("ZeroDivisionError", faults_of(block("python", "1 / 0"))[0][0])
        self.assertIn("Expected:\n    3", faults_of(block("pycon", ">>> 1 + 1\n3"))[0][0])
        self.assertEqual(len(faults_of(block("json", "{,}"))[0]), 1)

    def test_commands_in_texts(self):
        self.check(block("text", "$ ls"), "page:3: a command in a block that is not run")

    def test_blocks_of_unknown_kind(self):
        self.check(block("", "x"), "page:3: a block of the kind '' needs a remark why it is not run")

    def test_links(self):
        self.check("[a](page.md#b) [b](https://c.invalid/d) `[c](none.md)` [d](#e)\n" + block("text", "[f](none.md)"))
        self.check("a\n![b](none.png)", "page:2: dead link to none.png")

    def test_tables(self):
        self.check("| a | b |\n|---|---|\n| `c \\| d` | e |\n\n| f |\n|---|\n" + block("text", "| g | h |"))
        self.check("| a | b |\n|---|\n| c |\n| d | e |\n", *("page:%d: the table has other columns here than in its "
                                                            "head" % line for line in (2, 3)))

    def test_links_of_another_tree(self):
        with tempfile.TemporaryDirectory() as folder, contextlib.redirect_stdout(io.StringIO()) as output:
            self.assertEqual(run_pages.check_links(folder), 1)
            with open(os.path.join(folder, "page.md"), "w", encoding="utf-8") as page:
                page.write("[a](page.md)\n")
            self.assertEqual(run_pages.check_links(folder), 0)
            with open(os.path.join(folder, "page.md"), "a", encoding="utf-8") as page:
                page.write("[b](Documentation/DataModel.md)\n")
            self.assertEqual(run_pages.check_links(folder), 1)
        self.assertEqual(output.getvalue(), "there are no pages in %s\npage.md:2: dead link to "
                                            "Documentation/DataModel.md\n" % folder)

    def test_indented_blocks(self):
        self.check("a\n\n    ovrageo info x\n    b\n\nc", "page:3: a block that is indented is not run: put it between fences")
        self.check("- a\n\n    more of a\n\n1. a\n    b\n\n```text\n\n    c\n```\n")

    def test_samples(self):
        self.check(block("cpp", "    Database database;\n    ModelEntity* block = ModelEntity::create(3);"))
        self.check(block("cpp", "int none();"), "page:3: no file below Examples has these lines")

    def test_remarks(self):
        self.check("<!-- not run: too long -->\n" + block("sh", "false")[6:], not_run=["page:2: too long"])
        self.check("<!-- not run: too long -->\n\n" + block("sh", "false"), "page:5: ended with the code 1:\n")
        self.check("<!-- needs no-such-program -->\n" + block("sh", "false")[6:],
                   not_run=["page:2: no-such-program"])
        self.check("<!-- file a.txt -->\n" + block("data", "7")[6:] + block("console", "$ cat a.txt\n7"))
        self.check("<!-- run\n$ echo 7 > a.txt\n-->\n" + block("console", "$ cat a.txt\n7"))
        self.check("<!-- run\n$ false\n-->\n", "page:1: $ false\nended with the code 1")

    def test_paths_within_texts(self):
        self.check("`Prepare/Preparation.cpp`, `Cases/fan/fan.geo`, `Prepare/NameStep.h`, `a/b`, `out/a.png`")
        self.check("a\n`Prepare/None.cpp`", "page:2: there is no Prepare/None.cpp")

    def test_commands_within_texts(self):
        self.check("`ovrageo prepare NAME -o X --all`, `ovrageo` and `ovrageo --help`")
        self.check("a\n`ovrageo prepare NAME\n--every`", "page:2: ovrageo prepare has no option --every")
        self.check("`ovrageo cook NAME`", "page:1: ovrageo has no command 'cook'")


if __name__ == "__main__":
    unittest.main()
