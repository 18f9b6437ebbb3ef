#!/usr/bin/env python3
"""Runs the built VM_PlugIn.8bf whole, in the program that plays the image editor, under Wine.

    run.py [--bin FOLDER] [--jobs N] [--screenshots FOLDER] [--list] [NAME...]

FOLDER (build/win32/bin) holds VM_PlugIn.8bf, filter_host.exe, Vm.exe and reply_app.exe. NAME picks tests by a part of
their names. Each job has a display and a Wine session of its own, so runs of this suite don't disturb each other. Ends
with "N passed, N failed"; the exit code is 0 when nothing failed. Needs Wine, Xvfb, xdotool and ImageMagick.
"""

import argparse
import os
import queue
import random
import re
import shutil
import struct
import sys
import tempfile
import threading
import time
import traceback

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from exchange import CLASSES, Image, Message, parse
from lab import ROOT, Failure, Session, check, lab, same, wait_for
from rows import ROWS, draw_ramps

FLAG = bytes([0, 0, 0, 12])
TESTS = []


def test(function):
    TESTS.append((function.__name__, function))
    return function


def for_each(names):
    def add(function):
        for name in names:
            TESTS.append((f"{function.__name__}_{name}", lambda l, name=name: function(l, name)))
        return function
    return add


# --- Pictures ----------------------------------------------------------------------------------


def host_pixels(row, width, height, seed):
    """Random samples, full and empty ones among them; ink values stay where the curves are fixed."""
    chance = random.Random(seed)
    full = 255 if row.size == 1 else 32768
    def sample(plane):
        if row.mode == 4 and row.planes == 5 and plane == 3:
            return 255 - chance.choice([0, 0, 20, 50, 80, 255])
        return chance.choice([0, full, chance.randint(0, full)])
    return [[[sample(plane) for plane in range(row.planes)] for _ in range(width)] for _ in range(height)]


def reply_pixels(row, width, height, seed):
    chance = random.Random(seed)
    planes, size = CLASSES[row.reply_class]
    full = 255 if size == 1 else 65535
    def sample(plane):
        if planes == 5 and plane == 3:
            return chance.choice([0, 0, 20, 50, 80, 255])
        return chance.choice([0, full, chance.randint(0, full)])
    return [[[sample(plane) for plane in range(planes)] for _ in range(width)] for _ in range(height)]


def image_of(name, pixels):
    flat = [pixel for line in pixels for pixel in line]
    return Image(name, len(pixels[0]), len(pixels), [list(plane) for plane in zip(*flat)])


def request_image(row, pixels):
    return image_of(row.sent_class, [[row.sent(pixel) for pixel in line] for line in pixels])


def converted(row, pixels):
    """What the host gets for a reply."""
    result = [[row.received(pixel) for pixel in line] for line in pixels]
    if row.mode == 4 and row.planes == 4:
        draw_ramps(result, len(pixels[0]), len(pixels))
    return result


def size_of(row):
    # The test ramps of the 8-bit CMYK row want 80 columns and 266 rows.
    return (83, 268) if row.mode == 4 and row.planes == 4 else (131, 9)


def small(l, name="rgb", width=7, height=5, seed=1):
    """A small picture on disk as in.planes; gives its row and its pixels."""
    row = ROWS[name]
    pixels = host_pixels(row, width, height, seed)
    l.planes("in.planes", width, height, row, pixels)
    return row, pixels


def plain_reply(row, width=7, height=5, seed=9, **fields):
    pixels = reply_pixels(row, width, height, seed)
    return Message(image_of(row.reply_class, pixels), **fields), converted(row, pixels)


# --- The ten rows ------------------------------------------------------------------------------


@for_each(ROWS)
def picture_goes_out_and_comes_back(l, name):
    row = ROWS[name]
    width, height = size_of(row)
    pixels = host_pixels(row, width, height, 1)
    l.planes("in.planes", width, height, row, pixels)
    answer = reply_pixels(row, width, height, 2)
    l.reply(Message(image_of(row.reply_class, answer), colour_type=77).to_bytes())
    l.run("--row-padding", "3", "--filter-case", "1").expect(0)
    wanted = Message(request_image(row, pixels), colour_type=row.colour_type)
    same(l.read("request"), wanted.to_bytes(), "the request")
    same(l.pixels("out.planes", row), converted(row, answer), "the host's image")
    l.no_leftovers()


