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

// For what hovers over a cell: the exact value, and that there is more.
export function hintOf(cell) {
    if (!hasProperty(cell)) {
        return "the instance has no such property";
    }
    const text = textOf(cell);
    const exact = exactOf(cell);
    const more = text.length > kLongest ? text.length.toLocaleString("en") + " characters; the instance's page has all" : "";
    return [exact === text || exact.length > kLongest ? "" : shown(exact), more].filter((part) => part !== "").join("\n");
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
