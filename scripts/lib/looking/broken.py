"""Pages with one thing wrong each, which have to be noticed."""

_FAULTS = [
    ("what is too wide", '<div style="width:900px">wide words</div>', "page is"),
    ("what has to be scrolled to",
     '<div style="overflow-x:auto"><p style="width:900px">wide words</p></div>', "scrolled to"),
    ("words upon words", '<p style="margin-top:-3rem;position:relative">words that lie upon</p>',
     "lies upon"),
    ("faint words", '<p style="color:#ddd">faint words</p>', "contrast"),
    ("small words", '<p style="font-size:7px">small words</p>', "tall"),
    ("a picture from the network", '<img src="http://127.0.0.1:9/picture.png">', "asks for"),
    ("a script that fails", "<script>none.at.all()</script>", "complains"),
    ("what is missing on paper",
     '<style>@media print{.gone{font-size:0}}</style><p class="gone">words that are gone</p>',
     "not on paper"),
]  # fmt: skip


def pages(bank):
    """Each with its name, its file and a part of what has to be said of it."""
    sound = bank.folder / "sound.html"
    bank.run("map", "C-7001", "--html", sound)
    for number, (name, fault, expected) in enumerate(_FAULTS):
        page = bank.folder / f"broken-{number}.html"
        page.write_text(sound.read_text().replace("</body>", fault + "</body>"))
        yield name, page, expected
