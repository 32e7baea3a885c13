"""The site is made without a fault, and what would be one is found: test_site.py FOLDER.

Pages are opened in Chromium where it is there, and playwright-core in the folder OVRA_BROWSER_DRIVER to drive it; with
OVRA_NOTHING_SKIPPED both have to be.
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

DRIVER = os.environ.get("OVRA_BROWSER_DRIVER", "")
BROWSER = shutil.which("chromium")
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.realpath(__file__))))
SITE = os.path.join(ROOT, "Documentation", "site")


def check(pages, *options):
    """What the check says of pages, given by name: its exit code, and its lines but the last."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in pages.items():
            with open(os.path.join(folder, name), "w", encoding="utf-8") as page:
                page.write(text)
        run = subprocess.run([os.path.join(SITE, "check"), folder, *options], capture_output=True, text=True)
    return run.returncode, run.stdout.splitlines()[:-1]


opens_pages = unittest.skipUnless(BROWSER and os.path.isdir(DRIVER) or "OVRA_NOTHING_SKIPPED" in os.environ,
                                  "no browser, or nothing that drives it")


def seen_on_a_phone(site):
    """What is wrong with the pages of a folder as a phone shows them, in the light and in the dark."""
    visit = os.path.join(ROOT, "Documentation", "tests", "visit-site.mjs")
    with tempfile.TemporaryDirectory() as scratch:
        run = subprocess.run(["node", visit, BROWSER, DRIVER, site, scratch], capture_output=True, text=True)
    return run.stdout.splitlines() + run.stderr.splitlines()


def filtered(text, path):
    """What the filter makes of a page that lies at a path in this tree."""
    source = {"ROOT": ROOT, "__name__": "filter", "__file__": os.path.join(SITE, "filter")}
    with open(os.path.join(SITE, "filter"), encoding="utf-8") as script:
        exec(compile(script.read(), "filter", "exec"), source)  # a script without a suffix
    return "\n".join(source["filtered"](os.path.join(ROOT, path), text.split("\n")))


class Check(unittest.TestCase):

    def test_sound(self):
        pages = {"index.html": '<p id="here"><a href="b.html#there">b</a><a href="#here">a</a>',
                 "b.html": '<a name="there"></a><a href="index.html">a</a><a href="https://a.invalid/">x</a>'}
        self.assertEqual(check(pages), (0, []))

    def test_dead_link(self):
        self.assertEqual(check({"index.html": '\n<a href="b.html">b</a>'}),
                         (1, ["index.html:2: dead link to 'b.html': there is no b.html"]))

    def test_dead_picture(self):
        self.assertEqual(check({"index.html": '<img src="a.png">'}),
                         (1, ["index.html:1: dead link to 'a.png': there is no a.png"]))

    def test_dead_drawing(self):
        self.assertEqual(check({"index.html": '<object data="a.svg"></object>'}),
                         (1, ["index.html:1: dead link to 'a.svg': there is no a.svg"]))

    def test_dead_anchor(self):
        self.assertEqual(check({"index.html": '<a href="#far">a</a>'}),
                         (1, ["index.html:1: dead link to '#far': there is no place 'far' in index.html"]))

    def test_lost_page(self):
        pages = {"index.html": "", "b.html": '<a href="c.html">c</a>', "c.html": '<a href="b.html">b</a>'}
        self.assertEqual(check(pages), (1, ["b.html: no link leads here from index.html",
                                            "c.html: no link leads here from index.html"]))

    def test_external_link(self):
        code, lines = check({"index.html": '<a href="http://localhost:9/x">x</a>'}, "--external")
        self.assertEqual(code, 1)
        self.assertTrue(lines[0].startswith("index.html: 'http://localhost:9/x' does not answer: "), lines)


