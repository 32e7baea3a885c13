"""Runs what the pages show: run_pages.py [--only PAGE] [--work FOLDER]; or looks for dead links alone, in the
pages of a folder: run_pages.py --links FOLDER.

Takes the fenced blocks of all Markdown pages of this tree, each page in a folder of its own:

    ```sh       run as one script; must succeed
    ```console  each line "$ command" is run and its output, errors behind it, compared with the lines
                below it; "..." stands for any text, alone in a line for any lines. A command that fails has to
                show its output
    ```json     must be JSON, or members of an object
    ```python   run as a script; must succeed
    ```pycon    run as doctest; the blocks of a page are one session
    ```cpp, ```cmake  must stand in a file below Examples/, which the test installed-host builds
    ```text     layouts, drawings and the like: not run. A command has no place there

A comment ahead of a block says what else is done with it, or why it is not run:

    <!-- file NAME -->       the block is the content of the file NAME for the blocks behind it
    <!-- not run: REASON --> counted and printed
    <!-- needs PROGRAM -->   not run where there is no such program

and a comment of its own runs what the page has no need to show, as a console block does:

    <!-- run
    $ command
    -->

A command line within the text, `ovrageo prepare --all` for instance, has to name a command and options that
ovrageo knows, and a path within it, `Prepare/Preparation.cpp` for instance, has to lead somewhere: in this tree, or
below the library or the host. Links and pictures have to be there for those who read the files as such, and the rows of
a table to have its columns. The tool is that of the variable OVRAGEO; OVRA_BUILD is the build whose library
hosts are built with, and not set where the library is installed.
"""

import argparse
import doctest
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap

TESTS = os.path.dirname(os.path.realpath(__file__))
ROOT = os.path.dirname(os.path.dirname(TESTS))
NO_PAGES = ("CHANGELOG.md",)
SOURCES = ("Cases", "Documentation", "Examples", "Projects", "Scripts", "CMakePresets.json")

