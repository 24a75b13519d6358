// A series as a file of comma-separated values: date, day, value.
import { date, hasDates } from "./dates.js";
import { h } from "./dom.js";
import { exact } from "./format.js";
import { points, titleOf, unitOf } from "./series_data.js";

// a text in quotes that no spreadsheet takes for a formula
const quoted = (text) => `"${(/^[=+\-@]/.test(text) ? `'${text}` : text).replace(/"/g, '""')}"`;

export function csvText(one) {
    const { times, values } = points(one);
    const unit = unitOf(one);
    const thinned = one.thinned ? `, least and greatest of stretches: ${one.kept} of ${one.pairs} pairs` : "";
    const lines = [`${hasDates ? "date," : ""}day,${quoted(`${titleOf(one)}${unit ? ` (${unit})` : ""}${thinned}`)}`];
    values.forEach((value, i) => {
        if (!Number.isNaN(value)) lines.push(`${hasDates ? `${date(times[i])},` : ""}${exact(times[i])},${exact(value)}`);
    });
    return `${lines.join("\r\n")}\r\n`;
}

export function saveCsv(one) {
    const url = URL.createObjectURL(new Blob([csvText(one)], { type: "text/csv" }));
    const anchor = h("a", { href: url, download: `${one.words.replace(/[^a-z0-9]+/gi, "_")}.csv` });
    anchor.click();
    setTimeout(() => URL.revokeObjectURL(url), 10000);
}