class Filter(unittest.TestCase):

    def test_headings_and_links(self):
        page = "# The `x` file\n\n## Who reads it\n\n[a](Verify.md), [`b`](ovrageo.md#info), [c](#who-reads-it)"
        self.assertEqual(filtered(page, "Documentation/SolverInput.md"),
                         "# The x file {#solver-input}\n\n## Who reads it {#solver-input-who-reads-it}\n\n"
                         '[a](@ref verify), <code>@ref ovrageo-info "b"</code>, '
                         "[c](@ref solver-input-who-reads-it)")

    def test_names_of_files_become_titles(self):
        links = "[Verify.md](Verify.md), [`Verify.md`](Verify.md#pairs), [0012](decisions/0012-pictures-without-a-display.md)"
        self.assertEqual(filtered(links, "Documentation/Picture.md"),
                         "[Verifying a case](@ref verify), [Pairs](@ref verify-pairs), "
                         "[0012 Pictures without a display](@ref decision-0012-pictures-without-a-display)")

    def test_pages_in_folders(self):
        self.assertEqual(filtered("# Cases\n[up](../README.md)", "Cases/README.md"),
                         "# Cases {#cases}\n[up](@ref index)")

    def test_pictures(self):
        self.assertEqual(filtered("![A b.](../sketches/c.svg)", "Documentation/Diff.md"), "![A b.](c.svg)")

    def test_languages(self):
        self.assertEqual(filtered("```pycon\n>>> a\n```\n```sh\n```", "README.md"), "```py\n>>> a\n```\n```sh\n```")

    def test_classes(self):
        self.assertEqual(filtered("`Mesh` and `mesh`\n```\n`Mesh`\n```", "README.md"),
                         '<code>@ref Ovra::Geo::Mesh "Mesh"</code> and `mesh`\n```\n`Mesh`\n```')


class Site(unittest.TestCase):

    folder = None

    @classmethod
    def setUpClass(cls):
        cls.making = subprocess.run([os.path.join(ROOT, "Scripts", "documentation"), "--no-install", cls.folder],
                                    capture_output=True, text=True)

    def test_has_no_fault(self):
        self.assertEqual(self.making.returncode, 0, self.making.stdout + self.making.stderr)

    def test_unknown_option_is_a_fault(self):
        run = subprocess.run([os.path.join(ROOT, "Scripts", "documentation"), "--no-install", "--extern"],
                             capture_output=True, text=True)
        self.assertEqual((run.returncode, run.stderr), (2, "documentation: there is no option --extern\n"))

    def test_index_of_the_search(self):
        with open(os.path.join(self.folder, "html", "index.js"), encoding="utf-8") as index:
            entries = json.loads(index.read()[len("const ENTRIES = "):-len(";\n")])
        names = [name for name, _, _ in entries]
        for name in ("Mesh::renumber", "Version::operator==", "Mesh", "The data model", "Moving regions", "import_file",
                     "MeshEntities.set_attribute"):
            self.assertIn(name, names)
        links = {link for _, _, link in entries}
        self.assertEqual(len(links), len(entries))
        page = "".join('<a href="%s">a</a>' % link for link in sorted(links))
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(os.path.join(self.folder, "html"), folder, dirs_exist_ok=True)
            with open(os.path.join(folder, "entries.html"), "w", encoding="utf-8") as file:
                file.write(page)
            run = subprocess.run([os.path.join(SITE, "check"), folder], capture_output=True, text=True)
        self.assertEqual(run.stdout.splitlines()[:-1], ["entries.html: no link leads here from index.html"])

    def test_undocumented_member_is_a_fault(self):
        with tempfile.TemporaryDirectory() as folder, \
                open(os.path.join(ROOT, "Documentation", "Doxyfile"), encoding="utf-8") as settings:
            with open(os.path.join(folder, "A.h"), "w", encoding="utf-8") as header:
                header.write("/// \\brief A class.\nclass A\n{\npublic:\n    int a() const;\n};\n")
            run = subprocess.run(["doxygen", "-"], cwd=ROOT, capture_output=True, text=True,
                                 input=settings.read() + "\nINPUT = %s\nOUTPUT_DIRECTORY = %s" % (folder, folder))
        self.assertNotEqual(run.returncode, 0)
        self.assertIn("Member a() const (function) of class A is not documented", run.stderr)


    def test_drawings_of_classes_have_no_marks_of_comments(self):
        html = os.path.join(self.folder, "html")
        for name in sorted(name for name in os.listdir(html) if name.startswith(("class", "struct"))):
            with open(os.path.join(html, name), encoding="utf-8") as page:
                self.assertNotIn("///", page.read(), name)

    @opens_pages
    def test_is_readable_on_a_phone(self):
        self.assertEqual(seen_on_a_phone(os.path.join(self.folder, "html")), [])


