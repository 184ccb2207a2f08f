"""What is wrong with a page, as a browser lays it out."""

import subprocess
from pathlib import Path

WIDTHS = (1280, 360)
# A4 without the browser's margins.
SHEET = 717

# What reaches out of the window or of what it stands in, is too small or too faint to be read, or
# lies upon something else. Letters count, not the blanks around them.
_MEASURE = r"""
(() => {
  const problems = [];
  const width = document.documentElement.clientWidth;
  if (document.documentElement.scrollWidth > width)
    problems.push("the page is " + document.documentElement.scrollWidth + " wide");
  for (const box of document.querySelectorAll("div"))
    if (box.scrollWidth > box.clientWidth + 1)
      problems.push("what is beside the screen has to be scrolled to, " + box.scrollWidth);
  const light = text => {
    const [r, g, b] = text.match(/[\d.]+/g).map(Number).map(
      each => (each /= 255) <= 0.03928 ? each / 12.92 : ((each + 0.055) / 1.055) ** 2.4);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const ground = element => {
    for (; element; element = element.parentElement) {
      const colour = getComputedStyle(element).backgroundColor;
      if (!/, 0\)$/.test(colour)) return colour;
    }
    return "rgb(255, 255, 255)";
  };
  const boxes = [];
  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
  let letters = 0;
  for (let node; (node = walker.nextNode()); ) {
    const text = node.data.trim();
    const style = getComputedStyle(node.parentElement);
    const range = document.createRange();
    range.selectNodeContents(node);
    const rects = [...range.getClientRects()].filter(each => each.width > 0 && each.height > 0);
    if (!text || !rects.length) continue;
    letters += text.length;
    const shown = JSON.stringify(text.slice(0, 40));
    if (parseFloat(style.fontSize) < 12) problems.push(shown + " is " + style.fontSize + " tall");
    const [one, other] = [light(style.color), light(ground(node.parentElement))];
    const contrast = (Math.max(one, other) + 0.05) / (Math.min(one, other) + 0.05);
    if (contrast < 4.5) problems.push(shown + " has a contrast of " + contrast.toFixed(1));
    for (const each of rects) {
      if (each.left < 0 || each.right > width + 1) problems.push(shown + " leaves the window");
      for (const [words, box] of boxes)
        if (Math.min(each.right, box.right) - Math.max(each.left, box.left) > 2 &&
            Math.min(each.bottom, box.bottom) - Math.max(each.top, box.top) > 6)
          problems.push(shown + " lies upon " + words);
      boxes.push([shown, each]);
    }
  }
  if (letters < 100) problems.push("the page says next to nothing");
  return [...new Set(problems)].slice(0, 5);
})()
"""

_WORDS = r"""
[...document.querySelectorAll("h1,h2,p,th,td,dt,dd")].filter(each => each.offsetParent)
  .map(each => each.textContent.trim()).filter(each => each)
"""


def problems_of(browser, page, pictures):
    """Every problem of a page on a screen, on a phone and on paper. Pictures of all three are left
    in the folder `pictures`."""
    found = []
    name = Path(page).stem
    for width in WIDTHS:
        browser.open(page, width)
        browser.picture(pictures / f"{name}-{width}.png")
        found += [f"{width} wide: {each}" for each in browser.value_of(_MEASURE)]
        others = [each for each in browser.requests if not each.startswith("file:")]
        if len(browser.requests) != 1:
            others += browser.requests[1:]
        found += [f"asks for {each}" for each in dict.fromkeys(others)]
        found += [f"complains: {each}" for each in browser.messages]
    browser.open(page, SHEET)
    browser.on_paper(True)
    found += [f"on paper: {each}" for each in browser.value_of(_MEASURE)]
    words = browser.value_of(_WORDS)
    browser.on_paper(False)
    printed = pictures / f"{name}.pdf"
    browser.printed(printed)
    return found + _missing_on(printed, words)


def _missing_on(printed, words):
    text = "".join(subprocess.run(["pdftotext", "-raw", printed, "-"], check=True, text=True,
                                  capture_output=True).stdout.split())  # fmt: skip
    missing = [each for each in words if "".join(each.split()) not in text]
    return [f"not on paper: {each!r}" for each in missing[:5]]
