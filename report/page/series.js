// The list of all series, by kind, with filter and sort; the chosen ones go to the plot.
import { span } from "./dates.js";
import { find, h, name } from "./dom.js";
import { count, exact, short } from "./format.js";
import { saveCsv } from "./csv.js";
import { shows } from "./navigate.js";
import { showPlot } from "./plot.js";
import { applyFactors, kinds, series, seriesOf, statistics, titleOf, unitOf } from "./series_data.js";
import { spark } from "./spark.js";
import { chosen } from "./state.js";

const pageLength = 200; // rows at a time
let shownRows = 25;
let kind = "";
let order = { by: "", down: false };

const columns = [
    { label: "series", key: (one) => titleOf(one).toLowerCase() },
    { label: "picture" },
    { label: "pairs", numeric: true, key: (one) => one.pairs },
    { label: "span", key: (one) => one.first },
    { label: "least", numeric: true, key: (one) => statistics(one).least },
    { label: "mean", numeric: true, key: (one) => statistics(one).mean },
    { label: "greatest", numeric: true, key: (one) => statistics(one).greatest },
    { label: "unit", key: unitOf },
    { label: "gaps", numeric: true, key: (one) => one.gaps },
    { label: "save" },
];

function wanted() {
    const words = find("series-filter").value.trim().toLowerCase().split(/\s+/);
    const list = series.filter((one) => (!kind || one.kind === kind) &&
        words.every((word) => `${one.words} ${one.name} ${one.kind}`.toLowerCase().includes(word)));
    const { key } = columns.find((column) => column.label === order.by) ?? {};
    if (key) {
        const sign = order.down ? -1 : 1;
        list.sort((p, q) => { const [a, b] = [key(p), key(q)]; return a < b ? -sign : a > b ? sign : p.id - q.id; });
    }
    return list;
}

function toggle(one, on) {
    if (on) chosen.series.add(one);
    else chosen.series.delete(one);
    showPlot([...chosen.series]);
}

function row(one) {
    const { least, mean, greatest } = one.pairs ? statistics(one) : {};
    const number = (value) => h("td", { class: "n", title: one.pairs ? exact(value) : "", "data-value": one.pairs ? exact(value) : "" },
        one.pairs ? short(value, 4) : "–");
    const box = h("input", { type: "checkbox", "aria-label": `plot ${one.words}`, onchange: () => toggle(one, box.checked) });
    box.checked = chosen.series.has(one);
    return h("tr", { "data-series": `${one.table},${one.key.join(",")}` },
        h("th", { scope: "row" }, h("label", {}, box, h("span", {}, name(titleOf(one)), one.name ? h("small", {}, ` ${one.words}`) : ""))),
        h("td", {}, one.pairs ? spark(one, 90, 20) : ""), h("td", { class: "n" }, count(one.pairs)),
        h("td", {}, one.pairs ? span(one.first, one.last) : "no pairs"), number(least), number(mean), number(greatest),
        h("td", {}, unitOf(one)), h("td", { class: "n" }, one.gaps ? count(one.gaps) : "–"),
        h("td", {}, one.pairs ? h("button", { type: "button", "aria-label": `save ${one.words} as CSV`, onclick: () => saveCsv(one) }, "CSV") : ""));
}

function heading({ label, numeric, key }) {
    if (!key) return h("th", { scope: "col" }, label);
    const sorted = order.by === label ? (order.down ? "descending" : "ascending") : null;
    const sort = () => { order = { by: label, down: order.by === label && !order.down }; list(); find("series-list").querySelector("[aria-sort] button")?.focus(); };
    return h("th", { scope: "col", class: numeric ? "n" : null, "aria-sort": sorted }, h("button", { type: "button", class: "sort", onclick: sort }, label,
        sorted ? (order.down ? " ▾" : " ▴") : ""));
}

function list() {
    const all = wanted();
    const head = h("tr", {}, columns.map(heading));
    find("series-list").replaceChildren(all.length === 0 ? h("p", { class: "quiet" }, series.length ? "no series like that" : "no series")
        : h("table", { class: "series" }, h("thead", {}, head), h("tbody", {}, all.slice(0, shownRows).map(row))));
    const more = find("series-more");
    more.hidden = all.length <= shownRows;
    more.textContent = `show ${count(Math.min(pageLength, all.length - shownRows))} more of ${count(all.length)}`;
}

function kindButtons() {
    const present = Object.values(kinds).map((word) => [word, series.filter((one) => one.kind === word).length]).filter(([, n]) => n > 0);
    const press = (button, word) => {
        kind = word;
        for (const other of button.parentElement.children) other.setAttribute("aria-pressed", other === button);
        list();
    };
    const make = (word, text) => {
        const button = h("button", { type: "button", "aria-pressed": String(word === ""), onclick: () => press(button, word) }, text);
        return button;
    };
    find("series-kinds").append(make("", `all ${count(series.length)}`), ...present.map(([word, n]) => make(word, `${word} ${count(n)}`)));
}

/** Plots a series alone, or with those already chosen. */
export function plotSeries(one, day) {
    chosen.series.clear();
    chosen.series.add(one);
    list();
    showPlot([one], day);
}

export function startSeries() {
    list();
    if (series.length === 0) {
        for (const one of document.querySelectorAll("#plot, #plot ~ .bar, [aria-labelledby=series-title] .tools")) one.hidden = true;
        return;
    }
    kindButtons();
    find("series-filter").addEventListener("input", list);
    find("series-more").addEventListener("click", () => { shownRows += pageLength; list(); });
    const factors = find("factors");
    factors.parentElement.hidden = series.every((one) => one.factor === 1);
    factors.addEventListener("change", () => { applyFactors(factors.checked); list(); showPlot([...chosen.series]); });
    find("plot-none").addEventListener("click", () => { chosen.series.clear(); list(); showPlot([]); });
    const first = series.find((one) => one.pairs > 2) ?? series.find((one) => one.pairs);
    if (first) plotSeries(first);
    shows([...Object.keys(kinds), "flow_function", "exchange_function", "time_function"], ([a, b, , day], table) => {
        const full = table.endsWith("_function") ? table.replace("_function", "_value").replace("time_value", "time_function_value") : table;
        const one = seriesOf(full, [a, b]);
        if (one) plotSeries(one, day);
        return one ? find("plot") : find("series-title");
    });
}
