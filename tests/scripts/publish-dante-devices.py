#!/usr/bin/python3
"""Announces COUNT fake Dante devices at once through avahi-daemon's D-Bus interface, committed
together, and keeps them announced until killed. The system bus is the one named by
DBUS_SYSTEM_BUS_ADDRESS.

    publish-dante-devices.py COUNT PREFIX     devices "PREFIX-1" ... "PREFIX-COUNT"
"""

import signal
import sys

import dbus

AVAHI = "org.freedesktop.Avahi"


def main():
    count, prefix = int(sys.argv[1]), sys.argv[2]
    bus = dbus.SystemBus()
    server = dbus.Interface(bus.get_object(AVAHI, "/"), AVAHI + ".Server")
    groups = []
    for n in range(1, count + 1):
        # The daemon takes at most 32 services in one entry group.
        if (n - 1) % 32 == 0:
            groups.append(dbus.Interface(bus.get_object(AVAHI, server.EntryGroupNew()),
                                         AVAHI + ".EntryGroup"))
        txt = [dbus.ByteArray(s.encode()) for s in
               ("model=DX168", "mf=Allen & Heath", "router_vers=4.2.%d" % n)]
        groups[-1].AddService(-1, -1, dbus.UInt32(0), "%s-%d" % (prefix, n), "_netaudio-arc._udp",
                         "", "", dbus.UInt16(4440), dbus.Array(txt, signature="ay"))
    for group in groups:
        group.Commit()
    print("committed %d" % count, flush=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    signal.pause()


if __name__ == "__main__":
    main()
