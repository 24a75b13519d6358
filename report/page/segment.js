// The panel beside the map: all that is known of the chosen segment or link.
import { endTitle, numbers, page, pairs, paths, pathTitle, segmentCount, segmentNames, visible } from "./data.js";
import { dayInWords } from "./dates.js";
import { find, h, link, name } from "./dom.js";
import { count, exact, plural, withUnit } from "./format.js";
import { findingLine } from "./findings.js";
import { below, reach, types } from "./network.js";
import { boundariesAt, findingsAt, loadsAt } from "./places.js";
import { pathAddress } from "./map_svg.js";
import { seriesOf } from "./series_data.js";
import { spark } from "./spark.js";
import { on } from "./state.js";

const typeWords = { 1: "surface water", 2: "water below the surface", 3: "surface bed", 4: "bed below another" };
const value = (number, unit) => h("span", { title: exact(number), "data-value": exact(number) }, withUnit(number, unit));

function rows(list) {
    return h("dl", {}, list.filter(Boolean).flatMap(([term, ...what]) => [h("dt", {}, term), h("dd", {}, ...what)]));
}

const balanceOf = (segment) => {
    const all = page.balance?.segments;
    return all && Object.fromEntries(Object.entries(all).map(([key, list]) => [key, numbers(list, segmentCount)[segment - 1]]));
};

function stay(b) {
    if (b.stay === 0) return null;
    if (b.stay === Infinity) return h("p", {}, "No water leaves.");
    return h("p", {}, "The water stays ", value(b.stay, "days"), " on average, ", value(b.shortest, ""),
        ` at the highest flow, ${dayInWords(b.shortest_day)}.`);
}

/** A function's part in what flows through, with a picture of its course. */
function shareRows(segment, way) {
    const { shares, functions } = page.balance;
    const first = numbers(shares.first, segmentCount + 1);
    const list = [];
    for (let i = first[segment - 1]; i < first[segment]; ++i) {
        const flow = numbers(shares[way], shares.count)[i];
        if (flow === 0) continue;
        const fn = functions[numbers(shares.function, shares.count)[i]];
        const series = seriesOf("flow_value", [fn.field, fn.function]);
        list.push([link(`flow_value,${fn.field},${fn.function}`, `function ${fn.function} of field ${fn.field}`), value(flow, "m3/s"), " ",
            series ? spark(series, 44, 14) : ""]);
    }
    return list;
}

function waterPart(segment) {
    const b = balanceOf(segment);
    if (!b) return [h("p", { class: "quiet" }, page.balance_missing)];
    const steady = b.greatest - b.least <= 1e-4 * Math.abs(b.start);
    const course = steady ? [["over the run", "the same volume"]] : [["volume at the end", value(b.end, "m3")],
        ["at the least", value(b.least, "m3"), `, ${dayInWords(b.least_day)}`], ["at the greatest", value(b.greatest, "m3"), `, ${dayInWords(b.greatest_day)}`]];
    return [
        stay(b),
        rows([["volume", value(b.start, "m3")], ["flows in", h("strong", {}, value(b.in, "m3/s"))], ...shareRows(segment, "in").map(indent),
            ["flows out", h("strong", {}, value(b.out, "m3/s"))], ...shareRows(segment, "out").map(indent),
            ...course, Number.isFinite(b.dry_day) && ["runs dry", dayInWords(b.dry_day)]]),
    ];
}
const indent = ([term, ...what]) => [h("span", { class: "indent" }, term), ...what];

function connections(segment) {
    const at = [...paths, ...pairs].filter((p) => p.first === segment || p.second === segment);
    if (at.length === 0) return h("p", { class: "quiet" }, "no flow path and no exchange");
    return h("ul", { class: "plain" }, at.map((p) => {
        const other = p.first === segment ? p.second : p.first;
        const words = p.exchange ? "mixes with " : (p.first === segment) === !(p.flow < 0) ? "to " : "from ";
        return h("li", {}, words, other ? link(`segment,${other}`, endTitle(other)) : "outside", ": ", link(pathAddress(p),
            p.exchange ? `pair ${p.number} of exchange function ${p.function}, field ${p.field}` : `path ${p.number} of function ${p.function}, field ${p.field}`),
        p.exchange || Number.isNaN(p.flow) ? "" : [" · ", value(Math.abs(p.flow), "m3/s")]);
    }));
}

