#!/usr/bin/env python3
"""Compares the figures of own.json and peers.json in a folder: report.py FOLDER [--docs].

Prints the tables; with --docs also updates docs/performance.md and docs/performance.svg."""
import json
import math
import pathlib
import sys

FASTEST = None  # of all peers
UTF16 = ("SimpleIni-W", "SimpleIni-CaseW", "QSettings")
DURABLE = ("GKeyFile", "QSettings")

# Work, column of the comparison, unit, libraries to compare with.
WORKS = [
    ("load of a small file", "load small", "µs", FASTEST),
    ("load of 1k tags", "load 1k", "ms", FASTEST),
    ("load of 10k tags", "load 10k", "ms", FASTEST),
    ("load of 100k tags", "load 100k", "ms", FASTEST),
    ("load of 500k tags", "load 500k", "ms", FASTEST),
    ("read of a tag among 10k", "get hit", "ns", FASTEST),
    ("read of a tag that isn't there", "get miss", "ns", FASTEST),
    ("listing of 10k tags", "enumerate", "ms", FASTEST),
    ("durable write of one of 1k tags", "save 1k", "ms", DURABLE),
    ("durable write of one of 100k tags", "save 100k", "ms", DURABLE),
    ("durable write of 40 of 1k tags", "save 40 of 1k", "ms", DURABLE),
    ("durable write of 40 of 100k tags", "save 40 of 100k", "ms", DURABLE),
    ("peak memory after a load of 100k tags", "RSS", "MiB", UTF16),
]


class Figures:
    def __init__(self, folder):
        peers = json.loads((folder / "peers.json").read_text())
        own = json.loads((folder / "own.json").read_text())
        self.machine = peers["machine"] + (", quick run" if peers["quick"] else "")
        self.median = {(r["peer"], r["measure"]): r["median"] for r in peers["results"] if "median" in r}
        self.own = {b["run_name"]: b for b in own["benchmarks"] if b.get("aggregate_name") == "median"}

    def others(self, column, chosen=FASTEST):
        """The figures of the other libraries, by name."""
        return {peer: figure for (peer, measure), figure in self.median.items()
                if measure == column and peer != "corvane" and not peer.startswith("floor")
                and (chosen is FASTEST or peer in chosen)}


def shown(figure):
    return f"{figure:.0f}" if figure >= 100 else f"{figure:.3g}"


def markdown(*rows):
    head, *body = rows
    return "".join("| " + " | ".join(row) + " |\n" for row in (head, ("---",) * len(head), *body))


def beside_others(figures):
    """A row for each work: corvane, the best of the other libraries, and corvane's share of its figure."""
    rows = [("work", "corvane", "best other library", "ratio")]
    for work, column, unit, chosen in WORKS:
        corvane, others = figures.median.get(("corvane", column)), figures.others(column, chosen)
        if corvane is None or not others:
            continue
        best = min(others, key=others.get)
        rows.append((work, f"{shown(corvane)} {unit}", f"{best}, {shown(others[best])} {unit}",
                     f"{corvane / others[best]:.2f}"))
    return markdown(*rows)


def beside_the_system(figures):
    """The cost of corvane on top of the system's own operations, and the rate of two threads."""
    rows = [("work", "corvane", "the system alone", "difference")]
    for tags in (1000, 100000):
        write = figures.own[f"WriteThrough/{tags}/iterations:25/manual_time"]
        rows.append((f"durable write of one of {tags // 1000}k tags", f"{shown(write['real_time'])} ms",
                     f"the flush of the same bytes, {shown(write['flush_ms'])} ms", f"{write['own_share']:.0%} of the time"))
    for values in (1, 20):
        read, bare = (figures.own[f"RegistryBenchmark/{name}/{values}"]["cpu_time"] / 1e3
                      for name in ("ReadNumber", "BareCalls"))
        of = "value" if values == 1 else "values"
        rows.append((f"number from a registry key of {values} {of}", f"{shown(read)} µs",
                     f"its system calls, {shown(bare)} µs", f"{read - bare:+.1f} µs"))
    rate = figures.median["corvane", "2 threads"]
    rows.append(("reads from 2 threads at once", f"{rate:.2f} of one thread's rate", "", ""))
    return markdown(*rows)


