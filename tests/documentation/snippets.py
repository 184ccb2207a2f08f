"""Code that a page shows: that it stands in an example, or that it compiles and links."""

import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import List, Optional

FRAMES = Path(__file__).with_name("frames")
PLACE = "@SNIPPET@"
# A page indents as it reads best, not as its frame does.
WARNINGS = ["-Wall", "-Wextra", "-Werror", "-Wno-misleading-indentation"]


@dataclass
class Compiler:
    program: str
    flags: List[str]
    include_folder: Path
    library_folder: Path
    work: Path


def _paragraphs(lines: List[str]) -> List[List[str]]:
    paragraphs: List[List[str]] = [[]]
    for line in lines:
        if line.strip():
            paragraphs[-1].append(line.strip())
        elif paragraphs[-1]:
            paragraphs.append([])
    return [paragraph for paragraph in paragraphs if paragraph]


def missing_in_example(lines: List[str], example: Path) -> Optional[str]:
    """The first paragraph whose lines do not stand together in the example, whatever their indentation."""
    if not example.is_file():
        return f"{example} is not there"
    having = [line.strip() for line in example.read_text(encoding="utf-8").split("\n")]
    for paragraph in _paragraphs(lines):
        size = len(paragraph)
        if not any(having[at:at + size] == paragraph for at in range(len(having) - size + 1)):
            return f"these lines do not stand together in {example}:\n  " + "\n  ".join(paragraph)
    return None


def framed(lines: List[str], frame_text: str) -> str:
    """The snippet in its frame. Includes at its beginning go to the top of the file."""
    count = 0
    while count < len(lines) and (lines[count].startswith("#include") or not lines[count].strip()):
        count += 1
    return "\n".join(lines[:count]) + "\n" + frame_text.replace(PLACE, "\n".join(lines[count:]))


def refusal_of_compiler(lines: List[str], frame: str, name: str, compiler: Compiler) -> Optional[str]:
    """What the compiler or linker says when it refuses the snippet in its frame."""
    frame_file = FRAMES / f"{frame}.in"
    if not frame_file.is_file():
        return f"there is no frame {frame_file}"
    frame_text = frame_file.read_text(encoding="utf-8")
    if PLACE not in frame_text:
        return f"{frame_file} has no place for the snippet: {PLACE}"
    source = compiler.work / f"{name}_{frame}"
    source.write_text(framed(lines, frame_text), encoding="utf-8")
    result = subprocess.run(
        [compiler.program, *compiler.flags, "-std=c++20", *WARNINGS,
         f"-I{compiler.include_folder}", str(source), f"-L{compiler.library_folder}",
         "-lsignutils", "-lsignutils-port", "-o", str(source.with_suffix(""))],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", check=False,
    )
    return result.stdout if result.returncode else None
