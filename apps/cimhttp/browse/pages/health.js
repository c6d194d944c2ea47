// What is not well, by component.

import {get} from "./api.js";
import {counted, element, link, plainTable, say, visible} from "./dom.js";

const order = (fault) => (fault.state === "critical" ? 0 : 1);

// [["ACME_Fan", [fault, ...]], ...], that with the worst first
function byClass(faults) {
    const groups = new Map();
    for (const fault of [...faults].sort((a, b) => order(a) - order(b))) {
        groups.set(fault.class, [...(groups.get(fault.class) || []), fault]);
    }
    return [...groups];
}

function faultRow(server, fault) {
    return [element("td", {className: fault.state}, fault.state), link(["s", server, "o", fault.path], visible(fault.name)), visible(fault.text)];
}

function summary({elements, telling, faults}) {
    const looked = counted(elements, "element", "elements") + ", of which " + telling.toLocaleString("en") + (telling === 1 ? " tells its health. " : " tell their health. ");
    if (telling === 0) {
        return looked;
    }
    const critical = faults.filter((fault) => fault.state === "critical").length;
    return looked + (faults.length === 0 ? "Nothing tells of a fault." : critical + " critical, " + counted(faults.length - critical, "warning", "warnings") + ".");
}

export async function show({server, place, signal, setTitle, attempt}) {
    setTitle("Health of " + visible(server));
    const draw = async () => {
        const health = await get(["servers", server, "health"], null, signal);
        const time = new Date().toLocaleTimeString("en-GB");
        place.replaceChildren(
            element("p", {className: "bar"}, element("span", {}, "Asked at " + time), element("button", {type: "button", onclick: () => attempt(draw)}, "Ask again")),
            element("p", {}, summary(health)),
            ...byClass(health.faults).flatMap(([cls, faults]) => [element("h2", {}, link(["s", server, "c", cls], visible(cls))),
                plainTable(["State", "Element", "What it tells"], faults.map((fault) => faultRow(server, fault)), {"aria-label": visible(cls)})]));
        say(summary(health));
    };
    await draw();
}
