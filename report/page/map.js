// The map with its controls: colour, search, zoom; a click or a key chooses a segment or a link.
import { colourings, isColoured, scaleOf, viridisAt } from "./colour.js";
import { page, segmentCount, segmentNames } from "./data.js";
import { find, h } from "./dom.js";
import { count, exact, short, withUnit } from "./format.js";
import { atSegment, distanceToFindings } from "./places.js";
import { mostNamed, segmentPlaces } from "./layout.js";
import { drawCanvas } from "./map_canvas.js";
import { drawSvg } from "./map_svg.js";
import { shows } from "./navigate.js";
import { isBed, links, nowhere, reach } from "./network.js";
import { chosen, tell } from "./state.js";
import { makeView } from "./view.js";

let drawing;
let view;
let places;
let searched;

function choices() {
    const distance = distanceToFindings();
    const list = colourings.map((datum, i) => ({ ...datum, id: i }));
    return distance ? [...list, { id: list.length, group: "findings", name: "steps to a finding", unit: "", values: distance }] : list;
}

function colourControl() {
    const list = choices();
    const groups = new Map();
    for (const one of list) {
        if (!groups.has(one.group)) groups.set(one.group, []);
        groups.get(one.group).push(h("option", { value: one.id }, one.name));
    }
    const select = h("select", { id: "colour" }, h("option", { value: "" }, "nothing"),
        [...groups].map(([label, options]) => h("optgroup", { label }, options)));
    const preferred = ["mean flow out", "volume"].map((name) => list.find((one) => one.name === name && one.varies)).find(Boolean);
    select.value = preferred ? preferred.id : "";
    select.addEventListener("change", () => paint(list[select.value]));
    find("map-tools").prepend(h("label", {}, "colour by ", select));
    paint(list[select.value]);
}

function paint(datum) {
    const legend = find("legend-scale");
    legend.replaceChildren();
    if (!datum) {
        drawing.paint(null);
        return;
    }
    const counts = (segment) => Number.isFinite(datum.values[segment - 1]) && isColoured(datum, segment);
    const scale = scaleOf(datum.values.filter((_, i) => counts(i + 1)));
    drawing.paint((segment) => (counts(segment) ? viridisAt(scale.part(datum.values[segment - 1])) : null));
    legend.append(h("span", {}, `${datum.name} `), h("span", { title: exact(scale.least) }, short(scale.least)),
        h("span", { class: "ramp", role: "img", "aria-label": "from dark to light" }),
        h("span", { title: exact(scale.greatest) }, withUnit(scale.greatest, datum.unit)),
        scale.powers ? h("span", { class: "quiet" }, " by powers of ten") : "");
}

export function choose(segment, { near = false, focus = false, light = true } = {}) {
    if (!(segment >= 1 && segment <= segmentCount)) return;
    chosen.segment = segment;
    if (isBed(segment)) showBed(true);
    if (light) drawing.light({ segment, up: reach(segment, false), down: reach(segment, true) });
    view.show(segment, near);
    if (focus) drawing.focus(segment);
    tell("segment", segment);
}

function chooseLink(one) {
    chosen.segment = 0;
    if (isBed(one.a) || isBed(one.b)) showBed(true);
    drawing.light({ link: one, up: one.b ? [one.a, one.b] : [one.a] });
    tell("link", one);
}

function showBed(on) {
    find("bed").checked = on;
    drawing.showBed(on);
}

/** The nearest segment in a direction, sideways distance counting double. */
function neighbour(from, dx, dy) {
    const here = places[from];
    let [nearest, least] = [from, Infinity];
    for (let segment = 1; segment <= segmentCount; ++segment) {
        const [x, y] = [places[segment].x - here.x, places[segment].y - here.y];
        const along = x * dx + y * dy;
        const aside = Math.abs(x * dy + y * dx);
        if (along > 1 && aside <= along * 2 && along + 2 * aside < least) [nearest, least] = [segment, along + 2 * aside];
    }
    return nearest;
}