# The picture: a row for each work, a disc for each library at its figure over corvane's.
SIGNS = [  # letter, what it stands for, its forms (the best of them is shown)
    ("G", "GLib GKeyFile", ("GKeyFile",)),
    ("S", "SimpleIni, UTF-8", ("SimpleIni-A", "SimpleIni-CaseA")),
    ("W", "SimpleIni, UTF-16", ("SimpleIni-W", "SimpleIni-CaseW")),
    ("Q", "Qt QSettings", ("QSettings",)),
    ("B", "Boost.PropertyTree", ("Boost.PTree",)),
    ("P", "Poco", ("Poco",)),
    ("N", "iniparser", ("iniparser",)),
    ("H", "inih", ("inih",)),
]
WIDTH, LEFT, RIGHT, RADIUS = 960, 330, 30, 8.5

STYLE = """
  .back { fill: #ffffff } text { fill: #1f2a33; font: 13px system-ui, "Segoe UI", Helvetica, Arial, sans-serif }
  .title { font-size: 17px; font-weight: 600 } .quiet { fill: #586773; font-size: 12px }
  .figure { fill: #b4470b; font-weight: 600; text-anchor: end } .grid { stroke: #d9e0e5 } .shade { fill: #f3ece7 }
  .one { stroke: #d9570f; stroke-width: 2.5 } .ours { fill: #d9570f } .axis { text-anchor: middle }
  .utf8 { fill: #5b7a94 } .utf16 { fill: #1c8577 } .frail { fill-opacity: 0.12; stroke-width: 1.5; stroke-dasharray: 3 2 }
  .utf8.frail { stroke: #5b7a94 } .utf16.frail { stroke: #1c8577 }
  .letter { fill: #ffffff; font-size: 11px; font-weight: 700; text-anchor: middle } .letter.dark { fill: #1f2a33 }
  @media (prefers-color-scheme: dark) {
    .back { fill: #12181d } text { fill: #e4eaef } .quiet { fill: #9fb0bd } .figure { fill: #ff9a5c } .grid { stroke: #2b363f }
    .shade { fill: #211c19 } .letter.dark { fill: #e4eaef }
  }
"""


def discs(figures, column):
    """(letter, ratio, class) of the libraries that do this work, the fastest first."""
    corvane, found = figures.median["corvane", column], []
    for letter, _, forms in SIGNS:
        measured = [figures.median[form, column] for form in forms if (form, column) in figures.median]
        if not measured:
            continue
        kind = "utf16" if forms[0] in UTF16 else "utf8"
        if column.startswith("save") and forms[0] not in DURABLE:
            kind += " frail"
        found.append((letter, min(measured) / corvane, kind))
    return sorted(found, key=lambda disc: disc[1])


