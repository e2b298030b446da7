#!/usr/bin/env python3
"""The watcher against hostile clients, on loopback only; each run ends by itself.

  bench/hostile-clients.py SERVE unread N   N clients ask for /metrics and never read it: the
      kernel's TCP memory above idle after 1, 5 and 13 s (answers are dropped after 10 s), and
      the latency of a bystander asking /healthz meanwhile (about 20 s)
  bench/hostile-clients.py SERVE places     how many of 100 requests sent in two writes are
      answered while 300 slow heads from 300 loopback addresses hold what places they can, and
      /healthz's latency while 64 clients fetch /metrics before the first pass (about a minute)

SERVE is the path to lanternic-serve."""
import http.server, json, os, socket, subprocess, sys, tempfile, threading, time

PORT = 19318


class Feeds(http.server.SimpleHTTPRequestHandler):
    """big.json, a relay feed of 3,000 components in outage; /slow answers after 25 s."""

    def do_GET(self):
        if self.path.startswith("/slow"):
            time.sleep(25)
        return super().do_GET()

    def log_message(self, *args):
        pass


def serve_feeds():
    folder = tempfile.mkdtemp()
    components = [{"id": f"c{i}", "name": f"Component number {i} of the big feed",
                   "status": "major_outage"} for i in range(3000)]
    with open(os.path.join(folder, "big.json"), "w") as out:
        json.dump({"schema": "lanternic.v1", "health": "down", "components": components}, out)
    os.chdir(folder)
    httpd = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Feeds)
    threading.Thread(target=httpd.serve_forever, daemon=True).start()
    return httpd, f"http://127.0.0.1:{httpd.server_address[1]}"


def start(serve, *sources):
    args = [serve, "--settings", tempfile.mkdtemp() + "/team.conf", "--listen",
            f"127.0.0.1:{PORT}"]
    for source in sources:
        args += ["--source", source]
    proc = subprocess.Popen(args, stderr=subprocess.DEVNULL)
    for _ in range(100):
        try:
            socket.create_connection(("127.0.0.1", PORT)).close()
            break
        except OSError:
            time.sleep(0.1)
    return proc


def ask(path, source=None, split=False):
    """One request on its own connection, from source, in two writes when split; the answer."""
    s = socket.socket()
    if source:
        s.bind((source, 0))
    s.settimeout(5)
    s.connect(("127.0.0.1", PORT))
    request = f"GET {path} HTTP/1.1\r\nHost: x\r\n\r\n".encode()
    if split:
        s.sendall(request[:10])
        time.sleep(0.02)
        request = request[10:]
    s.sendall(request)
    data = b""
    try:
        while chunk := s.recv(65536):
            data += chunk
    except OSError:
        pass
    s.close()
    return data


def percentiles(latencies):
    latencies.sort()
    return (f"p50 {latencies[len(latencies) // 2]:.1f} ms, "
            f"p99 {latencies[int(len(latencies) * 0.99)]:.1f} ms, max {latencies[-1]:.1f} ms")


def tcp_mem_kb():
    for line in open("/proc/net/sockstat"):
        if line.startswith("TCP:"):
            fields = line.split()
            return int(fields[fields.index("mem") + 1]) * 4  # pages of 4 KiB


def unread(serve, base, clients):
    proc = start(serve, f"Big={base}/big.json")
    try:
        while not ask("/healthz").startswith(b"HTTP/1.1 200"):
            time.sleep(0.2)
        time.sleep(0.5)
        size = len(ask("/metrics"))
        before = tcp_mem_kb()
        held = []
        for _ in range(clients):
            s = socket.socket()
            s.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
            s.connect(("127.0.0.1", PORT))
            s.sendall(b"GET /metrics HTTP/1.1\r\nHost: x\r\n\r\n")
            held.append(s)
        samples, latencies = {}, []
        began = time.time()
        while time.time() - began < 14:
            t = time.time()
            ask("/healthz")
            latencies.append((time.time() - t) * 1000)
            for mark in (1, 5, 13):
                if time.time() - began >= mark and mark not in samples:
                    samples[mark] = tcp_mem_kb() - before
            time.sleep(0.05)
        print(f"/metrics {size} bytes; {clients} clients never reading; TCP memory above idle: "
              + ", ".join(f"{m} s: {kb} KiB" for m, kb in sorted(samples.items()))
              + f"; bystander /healthz {percentiles(latencies)}")
        for s in held:
            s.close()
    finally:
        proc.terminate()
        proc.wait()


def places(serve, base):
    proc = start(serve, f"Big={base}/big.json")
    stop = False
    try:
        time.sleep(2)
        ask("/healthz", "127.0.0.2")  # answered once: an address that behaves

        def slowloris(i):
            address = f"127.0.{1 + i // 250}.{1 + i % 250}"
            while not stop:
                try:
                    s = socket.socket()
                    s.bind((address, 0))
                    s.connect(("127.0.0.1", PORT))
                    s.sendall(b"GET /metrics HTTP/1.1\r\n")
                    while not stop:
                        s.sendall(b"X")
                        time.sleep(1)
                except OSError:
                    time.sleep(0.05)

        for i in range(300):
            threading.Thread(target=slowloris, args=(i,), daemon=True).start()
        time.sleep(2)
        answered = sum(ask("/healthz", "127.0.0.2", split=True).startswith(b"HTTP/1.1 200")
                       for _ in range(100))
        print(f"two writes among 300 slow heads from 300 addresses: answered {answered} of 100")
    finally:
        stop = True
        proc.terminate()
        proc.wait()

    time.sleep(1)
    proc = start(serve, f"Big={base}/big.json", f"Slow={base}/slow.json")
    stop = False
    try:
        time.sleep(2)

        def hammer():
            while not stop:
                try:
                    ask("/metrics")
                except OSError:
                    pass

        for _ in range(64):
            threading.Thread(target=hammer, daemon=True).start()
        latencies = []
        for _ in range(100):
            t = time.time()
            ask("/healthz")
            latencies.append((time.time() - t) * 1000)
            time.sleep(0.05)
        print(f"/healthz while 64 clients fetch /metrics before the first pass: "
              f"{percentiles(latencies)}")
    finally:
        stop = True
        proc.terminate()
        proc.wait()


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[2] not in ("unread", "places"):
        sys.exit(__doc__)
    serve = os.path.abspath(sys.argv[1])
    httpd, base = serve_feeds()
    if sys.argv[2] == "unread":
        unread(serve, base, int(sys.argv[3]) if len(sys.argv) > 3 else 100)
    else:
        places(serve, base)
    httpd.shutdown()
