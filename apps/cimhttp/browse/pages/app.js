// The frame: which view is shown for the page's address, and what all views have in common.

import {onLosses} from "./api.js";
import {element, link, say, visible} from "./dom.js";
import * as servers from "./servers.js";
import * as classes from "./classes.js";
import * as classView from "./class.js";
import * as instances from "./instances.js";
import * as instance from "./instance.js";
import * as watch from "./watch.js";
import * as health from "./health.js";

// By the part behind the server's name: #/s/NAME/c/CIM_Fan
const kViews = {"": classes, c: classView, i: instances, o: instance, w: watch, h: health};

const main = document.getElementById("main");
const pages = document.getElementById("pages");
const losses = document.getElementById("losses");
let leaving = null; // ends what the view that is shown has begun
let actions = 0; // of that view, which go on

// {parts: ["s", "lab", "c", "CIM_Fan"], values: {property: "Speed"}}
function routeNow() {
    const [path, query] = location.hash.replace(/^#\/?/, "").split("?");
    return {parts: path.split("/").filter((part) => part !== "").map(decodeURIComponent),
            values: Object.fromEntries(new URLSearchParams(query || ""))};
}

function drawPages(server, kind) {
    const page = (parts, text, isHere) => {
        const made = link(parts, text);
        if (isHere) {
            made.setAttribute("aria-current", "page");
        }
        return made;
    };
    pages.replaceChildren(page([], "Servers", server === undefined),
        ...(server === undefined ? [] : [page(["s", server], visible(server) + ": classes", kind === ""), page(["s", server, "h"], "Health", kind === "h")]));
}

function showFailure(error) {
    document.getElementById("failed")?.remove();
    main.append(element("p", {className: "failure", role: "alert", id: "failed"}, visible(error.message)));
    if (error.kind === undefined) {
        console.error(error); // a fault of the page itself
    }
}

// Lets a view do something, and shows why it failed if it does, unless the user has left.
async function attempt(action, signal) {
    document.getElementById("failed")?.remove();
    ++actions;
    main.setAttribute("aria-busy", "true");
    try {
        await action();
    } catch (error) {
        if (!signal.aborted) {
            showFailure(error);
        }
    }
    if (!signal.aborted) {
        main.setAttribute("aria-busy", String(--actions > 0));
    }
}

async function show() {
    if (leaving) {
        leaving.abort();
    }
    leaving = new AbortController();
    actions = 0;
    const signal = leaving.signal;
    const {parts, values} = routeNow();
    const server = parts[0] === "s" ? parts[1] : undefined;
    const kind = server === undefined ? undefined : parts[2] || "";
    const view = server === undefined ? servers : kViews[kind];
    drawPages(server, kind);
    losses.hidden = true;
    losses.replaceChildren();
    const heading = element("h1", {tabIndex: -1});
    const place = element("div", {id: "place"});
    main.replaceChildren(heading, place);
    const setTitle = (text) => {
        heading.textContent = text;
        document.title = text + " \u2013 cimhttp";
    };
    setTitle("\u2026");
    if (view === undefined) {
        setTitle("No such page");
        return;
    }
    await attempt(() => view.show({server: server, rest: parts.slice(3), values: values, place: place, signal: signal,
                                   setTitle: setTitle, attempt: (action) => attempt(action, signal)}), signal);
    if (!signal.aborted) {
        say(heading.textContent);
    }
}

onLosses((texts) => {
    const list = losses.querySelector("ul") || element("ul");
    if (losses.hidden) {
        losses.replaceChildren(element("h2", {}, "What could not be read"), list);
        losses.hidden = false;
    }
    const known = new Set([...list.children].map((item) => item.textContent));
    texts.map(visible).filter((text) => !known.has(text)).forEach((text) => list.append(element("li", {}, text)));
});

window.addEventListener("hashchange", () => { show().then(() => main.querySelector("h1").focus()); });

// The page's address is that of a view, so that the link does not change it.
document.querySelector(".skip").addEventListener("click", (event) => {
    event.preventDefault();
    main.focus();
});

show();
