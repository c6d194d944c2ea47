// Draws numbers over time with dygraphs, and makes a picture of what is seen.

import {element} from "./dom.js";

let loading = null;

// The library is a script of its own, which is loaded with the first chart.
function loadLibrary() {
    loading = loading || new Promise((loaded, failed) => {
        const script = element("script", {src: "dygraph.min.js"});
        script.addEventListener("load", () => {
            // The legend would make markup of names, and has a style that the page's policy forbids; the page has its own.
            window.Dygraph.PLUGINS = window.Dygraph.PLUGINS.filter((plugin) => plugin !== window.Dygraph.Plugins.Legend);
            loaded();
        });
        script.addEventListener("error", () => failed(new Error("the chart library could not be loaded")));
        document.head.append(element("link", {rel: "stylesheet", href: "dygraph.css"}), script);
    });
    return loading;
}

const isDark = () => matchMedia("(prefers-color-scheme: dark)").matches;
const kLight = ["#1f5f8b", "#a3400f", "#2f7d32", "#7b3fa0", "#b0003a", "#00727a", "#6b5900", "#4a4a8a", "#8a2f6b", "#3d6b1f"];
const kDark = ["#7cc0f0", "#ffab70", "#8bd48f", "#d0a3f0", "#ff8fae", "#6fd6dd", "#e0cf70", "#b0b0f5", "#f09bd3", "#b5e08f"];
export const colorOf = (number) => (isDark() ? kDark : kLight)[number % kLight.length];

export class Chart {
    constructor() {
        this.place = element("div", {className: "chart", "aria-hidden": "true"}); // a table has the newest numbers
        this.graph = null;
        this.rows = []; // as the library has them
        this.stretch = 0; // seconds that are in sight; all for 0
    }

    lastOf(rows) {
        const end = rows[rows.length - 1][0].getTime();
        return [end - this.stretch * 1000, end];
    }

    // Shows the newest seconds from now on, or all.
    turnTo(seconds) {
        this.stretch = seconds;
        if (this.graph !== null) {
            this.graph.updateOptions({dateWindow: seconds > 0 ? this.lastOf(this.rows) : null});
        }
    }

    // count: of lines; the library tells lines apart by names, which those of a server need not do
    async draw(count, table) {
        await loadLibrary();
        const numbers = [...Array(count).keys()];
        const rows = table.length > 0 ? table : [[new Date(), ...numbers.map(() => null)]];
        this.rows = rows;
        const options = {file: rows, labels: ["Time", ...numbers.map(String)], colors: numbers.map(colorOf)};
        if (this.stretch > 0) {
            options.dateWindow = this.lastOf(rows);
        }
        if (this.graph === null) {
            this.graph = new window.Dygraph(this.place, rows, {...options, legend: "never", drawPoints: true, pointSize: 2, strokeWidth: 1.5, labelsKMB: true,
                axisLabelWidth: 70, axisLineColor: isDark() ? "#777" : "#999", gridLineColor: isDark() ? "#444" : "#ccc", includeZero: true});
        } else {
            this.graph.updateOptions(options);
        }
    }

    // Of the rows of a table, those that are in sight.
    seen(table) {
        if (this.graph === null) {
            return table;
        }
        const [begin, end] = this.graph.xAxisRange();
        return table.filter(([date]) => date >= begin && date <= end);
    }

    // Lines, numbers at the axes, and a legend below.
    async picture(title, labels) {
        const box = this.place.getBoundingClientRect();
        const style = getComputedStyle(document.body);
        const line = 18;
        const canvas = element("canvas", {width: box.width, height: box.height + (labels.length + 2) * line});
        const context = canvas.getContext("2d");
        context.fillStyle = style.backgroundColor;
        context.fillRect(0, 0, canvas.width, canvas.height);
        for (const layer of this.place.querySelectorAll("canvas")) {
            const at = layer.getBoundingClientRect();
            context.drawImage(layer, at.left - box.left, at.top - box.top + line, at.width, at.height);
        }
        context.font = "13px sans-serif";
        context.fillStyle = style.color;
        context.fillText(title, 8, 14);
        for (const label of this.place.querySelectorAll(".dygraph-axis-label")) {
            const at = label.getBoundingClientRect();
            context.textAlign = label.classList.contains("dygraph-axis-label-y") ? "right" : "center";
            const x = context.textAlign === "right" ? at.right : (at.left + at.right) / 2;
            context.fillText(label.textContent, x - box.left, at.top - box.top + line + 12);
        }
        context.textAlign = "left";
        labels.forEach((label, i) => {
            const y = box.height + (i + 1.5) * line;
            context.fillStyle = colorOf(i);
            context.fillRect(8, y, 10, 10);
            context.fillStyle = style.color;
            context.fillText(label, 24, y + 10);
        });
        return new Promise((made) => canvas.toBlob(made, "image/png"));
    }

    end() {
        if (this.graph !== null) {
            this.graph.destroy();
        }
    }
}
