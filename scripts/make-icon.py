#!/usr/bin/env python3
"""Draws the plug-in's icon and writes it as an .ico file.

    make-icon.py OUTPUT.ico

The motif is a velvet moor at night: two hills under a moon. It is drawn from shapes at four times the size and
scaled down, then mapped to a palette: 16 by 16 and 32 by 32 pixels, each in 16 and in 256 colours, in this order.
"""

import struct
import sys

SKY = (58, 30, 96)
MOON = (246, 226, 160)
FAR_HILL = (98, 62, 150)
NEAR_HILL = (36, 16, 60)

# The fixed 16 colours of the platform.
VGA = [(0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128), (0, 128, 128), (128, 128, 128),
       (192, 192, 192), (255, 0, 0), (0, 255, 0), (255, 255, 0), (0, 0, 255), (255, 0, 255), (0, 255, 255),
       (255, 255, 255)]
# What each shape becomes when only those colours are there.
VGA_OF = {SKY: 5, MOON: 11, FAR_HILL: 13, NEAR_HILL: 0}

OVERSAMPLING = 4


def shape_at(x, y):
    """The colour of the motif at a point of the unit square, or None outside it (rounded corners)."""
    radius = 0.18
    cx = min(max(x, radius), 1 - radius)
    cy = min(max(y, radius), 1 - radius)
    if (x - cx) ** 2 + (y - cy) ** 2 > radius ** 2:
        return None
    if y > 0.62 + 0.9 * (x - 0.25) ** 2:
        return NEAR_HILL
    if y > 0.50 + 0.9 * (x - 0.80) ** 2:
        return FAR_HILL
    if (x - 0.36) ** 2 + (y - 0.30) ** 2 < 0.145 ** 2:
        return MOON
    return SKY


def draw(size):
    """Rows, top first, of lists of the shapes under each pixel."""
    fine = size * OVERSAMPLING
    offsets = range(OVERSAMPLING)
    return [[[shape_at((x * OVERSAMPLING + i + 0.5) / fine, (y * OVERSAMPLING + j + 0.5) / fine)
              for j in offsets for i in offsets] for x in range(size)] for y in range(size)]


def opaque(samples):
    return sum(s is not None for s in samples) * 2 >= len(samples)


def average(samples):
    solid = [s for s in samples if s is not None]
    return tuple(sum(s[c] for s in solid) // len(solid) for c in range(3))


def most_frequent(samples):
    solid = [s for s in samples if s is not None]
    return max(sorted(set(solid)), key=solid.count)


def image(size, bits):
    rows = draw(size)
    if bits == 4:
        palette = VGA
        indices = [[VGA_OF[most_frequent(s)] if opaque(s) else 0 for s in row] for row in rows]
    else:
        colours = sorted({average(s) for row in rows for s in row if opaque(s)} | {(0, 0, 0)})
        assert len(colours) <= 256
        palette = colours + [(0, 0, 0)] * (256 - len(colours))
        black = colours.index((0, 0, 0))
        indices = [[colours.index(average(s)) if opaque(s) else black for s in row] for row in rows]

    pixels = b""
    mask = b""
    for row, shapes in zip(reversed(indices), reversed(rows)):
        if bits == 4:
            line = bytes(row[x] << 4 | row[x + 1] for x in range(0, size, 2))
        else:
            line = bytes(row)
        pixels += line + b"\0" * (-len(line) % 4)
        bit_line = 0
        for samples in shapes:
            bit_line = bit_line << 1 | (not opaque(samples))
        line = bit_line.to_bytes(size // 8, "big")
        mask += line + b"\0" * (-len(line) % 4)

    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, bits, 0, len(pixels) + len(mask), 0, 0, 0, 0)
    table = b"".join(bytes((b, g, r, 0)) for r, g, b in palette)
    return header + table + pixels + mask


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    kinds = [(16, 4), (16, 8), (32, 4), (32, 8)]
    images = [image(size, bits) for size, bits in kinds]
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for (size, bits), data in zip(kinds, images):
        directory += struct.pack("<BBBBHHII", size, size, 16 if bits == 4 else 0, 0, 1, bits, len(data), offset)
        offset += len(data)
    with open(sys.argv[1], "wb") as file:
        file.write(directory + b"".join(images))


if __name__ == "__main__":
    main()
