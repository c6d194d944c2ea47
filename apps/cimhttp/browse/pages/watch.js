// Numbers of a class's instances as a chart over time.

import {Chart, colorOf} from "./chart.js";
import {exactOf, hasProperty, isNull, shown, textOf} from "./cells.js";
import {counted, element, link, plainTable, say, visible} from "./dom.js";
import {readInstances} from "./readings.js";
import {Samples, csvOf} from "./samples.js";

const kAtFirst = 10; // instances that are shown unless others are chosen
const kMostOffered = 500; // to choose from
const kIntervals = [1, 2, 5, 10, 30, 60]; // seconds
const kStretches = [["all", 0], ["the last minute", 60], ["the last 5 minutes", 300], ["the last 15 minutes", 900], ["the last hour", 3600]]; // seconds

// What tells instances apart: their keys that differ, and the class where two have the same keys.
function labelsOf(columns, rows) {
    const keys = columns.map((_, place) => place).filter((place) => columns[place].key && new Set(rows.map((row) => textOf(row.cells[place]))).size > 1);
    const labels = rows.map((row) => shown(keys.map((place) => textOf(row.cells[place])).join(", ") || row.class));
    const times = new Map();
    labels.forEach((label) => times.set(label, (times.get(label) || 0) + 1));
    return new Map(rows.map((row, i) => [row.path, times.get(labels[i]) === 1 ? labels[i] : shown(row.path)]));
}

const fileName = (cls, property, ending) => (cls + "-" + property).replace(/[^\w.-]/g, "_") + ending;

function download(name, blob) {
    const there = URL.createObjectURL(blob);
    element("a", {href: there, download: name}).click();
    setTimeout(() => URL.revokeObjectURL(there), 60000);
}

class Watch {
    constructor({server, rest, values, signal}) {
        this.server = server;
        this.name = rest[0];
        this.signal = signal;
        this.values = values;
        this.chart = new Chart();
        this.status = element("p", {className: "bar", id: "status"});
        this.newest = element("div");
        this.interval = element("select", {id: "interval"}, ...kIntervals.map((one) => element("option", {value: String(one), selected: one === 2}, one + " s")));
        this.interval.addEventListener("change", () => this.askAnew());
        this.stretch = element("select", {id: "stretch"}, ...kStretches.map(([text, seconds]) => element("option", {value: String(seconds)}, text)));
        this.stretch.addEventListener("change", () => this.show());
        this.pause = element("button", {type: "button", "aria-pressed": "false", onclick: () => this.setPaused(!this.isPaused)}, "Pause");
        this.isPaused = false;
        this.timer = null;
        signal.addEventListener("abort", () => {
            clearTimeout(this.timer);
            this.chart.end();
        });
    }

    // Finds out what there is to show.
    async begin(place) {
        this.rows = [];
        const isWhole = await readInstances(this.server, {class: this.name}, this.signal, (part) => {
            this.columns = part.columns || this.columns;
            this.rows.push(...part.rows);
            return this.rows.length < kMostOffered;
        });
        this.numbers = this.columns.filter((column) => column.number && !column.array);
        this.labels = labelsOf(this.columns, this.rows);
        if (this.numbers.length === 0 || this.rows.length === 0) {
            place.replaceChildren(this.links(), element("p", {}, this.rows.length === 0 ? "The class has no instances." : "The instances have no numbers."));
            return;
        }
        place.replaceChildren(this.links(), this.controls(), this.choice(isWhole), this.status, this.chart.place, this.newest, this.savers());
        this.choose(this.numbers.find((column) => column.name === this.values.property) || this.numbers[0]);
    }

    links() { return element("p", {className: "bar"}, link(["s", this.server, "c", this.name], "What the class means"), link(["s", this.server, "i", this.name], "Instances")); }

    controls() {
        const property = element("select", {id: "property"}, ...this.numbers.map((column) => element("option", {value: column.name, selected: column.name === this.values.property}, visible(column.name))));
        property.addEventListener("change", () => this.choose(this.numbers.find((column) => column.name === property.value)));
        return element("div", {className: "bar"}, element("span", {}, element("label", {htmlFor: "property"}, "Property"), property),
                       element("span", {}, element("label", {htmlFor: "interval"}, "Every"), this.interval),
                       element("span", {}, element("label", {htmlFor: "stretch"}, "Show"), this.stretch), this.pause);
    }

    choice(isWhole) {
        this.paths = this.rows.slice(0, kAtFirst).map((row) => row.path);
        const offered = this.rows.slice(0, kMostOffered).map((row, i) => {
            const box = element("input", {type: "checkbox", id: "instance-" + i, checked: i < kAtFirst});
            box.addEventListener("change", () => {
                this.paths = box.checked ? [...this.paths, row.path] : this.paths.filter((path) => path !== row.path);
                this.draw();
            });
            return element("span", {}, box, element("label", {htmlFor: box.id}, this.labels.get(row.path)));
        });
        const isCut = !isWhole || this.rows.length > kMostOffered;
        return element("details", {}, element("summary", {}, "Instances"), element("div", {className: "choices"}, ...offered),
                       ...(isCut ? [element("p", {}, "There are more; the first " + kMostOffered + " can be chosen.")] : []));
    }

