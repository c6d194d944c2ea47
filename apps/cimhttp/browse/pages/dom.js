// Makes elements. Whatever a server has sent becomes text of an element, never markup.

// element("td", {className: "null", onclick: f}, "text", child...): what is no property of the element is an attribute.
export function element(name, attributes, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes || {})) {
        if (key in made) {
            made[key] = value;
        } else {
            made.setAttribute(key, value);
        }
    }
    made.append(...children);
    return made;
}

// An address within the page: of parts, such as a server's name and an object path, and of named values.
export function address(parts, values) {
    const query = values ? new URLSearchParams(values).toString() : "";
    return "#/" + parts.map(encodeURIComponent).join("/") + (query ? "?" + query : "");
}

export const link = (parts, text, values) => element("a", {href: address(parts, values)}, text);

// Characters that are not seen, or that change the order of those around them, are shown by their code.
export const visible = (text) => text.replace(/[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\p{DI}]/gu, (unseen) =>
    (unseen === "\n" || unseen === "\t")
        ? unseen : "\u27e8U+" + unseen.codePointAt(0).toString(16).toUpperCase().padStart(4, "0") + "\u27e9");

export const counted = (count, one, more) => count.toLocaleString("en") + " " + (count === 1 ? one : more);

// What has changed, for those who hear the page.
export function say(text) { document.getElementById("said").textContent = text; }

// A table of few rows; a cell is an element of a cell, or what is in one.
export function plainTable(headings, rows, attributes) {
    const cell = (content) => (content instanceof HTMLTableCellElement ? content : element("td", {}, content));
    return element("div", {className: "plain"}, element("table", attributes,
        element("thead", {}, element("tr", {}, ...headings.map((text) => element("th", {scope: "col"}, text)))),
        element("tbody", {}, ...rows.map((cells) => element("tr", {}, ...cells.map(cell))))));
}

export const wordsIn = (text) => text.toLowerCase().split(/\s+/).filter((word) => word !== "");
