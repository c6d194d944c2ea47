"""What the tests of pages have in common: a demo server, the program, a browser."""
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest
from urllib.parse import quote
from xml.sax.saxutils import escape

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.support.ui import WebDriverWait
except ImportError:
    print("skipped: there is no Selenium; ./setup --browser installs it")
    sys.exit(77)
if os.environ.get("CIMHTTP_BROWSER_TESTS") == "no":
    print("skipped: CIMHTTP_BROWSER_TESTS is no")
    sys.exit(77)
if not all(os.path.exists(os.environ.get(program, "")) for program in ("CHROMIUM", "CHROMEDRIVER")):
    print("skipped: there is no Chromium; ./setup --browser installs it")
    sys.exit(77)

CIMHTTP = os.environ["CIMHTTP_PROGRAM"]
DEMO_SERVER = os.environ["CIMHTTP_DEMO_SERVER"]
PATIENCE = 60  # seconds, for what takes a moment

# Texts of a server that must stay texts.
NASTY = ["<script>document.title = 'taken'</script>", "</script><img src=x onerror=\"window.taken = 1\">", "<!-- \"quoted\" 'twice' & more",
         "turned \u202e around", "a bell \u0085 and \ufeff nothing", "]]>", "\\u003cb>", "{\"json\": 1}"]
LONG = "long " * 200000


class DemoServer:
    """A demo server on an address of this process' own."""

    count = 0

    def __init__(self, *options):
        DemoServer.count += 1
        pid = os.getpid()
        self.address = f"127.{91 + DemoServer.count}.{1 + pid // 254 % 254}.{1 + pid % 254}"
        self.process = subprocess.Popen([DEMO_SERVER, "--address", self.address, *options], stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True)
        ready = 0
        while ready < 2:
            line = self.process.stdout.readline()
            if not line:
                raise RuntimeError("the demo server has ended")
            ready += "ready" in line

    def end(self):
        self.process.terminate()
        self.process.communicate(timeout=PATIENCE)


class BrowseProgram:
    """`cimhttp browse` with named connections of its own."""

    def __init__(self, folder, connections, *options):
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(folder), HOME=str(folder), CIMHTTP_PASSWORD="")
        for variable in ("DISPLAY", "WAYLAND_DISPLAY", "CIMHTTP_PASSWORD"):
            self.environment.pop(variable, None)
        for name, arguments in connections.items():
            subprocess.run([CIMHTTP, *arguments, "connection", "add", name], check=True, env=self.environment, timeout=PATIENCE)
        self.process = subprocess.Popen([CIMHTTP, *options, "browse"], stdout=subprocess.PIPE, text=True, env=self.environment)
        self.entrance = ""
        while not self.entrance.startswith("http"):
            line = self.process.stdout.readline()
            if not line:
                raise RuntimeError("the program has ended")
            self.entrance = line.strip()
        self.url = self.entrance.split("/enter")[0]

    def end(self):
        """Ends it as Ctrl-C does, and returns its status."""
        self.process.send_signal(signal.SIGINT)
        self.process.communicate(timeout=PATIENCE)
        return self.process.returncode


def schema(classes, instances, superclasses=None):
    """A schema for the demo server: classes as {name: {property: qualifiers}}, all properties texts and Name the key;
    instances as (class, {property: text}); superclasses by the names of classes."""
    xml = ""
    for name, properties in classes.items():
        declared = ""
        for property_name, description in properties.items():
            key = '<QUALIFIER NAME="Key" TYPE="boolean" OVERRIDABLE="false"><VALUE>TRUE</VALUE></QUALIFIER>' if property_name == "Name" else ""
            declared += (f'<PROPERTY NAME="{property_name}" TYPE="string">{key}<QUALIFIER NAME="Description" TYPE="string"><VALUE>'
                         f"{escape(description)}</VALUE></QUALIFIER></PROPERTY>")
        above = f' SUPERCLASS="{superclasses[name]}"' if superclasses and name in superclasses else ""
        xml += f'<VALUE.OBJECT><CLASS NAME="{name}"{above}>{declared}</CLASS></VALUE.OBJECT>'
    for name, properties in instances:
        values = "".join(f'<PROPERTY NAME="{key}" TYPE="string"><VALUE>{escape(text)}</VALUE></PROPERTY>'
                         for key, text in properties.items())
        xml += f'<VALUE.OBJECT><INSTANCE CLASSNAME="{name}">{values}</INSTANCE></VALUE.OBJECT>'
    return ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><DECLARATION><DECLGROUP>' + xml +
            "</DECLGROUP></DECLARATION></CIM>")


