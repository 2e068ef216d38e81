"""A session for the window tests: an X display, a bus and a home of its own, and what its desktop wants."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

application = None  # the program under test
pictures = None  # where a failed wait leaves what was on screen
screen = "600x1000"  # of the virtual display, in pixels
withPortal = False  # whether the session has the portal that reports how the desktop wants applications to look
emulated = "MIRROWVALE_EMULATED" in os.environ  # whether an emulator runs all this, a good deal slower
patience = 200.0 if emulated else 20.0  # seconds until a condition that does not come true counts as failed

Gio = GLib = None  # there once the bus is
if "MIRROWVALE_TEST_HOME" in os.environ:
    from gi.repository import Gio, GLib


def main():
    """Runs the calling file's tests: PROGRAM PICTURE-FOLDER [unittest's arguments]. The tests need a display
    and a bus from their first import on, so the file starts itself anew once both are there."""
    global application, pictures
    if "MIRROWVALE_TEST_HOME" in os.environ:
        application, pictures = (pathlib.Path(text).resolve() for text in sys.argv[1:3])
        unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)
    with tempfile.TemporaryDirectory() as home:
        environment = {name: value for name, value in os.environ.items()
                       if name in ("PATH", "MIRROWVALE_EMULATED", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")}
        environment.update(LANG="C.UTF-8", TZ="UTC", XDG_RUNTIME_DIR=home, HOME=home, GSETTINGS_BACKEND="keyfile",
                           MIRROWVALE_TEST_HOME=home, PYTHONDONTWRITEBYTECODE="1")
        hideServices(pathlib.Path(home, "dbus-1/services"))
        # The backend that knows the desktop's settings, which a newer portal has to be given by name.
        preferred = pathlib.Path(home, ".config/xdg-desktop-portal/portals.conf")
        preferred.parent.mkdir(parents=True)
        preferred.write_text("[preferred]\ndefault=gtk\n")
        # Without the right to look into every process, which the superuser has.
        right = ["setpriv", "--bounding-set=-sys_ptrace", "--inh-caps=-sys_ptrace"] if os.geteuid() == 0 else []
        display, environment["DISPLAY"] = startDisplay(screen)
        try:
            sys.exit(subprocess.run([*right, "dbus-run-session", "--", sys.executable, *sys.argv], env=environment,
                                    stdin=subprocess.DEVNULL).returncode)
        finally:
            end(display)


def hideServices(folder):
    """Puts services that cannot be started in the place of those of the machine that no test is to start: its keyring
    would ask for a password."""
    folder.mkdir(mode=0o700, parents=True)
    documents = shutil.copy(pathlib.Path(__file__).with_name("documents.py"), folder)
    for name, program in {
        "org.freedesktop.secrets": "/bin/false",
        "org.freedesktop.portal.Documents": f"{sys.executable} {documents}",
        **({} if withPortal else {"org.freedesktop.portal.Desktop": "/bin/false"}),
    }.items():
        folder.joinpath(name + ".service").write_text(f"[D-BUS Service]\nName={name}\nExec={program}\n")


def startDisplay(size):
    """@returns a virtual display and its name"""
    display = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", f"{size}x24", "-nolisten", "tcp"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    with display.stdout as answer:
        return display, ":" + answer.readline().strip()


def end(process):
    process.terminate()
    process.wait()


def callBus(service, path, interface, method, arguments="()", flags=0):
    """A call on the session's bus; the arguments in GVariant's text form."""
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        service, path, interface, method, GLib.Variant.parse(None, arguments, None, None), None, flags, -1).unpack()


def setDesktop(**settings):
    """Gives the desktop these settings alone: the names, and the values in GVariant's text form. A portal that runs
    knows of them then."""
    settings = {name.replace("_", "-"): value for name, value in settings.items()}
    file = pathlib.Path(os.environ["HOME"], ".config/glib-2.0/settings/keyfile")
    file.parent.mkdir(parents=True, exist_ok=True)
    fresh = file.with_suffix(".new")
    fresh.write_text("\n".join(["[org/gnome/desktop/interface]", *map("=".join, settings.items()), ""]))
    fresh.rename(file)
    portal, group = "org.freedesktop.portal.Desktop", "org.gnome.desktop.interface"
    while callBus("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner", f"('{portal}',)")[0]:
        known, = callBus(portal, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "ReadAll",
                         f"(['{group}'],)")
        if all(known[group][name] == GLib.Variant.parse(None, value, None, None).unpack()
               for name, value in settings.items()):
            break
        time.sleep(0.03)
