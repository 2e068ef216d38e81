"""Checks that every translation is complete and in step with the texts in the sources.
    tests/ui/translations.py LUPDATE"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

module = pathlib.Path(__file__).resolve().parents[2] / "ui"
placeholder = re.compile("%L?[0-9n]+")
faults = []

with tempfile.TemporaryDirectory() as folder:
    copies = [shutil.copy(file, folder) for file in sorted(module.glob("translations/*.ts"))]
    subprocess.run([sys.argv[1], "-silent", "-no-obsolete", "-locations", "none", "-I", module.parent, module,
                    "-ts", *copies], check=True)
    for copy in map(pathlib.Path, copies):
        if copy.read_bytes() != (module / "translations" / copy.name).read_bytes():
            faults.append(f"{copy.name} is not in step with the sources: build the target update_translations")
        for message in ElementTree.parse(copy).getroot().iter("message"):
            text, translation = message.findtext("source"), message.find("translation")
            if translation.get("type") or not translation.text:
                faults.append(f"{copy.name} does not translate {text!r}")
            elif sorted(placeholder.findall(text)) != sorted(placeholder.findall(translation.text)):
                faults.append(f"{copy.name} translates {text!r} with other placeholders")

sys.exit("\n".join(faults) or 0)
