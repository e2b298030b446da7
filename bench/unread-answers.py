#!/usr/bin/env python3
"""The watcher against clients that ask for /metrics and never read it: the kernel's TCP
memory above idle after 1, 5 and 13 s (answers are dropped after 10 s), and the latency of a
bystander asking /healthz meanwhile. Loopback only; it ends by itself in about 20 s.
Usage: bench/unread-answers.py PATH-TO-LANTERNIC-SERVE CLIENTS"""
import http.server, json, os, socket, subprocess, sys, tempfile, threading, time


def feed_folder():
    """A folder holding big.json, a relay feed of 3,000 components in outage."""
    folder = tempfile.mkdtemp()
    components = [{"id": f"c{i}", "name": f"Component number {i} of the big feed",
                   "status": "major_outage"} for i in range(3000)]
    with open(os.path.join(folder, "big.json"), "w") as out:
        json.dump({"schema": "lanternic.v1", "health": "down", "components": components}, out)
    return folder


serve, clients = os.path.abspath(sys.argv[1]), int(sys.argv[2])
os.chdir(feed_folder())
class Quiet(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *args):
        pass


httpd = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Quiet)
threading.Thread(target=httpd.serve_forever, daemon=True).start()
feed = f"http://127.0.0.1:{httpd.server_address[1]}/big.json"
settings = tempfile.mkdtemp() + "/team.conf"
port = 19317
proc = subprocess.Popen([serve, "--settings", settings, "--listen", f"127.0.0.1:{port}",
                         "--source", f"Big={feed}"], stderr=subprocess.DEVNULL)

def ask(path):
    s = socket.create_connection(("127.0.0.1", port))
    s.sendall(f"GET {path} HTTP/1.1\r\nHost: x\r\n\r\n".encode())
    data = b""
    while True:
        chunk = s.recv(65536)
        if not chunk:
            break
        data += chunk
    s.close()
    return data

def tcp_mem_kb():
    for line in open("/proc/net/sockstat"):
        if line.startswith("TCP:"):
            fields = line.split()
            return int(fields[fields.index("mem") + 1]) * 4  # pages of 4 KiB

try:
    for _ in range(100):
        try:
            if ask("/healthz").startswith(b"HTTP/1.1 200"):
                break
        except OSError:
            pass
        time.sleep(0.2)
    time.sleep(0.5)
    size = len(ask("/metrics"))
    before = tcp_mem_kb()
    held = []
    for _ in range(clients):
        s = socket.socket()
        s.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
        s.connect(("127.0.0.1", port))
        s.sendall(b"GET /metrics HTTP/1.1\r\nHost: x\r\n\r\n")
        held.append(s)
    samples = {}
    latencies = []
    start = time.time()
    while time.time() - start < 14:
        t = time.time()
        ask("/healthz")
        latencies.append((time.time() - t) * 1000)
        elapsed = time.time() - start
        for mark in (1, 5, 13):
            if elapsed >= mark and mark not in samples:
                samples[mark] = tcp_mem_kb() - before
        time.sleep(0.05)
    latencies.sort()
    print(f"/metrics {size} bytes; {clients} clients never reading; TCP memory above idle: "
          + ", ".join(f"{m} s: {kb} KiB" for m, kb in sorted(samples.items()))
          + f"; bystander /healthz p50 {latencies[len(latencies)//2]:.1f} ms,"
          f" p99 {latencies[int(len(latencies)*0.99)]:.1f} ms, max {latencies[-1]:.1f} ms")
    for s in held:
        s.close()
finally:
    proc.terminate()
    proc.wait()
    httpd.shutdown()
