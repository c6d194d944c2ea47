"""The pages of `cimhttp browse`, in a browser."""
import http.server
import os
import threading
import time
import unittest

from Pages import CONTRAST, LONG, NASTY, BrowsedPageTest, BrowseProgram, DemoServer, PageTest, open_browser, schema
from selenium.webdriver.common.keys import Keys


class BrowsePageTest(BrowsedPageTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.nasty = cls.path("nasty.xml")
        cls.nasty.write_text(schema(
            {"TEST_Nasty": {"Name": NASTY[1], "Text": NASTY[0]}},
            [("TEST_Nasty", {"Name": f"{i} {text}", "Text": text}) for i, text in enumerate(NASTY)] +
            [("TEST_Nasty", {"Name": "long", "Text": LONG})]))
        cls.server = DemoServer("--schema", os.environ["CIMHTTP_FANS"], "--schema", str(cls.nasty), "--volumes", "3000")
        cls.addClassCleanup(cls.server.end)
        cls.program = BrowseProgram(cls.path("settings"), {
            "demo": ["--host", cls.server.address], "gone": ["--host", "127.90.0.1"],
            "safe": ["--host", cls.server.address, "--tls"]})
        cls.addClassCleanup(cls.program.end)
        cls.browser.get(cls.program.entrance)

    # --- Servers -------------------------------------------------------------------------------------------------------------

    def test_servers_are_shown_with_how_they_are_reached(self):
        self.show()
        self.await_true("return !document.querySelector('main').innerText.includes('asking')")
        cards = self.js("return Object.fromEntries([...document.querySelectorAll('.card')].map(card => [card.getAttribute('aria-label'), card.innerText]))")
        self.assertEqual([name for name in cards if name in ("demo", "gone", "safe")], ["demo", "gone", "safe"])
        self.assertIn("reached", cards["demo"])
        self.assertRegex(cards["demo"], r"\d+ classes, round trip [0-9.]+ ms")
        self.assertIn("nothing listens on port 5988", cards["gone"])
        self.click(".card h2 a", "demo")
        self.await_title("Classes of demo")

    def test_a_server_that_nothing_verifies_is_asked_about_and_known_after_a_yes(self):
        self.show()
        self.await_true("return document.querySelector('[aria-label=safe]')?.innerText.includes('Nothing verifies')")
        self.assertRegex(self.text("[aria-label=safe]"), "SHA-256 +([0-9A-F]{2}:){31}")
        self.click("[aria-label=safe] button", "No")
        self.await_true("return document.querySelector('[aria-label=safe]').innerText.includes('nothing was sent')")
        self.show("s", "safe")
        self.assertIn("nothing verifies the server yet", self.text())
        self.show()
        self.await_true("return document.querySelector('[aria-label=safe]')?.innerText.includes('Nothing verifies')")
        self.click("[aria-label=safe] button", "Trust this certificate from now on")
        self.await_true("return document.querySelector('[aria-label=safe]').innerText.includes('reached')")
        self.assertIn("verified by its certificate, known since", self.text("[aria-label=safe]"))
        self.show("s", "safe", "c", "DEMO_FileSystem")
        self.assertEqual(self.title(), "DEMO_FileSystem")

    def test_a_server_can_be_added_and_its_password_is_not_in_any_page(self):
        self.show()
        self.browser.find_element("css selector", "#adding summary").click()
        fill = lambda name, text: self.browser.find_element("id", "add-" + name).send_keys(text)
        fill("name", "demo")
        fill("host", self.server.address)
        fill("password", "hidden-from-all")
        self.browser.find_element("id", "add-tls").click()
        self.click("#add button", "Add")
        self.await_true("return document.querySelector('#add .failure').textContent.includes('already')")
        self.browser.find_element("id", "add-name").send_keys("-two")
        fill("user", "reader")
        self.click("#add button", "Add")
        self.await_true("return document.querySelector('[aria-label=demo-two]')?.innerText.includes('reached')")
        everything = self.js("return fetch('/api/servers').then(answer => answer.text()).then(text => text + document.documentElement.outerHTML)")
        self.assertIn("demo-two", everything)
        self.assertNotIn("hidden-from-all", everything)
        self.assertEqual(self.js("return document.getElementById('add-password').value"), "")

    # --- Classes -------------------------------------------------------------------------------------------------------------

    def test_a_class_is_found_by_typing_and_its_superclass_by_a_link(self):
        self.show("s", "demo")
        self.browser.find_element("id", "filter").send_keys("filesys")
        self.await_true("return document.querySelectorAll('.tree mark').length === 4")
        names = self.js("return [...document.querySelectorAll('.tree .row')].map(row => row.dataset.name)")
        self.assertIn("CIM_ManagedElement", names)  # which has what was found below it
        self.assertNotIn("DEMO_Process", names)
        self.click(".tree a", "DEMO_FileSystem")
        self.await_title("DEMO_FileSystem")
        self.assertIn("A file system that is mounted", self.text())
        self.click("main a", "CIM_FileSystem")
        self.await_title("CIM_FileSystem")
        self.assertIn("CIM_HostedFileSystem", self.text())  # an association

    def test_the_tree_is_moved_through_by_keys(self):
        self.show("s", "demo")
        self.browser.find_element("id", "filter").send_keys(Keys.ARROW_DOWN)
        current = lambda: self.js("return document.activeElement.dataset.name")
        press = lambda key: self.browser.switch_to.active_element.send_keys(key)
        first = current()
        press(Keys.ARROW_DOWN)
        self.assertNotEqual(current(), first)
        press(Keys.HOME)
        self.assertEqual(current(), first)
        press(Keys.ARROW_RIGHT)
        self.assertEqual(self.js("return document.activeElement.getAttribute('aria-expanded')"), "true")
        press(Keys.ARROW_RIGHT)
        self.assertEqual(self.js("return document.activeElement.getAttribute('aria-level')"), "2")
        press(Keys.ARROW_LEFT)
        self.assertEqual(current(), first)
        press(Keys.ARROW_LEFT)
        self.assertEqual(self.js("return document.activeElement.getAttribute('aria-expanded')"), "false")
        press(Keys.END)
        press(Keys.ENTER)
        self.await_true("return location.hash.includes('/c/')")

    def test_instances_are_counted_when_asked_for(self):
        self.show("s", "demo")
        self.browser.find_element("id", "filter").send_keys("StorageVolume")
        self.await_true("return document.querySelectorAll('.tree mark').length === 2")
        self.js("document.querySelector('[data-name=CIM_StorageVolume]').focus()")
        self.browser.switch_to.active_element.send_keys("c")
        self.await_true("return document.querySelector('[data-name=DEMO_StorageVolume] .count').textContent === '3,000'")
        self.assertEqual(self.text("[data-name=CIM_StorageVolume] .count"), "0")

    def test_a_class_shows_value_maps_units_and_its_mof(self):
        self.show("s", "demo", "c", "DEMO_FileSystem")
        self.browser.find_element("id", "filter").send_keys("enabledstate")
        self.await_true("return document.querySelectorAll('[aria-label=Properties] tbody').length > 0")
        self.js("document.querySelectorAll('[aria-label=Properties] details').forEach(one => one.open = true)")
        self.assertRegex(self.text("[aria-label=Properties]"), r"2\s+Enabled")
        self.js("document.getElementById('mof').open = true")
        self.assertIn("class DEMO_FileSystem : CIM_FileSystem", self.text("#mof pre"))

    # --- Instances -----------------------------------------------------------------------------------------------------------

    def test_instances_are_sorted_by_their_values(self):
        self.widen()
        self.show("s", "demo", "i", "DEMO_StorageVolume")
        self.assertIn("3,000 rows", self.text("#status"))
        for name, first in (("DeviceID", ["volume-000000000", "volume-000002999"]), ("Capacity", None)):
            for turn in (0, 1):
                self.click(".grid [role=columnheader] button", self.js(
                    "return [...document.querySelectorAll('.grid [role=columnheader] button')].find(one => one.textContent.startsWith(arguments[0])).textContent", name))
                if first:
                    self.assertTrue(self.column(name)[0].startswith(first[turn][:7]), self.column(name)[0])
                self.assertEqual(self.js("return document.querySelector('[aria-sort]').getAttribute('aria-sort')"), ["ascending", "descending"][turn])
        numbers = self.js("""return [...document.querySelectorAll('.grid .row')].sort((a, b) => a.ariaRowIndex - b.ariaRowIndex)
                             .map(row => Number(row.children[arguments[0]].title || row.children[arguments[0]].textContent))""", self.headings().index("Capacity"))
        self.assertEqual(numbers, sorted(numbers, reverse=True))

    def test_instances_are_filtered_and_their_columns_chosen(self):
        self.show("s", "demo", "i", "EXAMPLE_Fan")
        self.browser.find_element("id", "filter").send_keys("fan-2")
        self.await_true("return document.querySelectorAll('.grid .row').length === 1")
        self.assertRegex(self.text("#status"), "^1 of [0-9]+ rows")
        self.assertNotIn("InstallDate", self.headings())
        self.js("document.querySelector('main details').open = true")
        self.click("main details label", "InstallDate")
        self.await_true("return [...document.querySelectorAll('.grid [role=columnheader]')].some(one => one.textContent === 'InstallDate')")
        self.show("s", "demo", "i", "EXAMPLE_Fan")
        self.assertIn("InstallDate", self.headings())  # which is remembered

    def test_exact_values_are_in_the_hint(self):
        self.widen()
        self.show("s", "demo", "i", "DEMO_FileSystem")
        self.assertEqual(self.js("return [...document.querySelectorAll('.grid [role=gridcell]')].find(one => one.textContent === 'Enabled').title"), "2")
        self.show("s", "demo", "i", "DEMO_AllTypes")
        self.assertIn("18446744073709551615", self.js("return [...document.querySelectorAll('.grid [role=gridcell]')].map(one => one.textContent + one.title).join()"))

    def test_numbers_that_a_script_cannot_tell_apart_are_sorted_by_their_digits(self):
        self.show()
        order = self.js("""return import('/grid.js').then(({Grid}) => {
            const grid = new Grid('x', () => '', () => {});
            const cell = (text) => ({path: text, class: 'C', cells: [text === 'null' ? null : text]});
            grid.append(['18446744073709551615', 'null', '18446744073709551613', '9', '10', '18446744073709551614'].map(cell));
            grid.setColumns([{name: 'N', type: 'uint64', number: true}], [0]);
            grid.sort(0);
            return grid.order.map(place => grid.rows[place].path);
        })""")
        self.assertEqual(order, ["9", "10", "18446744073709551613", "18446744073709551614", "18446744073709551615", "null"])

    def test_the_table_is_moved_through_by_keys_and_enter_opens(self):
        self.show("s", "demo", "i", "DEMO_StorageVolume")
        self.js("document.querySelector('.grid').focus()")
        press = lambda key: self.browser.switch_to.active_element.send_keys(key)
        row = lambda: self.js("return document.getElementById(document.querySelector('.grid').getAttribute('aria-activedescendant')).getAttribute('aria-rowindex')")
        press(Keys.ARROW_DOWN)
        self.assertEqual(row(), "3")
        press(Keys.END)
        self.assertEqual(row(), "3001")
        self.assertIn("Volume 2999", sum(self.rows(), []))
        press(Keys.PAGE_UP)
        self.assertLess(int(row()), 3000)
        press(Keys.ENTER)
        self.await_title("DEMO_StorageVolume.")

    def test_a_reading_that_is_read_again_marks_what_has_changed(self):
        self.widen()
        self.show("s", "demo", "i", "DEMO_OperatingSystem")
        time.sleep(1.1)  # the server's clock shows seconds; nothing depends on how long this takes
        self.click("main button", "Read again")
        self.await_true("return document.querySelectorAll('.grid .changed').length > 0")
        self.assertTrue(self.js("return [...document.querySelectorAll('.grid .changed')].every(one => one.title.startsWith('before: '))"))

    # --- One instance --------------------------------------------------------------------------------------------------------

    def test_an_instance_leads_to_those_it_is_associated_with(self):
        self.show("s", "demo", "o", self.path_of("DEMO_OperatingSystem"))
        self.assertIn("How healthy the object is", self.text())
        self.await_true("return document.querySelectorAll('.graph .object').length > 5")
        self.js("return [...document.querySelectorAll('.graph .object')].find(one => one.querySelector('text').textContent.startsWith('DEMO_ComputerSystem'))").click()
        self.await_true("return document.querySelector('h1').textContent.includes('DEMO_ComputerSystem.')")
        self.ready()
        self.assertIn("DEMO_FileSystem", self.js("return document.querySelector('.graph').textContent"))
        self.js("history.back()")
        self.await_true("return document.querySelector('h1').textContent.startsWith('DEMO_OperatingSystem.')")

    def test_of_very_many_associated_objects_two_hundred_are_drawn_at_once(self):
        self.show()
        result = self.js("""const objects = [{path: 'C.k="0"', class: 'C', label: 'first', depth: 0, state: 'asked'}];
            const associations = [];
            for (let i = 1; i <= 500; ++i) {
                objects.push({path: `C.k="${i}"`, class: 'C', label: 'o' + i, depth: 1, state: 'not asked'});
                associations.push({class: 'A', path: 'A', from: 0, from_role: 'x', to: i, to_role: 'y'});
            }
            return import('/graph.js').then(({RelatedObjects}) => {
                const related = new RelatedObjects('demo', 'C', new AbortController().signal);
                document.getElementById('place').replaceChildren(related.place);
                related.graph = {objects, associations, complete: true};
                related.draw(1);
                const seen = [];
                for (let i = 0; i < 5; ++i) {
                    seen.push([...document.querySelectorAll('.graph .object text')].map(one => one.textContent));
                    const next = [...document.querySelectorAll('main button')].find(one => one.textContent.startsWith('The next'));
                    if (!next) break;
                    next.click();
                }
                return seen;
            })""")
        self.assertEqual([len(part) for part in result], [200, 200, 103])
        self.assertEqual(len(set(sum(result, []))), 501)

    def test_an_instance_that_is_followed_marks_changes(self):
        self.show("s", "demo", "o", self.path_of("DEMO_OperatingSystem"))
        time.sleep(1.1)  # as above
        self.browser.find_element("id", "follow").click()
        self.await_true("return document.querySelectorAll('.changed .before').length > 0")

    # --- Charts --------------------------------------------------------------------------------------------------------------

    def test_a_number_is_charted_and_its_readings_can_be_had_as_csv(self):
        self.show("s", "demo", "w", "DEMO_NetworkPort")
        self.js("""window.saved = null; const create = URL.createObjectURL; URL.createObjectURL = (blob) => { window.saved = blob; return create(blob); };
                   const select = document.getElementById('property'); select.value = 'ActiveMaximumTransmissionUnit'; select.dispatchEvent(new Event('change'));
                   const every = document.getElementById('interval'); every.value = '1'; every.dispatchEvent(new Event('change'))""")
        self.await_true("return /[3-9] readings/.test(document.getElementById('status').innerText)")
        self.click("main button", "Pause")
        self.assertEqual(self.js("return document.querySelectorAll('.chart canvas').length"), 2)
        newest = self.js("return Object.fromEntries([...document.querySelectorAll('[aria-label=\"Newest values\"] tbody tr')].map(row => [row.cells[1].textContent, row.cells[2].textContent]))")
        self.click("main button", "CSV of what is seen")
        lines = self.js("return window.saved.text()").split("\r\n")
        self.assertEqual(lines[0].split(",")[1:], list(newest))
        self.assertGreaterEqual(len(lines), 4)
        self.assertEqual([f"{int(number):,} B" for number in lines[1].split(",")[1:]], list(newest.values()))
        self.js("window.saved = null")
        self.click("main button", "PNG of what is seen")
        self.await_true("return window.saved !== null")
        self.assertEqual(self.js("return window.saved.slice(0, 8).arrayBuffer().then(bytes => [...new Uint8Array(bytes)])"), [137, 80, 78, 71, 13, 10, 26, 10])
        self.assertEqual(self.messages(), [])

    def test_counters_are_rates_and_one_that_begins_anew_leaves_a_gap(self):
        self.show()
        table, restarts = self.js("""return import('/samples.js').then(({Samples}) => {
            const samples = new Samples(true, 0.001);
            const big = 2n ** 63n;
            [[0, 0n], [2000, 4000n], [3000, 5000n], [4000, -big], [5000, -big + 7000n]].forEach(([time, more]) =>
                samples.add(new Date(time), time, new Map([['a', String(big + more)]])));
            samples.addGap(new Date(6000));
            samples.add(new Date(7000), 7000, new Map([['a', '9']]));
            return [samples.table(['a', 'b']).map(row => row.slice(1)), samples.restarts];
        })""")
        self.assertEqual(table, [[None, None], [2, None], [1, None], [None, None], [7, None], [None, None], [None, None]])
        self.assertEqual(restarts, 1)

    # --- Health --------------------------------------------------------------------------------------------------------------

    def test_health_names_what_is_not_well_and_leads_to_it(self):
        self.show("s", "demo", "h")
        text = self.text()
        self.assertIn("1 critical, 1 warning.", text)
        self.assertLess(text.index("Critical failure"), text.index("Degraded"))
        self.click("main a", "Fan 3")
        self.await_title("EXAMPLE_Fan.")

    # --- Texts of servers ----------------------------------------------------------------------------------------------------

    def assert_nothing_was_taken(self):
        self.assertNotEqual(self.js("return document.title"), "taken")
        self.assertIsNone(self.js("return window.taken || null"))
        self.assertEqual(self.js("return document.querySelectorAll('main img, main script').length"), 0)
        self.assertEqual(self.messages(), [])

    def test_texts_of_the_server_are_texts_whatever_they_are(self):
        self.show("s", "demo", "i", "TEST_Nasty")
        shown = sum(self.rows(), [])
        self.assertIn(NASTY[0], shown)
        self.assertIn(NASTY[1], shown)
        self.assertIn("turned ⟨U+202E⟩ around", shown)
        self.assertLess(max(len(text) for text in shown), 1000)
        self.assert_nothing_was_taken()
        self.show("s", "demo", "c", "TEST_Nasty")
        self.assertIn(NASTY[0], self.text())
        self.assertIn("onerror", self.js("return document.querySelector('#mof pre').textContent"))
        self.assert_nothing_was_taken()
        for words in ("2 <!--", "1 </script>"):
            self.show("s", "demo", "o", self.path_of("TEST_Nasty", words))
            self.assertIn(NASTY[int(words[0])], self.text())
            self.assert_nothing_was_taken()

    def test_a_text_of_a_megabyte_is_cut_with_a_way_to_the_whole(self):
        self.show("s", "demo", "o", self.path_of("TEST_Nasty", "long"))
        self.assertLess(len(self.text()), 20000)
        self.click("main button", "Show all 1,000,000 characters")
        self.assertEqual(self.js("return document.querySelector('.long').textContent.length"), len(LONG))

    # --- What goes wrong -----------------------------------------------------------------------------------------------------

    def test_a_server_that_goes_away_is_told_and_what_came_stays(self):
        server = DemoServer("--volumes", "20")
        ended = []
        self.addCleanup(lambda: ended or server.end())
        self.show()
        self.js("""return fetch('/api/servers', {method: 'POST', body: JSON.stringify({name: 'leaving', host: arguments[0]})}).then(answer => answer.ok)""", server.address)
        self.show("s", "leaving", "i", "DEMO_StorageVolume")
        self.assertIn("20 rows", self.text("#status"))
        server.end()
        ended.append(True)
        self.show("s", "leaving", "c", "DEMO_StorageVolume")
        self.assertIn("nothing listens on port 5988", self.text(".failure"))
        self.assertEqual(self.js("return document.querySelector('.failure').getAttribute('role')"), "alert")
        self.show("s", "nobody", "h")
        self.assertIn("there is no connection 'nobody'", self.text(".failure"))
        self.show("s", "demo", "c", "TEST_Absent")
        self.assertIn("TEST_Absent", self.text(".failure"))

    def test_what_could_not_be_read_is_named_below_every_page(self):
        self.show()
        self.js("""const fetched = window.fetch; window.fetch = (...asked) => fetched(...asked).then(answer => asked[0].includes('/health')
                   ? new Response(JSON.stringify({elements: 1, telling: 1, faults: [], losses: ['a value <b>could</b> not be taken']}), {headers: {'Content-Type': 'application/json'}}) : answer);
                   location.hash = '#/s/demo/h'""")
        self.await_true("return !document.getElementById('losses').hidden")
        self.assertIn("a value <b>could</b> not be taken", self.text("#losses"))
        self.js("location.hash = '#/s/demo'")
        self.await_true("return document.getElementById('losses').hidden")

    # --- Who is let in -------------------------------------------------------------------------------------------------------

    def test_the_address_lets_in_once(self):
        self.browser.get(self.program.entrance)
        self.assertIn("lets in once, and has done so", self.text("body"))

    def test_another_browser_is_not_let_in(self):
        other = open_browser("--host-resolver-rules=MAP attacker.example 127.0.0.1")
        try:
            other.get(self.program.url + "/")
            self.assertIn("Open the address that the program has printed", other.page_source)
            other.get(self.program.url.replace("127.0.0.1", "attacker.example") + "/")
            self.assertIn("This server is not called so", other.page_source)
        finally:
            other.quit()

    def test_a_page_of_another_site_gets_nothing(self):
        class Attack(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(b"<title>attack</title><body></body>")

            def log_message(self, *arguments):
                pass

        attacker = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Attack)
        threading.Thread(target=attacker.serve_forever, daemon=True).start()
        self.addCleanup(attacker.server_close)
        self.addCleanup(attacker.shutdown)
        for host in ("127.0.0.1", "localhost"):  # the cookie is sent to all ports of a host
            self.browser.get(f"http://{host}:{attacker.server_port}/")
            outcome = self.js("""const url = arguments[0];
                const asked = (options) => fetch(url + '/api/servers', {credentials: 'include', ...options}).then(answer => answer.status + answer.type, () => 'refused');
                const framed = new Promise(done => { const frame = document.createElement('iframe'); frame.src = url + '/'; frame.onload = () => {
                    try { done(frame.contentDocument === null ? 'closed' : frame.contentDocument.body.innerHTML); } catch (error) { done('closed'); } }; document.body.append(frame); });
                const script = new Promise(done => { const one = document.createElement('script'); one.src = url + '/dygraph.min.js'; one.onload = () => done('loaded'); one.onerror = () => done('refused'); document.body.append(one); });
                return Promise.all([asked({}), asked({mode: 'no-cors'}), asked({method: 'POST', mode: 'no-cors', body: '{"name":"taken","host":"attacker.example"}'}), framed, script])""", self.program.url)
            self.assertEqual(outcome[0], "refused")
            self.assertIn(outcome[1], ("refused", "0opaque"))
            self.assertEqual(outcome[3:], ["closed", "refused"])
        self.messages()
        self.show()
        self.assertNotIn("taken", self.text())

    def test_nothing_but_the_pages_own_script_runs(self):
        self.show()
        self.js("""document.body.insertAdjacentHTML('beforeend', '<img src=x onerror="window.taken = 1"><style>body{display:none}</style>');
                   const script = document.createElement('script'); script.textContent = 'window.taken = 2'; document.body.append(script)""")
        self.assertIsNone(self.js("return window.taken || null"))
        self.assertNotEqual(self.js("return getComputedStyle(document.body).display"), "none")
        self.assertEqual(self.js("return document.cookie"), "")
        self.assertTrue(any("Content Security Policy" in message for message in self.messages()))

    # --- For everybody -------------------------------------------------------------------------------------------------------

    def test_pages_are_for_keyboards_and_readers(self):
        self.show("s", "demo")
        tree = self.accessible()
        for node in (("navigation", "Pages"), ("main", ""), ("heading", "Classes of demo"), ("searchbox", "Find a class"),
                     ("button", "Ask the server again"), ("tree", "Classes"), ("status", "")):
            self.assertIn(node, tree)
        self.assertTrue(any(role == "treeitem" and name.startswith("CIM_ManagedElement") for role, name in tree))
        self.browser.get(self.browser.current_url)
        self.js("document.activeElement.blur()")
        focused = []
        for _ in range(8):
            self.browser.switch_to.active_element.send_keys(Keys.TAB)
            focused.append(self.js("return document.activeElement.textContent.trim() || document.activeElement.id"))
        self.assertEqual(focused[:7], ["Skip to the content", "cimhttp", "Servers", "demo: classes", "Health", "filter", "Ask the server again"])
        self.assertTrue(focused[7].startswith("▸CIM_"), focused[7])
        self.show("s", "demo", "i", "EXAMPLE_Fan")
        tree = self.accessible()
        for node in (("grid", "Instances of EXAMPLE_Fan"), ("searchbox", "Filter"), ("button", "Read again"), ("columnheader", "Speed")):
            self.assertIn(node, tree)
        self.assertTrue(any(role == "gridcell" and name == "Fan 2" for role, name in tree))
        self.show("s", "demo", "w", "DEMO_NetworkPort")
        tree = self.accessible()
        self.assertTrue(any(name == "Property" and role in ("combobox", "MenuListPopup") for role, name in tree))
        self.show("s", "demo", "o", self.path_of("DEMO_OperatingSystem"))
        tree = self.accessible()
        self.assertIn(("table", "Properties"), tree)
        self.assertIn(("checkbox", "Follow: read again every 5 seconds"), tree)
        self.assertTrue(any(role == "link" and "DEMO_ComputerSystem" in name for role, name in tree))

    def test_the_link_to_the_content_leads_there_and_keeps_the_page(self):
        self.show("s", "demo")
        self.js("document.querySelector('.skip').click()")
        self.assertEqual(self.js("return document.activeElement.id"), "main")
        self.assertEqual(self.title(), "Classes of demo")
        self.assertIn("#/s/demo", self.browser.current_url)

    def test_another_page_takes_the_focus_to_its_heading(self):
        self.show("s", "demo")
        self.click("#pages a", "Health")
        self.await_title("Health of demo")
        self.await_true("return document.activeElement.tagName === 'H1'")

    def test_dark_and_narrow_screens_have_contrast_and_no_sideways_scrolling(self):
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.setEmulatedMedia", {"features": []})
        system = self.path_of("DEMO_OperatingSystem")
        for scheme in ("light", "dark"):
            self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
            self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {"width": 360, "height": 700, "deviceScaleFactor": 1, "mobile": True})
            for parts in ((), ("s", "demo"), ("s", "demo", "c", "DEMO_FileSystem"), ("s", "demo", "i", "EXAMPLE_Fan"),
                          ("s", "demo", "o", system), ("s", "demo", "w", "DEMO_NetworkPort"), ("s", "demo", "h")):
                self.show(*parts)
                self.assertLessEqual(self.js("return document.documentElement.scrollWidth"), 360, parts)
                self.assertEqual(self.js(CONTRAST), [], (scheme, parts))