function seriesLinks(list, what) {
    if (list.length === 0) return h("p", { class: "quiet" }, `no ${what}`);
    return h("ul", { class: "plain" }, list.map(({ kind, system, number }) => h("li", {},
        link(`${kind}_value,${system},${number}`, `${kind} ${number}`), " of ", name(visible(page.systems[system - 1])))));
}

function dataPart(segment) {
    const groups = new Map();
    for (const datum of page.segments.data) {
        if (!groups.has(datum.group)) groups.set(datum.group, []);
        groups.get(datum.group).push([name(datum.name), value(numbers(datum.values, segmentCount)[segment - 1], datum.unit)]);
    }
    return [...groups].map(([group, list]) => h("details", { open: group === "shape" }, h("summary", {}, group), rows(list)));
}

/** The first warnings and errors in full; more of them, and notes, when asked for. */
function findings(list) {
    const lines = (some) => some.map((one) => findingLine(one, one.code));
    const folded = (some, title) => (some.length ? [h("details", {}, h("summary", {}, title), lines(some))] : []);
    const notes = list.filter((one) => one.code.level === "note");
    const others = list.filter((one) => one.code.level !== "note");
    return [...lines(others.slice(0, 3)), ...folded(others.slice(3), `${count(others.length - 3)} more`), ...folded(notes, plural(notes.length, "note"))];
}

function showSegment(segment) {
    const bottom = below[segment - 1];
    const title = segmentNames[segment - 1];
    const list = findingsAt(segment);
    const [up, down] = [reach(segment, false).size, reach(segment, true).size];
    find("panel").replaceChildren(
        h("h2", { id: "panel-title", tabindex: -1, "data-shown": segment }, `Segment ${segment}`, title ? [" · ", name(visible(title))] : ""),
        h("p", { class: "quiet" }, typeWords[types[segment - 1]] ?? `type ${types[segment - 1]}`,
            bottom > 0 ? ["; below it ", link(`segment,${bottom}`, `segment ${bottom}`)] : "",
            up + down > 0 ? `; up-stream ${plural(up, "segment")}, down-stream ${plural(down, "segment")}` : ""),
        ...waterPart(segment).filter(Boolean),
        ...findings(list),
        h("h3", {}, "Connected to"), connections(segment),
        h("h3", {}, "Boundaries"), seriesLinks(boundariesAt(segment), "boundary"),
        h("h3", {}, "Loads"), seriesLinks(loadsAt(segment), "load"),
        h("h3", {}, "Data"), ...dataPart(segment));
}

function showLink({ a, b, exchange, paths: list }) {
    const end = (segment) => (segment ? link(`segment,${segment}`, `segment ${segment}`) : "the outside");
    find("panel").replaceChildren(
        h("h2", { id: "panel-title", tabindex: -1 }, exchange ? "Exchange between " : "Flow between ", end(a), " and ", end(b)),
        ...list.map((p) => h("section", { "data-shown-path": `${p.field},${p.function},${p.number}` }, h("h3", {}, pathTitle(p)), rows(p.exchange
            ? [["between", endTitle(p.first), " and ", endTitle(p.second)], ["area", value(p.area, "m2")], ["mixing length", value(p.length, "m")],
                ["dispersion", link(`exchange_value,${p.field},${p.function}`, "its series")]]
            : [["from", endTitle(p.first)], ["to", endTitle(p.second)], ["fraction", value(p.fraction, "")], !Number.isNaN(p.flow) && ["mean flow", value(p.flow, "m3/s")],
                p.turns && ["direction", "turns during the run"], ["flow", link(`flow_value,${p.field},${p.function}`, "its series")]]))));
}

export function startPanel() {
    for (const [what, show] of [["segment", showSegment], ["link", showLink]]) {
        on(what, (one) => { show(one); find("panel").scrollTop = 0; });
    }
}
