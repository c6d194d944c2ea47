// A table of very many rows: only those that are seen are in the document.

import {counted, element, say, wordsIn} from "./dom.js";
import {compareDigits, hasProperty, hintOf, isNull, shown, sortKey, textOf} from "./cells.js";

const kRowHeight = 26; // pixels, as the style has it
const kBeyond = 10; // rows that are made ready above and below those that are seen
const kSample = 200; // rows that tell how wide a column is

export class Grid {
    // open(row): what Enter and a click on a row's name do; addressOf(row): where the name leads
    constructor(label, addressOf, open) {
        this.addressOf = addressOf;
        this.open = open;
        this.columns = []; // as the program describes them
        this.chosen = []; // places of those that are shown, in their order
        this.rows = [];
        this.order = []; // of the rows that are shown: places in rows
        this.words = [];
        this.sorted = null; // {column: place, sign: 1 or -1}
        this.before = null; // cells by path, of an earlier reading
        this.drawn = new Map(); // elements of rows, by their place in the order
        this.current = 0;
        this.head = element("div", {role: "row", className: "head", "aria-rowindex": 1});
        this.body = element("div", {role: "rowgroup", className: "body"});
        this.place = element("div", {role: "grid", className: "grid", tabIndex: 0, "aria-label": label}, this.head, this.body);
        this.place.addEventListener("scroll", () => this.drawSeen());
        this.place.addEventListener("keydown", (event) => this.press(event));
        this.resizing = new ResizeObserver(() => this.drawSeen());
        this.resizing.observe(this.place);
    }

    setColumns(columns, chosen) {
        this.columns = columns;
        this.chosen = chosen;
        this.drawHead();
        this.redraw();
    }

    // Rows that have come; the order stays as it is until all are there, since sorting again and again takes long.
    append(rows) {
        const begin = this.rows.length;
        this.rows.push(...rows);
        for (let place = begin; place < this.rows.length; ++place) {
            if (this.matches(this.rows[place])) {
                this.order.push(place);
            }
        }
        if (begin === 0) {
            this.drawHead();
        }
        this.resize();
    }

    // All rows are there.
    complete() {
        if (this.sorted) {
            this.arrange();
        }
    }

    clear() {
        this.before = new Map(this.rows.map((row) => [row.path, row.cells]));
        this.rows = [];
        this.order = [];
        this.redraw();
    }

    filter(text) {
        this.words = wordsIn(text);
        this.arrange();
        return this.order.length;
    }

    sort(column) {
        const sign = this.sorted && this.sorted.column === column ? -this.sorted.sign : 1;
        this.sorted = {column: column, sign: sign};
        this.arrange();
        this.drawHead();
        say("sorted by " + this.columns[column].name + (sign > 0 ? "" : ", the greatest first"));
    }

    matches(row) {
        if (this.words.length === 0) {
            return true;
        }
        if (row.words === undefined) {
            row.words = (row.path + "\n" + row.cells.map(textOf).join("\n")).toLowerCase();
        }
        return this.words.every((word) => row.words.includes(word));
    }

    arrange() {
        this.order = [];
        for (let place = 0; place < this.rows.length; ++place) {
            if (this.matches(this.rows[place])) {
                this.order.push(place);
            }
        }
        if (this.sorted) {
            this.sortOrder(this.sorted);
        }
        this.current = 0;
        this.place.scrollTop = 0;
        this.redraw();
    }

    // What is null comes last in either order.
    sortOrder({column, sign}) {
        const keys = this.rows.map((row) => sortKey(row.cells[column], this.columns[column]));
        this.order.sort((a, b) => {
            if (keys[a] === null || keys[b] === null) {
                return (keys[a] === null ? 1 : 0) - (keys[b] === null ? 1 : 0) || a - b;
            }
            if (keys[a] !== keys[b]) {
                return keys[a] < keys[b] ? -sign : sign;
            }
            return (this.columns[column].number ? sign * compareDigits(this.rows[a].cells[column], this.rows[b].cells[column]) : 0) || a - b;
        });
    }

    widthOf(column) {
        let longest = this.columns[column].name.length + 3;
        for (const row of this.rows.slice(0, kSample)) {
            longest = Math.max(longest, Math.min(textOf(row.cells[column]).length, 40));
        }
        return "calc(" + longest + "ch + 1.6em)";
    }