const steps = { ArrowRight: [1, 0], ArrowLeft: [-1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };

function onKey(event) {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const { key } = event;
    const at = drawing.current();
    const focusOn = (segment) => { if (isBed(segment)) showBed(true); drawing.focus(segment); view.show(segment, false); };
    if (steps[key]) focusOn(neighbour(at, ...steps[key]));
    else if (key === "Enter" || key === " ") choose(at);
    else if (key === "Home") focusOn(1);
    else if (key === "End") focusOn(segmentCount);
    else if (key === "+" || key === "=") view.zoom(1.4);
    else if (key === "-") view.zoom(1 / 1.4);
    else if (key === "0") view.fit();
    else return;
    event.preventDefault();
}

function search() {
    const words = find("search").value.trim().toLowerCase();
    const answer = find("search-answer");
    if (!words) { answer.textContent = ""; return; }
    const number = Number(words.replace(/^segment\s+/, ""));
    if (number >= 1 && number <= segmentCount && Number.isInteger(number)) { answer.textContent = ""; choose(number, { near: true }); return; }
    const found = [];
    for (let segment = 1; segment <= segmentCount && found.length < 50; ++segment) {
        if ((segmentNames[segment - 1] ?? "").toLowerCase().includes(words)) found.push(segment);
    }
    const next = (words === searched && found.find((segment) => segment > chosen.segment)) || found[0];
    searched = words;
    answer.textContent = found.length === 0 ? `no segment “${find("search").value}”`
        : found.length > 1 ? `${found.length === 50 ? "50 or more" : found.length} found; Enter for the next` : "";
    if (next) choose(next, { near: true });
}

const linkOfPath = (numbers, exchange) => links.find((one) => one.exchange === exchange && one.paths.some((p) =>
    p.field === numbers[0] && p.function === numbers[1] && p.number === numbers[2]));

function takeAddresses() {
    const toSegment = (at) => (numbers) => {
        choose(numbers[at], { near: true });
        return find(numbers[at] > 0 ? "panel-title" : "map-title");
    };
    shows(["segment"], toSegment(0));
    shows(["initial_condition"], toSegment(1));
    shows(["parameter_value"], (numbers) => (numbers[2] ? toSegment(2)(numbers) : find("tables-title")));
    shows(["boundary", "load"], ([system, number], table) => {
        choose(atSegment({ table, numbers: [system, number] }), { near: true });
        return find("panel-title");
    });
    shows(["flow_path", "exchange_pair"], (numbers, table) => {
        const one = linkOfPath(numbers, table === "exchange_pair");
        if (!one) return find("nowhere");
        view.show(one.a, true);
        chooseLink(one);
        return find("panel-title");
    });
}

function showWordsBelow() {
    const bed = find("bed");
    const beds = Array.from({ length: segmentCount }, (_, i) => i + 1).filter(isBed).length;
    bed.parentElement.hidden = beds === 0;
    bed.parentElement.append(` bed (${count(beds)})`);
    bed.addEventListener("change", () => showBed(bed.checked));
    showBed(beds === segmentCount);
    const fields = new Set(links.flatMap((one) => one.paths.filter((p) => !p.exchange).map((p) => p.field)));
    const kinds = [...fields].sort().map((f) => [`field-${f}`, page.flow_fields[f - 1].name]);
    if (links.some((one) => one.exchange)) kinds.push(["exchange", "exchange"]);
    find("legend-kinds").append(...kinds.map(([kind, words]) => h("span", { class: `key ${kind}` }, words)));
    if (page.boundaries.some((one) => one.count)) find("legend-kinds").append(h("span", { class: "key diamond" }, "boundary"));
    if (page.loads.some((one) => one.count)) find("legend-kinds").append(h("span", { class: "key wedge" }, "load"));
    if (nowhere.length > 0) {
        find("nowhere").append("Lead nowhere and are not on the map: ", ...nowhere.flatMap((p, i) => [i ? ", " : "",
            h("span", { [p.exchange ? "data-exchange" : "data-path"]: `${p.field},${p.function},${p.number}` },
                `${p.exchange ? "exchange pair" : "flow path"} ${p.field}, ${p.function}, ${p.number}`)]));
    }
}

export function startMap(marks) {
    takeAddresses();
    if (segmentCount === 0) {
        find("map").replaceChildren(h("p", { class: "quiet" }, "No segments: there is nothing to draw."));
        find("map-tools").hidden = find("panel").hidden = true;
        return;
    }
    places = segmentPlaces();
    const coarse = segmentCount > mostNamed || links.length > 2 * mostNamed;
    drawing = coarse ? drawCanvas(places) : drawSvg(places, marks);
    find("map").append(drawing.element);
    view = makeView(drawing, places);
    view.fit();
    colourControl();
    showWordsBelow();
    if (coarse) find("map-note").textContent = `A coarse map: ${count(segmentCount)} segments as dots without names. Search, click or arrow keys open one.`;
    if (page.against) drawing.changed(page.against.segments);
    drawing.surface.addEventListener("click", (event) => {
        const segment = drawing.segmentAt(event);
        const one = segment ? null : drawing.linkAt(event);
        if (segment) choose(segment, { focus: true });
        else if (one) chooseLink(one);
    });
    drawing.surface.addEventListener("keydown", onKey);
    find("overview").addEventListener("keydown", ({ key }) => { if (key === "Escape") drawing.light({}); });
    find("zoom-in").addEventListener("click", () => view.zoom(1.4));
    find("zoom-out").addEventListener("click", () => view.zoom(1 / 1.4));
    find("zoom-all").addEventListener("click", () => view.fit());
    find("search-form").addEventListener("submit", (event) => { event.preventDefault(); search(); });
}

