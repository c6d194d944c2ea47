// What a property's value says to people, as elements.

import {element, link, plainTable, visible} from "./dom.js";

const kLongest = 2000; // characters of a text that is shown at once

// A text; one that is very long is cut, with a way to the whole.
export function longText(text) {
    if (text.length <= kLongest) {
        return [visible(text)];
    }
    const rest = element("button", {type: "button"}, "Show all " + text.length.toLocaleString("en") + " characters");
    const place = element("span", {}, visible(text.slice(0, kLongest)) + "\u2026 ", rest);
    rest.addEventListener("click", () => {
        const whole = element("div", {className: "long", tabIndex: 0}, visible(text));
        place.replaceChildren(whole);
        whole.focus();
    });
    return [place];
}

const listOf = (items) => element("ol", {start: 0}, ...items.map((item) => element("li", {}, ...item)));
const referenceTo = (server, path) => [link(["s", server, "o", path], visible(path))];

// An instance or class within an instance; its values are as they were sent, or further objects.
function embedded(object) {
    if (object === null) {
        return ["null"];
    }
    const rows = Object.entries(object.properties).map(([name, value]) => [element("th", {scope: "row"}, visible(name)), element("td", {}, ...embeddedValue(value))]);
    return [element("p", {}, visible(object.class)),
            ...(rows.length === 0 ? ["no properties"] : [plainTable(["Property", "Value"], rows, {"aria-label": "Properties of " + visible(object.class)})])];
}

function embeddedValue(value) {
    if (Array.isArray(value)) {
        return value.length === 0 ? ["no elements"] : [listOf(value.map(embeddedValue))];
    }
    if (value !== null && typeof value === "object") {
        return embedded(value);
    }
    return value === null ? [element("span", {className: "faint"}, "null")] : longText(String(value));
}

// Of a property as the program sends it.
export function meaningOf(server, property) {
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

// What was sent, where that differs from what is shown.
export function exactOf(property) {
    const {value, text, object} = property;
    const plain = Array.isArray(text) ? text.map((one, i) => (value[i] === null ? "null" : one)).join(", ") : String(text);
    return object !== undefined || value === null || exactText(value) === plain ? [] : longText(exactText(value));
}

export const isSame = (one, other) => JSON.stringify([one.value, one.object]) === JSON.stringify([other.value, other.object]);
