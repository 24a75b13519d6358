// The plot of the chosen series: dates below, a scale for each unit, zoom by dragging or keys, values under the pointer.
import uPlot from "uplot";
import { lines } from "./colour.js";
import { axisTime, date, dayInWords, dayOf, end, hasDates } from "./dates.js";
import { find, h } from "./dom.js";
import { count, exact, short, withUnit } from "./format.js";
import { onPaper, sheet } from "./print.js";
import { points, titleOf, unitOf } from "./series_data.js";
import { on } from "./state.js";

let plot = null;
let drawn = [];
let marked; // day
const plotHeight = 260;
const darkness = matchMedia("(prefers-color-scheme: dark)");
const style = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

/** All lines of the plot: each series, and behind it what the other model has in its place. */
const linesOf = (list) => list.flatMap((one) => (one.old ? [{ one, old: true }, { one, old: false }] : [{ one, old: false }]));

function aligned(all) {
    const tables = all.map(({ one, old }) => {
        const { times, values } = points(one, { old });
        // a pair of the same time as the one before is drawn a moment later: a step
        const x = Float64Array.from(times, axisTime);
        for (let i = 1; i < x.length; ++i) if (x[i] <= x[i - 1]) x[i] = x[i - 1] + (hasDates ? 1e-3 : 1e-8);
        return [x, Array.from(values, (value) => (Number.isNaN(value) ? null : value))];
    });
    return tables.length === 1 ? tables[0] : uPlot.join(tables);
}

function runMarks(u) {
    const { ctx } = u;
    ctx.save();
    for (const day of [0, end, marked]) {
        if (day === undefined) continue;
        ctx.strokeStyle = style(day === marked ? "--error" : "--quiet");
        ctx.setLineDash(day === marked ? [] : [4, 4]);
        const x = u.valToPos(axisTime(day), "x", true);
        if (x < u.bbox.left || x > u.bbox.left + u.bbox.width) continue;
        ctx.beginPath();
        ctx.moveTo(x, u.bbox.top);
        ctx.lineTo(x, u.bbox.top + u.bbox.height);
        ctx.stroke();
    }
    ctx.restore();
}

/** As much of a date as the step from tick to tick asks for: 2023-01, 2023-01-31, or the time of day above its date. */
const dateLabels = (u, ticks, axis, space, step) => ticks.map((tick, i) => {
    const [day, time] = date(dayOf(tick)).split(" ");
    if (step >= 28 * 86400) return day.slice(0, -3);
    return step >= 86400 ? day : `${time ?? "00:00"}${i > 0 && time ? "" : `\n${day}`}`;
});

// the library's own steps are from 1e-16 to 1e16
const steps = Array.from({ length: 101 }, (_, i) => [1, 2, 5].map((n) => Number(`${n}e${i - 50}`))).flat();
const leastApart = 32; // pixels from tick to tick
const multiples = (u, axis, least, greatest) => {
    const height = u.bbox.height / devicePixelRatio || plotHeight;
    const step = steps.find((one) => one >= ((greatest - least) * leastApart) / height);
    const first = Math.ceil(least / step);
    return Array.from({ length: Math.max(0, Math.min(Math.floor(greatest / step) - first + 1, 100)) }, (_, i) => (first + i) * step);
};

/** With the digits that tell one tick from the next. */
const axisNumbers = (u, ticks) => {
    const greatest = Math.max(...ticks.map(Math.abs));
    const step = ticks.length > 1 ? ticks[1] - ticks[0] : greatest;
    return ticks.map((tick) => short(tick, Math.max(3, Math.ceil(Math.log10(greatest / step)) + 1)));
};

/** As wide as the longest of its numbers. */
const axisSize = (u, texts) => Math.max(64, 16 + 7.5 * Math.max(0, ...(texts ?? []).map((text) => text.length)));

