// What the program says of a value in a row: a text; a text and the exact value; null; or 0 where the instance's class has
// no such property.

import {visible} from "./dom.js";

const kLongest = 300; // characters of a cell; the instance's own page has the whole text

export const hasProperty = (cell) => cell !== 0 && cell !== undefined;
export const isNull = (cell) => cell === null || (Array.isArray(cell) && cell[1] === null);

// What people read; a dash for null, unless the class has a text for it.
export const textOf = (cell) => (!hasProperty(cell) ? "" : cell === null ? "\u2013" : Array.isArray(cell) ? cell[0] : cell);
export const exactOf = (cell) => (!hasProperty(cell) ? "" : isNull(cell) ? "null" : Array.isArray(cell) ? cell[1] : cell);

export const shown = (text) => visible(text.length > kLongest ? text.slice(0, kLongest) + "\u2026" : text);

// Of a table's row, which has one line.
export const inOneLine = (text) => shown(text).replaceAll("\n", " \u21b5 ");

// A row that came before a property was known has no cell for it at all.
export const isSame = (one, other) => textOf(one) === textOf(other) && exactOf(one) === exactOf(other) && hasProperty(one) === hasProperty(other);

// In widths of a digit, rather too many than too few.
const mayNotFit = (text, width) => text.length > width || text.includes("\n") || text.length + (text.match(/[^ -~]|[A-Zmw@%]/g) || []).length > width;

// For what hovers over a cell: the text where it may not fit into `width` characters, the exact value, and that there is more.
export function hintOf(cell, width) {
    if (!hasProperty(cell)) {
        return "the instance has no such property";
    }
    const text = textOf(cell);
    const exact = exactOf(cell);
    const isCut = Math.max(text.length, exact.length) > kLongest;
    return [mayNotFit(text, width) ? shown(text) : "", exact === text ? "" : shown(exact),
            isCut ? text.length.toLocaleString("en") + " characters; the instance's page has all" : ""].filter((part) => part !== "").join("\n");
}

// By what a column is sorted: numbers by their value, texts as people count, so that "disk 10" comes after "disk 9".
export function sortKey(cell, column) {
    if (!hasProperty(cell) || isNull(cell)) {
        return null;
    }
    if (column.number) {
        const number = Number(exactOf(cell));
        return Number.isNaN(number) ? null : number;
    }
    return textOf(cell).slice(0, kLongest).toLowerCase().replace(/\d+/g, (digits) => digits.padStart(15, "0"));
}

// Of two whole numbers that are alike as script numbers, their digits tell.
export function compareDigits(one, other) {
    const [a, b] = [exactOf(one), exactOf(other)];
    if (a === b || !/^-?\d+$/.test(a) || !/^-?\d+$/.test(b)) {
        return 0;
    }
    return BigInt(a) < BigInt(b) ? -1 : 1;
}