BLOCK = re.compile(r"^(?P<indent> *)```(?P<language>\w*)\n(?P<text>.*?)^(?P=indent)```$|"
                   r"^<!-- (?P<remark>(?:file|needs|not run:) .*?) -->$|"
                   r"^<!-- run\n(?P<hidden>.*?)^-->$", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\]\((?!https?:|#)([^)\s#]+)(?:#[^)\s]*)?\)")
LIST_ITEM = re.compile(r" *([-*]|[0-9]+\.) ")
COLUMN = re.compile(r"(?<!\\)\|")
CODE = re.compile(r"(?<!`)`([^`\n]+)`(?!`)")
PATH = re.compile(r"\w[\w.-]*(/[\w.-]+)+")
PATHS_BELOW = ("Projects/GeometryTool", "Projects/GeometryDatabase")
NO_FOLDERS = ("build", "out")  # made by commands
INLINE = re.compile(r"(?<!`)`(ovrageo [^`]*)`(?!`)")


def examples():
    """The sources below Examples, not indented."""
    for folder, _, files in os.walk(os.path.join(ROOT, "Examples")):
        for name in files:
            if name.endswith((".cpp", "CMakeLists.txt")):
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    source = file.read()
                yield source
                yield "\n".join(line[4:] for line in source.split("\n"))


EXAMPLES = list(examples())


class Block:
    """What a page shows between fences, or keeps in a comment."""

    def __init__(self, page, line, language, text, remarks):
        self.place = "%s:%d" % (page, line)
        self.language, self.text, self.remarks = language, text, remarks

    def remark(self, kind):
        """What stands behind "file", "needs" or "not run:" in a comment ahead of the block, or None."""
        return next((r[len(kind):].strip() for r in self.remarks if r.startswith(kind + " ")), None)


def pages(root=ROOT):
    """The pages of a tree, by their paths."""
    for folder, folders, files in os.walk(root):
        folders[:] = sorted(f for f in folders if not f.startswith(".") and f not in ("build", "out"))
        for name in sorted(files):
            path = os.path.relpath(os.path.join(folder, name), root)
            if name.endswith(".md") and path not in NO_PAGES:
                yield path


def blocks_of(page, text):
    """The blocks of a page, each with the comments ahead of it."""
    blocks, remarks, end = [], [], 0
    for found in BLOCK.finditer(text):
        if text[end:found.start()].strip():
            remarks = []
        end = found.end()
        line = text.count("\n", 0, found.start()) + 1
        if found["remark"]:
            remarks.append(found["remark"].replace("\n", " "))
        elif found["hidden"] is not None:
            blocks.append(Block(page, line, "console", found["hidden"], []))
        else:
            blocks.append(Block(page, line, found["language"], textwrap.dedent(found["text"]), remarks))
            remarks = []
    return blocks


def fits(expected, lines):
    """Whether lines of output are as expected, where "..." stands for any."""
    if not expected:
        return not lines
    if expected[0].strip() == "...":
        return any(fits(expected[1:], lines[i:]) for i in range(len(lines) + 1))
    if not lines:
        return False
    pattern = ".*".join(re.escape(part) for part in expected[0].rstrip().split("..."))
    return re.fullmatch(pattern, lines[0].rstrip()) is not None and fits(expected[1:], lines[1:])


def commands_of(text):
    """The commands of a console block, each with the lines expected of it. A backslash continues one."""
    commands = []
    for line in text.rstrip("\n").split("\n"):
        if line.startswith("$ "):
            commands.append([line[2:], []])
        elif commands and not commands[-1][1] and commands[-1][0].endswith("\\"):
            commands[-1][0] += "\n" + line
        elif commands:
            commands[-1][1].append(line)
        elif line.strip():
            raise ValueError("output ahead of the first command")
    return [(command, without_blank_ends(lines)) for command, lines in commands]


def without_blank_ends(lines):
    while lines and not lines[-1].strip():
        lines = lines[:-1]
    return lines


class Runner:
    """Runs the blocks of one page in a folder of their own."""

    def __init__(self, folder):
        self.folder = folder
        self.names = {"__name__": "__main__"}  # of the sessions
        os.makedirs(folder)
        for name in SOURCES:
            os.symlink(os.path.join(ROOT, name), os.path.join(folder, name))
        tool = os.path.dirname(os.environ["OVRAGEO"])
        self.environment = dict(os.environ, PATH=os.pathsep.join([tool, TESTS, os.environ["PATH"]]),
                                CMAKE_PREFIX_PATH=os.path.join(os.path.dirname(folder), "prefix"))

    def shell(self, script):
        """Exit code, and output with the errors behind it."""
        run = subprocess.run(["bash", "-eo", "pipefail", "-c", script], cwd=self.folder, env=self.environment, text=True,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        return run.returncode, run.stdout + run.stderr

    def run(self, block):
        """None, or what is wrong with a block."""
        name = block.remark("file")
        if name:
            with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
                file.write(block.text)
            if block.language != "json":
                return None
        action = getattr(self, "run_" + block.language, None)
        return action(block.text) if action else \
            "a block of the kind '%s' needs a remark why it is not run" % block.language

    def run_sh(self, text):
        code, output = self.shell(text)
        return None if code == 0 else "ended with the code %d:\n%s" % (code, output)

    def run_console(self, text):
        for command, expected in commands_of(text):
            code, output = self.shell(command)
            if not fits(expected, without_blank_ends(output.split("\n"))):
                return "$ %s\nwrote\n%s\nand not\n%s" % (command, output, "\n".join(expected))
            if code != 0 and not expected:
                return "$ %s\nended with the code %d" % (command, code)
        return None

    @staticmethod
    def run_json(text):
        try:
            json.loads(text)
        except ValueError:
            try:
                json.loads("{" + text + "}")
            except ValueError as error:
                return str(error)
        return None

    @staticmethod
    def run_text(text):
        return "a command in a block that is not run" if re.search(r"^\$ ", text, re.MULTILINE) else None

    def run_python(self, text):
        run = subprocess.run([sys.executable, "-B", "-"], cwd=self.folder, env=self.environment, text=True,
                             input=text, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return None if run.returncode == 0 else run.stdout

    def run_pycon(self, text):
        """As doctest does, with the names that the blocks of this page before it have left."""
        test = doctest.DocTestParser().get_doctest(text, {}, "session", None, 0)
        test.globs = self.names
        said = []
        before = os.getcwd()
        os.chdir(self.folder)
        try:
            runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE)
            failed = runner.run(test, out=said.append, clear_globs=False).failed
        finally:
            os.chdir(before)
        return "".join(said) if failed else None

    @staticmethod
    def run_cpp(text):
        return None if any(text in example for example in EXAMPLES) else "no file below Examples has these lines"

    run_cmake = run_cpp


def indented_blocks(text):
    """The lines in which code begins that is told by its indentation alone."""
    is_code, is_list, before = False, False, ""
    for number, line in enumerate(text.split("\n"), 1):
        if line.lstrip().startswith("```"):
            is_code = not is_code
        elif not is_code:
            is_list = bool(LIST_ITEM.match(line)) or (is_list and (not line or line.startswith(" ")))
            if line.startswith("    ") and not before and not is_list:
                yield number
        before = line.strip() if not line.startswith("    ") else "code"


class InlineCommands:
    """Whether command lines within texts name commands and options that there are."""

    def __init__(self):
        self.options = {}

    @staticmethod
    def help(*command):
        return subprocess.run([os.environ["OVRAGEO"], *command, "--help"], capture_output=True, text=True).stdout

    def options_of(self, command):
        """The options of a command; None if there is no such command."""
        if command not in self.options:
            text = self.help(command)
            is_command = text != self.help()  # which stands for what is none
            self.options[command] = set(re.findall(r"--[a-z][a-z-]*", text)) if is_command else None
        return self.options[command]

    def fault_of(self, line):
        """What is wrong with a command line, or None."""
        words = line.split()
        if not re.fullmatch(r"[a-z][a-z-]*", words[1]) or len(words) == 1:
            return None
        known = self.options_of(words[1])
        if known is None:
            return "ovrageo has no command '%s'" % words[1]
        unknown = [o for o in re.findall(r"(?<![\w-])--[a-z][a-z-]*", line) if o not in known]
        return "ovrageo %s has no option %s" % (words[1], ", ".join(unknown)) if unknown else None


def missing_path(page, text):
    """A path within a text whose first folder is there and that leads nowhere, or None."""
    if not PATH.fullmatch(text) or "Name" in text or "NAME" in text or text.split("/")[0] in NO_FOLDERS:
        return None
    bases = [os.path.join(ROOT, folder) for folder in ("", os.path.dirname(page), *PATHS_BELOW)]
    bases = [base for base in bases if os.path.isdir(os.path.join(base, text.split("/")[0]))]
    return text if bases and not any(os.path.exists(os.path.join(base, text)) for base in bases) else None


def without_blocks(text):
    """A page without what stands between fences and in comments."""
    return BLOCK.sub(lambda found: "\n" * found[0].count("\n"), text)


def prose_of(text):
    """A page without blocks and without code."""
    return CODE.sub("", without_blocks(text))


def ragged_tables(text):
    """The lines of tables that have other numbers of columns than the heads of these."""
    columns = None
    for number, line in enumerate(without_blocks(text).splitlines(), 1):
        count = len(COLUMN.findall(line)) if line.lstrip().startswith("|") else None
        if count and columns and count != columns:
            yield number
        columns = count and (columns or count)


def dead_links(page, text, root=ROOT):
    """The links and pictures of a page that lead to no file beside it, with their lines."""
    prose = prose_of(text)
    for found in LINK.finditer(prose):
        path = os.path.join(root, os.path.dirname(page), found[1])
        if not os.path.exists(path):
            yield prose.count("\n", 0, found.start()) + 1, found[1]


def missing_program(block):
    name = block.remark("needs")
    return name if name and not shutil.which(name) else None


def missing_package(block, page_text):
    """Why a session with the Python package is not run: a build without one leaves its path unset."""
    is_needed = block.language == "pycon" and "import ovrageo" in page_text
    return "a build without the Python package" if is_needed and "PYTHONPATH" not in os.environ else None


def run_page(page, folder, counts):
    """The faults of a page; counts what was run, and what was not and why."""
    with open(os.path.join(ROOT, page), encoding="utf-8") as file:
        text = file.read()
    faults, runner, inline = [], None, InlineCommands()
    for found in INLINE.finditer(text):
        fault = inline.fault_of(" ".join(found[1].split()))
        if fault:
            faults.append("%s:%d: %s" % (page, text.count("\n", 0, found.start()) + 1, fault))
    for found in CODE.finditer(text):
        if missing_path(page, found[1]):
            faults.append("%s:%d: there is no %s" % (page, text.count("\n", 0, found.start()) + 1, found[1]))
    for line, link in dead_links(page, text):
        faults.append("%s:%d: dead link to %s" % (page, line, link))
    for line in ragged_tables(text):
        faults.append("%s:%d: the table has other columns here than in its head" % (page, line))
    for line in indented_blocks(text):
        faults.append("%s:%d: a block that is indented is not run: put it between fences" % (page, line))
    for block in blocks_of(page, text):
        reason = block.remark("not run:") or missing_program(block) or missing_package(block, text)
        if reason:
            counts["not run"].append("%s: %s" % (block.place, reason))
            continue
        runner = runner or Runner(folder)
        fault = runner.run(block)
        counts["run" if block.language != "text" else "texts"] += 1
        if fault:
            faults.append("%s: %s" % (block.place, fault))
    return faults


def check_links(root):
    """Prints the dead links of the pages of a folder, and gives the exit code."""
    count = faults = 0
    for count, page in enumerate(pages(root), 1):
        with open(os.path.join(root, page), encoding="utf-8") as file:
            for line, link in dead_links(page, file.read(), root):
                print("%s:%d: dead link to %s" % (page, line, link))
                faults += 1
    if not count:
        print("there are no pages in %s" % root)
    return 1 if faults or not count else 0


def main():
    parser = argparse.ArgumentParser(description="Runs what the pages show.")
    parser.add_argument("--only", help="part of the path of pages")
    parser.add_argument("--work", help="folder to work in, which stays")
    parser.add_argument("--links", metavar="FOLDER", help="look for dead links alone, in the pages of a folder")
    arguments = parser.parse_args()
    if arguments.links:
        return check_links(arguments.links)
    work = arguments.work or tempfile.mkdtemp()
    counts = {"run": 0, "texts": 0, "not run": []}
    faults = []
    for page in pages():
        if not arguments.only or arguments.only in page:
            faults += run_page(page, os.path.join(work, page.replace("/", "_")), counts)
    if not arguments.work:
        shutil.rmtree(work)
    print("\n".join(counts["not run"] + faults))
    print("%d blocks run, %d texts, %d not run, %d faults"
          % (counts["run"], counts["texts"], len(counts["not run"]), len(faults)))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
