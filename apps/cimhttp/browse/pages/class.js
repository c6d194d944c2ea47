// One class: what it means, what it has, and what it hangs together with.

import {get} from "./api.js";
import {counted, element, link, plainTable, say, visible, wordsIn} from "./dom.js";
import {hierarchyOf} from "./hierarchy.js";

const joined = (value) => (Array.isArray(value) ? value.map((one) => (one === null ? "null" : String(one))).join(", ") : String(value));
const kToldElsewhere = new Set(["description", "valuemap", "values", "bitmap", "bitvalues", "units", "punit", "key"]);

// A qualifier whatever the case of its name.
function qualifier(feature, name) {
    const found = Object.entries(feature.qualifiers).find(([one]) => one.toLowerCase() === name);
    return found ? found[1] : undefined;
}

// What numbers, texts or bits stand for, in the order of the class.
function meanings(feature) {
    for (const [keys, values, kind] of [["valuemap", "values", "Values"], ["bitmap", "bitvalues", "Bits"]]) {
        const names = qualifier(feature, keys);
        const texts = qualifier(feature, values);
        if (Array.isArray(names) || Array.isArray(texts)) {
            const count = Math.max((names || []).length, (texts || []).length);
            const rows = Array.from({length: count}, (_, i) => [visible(String(names ? names[i] ?? "" : i)), visible(String((texts || [])[i] ?? ""))]);
            return [element("details", {}, element("summary", {}, kind + ": " + count), plainTable([kind === "Bits" ? "Bit" : "Value", "Meaning"], rows))];
        }
    }
    return [];
}

function others(feature) {
    const rows = Object.entries(feature.qualifiers).filter(([name]) => !kToldElsewhere.has(name.toLowerCase()))
        .map(([name, value]) => [visible(name), visible(joined(value))]);
    return rows.length === 0 ? []
        : [element("details", {}, element("summary", {}, counted(rows.length, "qualifier", "qualifiers")), plainTable(["Qualifier", "Value"], rows))];
}

const described = (feature) => {
    const text = qualifier(feature, "description");
    return typeof text === "string" ? [element("div", {className: "text"}, visible(text))] : [];
};

const unitOf = (property) => qualifier(property, "punit") ?? qualifier(property, "units") ?? "";
const typeOf = (server, feature) => [feature.class ? link(["s", server, "c", feature.class], visible(feature.class)) : visible(feature.type),
                                     (feature.class ? " REF" : "") + (feature.array ? "[]" : "")];

function propertyRow(server, property) {
    const name = element("th", {scope: "row"}, visible(property.name), ...(qualifier(property, "key") === true ? [" ", element("small", {}, "key")] : []));
    const origin = property.inherited ? [link(["s", server, "c", property.origin], visible(property.origin))] : [];
    return [name, element("td", {}, ...typeOf(server, property)), element("td", {}, visible(joined(unitOf(property)))),
            element("td", {}, ...described(property), ...meanings(property), ...others(property)), element("td", {}, ...origin)];
}

function properties(server, cls) {
    const filter = element("input", {type: "search", id: "filter", autocomplete: "off", spellcheck: false});
    const place = element("div", {className: "whole"});
    const draw = () => {
        const words = wordsIn(filter.value);
        const shown = cls.properties.filter((property) => {
            const text = (property.name + " " + joined(qualifier(property, "description") || "")).toLowerCase();
            return words.every((word) => text.includes(word));
        });
        place.replaceChildren(plainTable(["Property", "Type", "Unit", "Meaning", "From"], shown.map((one) => propertyRow(server, one)), {"aria-label": "Properties"}));
        say(counted(shown.length, "property", "properties"));
    };
    filter.addEventListener("input", draw);
    draw();
    return [element("h2", {}, counted(cls.properties.length, "property", "properties")),
            element("div", {className: "bar"}, element("span", {}, element("label", {htmlFor: "filter"}, "Find a property"), filter)), place];
}

function methods(server, cls) {
    if (cls.methods.length === 0) {
        return [];
    }
    const parameter = (one) => element("li", {}, one.direction + " ", ...typeOf(server, one), " ", element("b", {}, visible(one.name)), ...described(one), ...meanings(one));
    const rows = cls.methods.map((method) => [element("th", {scope: "row"}, visible(method.name)), element("td", {}, visible(method.type)),
        element("td", {}, element("ul", {}, ...method.parameters.map(parameter))), element("td", {}, ...described(method), ...meanings(method), ...others(method))]);
    return [element("h2", {}, counted(cls.methods.length, "method", "methods")),
            element("p", {className: "faint"}, "They are shown, and cannot be called from here."),
            element("div", {className: "whole"}, plainTable(["Method", "Returns", "Parameters", "Meaning"], rows, {"aria-label": "Methods"}))];
}

function mofPart(mof) {
    const copy = element("button", {type: "button"}, "Copy");
    copy.addEventListener("click", async () => {
        await navigator.clipboard.writeText(mof);
        say("The MOF is in the clipboard");
    });
    const isWide = matchMedia("(min-width: 95em)").matches; // then there is room for it beside the rest
    return element("details", {id: "mof", open: isWide}, element("summary", {}, "MOF"), copy, element("pre", {tabIndex: 0}, visible(mof)));
}

const listOf = (items) => element("ul", {className: "inline"}, ...items.map((item) => element("li", {}, ...item)));

function relatives(server, hierarchy, cls) {
    const classLink = (one) => [link(["s", server, "c", one.name], visible(one.name))];
    const above = hierarchy.above(cls.name);
    const known = hierarchy.find(cls.name);
    const associations = hierarchy.associationsOf(cls.name).map((one) =>
        [link(["s", server, "c", one.association], visible(one.association)), " as " + visible(one.role)]);
    const part = (title, items) => (items.length === 0 ? [] : [element("h2", {}, title), listOf(items)]);
    return [...part("Superclasses", above.map(classLink)), ...part("Subclasses", known ? known.below.map(classLink) : []),
            ...part("Associations", associations)];
}

export async function show({server, rest, place, signal, setTitle}) {
    const name = rest[0];
    setTitle(visible(name));
    const {class: cls, mof} = await get(["servers", server, "class"], {name: name}, signal);
    setTitle(visible(cls.name));
    const kin = element("div");
    place.replaceChildren(...described(cls),
        element("p", {className: "bar"}, link(["s", server, "i", cls.name], "Instances"), link(["s", server, "w", cls.name], "Watch")),
        kin, element("div", {className: "beside"}, element("div", {}, ...properties(server, cls), ...methods(server, cls)),
                     element("div", {}, element("h2", {}, "As it is declared"), mofPart(mof), ...others(cls))));
    try {
        kin.replaceChildren(...relatives(server, await hierarchyOf(server, signal), cls));
    } catch (error) {
        if (!signal.aborted) {
            kin.replaceChildren(element("p", {className: "failure"}, "What it hangs together with is not known: " + visible(error.message)));
        }
    }
}
