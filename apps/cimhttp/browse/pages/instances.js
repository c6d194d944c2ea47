// The instances of a class as a table, which fills while they come.

import {address, counted, element, link, say, visible} from "./dom.js";
import {hasProperty, isNull, textOf} from "./cells.js";
import {Grid} from "./grid.js";
import {readInstances} from "./readings.js";

// Which columns are shown at first: those with values; those that tell rows apart before the others, keys before others.
function usualColumns(columns, rows) {
    const places = columns.map((_, place) => place).filter((place) => rows.length === 0 || rows.some((row) => hasProperty(row.cells[place]) && !isNull(row.cells[place])));
    const tells = new Set(places.filter((place) => rows.length < 2 || new Set(rows.map((row) => textOf(row.cells[place]))).size > 1));
    const rank = (place) => (tells.has(place) ? 0 : 2) + (columns[place].key ? 0 : 1);
    return places.sort((a, b) => rank(a) - rank(b) || a - b);
}

// Which ones the user has chosen is kept until the browser is closed.
class ColumnChoice {
    constructor(name, changed) {
        this.name = "columns of " + name;
        this.changed = changed;
        this.list = element("div", {className: "choices"});
        this.place = element("details", {}, element("summary", {}, "Columns"), this.list);
    }

    // The places of the columns to show, and the list to choose from.
    take(columns, rows) {
        this.columns = columns;
        const kept = JSON.parse(sessionStorage.getItem(this.name) || "null");
        const places = (kept || []).map((name) => columns.findIndex((column) => column.name === name)).filter((place) => place >= 0);
        this.chosen = places.length > 0 ? places : usualColumns(columns, rows);
        this.draw();
        return this.chosen;
    }

    // All rows are there: columns of which only late ones have a value are shown, too.
    complete(rows) {
        if (sessionStorage.getItem(this.name) === null) {
            this.chosen = [...this.chosen, ...usualColumns(this.columns, rows).filter((place) => !this.chosen.includes(place))];
            this.draw();
        }
        return this.chosen;
    }

    draw() {
        this.list.replaceChildren(...this.columns.map((column, place) => {
            const box = element("input", {type: "checkbox", id: "column-" + place, checked: this.chosen.includes(place)});
            box.addEventListener("change", () => this.choose(place, box.checked));
            return element("span", {}, box, element("label", {htmlFor: box.id}, visible(column.name)));
        }));
    }

    choose(place, isChosen) {
        this.chosen = isChosen ? [...this.chosen, place] : this.chosen.filter((one) => one !== place);
        sessionStorage.setItem(this.name, JSON.stringify(this.chosen.map((one) => this.columns[one].name)));
        this.changed(this.chosen);
    }
}

export async function show({server, rest, values, place, signal, setTitle, attempt}) {
    const name = rest[0];
    setTitle("Instances of " + visible(name));
    const addressOf = (row) => address(["s", server, "o", row.path]);
    const grid = new Grid("Instances of " + visible(name), addressOf, (row) => { location.hash = addressOf(row); });
    const choice = new ColumnChoice([server, name, values.properties || "all"].join(" "), (chosen) => grid.setColumns(columns, chosen));
    const status = element("span", {id: "status"});
    const stop = element("button", {type: "button"}, "Stop");
    const again = element("button", {type: "button", hidden: true}, "Read again");
    const filter = element("input", {type: "search", id: "filter", autocomplete: "off", spellcheck: false, value: values.filter || ""});
    const asked = values.properties ? {class: name, properties: values.properties} : {class: name}; // all, unless the address names some
    let columns = [];
    let isStopped = false;
    const tell = (state) => { status.textContent = grid.summary() + state; };
    const take = (part) => {
        const isFirst = grid.rows.length === 0;
        grid.append(part.rows);
        if (part.columns) {
            columns = part.columns;
        }
        if (isFirst || part.columns) {
            grid.setColumns(columns, choice.take(columns, grid.rows.slice(0, 2000)));
        }
        tell(part.reading === null ? "" : " so far\u2026");
        return !isStopped;
    };
    const read = async () => {
        isStopped = false;
        stop.hidden = false;
        again.hidden = true;
        try {
            const isWhole = await readInstances(server, asked, signal, take);
            tell(isWhole ? "" : "; stopped before the end");
            grid.setColumns(columns, choice.complete(grid.rows));
        } catch (error) {
            tell("; not all could be read");
            throw error;
        } finally {
            stop.hidden = true;
            again.hidden = false;
            grid.complete();
        }
        say(status.textContent);
    };
    stop.addEventListener("click", () => { isStopped = true; });
    again.addEventListener("click", () => attempt(() => { grid.clear(); return read(); }));
    filter.addEventListener("input", () => {
        grid.filter(filter.value);
        tell("");
        say(counted(grid.order.length, "row", "rows"));
    });
    grid.words = filter.value ? filter.value.toLowerCase().split(/\s+/) : [];
    signal.addEventListener("abort", () => grid.resizing.disconnect());
    place.replaceChildren(
        element("p", {className: "bar"}, link(["s", server, "c", name], "What the class means"), link(["s", server, "w", name], "Watch")),
        element("div", {className: "bar"}, element("span", {}, element("label", {htmlFor: "filter"}, "Filter"), filter), status, stop, again),
        choice.place, grid.place, element("p", {className: "faint"}, "In the table: arrows move, Enter opens the instance; a heading sorts."));
    await read();
}