@for_each(ROWS)
def request_sent_back_as_it_is(l, name):
    """An application that changes nothing: what the two conversions do one after the other."""
    row = ROWS[name]
    if row.sent_class != row.reply_class:
        # Can't be read back under the name it was written by: reported, and the picture stays.
        _, pixels = small(l, name)
        l.script(["wait-flag", "done"])
        result, boxes = l.run_answering_boxes("--filter-case", "1")
        result.expect(0)
        check(boxes > 0, "no report was shown")
        same(l.pixels("out.planes", row), pixels, "the host's image")
        return
    width, height = size_of(row)
    pixels = host_pixels(row, width, height, 3)
    l.planes("in.planes", width, height, row, pixels)
    l.script(["wait-flag", "done"])
    l.run("--filter-case", "1").expect(0)
    sent = [[row.sent(pixel) for pixel in line] for line in pixels]
    same(l.pixels("out.planes", row), converted(row, sent), "the host's image")


@test
def reply_of_another_size_fills_what_it_covers(l):
    row, pixels = small(l)
    message, wanted = plain_reply(row, 4, 3)
    l.reply(message.to_bytes())
    l.run().expect(0)
    expected = [[wanted[y][x] if y < 3 and x < 4 else pixels[y][x] for x in range(7)] for y in range(5)]
    same(l.pixels("out.planes", row), expected, "the host's image")


