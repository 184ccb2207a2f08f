"""Pages become those of the site, and links of the site that lead nowhere are found."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from typing import Tuple

PROJECT = Path(__file__).resolve().parent.parent.parent
TOOLS = PROJECT / "scripts/lib"


def run(tool: str, argument: Path) -> Tuple[int, str]:
    result = subprocess.run([sys.executable, str(TOOLS / tool), str(argument)], stdout=subprocess.PIPE,
                            encoding="utf-8", check=False)
    return result.returncode, result.stdout


class FolderTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name: str, text: str) -> Path:
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path


class Links(FolderTest):
    def status(self, body: str) -> Tuple[int, str]:
        self.write("other.html", "<h1 id='here'>x</h1>")
        self.write("style.css", "")
        self.write("page.html", f"<html><body>{body}</body></html>")
        return run("site_links", self.folder)

    def found(self, body: str, expected: str) -> None:
        status, output = self.status(body)
        self.assertEqual(status, 1, output)
        self.assertIn(expected, output)

    def test_links_that_lead_somewhere_are_let_through(self) -> None:
        status, output = self.status("<a href='other.html'>a</a><a href='other.html#here'>b</a>"
                                     "<a id='mine'></a><a href='#mine'>c</a><link href='style.css'>"
                                     "<a href='https://example.org/'>followed by choice</a>")
        self.assertEqual(status, 0, output)

    def test_missing_page_is_found(self) -> None:
        self.found("<a href='none.html'>a</a>", "none.html is not there")

    def test_missing_place_is_found(self) -> None:
        self.found("<a href='other.html#there'>a</a>", "other.html#there has no such place")

    def test_missing_picture_is_found(self) -> None:
        self.found("<img src='none.png'>", "none.png is not there")

    def test_what_is_loaded_from_the_network_is_found(self) -> None:
        self.found("<script src='https://example.org/a.js'></script>", "is loaded from the network")

    def test_folder_without_pages_is_no_site(self) -> None:
        self.assertEqual(run("site_links", self.folder)[0], 2)


class Pages(FolderTest):
    def made(self, text: str) -> str:
        page = self.write("page.md", text)
        self.write("other.md", "")
        return run("page_for_site", page)[1]

    def test_named_page_becomes_a_link(self) -> None:
        self.assertIn("see [other.md](other.md)", self.made("see `other.md`"))

    def test_page_that_is_not_there_stays_a_name(self) -> None:
        self.assertIn("see `none.md`", self.made("see `none.md`"))

    def test_commands_stay_as_they_are(self) -> None:
        self.assertIn("```{.unparsed}\n$ cat `other.md` #1\n```", self.made("```\n$ cat `other.md` #1\n```\n"))

    def test_markers_are_left_out(self) -> None:
        self.assertNotIn("<!--", self.made("<!-- not run: a picture of rooms -->\n```\na\n```\n"))

    def test_heading_is_named_after_page_and_words(self) -> None:
        self.assertIn("## Two words {#page-two-words}", self.made("## Two words\n"))

    def test_signs_that_the_site_reads_otherwise_are_written_out(self) -> None:
        self.assertIn("\\#RULE1", self.made("a #RULE1 mark"))
        self.assertIn("<code>O&apos;Brien</code>", self.made("a `O'Brien` name"))


if __name__ == "__main__":
    unittest.main()
