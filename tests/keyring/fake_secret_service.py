"""A Secret Service (freedesktop.org) that does what it is told. Each line of JSON on standard input changes fields
of its script, as arguments do; it is answered by a line that tells what the service holds and how often it asked.
Bytes are Latin-1 text."""

import json
import os
import sys

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

root = "/org/freedesktop/secrets"
interfaces = {  # methods with the types of their parameters and results, then properties
    "Service": ({"OpenSession": ("s v", "v o"), "CreateCollection": ("a{sv} s", "o o"), "ReadAlias": ("s", "o"),
                 "SearchItems": ("a{ss}", "ao ao"), "Unlock": ("ao", "ao o")}, {"Collections": "ao"}),
    "Collection": ({"CreateItem": ("a{sv} (oayays) b", "o o")},
                   {"Items": "ao", "Label": "s", "Locked": "b", "Created": "t", "Modified": "t"}),
    "Item": ({"GetSecret": ("o", "(oayays)"), "SetSecret": ("(oayays)", "")},
             {"Attributes": "a{ss}", "Label": "s", "Locked": "b", "Created": "t", "Modified": "t"}),
    "Prompt": ({"Prompt": ("s", "")}, {}),
}


def description(name):
    methods, properties = interfaces[name]
    xml = f"<node><interface name='org.freedesktop.Secret.{name}'>"
    for method, directions in methods.items():
        xml += f"<method name='{method}'>" + "".join(
            f"<arg type='{kind}' direction='{direction}'/>"
            for direction, kinds in zip(("in", "out"), directions) for kind in kinds.split()) + "</method>"
    xml += "".join(f"<property name='{key}' type='{kind}' access='read'/>" for key, kind in properties.items())
    return Gio.DBusNodeInfo.new_for_xml(xml + "</interface></node>").interfaces[0]


class Failure(Exception):
    pass


