// The tree of a server's classes, which is filtered as one types.

import {get} from "./api.js";
import {address, counted, element, link, say, visible} from "./dom.js";
import {hierarchyOf} from "./hierarchy.js";

const kMostRows = 150; // are drawn at once; more take longer than a key stroke may

// The name with the part that was looked for marked.
function marked(name, text) {
    const begin = text === "" ? -1 : name.toLowerCase().indexOf(text);
    if (begin < 0) {
        return [visible(name)];
    }
    const end = begin + text.length;
    return [visible(name.slice(0, begin)), element("mark", {}, visible(name.slice(begin, end))), visible(name.slice(end))];
}

class ClassTree {
    constructor(server, hierarchy, signal) {
        this.server = server;
        this.hierarchy = hierarchy;
        this.signal = signal;
        this.open = new Set(hierarchy.top.length === 1 ? [hierarchy.top[0].name] : []);
        this.counts = new Map(); // of instances, by class; null where they could not be counted
        this.text = "";
        this.limit = kMostRows;
        this.place = element("div", {role: "tree", "aria-label": "Classes", className: "tree"});
        this.more = element("button", {type: "button", onclick: () => { this.limit = Infinity; this.draw(); }});
        this.place.addEventListener("keydown", (event) => this.press(event));
        this.place.addEventListener("click", (event) => this.click(event));
    }

    // Shows the classes whose names have the text, below those above them; returns how many there are.
    filter(text) {
        this.text = text.toLowerCase();
        this.limit = kMostRows;
        this.shown = null;
        let count = this.hierarchy.byName.size;
        if (this.text !== "") {
            const found = [...this.hierarchy.byName.values()].filter((cls) => cls.name.toLowerCase().includes(this.text));
            this.shown = new Set(found.flatMap((cls) => [cls, ...this.hierarchy.above(cls.name)]));
            count = found.length;
        }
        this.draw();
        return count;
    }

    rows() {
        const rows = [];
        const visited = new Set();
        const visit = (classes, level) => {
            for (const cls of classes) {
                if ((this.shown && !this.shown.has(cls)) || visited.has(cls)) {
                    continue;
                }
                visited.add(cls);
                const below = this.shown ? cls.below.filter((one) => this.shown.has(one)) : cls.below;
                const isOpen = this.shown ? below.length > 0 : this.open.has(cls.name);
                rows.push({cls: cls, level: level, isOpen: isOpen, hasBelow: below.length > 0});
                if (isOpen) {
                    visit(below, level + 1);
                }
            }
        };
        visit(this.hierarchy.top, 1);
        return rows;
    }

    draw() {
        const rows = this.rows();
        const drawn = rows.slice(0, this.limit);
        if (!drawn.some((row) => row.cls.name === this.current)) {
            this.current = drawn.length > 0 ? drawn[0].cls.name : null;
        }
        const hadFocus = this.place.contains(document.activeElement);
        this.place.replaceChildren(...drawn.map((row) => this.row(row)));
        this.more.hidden = drawn.length === rows.length;
        this.more.textContent = "Show " + counted(rows.length - drawn.length, "more row", "more rows");
        if (hadFocus) {
            this.focus(this.current);
        }
    }

    row({cls, level, isOpen, hasBelow}) {
        const item = element("div", {role: "treeitem", "aria-level": level, className: "row", tabIndex: cls.name === this.current ? 0 : -1},
            element("span", {className: "toggle", "aria-hidden": "true"}, hasBelow ? (isOpen ? "\u25be" : "\u25b8") : ""),
            element("a", {href: address(["s", this.server, "c", cls.name]), tabIndex: -1}, ...marked(cls.name, this.text)),
            element("span", {className: "count"}, this.countText(cls.name)),
            element("span", {className: "links"},
                element("a", {href: address(["s", this.server, "i", cls.name]), tabIndex: -1}, "instances"),
                element("button", {type: "button", tabIndex: -1, className: "counter"}, "count")));
        item.style.paddingLeft = (level - 1) * 1.2 + "em";
        item.dataset.name = cls.name;
        if (hasBelow) {
            item.setAttribute("aria-expanded", String(isOpen));
        }
        return item;
    }

    countText(name) {
        if (!this.counts.has(name)) {
            return "";
        }
        const count = this.counts.get(name);
        return count === null ? "could not be counted" : count.toLocaleString("en");
    }

    item(name) { return [...this.place.children].find((item) => item.dataset.name === name); }

    focus(name) {
        const before = this.item(this.current);
        if (before) {
            before.tabIndex = -1;
        }
        this.current = name;
        const item = this.item(name);
        if (item) {
            item.tabIndex = 0;
            item.focus();
        }
    }

    toggle(name, isOpen) {
        if (isOpen) {
            this.open.add(name);
        } else {
            this.open.delete(name);
        }
        this.current = name;
        this.draw();
        this.focus(name);
    }

