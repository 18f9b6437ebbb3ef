#!/usr/bin/env python3
"""Makes src/image/pixels/InkTables.inl, the sixteen ink curves of the CMYK records.

    make-ink-tables.py [--check]

The curves are monotone cubic interpolations (Fritsch and Carlson's slopes) through the samples below, rounded to
bytes: smooth, never falling, exact at each sample. With --check nothing is written; the exit code says whether the
file is what this program would write.
"""

import os
import sys

INKS = [0, 16, 64, 128, 192, 255]

# How much of an output channel an ink takes away: 0 nothing, 255 all.
ABSORPTION = [
    ("red", "cyan", [0, 19, 70, 147, 255, 255]),
    ("red", "magenta", [0, 1, 6, 11, 16, 19]),
    ("red", "yellow", [0, 0, 0, 0, 0, 0]),
    ("red", "black", [0, 17, 57, 108, 157, 220]),
    ("green", "cyan", [0, 7, 25, 48, 66, 82]),
    ("green", "magenta", [0, 14, 52, 102, 153, 255]),
    ("green", "yellow", [0, 1, 4, 8, 11, 13]),
    ("green", "black", [0, 16, 55, 106, 156, 224]),
    ("blue", "cyan", [0, 1, 4, 9, 12, 16]),
    ("blue", "magenta", [0, 9, 32, 62, 89, 115]),
    ("blue", "yellow", [0, 15, 51, 102, 160, 255]),
    ("blue", "black", [0, 16, 53, 104, 154, 223]),
]


def monotone(xs, ys):
    """The monotone cubic through the points, as a function."""
    n = len(xs)
    h = [xs[i + 1] - xs[i] for i in range(n - 1)]
    d = [(ys[i + 1] - ys[i]) / h[i] for i in range(n - 1)]
    m = [0.0] * n
    for i in range(1, n - 1):
        if d[i - 1] * d[i] > 0:
            w1, w2 = 2 * h[i] + h[i - 1], h[i] + 2 * h[i - 1]
            m[i] = (w1 + w2) / (w1 / d[i - 1] + w2 / d[i])
    m[0], m[-1] = d[0], d[-1]

    def at(x):
        i = max(k for k in range(n - 1) if xs[k] <= x)
        t = (x - xs[i]) / h[i]
        return (
            ys[i] * (1 + 2 * t) * (1 - t) ** 2
            + h[i] * m[i] * t * (1 - t) ** 2
            + ys[i + 1] * t * t * (3 - 2 * t)
            + h[i] * m[i + 1] * t * t * (t - 1)
        )

    return at


def tabulate(function):
    return [min(255, max(0, int(function(x) + 0.5))) for x in range(256)]


def black_curve(ink):
    """Black hardly darkens up to ink 90, then climbs to the end."""
    return 0.0 if ink <= 90 else 255.0 * ((ink - 90) / 165.0) ** 1.5


def lines_of(values):
    return ["    " + ", ".join(str(v) for v in values[i : i + 16]) + "," for i in range(0, 256, 16)]


def text():
    out = [
        "// Made by scripts/make-ink-tables.py; change that and run it again.",
        "// clang-format off",
        "",
        "// [red, green, blue][cyan, magenta, yellow, black][ink]",
        "inline constexpr uint8_t kInkAbsorption[3][4][256] = {",
    ]
    for index, (channel, ink, samples) in enumerate(ABSORPTION):
        if index % 4 == 0:
            out.append("  {")
        out.append("   // %s, %s" % (channel, ink))
        out.append("   {")
        out += lines_of(tabulate(monotone(INKS, samples)))
        out.append("   },")
        if index % 4 == 3:
            out.append("  },")
    out += ["};", "", "// [cyan, magenta, yellow, black][ink]", "inline constexpr uint8_t kInkCurve[4][256] = {"]
    curves = [
        ("cyan", lambda x: 163.0 * x / 255.0),
        ("magenta", lambda x: 135.0 * x / 255.0),
        ("yellow", lambda x: 135.0 * x / 255.0),
        ("black", black_curve),
    ]
    for ink, function in curves:
        out.append("  // " + ink)
        out.append("  {")
        out += lines_of(tabulate(function))
        out.append("  },")
    out += ["};", "// clang-format on", ""]
    return "\n".join(out)


def main():
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src/image/pixels/InkTables.inl")
    if "--check" in sys.argv[1:]:
        with open(path) as file:
            if file.read() != text():
                sys.exit("InkTables.inl differs from what scripts/make-ink-tables.py writes")
        return
    with open(path, "w") as file:
        file.write(text())


if __name__ == "__main__":
    main()