    savers() {
        const csv = element("button", {type: "button"}, "CSV of what is seen");
        csv.addEventListener("click", () => download(fileName(this.name, this.column.name, ".csv"), new Blob([this.csv()], {type: "text/csv"})));
        const png = element("button", {type: "button"}, "PNG of what is seen");
        png.addEventListener("click", async () => download(fileName(this.name, this.column.name, ".png"), await this.chart.picture(this.title(), this.legend())));
        return element("p", {className: "bar"}, csv, png, "Drag over the chart to see a part of it; a double click shows all again.");
    }

    csv() { return csvOf(["Time", ...this.legend()], this.chart.seen(this.samples.table(this.paths))); }
    legend() { return this.paths.map((path) => this.labels.get(path)); }
    unit() { return this.column.unit + (this.column.counter ? (this.column.unit ? "/s" : " per second") : ""); }
    title() { return visible(this.column.name) + (this.unit() ? " in " + visible(this.unit()) : ""); }

    choose(column) {
        this.column = column;
        this.samples = new Samples(column.counter, column.times);
        this.failure = "";
        this.lost = 0; // readings without an answer
        this.askAnew();
    }

    // With another interval, or for another property: at once.
    askAnew() {
        clearTimeout(this.timer);
        if (this.isPaused) {
            this.draw();
        } else {
            this.next();
        }
    }

    // Another stretch of time.
    async show() {
        await this.draw();
        this.chart.turnTo(Number(this.stretch.value));
    }

    setPaused(isPaused) {
        this.isPaused = isPaused;
        this.pause.setAttribute("aria-pressed", String(isPaused));
        this.pause.textContent = isPaused ? "Go on" : "Pause";
        clearTimeout(this.timer);
        if (!isPaused) {
            this.samples.last = null; // the pause is no interval
            this.next();
        }
    }

    async next() {
        const turn = this.turn = (this.turn || 0) + 1;
        const isCurrent = () => !this.signal.aborted && this.turn === turn && !this.isPaused;
        try {
            await this.read(this.column, isCurrent);
            if (isCurrent()) {
                this.failure = "";
            }
        } catch (error) {
            if (isCurrent()) {
                this.fail(error);
            }
        }
        if (isCurrent()) {
            await this.draw();
            clearTimeout(this.timer);
            this.timer = setTimeout(() => this.next(), Number(this.interval.value) * 1000);
        }
    }

    // A gap in the chart; whoever hears the page is told of the first in a row.
    fail(error) {
        this.samples.addGap(new Date());
        ++this.lost;
        if (!this.failure) {
            this.failure = "no reading since " + new Date().toLocaleTimeString("en-GB") + ": " + visible(error.message);
            say(this.failure);
        }
    }

    async read(column, isCurrent) {
        const digits = new Map();
        let time = 0;
        const toFind = new Set(this.rows.map((row) => row.path));
        await readInstances(this.server, {class: this.name, properties: column.name}, this.signal, (part) => {
            time = part.time;
            for (const row of part.rows) {
                const cell = row.cells[0];
                toFind.delete(row.path);
                if (hasProperty(cell) && !isNull(cell)) {
                    digits.set(row.path, exactOf(cell));
                }
            }
            return toFind.size > 0;
        });
        if (isCurrent()) {
            this.samples.add(new Date(), time, digits);
        }
    }

    async draw() {
        const table = this.samples.table(this.paths);
        await this.chart.draw(this.paths.length, table);
        const last = table.length > 0 ? table[table.length - 1].slice(1) : [];
        const count = this.samples.readings.length;
        const restarts = this.samples.restarts;
        this.status.replaceChildren(element("b", {}, this.title()), counted(count, "reading", "readings"),
            ...(restarts > 0 ? [counted(restarts, "counter was", "counters were") + " less than before: no rate then"] : []),
            ...(this.lost > 0 ? [counted(this.lost, "reading was", "readings were") + " not answered: a gap"] : []),
            ...(this.failure ? [element("span", {className: "failure"}, this.failure)] : []));
        this.newest.replaceChildren(plainTable(["", "Instance", "Newest"], this.paths.map((path, i) => {
            const swatch = element("span", {className: "swatch"});
            swatch.style.background = colorOf(i);
            const value = last[i] === null || last[i] === undefined ? "\u2013" : last[i].toLocaleString("en", {maximumFractionDigits: 3}) + " " + visible(this.unit());
            return [swatch, link(["s", this.server, "o", path], this.labels.get(path)), element("td", {className: "number"}, value)];
        }), {"aria-label": "Newest values"}));
    }
}

export async function show(context) {
    context.setTitle("Watch " + visible(context.rest[0]));
    await new Watch(context).begin(context.place);
}
