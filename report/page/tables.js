// Tables of the model: options of the run, systems, constants, parameters, time functions.
import { exact, short } from "./format.js";
import { page, visible } from "./data.js";
import { find, h, name } from "./dom.js";
import { shows } from "./navigate.js";

/** A cell: numbers with all their digits at hand, to the right where the column has nothing else; texts as they are. */
export function cell(content, numeric = true) {
    if (typeof content === "number") return h("td", { class: numeric ? "n" : null, title: exact(content), "data-value": exact(content) }, short(content, 4));
    if (content === null) return h("td", { class: "n quiet" }, "–");
    return h("td", { class: content.length < 25 ? "line" : "long" }, name(visible(content)));
}

/** The heading of a column, above its numbers or its texts. */
export const heading = (text, numeric) => h("th", { scope: "col", class: numeric ? "n" : null }, text);

/** What may be wider than the page scrolls by itself, with the keyboard too. */
export const wide = (title, content) => h("div", { class: "wide", tabindex: 0, role: "region", "aria-label": title }, content);

function table({ title, columns, rows, table: source }) {
    const id = `table-${source}`;
    if (rows.length === 0) return h("p", { class: "quiet", id, tabindex: -1 }, `no ${title.toLowerCase()}`);
    const numeric = columns.map((_, i) => rows.every(({ cells }) => typeof cells[i] !== "string"));
    return h("details", { open: rows.length <= 40 }, h("summary", { id, tabindex: -1 }, title),
        wide(title, h("table", {}, h("thead", {}, h("tr", {}, columns.map((column, i) => heading(column, numeric[i])))),
            h("tbody", {}, rows.map(({ at, cells }) => h("tr", { id: at ? `row-${at}` : null, tabindex: at ? -1 : null }, cells.map((content, i) => cell(content, numeric[i]))))))));
}

export function startTables() {
    find("tables").append(...page.tables.map(table));
    const taken = ["model", "system", "constant", "constant_type", "parameter", "parameter_type", "time_function_type", "flow_field", "exchange_field"];
    shows(taken, (numbers, source) => {
        const row = find(`row-${[source, ...numbers].join(",")}`) ?? find(`table-${source.replace(/_type$/, "")}`) ?? find("tables-title");
        const box = row.closest("details");
        if (box) box.open = true;
        return row;
    });
}