/** All pairs and the whole run. */
function fullSpan({ data: [x] }) {
    const [first, last] = [Math.min(x[0], axisTime(0)), Math.max(x.at(-1), axisTime(end))];
    return [first, last > first ? last : first + axisTime(1) - axisTime(0)];
}
// asked for before anybody zooms, too; one moment is never zoomed
const spanOf = (u, least, greatest) => {
    const [x] = u.data;
    return x.length === 1 || (least === x[0] && greatest === x.at(-1)) ? fullSpan(u) : [least, greatest];
};

/** What is read under the pointer: a pair's value, or of a series without a pair there the line's. */
function reading({ data }, series, at, unit) {
    const [x, y] = [data[0], data[series]];
    if (at === null || y[at] === null) return "–";
    if (y[at] !== undefined) return `${exact(y[at])} ${unit}`;
    let [before, behind] = [at, at];
    while (before >= 0 && y[before] === undefined) --before;
    while (behind < y.length && y[behind] === undefined) ++behind;
    if (!Number.isFinite(y[before]) || !Number.isFinite(y[behind])) return "–";
    const part = (x[at] - x[before]) / (x[behind] - x[before]);
    return `≈ ${withUnit(y[before] * (1 - part) + y[behind] * part, unit)}`;
}

const unitsOf = (list) => [...new Set(list.map(unitOf))];
const scalesThatFit = (width) => Math.max(1, Math.floor((width - 160) / 84));

function options(all, { width, height }) {
    const units = unitsOf(all.map(({ one }) => one));
    const ink = style("--ink");
    const palette = lines(darkness.matches && !onPaper());
    const grid = { stroke: style("--rule"), width: 1 };
    const scales = Object.fromEntries(units.map((unit) => [`y ${unit}`, {}]));
    const axis = (unit, i) => ({ show: i < scalesThatFit(width), scale: `y ${unit}`, label: unit || "value", side: i % 2 ? 1 : 3, stroke: ink, incrs: steps, splits: multiples, size: axisSize, labelSize: 18,
        grid: i === 0 ? grid : { show: false }, ticks: grid, values: axisNumbers });
    return {
        width, height, padding: [12, 36, 0, 0],
        tzDate: (time) => uPlot.tzDate(new Date(time * 1000), "Etc/UTC"),
        scales: { x: { time: hasDates, range: spanOf }, ...scales },
        axes: [{ stroke: ink, grid, ticks: grid, ...(hasDates ? { space: 90, values: dateLabels } : { label: "days", labelSize: 18 }) }, ...units.map(axis)],
        series: [{ label: hasDates ? "date" : "day", value: (u, x) => (x === null ? "–" : hasDates ? `${date(dayOf(x)) || "–"}, day ${exact(dayOf(x))}` : exact(x)) },
            ...all.map(({ one, old }) => [one, old, drawn.indexOf(one)]).map(([one, old, i]) => ({
                label: `${titleOf(one)}${old ? " (before)" : ""}`, scale: `y ${unitOf(one)}`, spanGaps: false,
                stroke: old ? style("--quiet") : palette[i % palette.length], width: 1.5, dash: old || i >= palette.length ? [6, 4] : undefined,
                value: (u, y, series, at) => reading(u, series, at, unitOf(one)),
            }))],
        hooks: { draw: [runMarks] },
        legend: { live: true, markers: { dash: (u, i) => (u.series[i].dash ? "dashed" : "solid") } },
        cursor: { drag: { x: true, y: false }, dataIdx: (u, series, at) => at },
    };
}

function notes(list) {
    const thinned = list.filter((one) => one.thinned);
    const words = thinned.map((one) => `${titleOf(one)}: ${count(one.kept)} of ${count(one.pairs)} pairs are drawn, the least and the greatest of each stretch, so that no peak is lost.`);
    const gaps = list.filter((one) => one.gaps > 0).map((one) => `${titleOf(one)}: ${count(one.gaps)} ${one.gaps === 1 ? "gap" : "gaps"}, left open.`);
    const mark = marked === undefined ? [] : [`The line stands at ${dayInWords(marked)}.`];
    const others = unitsOf(list).slice(scalesThatFit(plotSize().width)).map((unit) => unit || "value");
    const unseen = others.length ? [`There is no room for the scales of ${others.join(", ")}: read their values under the pointer.`] : [];
    find("plot-note").textContent = [...mark, ...words, ...gaps, ...unseen].join(" ");
}

