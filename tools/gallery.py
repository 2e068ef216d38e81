"""Takes a picture of every state of the application, in each of many looks, and lays them out on one sheet each:
    tools/gallery.sh [FOLDER]
Also makes the README's picture, or compares the texts on it with today's."""

import itertools
import pathlib
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests" / "app"))

import session
from harness import WindowTest, describe, key, secret, setClipboard, xdotool
from session import setDesktop

tokens = (f"totp/Acme:alice%40acme.example?secret={secret}",
          f"hotp/Brim%20Bank:bob?secret={secret}&counter=1",
          f"totp/Long%20Name%20of%20a%20Company%20That%20Does%20Not%20Fit%20Here:an.address.that.is%40far.too.long.example"
          f"?secret={secret}&digits=8",
          f"totp/%D8%A8%D8%B1%D9%8A%D8%AF:%D9%84%D9%8A%D9%84%D9%89?secret={secret}",
          f"totp/%E6%9D%B1%E4%BA%AC%E9%8A%80%E8%A1%8C:%E5%A4%AA%E9%83%8E?secret={secret}&period=60",
          "totp/?secret=GE&digits=7")
# language, colours, text scale, pixels per point, width in points
looks = [("en", scheme, scale, ratio, 390) for scheme, (scale, ratio)
         in itertools.product(("light", "dark"), ((1, 1), (0.8, 1), (2, 1), (1, 2), (1, 3)))]
looks += [(language, "light", 1, 1, 390) for language in ("ar", "he", "de", "ja", "zh_CN", "fr", "es", "pt_BR")]
looks += [(language, "dark", 2, 1, 320) for language in ("en", "de", "ar")]
looks += [("en", "dark", 1, 1, 1000)]
# What the README shows, from left to right: each look with states of it.
shown = {("en", "dark", 1, 1, 390): ("list",), ("ar", "dark", 1, 1, 390): ("revealed",),
         ("ja", "light", 1, 1, 390): ("list", "error")}
advice = "docs/gallery.png shows another state: tools/gallery.sh --readme"
docs = pathlib.Path(__file__).resolve().parent.parent / "docs"


class Gallery(WindowTest):
    def testEveryLook(self):
        for look in looks:
            with self.subTest(look=look):
                name = self.takeLook(*look)
                self.layOut(self.pages.values(), session.pictures / f"{name}.png")
                print(name, flush=True)

    def testReadmeIsMade(self):
        docs.joinpath("gallery.txt").write_text(self.takeShown(f"PNG8:{docs / 'gallery.png'}"))

    def testReadmeShowsTodaysState(self):
        today = session.pictures / "readme.png"
        self.assertEqual(self.takeShown(today), docs.joinpath("gallery.txt").read_text(), advice)
        difference = subprocess.run(["compare", "-metric", "RMSE", today, docs / "gallery.png", "null:"],
                                    capture_output=True, text=True).stderr
        # A text a line lower is 0.16. Other fonts alone may be 0.133: the rows are higher in the Arabic one of Debian 13.
        arabic = subprocess.run(["fc-match", "--format=%{family}", "sans:lang=ar"], capture_output=True, text=True).stdout
        most = 0.1 if arabic == "DejaVu Sans" else 0.145
        self.assertLess(float(difference.partition("(")[2].rstrip(")")), most, advice)

    def takeShown(self, picture):
        """Makes the README's picture. @returns the texts on it as a screen reader gets them"""
        pages, texts = [], []
        for look, states in shown.items():
            name = self.takeLook(*look)
            pages += [self.pages[state] for state in states]
            texts += [line for state in states for line in (f"{name} {state}", *self.told[state], "")]
        self.layOut(pages, picture, "+dither", "-colors", "64")
        return "\n".join(texts)

    def layOut(self, pages, picture, *options):
        subprocess.run(["montage", *pages, "-tile", "x1", "-geometry", "+10+10", "-background", "#89898d", *options,
                        picture], check=True)

    def takeLook(self, language, scheme, scale, ratio, width):
        """@returns its name"""
        name = f"{language}-{scheme}-text{round(scale * 100)}-{ratio}x-{width}"
        self.look, self.pages, self.told = {"LANGUAGE": language, "LC_ALL": f"{language}.UTF-8",
                                              "QT_SCALE_FACTOR": str(ratio)}, {}, {}
        self.home = pathlib.Path(tempfile.mkdtemp(dir=self.home))
        self.folder = session.pictures / name
        self.folder.mkdir(parents=True, exist_ok=True)
        self.setClock(1111111085)
        setDesktop(color_scheme=f"'prefer-{scheme}'", text_scaling_factor=str(float(scale)), enable_animations="false")
        try:
            self.start()
            xdotool("windowsize", "--sync", self.window, width * ratio, 844 * ratio)
            self.takeStates()
        finally:
            self.stop()
        return name

    def environment(self, home):
        return {**super().environment(home), **self.look}

    def start(self):
        """Without words to wait for, as they are in the language of the look."""
        self.process = subprocess.Popen([session.application], env=self.environment(self.home))
        self.window = self.until(lambda: self.windowOf(self.process))
        self.until(lambda: len(self.buttons()) == 1)
        xdotool("windowfocus", "--sync", self.window)

    def buttons(self):
        return [element for element in self.elements() if element.role in ("push button", "button")]

    def takeStates(self):
        self.take("empty")
        for token in tokens:
            key("ctrl+n")
            self.until(lambda: any(element.focused and element.role == "text" for element in self.elements()))
            setClipboard("otpauth://" + token)
            key("ctrl+v", "Tab", "Return")
            self.until(lambda: not any(element.role == "password text" for element in self.elements()))
        self.take("list")
        key("Down", "Down", "Delete")
        self.take("revealed")
        key("Escape", "ctrl+n")
        self.until(lambda: any(element.focused and element.role == "text" for element in self.elements()))
        self.take("sheet")
        setClipboard("otpauth://totp/x?secret=GE!")
        key("ctrl+v", "Tab", "Return")
        self.until(lambda: any(element.role == "alert" for element in self.elements()))
        self.take("error")

    def take(self, state):
        """Takes the picture once two in a row are the same."""
        path = self.folder / f"{len(self.pages) + 1}-{state}.png"
        before = None
        while True:
            subprocess.run(["import", "-window", self.window, str(path)], check=True)
            now = subprocess.run(["convert", str(path), "rgb:-"], capture_output=True, check=True).stdout
            if now == before:
                break
            before = now
            time.sleep(0.1)
        self.pages[state] = str(path)
        self.told[state] = ["  " + element.text for element in filter(None, map(describe, self.accessibles()))
                            if element.text != element.role]


if __name__ == "__main__":
    session.withPortal = True
    session.screen = "1400x2700"
    session.main()
