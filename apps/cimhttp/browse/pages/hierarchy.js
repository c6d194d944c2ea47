// The classes of a server by name and as a tree, kept while its pages are looked at.

import {get} from "./api.js";

const kept = new Map(); // by the server's name
const key = (name) => name.toLowerCase();

class Hierarchy {
    constructor(classes) {
        this.byName = new Map(classes.map((cls) => [key(cls.name), {...cls, below: []}]));
        this.top = [];
        for (const cls of this.byName.values()) {
            const above = this.byName.get(key(cls.superclass));
            (above && above !== cls ? above.below : this.top).push(cls);
        }
        const order = (a, b) => (key(a.name) < key(b.name) ? -1 : 1);
        this.top.sort(order);
        this.byName.forEach((cls) => cls.below.sort(order));
    }

    find(name) { return this.byName.get(key(name)); }

    // The classes above one, the nearest first; a server may make circles of its classes.
    above(name) {
        const found = [];
        const seen = new Set([key(name)]);
        for (let cls = this.find(name); cls && !seen.has(key(cls.superclass)); ) {
            seen.add(key(cls.superclass));
            cls = this.find(cls.superclass);
            if (cls) {
                found.push(cls);
            }
        }
        return found;
    }

    // The associations that refer to a class or to one above it: {association, role, class}.
    associationsOf(name) {
        const meant = new Set([key(name), ...this.above(name).map((cls) => key(cls.name))]);
        const found = [];
        for (const cls of this.byName.values()) {
            for (const reference of cls.references || []) {
                if (meant.has(key(reference.class))) {
                    found.push({association: cls.name, role: reference.role, class: reference.class});
                }
            }
        }
        return found;
    }
}

// With `isFresh`, the server is asked again.
export async function hierarchyOf(server, signal, isFresh) {
    if (!kept.has(server) || isFresh) {
        const {classes} = await get(["servers", server, "classes"], isFresh ? {fresh: "1"} : null, signal);
        kept.set(server, new Hierarchy(classes));
    }
    return kept.get(server);
}