function describe(list) {
    const words = list.length === 0 ? "No series is chosen." : `Plot of ${list.map((one) => one.words).join(" and ")}. Left and right move along the values, plus and minus zoom, 0 shows all.`;
    find("plot").setAttribute("aria-label", words);
}

const plotSize = () => (onPaper() ? { width: sheet.width, height: sheet.plot } : { width: find("plot").clientWidth, height: plotHeight });

export function showPlot(list, day) {
    drawn = list;
    marked = day;
    plot?.destroy();
    plot = null;
    notes(list);
    describe(list);
    const with_pairs = list.filter((one) => one.kept > 0);
    if (with_pairs.length === 0) {
        find("plot").replaceChildren(h("p", { class: "quiet" }, list.length ? "no pairs" : "Choose series below to see them here."));
        return;
    }
    const all = linesOf(with_pairs);
    find("plot").replaceChildren();
    plot = new uPlot(options(all, plotSize()), aligned(all), find("plot"));
    if (day !== undefined) moveTo(nearest(axisTime(day)));
}

function nearest(x) {
    const all = plot.data[0];
    let at = 0;
    while (at + 1 < all.length && all[at + 1] <= x) ++at;
    return at;
}

function moveTo(index) {
    const at = Math.min(Math.max(index, 0), plot.data[0].length - 1);
    const x = plot.data[0][at];
    const { min, max } = plot.scales.x;
    if (x < min || x > max) plot.setScale("x", { min: x - (max - min) / 2, max: x + (max - min) / 2 });
    plot.setCursor({ left: plot.valToPos(x, "x"), top: plot.bbox.height / 2 / devicePixelRatio });
}

function zoom(factor, shift = 0) {
    if (!plot) return;
    const { min, max } = plot.scales.x;
    const [first, last] = fullSpan(plot);
    const middle = (min + max) / 2 + shift * (max - min);
    const half = ((max - min) / 2) * factor;
    plot.setScale("x", { min: Math.max(middle - half, Math.min(first, min)), max: Math.min(middle + half, Math.max(last, max)) });
}

function showAll() {
    if (!plot) return;
    const [min, max] = fullSpan(plot);
    plot.setScale("x", { min, max });
}

function onKey(event) {
    if (!plot || event.ctrlKey || event.altKey || event.metaKey) return;
    const at = plot.cursor.idx ?? nearest(plot.scales.x.min);
    const actions = { ArrowRight: () => moveTo(at + 1), ArrowLeft: () => moveTo(at - 1), PageDown: () => moveTo(at + 30),
        PageUp: () => moveTo(at - 30), Home: () => moveTo(0), End: () => moveTo(Infinity), "+": () => zoom(0.6), "-": () => zoom(1 / 0.6), 0: showAll };
    if (!actions[event.key]) return;
    event.preventDefault();
    actions[event.key]();
}

export function startPlot() {
    find("plot").addEventListener("keydown", onKey);
    find("plot-in").addEventListener("click", () => zoom(0.6));
    find("plot-out").addEventListener("click", () => zoom(1 / 0.6));
    find("plot-left").addEventListener("click", () => zoom(1, -0.3));
    find("plot-right").addEventListener("click", () => zoom(1, 0.3));
    find("plot-all").addEventListener("click", showAll);
    const redraw = () => showPlot(drawn, marked);
    darkness.addEventListener("change", redraw);
    on("paper", redraw);
    new ResizeObserver(() => plot?.setSize(plotSize())).observe(find("plot"));
}
