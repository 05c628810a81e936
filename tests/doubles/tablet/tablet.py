#!/usr/bin/env python3
"""tablet.py PREFIX: ISD tablets on four serial ports of a Wine prefix, as long as the process that starts it runs.

COM6 answers in full, COM7 stops in the middle of its answer, COM8 answers late, COM9 never. For each question the file
drive_c/tablet-COMn.txt is written anew: the settings of the line and the bytes received, with the milliseconds between
them where that is no proper pause. A tablet that is asked in another way does not answer."""
import os
import pathlib
import pty
import selectors
import sys
import termios
import time
import tty

REPLY = bytes([0x80, 0x12, 0x34, 0x0F, 0x7F, 0x55, 0x68, 1, 2, 3, 4])  # MaxX 0x24D3, MaxY 0x1FFD
PORTS = {"COM6": (0, REPLY), "COM7": (0, REPLY[:4]), "COM8": (1.5, REPLY), "COM9": (0, b"")}
LINE = {termios.B19200: "19200 baud", termios.CS8: "8 bits", 0: "1 stop bit"}

prefix = pathlib.Path(sys.argv[1])
selector = selectors.DefaultSelector()
asked = {}
for name in PORTS:
    master, slave = pty.openpty()
    tty.setraw(slave)
    link = prefix / "dosdevices" / name.lower()
    link.unlink(missing_ok=True)  # of an earlier run in this prefix
    link.symlink_to(os.ttyname(slave))
    selector.register(master, selectors.EVENT_READ, (name, slave))


def take(port, name, slave):
    byte = os.read(port, 1)
    if byte != b"*":
        asked[name] = byte, time.monotonic()
        return
    first, start = asked.pop(name, (b"nothing", 0))
    pause = round((time.monotonic() - start) * 1000)
    flags, speed = termios.tcgetattr(slave)[2:5:2]
    words = [LINE.get(value, str(value)) for value in (speed, flags & termios.CSIZE, flags & termios.CSTOPB)]
    words += [first.decode("latin-1"), "a pause" if pause >= 450 else f"{pause} ms", "*"]
    (prefix / "drive_c" / f"tablet-{name}.txt").write_text(", ".join(words))
    if first == b"0":
        time.sleep(PORTS[name][0])
        os.write(port, PORTS[name][1])


parent = os.getppid()
while os.getppid() == parent:
    for key, _ in selector.select(timeout=5):
        take(key.fd, *key.data)