def picture(figures):
    rows = [(work, unit, figures.median["corvane", column], discs(figures, column))
            for work, column, unit, _ in WORKS if ("corvane", column) in figures.median]
    ratios = [ratio for row in rows for _, ratio, _ in row[3]]
    low, high = math.log10(min(ratios + [0.9]) / 1.12), math.log10(max(ratios) * 1.12)
    at = lambda ratio: LEFT + (math.log10(ratio) - low) / (high - low) * (WIDTH - LEFT - RIGHT)

    body, y = [], 112
    top = y - 8
    for work, unit, corvane, others in rows:
        step, one, ends, placed = 2 * RADIUS + 2, at(1), [-math.inf], []
        for letter, ratio, kind in others:  # those that would overlap go to another level; corvane is in the first
            x = at(ratio)
            level = next((i for i, end in enumerate(ends) if x - end >= step and (i or abs(x - one) >= step)), len(ends))
            ends[level:level + 1] = [x]
            placed.append((letter, x, level, kind))
        height = len(ends) * step + 12
        middle = y + 6 + RADIUS
        body.append(f'<text x="16" y="{middle + 4:.1f}">{work}</text>'
                    f'<text class="figure" x="{LEFT - 14}" y="{middle + 4:.1f}">{shown(corvane)} {unit}</text>')
        for letter, x, level, kind in placed:
            disc_y = middle + level * step
            body.append(f'<circle class="{kind}" cx="{x:.1f}" cy="{disc_y:.1f}" r="{RADIUS}"/><text class="letter'
                        f'{" dark" if "frail" in kind else ""}" x="{x:.1f}" y="{disc_y + 4:.1f}">{letter}</text>')
        body.append(f'<path class="ours" d="M{one:.1f} {middle - 8:.1f}l8 8-8 8-8-8z"/>')
        y += height
        body.append(f'<line class="grid" x1="16" x2="{WIDTH - RIGHT}" y1="{y:.1f}" y2="{y:.1f}"/>')
    back = [f'<rect class="shade" x="{LEFT}" y="{top}" width="{at(1) - LEFT:.1f}" height="{y - top:.1f}"/>']
    for tick in (0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50, 100, 200, 500):
        if low <= math.log10(tick) <= high:
            kind = "one" if tick == 1 else "grid"
            back.append(f'<line class="{kind}" x1="{at(tick):.1f}" x2="{at(tick):.1f}" y1="{top}" y2="{y:.1f}"/>'
                        f'<text class="quiet axis" x="{at(tick):.1f}" y="{y + 18:.1f}">{tick:g} x</text>')

    legend, x = [], 16
    for letter, name, forms in SIGNS:
        kind = "utf16" if forms[0] in UTF16 else "utf8"
        legend.append(f'<circle class="{kind}" cx="{x + 8}" cy="{y + 46:.1f}" r="{RADIUS}"/><text class="letter" '
                      f'x="{x + 8}" y="{y + 50:.1f}">{letter}</text><text class="quiet" x="{x + 21}" y="{y + 50:.1f}">{name}</text>')
        x += 33 + 6.4 * len(name)
    notes = ("Green libraries store UTF-16, as corvane does; blue ones store UTF-8. A dashed disc is a write that a power failure may lose.",
             "SimpleIni is shown in the better of its two forms, case-sensitive and case-insensitive.", figures.machine)
    foot = "".join(f'<text class="quiet" x="16" y="{y + 76 + 18 * i:.1f}">{note}</text>' for i, note in enumerate(notes))
    total = y + 76 + 18 * len(notes)
    return f"""<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {total:.0f}" role="img">
<title>corvane compared with other configuration libraries</title><style>{STYLE}</style>
<rect class="back" width="{WIDTH}" height="{total:.0f}" rx="8"/>
<text class="title" x="16" y="34">corvane compared with other configuration libraries</text>
<text class="quiet" x="16" y="56">Figures relative to corvane's, on a logarithmic scale. The diamond at 1 x is corvane; libraries to the right of it</text>
<text class="quiet" x="16" y="73">take more time or memory, libraries to the left, in the shaded area, less.</text>
<text class="figure" x="{LEFT - 14}" y="96">corvane takes</text>
{chr(10).join(back + body + legend)}
{foot}
</svg>
"""


def enter(document, text):
    """Replaces the text between the two marks in the document."""
    begin, end = "<!-- figures -->\n", "<!-- end of figures -->\n"
    content = document.read_text()
    front, rest = content.split(begin)
    document.write_text(front + begin + "\n" + text + "\n" + end + rest.split(end)[1])


def main(folder, *options):
    figures = Figures(pathlib.Path(folder))
    text = f"{beside_others(figures)}\n{beside_the_system(figures)}\nMeasured on: {figures.machine}.\n"
    print(text)
    drawing = picture(figures)
    (pathlib.Path(folder) / "performance.svg").write_text(drawing)
    if "--docs" in options:
        docs = pathlib.Path(__file__).resolve().parent.parent / "docs"
        enter(docs / "performance.md", text)
        (docs / "performance.svg").write_text(drawing)


main(*sys.argv[1:])
