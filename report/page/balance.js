// Water in, out and stored; how long it stays against the time step; what the volumes do.
import { numbers, page, segmentCount, segmentNames } from "./data.js";
import { dayInWords } from "./dates.js";
import { find, h, link, svg } from "./dom.js";
import { count, exact, short, withUnit } from "./format.js";
import { cell, heading, wide } from "./tables.js";

const pageLength = 100;

function functionsTable(functions) {
    const head = ["function", "description", "mean, m3/s", "greatest, m3/s", "on", "in from outside, m3", "out to outside, m3"];
    return wide("water by function", h("table", {}, h("thead", {}, h("tr", {}, head.map((text) => heading(text, text.includes(", "))))),
        h("tbody", {}, functions.map((fn) => h("tr", {}, h("th", { scope: "row" }, link(`flow_value,${fn.field},${fn.function}`, `${fn.function} of field ${fn.field}`)),
            cell(page.flow_fields[fn.field - 1].functions[fn.function - 1].description), cell(fn.mean), cell(fn.greatest),
            h("td", {}, dayInWords(fn.greatest_day)), cell(fn.in), cell(fn.out))))));
}

function segmentsTable(all) {
    const list = (key) => numbers(all[key], segmentCount);
    const keys = [["in", "in, m3/s"], ["out", "out, m3/s"], ["stay", "stays, days"], ["shortest", "at the highest flow, days"], ["start", "volume, m3"],
        ["end", "at the end, m3"], ["least", "least, m3"], ["greatest", "greatest, m3"]];
    const body = h("tbody");
    const more = h("button", { type: "button" });
    let shown = 0;
    const add = () => {
        const next = Math.min(shown + pageLength, segmentCount);
        for (let i = shown; i < next; ++i) {
            body.append(h("tr", {}, h("th", { scope: "row" }, link(`segment,${i + 1}`, String(i + 1))), cell(segmentNames[i] ?? ""),
                keys.map(([key]) => cell(list(key)[i]))));
        }
        shown = next;
        more.hidden = shown >= segmentCount;
        more.textContent = `show ${count(Math.min(pageLength, segmentCount - shown))} more of ${count(segmentCount)}`;
    };
    more.addEventListener("click", add);
    add();
    const head = ["segment", "name", ...keys.map(([, text]) => text)].map((text, i) => heading(text, i > 1));
    return [wide("water by segment", h("table", {}, h("thead", {}, h("tr", {}, head)), body)), more];
}

/** A stroke for each segment from the shortest to the mean residence time, by powers of ten, and the time step. */
function stayPicture(all, step) {
    const stay = numbers(all.stay, segmentCount);
    const shortest = numbers(all.shortest, segmentCount);
    const known = [...stay.keys()].filter((i) => stay[i] > 0 && Number.isFinite(stay[i]) && shortest[i] > 0).sort((a, b) => shortest[a] - shortest[b]);
    const list = known.slice(0, 30);
    if (list.length === 0) return h("p", { class: "quiet" }, "No water leaves any segment.");
    const values = list.flatMap((i) => [stay[i], shortest[i]]).concat(step > 0 ? [step] : []);
    const [low, high] = [Math.floor(Math.log10(Math.min(...values))), Math.ceil(Math.log10(Math.max(...values)) + 1e-9)];
    const [left, width, row] = [90, 560, 16];
    const x = (value) => left + ((Math.log10(value) - low) / Math.max(high - low, 1)) * width;
    const height = list.length * row + 40;
    const every = Math.ceil((high - low) / 9); // as many as have room
    const powers = Array.from({ length: high - low + 1 }, (_, i) => low + i).filter((p) => (p - low) % Math.max(every, 1) === 0);
    const text = step > 0 ? `, the maximum time step is ${exact(step)} days` : "";
    return h("figure", {}, wide("residence times", svg("svg", { class: "stay", viewBox: `0 0 ${left + width + 60} ${height}`, role: "img",
        "aria-label": `Residence times of the ${list.length} segments with the shortest${text}; the table below has the numbers` },
    powers.map((p) => svg("g", { class: "grid" }, svg("line", { x1: x(10 ** p), x2: x(10 ** p), y1: 4, y2: height - 32 }),
        svg("text", { x: x(10 ** p), y: height - 18, "text-anchor": "middle" }, short(10 ** p)))),
    svg("text", { x: left + width + 22, y: height - 18 }, "days"),
    list.map((i, at) => svg("g", {}, svg("text", { x: left - 8, y: at * row + 17, "text-anchor": "end" }, `segment ${i + 1}`),
        svg("line", { class: "range", x1: x(shortest[i]), x2: x(stay[i]), y1: at * row + 13, y2: at * row + 13 }),
        svg("circle", { class: "mean", cx: x(stay[i]), cy: at * row + 13, r: 3.5 }),
        svg("path", { class: "least", d: `M${x(shortest[i])} ${at * row + 8}v10` }))),
    step > 0 && svg("line", { class: "step", x1: x(step), x2: x(step), y1: 0, y2: height - 32 }),
    step > 0 && svg("text", { class: "step", x: Math.min(Math.max(x(step), 70), left + width - 20), y: height - 3, "text-anchor": "middle" }, `maximum time step ${short(step)}`))),
    h("figcaption", {}, "How long water stays: ● on average, | at the highest flow", list.length < known.length ? "; the 30 shortest" : "", known.length < segmentCount ? "; of segments that water leaves" : "", "."));
}

export function startBalance() {
    const { balance } = page;
    const place = find("balance");
    if (!balance || segmentCount === 0) {
        place.append(h("p", { class: "quiet" }, page.balance_missing ?? "No segments: no water."));
        return;
    }
    const { totals } = balance;
    const value = (number) => h("strong", { title: exact(number), "data-value": exact(number) }, withUnit(number, "m3"));
    place.append(h("p", {}, "Over the run ", value(totals.in), " come in from outside, ", value(totals.out), " leave, and ",
        value(Math.abs(totals.stored)), totals.stored < 0 ? " are taken from the segments." : " stay in the segments."),
    balance.functions.length ? functionsTable(balance.functions) : h("p", { class: "quiet" }, "No flow functions."),
    h("h3", {}, "Residence time against the time step"), stayPicture(balance.segments, balance.step),
    h("h3", {}, "Segments"), ...segmentsTable(balance.segments));
}
