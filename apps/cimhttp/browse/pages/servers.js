// All servers, how they can be reached, and a form for another one.

import {get, post} from "./api.js";
import {counted, element, link, say, visible} from "./dom.js";

const fact = (name, ...content) => [element("dt", {}, name), element("dd", {}, ...content)];
const button = (text, action) => element("button", {type: "button", onclick: action}, text);

// A labelled field of a form; `attributes` are those of the input.
function field(text, attributes, ...hint) {
    return element("p", {className: "field"}, element("label", {htmlFor: attributes.id}, text), element("input", attributes), ...hint);
}

function verification(state) {
    if (!state.tls) {
        return "none: what is sent can be read on the way";
    }
    return state.verified ? "verified by " + visible(state.verifiedBy) : "nobody has verified the server";
}

function certificate(state) {
    return state.certificate === null ? [] : [element("details", {}, element("summary", {}, "Its certificate"),
                                                      element("pre", {}, visible(state.certificate.text)))];
}

// The part of a page that tells of one server, and asks what it takes to reach it.
class ServerCard {
    constructor(server, signal) {
        this.server = server;
        this.signal = signal;
        this.said = element("div", {className: "state", "aria-live": "polite"});
        this.title = element("h2", {}, link(["s", server.name], visible(server.name)));
        this.place = element("section", {"aria-label": visible(server.name), className: "card"}, this.title,
            element("dl", {}, ...fact("Address", visible(server.url)), ...fact("Namespace", visible(server.namespace)),
                    ...fact("User", server.user === null ? "nobody" : visible(server.user))), this.said);
    }

    async ask() {
        this.said.replaceChildren(element("p", {className: "faint"}, "asking\u2026"));
        try {
            const state = await get(["servers", this.server.name, "state"], null, this.signal);
            this.draw(state);
        } catch (error) {
            if (!this.signal.aborted) {
                this.said.replaceChildren(element("p", {className: "failure"}, visible(error.message)), this.again());
            }
        }
    }

    again() { return button("Ask again", () => this.ask()); }

    draw(state) {
        const views = {reached: () => this.reached(state), trust: () => this.question(state), login: () => this.login(state)};
        this.said.replaceChildren(...(views[state.state] || (() => this.failed(state)))());
    }

    reached(state) {
        const known = state.classes === null ? [] : [counted(state.classes, "class", "classes")];
        const time = state.roundTripMs === null ? [] : ["round trip " + Number(state.roundTripMs.toPrecision(2)) + " ms"];
        return [element("p", {}, element("strong", {className: "ok"}, "reached"), " ", [...known, ...time].join(", ")),
                ...(state.reason ? [element("p", {className: "warning"}, visible(state.reason))] : []),
                element("p", {className: "faint"}, "Encryption: ", verification(state)), ...certificate(state),
                element("p", {className: "bar"}, link(["s", this.server.name], "Classes"), link(["s", this.server.name, "h"], "Health"))];
    }

    failed(state) { return [element("p", {className: "failure"}, visible(state.reason)), ...certificate(state), this.again()]; }

    question(state) {
        const trust = button("Trust this certificate from now on", () => this.trust(state.certificate.fingerprint));
        const no = button("No", () => {
            this.said.replaceChildren(element("p", {}, "Not trusted; nothing was sent."), this.again());
        });
        return [element("p", {className: "warning"}, "Nothing verifies this server yet. It shows this certificate:"),
                element("pre", {}, visible(state.certificate.text)),
                element("p", {}, "Whoever runs the server can tell you whether the SHA-256 is right."),
                element("p", {className: "bar"}, trust, no)];
    }

    async trust(fingerprint) {
        await this.tell(["servers", this.server.name, "trust"], {fingerprint: fingerprint});
    }

    login(state) {
        const input = element("input", {type: "password", id: "password-" + this.server.name, autocomplete: "off"});
        const form = element("form", {className: "bar"}, element("label", {htmlFor: input.id}, "Password"), input,
                             element("button", {}, "Log in"));
        form.addEventListener("submit", (event) => {
            event.preventDefault();
            this.tell(["servers", this.server.name, "password"], {password: input.value});
        });
        return [element("p", {className: "failure"}, visible(state.reason)),
                ...(this.server.user === null ? [] : [form, element("p", {className: "faint"}, kAboutPasswords)]), this.again()];
    }

    async tell(parts, content) {
        try {
            await post(parts, content, this.signal);
        } catch (error) {
            say(visible(error.message)); // the state, which is asked for next, has the reason, too
        }
        await this.ask();
        this.title.firstChild.focus();
    }
}

const kAboutPasswords = "A password stays in the program's memory until it ends; no page and no file has it.";

function addForm(added, signal) {
    const failure = element("p", {className: "failure", role: "alert"});
    const form = element("form", {id: "add"},
        field("Name", {id: "add-name", required: true, autocomplete: "off", spellcheck: false}),
        field("Host", {id: "add-host", required: true, autocomplete: "off", spellcheck: false, placeholder: "server.example"},
              element("span", {className: "faint"}, " perhaps with a port")),
        element("p", {className: "field"}, element("input", {type: "checkbox", id: "add-tls", checked: true}),
                element("label", {htmlFor: "add-tls"}, " encrypted (HTTPS)")),
        field("User", {id: "add-user", autocomplete: "off", spellcheck: false}),
        field("Password", {id: "add-password", type: "password", autocomplete: "off"}),
        field("Namespace", {id: "add-namespace", autocomplete: "off", spellcheck: false, placeholder: "root/cimv2"}),
        element("p", {className: "faint"}, kAboutPasswords), failure, element("button", {}, "Add"));
    const value = (name) => form.querySelector("#add-" + name).value.trim();
    form.addEventListener("submit", async (event) => {
        event.preventDefault();
        failure.textContent = "";
        try {
            await post(["servers"], {name: value("name"), host: value("host"), tls: form.querySelector("#add-tls").checked,
                                     user: value("user"), password: form.querySelector("#add-password").value,
                                     namespace: value("namespace")}, signal);
            form.reset();
            await added();
        } catch (error) {
            failure.textContent = visible(error.message);
        }
    });
    return element("details", {id: "adding"}, element("summary", {}, "Add a server"), form);
}

export async function show({place, signal, setTitle}) {
    setTitle("Servers");
    const list = element("div", {className: "cards"});
    const draw = async () => {
        const {servers} = await get(["servers"], null, signal);
        const cards = servers.map((server) => new ServerCard(server, signal));
        list.replaceChildren(...cards.map((card) => card.place));
        if (cards.length === 0) {
            list.append(element("p", {}, "There is no named connection yet."));
        }
        cards.forEach((card) => card.ask());
        return cards;
    };
    const form = addForm(async () => {
        const cards = await draw();
        say(counted(cards.length, "server", "servers"));
    }, signal);
    place.replaceChildren(list, form);
    form.open = (await draw()).length === 0;
}