def open_browser(*arguments):
    options = webdriver.ChromeOptions()
    options.binary_location = os.environ["CHROMIUM"]
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--window-size=1200,900", *arguments):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(options=options, service=Service(os.environ["CHROMEDRIVER"]))


class PageTest(unittest.TestCase):
    """One browser and one folder for the tests of a class."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.browser = open_browser()
        cls.addClassCleanup(cls.browser.quit)

    @classmethod
    def path(cls, name):
        return pathlib.Path(cls.folder.name) / name

    def js(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def await_true(self, script, *arguments):
        """Waits until the script returns what is true, and returns that."""
        return WebDriverWait(self.browser, PATIENCE, poll_frequency=0.02).until(lambda _: self.js(script, *arguments))

    def messages(self):
        """What the browser has complained of since the last call."""
        return [entry["message"] for entry in self.browser.get_log("browser") if "favicon" not in entry["message"]]

    def accessible(self):
        """The browser's accessibility tree as (role, name) pairs, in order."""
        nodes = self.browser.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        value = lambda node, key: node.get(key, {}).get("value", "")
        return [(value(node, "role"), value(node, "name")) for node in nodes if not node.get("ignored")]


class BrowsedPageTest(PageTest):
    """The pages of `cls.program`, a BrowseProgram whose connection 'demo' is that of a demo server."""

    def show(self, *parts, wait=True):
        self.browser.get("about:blank")
        self.browser.get(self.program.url + "/#/" + "/".join(quote(part, safe="") for part in parts))
        if wait:
            self.ready()

    def ready(self):
        self.await_true("const main = document.querySelector('main'); return main && main.getAttribute('aria-busy') === 'false' && location.href !== 'about:blank'")

    def title(self):
        return self.js("return document.querySelector('h1').textContent")

    def await_title(self, text):
        self.await_true("return document.querySelector('h1')?.textContent.startsWith(arguments[0])", text)
        self.ready()

    def text(self, selector="main"):
        return self.js("return document.querySelector(arguments[0]).innerText", selector)

    def click(self, selector, text):
        self.assertTrue(self.js("""const found = [...document.querySelectorAll(arguments[0])].find(one => one.textContent.trim() === arguments[1]);
                                   if (found) { found.dispatchEvent(new MouseEvent('click', {bubbles: true, cancelable: true})); } return Boolean(found)""", selector, text),
                        f"there is no {selector} '{text}'")

    def widen(self):
        """Makes room for all columns of a grid, since cells out of sight are not in the document."""
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {"width": 12000, "height": 900, "deviceScaleFactor": 1, "mobile": False})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})

    def rows(self):
        """The rows of the grid that are in the document, in order, as texts."""
        return self.js("""return [...document.querySelectorAll('.grid .row')].sort((a, b) => a.ariaRowIndex - b.ariaRowIndex)
                          .map(row => [...row.children].map(cell => cell.textContent))""")

    def headings(self):
        return self.js("return [...document.querySelectorAll('.grid [role=columnheader] button')].map(one => one.textContent.replace(/ [▴▾]$/, ''))")

    def column(self, name):
        at = self.headings().index(name)
        return [row[at] for row in self.rows()]

    def path_of(self, cls, words=""):
        self.show()
        return self.js("""return fetch('/api/servers/demo/instances?class=' + arguments[0]).then(answer => answer.json())
                          .then(answer => answer.rows.map(row => row.path).find(path => path.includes(arguments[1])))""", cls, words)


# The texts whose contrast with what is behind them is less than 4.5.
CONTRAST = """
const channel = (c) => { c /= 255; return c <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4; };
const luminance = ([r, g, b]) => 0.2126 * channel(r) + 0.7152 * channel(g) + 0.0722 * channel(b);
const numbers = (color) => color.match(/[0-9.]+/g).map(Number);
const behind = (element) => {
    for (; element; element = element.parentElement) {
        const color = numbers(getComputedStyle(element).backgroundColor);
        if (color.length < 4 || color[3] > 0) return color;
    }
    return [255, 255, 255];
};
const found = [];
const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
    const element = walker.currentNode.parentElement;
    if (!walker.currentNode.textContent.trim() || ['script', 'title'].includes(element.tagName.toLowerCase())) continue;
    const [a, b] = [luminance(numbers(getComputedStyle(element).color)), luminance(behind(element))];
    const ratio = (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    if (ratio < 4.5) found.push(element.tagName + ' ' + walker.currentNode.textContent.slice(0, 40) + ' ' + ratio.toFixed(2));
}
return found;
"""