class ManyRowsTest(PageTest):
    ROWS = 100000

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.server = DemoServer("--volumes", str(cls.ROWS))
        cls.addClassCleanup(cls.server.end)
        cls.program = BrowseProgram(cls.path("settings"), {}, "--host", cls.server.address)
        cls.addClassCleanup(cls.program.end)
        cls.browser.get(cls.program.entrance)

    def test_a_hundred_thousand_rows_are_scrolled_with_few_of_them_in_the_document(self):
        self.await_true("return document.querySelector('h1')?.textContent.startsWith('Classes of ')")  # that of the command line
        self.browser.get(self.program.url + f"/#/s/{self.server.address}/i/DEMO_StorageVolume?properties=DeviceID,Capacity,ElementName")
        self.await_true("return document.querySelectorAll('.grid .row').length > 0")  # while the others still come
        for _ in range(10):
            if self.js("return document.getElementById('status').textContent === arguments[0]", f"{self.ROWS:,} rows"):
                break
            try:
                self.await_true("return document.getElementById('status').textContent === arguments[0]", f"{self.ROWS:,} rows")
            except Exception:  # a slow machine gets more time
                pass
        self.assertEqual(self.js("return document.querySelector('.grid').getAttribute('aria-rowcount')"), str(self.ROWS + 1))
        for place in (0.25, 0.5, 0.999, 1, 0):
            wanted = self.js("""const grid = document.querySelector('.grid'); grid.scrollTop = arguments[0] * (grid.scrollHeight - grid.clientHeight);
                                return Math.floor(grid.scrollTop / 26)""", place)
            self.await_true("return document.getElementById('row-' + arguments[0]) !== null", min(wanted + 5, self.ROWS - 1))
            shown = self.js("""const box = document.querySelector('.grid').getBoundingClientRect();
                               const row = document.elementFromPoint(box.left + 20, box.top + 26 * 4 + 5).closest('.row');
                               return [Number(row.ariaRowIndex) - 2, row.textContent]""")
            self.assertIn(f"Volume {shown[0]}", shown[1])
            self.assertLess(abs(shown[0] - wanted), 6)
            self.assertLess(self.js("return document.querySelectorAll('.grid .row').length"), 100)


if __name__ == "__main__":
    unittest.main()
