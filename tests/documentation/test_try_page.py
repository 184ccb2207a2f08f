"""What is not true on a page is found, and what is true is let through."""

import shutil
import tempfile
import unittest
from pathlib import Path
from typing import List

from mentions import dangling_names_of_project
from page import World, try_page
from snippets import Compiler

# Prints its arguments; asks when told to. Pages are tried with it in place of signcheck.
PROGRAM = """#!/bin/sh
[ "$1" = init ] && exit 0
[ "$1" = fail ] && exit 3
if [ "$1" = ask ]; then
    test -t 0 || exit 9
    printf 'Sure? '; printf 'yes or no: '; read -r answer; echo "answered $answer"; exit 0
fi
echo "$@"
"""


class PageTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        project = self.folder / "project"
        (project / "examples").mkdir(parents=True)
        (project / "examples/host.c").write_text("int main(void)\n{\n    return 0;\n}\n")
        program = self.folder / "program"
        program.write_text(PROGRAM)
        program.chmod(0o755)
        work = self.folder / "work"
        self.world = World(project, program, work, Compiler("c++", [], self.folder, self.folder, work))

    def findings(self, *lines: str) -> List[str]:
        page = self.folder / "project/page.md"
        page.write_text("\n".join(lines) + "\n", encoding="utf-8")
        return try_page(page, self.world)

    def is_true(self, *lines: str) -> None:
        self.assertEqual(self.findings(*lines), [])

    def is_not_true(self, expected: str, *lines: str) -> None:
        findings = self.findings(*lines)
        self.assertEqual(len(findings), 1, findings)
        self.assertIn(expected, findings[0])


class Commands(PageTest):
    def test_output_that_comes_as_shown_is_true(self) -> None:
        self.is_true("```", "$ signcheck one", "one", "$ signcheck two \\", "    three", "two three", "```")

    def test_other_output_is_found(self) -> None:
        self.is_not_true("+one", "```", "$ signcheck one", "two", "```")

    def test_output_that_is_not_shown_is_found(self) -> None:
        self.is_not_true("+one", "```", "$ signcheck one", "```")

    def test_output_that_does_not_come_is_found(self) -> None:
        self.is_not_true("-one", "```", "$ true", "one", "```")

    def test_what_is_exported_holds_for_later_blocks(self) -> None:
        self.is_true("```", "$ export WHO=me", "```", "text", "```console", "$ signcheck $WHO", "me", "```")

    def test_status_of_a_command_can_be_shown(self) -> None:
        self.is_true("```", "$ signcheck fail", "$ echo $?", "3", "```")

    def test_here_document_is_part_of_its_command(self) -> None:
        self.is_true("```", "$ cat > a <<'END'", "$ no command", "END", "$ wc -l < a", "1", "```")

    def test_command_that_is_not_there_is_found_even_when_its_message_is_shown(self) -> None:
        self.is_not_true("ended with 127", "```", "$ nosuchprogram 2>/dev/null", "```")

    def test_end_of_the_shell_is_found(self) -> None:
        findings = self.findings("```", "$ exit 0", "$ signcheck one", "one", "```")
        self.assertTrue(any("ended the shell" in finding for finding in findings), findings)

    def test_hidden_command_that_fails_is_found(self) -> None:
        self.is_not_true("ended with 3", "<!-- run: signcheck fail -->")

    def test_question_is_answered_at_a_terminal(self) -> None:
        self.is_true("<!-- answers: yes -->", "```", "$ signcheck ask", "Sure? yes or no: yes", "answered yes",
                     "```")


class Comparison(PageTest):
    def test_elision_stands_for_any_lines(self) -> None:
        self.is_true("```", "$ seq 9", "1", "…", "4", "5", "…", "9", "```")
        self.is_true("```", "$ seq 2", "…", "1", "…", "2", "…", "```")

    def test_elision_hides_no_other_line(self) -> None:
        self.is_not_true("-7", "```", "$ seq 5", "1", "…", "7", "…", "```")
        self.is_not_true("+3", "```", "$ seq 3", "1", "…", "2", "```")

    def test_lines_around_an_elision_are_not_used_twice(self) -> None:
        self.is_not_true("shown", "```", "$ seq 1", "1", "…", "1", "```")

    def test_elision_within_a_line_stands_for_itself(self) -> None:
        self.is_not_true("+abc", "```", "$ signcheck abc", "a…c", "```")

    def test_times_durations_rates_and_keys_are_not_compared(self) -> None:
        came = "2026-01-02 03:04:05 12 ms 7.5 seconds 40 files/s 01234567-89ab-cdef-0123-456789abcdef"
        shown = "1999-12-31 23:59:59 1 ms 8 seconds 9,999 files/s 11111111-1111-1111-1111-111111111111"
        self.is_true("```", f"$ signcheck {came}", shown, "```")

    def test_other_numbers_are_compared(self) -> None:
        self.is_not_true("+event 2", "```", "$ signcheck event 2", "event 1", "```")

    def test_what_a_marker_says_varies_is_not_compared(self) -> None:
        self.is_true("<!-- varies: event \\d+ -->", "```", "$ signcheck event 2 here", "event 1 here", "```")


