#!/usr/bin/python3
"""The dialog in which a locked gnome-keyring asks for its password, on the session bus.

Prints a line "asked" each time it comes up. A line of standard input answers it: "unlock PASSWORD"
or "refuse". Ends when its standard input does.

The keyring and its dialog agree on a key (Diffie-Hellman, HKDF), under which the password travels.
"""

import base64
import hashlib
import hmac
import os
import subprocess
import sys

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

NAME = "org.gnome.keyring.SystemPrompter"
PATH = "/org/gnome/keyring/Prompter"
CALLBACK = "org.gnome.keyring.internal.Prompter.Callback"
INTERFACES = """<node><interface name="org.gnome.keyring.internal.Prompter">
  <method name="BeginPrompting"><arg type="o" direction="in"/></method>
  <method name="PerformPrompt"><arg type="o" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="s" direction="in"/></method>
  <method name="StopPrompting"><arg type="o" direction="in"/></method>
</interface></node>"""
GROUP = "[sx-aes-1]"
# The group of 1,536 bits of RFC 3526.
PRIME_BYTES = 192
PRIME = int(
    "FFFFFFFFFFFFFFFFC90FDAA22168C234C4C6628B80DC1CD129024E088A67CC74020BBEA63B139B22514A08798E3404DD"
    "EF9519B3CD3A431B302B0A6DF25F14374FE1356D6D51C245E485B576625E7EC6F44C42E9A637ED6B0BFF5CB6F406B7ED"
    "EE386BFB5A899FA5AE9F24117C4B1FE649286651ECE45B3DC2007CB8A163BF0598DA48361C55D39A69163FA8FD24CF5F"
    "83655D23DCA3AD961C62F356208552BB9ED529077096966D670C354E4ABC9804F1746C08CA237327FFFFFFFFFFFFFFFF",
    16)


class Exchange:
    def __init__(self):
        self.private = int.from_bytes(os.urandom(PRIME_BYTES - 1), "big")
        public = pow(2, self.private, PRIME).to_bytes(PRIME_BYTES, "big")
        self.greeting = f"{GROUP}\npublic={base64.b64encode(public).decode()}\n"

    def wrap(self, secret, received):
        """`secret`, for the peer that has sent `received`."""
        fields = dict(line.split("=", 1) for line in received.splitlines() if "=" in line)
        peer = int.from_bytes(base64.b64decode(fields["public"]), "big")
        shared = pow(peer, self.private, PRIME).to_bytes(PRIME_BYTES, "big")
        # As the keyring does it: without the zeros in front, which one number in 256 has.
        extracted = hmac.digest(bytes(32), shared.lstrip(b"\0"), hashlib.sha256)
        key = hmac.digest(extracted, b"\x01", hashlib.sha256)[:16]
        start = os.urandom(16)
        hidden = subprocess.run(["openssl", "enc", "-aes-128-cbc", "-K", key.hex(), "-iv",
                                 start.hex()], input=secret.encode(), check=True,
                                capture_output=True).stdout
        return (f"{self.greeting}secret={base64.b64encode(hidden).decode()}\n"
                f"iv={base64.b64encode(start).decode()}\n")


class PasswordDialog:
    def __init__(self, bus):
        self.bus = bus
        self.exchange = Exchange()
        self.asked = None
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces[0]
        bus.register_object(PATH, interface, self.called, None, None)

    def called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        callback, *rest = arguments.unpack()
        invocation.return_value(None)
        if method == "BeginPrompting":
            self.tell(sender, callback, "PromptReady",
                      GLib.Variant("(sa{sv}s)", ("", {}, self.exchange.greeting)))
        elif method == "PerformPrompt":
            self.asked = (sender, callback, rest[-1])
            print("asked", flush=True)
        else:
            self.tell(sender, callback, "PromptDone", None)

    def answer(self, line):
        sender, callback, received = self.asked
        word, _, password = line.partition(" ")
        answer = ("no", {}, self.exchange.greeting)
        if word == "unlock":
            answer = ("yes", {}, self.exchange.wrap(password, received))
        self.tell(sender, callback, "PromptReady", GLib.Variant("(sa{sv}s)", answer))

    def tell(self, name, path, method, arguments):
        self.bus.call(name, path, CALLBACK, method, arguments, None, Gio.DBusCallFlags.NONE, -1,
                      None, None)


def main():
    loop = GLib.MainLoop()
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    dialog = PasswordDialog(bus)
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, None, None)

    def read(*_):
        line = sys.stdin.readline()
        if not line:
            loop.quit()
            return False
        dialog.answer(line.rstrip("\n"))
        return True

    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, read)
    loop.run()


if __name__ == "__main__":
    main()
