// The instances of a class as a table, which fills while they come.

import {address, counted, element, link, say, visible, wordsIn} from "./dom.js";
import {ColumnChoice} from "./columns.js";
import {Grid} from "./grid.js";
import {readInstances} from "./readings.js";

const kLongestPlace = 1000; // characters of a path that the page's address keeps

class InstancesView {
    constructor({server, rest, values, signal, attempt}) {
        this.server = server;
        this.name = rest[0];
        this.signal = signal;
        this.kept = values; // of the page's address: filter, sort, order and at, the row that was opened
        this.asked = values.properties ? {class: this.name, properties: values.properties} : {class: this.name}; // all, unless the address names some
        this.columns = [];
        this.grid = new Grid("Instances of " + visible(this.name), (row) => this.addressOf(row), (row) => this.open(row));
        this.choice = new ColumnChoice([server, this.name, values.properties || "all"].join(" "), (chosen) => this.grid.setColumns(this.columns, chosen));
        this.status = element("span", {id: "status"});
        this.stop = element("button", {type: "button", onclick: () => this.stopping.abort()}, "Stop");
        this.again = element("button", {type: "button", hidden: true, onclick: () => attempt(() => this.read())}, "Read again");
        this.words = element("input", {type: "search", id: "filter", autocomplete: "off", spellcheck: false, value: values.filter || ""});
        this.words.addEventListener("input", () => this.filter());
        this.grid.words = wordsIn(this.words.value);
        this.grid.place.addEventListener("sorted", () => this.keep());
        signal.addEventListener("abort", () => this.grid.resizing.disconnect());
    }

    addressOf(row) { return address(["s", this.server, "o", row.path]); }

    open(row) {
        this.keep(row);
        location.hash = this.addressOf(row);
    }

    element() {
        return [element("p", {className: "bar"}, link(["s", this.server, "c", this.name], "What the class means"), link(["s", this.server, "w", this.name], "Watch")),
            element("div", {className: "bar"}, element("span", {}, element("label", {htmlFor: "filter"}, "Filter"), this.words), this.status, this.stop, this.again),
            this.choice.place, this.grid.place,
            element("p", {className: "faint"}, "In the table: arrows move, S sorts by the column, Enter opens the instance; a heading sorts, too.")];
    }

    // Whoever comes back finds the table as it was left.
    keep(row) {
        const {sorted} = this.grid;
        const values = {...(this.asked.properties ? {properties: this.asked.properties} : {}), ...(this.words.value ? {filter: this.words.value} : {}),
                        ...(sorted ? {sort: this.columns[sorted.column].name, order: sorted.sign > 0 ? "up" : "down"} : {}),
                        ...(row && row.path.length <= kLongestPlace ? {at: row.path} : {})};
        history.replaceState(null, "", address(["s", this.server, "i", this.name], values));
    }

    async filter() {
        this.keep();
        if (await this.grid.filter(this.words.value)) {
            this.tell();
            say(counted(this.grid.order.length, "row", "rows"));
        }
    }

    tell(state) {
        this.state = state === undefined ? this.state : state;
        this.status.textContent = this.grid.summary() + this.state;
    }

    // The rows of an earlier reading stay until there are others.
    async read() {
        this.stopping = new AbortController();
        let isFirst = true;
        const isAgain = this.grid.rows.length > 0;
        this.showBusy(true);
        let failure = null;
        try {
            await readInstances(this.server, this.asked, AbortSignal.any([this.signal, this.stopping.signal]), (part) => {
                this.take(part, isFirst);
                isFirst = false;
            });
        } catch (error) {
            failure = error;
        }
        const isStopped = failure !== null && this.stopping.signal.aborted;
        this.tell(failure === null ? (isAgain ? this.differences() : "")
            : isFirst && isAgain ? ", of the reading before" : isStopped ? "; stopped before the end" : "; not all could be read");
        await this.end();
        if (failure !== null && !isStopped) {
            throw failure;
        }
        say(this.status.textContent);
    }

    take(part, isFirst) {
        if (isFirst) {
            this.grid.clear();
            this.choice.begin();
        }
        this.grid.append(part.rows);
        this.columns = part.columns || this.columns;
        this.choice.take(this.columns, part.rows);
        if (isFirst || part.columns) {
            this.grid.setColumns(this.columns, this.choice.choose());
        }
        this.tell(part.reading === null ? "" : " so far\u2026");
    }

    differences() {
        const {changed, added, gone} = this.grid.differences();
        return "; since the last reading " + [counted(changed, "value has", "values have") + " changed", ...(added > 0 ? [counted(added, "row is", "rows are") + " new"] : []),
            ...(gone > 0 ? [counted(gone, "row is", "rows are") + " gone"] : [])].join(", ");
    }

    showBusy(isBusy) {
        this.stop.hidden = !isBusy;
        this.again.hidden = isBusy;
    }

    // All rows that come have come.
    async end() {
        if (!this.signal.aborted) {
            this.showBusy(false);
            this.grid.setColumns(this.columns, this.choice.complete());
            await this.arrangeAsKept();
        }
    }

    async arrangeAsKept() {
        const {sort, order, at} = this.kept;
        this.kept = {};
        const column = this.columns.findIndex((one) => one.name === sort);
        if (column >= 0) {
            await this.grid.sort(column, order === "down" ? -1 : 1);
        } else {
            await this.grid.complete();
        }
        if (at !== undefined) {
            this.grid.find(at);
        }
    }
}

export async function show(context) {
    context.setTitle("Instances of " + visible(context.rest[0]));
    const view = new InstancesView(context);
    context.place.replaceChildren(...view.element());
    await view.read();
}
