// Reads the instances of a class part by part.

import {get, post} from "./api.js";

// take(part) gets each part as the program sends it: {columns, rows, time}; columns only where they are new. Returns whether
// all were read: take ends the reading by returning false. The signal ends it, too.
export async function readInstances(server, values, signal, take) {
    let reading = null;
    try {
        let part = await get(["servers", server, "instances"], values, signal);
        for (;;) {
            reading = part.reading;
            const goesOn = take(part) !== false;
            if (reading === null) {
                return true;
            }
            if (!goesOn) {
                return false;
            }
            part = await get(["servers", server, "instances"], {reading: reading}, signal);
        }
    } finally {
        if (reading !== null) { // the program forgets one that has ended by itself
            post(["servers", server, "readings"], {end: reading}).catch(() => {});
        }
    }
}