class Markers(PageTest):
    def test_block_that_is_not_run_is_found(self) -> None:
        for block in (["```", "just text", "```"], ["```cpp", "int a;", "```"], ["```", "```"],
                      ["```sh", "$ signcheck one", "```"], ["~~~", "text", "~~~"]):
            self.is_not_true("the block is not run", *block)

    def test_block_with_a_reason_is_let_through(self) -> None:
        self.is_true("<!-- not run: a picture of rooms -->", "```", "a -> b", "```")

    def test_reason_is_needed(self) -> None:
        self.is_not_true("gives no reason", "<!-- not run: because -->", "```", "a -> b", "```")
        self.is_not_true("says nothing", "<!-- not run: -->", "```", "a -> b", "```")

    def test_marker_that_does_not_exist_is_found(self) -> None:
        self.is_not_true("is no marker", "<!-- not ran: a picture of rooms -->", "```", "a -> b", "```")

    def test_marker_without_a_block_is_found(self) -> None:
        self.is_not_true("before no block", "<!-- not run: a picture of rooms -->", "text", "```", "```")
        self.is_not_true("before no block", "<!-- not run: a picture of rooms -->")

    def test_ordinary_comment_is_none(self) -> None:
        self.is_true("<!-- a note to writers -->", "<!-- another,", "of two lines -->", "```", "$ true", "```")

    def test_block_without_an_end_is_found(self) -> None:
        self.is_not_true("has no end", "```", "$ true")

    def test_file_is_made_from_its_block(self) -> None:
        self.is_true("<!-- file: a.toml -->", "```toml", "a = 1", "```", "```", "$ cat a.toml", "a = 1", "```")

    def test_file_is_made_from_what_cat_shows(self) -> None:
        self.is_true("<!-- file: a.csv -->", "```", "$ cat a.csv", "a;b", "c", "$ wc -l < a.csv", "2", "```")

    def test_file_that_no_command_shows_is_found(self) -> None:
        self.is_not_true("no command of the block is", "<!-- file: a -->", "```", "$ cat b", "a", "```")


class Snippets(PageTest):
    def test_excerpt_of_an_example_is_true_whatever_its_indentation(self) -> None:
        self.is_true("<!-- excerpt: examples/host.c -->", "```c", "{", "return 0;", "", "int main(void)", "```")

    def test_excerpt_that_differs_is_found(self) -> None:
        self.is_not_true("return 1;", "<!-- excerpt: examples/host.c -->", "```c", "{", "return 1;", "```")

    def test_lines_of_an_excerpt_stand_together(self) -> None:
        self.is_not_true("together", "<!-- excerpt: examples/host.c -->", "```c", "{", "}", "```")

    def test_snippet_that_does_not_compile_is_found(self) -> None:
        self.is_not_true("NoSuchType", "<!-- frame: statements.cpp -->", "```cpp", "NoSuchType a;", "```")

    def test_snippet_that_does_not_link_is_found(self) -> None:
        self.is_not_true("cannot find -lsignutils", "<!-- frame: statements.cpp -->", "```cpp",
                         "const int verdict = 1; if (verdict == 2)", "```")

    def test_frame_that_is_not_there_is_found(self) -> None:
        self.is_not_true("there is no frame", "<!-- frame: none.cpp -->", "```cpp", "int a;", "```")


class Mentions(PageTest):
    def names(self, text: str) -> List[str]:
        self.findings(text)
        return dangling_names_of_project(self.world.project)

    def test_file_that_is_there_is_let_through(self) -> None:
        self.assertEqual(self.names("`examples/host.c`, [a host](examples/host.c#here)"), [])

    def test_file_that_is_not_there_is_found(self) -> None:
        self.assertEqual(self.names("see `docs/none.md`"), ["page.md: docs/none.md is not there"])

    def test_link_that_leads_nowhere_is_found(self) -> None:
        self.assertEqual(self.names("see [this](none.md)"), ["page.md: none.md is not there"])


if __name__ == "__main__":
    unittest.main()