class Service:
    """Objects are known by their paths; an item's path begins with that of its collection."""

    script = {
        "prompt": "grant",  # what a prompt leads to: "grant", "dismiss", both one after the other, the service's
        # "exit", or nothing ("wait")
        "prompts to create": True,  # whether making a collection asks first
        "default": True,  # whether there is a default collection at the start
        "lists default": True,  # whether it is among the collections
        "shows default": True,  # whether it is an object under its own path
        "has alias": True,  # whether its alias is an object, too
        "locks again": False,  # after each use of an item
        "hides": False,  # what is locked: from a search, and what it holds as well; "search": from a search alone
        "silent": [],  # methods that are never answered
        "keeps schema": True,
        "fails": {},  # by method: the error's name, or "exit"
        "forgets": [],  # methods that report success and do nothing, or the "data" of a new item
    }

    def __init__(self, bus):
        self.bus = bus
        self.collections = {}  # by path: whether it is locked
        self.items = {}  # by path: attributes, label, data, time of change
        self.default = None
        self.prompts = {}  # by path: what is done when it is granted
        self.clock = 0
        self.export(root, "Service")

    def tell(self, change):
        """Beside the script's fields: "locked" and new "items" by the name of a collection, and new "data" by the
        account of an item."""
        locked, items, data = (change.pop(name, {}) for name in ("locked", "items", "data"))
        self.script.update(change)
        if self.script["default"] and self.default is None:
            self.makeDefault()
        for name, isLocked in locked.items():
            self.collections[self.makeCollection(name)] = isLocked
        for name, item in items.items():
            self.put(self.makeCollection(name), {"label": "", **item})
        for item in self.items.values():
            item["data"] = data.get(item["attributes"]["account"], item["data"])
        return {"items": [{**item, "collection": path.split("/")[5]} for path, item in self.items.items()],
                "collections": list(self.collections), "prompts": len(self.prompts)}

    def export(self, path, interface):
        self.bus.register_object(path, description(interface), self.called, self.read, None)

    def makeCollection(self, name, isShown=True):
        path = f"{root}/collection/{name}"
        if path not in self.collections:
            self.collections[path] = False
            if isShown:
                self.export(path, "Collection")
        return path

    def makeDefault(self):
        self.default = self.makeCollection("login", self.script["shows default"])
        if self.script["has alias"]:
            self.export(root + "/aliases/default", "Collection")
        return self.default

    def put(self, collection, item):
        self.clock += 1
        path = f"{collection}/{self.clock}"
        self.items[path] = {"changed": self.clock, **item}
        self.export(path, "Item")
        return path

    def ask(self, action):
        path = f"{root}/prompt/{len(self.prompts)}"
        self.prompts[path] = action
        self.export(path, "Prompt")
        return path

    def meant(self, path):
        return self.default if path.endswith("/aliases/default") else path

    def lockedCollection(self, path):
        return next((name for name, locked in self.collections.items() if locked and path.startswith(name)), None)

    def read(self, bus, sender, path, interface, name):
        if path in self.items and self.script["fails"].get("Get"):
            os._exit(0)
        path = self.meant(path)
        item = self.items.get(path, {"attributes": {}})
        values = {"Collections": [p for p in self.collections if self.script["lists default"] or p != self.default],
                  "Items": [] if self.script["hides"] is True and self.lockedCollection(path) else
                           [p for p in self.items if p.startswith(path)], "Attributes": item["attributes"],
                  "Label": item.get("label", ""), "Locked": self.lockedCollection(path) is not None, "Created": 1,
                  "Modified": item.get("changed", 1)}
        return GLib.Variant(interfaces[interface.rpartition(".")[2]][1][name], values[name])

    def called(self, bus, sender, path, interface, method, parameters, invocation):
        path = self.meant(path)
        if method in self.script["silent"]:
            return
        try:
            failure = self.script["fails"].get(method)
            if failure == "exit":
                os._exit(0)
            if failure:
                raise Failure(failure)
            result = getattr(self, method)(path, *parameters.unpack())
            kinds = interfaces[interface.rpartition(".")[2]][0][method][1].replace(" ", "")
            invocation.return_value(GLib.Variant(f"({kinds})", result) if kinds else None)
        except Failure as failure:
            invocation.return_dbus_error(str(failure), "as told")
        if self.script["locks again"] and interface.endswith(("Item", "Collection")):
            self.collections = dict.fromkeys(self.collections, True)

    def OpenSession(self, path, algorithm, value):
        if algorithm != "plain":
            raise Failure("org.freedesktop.DBus.Error.NotSupported")
        return GLib.Variant("s", ""), root + "/session/1"

    def CreateCollection(self, path, properties, alias):
        if not self.script["prompts to create"]:
            return self.makeDefault(), "/"
        return "/", self.ask(lambda: GLib.Variant("o", self.makeDefault()))

    def SearchItems(self, path, attributes):
        found = [path for path, item in self.items.items() if attributes.items() <= item["attributes"].items()]
        locked = [path for path in found if self.lockedCollection(path)]
        return [path for path in found if path not in locked], [] if self.script["hides"] else locked

    def Unlock(self, path, objects):
        locked = set(map(self.lockedCollection, map(self.meant, objects))) - {None}

        def grant():
            self.collections.update(dict.fromkeys(locked, False))
            return GLib.Variant("ao", objects)
        return ([], self.ask(grant)) if locked else (objects, "/")

    def ReadAlias(self, path, name):
        return self.default or "/",

    def requireOpen(self, path):
        if self.lockedCollection(path):
            raise Failure("org.freedesktop.Secret.Error.IsLocked")

    def CreateItem(self, collection, properties, secret, replaces):
        self.requireOpen(collection)
        attributes = properties["org.freedesktop.Secret.Item.Attributes"]
        if not self.script["keeps schema"]:
            attributes.pop("xdg:schema", None)
        if "CreateItem" in self.script["forgets"]:
            return collection + "/0", "/"
        data = "" if "data" in self.script["forgets"] else bytes(secret[2]).decode("latin-1")
        for path in [path for path, item in self.items.items() if item["attributes"] == attributes and replaces]:
            del self.items[path]
        return self.put(collection, {"attributes": attributes, "data": data,
                                     "label": properties["org.freedesktop.Secret.Item.Label"]}), "/"

    def GetSecret(self, path, session):
        self.requireOpen(path)
        return (session, b"", self.items[path]["data"].encode("latin-1"), "text/plain"),

    def SetSecret(self, path, secret):
        self.requireOpen(path)
        if "SetSecret" not in self.script["forgets"]:
            self.clock += 1
            self.items[path].update(data=bytes(secret[2]).decode("latin-1"), changed=self.clock)

    def Prompt(self, path, window):
        def complete(granted):
            result = self.prompts[path]() if granted else GLib.Variant("s", "")
            self.bus.emit_signal(None, path, "org.freedesktop.Secret.Prompt", "Completed",
                                 GLib.Variant("(bv)", (not granted, result)))

        def lead():
            if self.script["prompt"] == "exit":
                os._exit(0)
            if self.script["prompt"] != "wait":
                complete(self.script["prompt"] == "grant")
            if self.script["prompt"] == "dismiss, then grant":
                complete(True)
        GLib.idle_add(lead)


service = Service(Gio.bus_get_sync(Gio.BusType.SESSION))
for argument in sys.argv[1:]:
    service.tell(json.loads(argument))


def listen(stream, condition):
    line = stream.readline()
    if line:
        print(json.dumps(service.tell(json.loads(line))), flush=True)
    return bool(line)


Gio.bus_own_name_on_connection(service.bus, "org.freedesktop.secrets", Gio.BusNameOwnerFlags.NONE,
                               lambda *_: GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, listen), None)
GLib.MainLoop().run()
