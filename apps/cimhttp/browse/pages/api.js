// Asks the program, which asks the servers.

export class ApiError extends Error {
    // kind: usage, connection, login, trust, notfound, server, incomplete, other; details: the whole answer
    constructor(message, kind, details) {
        super(message);
        this.kind = kind;
        this.details = details || {};
    }
}

let takeLosses = () => {};

// From now on, `take` gets what could not be read of an answer: a list of texts.
export function onLosses(take) { takeLosses = take; }

async function answerOf(request) {
    let response;
    try {
        response = await request;
    } catch (error) {
        if (error.name === "AbortError") {
            throw error;
        }
        throw new ApiError("The program does not answer; it may have been ended.", "gone");
    }
    const type = response.headers.get("Content-Type") || "";
    const answer = type.startsWith("application/json") ? await response.json() : {error: (await response.text()).trim()};
    if (!response.ok) {
        throw new ApiError(answer.error, answer.kind || "other", answer);
    }
    if (answer.losses && answer.losses.length > 0) {
        takeLosses(answer.losses);
    }
    return answer;
}

const apiAddress = (parts, values) =>
    "/api/" + parts.map(encodeURIComponent).join("/") + (values ? "?" + new URLSearchParams(values) : "");

// get(["servers", name, "class"], {name: "CIM_Fan"}, signal): the answer, an object. Throws ApiError, or an AbortError
// after the signal.
export const get = (parts, values, signal) => answerOf(fetch(apiAddress(parts, values), {signal: signal}));

export const post = (parts, content, signal) => answerOf(fetch(apiAddress(parts), {
    method: "POST", headers: {"Content-Type": "application/json"}, body: JSON.stringify(content), signal: signal}));
