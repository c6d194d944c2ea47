// One instance with everything, followed over time if one likes, and what hangs together with it.

import {shown} from "./cells.js";
import {get} from "./api.js";
import {counted, element, link, plainTable, say, visible} from "./dom.js";
import {RelatedObjects} from "./graph.js";
import {exactOf, isSame, meaningOf} from "./values.js";

const kFollowed = 5000; // milliseconds between two readings

// The unit that the class declares, in the words that it has.
const unitIn = ({Units, PUnit}) => [Units, PUnit].find((unit) => typeof unit === "string" && unit !== "") || "";

class Properties {
    constructor(server) {
        this.server = server;
        this.now = {}; // the newest properties
        this.declared = new Map();
        this.rows = new Map(); // by the properties' names
        this.place = element("div", {className: "whole"});
    }

    declare(cls) {
        this.declared = new Map(cls.properties.map((property) => [property.name.toLowerCase(), property]));
        this.draw(this.now);
    }

    draw(properties) {
        this.now = properties;
        this.place.replaceChildren(plainTable(["Property", "Value", "As sent", "Type", "What it means"], [], {"aria-label": "Properties"}));
        this.rows = new Map(Object.entries(properties).map(([name, property]) => [name, this.row(name, property)]));
        this.place.querySelector("tbody").append(...this.rows.values());
    }

    // before: the property as it was, if that was otherwise
    row(name, property, before) {
        const value = element("td", {className: (property.value === null ? "null" : "") + (before ? " changed" : "")}, ...meaningOf(this.server, property));
        if (before) {
            value.append(element("div", {className: "before"}, "before: ", ...meaningOf(this.server, before)));
        }
        return element("tr", {}, element("th", {scope: "row"}, visible(name)), value, element("td", {}, ...exactOf(property)),
            element("td", {}, property.type + (Array.isArray(property.value) ? "[]" : "")), this.meaning(name));
    }

    meaning(name) {
        const {qualifiers} = this.declared.get(name.toLowerCase()) || {qualifiers: {}};
        const description = typeof qualifiers.Description === "string" ? qualifiers.Description : "";
        const unit = unitIn(qualifiers);
        return element("td", {}, element("div", {className: "text"}, visible(description)),
            ...(unit ? [element("div", {className: "faint"}, "Unit: " + visible(unit))] : []));
    }

    // A later reading: its changes are marked, and all other rows stay as they are, with what the user has opened in them.
    update(properties) {
        const before = this.now;
        const names = Object.keys(properties);
        if (names.join("\n") !== Object.keys(before).join("\n")) {
            this.draw(properties);
        }
        this.now = properties;
        const changed = names.filter((name) => Object.hasOwn(before, name) && !isSame(before[name], properties[name]));
        names.forEach((name) => this.mark(name, changed.includes(name) ? before[name] : undefined));
        return changed.length;
    }

    mark(name, before) {
        const row = this.rows.get(name);
        if (before || row.querySelector(".changed")) {
            this.rows.set(name, this.row(name, this.now[name], before));
            row.replaceWith(this.rows.get(name));
        }
    }
}

// Reads again every few seconds while the box is checked.
class Follower {
    // read(): reads, and returns how many values have changed
    constructor(read, signal) {
        this.read = read;
        this.signal = signal;
        this.box = element("input", {type: "checkbox", id: "follow"});
        this.status = element("span");
        this.timer = null;
        this.failing = ""; // since when
        this.place = element("p", {className: "bar"}, element("span", {}, this.box, element("label", {htmlFor: "follow"}, " Follow: read again every 5 seconds")), this.status);
        this.box.addEventListener("change", () => {
            clearTimeout(this.timer);
            if (this.box.checked) {
                this.next();
            }
        });
        signal.addEventListener("abort", () => clearTimeout(this.timer));
    }

    async next() {
        const now = new Date().toLocaleTimeString("en-GB");
        try {
            this.tell(now, await this.read());
        } catch (error) {
            this.fail(now, error);
        }
        if (this.box.checked && !this.signal.aborted) {
            clearTimeout(this.timer);
            this.timer = setTimeout(() => this.next(), kFollowed);
        }
    }

    // Whoever hears the page is told of changes alone.
    tell(now, changes) {
        this.failing = "";
        this.status.className = "";
        this.status.textContent = "read at " + now + ", " + counted(changes, "value changed", "values changed");
        if (changes > 0) {
            say(this.status.textContent);
        }
    }

    fail(now, error) {
        if (this.signal.aborted) {
            return;
        }
        const isNew = this.failing === "";
        this.failing = this.failing || now;
        this.status.className = "failure";
        this.status.textContent = "no reading since " + this.failing + ": " + visible(error.message);
        if (isNew) {
            say(this.status.textContent);
        }
    }
}

export async function show({server, rest, place, signal, setTitle, attempt}) {
    const path = rest[0];
    setTitle(shown(path)); // the keys are among the properties
    const read = () => get(["servers", server, "instance"], {path: path}, signal);
    const properties = new Properties(server);
    const related = new RelatedObjects(server, path, signal);
    const instance = await read();
    properties.draw(instance.properties);
    const follower = new Follower(async () => properties.update((await read()).properties), signal);
    place.replaceChildren(
        element("p", {className: "bar"}, link(["s", server, "c", instance.class], "Class " + visible(instance.class)),
                link(["s", server, "i", instance.class], "All instances of it"), link(["s", server, "w", instance.class], "Watch")),
        follower.place, properties.place, element("h2", {}, "What hangs together with it"), related.place);
    attempt(async () => properties.declare((await get(["servers", server, "class"], {name: instance.class}, signal)).class));
    await attempt(() => related.read());
}
