#!/usr/bin/env python3
"""Hostile clients of one loopback address, for the watcher's benchmark.

Usage: attack.py HOST PORT SOURCE-ADDRESS SLOW IDLE SECONDS

Keeps SLOW connections that send a request head one byte a second and IDLE connections that
send nothing open to HOST:PORT from SOURCE-ADDRESS, opening a new one whenever the server
closes one, for SECONDS; then prints how many it opened and how many the server closed.
Bounded in count and time: it only ever talks to the loopback address it is given.
"""
import errno
import selectors
import socket
import sys
import time


def main():
    host, port, source = sys.argv[1], int(sys.argv[2]), sys.argv[3]
    slow, idle, seconds = int(sys.argv[4]), int(sys.argv[5]), float(sys.argv[6])
    if not host.startswith("127.") or not source.startswith("127."):
        sys.exit("attack.py: loopback addresses only")
    selector = selectors.DefaultSelector()
    opened = closed = 0

    def open_one(kind):
        nonlocal opened
        sock = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        sock.setblocking(False)
        sock.bind((source, 0))
        code = sock.connect_ex((host, port))
        if code not in (0, errno.EINPROGRESS):
            sock.close()
            return
        selector.register(sock, selectors.EVENT_READ, kind)
        opened += 1

    for _ in range(idle):
        open_one("idle")
    for _ in range(slow):
        open_one("slow")
    end = time.monotonic() + seconds
    next_drip = time.monotonic()
    while time.monotonic() < end:
        for key, _ in selector.select(timeout=0.1):
            sock = key.fileobj
            try:
                data = sock.recv(65536)
            except OSError:
                data = b""
            if not data:
                selector.unregister(sock)
                sock.close()
                closed += 1
                open_one(key.data)
        if time.monotonic() >= next_drip:
            next_drip += 1.0
            for key in list(selector.get_map().values()):
                if key.data == "slow":
                    try:
                        key.fileobj.send(b"G")
                    except OSError:
                        pass
    print(f"attack opened {opened} closed_by_server {closed}")


main()
