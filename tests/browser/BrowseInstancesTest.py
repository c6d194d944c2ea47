"""What the pages of `cimhttp browse` do with the instances that they show: tables, one instance, drawings, charts."""
import os
import unittest

from Pages import CONTRAST, BrowsedPageTest, BrowseProgram, DemoServer, schema
from selenium.webdriver.common.keys import Keys

WORDS = "a word, " * 18
TURNED = "turned \u202e around"

# Answers of a server come from the test: `window.answers` has functions by what is asked; what has none is asked of the program.
ANSWERS = """
window.answers = {};
const fetched = window.fetch;
const json = (content) => new Response(JSON.stringify(content), {headers: {'Content-Type': 'application/json'}});
window.fetch = async (asked, options) => {
    const found = Object.entries(window.answers).find(([part]) => String(asked).includes(part));
    if (!found) { return fetched(asked, options); }
    const answer = await found[1](String(asked), () => fetched(asked, options));
    return answer instanceof Response ? answer : json(answer);
};
"""


class BrowseInstancesTest(BrowsedPageTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        document = cls.path("texts.xml")
        document.write_text(schema({"TEST_Text": {"Name": "a name", "Text": "a text"}}, [
            ("TEST_Text", {"Name": "lines", "Text": "one line\nand <b>another</b>"}), ("TEST_Text", {"Name": "long", "Text": WORDS}),
            ("TEST_Text", {"Name": TURNED, "Text": TURNED})]))
        cls.server = DemoServer("--schema", os.environ["CIMHTTP_FANS"], "--schema", str(document), "--volumes", "5000")
        cls.addClassCleanup(cls.server.end)
        cls.program = BrowseProgram(cls.path("settings"), {"demo": ["--host", cls.server.address]})
        cls.addClassCleanup(cls.program.end)
        cls.browser.get(cls.program.entrance)

    def setUp(self):
        self.messages()  # those of the tests before

    def own_server(self, name, *options):
        """A connection to a server that a test may end."""
        server = DemoServer(*options)
        ended = []
        self.show()
        self.assertTrue(self.js("return fetch('/api/servers', {method: 'POST', body: JSON.stringify({name: arguments[0], host: arguments[1]})}).then(answer => answer.ok)",
                                name, server.address))

        def end():
            if not ended:
                ended.append(True)
                server.end()
        self.addCleanup(end)
        return end

    def answered(self, script, *arguments):
        """Begins at a page that asks nothing, with answers of the test."""
        self.show()
        self.js(ANSWERS)
        self.js(script, *arguments)

    def go(self, address):
        self.js("location.hash = arguments[0]", address)

    def press(self, *keys):
        for key in keys:
            self.browser.switch_to.active_element.send_keys(key)

    def cells(self, name):
        return self.js("return [...document.querySelectorAll('.grid [role=gridcell]')].filter(one => one.ariaColIndex === arguments[0])"
                       ".map(one => [one.textContent, one.title])", str(self.headings().index(name) + 1))

    def current(self):
        return self.js("const cell = document.getElementById(document.querySelector('.grid').getAttribute('aria-activedescendant'));"
                       "return cell && [Number(cell.ariaRowIndex), Number(cell.ariaColIndex)]")

    # --- A table of instances ------------------------------------------------------------------------------------------------

    def test_a_text_that_may_not_fit_into_its_cell_is_whole_in_the_hint(self):
        self.show("s", "demo", "i", "TEST_Text")
        texts = dict(self.cells("Text"))
        self.assertEqual(texts["one line ↵ and <b>another</b>"], "one line\nand <b>another</b>")
        self.assertEqual(texts[WORDS], WORDS)
        self.assertIn("turned ⟨U+202E⟩ around", texts)
        self.assertEqual(dict(self.cells("Name"))["long"], "")

    def test_columns_out_of_sight_are_drawn_when_they_come_into_it(self):
        self.show("s", "demo", "i", "DEMO_StorageVolume")
        columns = len(self.headings())
        drawn = lambda: self.js("return [...document.querySelector('.grid .row').children].map(one => Number(one.ariaColIndex))")
        self.assertEqual(self.js("return Number(document.querySelector('.grid').ariaColCount)"), columns)
        self.assertEqual(drawn()[0], 1)
        self.assertLess(len(drawn()), columns)
        self.js("const grid = document.querySelector('.grid'); grid.scrollLeft = grid.scrollWidth")
        self.await_true("return [...document.querySelectorAll('.grid .row')].every(row => row.lastChild.ariaColIndex === arguments[0])", str(columns))
        self.assertNotIn(1, drawn())
        for i in (1, -2):  # each cell below its heading
            self.assertTrue(self.js("""const cell = document.querySelector('.grid .row').children.item(arguments[0] < 0 ? document.querySelector('.grid .row').children.length + arguments[0] : arguments[0]);
                                       const head = document.querySelector('.grid .head').children[cell.ariaColIndex - 1];
                                       return Math.abs(cell.getBoundingClientRect().left - head.getBoundingClientRect().left) < 1""", i))

    def test_keys_reach_each_cell_and_sort_by_its_column(self):
        self.show("s", "demo", "i", "DEMO_StorageVolume")
        self.js("document.querySelector('.grid').focus()")
        columns = len(self.headings())
        self.press(Keys.ARROW_DOWN, Keys.ARROW_RIGHT)
        self.assertEqual(self.current(), [3, 2])
        self.press(*[Keys.ARROW_RIGHT] * columns)
        self.assertEqual(self.current(), [3, columns])
        self.assertTrue(self.js("""const cell = document.querySelector('.grid .current').getBoundingClientRect();
                                   const grid = document.querySelector('.grid').getBoundingClientRect();
                                   return cell.left >= grid.left && cell.left < grid.right"""))
        self.press("s")
        self.assertEqual(self.js("return Number(document.querySelector('[aria-sort=ascending]').ariaColIndex)"), columns)
        self.press("s", Keys.ARROW_LEFT, Keys.ARROW_UP)
        self.assertIsNotNone(self.js("return document.querySelector('[aria-sort=descending]')"))
        self.assertEqual(self.current(), [2, columns - 1])

    def test_the_way_back_leads_to_the_table_as_it_was_left(self):
        self.show("s", "demo", "i", "DEMO_StorageVolume")
        self.browser.find_element("id", "filter").send_keys("volume-000499")
        self.await_true("return document.getElementById('status').textContent.startsWith('10 of ')")
        for _ in range(2):
            self.click(".grid [role=columnheader] button", self.js(
                "return [...document.querySelectorAll('.grid [role=columnheader] button')].find(one => one.textContent.startsWith('DeviceID')).textContent"))
        self.assertTrue(self.column("DeviceID")[0].startswith("volume-0004999"), self.column("DeviceID")[0])
        self.js("document.querySelector('.grid').focus()")
        self.press(Keys.ARROW_DOWN, Keys.ARROW_DOWN, Keys.ENTER)
        self.await_title("DEMO_StorageVolume.")
        self.js("history.back()")
        self.await_title("Instances of ")
        self.assertEqual(self.js("return document.getElementById('filter').value"), "volume-000499")
        self.assertTrue(self.column("DeviceID")[0].startswith("volume-0004999"), self.column("DeviceID")[0])
        self.assertEqual(self.current(), [4, 1])

    def test_a_filter_of_many_rows_lets_the_page_go_on_in_between(self):
        self.show()
        order, turns, stale = self.js("""return import('/grid.js').then(async ({Grid}) => {
            const grid = new Grid('x', () => '', () => {});
            grid.append([...Array(50000).keys()].map(i => ({path: 'p' + i, class: 'C', cells: [String(i)]})));
            grid.setColumns([{name: 'N', type: 'string'}], [0]);
            let looked = 0, turns = 0;
            const now = performance.now;
            performance.now = () => (looked += 30); // each look at the clock finds that much time gone
            const later = window.setTimeout;
            window.setTimeout = (go) => { ++turns; return later(go); };
            const first = grid.filter('no row has this');
            const second = grid.filter('4999');
            const outcome = [await first, await second];
            performance.now = now;
            window.setTimeout = later;
            return [grid.order.map(place => grid.rows[place].path), turns, outcome];
        })""")
        self.assertEqual(order, [f"p{i}" for i in range(50000) if "4999" in str(i)])
        self.assertGreater(turns, 10)
        self.assertEqual(stale, [False, True])

    def volumes(self, *rows, last=True, columns=True):
        """An answer with rows (name, size) of a class that is nowhere."""
        answer = {"reading": None if last else "7", "time": 1.0,
                  "rows": [{"path": f'TEST_Made.Name="{name}"', "class": "TEST_Made", "cells": [name, *size]} for name, *size in rows]}
        if columns:
            answer["columns"] = [{"name": name, "type": "string", "array": False, "key": name == "Name", "number": False, "counter": False, "unit": "", "times": 1}
                                 for name in (columns if isinstance(columns, tuple) else ("Name", "Size"))]
        return answer

    def test_changes_are_told_apart_by_the_names_of_columns(self):
        self.answered("let turn = 0; window.answers['class=TEST_Made'] = () => arguments[turn++]",
                      self.volumes(("a", "1"), ("b", "2"), ("c", "3"), ("x",)),
                      self.volumes(("1", "a"), ("5", "b"), ("2", "d"), (0, "x"), columns=("Size", "Name")))
        # The second answer has its columns the other way round; its paths have to be those of the first.
        self.js("""const made = window.answers['class=TEST_Made'];
                   window.answers['class=TEST_Made'] = () => { const answer = made();
                       if (answer.columns[0].name === 'Size') { answer.rows.forEach(row => { row.path = `TEST_Made.Name="${row.cells[1]}"`; }); } return answer; }""")
        self.go("#/s/demo/i/TEST_Made")
        self.await_title("Instances of TEST_Made")
        self.click("main button", "Read again")
        self.await_true("return document.getElementById('status').textContent.includes('since')")
        self.assertEqual(self.text("#status"), "4 rows; since the last reading 1 value has changed, 1 row is new, 1 row is gone")
        self.assertEqual(self.js("return [...document.querySelectorAll('.grid .changed')].map(one => [one.textContent, one.title])"), [["5", "before: 2"]])

    def test_a_reading_again_that_fails_leaves_the_rows_of_the_one_before(self):
        end = self.own_server("leaving", "--volumes", "20")
        self.show("s", "leaving", "i", "DEMO_StorageVolume")
        self.assertEqual(self.text("#status"), "20 rows")
        end()
        self.click("main button", "Read again")
        self.await_true("return document.querySelector('.failure') !== null")
        self.assertIn("nothing listens on port 5988", self.text(".failure"))
        self.assertEqual(self.text("#status"), "20 rows, of the reading before")
        self.assertEqual(len(self.rows()), 20)

    def test_rows_that_came_before_the_server_went_away_stay(self):
        end = self.own_server("breaking", "--volumes", "30000")
        self.answered("""window.held = new Promise(go => { window.go = go; });
                         window.answers['reading='] = async (asked, ask) => { await window.held; return ask(); }""")
        self.go("#/s/breaking/i/DEMO_StorageVolume?properties=DeviceID,Capacity")
        self.await_true("return document.querySelectorAll('.grid .row').length > 0")
        end()
        self.js("window.go()")
        self.await_true("return document.querySelector('.failure') !== null")
        self.assertRegex(self.text("#status"), r"^[1-9][0-9,]* rows; not all could be read$")
        self.assertGreater(len(self.rows()), 10)
        self.assertEqual(self.js("return document.querySelector('.failure').getAttribute('role')"), "alert")

    def test_a_reading_is_stopped_at_once_also_while_the_server_does_not_answer(self):
        self.answered("""window.answers['reading='] = (asked, ask) => new Promise(() => {}); window.ended = null;
                         const answering = window.fetch;
                         window.fetch = (asked, options) => {
                             if (String(asked).endsWith('/readings')) { window.ended = options.body; }
                             return Promise.race([answering(asked, options), new Promise((_, refuse) =>
                                 options?.signal?.addEventListener('abort', () => refuse(new DOMException('', 'AbortError'))))]);
                         }""")
        self.go("#/s/demo/i/DEMO_StorageVolume?properties=DeviceID")
        self.await_true("return document.querySelectorAll('.grid .row').length > 0")
        self.assertIn("so far", self.text("#status"))
        self.click("main button", "Stop")
        self.await_true("return document.getElementById('status').textContent.endsWith(' rows; stopped before the end')")
        self.await_true("return window.ended !== null")
        self.assertIn('"end"', self.js("return window.ended"))
        self.assertIsNone(self.js("return document.querySelector('.failure')"))

    def test_a_column_name_of_a_server_turns_nothing_round(self):
        self.answered("window.answers['class=TEST_Made'] = () => arguments[0]", self.volumes(("a", "1"), ("b", "2"), columns=("Name", "Si\u202eze")))
        self.go("#/s/demo/i/TEST_Made")
        self.await_title("Instances of TEST_Made")
        self.assertEqual(self.headings(), ["Name", "Si⟨U+202E⟩ze"])

    # --- One instance --------------------------------------------------------------------------------------------------------

    def follow(self, *answers):
        """Shows an instance with these properties; readings that follow get the next answers, and wait when there are no more."""
        self.answered("""let turn = 0; const answers = arguments[0];
                         window.answers['/instance?'] = () => { const answer = answers[turn++]; if (answer === undefined) { return new Promise(() => {}); } if (answer.error) { return new Response(JSON.stringify(answer), {status: 502, headers: {'Content-Type': 'application/json'}}); } return answer; };
                         window.answers['/class?'] = () => ({class: {name: 'TEST_Made', superclass: null, qualifiers: {}, methods: [], properties: [{name: 'Speed', type: 'uint64', array: false, qualifiers: {Description: 'How fast.', Units: 'Revolutions per Minute'}}]}, mof: ''});
                         window.answers['/related?'] = () => ({objects: [{path: 'P', class: 'C', label: 'P', depth: 0, state: 'asked'}], associations: [], complete: true});
                         const later = window.setTimeout; window.setTimeout = (go, time) => later(go, time === 5000 ? 1 : time)""",
                      [answer if "error" in answer else {"path": "P", "class": "TEST_Made", "properties": answer} for answer in answers])
        self.go("#/s/demo/o/P")
        self.await_title("P")

    def value(self, name):
        return self.js("return [...document.querySelectorAll('[aria-label=Properties] > tbody > tr')].find(row => row.cells[0].textContent === arguments[0])?.cells[1].innerText", name)

    def test_objects_within_an_instance_are_tables_within_its_table(self):
        inner = {"class": "TEST_In<b>ner", "properties": {"Deep": {"class": "TEST_Deep", "properties": {"Text": "x" * 5000}}, "Big": "18446744073709551615", "None": None, "List": [1, "two"]}}
        self.follow({"Outer": {"type": "string", "value": "instance of", "text": "instance of", "object": inner}})
        self.assertEqual(self.js("return document.querySelectorAll('[aria-label=Properties] table table').length"), 1)
        text = self.value("Outer")
        self.assertIn("TEST_In<b>ner", text)
        self.assertRegex(text, r"Big\s+18446744073709551615\s")
        self.assertRegex(text, r"None\s+null")
        self.assertIn("Show all 5,000 characters", text)
        self.assertLess(len(text), 3000)

    def test_a_followed_instance_keeps_what_is_opened_and_marks_what_changes(self):
        number = lambda value: {"type": "uint64", "value": value, "text": str(value)}
        long = {"type": "string", "value": "long " * 1000, "text": "long " * 1000}
        names = lambda *texts: {"type": "string", "value": list(texts), "text": list(texts)}
        first = {"Speed": number(3), "Text": long, "Names": names("a, b")}
        changed = {"Speed": number(4), "Text": long, "Names": names("a", "b")}
        self.follow(first, first, changed)
        self.assertIn("How fast.", self.text("[aria-label=Properties]"))
        self.assertIn("Unit: Revolutions per Minute", self.text("[aria-label=Properties]"))
        self.click("main button", "Show all 5,000 characters")
        self.js("window.opened = document.activeElement")
        self.assertEqual(self.js("return window.opened.textContent.length"), 5000)
        self.browser.find_element("id", "follow").click()
        self.await_true("return document.querySelectorAll('.changed').length === 2")
        self.assertRegex(self.value("Speed"), r"4\s+before: 3")
        self.assertRegex(self.value("Names"), r"before:\s+(0\. *)?a, b")
        self.assertTrue(self.js("return window.opened.isConnected"))
        self.follow(first, changed, changed)
        self.browser.find_element("id", "follow").click()
        self.await_true("return document.querySelector('main').innerText.includes('0 values changed')")
        self.assertEqual(self.value("Speed"), "4")
        self.assertEqual(self.js("return document.querySelectorAll('.changed').length"), 0)
        self.assertIn("2 values changed", self.js("return document.getElementById('said').textContent"))  # changes alone are said

    def test_a_followed_instance_that_does_not_answer_says_since_when(self):
        first = {"Speed": {"type": "uint64", "value": 3, "text": "3"}}
        self.follow(first, {"error": "the server <i>went</i> away", "kind": "connection"})
        self.browser.find_element("id", "follow").click()
        self.await_true("return document.querySelector('.bar .failure') !== null")
        said = self.text(".bar .failure")
        self.assertRegex(said, "^no reading since [0-9:]{8}: the server <i>went</i> away$")
        self.assertEqual(self.value("Speed"), "3")
        self.assertEqual(self.js("return document.getElementById('said').textContent"), said)

    def test_the_title_of_a_long_path_is_cut(self):
        path = 'TEST_Made.Name="' + "k" * 5000 + '"'
        instance = {"Name": {"type": "string", "value": "k" * 5000, "text": "k" * 5000}}
        self.follow(instance, instance)
        self.go("#/s/demo/o/" + path)
        self.await_title("TEST_Made.")
        self.assertLess(len(self.title()), 400)
        self.assertIn("Show all 5,000 characters", self.value("Name"))

    # --- What hangs together -------------------------------------------------------------------------------------------------

    def graph(self):
        """300 objects at the first one, and at each of them another."""
        one = lambda name, depth: {"path": f'TEST_Made.Name="{name}"', "class": "TEST_Made", "label": name, "depth": depth, "state": "asked"}
        association = lambda start, end: {"class": "TEST_Joins", "path": "A", "from": start, "from_role": "x", "to": end, "to_role": "y"}
        return {"objects": [one("first", 0), *[one(f"near {i:03}", 1) for i in range(300)], *[one(f"far {i:03}", 2) for i in range(300)]],
                "associations": [*[association(0, i + 1) for i in range(300)], *[association(i + 1, i + 301) for i in range(300)]], "complete": False}

    def test_a_drawing_tells_what_leads_out_of_it_and_that_there_is_more(self):
        self.follow({"Name": {"type": "string", "value": "first", "text": "first"}})
        self.js("window.answers['/related?'] = () => arguments[0]", self.graph())
        self.js("const depth = document.getElementById('depth'); depth.value = '2'; depth.dispatchEvent(new Event('change'))")
        self.await_true("return document.querySelectorAll('.graph .object').length > 1")
        self.assertIn("600 objects, 600 associations; there are more, which were not read", self.text())
        self.assertEqual(self.js("return document.querySelectorAll('.graph .object').length"), 200)
        self.assertIn("199 associations lead to objects that are drawn with others", self.text())
        self.click("main button", "The next 199")
        self.assertIn("drawn: 200 to 398", self.text())

    def test_an_answer_to_an_older_question_is_not_drawn(self):
        self.follow({"Name": {"type": "string", "value": "first", "text": "first"}})
        self.js("""const graph = arguments[0]; const few = {...graph, objects: graph.objects.slice(0, 2), associations: graph.associations.slice(0, 1), complete: true};
                   window.answers['/related?'] = (asked) => asked.includes('depth=2') ? new Promise(done => { window.late = () => done(graph); }) : few;
                   const depth = document.getElementById('depth');
                   for (const value of ['2', '3']) { depth.value = value; depth.dispatchEvent(new Event('change')); }""", self.graph())
        self.await_true("return document.querySelectorAll('.graph .object').length === 2")
        self.js("window.late(); return new Promise(done => setTimeout(done, 50))")
        self.assertEqual(self.js("return document.querySelectorAll('.graph .object').length"), 2)

    def test_a_drawing_is_gone_through_by_keys(self):
        self.show("s", "demo", "o", self.path_of("DEMO_OperatingSystem"))
        self.await_true("return document.querySelectorAll('.graph .object').length > 5")
        self.js("document.querySelector('.drawing').focus()")
        self.press(Keys.TAB, Keys.TAB)
        self.assertTrue(self.js("return document.activeElement.matches('.graph .object')"))
        self.press(Keys.ENTER)
        self.await_true("return document.querySelector('h1').textContent !== '…' && !document.querySelector('h1').textContent.startsWith('DEMO_OperatingSystem')")

    # --- Charts --------------------------------------------------------------------------------------------------------------

    COLUMNS = [{"name": "Name", "type": "string", "array": False, "key": True, "number": False, "counter": False, "unit": "", "times": 1},
               {"name": "Octets", "type": "uint64", "array": False, "key": False, "number": True, "counter": True, "unit": "B", "times": 1}]

    def watch(self, readings, names=("a",)):
        """A chart of the counters of TEST_Made; readings of numbers by turn, None where the server does not answer. Time goes on as fast as the page asks."""
        self.answered("""const [columns, readings, names] = arguments;
            window.saved = null; const create = URL.createObjectURL; URL.createObjectURL = (blob) => { window.saved = blob; return create(blob); };
            window.turn = 0;
            const later = window.setTimeout; window.timers = []; window.setTimeout = (go, time) => { if (time >= 1000 && time <= 60000) { window.timers.push(time); time = 1; } return later(go, time); };
            const row = (name, cells) => ({path: `TEST_${name === 'twin' && cells.length > 1 && window.twin++ ? 'Other' : 'Made'}.Name="${name}"`, class: 'TEST_Made', cells});
            window.answers['class=TEST_Made'] = (asked) => {
                window.twin = 0;
                if (!asked.includes('properties=')) { return {reading: null, time: 0, columns, rows: names.map((name) => row(name, [name, '0']))}; }
                const at = window.turn++;
                if (at >= readings.length) { return new Promise(() => {}); }
                if (readings[at] === null) { return new Response(JSON.stringify({error: 'the server <i>is</i> gone', kind: 'connection'}), {status: 502, headers: {'Content-Type': 'application/json'}}); }
                return {reading: null, time: at * 2000, columns: [columns[1]], rows: names.map((name) => row(name, [readings[at]]))};
            }""", self.COLUMNS, readings, list(names))
        self.go("#/s/demo/w/TEST_Made")
        self.await_true("return window.turn > arguments[0]", len(readings))
        self.ready()

    def csv(self):
        self.js("window.saved = null")
        self.click("main button", "CSV of what is seen")
        return [line.split(",") for line in self.js("return window.saved.text()").split("\r\n")[:-1]]

    def test_a_counter_that_begins_anew_and_a_server_that_is_away_leave_gaps_that_are_told(self):
        big = 1 << 63
        self.watch([str(big), str(big + 200), "7", "107", None, None, "1000", "1200"])
        lines = self.csv()
        self.assertEqual(lines[0], ["Time", "TEST_Made"])
        self.assertEqual([line[1] for line in lines[1:]], ["", "100", "", "50", "", "", "", "100"])
        self.assertIn("Octets in B/s", self.text("#status"))
        self.assertIn("1 counter was less than before: no rate then", self.text("#status"))
        self.assertIn("2 readings were not answered: a gap", self.text("#status"))
        self.assertRegex(self.text("[aria-label='Newest values']"), "100 B/s")

    def test_a_server_that_does_not_answer_is_told_with_the_reason(self):
        self.watch(["1", None])
        self.assertRegex(self.text("#status"), r"no reading since [0-9:]{8}: the server <i>is</i> gone")
        self.assertRegex(self.js("return document.getElementById('said').textContent"), "^no reading since ")

    def test_instances_of_the_same_keys_and_of_any_name_have_lines_of_their_own(self):
        self.watch(["10", "30"], names=("twin", "twin", "Time", TURNED, "c" * 1000))
        legend = self.csv()[0]
        self.assertEqual(len(set(legend[1:])), 5)
        self.assertIn("turned ⟨U+202E⟩ around", legend)
        self.assertLess(max(len(label) for label in legend), 400)
        self.assertEqual(len(self.csv()[2]), 6)
        self.assertEqual(self.csv()[2][3], "10")
        self.assertEqual(self.messages(), [])

    def test_another_interval_counts_at_once(self):
        self.watch(["1", "2"])
        asked = self.js("return window.turn")
        self.js("const every = document.getElementById('interval'); every.value = '60'; every.dispatchEvent(new Event('change'))")
        self.await_true("return window.turn > arguments[0]", asked)

    def test_a_stretch_of_time_is_chosen_by_a_list_and_is_what_is_saved(self):
        self.show()
        kept = self.js("""return import('/chart.js').then(async ({Chart}) => {
            const chart = new Chart();
            document.getElementById('place').replaceChildren(chart.place);
            const table = [...Array(200).keys()].map(second => [new Date(second * 1000), second]);
            await chart.draw(1, table);
            const lengths = [chart.seen(table).length];
            for (const seconds of [60, 0]) { chart.turnTo(seconds); lengths.push(chart.seen(table).length); }
            chart.turnTo(60);
            const longer = [...table, [new Date(200000), 1]];
            await chart.draw(1, longer);
            lengths.push(chart.seen(longer)[0][0].getTime());
            return lengths;
        })""")
        self.assertEqual(kept, [200, 61, 200, 140000])

    def test_a_chart_without_any_instance_chosen_is_empty(self):
        self.watch(["1", "2"])
        self.js("const box = document.getElementById('instance-0'); box.checked = false; box.dispatchEvent(new Event('change'))")
        self.await_true("return document.querySelectorAll('[aria-label=\"Newest values\"] tbody tr').length === 0")
        self.js("const box = document.getElementById('instance-0'); box.checked = true; box.dispatchEvent(new Event('change'))")
        self.await_true("return document.querySelectorAll('[aria-label=\"Newest values\"] tbody tr').length === 1")
        self.assertEqual(self.messages(), [])

    # --- For everybody -------------------------------------------------------------------------------------------------------

    def test_roles_names_and_contrast_hold_in_the_dark_and_on_narrow_screens(self):
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.setEmulatedMedia", {"features": []})
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {"width": 360, "height": 700, "deviceScaleFactor": 1, "mobile": True})
        for scheme in ("light", "dark"):
            self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
            self.watch(["1", "3", None], names=("a", "b"))
            self.assert_readable(scheme)
            names = [name for _, name in self.accessible()]
            for name in ("Property", "Every", "Show", "Pause", "CSV of what is seen", "PNG of what is seen", "Newest values"):
                self.assertIn(name, names)
            self.follow({"Outer": {"type": "string", "value": "x", "text": "x", "object": {"class": "TEST_Inner", "properties": {"Text": "word " * 100, "None": None}}}},
                        {"error": "gone", "kind": "connection"})
            self.browser.find_element("id", "follow").click()
            self.await_true("return document.querySelector('.bar .failure') !== null")
            self.assert_readable(scheme)
            self.assertIn(("table", "Properties of TEST_Inner"), self.accessible())
            self.show("s", "demo", "i", "DEMO_StorageVolume")
            self.assert_readable(scheme)
            self.assertIn(("grid", "Instances of DEMO_StorageVolume"), self.accessible())
            self.assertTrue(any(role == "gridcell" and name == "volume-0000003" for role, name in self.accessible()))

    def assert_readable(self, scheme):
        self.assertLessEqual(self.js("return document.documentElement.scrollWidth"), 360, scheme)
        self.assertEqual(self.js(CONTRAST), [], scheme)


if __name__ == "__main__":
    unittest.main()