    click(event) {
        const item = event.target.closest(".row");
        if (!item) {
            return;
        }
        if (event.target.classList.contains("counter")) {
            this.count(item.dataset.name);
        } else if (event.target.classList.contains("toggle") && item.hasAttribute("aria-expanded")) {
            this.toggle(item.dataset.name, item.getAttribute("aria-expanded") !== "true");
        }
    }

    // The keys of a tree as assistive technology knows them.
    press(event) {
        const item = event.target.closest(".row");
        if (!item || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const items = [...this.place.children];
        const number = items.indexOf(item);
        const isOpen = item.getAttribute("aria-expanded") === "true";
        const go = (to) => to >= 0 && to < items.length && this.focus(items[to].dataset.name);
        const keys = {
            ArrowDown: () => go(number + 1),
            ArrowUp: () => go(number - 1),
            Home: () => go(0),
            End: () => go(items.length - 1),
            ArrowRight: () => (isOpen ? go(number + 1) : item.hasAttribute("aria-expanded") && this.toggle(item.dataset.name, true)),
            ArrowLeft: () => (isOpen && !this.shown ? this.toggle(item.dataset.name, false) : go(this.above(items, number))),
            Enter: () => { location.hash = address(["s", this.server, "c", item.dataset.name]); },
            i: () => { location.hash = address(["s", this.server, "i", item.dataset.name]); },
            c: () => this.count(item.dataset.name)
        };
        if (keys[event.key]) {
            event.preventDefault();
            keys[event.key]();
        }
    }

    above(items, number) {
        const level = Number(items[number].getAttribute("aria-level"));
        for (let i = number - 1; i >= 0; --i) {
            if (Number(items[i].getAttribute("aria-level")) < level) {
                return i;
            }
        }
        return -1;
    }

    // Of the class and all below it.
    async count(name) {
        const button = this.item(name).querySelector(".counter");
        button.disabled = true;
        button.textContent = "counting\u2026";
        say("Counting the instances of " + name);
        try {
            const {counts} = await get(["servers", this.server, "counts"], {class: name}, this.signal);
            let sum = 0;
            for (const [cls, count] of Object.entries(counts)) {
                this.counts.set(cls, count);
                sum += count || 0;
            }
            this.draw();
            say(visible(name) + " and its subclasses: " + counted(sum, "instance", "instances"));
        } catch (error) {
            if (!this.signal.aborted) {
                button.textContent = "count";
                button.disabled = false;
                say(visible(error.message));
                this.item(name).querySelector(".count").textContent = visible(error.message);
            }
        }
    }
}

// For servers that do not list their classes.
function classByName(server) {
    const input = element("input", {id: "class-name", autocomplete: "off", spellcheck: false});
    const form = element("form", {className: "bar"}, element("label", {htmlFor: "class-name"}, "A class by its name"), input,
                         element("button", {}, "Show"));
    form.addEventListener("submit", (event) => {
        event.preventDefault();
        if (input.value.trim() !== "") {
            location.hash = address(["s", server, "c", input.value.trim()]);
        }
    });
    return form;
}

async function hierarchyOrForm(server, place, signal, isFresh) {
    try {
        return await hierarchyOf(server, signal, isFresh);
    } catch (error) {
        if (!signal.aborted) {
            place.replaceChildren(...(error.kind === "trust" || error.kind === "login" || error.kind === "connection"
                ? [element("p", {}, link([], "To the servers"))] : [classByName(server)]));
        }
        throw error;
    }
}

export async function show({server, place, signal, setTitle, attempt}) {
    setTitle("Classes of " + visible(server));
    const draw = async (isFresh) => {
        const hierarchy = await hierarchyOrForm(server, place, signal, isFresh);
        const tree = new ClassTree(server, hierarchy, signal);
        const found = element("span");
        const filter = element("input", {type: "search", id: "filter", autocomplete: "off", spellcheck: false});
        const apply = () => {
            const count = tree.filter(filter.value.trim());
            found.textContent = counted(count, "class", "classes");
            say(found.textContent);
        };
        filter.addEventListener("input", apply);
        filter.addEventListener("keydown", (event) => {
            if (event.key === "ArrowDown" && tree.current) {
                event.preventDefault();
                tree.focus(tree.current);
            }
        });
        place.replaceChildren(element("div", {className: "bar"}, element("span", {}, element("label", {htmlFor: "filter"}, "Find a class"), filter), found,
                element("button", {type: "button", onclick: () => attempt(() => draw(true))}, "Ask the server again")),
            element("p", {className: "faint"}, "In the tree: arrows move and open, Enter shows the class, I its instances, C counts them."),
            tree.place, tree.more);
        apply();
    };
    await draw(false);
}