@opens_pages
class Phone(unittest.TestCase):

    def faults(self, page):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "a.html"), "w", encoding="utf-8") as file:
                file.write('<!doctype html><meta name="viewport" content="width=device-width">' + page)
            return [line.replace("a.html, light: ", "") for line in seen_on_a_phone(folder) if "dark" not in line]

    def test_nothing(self):
        self.assertEqual(self.faults("<p>Black on white.</p>"), [])

    def test_missing_picture(self):
        self.assertEqual(self.faults('<img src="b.png">'),
                         ["Failed to load resource: net::ERR_FILE_NOT_FOUND", "no picture b.png"])

    def test_error_of_a_script(self):
        self.assertEqual(self.faults("<script>nothing()</script>"), ["nothing is not defined"])

    def test_too_wide(self):
        self.assertEqual(self.faults('<body style="margin: 0"><div style="width: 750px">a</div>'),
                         ["750 pixels wide, for 375 on the screen"])

    def test_what_scrolls_by_itself_is_not_too_wide(self):
        self.assertEqual(self.faults('<div style="overflow-x: auto"><div style="width: 400px">a</div></div>'), [])

    def test_poor_contrast(self):
        grey = '<p style="color: #767676">as it may be</p><p style="color: #777777">a little too pale</p>'
        self.assertEqual(self.faults(grey), ["p has a contrast of 4.48: rgb(119, 119, 119) on 255,255,255"])

    def test_poor_contrast_of_what_stands_in_an_empty_field(self):
        page = '<style>input::placeholder { color: #777777 }</style><input placeholder="Find">'
        self.assertEqual(self.faults(page), ["what stands in an empty input has a contrast of 4.48: "
                                             "rgb(119, 119, 119) on 255,255,255"])

    MENU = '<input type="checkbox" id="menu" hidden><label for="menu">Pages</label>%s'

    def test_menu_that_stays_shut(self):
        page = self.MENU % '<nav id="pages" hidden><a href="b.html">b</a></nav>'
        self.assertEqual(self.faults(page), ["no way to the other pages"])

    def test_menu_that_is_too_wide(self):
        page = self.MENU % ('<style>body { margin: 0 } nav { width: 750px; display: none } '
                            '#menu:checked ~ nav { display: block }</style><nav id="pages"><a href="b.html">b</a></nav>')
        self.assertEqual(self.faults(page), ["with its menu, 750 pixels wide, for 375 on the screen"])

    def test_large_letters_may_be_paler(self):
        self.assertEqual(self.faults('<p style="color: #949494; font-size: 24px">large</p>'), [])


class Sketches(unittest.TestCase):

    def test_are_as_drawn(self):
        kept = os.path.join(ROOT, "Documentation", "sketches")
        with tempfile.TemporaryDirectory() as drawn:
            subprocess.run([sys.executable, "-B", os.path.join(kept, "draw.py"), drawn], check=True)
            names = sorted(os.listdir(drawn))
            self.assertEqual(names, sorted(name for name in os.listdir(kept) if name.endswith(".svg")))
            for name in names:
                with open(os.path.join(drawn, name)) as one, open(os.path.join(kept, name)) as other:
                    self.assertEqual(one.read(), other.read(), name)


if __name__ == "__main__":
    Site.folder = os.path.abspath(sys.argv.pop(1))
    unittest.main()
