// Numbers of instances over time, as a chart needs them.

const kMost = 3600; // readings that are kept

export class Samples {
    // isCounter: numbers count up, and are shown as how much more there is each second; times: of a number, to its unit
    constructor(isCounter, times) {
        this.isCounter = isCounter;
        this.times = times;
        this.readings = []; // {date, values: Map of numbers by path}
        this.last = null; // {time, digits: Map of digits by path}
        this.restarts = 0;
    }

    // digits: the exact numbers by path; time: the program's clock, in milliseconds, when they had come
    add(date, time, digits) {
        const values = this.isCounter ? this.rates(time, digits) : new Map([...digits].map(([path, text]) => [path, Number(text) * this.times]));
        this.last = {time: time, digits: digits};
        this.push({date: date, values: values});
    }

    // There was no answer.
    addGap(date) {
        this.last = null; // what was counted meanwhile is no rate of one reading
        this.push({date: date, values: new Map()});
    }

    push(reading) {
        this.readings.push(reading);
        if (this.readings.length > kMost) {
            this.readings.shift();
        }
    }

    // A counter that is less than before has begun anew, or come to the end of its digits: nothing tells which, so there is no rate.
    rates(time, digits) {
        const rates = new Map();
        if (this.last === null) {
            return rates;
        }
        const seconds = (time - this.last.time) / 1000;
        for (const [path, text] of digits) {
            const before = this.last.digits.get(path);
            if (before === undefined || seconds <= 0) {
                continue;
            }
            const more = /^-?\d+$/.test(text) && /^-?\d+$/.test(before) ? Number(BigInt(text) - BigInt(before)) : Number(text) - Number(before);
            if (more < 0) {
                ++this.restarts;
            } else {
                rates.set(path, more * this.times / seconds);
            }
        }
        return rates;
    }

    // [[date, number or null, ...], ...] for these instances.
    table(paths) {
        return this.readings.map((reading) => [reading.date, ...paths.map((path) => (reading.values.has(path) ? reading.values.get(path) : null))]);
    }
}

const quoted = (text) => (/[",\r\n]/.test(text) ? "\"" + text.replaceAll("\"", "\"\"") + "\"" : text);

// As RFC 4180 has it; a gap is an empty field.
export function csvOf(headings, table) {
    const rows = table.map((row) => row.map((cell) => (cell === null ? "" : cell instanceof Date ? cell.toISOString() : String(cell))));
    return [headings, ...rows].map((row) => row.map(quoted).join(",") + "\r\n").join("");
}
