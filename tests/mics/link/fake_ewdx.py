#!/usr/bin/env python3
"""A stand-in EW-DX receiver on loopback for the link's tests: the HTTPS control API with basic
authentication, the identity and site records, the event stream and its subscriptions.

    fake_ewdx.py --cert CERT --key KEY --password PW [--port N] [--product P] [--device-name N]
                 [--accepts plain|api|none]

Prints "port N" once listening, then one line per request. Each line on standard input is sent
to every open stream: a JSON object as a message event, "close" as a close event, "end" ends
the streams, "raw TEXT" sends TEXT as it stands.
"""
import argparse
import base64
import json
import queue
import ssl
import sys
import threading
import uuid
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer

streams = []
streams_lock = threading.Lock()


def say(line):
    print(line, flush=True)


def make_handler(options):
    expected = "Basic " + base64.b64encode(("api:" + options.password).encode()).decode()

    class Handler(BaseHTTPRequestHandler):
        protocol_version = "HTTP/1.1"

        def log_message(self, *args):
            pass

        def reply(self, status, body=b"", content_type="application/json"):
            self.send_response(status)
            self.send_header("Content-Type", content_type)
            self.send_header("Content-Length", str(len(body)))
            self.end_headers()
            self.wfile.write(body)

        def authorised(self):
            if self.headers.get("Authorization") == expected:
                return True
            say("rejected " + self.command + " " + self.path)
            self.reply(401, b'{"error":"unauthorised"}')
            return False

        def do_GET(self):
            say("GET " + self.path + " accept=" + str(self.headers.get("Accept")))
            if not self.authorised():
                return
            if self.path == "/api/device/identity":
                self.reply(200, json.dumps({"product": options.product}).encode())
            elif self.path == "/api/device/site":
                self.reply(200, json.dumps({"deviceName": options.device_name}).encode())
            elif self.path == "/api/ssc/state/subscriptions":
                self.stream()
            else:
                self.reply(404, b"{}")

        def do_PUT(self):
            length = int(self.headers.get("Content-Length", "0"))
            body = self.rfile.read(length).decode()
            say("PUT " + self.path + " " + body + " type=" + str(self.headers.get("Content-Type")))
            if not self.authorised():
                return
            paths = json.loads(body)
            prefixed = all(p.startswith("/api/") for p in paths)
            accepted = (options.accepts == "plain" and not prefixed) or (
                options.accepts == "api" and prefixed)
            self.reply(200 if accepted else 400, b"{}")
            if accepted:
                say("subscribed " + str(len(paths)))

        def stream(self):
            self.send_response(200)
            self.send_header("Content-Type", "text/event-stream")
            self.send_header("Cache-Control", "no-cache")
            self.send_header("Connection", "close")
            self.end_headers()
            events = queue.Queue()
            with streams_lock:
                streams.append(events)
            session = str(uuid.uuid4())
            try:
                self.wfile.write(("event: open\ndata: " + json.dumps({"sessionUUID": session}) + "\n\n").encode())
                self.wfile.flush()
                say("stream open " + session)
                while True:
                    item = events.get()
                    if item is None:
                        break
                    self.wfile.write(item.encode())
                    self.wfile.flush()
            except (BrokenPipeError, ConnectionResetError, ssl.SSLError):
                pass
            finally:
                with streams_lock:
                    streams.remove(events)
                say("stream closed")
            self.close_connection = True

    return Handler


def broadcast(item):
    with streams_lock:
        for events in streams:
            events.put(item)


def read_commands():
    for line in sys.stdin:
        line = line.rstrip("\n")
        if line == "close":
            broadcast("event: close\ndata: {}\n\n")
        elif line == "end":
            broadcast(None)
        elif line.startswith("raw "):
            broadcast(line[4:].replace("\\n", "\n"))
        elif line:
            broadcast("data: " + line + "\n\n")
        say("sent " + line[:40])


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--cert", required=True)
    parser.add_argument("--key", required=True)
    parser.add_argument("--password", required=True)
    parser.add_argument("--product", default="EW-DX EM 2 Dante")
    parser.add_argument("--device-name", default="Rack DX")
    parser.add_argument("--accepts", default="plain", choices=["plain", "api", "none"])
    options = parser.parse_args()

    server = ThreadingHTTPServer(("127.0.0.1", options.port), make_handler(options))
    server.daemon_threads = True
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(options.cert, options.key)
    server.socket = context.wrap_socket(server.socket, server_side=True)
    say("port " + str(server.server_address[1]))
    threading.Thread(target=read_commands, daemon=True).start()
    server.serve_forever()


if __name__ == "__main__":
    main()
