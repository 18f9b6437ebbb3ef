"""The exchange file between the plug-in and the effects application, read and written from the rules of its format.

    s32 length of the effect's name; when not 0, the name as u16 length and characters
    s32 length of the parameter block; when not 0, the block
    s32 colour type, bool "a mask follows"; when true, the mask; then the image

An image is its class name (u16 length, characters), then s32 width, height, clip left, top, right, bottom, f32 horizontal
and vertical resolution, one byte, and the samples of plane after plane, row after row. s32 and u16 have their most
significant byte first; f32 and two-byte samples their least significant one.
"""

import struct

# Class name: planes, bytes per sample.
CLASSES = {
    "ZvImageRgbBytes": (3, 1),
    "ZvImageRgbaBytes": (4, 1),
    "ZvImageGrayByte": (1, 1),
    "ZvImageAlphaByte": (1, 1),
    "ZvImageRgba64": (4, 2),
    "ZvImageRgb48": (3, 2),
    "ZvImageCmykBytes": (4, 1),
    "ZvImageCmykaBytes": (5, 1),
    "ZvImageCmyka64": (4, 2),
    "ZvImageCmyka80": (5, 2),
    "ZvImageCmyk64": (4, 2),
    "ZvRowImageRgbBytes": (3, 1),
    "ZvRowImageRgbaBytes": (4, 1),
    "ZvRowImageGrayByte": (1, 1),
    "ZvRowImageGrayABytes": (2, 1),
    "ZvRowImageAlphaByte": (1, 1),
}


class Image:
    """planes[c][y * width + x] is a sample."""

    def __init__(self, name, width, height, planes, clip=None, resolution=(0.0, 0.0), compress=0):
        self.name, self.width, self.height, self.planes = name, width, height, planes
        self.clip = clip if clip is not None else (0, 0, width - 1, height - 1)
        self.resolution, self.compress = resolution, compress

    def to_bytes(self):
        head = struct.pack(">H", len(self.name)) + self.name.encode("ascii")
        head += struct.pack(">6i", self.width, self.height, *self.clip)
        head += struct.pack("<2f", *self.resolution) + bytes([self.compress])
        if CLASSES[self.name][1] == 1:
            return head + b"".join(bytes(plane) for plane in self.planes)
        return head + b"".join(struct.pack(f"<{len(plane)}H", *plane) for plane in self.planes)

    def __eq__(self, other):
        return self.__dict__ == other.__dict__


class Message:
    def __init__(self, image, name=b"", block=b"", colour_type=0, mask=None):
        self.name, self.block, self.colour_type, self.mask, self.image = name, block, colour_type, mask, image

    def to_bytes(self):
        data = struct.pack(">i", len(self.name))
        if self.name:
            data += struct.pack(">H", len(self.name)) + self.name
        data += struct.pack(">i", len(self.block)) + self.block
        data += struct.pack(">i", self.colour_type) + (b"\0" if self.mask is None else b"\1" + self.mask.to_bytes())
        return data + self.image.to_bytes()


class Reader:
    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, count):
        piece = self.data[self.at:self.at + count]
        if len(piece) != count:
            raise ValueError(f"the file ends at {len(self.data)}, {count} bytes are wanted at {self.at}")
        self.at += count
        return piece

    def number(self, form):
        return struct.unpack(form, self.take(struct.calcsize(form)))[0]

    def image(self):
        name = self.take(self.number(">H")).decode("ascii")
        width, height, *clip = struct.unpack(">6i", self.take(24))
        resolution = struct.unpack("<2f", self.take(8))
        compress = self.take(1)[0]
        planes, size = CLASSES[name]
        samples = []
        for _ in range(planes):
            raw = self.take(width * height * size)
            samples.append(list(raw) if size == 1 else list(struct.unpack(f"<{width * height}H", raw)))
        return Image(name, width, height, samples, tuple(clip), resolution, compress)


def parse(data):
    """The message in a file, which must hold nothing behind it."""
    reader = Reader(data)
    message = Message(None)
    if (length := reader.number(">i")) != 0:
        message.name = reader.take(reader.number(">H"))
        if len(message.name) != length:
            raise ValueError("the two lengths of the effect's name differ")
    message.block = reader.take(reader.number(">i"))
    message.colour_type = reader.number(">i")
    flag = reader.take(1)
    if flag not in (b"\0", b"\1"):
        raise ValueError("the mask flag is neither 0 nor 1")
    if flag == b"\1":
        message.mask = reader.image()
    message.image = reader.image()
    if reader.at != len(data):
        raise ValueError(f"{len(data) - reader.at} bytes stand behind the image")
    return message