@test
def reply_in_another_class_goes_through_the_views(l):
    row, _ = small(l, "gray")
    # Gray of a colour is the mean of its three bytes.
    colours = [[[x * 30, y * 50, 7 * x] for x in range(7)] for y in range(5)]
    l.reply(Message(image_of("ZvImageRgbBytes", colours)).to_bytes())
    l.run().expect(0)
    same(l.pixels("out.planes", row), [[[sum(pixel) * 0x101 // 0x300] for pixel in line] for line in colours],
         "the host's image")


# --- The files ---------------------------------------------------------------------------------


@test
def files_lie_beside_the_plug_in_whatever_the_current_folder(l):
    row, _ = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    l.run().expect(0)
    same(os.listdir(l.path("elsewhere")), [], "the host's current folder")
    same(l.read("Flg.h"), FLAG, "Flg.h")
    check(l.exists("Img.h"), "Img.h is gone")
    check(not l.exists("Flg2.h"), "Flg2.h is still there")


@test
def application_starts_without_arguments_in_the_folder_of_the_plug_in(l):
    row, _ = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    l.run().expect(0)
    command, folder = l.read("started-1").decode("latin-1").splitlines()[:2]
    program = "Z:" + l.beside("Vm.exe").replace("/", "\\")
    check(command.strip().strip('"').lower() == program.lower(), f"the command line is {command!r}")
    check(folder.lower().rstrip("\\") == ("Z:" + l.plugin.replace("/", "\\")).lower(), f"the folder is {folder!r}")


@test
def missing_application_is_a_cancelled_run(l):
    small(l)
    result = l.run().expect(2)
    check("Start with -128" in result.err, result.err)
    same(l.read("Flg.h"), FLAG, "Flg.h")
    check(l.exists("Img.h"), "Img.h is gone")
    check(not os.path.exists(l.path("out.planes")), "a cancelled run wrote a picture")
    l.no_leftovers()


@test
def stale_done_file_does_not_end_the_run(l):
    row, _ = small(l)
    message, wanted = plain_reply(row)
    l.write("Flg2.h", b"old")
    # It is gone before the application is started, so the reply is waited for.
    l.reply(message.to_bytes(), before=["copy Flg2.h seen", "sleep 400"])
    l.run().expect(0)
    check(not l.exists("seen"), "Flg2.h was there when the application started")
    same(l.pixels("out.planes", row), wanted, "the host's image")


@test
def done_file_that_comes_at_once_ends_the_wait_at_once(l):
    row, pixels = small(l, "rgba")
    l.script(["done"])
    l.run("--filter-case", "1").expect(0)
    # What is read back is the request itself.
    same(l.pixels("out.planes", row), pixels, "the host's image")


@test
def done_file_that_is_held_open_is_not_seen_until_it_is_closed(l):
    row, _ = small(l)
    message, wanted = plain_reply(row)
    l.write("answer", message.to_bytes())
    l.script(["wait-flag", "copy answer Img.h", "hold-done 1500", "sleep 100"])
    started = time.monotonic()
    l.run().expect(0)
    check(time.monotonic() - started > 1.4, "the run ended while the file was held")
    same(l.pixels("out.planes", row), wanted, "the host's image")
    check(not l.exists("Flg2.h"), "Flg2.h is still there")


@test
def exchange_file_that_cannot_be_written_leaves_everything_as_it_was(l):
    row, pixels = small(l)
    l.script(["done"])
    os.mkdir(l.beside("Img.h"))
    l.run().expect(0)
    same(l.started(), 0, "starts of the application")
    same(l.pixels("out.planes", row), pixels, "the host's image")
    check(not l.exists("Flg.h"), "Flg.h was written")


@test
def flag_file_that_cannot_be_written_does_not_stop_the_run(l):
    row, _ = small(l)
    message, wanted = plain_reply(row)
    os.mkdir(l.beside("Flg.h"))
    l.write("answer", message.to_bytes())
    l.script(["sleep 200", "copy answer Img.h", "done"])
    l.run().expect(0)
    same(l.pixels("out.planes", row), wanted, "the host's image")


# --- Cancelling --------------------------------------------------------------------------------


@test
def cancel_ends_the_run_and_leaves_the_application_running(l):
    row, pixels = small(l)
    l.script(["wait-flag", "wait-file go", "done"])
    process = l.start()
    l.session.wait_window("Velvetmoor")
    if l.options.screenshots:
        time.sleep(0.5)
        l.session.screenshot(os.path.join(l.options.screenshots, "wait-dialog.png"))
    l.session.press_cancel()
    result = l.finish(process).expect(2)
    check("Start with -128" in result.err, result.err)
    check("Finish" not in result.out, "Finish was called after a cancelled Start")
    same(l.read("Img.h"), Message(request_image(row, pixels), colour_type=2).to_bytes(), "Img.h")
    same(l.read("Flg.h"), FLAG, "Flg.h")
    check(not os.path.exists(l.path("out.planes")), "a cancelled run wrote a picture")
    # The application goes on, and its done file stays until the next Start.
    l.write("go", b"")
    wait_for("the application's done file", lambda: l.exists("Flg2.h"))


@test
def second_start_after_a_cancelled_one_is_a_run_like_any_other(l):
    row, pixels = small(l)
    message, wanted = plain_reply(row, name=b"Second")
    l.write("answer", message.to_bytes())
    l.script(["wait-flag", "wait-file go"], start=1)
    l.script(["wait-flag", "copy Img.h request", "copy answer Img.h", "done"], start=2)
    process = l.start("--runs", "2")
    l.session.press_cancel()
    result = l.finish(process).expect(0)
    check("Start with -128" in result.err, "the first run was not cancelled")
    same(l.started(), 2, "starts of the application")
    same(l.read("request"), Message(request_image(row, pixels), colour_type=2).to_bytes(), "the second request")
    same(l.pixels("out.planes", row), wanted, "the host's image")


# --- The mask ----------------------------------------------------------------------------------


def mask_file(l, coverage):
    """A selection as a PNG; `coverage` holds rows of bytes."""
    import zlib
    height, width = len(coverage), len(coverage[0])
    raw = b"".join(b"\0" + bytes(line) for line in coverage)
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    with open(l.path("mask.png"), "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", width, height, 8, 0, 0, 0, 0)) +
                   chunk(b"IDAT", zlib.compress(raw)) + chunk(b"IEND", b""))
    return "Z:" + l.path("mask.png")


COVERAGE = [[0] * 7, [0, 0, 1, 50, 0, 0, 0], [0, 0, 0, 255, 200, 0, 0], [0, 0, 0, 0, 9, 0, 0], [0] * 7]


@test
def mask_of_the_whole_image_goes_out(l):
    row, pixels = small(l)
    message, wanted = plain_reply(row)
    l.reply(message.to_bytes())
    l.run("--mask", mask_file(l, COVERAGE), "--row-padding", "5").expect(0)
    mask = image_of("ZvRowImageAlphaByte", [[[value] for value in line] for line in COVERAGE])
    same(l.read("request"), Message(request_image(row, pixels), colour_type=2, mask=mask).to_bytes(), "the request")
    # The plug-in writes outside the selection too, and says so; the host doesn't mask it.
    same(l.pixels("out.planes", row), wanted, "the host's image")


@test
def mask_has_the_size_of_the_filter_rect_and_the_image_its_own(l):
    row, pixels = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    l.run("--mask", mask_file(l, COVERAGE), "--filter-rect", "selection").expect(0)
    mask = image_of("ZvRowImageAlphaByte", [[[value] for value in line[2:5]] for line in COVERAGE[1:4]])
    same(l.read("request"), Message(request_image(row, pixels), colour_type=2, mask=mask).to_bytes(), "the request")


@test
def mask_that_comes_back_changes_nothing(l):
    for name in ("rgb", "cmyk"):
        row = ROWS[name]
        width, height = size_of(row) if name == "cmyk" else (7, 5)
        l.planes("in.planes", width, height, row, host_pixels(row, width, height, 5))
        mask = image_of("ZvRowImageAlphaByte", [[[0]] * width] * height)
        message, wanted = plain_reply(row, width, height, mask=mask)
        l.reply(message.to_bytes())
        l.run().expect(0)
        same(l.pixels("out.planes", row), wanted, f"the host's image, {name}")


# --- What the host offers ----------------------------------------------------------------------


@for_each(["0", "2", "5", "6", "7", "8", "9", "12", "14", "-1"])
def image_mode_is_refused_before_any_file_is_touched(l, mode):
    small(l)
    l.script(["done"])
    if mode in ("14", "-1"):
        # Modes behind the last of the published ones pass the resource's 16 bits or fail them in the host.
        if mode == "-1":
            l.run("--image-mode", mode)
            same(l.started(), 0, "starts of the application")
            return
    l.run("--image-mode", mode).expect(2)
    same(l.started(), 0, "starts of the application")
    check(not l.exists("Img.h"), "Img.h was written")


@for_each(["abort", "progress", "advance", "display"])
def missing_callback_refuses_the_run(l, callback):
    small(l)
    l.script(["done"])
    l.run("--without", callback).expect(2)
    check(not l.exists("Img.h"), "Img.h was written")


@test
def host_without_handles_and_descriptors_is_served(l):
    row, _ = small(l)
    message, wanted = plain_reply(row, block=b"abc")
    l.reply(message.to_bytes())
    l.run("--without", "handles", "--without", "descriptors").expect(0)
    same(l.pixels("out.planes", row), wanted, "the host's image")


@test
def gray16_passes_the_check_and_makes_no_image(l):
    l.script(["done"])
    with open(l.path("in.planes"), "wb") as file:
        file.write(b"planes 1 2 1 1 2 10\n" + bytes([1, 2, 3, 4]))
    l.run().expect(0)
    same(l.started(), 0, "starts of the application")
    # The name's length and the block's size; nothing behind them.
    same(l.read("Img.h"), bytes(8), "Img.h")
    check(not l.exists("Flg.h"), "Flg.h was written")
    with open(l.path("out.planes"), "rb") as file:
        same(file.read(), b"planes 1 2 1 1 2 10\n" + bytes([1, 2, 3, 4]), "the host's image")


@test
def every_filter_case_runs(l):
    row, pixels = small(l, "rgba")
    message, wanted = plain_reply(row)
    l.reply(message.to_bytes())
    opaque = [[pixel[:3] + [255] for pixel in line] for line in pixels]
    l.planes("in.planes", 7, 5, row, opaque)
    for case in range(1, 8):
        result = l.run("--filter-case", str(case)).expect(0)
        check("Finish: result 0" in result.out, result.out)
        # Where transparency is protected, the host keeps its alpha.
        expected = [[pixel[:3] + [255] for pixel in line] for line in wanted] if case >= 6 else wanted
        same(l.pixels("out.planes", row), expected, f"the host's image, case {case}")
    same(l.started(), 7, "starts of the application")


@test
def transparent_pixels_arrive_over_white_as_the_resource_asks(l):
    row = ROWS["rgba"]
    l.planes("in.planes", 2, 1, row, [[[100, 0, 200, 51], [9, 9, 9, 0]]])
    l.reply(plain_reply(row, 2, 1)[0].to_bytes())
    l.run().expect(0)
    # A fifth of each colour and 204 of white; alpha as it is.
    same(parse(l.read("request")).image.planes, [[224, 255], [204, 255], [244, 255], [51, 0]], "the request's planes")


@test
def refused_planes_are_asked_for_again_as_three(l):
    row, pixels = small(l, "rgba")
    three = ROWS["rgb"]
    message, _ = plain_reply(three)
    l.reply(message.to_bytes())
    result = l.run("--fail-advance", "1:-1", "--filter-case", "1").expect(0)
    check(re.search(r"advanceState 2: .*planes 0-2, ", result.out), result.out)
    wanted = Message(request_image(three, [[pixel[:3] for pixel in line] for line in pixels]), colour_type=2)
    same(l.read("request"), wanted.to_bytes(), "the request")


@test
def refused_twice_ends_with_the_code_of_the_host(l):
    small(l)
    l.script(["done"])
    result = l.run("--fail-advance", "1-2:-1234").expect(3)
    check("Start with -1234" in result.err, result.err)
    same(l.started(), 0, "starts of the application")
    same(l.read("Img.h"), bytes(8), "Img.h")


@test
def unknown_selectors_are_bad_parameters(l):
    row, _ = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    result = l.run("--selector", "6", "--selector", "-1", "--selector", "0").expect(0)
    check("selector 6: result -30100" in result.out, result.out)
    check("selector -1: result -30100" in result.out, result.out)
    check("selector 0: result 0" in result.out, result.out)


@test
def plug_in_leaves_nothing_of_the_host_behind(l):
    row, _ = small(l)
    l.reply(plain_reply(row, name=b"Name", block=bytes(600))[0].to_bytes())
    result = l.run().expect(0)
    check("warning" not in result.out, result.out)


# --- Recording and replaying -------------------------------------------------------------------


def entries(path):
    """Key, type and value of each line of recorded parameters."""
    with open(path, encoding="ascii") as file:
        lines = file.read().splitlines()
    same(lines[0], "filter-descriptor 1", "the first line")
    found = []
    for line in lines[1:]:
        match = re.fullmatch(r"'(.*?)' (\S+) (.*)", line)
        value = match.group(3)
        if match.group(2) == "string":
            value = re.sub(rb"\\x(..)", lambda m: bytes([int(m.group(1), 16)]), value[1:-1].encode("ascii"))
        found.append((match.group(1), match.group(2), value))
    return found


@for_each(["0", "1", "2", "255", "256", "257", "600"])
def parameters_are_recorded_in_pieces_without_their_last_byte(l, size):
    row, _ = small(l)
    block = bytes(random.Random(5).randrange(256) for _ in range(int(size)))
    l.reply(plain_reply(row, name=b"Golden Hour", block=block)[0].to_bytes())
    result = l.run("--record", "Z:" + l.path("recorded")).expect(0)
    if size == "0":
        check("recorded no parameters" in result.out, result.out)
        check(not os.path.exists(l.path("recorded")), "something was recorded")
        return
    sent = block[:-1]
    pieces = [sent[i:i + 255] for i in range(0, len(sent), 255)]
    wanted = [("aeAU", "string", b"Golden Hour"), ("aeCT", "float", size), ("aeSA", "string", b" " * 254 + b"\0")]
    wanted += [("aeS" + chr(ord("K") + i), "string", piece) for i, piece in enumerate(pieces)]
    same(entries(l.path("recorded")), wanted, "the recorded entries")


def recorded(l, block):
    """A file of parameters as they are recorded for a block."""
    lines = ["filter-descriptor 1", "'aeAU' string \"Golden Hour\"", f"'aeCT' float {len(block)}", "'aeSA' string \" \""]
    for i in range(0, len(block) - 1, 255):
        piece = block[:-1][i:i + 255]
        text = "".join(f"\\x{byte:02X}" for byte in piece)
        lines.append(f"'aeS{chr(ord('K') + i // 255)}' string \"{text}\"")
    with open(l.path("recorded"), "w", encoding="ascii") as file:
        file.write("\n".join(lines) + "\n")
    return "Z:" + l.path("recorded")


@for_each(["dont-display", "silent", "display"])
def replay_follows_the_play_info(l, play_info):
    row, pixels = small(l)
    message, wanted = plain_reply(row)
    l.reply(message.to_bytes())
    block = bytes(i * 7 % 256 for i in range(300))
    l.run("--replay", recorded(l, block), "--play-info", play_info).expect(0)
    # One byte longer than recorded: its last byte was never sent, and one more is added; both are zero.
    sent = b"" if play_info == "display" else block[:-1] + b"\0\0"
    same(l.read("request"), Message(request_image(row, pixels), block=sent, colour_type=2).to_bytes(), "the request")
    same(l.pixels("out.planes", row), wanted, "the host's image")


@test
def replay_of_an_empty_size_sends_an_empty_block_and_reports_it(l):
    row, pixels = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    with open(l.path("recorded"), "w", encoding="ascii") as file:
        file.write("filter-descriptor 1\n'aeCT' float 0\n")
    # Nothing was rebuilt, and nothing is what is written: the file class reports the null buffer.
    result, boxes = l.run_answering_boxes("--replay", "Z:" + l.path("recorded"))
    result.expect(0)
    check(boxes > 0, "no report was shown")
    same(l.read("request"), Message(request_image(row, pixels), colour_type=2).to_bytes(), "the request")


@test
def without_a_descriptor_the_editor_is_asked_for_whatever_the_play_info(l):
    row, pixels = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    for play_info in ("dont-display", "silent"):
        l.run("--play-info", play_info).expect(0)
        same(parse(l.read("request")).block, b"", "the block")


@test
def absurd_sizes_and_early_pieces_in_a_descriptor_are_survived(l):
    row, pixels = small(l)
    l.reply(plain_reply(row)[0].to_bytes())
    for lines in (["'aeCT' float -5", "'aeSK' string \"abc\""], ["'aeCT' float nan"], ["'aeCT' float 1e300"],
                  ["'aeSK' string \"abc\""], ["'aeCT' float 3", "'aeSK' string \"abcdefgh\""]):
        with open(l.path("recorded"), "w", encoding="ascii") as file:
            file.write("\n".join(["filter-descriptor 1", *lines]) + "\n")
        result, boxes = l.run_answering_boxes("--replay", "Z:" + l.path("recorded"))
        result.expect(0)
        check((boxes > 0) == ("float 3" not in lines[0]), f"{boxes} reports for {lines}")
        block = parse(l.read("request")).block
        # Only the last of them has a size that a block can have: what fits of its piece, and zeros.
        same(block, b"abc\0" if "float 3" in lines[0] else b"", f"the block for {lines}")


@test
def effect_name_and_block_stay_while_the_library_is_loaded(l):
    row, pixels = small(l)
    first, _ = plain_reply(row, name=b"First", block=b"12345")
    second, _ = plain_reply(row)
    l.write("first", first.to_bytes())
    l.write("second", second.to_bytes())
    l.script(["wait-flag", "copy first Img.h", "done"], start=1)
    l.script(["wait-flag", "copy Img.h request", "copy second Img.h", "done"], start=2)
    l.run("--runs", "2", "--record", "Z:" + l.path("recorded")).expect(0)
    # The next request names the last effect, and a reply without name and block leaves both as they were.
    same(l.read("request"), Message(request_image(row, pixels), name=b"First", colour_type=2).to_bytes(), "the request")
    same([entry[2] for entry in entries(l.path("recorded"))][:2], [b"First", "5"], "name and size in the second record")


# --- Bad replies -------------------------------------------------------------------------------


def answered(l, *options):
    """A run whatever the reply; reports are answered with OK. Gives the result and the number of reports."""
    result, boxes = l.run_answering_boxes(*options)
    check(result.code in (0, 2, 4), f"exit code {result.code}: {result.err}")
    l.no_leftovers()
    return result, boxes


@test
def missing_reply_leaves_the_entry_point_as_an_exception_that_the_host_tells(l):
    small(l)
    l.script(["wait-flag", "delete Img.h", "done"])
    result = l.run().expect(4)
    check("crashed in Start: structured exception 0xE0564D01" in result.err, result.err)
    check(not os.path.exists(l.path("out.planes")), "a crashed run wrote a picture")


@test
def empty_reply_leaves_the_picture_as_it_was(l):
    row, pixels = small(l)
    l.reply(b"")
    l.run().expect(0)
    same(l.pixels("out.planes", row), pixels, "the host's image")


@test
def reply_cut_in_its_pixels_has_its_last_row_repeated(l):
    row, _ = small(l, "gray")
    pixels = [[[10 * y + x] for x in range(7)] for y in range(5)]
    whole = Message(image_of("ZvImageGrayByte", pixels)).to_bytes()
    l.reply(whole[:-14])
    l.run().expect(0)
    same(l.pixels("out.planes", row), pixels[:3] + [pixels[2], pixels[2]], "the host's image")


@test
def reply_cut_at_any_byte_of_its_head_is_survived(l):
    row, _ = small(l)
    whole = plain_reply(row, name=b"Name", block=b"block")[0].to_bytes()
    head = len(whole) - 7 * 5 * 4
    # Every field is cut once in its middle; the rest of the bytes are the unit tests' and the fuzzer's.
    for length in (2, 5, 8, 11, 14, 17, 20, 22, 23, 25, 30, 40, 46, 50, 60, 66, 72, head - 1, head):
        l.reply(whole[:length])
        answered(l)


@test
def unknown_class_name_is_reported_in_a_box_that_ok_answers(l):
    row, pixels = small(l)
    data = Message(Image("ZvImageRgbaBytes", 7, 5, [[0] * 35] * 4)).to_bytes().replace(b"ZvImageRgba", b"ZvImageRxyz")
    l.reply(data)
    process = l.start()
    l.session.wait_window("CP_Debug")
    time.sleep(0.3)
    if l.options.screenshots:
        l.session.screenshot(os.path.join(l.options.screenshots, "report.png"))
    while process.poll() is None:
        l.session.answer_box("Return")
        time.sleep(0.2)
    l.finish(process).expect(0)
    same(l.pixels("out.planes", row), pixels, "the host's image")


@test
def cancel_in_a_report_stops_in_the_debugger(l):
    small(l)
    l.reply(Message(Image("ZvImageRgbaBytes", 7, 5, [[0] * 35] * 4)).to_bytes().replace(b"ZvImageRgba", b"ZvImageRxyz"))
    process = l.start()
    l.session.wait_window("CP_Debug")
    while process.poll() is None:
        l.session.answer_box("Escape")
        time.sleep(0.2)
    result = l.finish(process).expect(4)
    check("crashed in Start: breakpoint" in result.err, result.err)


@test
def cmyk_with_a_row_too_few_reports_each_pixel_of_the_ramps(l):
    row = ROWS["cmyk"]
    l.planes("in.planes", 80, 265, row, host_pixels(row, 80, 265, 4))
    pixels = reply_pixels(row, 80, 265, 5)
    l.reply(Message(image_of("ZvImageCmykBytes", pixels)).to_bytes())
    result, boxes = l.run_answering_boxes()
    result.expect(0)
    # One row of four strips of ten pixels is missing. A key may be pressed twice in one box.
    check(boxes >= 40, f"{boxes} answers")
    wanted = [[[255 - v for v in pixel] for pixel in line] for line in pixels] + [[[0] * 4] * 80]
    draw_ramps(wanted, 80, 266)
    same(l.pixels("out.planes", row), wanted[:265], "the host's image")


@for_each(["0x0", "-1x5", "7x-2147483648", "2147483647x2147483647", "2147483647x1", "1x2147483647", "100000x100000"])
def absurd_size_in_a_reply_is_survived(l, size):
    small(l)
    width, height = (int(number) for number in size.rsplit("x", 1))
    image = Image("ZvImageRgbaBytes", 7, 5, [[100] * 35] * 4)
    image.width, image.height = width, height
    l.reply(Message(image).to_bytes())
    started = time.monotonic()
    answered(l)
    check(time.monotonic() - started < 20, "the run took too long")


@for_each(["-1", "2147483647", "-2147483648", "1000000"])
def absurd_block_size_in_a_reply_is_survived(l, size):
    row, _ = small(l)
    data = plain_reply(row)[0].to_bytes()
    l.reply(data[:4] + struct.pack(">i", int(size)) + data[8:])
    answered(l)


@test
def object_that_is_no_image_leaves_the_picture_as_it_was(l):
    row, pixels = small(l)
    data = Message(Image("ZvImageGrayByte", 1, 1, [[1]])).to_bytes()
    at = data.index(b"\0\x0fZvImageGrayByte")
    l.reply(data[:at] + b"\0\x07ZvLayer" + bytes(400))
    result, _ = answered(l)
    if result.code == 0:
        same(l.pixels("out.planes", row), pixels, "the host's image")


@test
def reply_that_is_rewritten_meanwhile_is_survived(l):
    row, _ = small(l)
    l.write("answer", plain_reply(row, 131, 200)[0].to_bytes())
    l.script(["wait-flag", "copy answer Img.h", "done", "rewrite answer 1500"])
    answered(l)


# --- The real application ----------------------------------------------------------------------

UNCHANGED = "name = Nothing\nsharpen = 0\nsaturation = 0\nbrightness = 0\nred = 0\ngreen = 0\nblue = 0\n"


@for_each(["gray", "graya", "rgb", "rgba", "rgb48", "rgba64", "cmyk", "cmyka"])
def application_without_effect_changes_nothing_that_the_plug_in_keeps(l, name):
    row = ROWS[name]
    width, height = size_of(row)
    pixels = host_pixels(row, width, height, 6)
    l.planes("in.planes", width, height, row, pixels)
    l.real_application(UNCHANGED)
    l.run("--filter-case", "1").expect(0)
    sent = [[row.sent(pixel) for pixel in line] for line in pixels]
    if name == "cmyk":
        # Inks that leave no light are black in more ways than one; the application writes them as one.
        for line in sent:
            for pixel in line:
                light = [max(0, 255 - ink - pixel[3]) for ink in pixel[:3]]
                paper = max(255 - pixel[3], max(light))
                pixel[:] = [paper - value for value in light] + [255 - paper]
    if name == "cmyka":
        for line in sent:
            for pixel in line:
                light = [max(0, 255 - ink - pixel[3]) for ink in pixel[:3]]
                paper = max(255 - pixel[3], max(light))
                pixel[:4] = [paper - value for value in light] + [255 - paper]
    same(l.pixels("out.planes", row), converted(row, sent), "the host's image")


@for_each(["cmyk64", "cmyka80"])
def application_answers_16_bit_inks_in_a_class_that_the_plug_in_knows(l, name):
    small(l, name)
    l.real_application(UNCHANGED)
    l.run("--filter-case", "1").expect(0)
    reply = parse(l.read("Img.h"))
    same(reply.image.name, "ZvImageRgba64", "the class of the reply")
    row = ROWS[name]
    answer = [[list(pixel) for pixel in list(zip(*reply.image.planes))[y * 7:y * 7 + 7]] for y in range(5)]
    same(l.pixels("out.planes", row), converted(row, answer), "the host's image")


@test
def recorded_effect_gives_the_same_picture_when_it_is_replayed(l):
    row, _ = small(l, "rgb", 60, 40)
    l.real_application("name = Golden Hour\nsharpen = 120\nsaturation = 70\nbrightness = -10\nred = 20\n")
    l.run("--record", "Z:" + l.path("recorded")).expect(0)
    first = l.pixels("out.planes", row)
    # The settings are others now; the recorded ones are those that count.
    l.real_application("brightness = 50\n")
    l.run("--replay", "Z:" + l.path("recorded"), output="again.planes").expect(0)
    same(l.pixels("again.planes", row), first, "the replayed picture")
    same(parse(l.read("Img.h")).name, b"Golden Hour", "the effect's name")
    l.run(output="other.planes").expect(0)
    check(l.pixels("other.planes", row) != first, "the settings don't count at all")


@test
def effect_stays_inside_the_mask(l):
    row, pixels = small(l)
    l.real_application("brightness = 60\n")
    l.run("--mask", mask_file(l, COVERAGE)).expect(0)
    result = l.pixels("out.planes", row)
    for y, line in enumerate(COVERAGE):
        for x, covered in enumerate(line):
            if covered == 0:
                same(result[y][x], pixels[y][x], f"the pixel at {x}, {y}")
    check(result[2][3] != pixels[2][3], "nothing changed inside")


# --- The suite ---------------------------------------------------------------------------------


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bin", default=os.path.join(ROOT, "build", "win32", "bin"))
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--screenshots")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("names", nargs="*", metavar="NAME")
    options = parser.parse_args()
    chosen = [entry for entry in TESTS if not options.names or any(name in entry[0] for name in options.names)]
    if options.list:
        print("\n".join(name for name, _ in chosen))
        return 0
    options.bin = os.path.abspath(options.bin)
    for program in ("VM_PlugIn.8bf", "filter_host.exe", "Vm.exe", "reply_app.exe"):
        if not os.path.exists(os.path.join(options.bin, program)):
            print(f"system: error: {program} is not in {options.bin}", file=sys.stderr)
            return 1
    if options.screenshots:
        options.screenshots = os.path.abspath(options.screenshots)
        os.makedirs(options.screenshots, exist_ok=True)

    os.makedirs(os.path.join(ROOT, "build"), exist_ok=True)
    options.work = tempfile.mkdtemp(prefix="system-", dir=os.path.join(ROOT, "build"))
    waiting = queue.Queue()
    for entry in chosen:
        waiting.put(entry)
    outcomes, lock, started = [], threading.Lock(), time.monotonic()

    def work(number):
        folder = os.path.join(options.work, f"session-{number}")
        os.mkdir(folder)
        session = Session(folder)
        try:
            while True:
                try:
                    name, function = waiting.get_nowait()
                except queue.Empty:
                    return
                begun = time.monotonic()
                error = ""
                try:
                    with lab(session, options) as l:
                        function(l)
                except Failure as failure:
                    error = str(failure)
                except Exception:
                    error = traceback.format_exc()
                with lock:
                    outcomes.append(not error)
                    print(f"{'FAILED' if error else 'ok    '} {name} ({time.monotonic() - begun:.1f} s)", flush=True)
                    if error:
                        print("       " + error.rstrip().replace("\n", "\n       "), flush=True)
        finally:
            session.close()

    threads = [threading.Thread(target=work, args=(i,)) for i in range(max(1, min(options.jobs, len(chosen))))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    shutil.rmtree(options.work, ignore_errors=True)
    failed = len(chosen) - sum(outcomes)
    print(f"in {time.monotonic() - started:.0f} s")
    print(f"{sum(outcomes)} passed, {failed} failed")
    return 1 if failed or not chosen else 0


if __name__ == "__main__":
    sys.exit(main())
