"""What a picture becomes on its way through the plug-in, row of image mode and plane count by row.

Each row has two rules: `sent` turns one host pixel (its planes as the host has them) into the samples that stand in the
request, in the file's order of planes; `received` turns one pixel of a reply into the host's planes. The rules are those
of the format and of the pixel records, sample by sample, worked out here once more.
"""

import os
import re

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
FULL = 0xFFFF


def scaled(value):
    """A host channel of 0 to 32768 in the range to 65535, cut to 16 bits without a limit."""
    return int(value * 1.999) & FULL


def separated(red, green, blue, full):
    """Full grey-component replacement."""
    cyan, magenta, yellow = full - red, full - green, full - blue
    black = min(cyan, magenta, yellow)
    return [cyan - black, magenta - black, yellow - black, black]


def ink_curves():
    """The curves of cyan, magenta, yellow and black by which 16-bit inks and inks with alpha are read as colour. Any
    smooth ones do, so they are taken from the source."""
    with open(os.path.join(ROOT, "src", "image", "pixels", "InkTables.inl"), encoding="ascii") as file:
        text = re.sub(r"//.*", "", file.read())
    tables = text[text.index("kInkCurve"):]
    tables = tables[tables.index("= {"):]
    numbers = [int(number) for number in re.findall(r"\d+", tables)]
    assert len(numbers) >= 4 * 256
    return [numbers[i * 256:(i + 1) * 256] for i in range(4)]


CURVES = ink_curves()


def colour_of_words(inks):
    """Red, green, blue of four ink words; a word above 255 counts by its high byte."""
    c, m, y, k = (CURVES[i][ink if ink <= 255 else ink >> 8] * 0x101 for i, ink in enumerate(inks))
    return [max(0, FULL - ink - k) for ink in (c, m, y)]


def sent_cmyka(p):
    c, m, y, k = (255 - v for v in p[:4])
    black = CURVES[3][k]
    return separated(*(max(0, 255 - ink - black) for ink in (c, m, y)), 255) + [p[4]]


def sent_cmyk64(p):
    inks = separated(*colour_of_words([FULL - v for v in p]), FULL)
    return separated(*(scaled(v) for v in colour_of_words(inks)), FULL)


def received_rgb(q):
    """Over white: red, green, blue and alpha of the reply, in bytes."""
    alpha = q[3]
    if alpha == 0:
        return [255, 255, 255]
    if alpha == 255:
        return q[:3]
    return [(alpha * v + (255 - alpha) * 255 + 127) // 255 for v in q[:3]]


def received_words(q):
    """A 16-bit RGBA reply in the place of inks."""
    return [FULL - ink for ink in separated(q[0], q[1], q[2], FULL)]


class Row:
    def __init__(self, mode, planes, size, colour_type, sent_class, sent, reply_class, received):
        self.mode, self.planes, self.size, self.colour_type = mode, planes, size, colour_type
        self.sent_class, self.sent, self.reply_class, self.received = sent_class, sent, reply_class, received


ROWS = {
    "gray": Row(1, 1, 1, 6, "ZvImageGrayByte", lambda p: p, "ZvImageGrayByte", lambda q: q),
    # Gray with alpha travels as RGBA.
    "graya": Row(1, 2, 1, 6, "ZvImageRgbaBytes", lambda p: [p[0], p[0], p[0], p[1]],
                 "ZvImageRgbaBytes", lambda q: [sum(q[:3]) // 3, q[3]]),
    "rgb": Row(3, 3, 1, 2, "ZvImageRgbaBytes", lambda p: p + [255], "ZvImageRgbaBytes", received_rgb),
    "rgba": Row(3, 4, 1, 1, "ZvImageRgbaBytes", lambda p: p, "ZvImageRgbaBytes", lambda q: q),
    # Red and blue are exchanged on both ways of the three-plane row.
    "rgb48": Row(11, 3, 2, 2, "ZvImageRgba64", lambda p: [scaled(p[2]), scaled(p[1]), scaled(p[0]), FULL],
                 "ZvImageRgba64", lambda q: [q[2] >> 1, q[1] >> 1, q[0] >> 1]),
    "rgba64": Row(11, 4, 2, 1, "ZvImageRgba64", lambda p: [scaled(v) for v in p],
                  "ZvImageRgba64", lambda q: [v >> 1 for v in q]),
    "cmyk": Row(4, 4, 1, 4, "ZvImageCmykBytes", lambda p: [255 - v for v in p],
                "ZvImageCmykBytes", lambda q: [255 - v for v in q]),
    "cmyka": Row(4, 5, 1, 3, "ZvImageCmykaBytes", sent_cmyka,
                 # A tiled source of the same records is taken as it is.
                 "ZvImageCmykaBytes", lambda q: [255 - v for v in q[:4]] + [q[4]]),
    # 16-bit inks can be sent and not read back, so they are answered in another class.
    "cmyk64": Row(13, 4, 2, 4, "ZvImageCmyka64", sent_cmyk64, "ZvImageRgba64", lambda q: received_words(q)),
    "cmyka80": Row(13, 5, 2, 3, "ZvImageCmyka80", lambda p: [FULL - v for v in p[:4]] + [p[4]],
                   "ZvImageRgba64", lambda q: received_words(q) + [q[3]]),
}


def draw_ramps(pixels, width, height):
    """The four test ramps in an 8-bit CMYK result, before it is turned to light: rows 10 to 265, one strip for each ink.
    `pixels` is a list of rows of pixels."""
    for y in range(10, 266):
        for ink in range(4):
            for x in range(10 + 20 * ink, 20 + 20 * ink):
                pixels[y][x] = [255 - (y - 10 if i == ink else 0) for i in range(4)]
