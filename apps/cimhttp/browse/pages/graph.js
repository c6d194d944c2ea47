// The objects that an instance is associated with, as a drawing from left to right: the instance, what it refers to or is
// referred to by, and so on. The same is in a table, for those who do not see it.

import {get} from "./api.js";
import {address, counted, element, plainTable, link, visible} from "./dom.js";

const kMostDrawn = 200; // objects
const kRow = 40; // pixels from an object to the one below
const kColumn = 450;
const kWidth = 350; // of an object
const kLongestLabel = 44;
const kColors = 6; // which the style has for classes of associations

function svg(name, attributes, ...children) {
    const made = document.createElementNS("http://www.w3.org/2000/svg", name);
    Object.entries(attributes).forEach(([key, value]) => made.setAttribute(key, value));
    made.append(...children);
    return made;
}

const cut = (text) => (text.length > kLongestLabel ? text.slice(0, kLongestLabel - 1) + "\u2026" : text);
const kStates = {failed: "its associations could not be read", "on another server": "on another server"};

// A part of a graph: the first object and some of the others, with the associations between them.
class Drawing {
    constructor(server, graph, begin) {
        this.server = server;
        this.graph = graph;
        this.drawn = [0];
        for (let i = begin; i < graph.objects.length && this.drawn.length < kMostDrawn; ++i) {
            this.drawn.push(i);
        }
        this.classes = [...new Set(graph.associations.map((one) => one.class))];
        this.place();
    }

    // Objects of one depth stand below each other, those of one class together.
    place() {
        const columns = [];
        for (const number of this.drawn) {
            const depth = this.graph.objects[number].depth;
            (columns[depth] = columns[depth] || []).push(number);
        }
        this.places = new Map();
        this.height = Math.max(...columns.map((column) => (column || []).length)) * kRow + 10;
        columns.forEach((column, depth) => {
            const text = (number) => this.graph.objects[number].class + " " + this.graph.objects[number].label;
            column.sort((a, b) => (text(a) < text(b) ? -1 : 1));
            const top = Math.min((this.height - column.length * kRow) / 2, 200);
            column.forEach((number, i) => this.places.set(number, {x: depth * kColumn + 5, y: Math.max(top, 5) + i * kRow}));
        });
        this.width = columns.length * kColumn - (kColumn - kWidth) + 10;
    }

    // Associations of which both objects are drawn, and how many lead from these, but for the first, to one that is not.
    associations() {
        const isDrawn = (one) => this.places.has(one.from) && this.places.has(one.to);
        const leadsOut = (one) => !isDrawn(one) && [one.from, one.to].some((end) => end !== 0 && this.places.has(end));
        return {shown: this.graph.associations.filter(isDrawn), out: this.graph.associations.filter(leadsOut).length};
    }

    element() {
        const {shown} = this.associations();
        return svg("svg", {width: this.width, height: this.height, role: "group", "aria-label": "Objects that hang together", class: "graph"},
            ...shown.map((one) => this.line(one)), ...this.drawn.map((number) => this.object(number)));
    }

    line(one) {
        const from = this.places.get(one.from);
        const to = this.places.get(one.to);
        const [left, right] = from.x <= to.x ? [from, to] : [to, from];
        const [x1, y1, x2, y2] = [left.x + kWidth, left.y + 15, right.x + (left.x === right.x ? kWidth : 0), right.y + 15];
        const bend = left.x === right.x ? x1 + 50 : (x1 + x2) / 2;
        const curve = svg("path", {d: "M" + x1 + " " + y1 + "C" + bend + " " + y1 + " " + bend + " " + y2 + " " + x2 + " " + y2,
                                   class: "line color" + (this.classes.indexOf(one.class) % kColors)},
                          svg("title", {}, visible(one.class)));
        return curve;
    }

