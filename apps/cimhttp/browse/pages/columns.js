// Which columns of a table of instances are shown: those that say something at first, then those that the user chooses.

import {element, visible} from "./dom.js";
import {hasProperty, isNull, textOf} from "./cells.js";

// What the rows so far say of the columns: which have a value, and which tell rows apart.
class ColumnFacts {
    constructor() {
        this.seen = []; // by the columns' places: {first: text, hasValue, tells}
        this.rows = 0;
    }

    take(columns, rows) {
        columns.forEach((_, place) => {
            const fact = this.seen[place] = this.seen[place] || {first: undefined, hasValue: false, tells: false};
            for (let i = 0; i < rows.length && !(fact.hasValue && fact.tells); ++i) {
                this.look(fact, rows[i].cells[place]);
            }
        });
        this.rows += rows.length;
    }

    look(fact, cell) {
        const text = textOf(cell);
        fact.hasValue = fact.hasValue || (hasProperty(cell) && !isNull(cell));
        fact.first = fact.first === undefined ? text : fact.first;
        fact.tells = fact.tells || text !== fact.first;
    }

    // Columns with values; those that tell rows apart before the others, keys before others.
    usual(columns) {
        const tells = (place) => this.rows < 2 || this.seen[place].tells;
        const rank = (place) => (tells(place) ? 0 : 2) + (columns[place].key ? 0 : 1);
        const places = columns.map((_, place) => place).filter((place) => this.rows === 0 || this.seen[place].hasValue);
        return places.sort((a, b) => rank(a) - rank(b) || a - b);
    }
}

// The user's choice is kept until the browser is closed.
export class ColumnChoice {
    // changed(places): the user has chosen others
    constructor(name, changed) {
        this.name = "columns of " + name;
        this.changed = changed;
        this.begin();
        this.list = element("div", {className: "choices"});
        this.place = element("details", {}, element("summary", {}, "Columns"), this.list);
    }

    // For another reading of the same.
    begin() {
        this.facts = new ColumnFacts();
        this.columns = [];
        this.chosen = [];
    }

    take(columns, rows) {
        this.facts.take(columns, rows);
        this.columns = columns;
    }

    // The places of the columns to show by what is known now.
    choose() {
        const kept = JSON.parse(sessionStorage.getItem(this.name) || "null") || [];
        const places = kept.map((name) => this.columns.findIndex((column) => column.name === name)).filter((place) => place >= 0);
        this.chosen = places.length > 0 ? places : this.facts.usual(this.columns);
        this.draw();
        return this.chosen;
    }

    // All rows are there: columns of which only late ones have a value follow those that are shown.
    complete() {
        if (sessionStorage.getItem(this.name) === null) {
            this.chosen = [...this.chosen, ...this.facts.usual(this.columns).filter((place) => !this.chosen.includes(place))];
            this.draw();
        }
        return this.chosen;
    }

    // Boxes that are there already stay, with the focus that one may have.
    draw() {
        this.columns.forEach((column, place) => {
            const box = this.list.querySelector("#column-" + place) || this.add(column, place);
            box.checked = this.chosen.includes(place);
        });
    }

    add(column, place) {
        const box = element("input", {type: "checkbox", id: "column-" + place});
        box.addEventListener("change", () => this.set(place, box.checked));
        this.list.append(element("span", {}, box, element("label", {htmlFor: box.id}, visible(column.name))));
        return box;
    }

    set(place, isChosen) {
        this.chosen = isChosen ? [...this.chosen, place] : this.chosen.filter((one) => one !== place);
        sessionStorage.setItem(this.name, JSON.stringify(this.chosen.map((one) => this.columns[one].name)));
        this.changed(this.chosen);
    }
}
