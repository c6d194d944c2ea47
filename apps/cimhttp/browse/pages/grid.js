// A table of very many rows and columns: only the cells that are seen are in the document.

import {counted, element, say, visible, wordsIn} from "./dom.js";
import {compareDigits, hasProperty, hintOf, inOneLine, isNull, isSame, sortKey, textOf} from "./cells.js";

const kRowHeight = 26; // pixels, as the style has it
const kBeyond = 10; // rows that are made ready above and below those that are seen
const kBesides = 2; // columns, likewise
const kSample = 200; // rows that tell how wide a column is
const kWidest = 40; // characters
const kSlice = 40; // milliseconds for which the page may be busy at a stretch
const kBlock = 256; // rows between two looks at the clock

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
        this.before = null; // an earlier reading: {cells: Map by path, places: Map of columns' places by name}
        this.drawn = new Map(); // elements of rows, by their place in the order
        this.inSight = {first: 0, last: 0}; // places in chosen
        this.edges = []; // of the columns, in pixels; the last one is the end
        this.widths = []; // of the chosen columns, in characters
        this.current = 0; // place in the order
        this.currentColumn = 0; // place in chosen
        this.marked = {}; // the current row and cell, as far as they are drawn
        this.arranging = 0; // counts, so that an older one can tell that it is
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
        this.currentColumn = Math.max(0, Math.min(this.currentColumn, chosen.length - 1));
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
    async complete() {
        if (this.sorted) {
            await this.arrange();
        }
    }

    // For another reading of the same: what differs from what is here now will be marked.
    clear() {
        this.before = {cells: new Map(this.rows.map((row) => [row.path, row.cells])),
                       places: new Map(this.columns.map((column, place) => [column.name, place]))};
        ++this.arranging;
        this.rows = [];
        this.order = [];
        this.redraw();
    }

    // The cell of an earlier reading, where it was another; undefined where it was not, or there was none.
    differing(row, column) {
        const cells = this.before && this.before.cells.get(row.path);
        const place = cells ? this.before.places.get(this.columns[column].name) : undefined;
        if (place === undefined || isSame(cells[place], row.cells[column])) {
            return undefined;
        }
        return cells[place] === undefined ? 0 : cells[place];
    }

    // How this reading differs from the earlier one: numbers of values, and of rows that are new or gone.
    differences() {
        let [changed, added, known] = [0, 0, 0];
        for (const row of this.rows) {
            if (this.before.cells.has(row.path)) {
                ++known;
                changed += this.columns.filter((_, column) => this.differing(row, column) !== undefined).length;
            } else {
                ++added;
            }
        }
        return {changed: changed, added: added, gone: this.before.cells.size - known};
    }

    // Resolves to whether the filter is still this one when all rows have been looked at.
    filter(text) {
        this.words = wordsIn(text);
        return this.arrange();
    }

    sort(column, sign) {
        const usual = this.sorted && this.sorted.column === column ? -this.sorted.sign : 1;
        this.sorted = {column: column, sign: sign || usual};
        const arranged = this.arrange();
        this.drawHead();
        this.place.dispatchEvent(new Event("sorted"));
        say("sorted by " + visible(this.columns[column].name) + (this.sorted.sign > 0 ? "" : ", the greatest first"));
        return arranged;
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

    // Few rows are looked at at once; of many, the page draws and listens in between.
    arrange() {
        const turn = ++this.arranging;
        const order = [];
        let place = 0;
        return new Promise((done) => {
            const look = () => {
                if (turn !== this.arranging) {
                    return done(false);
                }
                const until = performance.now() + kSlice;
                do {
                    for (const end = Math.min(place + kBlock, this.rows.length); place < end; ++place) {
                        if (this.matches(this.rows[place])) {
                            order.push(place);
                        }
                    }
                } while (place < this.rows.length && performance.now() < until);
                if (place < this.rows.length) {
                    return setTimeout(look);
                }
                this.take(order);
                done(true);
            };
            look();
        });
    }

    take(order) {
        this.order = order;
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

    // In characters.
    widthOf(column) {
        let longest = this.columns[column].name.length + 3;
        for (const row of this.rows.slice(0, kSample)) {
            longest = Math.max(longest, Math.min(textOf(row.cells[column]).length, kWidest));
        }
        return longest;
    }

    drawHead() {
        this.widths = this.chosen.map((column) => this.widthOf(column));
        this.place.style.setProperty("--columns", this.widths.map((width) => "calc(" + width + "ch + 1.6em)").join(" ") || "auto");
        const cells = this.chosen.map((column, i) => this.headElement(column, i));
        this.head.replaceChildren(...cells);
        this.place.setAttribute("aria-colcount", this.chosen.length);
        this.edges = [...cells.map((cell) => cell.offsetLeft), this.head.scrollWidth];
    }

    headElement(column, i) {
        const isSorted = this.sorted && this.sorted.column === column;
        const arrow = isSorted ? (this.sorted.sign > 0 ? " \u25b4" : " \u25be") : "";
        const cell = element("div", {role: "columnheader", "aria-colindex": i + 1, title: this.hintOfColumn(column)},
            element("button", {type: "button", onclick: () => this.sort(column)}, visible(this.columns[column].name) + arrow));
        if (isSorted) {
            cell.setAttribute("aria-sort", this.sorted.sign > 0 ? "ascending" : "descending");
        }
        return cell;
    }

    hintOfColumn(column) {
        const {type, array, key, counter} = this.columns[column];
        return visible(type) + (array ? "[]" : "") + (key ? ", a key" : "") + (counter ? ", counts up" : "");
    }

    resize() {
        this.body.style.height = this.order.length * kRowHeight + "px";
        this.place.setAttribute("aria-rowcount", this.order.length + 1);
        this.drawSeen();
    }

    redraw() {
        this.forget();
        this.inSight = {first: 0, last: 0};
        this.resize();
    }

    // The columns in sight, and some beside them so that not each step to the side draws all rows anew.
    lookAside() {
        const [left, right] = [this.place.scrollLeft, this.place.scrollLeft + this.place.clientWidth];
        const isAside = (i) => this.edges[i + 1] <= left || this.edges[i] >= right;
        let [first, last] = [0, this.chosen.length];
        if (this.place.clientWidth > 0) {
            while (first < last && isAside(first)) { ++first; }
            while (last > first && isAside(last - 1)) { --last; }
        }
        if (first >= this.inSight.first && last <= this.inSight.last) {
            return;
        }
        this.inSight = {first: Math.max(0, first - kBesides), last: Math.min(this.chosen.length, last + kBesides)};
        this.forget();
    }

    forget() {
        this.drawn.forEach((row) => row.remove());
        this.drawn.clear();
    }

    drawSeen() {
        this.lookAside();
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
        const made = element("div", {role: "row", className: "row", id: "row-" + number, "aria-rowindex": number + 2, "aria-selected": "false"});
        made.style.transform = "translateY(" + number * kRowHeight + "px)";
        for (let i = this.inSight.first; i < this.inSight.last; ++i) {
            made.append(this.cellElement(row, number, i));
        }
        made.addEventListener("dblclick", () => this.open(row));
        return made;
    }

    cellElement(row, number, i) {
        const column = this.chosen[i];
        const cell = row.cells[column];
        const text = inOneLine(textOf(cell));
        const made = element("div", {role: "gridcell", id: "cell-" + number + "-" + i, "aria-rowindex": number + 2, "aria-colindex": i + 1,
                                     title: hintOf(cell, this.widths[i])});
        made.style.gridColumn = i + 1;
        made.append(i === 0 ? this.linkTo(row, text || "open") : text);
        if (hasProperty(cell) && isNull(cell)) {
            made.className = "null";
        } else if (this.columns[column].number) {
            made.className = "number";
        }
        const before = this.differing(row, column);
        if (before !== undefined) {
            made.classList.add("changed");
            made.title = "before: " + inOneLine(textOf(before)) + (made.title ? "\n" + made.title : "");
        }
        made.addEventListener("click", () => this.select(number, i));
        return made;
    }

    linkTo(row, text) {
        const made = element("a", {href: this.addressOf(row), tabIndex: -1}, text);
        made.addEventListener("click", (event) => {
            if (!event.ctrlKey && !event.metaKey && !event.shiftKey) { // with these keys the browser opens it elsewhere
                event.preventDefault();
                this.open(row);
            }
        });
        return made;
    }

    mark() {
        this.marked.row?.setAttribute("aria-selected", "false");
        this.marked.cell?.classList.remove("current");
        const row = this.drawn.get(this.current);
        const cell = row?.children[this.currentColumn - this.inSight.first];
        this.marked = {row: row, cell: cell};
        row?.setAttribute("aria-selected", "true");
        cell?.classList.add("current");
        if (cell) {
            this.place.setAttribute("aria-activedescendant", cell.id);
        } else {
            this.place.removeAttribute("aria-activedescendant");
        }
    }

    select(number, column) {
        this.current = Math.max(0, Math.min(number, this.order.length - 1));
        this.currentColumn = Math.max(0, Math.min(column, this.chosen.length - 1));
        const top = this.current * kRowHeight;
        const height = this.place.clientHeight - this.head.offsetHeight;
        if (top < this.place.scrollTop) {
            this.place.scrollTop = top;
        } else if (top + kRowHeight > this.place.scrollTop + height) {
            this.place.scrollTop = top + kRowHeight - height;
        }
        this.turnTo(this.currentColumn);
        this.drawSeen();
    }

    // Scrolls to the side, so far that the column is in sight: its begin, where it is wider than what is seen.
    turnTo(column) {
        const [begin, end] = [this.edges[column], this.edges[column + 1]];
        if (begin < this.place.scrollLeft || end - begin > this.place.clientWidth) {
            this.place.scrollLeft = begin;
        } else if (end > this.place.scrollLeft + this.place.clientWidth) {
            this.place.scrollLeft = end - this.place.clientWidth;
        }
    }

    press(event) {
        if (event.target !== this.place || event.ctrlKey || event.altKey || event.metaKey || this.chosen.length === 0) {
            return;
        }
        const page = Math.max(1, Math.floor(this.place.clientHeight / kRowHeight) - 2);
        const steps = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity};
        const asideSteps = {ArrowRight: 1, ArrowLeft: -1};
        if (event.key in steps) {
            this.select(this.current + steps[event.key], this.currentColumn);
        } else if (event.key in asideSteps) {
            this.select(this.current, this.currentColumn + asideSteps[event.key]);
        } else if (event.key === "s") {
            this.sort(this.chosen[this.currentColumn]);
        } else if (event.key === "Enter" && this.order.length > 0) {
            this.open(this.rows[this.order[this.current]]);
        } else {
            return;
        }
        event.preventDefault();
    }

    // Goes to a row, if it is among those that are shown.
    find(path) {
        const number = this.order.findIndex((place) => this.rows[place].path === path);
        if (number >= 0) {
            this.select(number, this.currentColumn);
        }
    }

    summary() {
        return this.order.length === this.rows.length ? counted(this.rows.length, "row", "rows")
            : this.order.length.toLocaleString("en") + " of " + counted(this.rows.length, "row", "rows");
    }
}