    object(number) {
        const object = this.graph.objects[number];
        const {x, y} = this.places.get(number);
        const state = kStates[object.state];
        const box = svg("a", {href: address(["s", this.server, "o", object.path]), class: "object" + (number === 0 ? " first" : "") + (state ? " apart" : "")},
            svg("title", {}, visible(object.path) + (state ? "\n" + state : "")),
            svg("rect", {x: x, y: y, width: kWidth, height: 30, rx: 4}),
            svg("text", {x: x + 8, y: y + 20}, visible(cut(object.label))));
        if (number === 0) {
            box.setAttribute("aria-current", "true");
        }
        return box;
    }

    legend() {
        return element("ul", {className: "inline legend"}, ...this.classes.map((name, i) =>
            element("li", {}, element("span", {className: "swatch color" + (i % kColors), "aria-hidden": "true"}), visible(name))));
    }
}

export class RelatedObjects {
    constructor(server, path, signal) {
        this.server = server;
        this.path = path;
        this.signal = signal;
        this.depth = element("select", {id: "depth"}, ...[1, 2, 3].map((depth) => element("option", {value: String(depth)}, String(depth))));
        this.status = element("span");
        this.part = element("span", {className: "bar"});
        this.drawing = element("div", {className: "drawing", tabIndex: 0, role: "group", "aria-label": "Drawing"});
        this.table = element("details", {}, element("summary", {}, "As a table"));
        this.place = element("div", {}, element("div", {className: "bar"},
            element("span", {}, element("label", {htmlFor: "depth"}, "Associations in a row"), this.depth), this.status, this.part), this.drawing, this.table);
        this.depth.addEventListener("change", () => this.read().catch((error) => this.fail(error)));
    }

    fail(error) {
        if (!this.signal.aborted) {
            this.status.textContent = visible(error.message);
        }
    }

    async read() {
        const depth = this.depth.value;
        this.status.textContent = "asking\u2026";
        let graph;
        try {
            graph = await get(["servers", this.server, "related"], {path: this.path, depth: depth}, this.signal);
        } catch (error) {
            this.status.textContent = "";
            throw error;
        }
        if (depth !== this.depth.value) {
            return; // another question has been asked meanwhile
        }
        this.graph = graph;
        this.draw(1);
        this.drawTable();
    }

    draw(begin) {
        const count = this.graph.objects.length - 1;
        this.status.textContent = count === 0 ? "It has no associations."
            : counted(count, "object", "objects") + ", " + counted(this.graph.associations.length, "association", "associations")
                + (this.graph.complete ? "" : "; there are more, which were not read");
        const drawing = new Drawing(this.server, this.graph, begin);
        this.drawing.hidden = count === 0;
        this.drawing.replaceChildren(drawing.legend(), drawing.element());
        this.drawParts(begin, drawing, count);
    }

    // Of more objects than are drawn at once, the others.
    drawParts(begin, drawing, count) {
        const drawn = drawing.drawn.length - 1;
        const {out} = drawing.associations();
        const go = (text, to) => element("button", {type: "button", onclick: () => this.draw(to)}, text);
        const step = kMostDrawn - 1;
        this.part.replaceChildren(...(drawn === count ? [] : [
            "drawn: " + begin.toLocaleString("en") + " to " + (begin + drawn - 1).toLocaleString("en"),
            ...(out > 0 ? [counted(out, "association leads", "associations lead") + " to objects that are drawn with others"] : []),
            ...(begin > 1 ? [go("Those before", Math.max(1, begin - step))] : []),
            ...(begin + drawn <= count ? [go("The next " + Math.min(step, count - begin - drawn + 1), begin + step)] : [])]));
    }

    drawTable() {
        const object = (number) => link(["s", this.server, "o", this.graph.objects[number].path], visible(this.graph.objects[number].label));
        const rows = this.graph.associations.slice(0, 2000).map((one) => [object(one.from), visible(one.from_role), visible(one.class), visible(one.to_role), object(one.to)]);
        const left = this.graph.associations.length - rows.length;
        this.table.hidden = rows.length === 0;
        this.table.replaceChildren(element("summary", {}, "As a table"),
            plainTable(["Object", "Its role", "Association", "Other role", "Other object"], rows, {"aria-label": "Associations"}),
            ...(left > 0 ? [element("p", {}, counted(left, "association is", "associations are") + " not in the table; 'cimhttp related' writes all.")] : []));
    }
}
