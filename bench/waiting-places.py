#!/usr/bin/env python3
"""The watcher's waiting places and its answers before the first pass: how many of 100
requests sent in two writes are answered while 300 slow heads from 300 loopback addresses
hold what places they can, and /healthz's latency while 64 clients fetch /metrics before the
first pass has finished. Loopback only; it ends by itself in about a minute.
Usage: bench/waiting-places.py PATH-TO-LANTERNIC-SERVE"""
import http.server, json, os, socket, subprocess, sys, tempfile, threading, time


def feed_folder():
    """A folder holding big.json, a relay feed of 3,000 components in outage."""
    folder = tempfile.mkdtemp()
    components = [{"id": f"c{i}", "name": f"Component number {i} of the big feed",
                   "status": "major_outage"} for i in range(3000)]
    with open(os.path.join(folder, "big.json"), "w") as out:
        json.dump({"schema": "lanternic.v1", "health": "down", "components": components}, out)
    return folder


serve = os.path.abspath(sys.argv[1])
os.chdir(feed_folder())

class Handler(http.server.SimpleHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith("/slow"):
            time.sleep(25)
        return super().do_GET()
    def log_message(self, *args):
        pass

httpd = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
threading.Thread(target=httpd.serve_forever, daemon=True).start()
base = f"http://127.0.0.1:{httpd.server_address[1]}"
port = 19318

def start(*sources):
    settings = tempfile.mkdtemp() + "/team.conf"
    args = [serve, "--settings", settings, "--listen", f"127.0.0.1:{port}"]
    for s in sources:
        args += ["--source", s]
    proc = subprocess.Popen(args, stderr=subprocess.DEVNULL)
    time.sleep(1)
    return proc

def ask(path, source=None, split=False):
    s = socket.socket()
    if source:
        s.bind((source, 0))
    s.settimeout(5)
    s.connect(("127.0.0.1", port))
    request = f"GET {path} HTTP/1.1\r\nHost: x\r\n\r\n".encode()
    if split:
        s.sendall(request[:10])
        time.sleep(0.02)
        s.sendall(request[10:])
    else:
        s.sendall(request)
    data = b""
    try:
        while True:
            chunk = s.recv(65536)
            if not chunk:
                break
            data += chunk
    except OSError:
        pass
    s.close()
    return data

# 1. Two writes among 300 slow heads.
proc = start(f"Big={base}/big.json")
try:
    time.sleep(2)
    ask("/healthz", "127.0.0.2")  # answered once: an address that behaves
    slow = []
    stop = False
    def slowloris(i):
        address = f"127.0.{1 + i // 250}.{1 + i % 250}"
        while not stop:
            try:
                s = socket.socket()
                s.bind((address, 0))
                s.connect(("127.0.0.1", port))
                s.sendall(b"GET /metrics HTTP/1.1\r\n")
                while not stop:
                    s.sendall(b"X")
                    time.sleep(1)
            except OSError:
                time.sleep(0.05)
    threads = [threading.Thread(target=slowloris, args=(i,), daemon=True) for i in range(300)]
    for t in threads:
        t.start()
    time.sleep(2)
    answered = sum(ask("/healthz", "127.0.0.2", split=True).startswith(b"HTTP/1.1 200")
                   for _ in range(100))
    stop = True
    print(f"two writes among 300 slow heads from 300 addresses: answered {answered} of 100")
finally:
    proc.terminate()
    proc.wait()

# 2. /metrics before the first pass ends, with a source that takes 25 s.
time.sleep(1)
proc = start(f"Big={base}/big.json", f"Slow={base}/slow.json")
try:
    time.sleep(2)
    stop = False
    def hammer():
        while not stop:
            try:
                ask("/metrics")
            except OSError:
                pass
    threads = [threading.Thread(target=hammer, daemon=True) for _ in range(64)]
    for t in threads:
        t.start()
    latencies = []
    for _ in range(100):
        t = time.time()
        ask("/healthz")
        latencies.append((time.time() - t) * 1000)
        time.sleep(0.05)
    stop = True
    latencies.sort()
    print(f"/healthz while 64 clients fetch /metrics before the first pass: "
          f"p50 {latencies[50]:.1f} ms, p99 {latencies[98]:.1f} ms")
finally:
    proc.terminate()
    proc.wait()
    httpd.shutdown()
