"use strict";

// Draws the collection that the page carries. Whatever a server has sent becomes text of an element, never markup.

const collection = JSON.parse(document.getElementById("document").textContent);
const about = JSON.parse(document.getElementById("about").textContent);
const main = document.getElementById("main");

const kRowsAtOnce = 500;
const kLongestCell = 300; // characters; the instance's own view has the whole text

// --- Elements and texts --------------------------------------------------------------------------------------------

// element("td", {className: "null"}, "text", child...): what is no property of the element is an attribute.
function element(name, attributes, ...children) {
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

const link = (route, text) => element("a", {href: "#" + route.map(encodeURIComponent).join("/")}, text);

// Characters that are not seen, or that change the order of those around them, are shown by their code.
const visible = (text) => text.replace(/[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\p{DI}]/gu, (unseen) =>
    (unseen === "\n" || unseen === "\t")
        ? unseen : "\u27e8U+" + unseen.codePointAt(0).toString(16).toUpperCase().padStart(4, "0") + "\u27e9");

const joined = (value) => (Array.isArray(value) ? value.map((one) => (one === null ? "null" : String(one))).join(", ")
                                                : String(value));
// What is null is a dash for people, unless its class has a text for it.
const textOf = (property) => (property.value === null && property.text === "" ? "\u2013" : visible(joined(property.text)));
const exactOf = (property) => (property.value === null ? "null" : visible(joined(property.value)));
const cut = (text) => (text.length > kLongestCell ? text.slice(0, kLongestCell) + "\u2026" : text);
const counted = (count, one, more) => count.toLocaleString("en") + " " + (count === 1 ? one : more);
const isNumber = (property) => /^([us]int|real)/.test(property.type) && !Array.isArray(property.value);
const looksLikeNumber = (property) => isNumber(property) && /^-?[0-9]/.test(property.text);

function say(text) { document.getElementById("said").textContent = text; }

// --- What the collection has ---------------------------------------------------------------------------------------

const byPath = new Map(); // of instances
const referrers = new Map(); // lists of instances, by the path that they refer to
const healthOf = new Map(about.health.map((fault) => [fault.path, fault]));

function forEachInstance(visit) {
    for (const cls of collection.classes) {
        for (const instance of cls.instances) {
            visit(instance, cls);
        }
    }
}

forEachInstance((instance) => {
    byPath.set(instance.path, instance);
    for (const property of Object.values(instance.properties)) {
        if (property.type === "reference" && typeof property.value === "string") {
            const known = referrers.get(property.value) || [];
            known.push(instance);
            referrers.set(property.value, known);
        }
    }
});

// What a search goes through, made when it is first asked for.
function wordsOf(instance) {
    if (instance.words === undefined) {
        const texts = [instance.path];
        for (const [name, property] of Object.entries(instance.properties)) {
            texts.push(name, joined(property.text), joined(property.value));
        }
        instance.words = texts.join("\n").toLowerCase();
    }
    return instance.words;
}

const matches = (instance, words) => words.every((word) => wordsOf(instance).includes(word));
const wordsIn = (text) => text.toLowerCase().split(/\s+/).filter((word) => word !== "");

// --- Tables --------------------------------------------------------------------------------------------------------

function propertyCell(property) {
    if (property === undefined) {
        return element("td", {title: "the instance has no such property"});
    }
    const text = textOf(property);
    const exact = exactOf(property);
    const cell = element("td", {className: property.value === null ? "null" : looksLikeNumber(property) ? "number" : ""}, cut(text));
    if (exact !== text) {
        cell.title = cut(exact);
    }
    return cell;
}

function compare(left, right) {
    if (left === undefined || right === undefined || left.value === null || right.value === null) {
        return (left && left.value !== null ? 0 : 1) - (right && right.value !== null ? 0 : 1); // what is null comes last
    }
    if (isNumber(left) && isNumber(right)) {
        return Number(left.value) - Number(right.value);
    }
    return joined(left.text).localeCompare(joined(right.text), "en", {numeric: true});
}

// The properties of a class's instances: keys first, then as the class declares them, then those of subclasses.
function columnsOf(cls, instances) {
    const keys = cls.properties.filter((property) => property.qualifiers.Key === true);
    const others = cls.properties.filter((property) => property.qualifiers.Key !== true);
    const names = new Set([...keys, ...others].map((property) => property.name));
    instances.forEach((instance) => Object.keys(instance.properties).forEach((name) => names.add(name)));
    return [...names];
}

const hasValue = (instances, name) =>
    instances.some((instance) => instance.properties[name] !== undefined && instance.properties[name].value !== null);

// What tells the instances apart comes first.
function withTellingFirst(columns, instances) {
    const texts = (name) => new Set(instances.map((instance) =>
        instance.properties[name] === undefined ? undefined : joined(instance.properties[name].text)));
    const telling = new Set(columns.filter((name) => instances.length < 2 || texts(name).size > 1));
    return [...columns.filter((name) => telling.has(name)), ...columns.filter((name) => !telling.has(name))];
}

// A table of instances that can be sorted; many rows come in portions.
function instanceTable(caption, columns, instances) {
    let shown = instances;
    let count = kRowsAtOnce;
    let sorted = null; // {column, sign}
    const body = element("tbody");
    const more = element("button", {type: "button"}, "Show more");
    const drawn = element("span");
    const draw = () => {
        body.replaceChildren(...shown.slice(0, count).map((instance) => element("tr", {},
            element("td", {}, link(["i", instance.path], "open")),
            ...columns.map((name) => propertyCell(instance.properties[name])))));
        more.hidden = shown.length <= count;
        drawn.textContent = more.hidden ? counted(shown.length, "row", "rows")
                                        : counted(count, "row", "rows") + " of " + shown.length.toLocaleString("en");
    };
    more.addEventListener("click", () => { count += kRowsAtOnce; draw(); });
    const headings = columns.map((name) => {
        const button = element("button", {type: "button"}, name);
        const heading = element("th", {scope: "col"}, button);
        button.addEventListener("click", () => {
            const sign = sorted && sorted.column === name ? -sorted.sign : 1;
            sorted = {column: name, sign: sign};
            headings.forEach((other) => other.removeAttribute("aria-sort"));
            heading.setAttribute("aria-sort", sign > 0 ? "ascending" : "descending");
            shown = [...shown].sort((a, b) => sign * compare(a.properties[name], b.properties[name]));
            draw();
            say("sorted by " + name + (sign > 0 ? "" : ", the greatest first"));
        });
        return heading;
    });
    draw();
    return [element("div", {className: "bar"}, drawn, more),
            element("div", {className: "scroll", tabIndex: 0, role: "group", "aria-label": "Rows of " + caption},
                    element("table", {"aria-label": caption},
                            element("thead", {}, element("tr", {}, element("th", {scope: "col"}, "Instance"), ...headings)), body))];
}

function plainTable(headings, rows) {
    return element("div", {className: "plain"}, element("table", {},
        element("thead", {}, element("tr", {}, ...headings.map((text) => element("th", {scope: "col"}, text)))),
        element("tbody", {}, ...rows.map((cells) => element("tr", {}, ...cells)))));
}

const cell = (...children) => element("td", {}, ...children);

// --- Views ---------------------------------------------------------------------------------------------------------

function faultCells(fault) {
    return [element("td", {className: fault.state}, fault.state), cell(visible(fault.class)),
            cell(byPath.has(fault.path) ? link(["i", fault.path], visible(fault.name)) : visible(fault.name)),
            cell(visible(fault.faults))];
}

function healthPart() {
    if (about.health.length === 0) {
        return [element("p", {}, about.telling === 0 ? "No instance tells its health."
                                                     : "Nothing tells of a fault. " + counted(about.telling, "instance tells its health.", "instances tell their health."))];
    }
    const order = (fault) => (fault.state === "critical" ? 0 : 1);
    return [plainTable(["State", "Class", "Element", "What it tells"],
                       [...about.health].sort((a, b) => order(a) - order(b)).map(faultCells))];
}

function missingPart() {
    if (collection.complete) {
        return [];
    }
    return [element("div", {className: "missing"},
                    element("p", {}, "This collection is not complete: something could not be read."),
                    element("ul", {}, ...about.losses.map((loss) => element("li", {}, visible(loss)))))];
}

function overview() {
    const faults = new Map();
    forEachInstance((instance, cls) => {
        if (healthOf.has(instance.path)) {
            faults.set(cls.name, (faults.get(cls.name) || 0) + 1);
        }
    });
    return ["Overview",
            ...missingPart(),
            element("h3", {}, "Health"), ...healthPart(),
            element("h3", {}, "Classes"),
            plainTable(["Class", "Instances", "With faults", "Description"],
                       collection.classes.map((cls) => [cell(link(["c", cls.name], cls.name)),
                           element("td", {className: "number"}, cls.instances.length.toLocaleString("en")),
                           element("td", {className: "number"}, String(faults.get(cls.name) || "")),
                           cell(visible(cls.qualifiers.Description || ""))]))];
}

const qualifierText = ([name, value]) => name + (value === true ? "" : ": " + visible(joined(value)));

function definition(cls) {
    const rows = cls.properties.map((property) => [
        cell(property.name), cell(property.type + (property.array ? "[]" : "")),
        cell(visible(property.qualifiers.Description || "")),
        cell(Object.entries(property.qualifiers).filter(([name]) => name !== "Description").map(qualifierText).join("; "))]);
    return element("details", {}, element("summary", {}, "What the properties mean"),
                   element("div", {className: "whole"}, plainTable(["Property", "Type", "Description", "Qualifiers"], rows)));
}

function classView(name) {
    const cls = collection.classes.find((one) => one.name === name);
    if (!cls) {
        return ["No such class", element("p", {}, "This collection has no class " + visible(name) + ".")];
    }
    const place = element("div");
    const filter = element("input", {type: "search", id: "filter", autocomplete: "off", spellcheck: false});
    const all = element("input", {type: "checkbox", id: "all"});
    const columns = columnsOf(cls, cls.instances);
    const draw = () => {
        const words = wordsIn(filter.value);
        const instances = cls.instances.filter((instance) => matches(instance, words));
        const wanted = all.checked ? columns : columns.filter((column) => hasValue(cls.instances, column));
        place.replaceChildren(...instanceTable(cls.name, withTellingFirst(wanted, cls.instances), instances));
        say(counted(instances.length, "row", "rows"));
    };
    filter.addEventListener("input", draw);
    all.addEventListener("change", draw);
    draw();
    return [cls.name,
            element("p", {}, visible(cls.qualifiers.Description || "")),
            element("p", {}, cls.superclass ? "Superclass: " + cls.superclass : "No superclass"),
            definition(cls),
            element("div", {className: "bar"},
                    element("span", {}, element("label", {htmlFor: "filter"}, "Filter"), filter),
                    element("span", {}, all, element("label", {htmlFor: "all"}, " Columns without values, too"))),
            place];
}

function valueCell(property, text) {
    if (property.type === "reference" && typeof property.value === "string" && byPath.has(property.value)) {
        return cell(link(["i", property.value], text));
    }
    return cell(element("div", {tabIndex: text.length > 2000 ? 0 : -1}, text));
}

function instanceView(path) {
    const instance = byPath.get(path);
    if (!instance) {
        return ["No such instance", element("p", {}, "This collection has no instance " + visible(path) + ".")];
    }
    const fault = healthOf.get(path);
    const rows = Object.entries(instance.properties).map(([name, property]) => {
        const text = textOf(property);
        const exact = exactOf(property);
        return [cell(name), cell(property.type + (Array.isArray(property.value) ? "[]" : "")), valueCell(property, text),
                element("td", {className: property.value === null ? "null" : ""}, exact === text ? "" : exact)];
    });
    const from = referrers.get(path) || [];
    return [visible(path),
            element("p", {}, "Class ", link(["c", classIn(instance)], instance.class)),
            ...(fault ? [element("p", {className: fault.state}, visible(fault.faults))] : []),
            element("div", {className: "whole"}, plainTable(["Property", "Type", "Value", "As sent, where that differs"], rows)),
            ...(from.length === 0 ? [] : [element("h3", {}, "Referred to by"),
                element("ul", {}, ...from.map((one) => element("li", {}, link(["i", one.path], visible(cut(one.path))))))])];
}

// The class under which the instance was collected, perhaps a superclass of its own.
const classIn = (instance) => collection.classes.find((cls) => cls.instances.includes(instance)).name;

function searchView(text) {
    const words = wordsIn(text);
    const parts = [];
    let count = 0;
    for (const cls of collection.classes) {
        const found = cls.instances.filter((instance) => matches(instance, words));
        if (found.length > 0) {
            count += found.length;
            const columns = columnsOf(cls, found).filter((column) => hasValue(found, column));
            parts.push(element("h3", {}, link(["c", cls.name], cls.name)), ...instanceTable(cls.name, withTellingFirst(columns, found), found));
        }
    }
    say(counted(count, "instance", "instances") + " found");
    return ["Search: " + visible(text), element("p", {}, counted(count, "instance", "instances") + " found"), ...parts];
}

// --- The frame -----------------------------------------------------------------------------------------------------

const views = {c: classView, i: instanceView, s: searchView};

function routeInPlace() {
    const [view, ...rest] = location.hash.slice(1).split("/");
    try {
        return [view, rest.map(decodeURIComponent).join("/")];
    } catch (_) {
        return ["", ""]; // somebody has changed the address
    }
}

function show() {
    const [view, argument] = routeInPlace();
    const [title, ...parts] = Object.hasOwn(views, view) ? views[view](argument) : overview();
    main.replaceChildren(element("h2", {}, title), ...parts);
    document.title = title + " \u2013 " + visible(collection.server || collection.url);
    for (const anchor of document.querySelectorAll("nav a")) {
        if (anchor.hash === location.hash) {
            anchor.setAttribute("aria-current", "page");
        } else {
            anchor.removeAttribute("aria-current");
        }
    }
}

function drawFrame() {
    document.getElementById("server").textContent = visible(collection.server || collection.url);
    const instances = collection.classes.reduce((sum, cls) => sum + cls.instances.length, 0);
    document.getElementById("facts").textContent =
        "Collected " + about.collected + " by " + about.program + ": " + counted(collection.classes.length, "class", "classes") +
        ", " + counted(instances, "instance", "instances") + (collection.complete ? "" : ", not complete");
    document.getElementById("classes").append(
        element("li", {}, element("a", {href: "#"}, "Overview")),
        ...collection.classes.map((cls) => element("li", {}, element("a", {href: "#c/" + encodeURIComponent(cls.name)},
            element("span", {}, cls.name), element("span", {className: "count"}, cls.instances.length.toLocaleString("en"))))));
    const words = document.getElementById("words");
    const search = () => { location.hash = words.value.trim() === "" ? "" : "s/" + encodeURIComponent(words.value); };
    words.addEventListener("input", search);
    document.getElementById("search").addEventListener("submit", (event) => { event.preventDefault(); search(); });
    document.querySelector(".skip").addEventListener("click", (event) => { event.preventDefault(); main.focus(); });
    window.addEventListener("hashchange", () => {
        show();
        if (document.activeElement !== words) {
            main.focus({preventScroll: true});
            window.scrollTo(0, 0);
        }
    });
}

drawFrame();
show();
