"""Finds what a page names that is not there: files of the project, and targets of its links."""

import re
from pathlib import Path
from typing import Iterator, List

# Names of files between backquotes that begin with one of the project's folders.
FOLDERS = ("amounts|benchmarks|bindings|cmake|containers|database|docs|engine|examples|host|packaging|port|"
           "psr|rules|schema|scripts|services|signers|signutils|support|tests")
MENTION = re.compile(r"`((?:" + FOLDERS + r")/[A-Za-z0-9_./-]*)`")
LINK = re.compile(r"\]\(([^)\s#]+)(?:#[^)]*)?\)")
FENCED = re.compile(r"^ *```.*?^ *```", re.DOTALL | re.MULTILINE)
# Headers are named as hosts include them, which is how they lie once installed.
MADE_BY_THE_BUILD = {"signutils/version.h"}
IGNORED_FOLDERS = {"build", ".git"}


def pages_of(project: Path) -> Iterator[Path]:
    for page in sorted(project.rglob("*.md")):
        if not IGNORED_FOLDERS & set(page.relative_to(project).parts):
            yield page


def dangling_names(page: Path, project: Path) -> List[str]:
    text = FENCED.sub("", page.read_text(encoding="utf-8"))
    names = [name for name in MENTION.findall(text)
             if name not in MADE_BY_THE_BUILD and not (project / name).exists()]
    links = [link for link in LINK.findall(text)
             if "://" not in link and not (page.parent / link).exists()]
    return [f"{page.relative_to(project)}: {name} is not there" for name in names + links]


def dangling_names_of_project(project: Path) -> List[str]:
    return [finding for page in pages_of(project) for finding in dangling_names(page, project)]
