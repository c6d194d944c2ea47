"""The page that `collect --html` writes, in a browser."""
import os
import subprocess
import unittest

from Pages import CIMHTTP, CONTRAST, LONG, NASTY, DemoServer, PageTest, schema
from selenium.webdriver.common.keys import Keys

def requested(classes):
    return '<vyx version="1">' + "".join(f'<class name="{name}"/>' for name in classes) + "</vyx>"


class ReportPageTest(PageTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.server = DemoServer("--schema", os.environ["CIMHTTP_FANS"])
        cls.addClassCleanup(cls.server.end)
        cls.page = cls.collect(cls.server, ["DEMO_AllTypes", "DEMO_ComputerSystem", "DEMO_OperatingSystem", "DEMO_FileSystem",
                                            "DEMO_RunningOS", "DEMO_Process", "EXAMPLE_Fan"])

    @classmethod
    def collect(cls, server, classes, status=0):
        document, page = cls.path("classes.xml"), cls.path(f"{len(classes)}-{classes[-1]}.html")
        document.write_text(requested(classes))
        run = subprocess.run([CIMHTTP, "--host", server.address, "collect", str(document), "--html", str(page)],
                             capture_output=True, text=True, timeout=60)
        assert run.returncode == status, run.stderr
        assert run.stdout == "", run.stdout[:200]
        return page

    def show(self, route="", page=None):
        self.browser.get("about:blank")
        self.browser.get((page or self.page).as_uri() + "#" + route)

    def rows(self, inside="main .scroll"):
        return self.js("return [...document.querySelectorAll(arguments[0] + ' tbody tr')].map("
                       "row => [...row.cells].map(cell => cell.textContent))", inside)

    def headings(self):
        return self.js("return [...document.querySelectorAll('main .scroll thead th')].map(cell => cell.textContent)")

    def test_the_overview_has_all_classes_and_what_is_not_well(self):
        self.show()
        text = self.js("return document.body.innerText")
        self.assertIn("http://" + self.server.address, text)
        self.assertIn("7 classes", text)
        rows = self.rows("main .plain")
        self.assertEqual([row for row in rows if row[0] in ("critical", "warning")][0][:3], ["critical", "EXAMPLE_Fan", "Fan 3"])
        self.assertIn(["warning", "EXAMPLE_Fan", "Fan 2", "HealthState is Degraded/Warning, OperationalStatus is Degraded"], rows)
        self.assertTrue(any(row[0] == "DEMO_FileSystem" and int(row[1]) >= 1 for row in rows))
        self.assertEqual(self.messages(), [])

    def test_a_class_is_a_table_that_can_be_sorted(self):
        self.show("c/EXAMPLE_Fan")
        column = self.headings().index("Speed")
        for expected, order in (("ascending", 1), ("descending", -1)):
            self.js("[...document.querySelectorAll('th button')].find(b => b.textContent === 'Speed').click()")
            speeds = [int(row[column].split()[0].replace(",", "")) for row in self.rows() if row[column][:1].isdigit()]
            self.assertEqual(speeds, sorted(speeds)[::order])
            self.assertEqual(self.js("return document.querySelector('th[aria-sort]').getAttribute('aria-sort')"), expected)

    def test_a_class_can_be_filtered(self):
        self.show("c/EXAMPLE_Fan")
        self.browser.find_element("id", "filter").send_keys("fan-2")
        rows = self.rows()
        self.assertEqual(len([row for row in rows if "open" in row]), 1)
        self.assertIn("Fan 2", sum(rows, []))

    def test_columns_without_values_are_there_when_asked_for(self):
        self.show("c/DEMO_FileSystem")
        self.assertNotIn("InstanceID", self.headings())
        self.browser.find_element("id", "all").click()
        self.assertIn("InstanceID", self.headings())

    def test_values_are_shown_as_texts_and_exactly(self):
        self.show("c/DEMO_FileSystem")
        title = self.js("return [...document.querySelectorAll('main tbody td')].find(cell => cell.textContent === 'Enabled').title")
        self.assertEqual(title, "2")
        self.show("c/DEMO_AllTypes")
        self.assertIn("18446744073709551615", sum(self.rows(), []))
        self.assertIn("-9223372036854775808", sum(self.rows(), []))

    def test_an_instance_leads_to_those_it_is_associated_with(self):
        self.show("c/DEMO_RunningOS")
        self.js("[...document.querySelectorAll('main a')].find(a => a.textContent === 'open').click()")
        self.await_true("return document.querySelector('h2').textContent.startsWith('DEMO_RunningOS.')")
        self.js("[...document.querySelectorAll('main a')].find(a => a.textContent.startsWith('DEMO_OperatingSystem.')).click()")
        self.await_true("return document.querySelector('h2').textContent.startsWith('DEMO_OperatingSystem.')")
        self.assertIn("Referred to by", self.js("return document.querySelector('main').innerText"))
        self.js("history.back()")
        self.await_true("return document.querySelector('h2').textContent.startsWith('DEMO_RunningOS.')")

    def test_a_search_goes_through_all_classes(self):
        self.show()
        words = self.browser.find_element("id", "words")
        words.send_keys("fan-3 20")
        self.await_true("return document.querySelector('h2').textContent === 'Search: fan-3 20'")
        self.assertTrue(self.js("return document.activeElement.id === 'words'"))
        words.send_keys(Keys.CONTROL, "a")
        words.send_keys("fan-3")
        self.await_true("return document.querySelector('h2').textContent === 'Search: fan-3'")
        self.assertIn("EXAMPLE_Fan", self.js("return document.querySelector('main h3').textContent"))

    def test_the_page_loads_nothing_and_lets_nothing_else_run(self):
        self.show()
        self.assertEqual(self.js("return performance.getEntriesByType('resource').length"), 0)
        self.js("""document.body.insertAdjacentHTML('beforeend', '<img src=x onerror="window.taken = 1"><style>body{display:none}</style>');
                   const script = document.createElement('script'); script.textContent = 'window.taken = 2'; document.body.append(script)""")
        self.assertIsNone(self.js("return window.taken || null"))
        self.assertNotEqual(self.js("return getComputedStyle(document.body).display"), "none")
        self.assertTrue(any("Content Security Policy" in message for message in self.messages()))

    def test_it_is_a_page_for_keyboards_and_readers(self):
        self.show("c/EXAMPLE_Fan")
        tree = self.accessible()
        for role, name in (("searchbox", "Search all instances"), ("navigation", "Classes"), ("main", ""), ("searchbox", "Filter"),
                           ("checkbox", "Columns without values, too"), ("table", "EXAMPLE_Fan"), ("columnheader", "Speed"),
                           ("button", "Speed"), ("heading", "EXAMPLE_Fan"), ("status", "")):
            self.assertIn((role, name), tree)
        focused = []
        for _ in range(4):
            self.browser.switch_to.active_element.send_keys(Keys.TAB)
            focused.append(self.js("return document.activeElement.textContent || document.activeElement.id"))
        self.assertEqual(focused[:3], ["Skip to the content", "words", "Overview"])

    def test_dark_and_narrow_screens_have_contrast_and_no_sideways_scrolling(self):
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.setEmulatedMedia", {"features": []})
        for scheme in ("light", "dark"):
            self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
            self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                         {"width": 360, "height": 700, "deviceScaleFactor": 1, "mobile": True})
            for route in ("", "c/EXAMPLE_Fan"):
                self.show(route)
                self.assertLessEqual(self.js("return document.documentElement.scrollWidth"), 360)
                self.assertEqual(self.js(CONTRAST), [])

    def test_many_rows_come_in_portions(self):
        server = DemoServer("--volumes", "1200")
        self.addCleanup(server.end)
        self.show("c/DEMO_StorageVolume", self.collect(server, ["DEMO_StorageVolume"]))
        self.assertEqual(len(self.rows()), 500)
        self.js("[...document.querySelectorAll('button')].find(b => b.textContent === 'Show more').click()")
        self.assertEqual(len(self.rows()), 1000)

    def test_texts_of_the_server_are_texts_whatever_they_are(self):
        given = self.path("nasty.xml")
        instances = [("TEST_Nasty", {"Name": f"{i} {text}", "Text": text}) for i, text in enumerate(NASTY)]
        given.write_text(schema({"TEST_Nasty": {"Name": NASTY[1], "Text": NASTY[0]}},
                                instances + [("TEST_Nasty", {"Name": "long", "Text": LONG})]))
        server = DemoServer("--schema", str(given))
        self.addCleanup(server.end)
        page = self.collect(server, ["TEST_Nasty"])
        self.show("c/TEST_Nasty", page)
        shown = sum(self.rows(), [])
        self.assertIn(NASTY[0], shown)
        self.assertIn(NASTY[1], shown)
        self.assertIn("turned \u27e8U+202E\u27e9 around", shown)
        self.assertIn("a bell \u27e8U+0085\u27e9 and \u27e8U+FEFF\u27e9 nothing", shown)
        self.assertNotEqual(self.js("return document.title"), "taken")
        self.assertIsNone(self.js("return window.taken || null"))
        self.assertEqual(self.js("return document.querySelectorAll('main img, main script').length"), 0)
        self.assertLess(max(len(text) for text in shown), 1000)
        self.js("[...document.querySelectorAll('main tbody tr')].find(row => row.textContent.includes('long long')).querySelector('a').click()")
        self.await_true("return document.querySelector('h2').textContent.includes('long')")
        self.assertEqual(max(len(text) for text in sum(self.rows("main"), [])), len(LONG))
        self.assertEqual(self.messages(), [])

    def test_what_could_not_be_read_is_named(self):
        page = self.collect(self.server, ["DEMO_FileSystem", "DEMO_Absent"], status=7)
        self.show("", page)
        text = self.js("return document.querySelector('main').innerText")
        self.assertIn("not complete", text)
        self.assertIn("DEMO_Absent", text)

    def test_all_that_the_demo_server_has_takes_less_than_two_megabytes(self):
        classes = subprocess.run([CIMHTTP, "--host", self.server.address, "classes", "DEMO_*"], capture_output=True, text=True,
                                 check=True, timeout=60).stdout.split()
        self.assertLess(self.collect(self.server, classes).stat().st_size, 2 << 20)


if __name__ == "__main__":
    unittest.main()