    drawHead() {
        this.place.style.setProperty("--columns", this.chosen.map((column) => this.widthOf(column)).join(" ") || "auto");
        this.head.replaceChildren(...this.chosen.map((column, i) => {
            const isSorted = this.sorted && this.sorted.column === column;
            const cell = element("div", {role: "columnheader", "aria-colindex": i + 1, title: this.hintOfColumn(column)},
                element("button", {type: "button", onclick: () => this.sort(column)}, this.columns[column].name + (isSorted ? (this.sorted.sign > 0 ? " \u25b4" : " \u25be") : "")));
            if (isSorted) {
                cell.setAttribute("aria-sort", this.sorted.sign > 0 ? "ascending" : "descending");
            }
            return cell;
        }));
        this.place.setAttribute("aria-colcount", this.chosen.length);
    }

    hintOfColumn(column) {
        const {type, array, key, counter} = this.columns[column];
        return type + (array ? "[]" : "") + (key ? ", a key" : "") + (counter ? ", counts up" : "");
    }

    resize() {
        this.body.style.height = this.order.length * kRowHeight + "px";
        this.place.setAttribute("aria-rowcount", this.order.length + 1);
        this.drawSeen();
    }

    redraw() {
        this.drawn.forEach((row) => row.remove());
        this.drawn.clear();
        this.resize();
    }

    drawSeen() {
        const first = Math.max(0, Math.floor(this.place.scrollTop / kRowHeight) - kBeyond);
        const last = Math.min(this.order.length, Math.ceil((this.place.scrollTop + this.place.clientHeight) / kRowHeight) + kBeyond);
        for (const [number, row] of this.drawn) {
            if (number < first || number >= last) {
                row.remove();
                this.drawn.delete(number);
            }
        }
        const added = document.createDocumentFragment();
        for (let number = first; number < last; ++number) {
            if (!this.drawn.has(number)) {
                const row = this.rowElement(number);
                this.drawn.set(number, row);
                added.append(row);
            }
        }
        this.body.append(added);
        this.mark();
    }

    rowElement(number) {
        const row = this.rows[this.order[number]];
        const made = element("div", {role: "row", className: "row", id: "row-" + number, "aria-rowindex": number + 2});
        made.style.transform = "translateY(" + number * kRowHeight + "px)";
        const before = this.before && this.before.get(row.path);
        this.chosen.forEach((column, i) => made.append(this.cellElement(row, column, i, before)));
        made.addEventListener("click", () => this.select(number));
        made.addEventListener("dblclick", () => this.open(row));
        return made;
    }

    cellElement(row, column, i, before) {
        const cell = row.cells[column];
        const text = shown(textOf(cell));
        const made = element("div", {role: "gridcell", "aria-colindex": i + 1, title: hintOf(cell)});
        made.append(i === 0 ? element("a", {href: this.addressOf(row), tabIndex: -1}, text || "open") : text);
        if (hasProperty(cell) && isNull(cell)) {
            made.className = "null";
        } else if (this.columns[column].number) {
            made.className = "number";
        }
        if (before && JSON.stringify(before[column]) !== JSON.stringify(cell)) {
            made.classList.add("changed");
            made.title = "before: " + shown(textOf(before[column])) + (made.title ? "\n" + made.title : "");
        }
        return made;
    }

    mark() {
        for (const [number, row] of this.drawn) {
            row.setAttribute("aria-selected", String(number === this.current));
        }
        if (this.drawn.has(this.current)) {
            this.place.setAttribute("aria-activedescendant", "row-" + this.current);
        } else {
            this.place.removeAttribute("aria-activedescendant");
        }
    }

    select(number) {
        this.current = Math.min(Math.max(number, 0), this.order.length - 1);
        const top = this.current * kRowHeight;
        const height = this.place.clientHeight - this.head.offsetHeight;
        if (top < this.place.scrollTop) {
            this.place.scrollTop = top;
        } else if (top + kRowHeight > this.place.scrollTop + height) {
            this.place.scrollTop = top + kRowHeight - height;
        }
        this.drawSeen();
    }

    press(event) {
        if (event.target !== this.place || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const page = Math.max(1, Math.floor(this.place.clientHeight / kRowHeight) - 2);
        const steps = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity};
        if (event.key in steps) {
            event.preventDefault();
            this.select(this.current + steps[event.key]);
        } else if (event.key === "Enter" && this.order.length > 0) {
            event.preventDefault();
            this.open(this.rows[this.order[this.current]]);
        }
    }

    summary() {
        return this.order.length === this.rows.length ? counted(this.rows.length, "row", "rows")
            : this.order.length.toLocaleString("en") + " of " + counted(this.rows.length, "row", "rows");
    }
}
