// One instance with everything, followed over time if one likes, and what hangs together with it.

import {get} from "./api.js";
import {counted, element, link, plainTable, say, visible} from "./dom.js";
import {RelatedObjects} from "./graph.js";

const kLongest = 2000; // characters of a text that is shown at once
const kFollowed = 5000; // milliseconds between two readings

// A text; one that is very long is cut, with a way to the whole.
function longText(text) {
    if (text.length <= kLongest) {
        return [visible(text)];
    }
    const rest = element("button", {type: "button"}, "Show all " + text.length.toLocaleString("en") + " characters");
    const place = element("span", {}, visible(text.slice(0, kLongest)) + "\u2026 ", rest);
    rest.addEventListener("click", () => place.replaceChildren(element("div", {className: "long", tabIndex: 0}, visible(text))));
    return [place];
}

const listOf = (items) => element("ol", {start: 0}, ...items.map((item) => element("li", {}, ...item)));

function embedded(object) {
    return object === null ? ["null"] : [element("p", {}, visible(object.class)),
        plainTable(["Property", "Value"], Object.entries(object.properties).map(([name, value]) => [visible(name), visible(JSON.stringify(value))]))];
}

function referenceTo(server, path) { return [link(["s", server, "o", path], visible(path))]; }

// What a value says to people.
function meaning(server, property) {
    const {type, value, text, object} = property;
    if (object !== undefined) {
        return Array.isArray(object) ? [listOf(object.map(embedded))] : embedded(object);
    }
    if (value === null) {
        return text === "" ? ["\u2013"] : [visible(text)];
    }
    if (Array.isArray(value)) {
        const texts = value.map((one, i) => (one === null ? ["null"] : type === "reference" ? referenceTo(server, one) : longText(String(text[i]))));
        return value.length === 0 ? ["no elements"] : [listOf(texts)];
    }
    return type === "reference" ? referenceTo(server, value) : longText(String(text));
}

const exactText = (value) => (Array.isArray(value) ? value.map((one) => (one === null ? "null" : String(one))).join(", ") : String(value));

// What was sent, where that differs from the text.
function exact(property) {
    const {value, text, object} = property;
    const plain = Array.isArray(text) ? text.map((one, i) => (value[i] === null ? "null" : one)).join(", ") : String(text);
    return object !== undefined || value === null || exactText(value) === plain ? [] : longText(exactText(value));
}

class Properties {
    constructor(server) {
        this.server = server;
        this.before = null; // the properties of the reading before
        this.declared = new Map();
        this.place = element("div", {className: "whole"});
    }

    declare(cls) {
        this.declared = new Map(cls.properties.map((property) => [property.name.toLowerCase(), property]));
        this.draw(this.now, null);
    }

    draw(properties, before) {
        this.now = properties;
        const rows = Object.entries(properties).map(([name, property]) => this.row(name, property, before && before[name]));
        this.place.replaceChildren(plainTable(["Property", "Value", "As sent", "Type", "What it means"], rows, {"aria-label": "Properties"}));
    }

    row(name, property, before) {
        const declared = this.declared.get(name.toLowerCase());
        const isChanged = before !== undefined && before !== null && exactText(before.value) !== exactText(property.value);
        const value = element("td", {className: (property.value === null ? "null" : "") + (isChanged ? " changed" : "")}, ...meaning(this.server, property));
        if (isChanged) {
            value.append(element("div", {className: "before"}, "before: ", ...meaning(this.server, before)));
        }
        const description = declared && typeof declared.qualifiers.Description === "string" ? declared.qualifiers.Description : "";
        return [element("th", {scope: "row"}, visible(name)), value, element("td", {}, ...exact(property)),
                property.type + (Array.isArray(property.value) ? "[]" : ""), element("td", {}, element("div", {className: "text"}, visible(description)))];
    }

    // A later reading, whose changes are marked.
    update(properties) {
        const before = this.now;
        this.draw(properties, before);
        return this.place.querySelectorAll(".changed").length;
    }
}

// Reads again every few seconds while the box is checked.
function follower(read, signal) {
    const box = element("input", {type: "checkbox", id: "follow"});
    const status = element("span");
    let timer = null;
    const next = async () => {
        timer = null;
        try {
            status.textContent = await read();
        } catch (error) {
            if (!signal.aborted) {
                status.textContent = "no reading since " + new Date().toLocaleTimeString("en-GB") + ": " + visible(error.message);
            }
        }
        if (box.checked && !signal.aborted) {
            timer = setTimeout(next, kFollowed);
        }
    };
    box.addEventListener("change", () => {
        if (box.checked && timer === null) {
            next();
        } else if (!box.checked) {
            clearTimeout(timer);
            timer = null;
        }
    });
    signal.addEventListener("abort", () => clearTimeout(timer));
    return element("p", {className: "bar"}, element("span", {}, box, element("label", {htmlFor: "follow"}, " Follow: read again every 5 seconds")), status);
}

export async function show({server, rest, place, signal, setTitle, attempt}) {
    const path = rest[0];
    setTitle(visible(path));
    const read = () => get(["servers", server, "instance"], {path: path}, signal);
    const properties = new Properties(server);
    const related = new RelatedObjects(server, path, signal);
    const instance = await read();
    properties.draw(instance.properties, null);
    const follow = follower(async () => {
        const changes = properties.update((await read()).properties);
        const text = "read at " + new Date().toLocaleTimeString("en-GB") + ", " + counted(changes, "value changed", "values changed");
        say(text);
        return text;
    }, signal);
    place.replaceChildren(
        element("p", {className: "bar"}, link(["s", server, "c", instance.class], "Class " + visible(instance.class)),
                link(["s", server, "i", instance.class], "All instances of it"), link(["s", server, "w", instance.class], "Watch")),
        follow, properties.place, element("h2", {}, "What hangs together with it"), related.place);
    attempt(async () => properties.declare((await get(["servers", server, "class"], {name: instance.class}, signal)).class));
    await attempt(() => related.read());
}

