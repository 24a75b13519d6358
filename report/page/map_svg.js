// The map as drawing elements: each segment a button, each flow path and exchange pair a line of its own.
import { endTitle, pathTitle, segmentNames, segmentTitle, visible } from "./data.js";
import { h, svg } from "./dom.js";
import { short } from "./format.js";
import { heightOf, size } from "./layout.js";
import { linkShapes } from "./link_shapes.js";
import { isBed, links } from "./network.js";
import { onPaper, sheet } from "./print.js";

export const pathAddress = (p) => `${p.exchange ? "exchange_pair" : "flow_path"},${p.field},${p.function},${p.number}`;

function describe(p) {
    const ends = `${endTitle(p.first)} to ${endTitle(p.second)}`;
    const flow = p.exchange || Number.isNaN(p.flow) ? "" : `, ${short(p.flow)} m3/s on average${p.turns ? ", turns" : ""}`;
    return `${pathTitle(p)}: ${ends}${flow}`;
}

const fontSize = 14; // of names, as in the style
const markWidth = 15;

/** About the width of a text in the map's font. */
const widthOf = (text) => [...text].reduce((sum, c) => sum + fontSize * (/[WMm@]/.test(c) ? 0.97 : c === "w" ? 0.82 : /[fijlrt.,' |]/.test(c) ? 0.4 : /[A-Z]/.test(c) ? 0.72 : 0.61), 0);

function shortened(text, most) {
    if (widthOf(text) <= most) return text;
    let end = text.length;
    while (end > 0 && widthOf(text.slice(0, end)) > most - fontSize * 0.8) --end;
    return `${text.slice(0, end)}…`;
}

/** A name on as many lines as there are, parted between words where that fits. */
function onLines(count, text, most) {
    if (count === 1 || widthOf(text) <= most) return [shortened(text, most)];
    const words = text.split(" ");
    let taken = words.length - 1;
    while (taken > 0 && widthOf(words.slice(0, taken).join(" ")) > most) --taken;
    const first = words.slice(0, taken).join(" ") || shortened(text, most).slice(0, -1);
    return [first, ...onLines(count - 1, text.slice(first.length).trimStart(), most)];
}

/** Boundary, load and the worst finding, from the right. */
function drawMarks({ boundary, load, level }) {
    const drawn = [boundary && svg("path", { class: "boundary", d: "M0-5l5 5-5 5-5-5z" }), load && svg("path", { class: "load", d: "M-5.5-4.5h11l-5.5 9z" }),
        level && svg("path", { d: level === "error" ? "M-4.5 0a4.5 4.5 0 1 0 9 0a4.5 4.5 0 1 0-9 0z" : "M0-4.5L5 4.5H-5z" })].filter(Boolean);
    return drawn.map((shape, i) => svg("g", { class: shape.hasAttribute("class") ? null : `mark ${level}`,
        transform: `translate(${size.width - 11 - markWidth * i} 9.5)` }, shape));
}

function drawSegment(segment, place, marks) {
    const height = heightOf(segment);
    const bed = isBed(segment);
    const mark = marks(segment);
    const name = visible(segmentNames[segment - 1] ?? "").slice(0, 60);
    const marksWidth = markWidth * (mark.boundary + mark.load + Boolean(mark.level));
    const lines = bed ? [shortened(name, size.width - 36 - marksWidth)] : onLines(3, name, size.width - 12);
    // what is written stands beside the button: its name says more than there is room for
    return svg("g", { class: `segment ${bed ? "bed" : "water"}`, transform: `translate(${place.x} ${place.y})` },
        svg("g", { class: "node", "data-segment": segment, role: "button", tabindex: -1, "aria-label": segmentTitle(segment) + mark.words },
            svg("title", {}, segmentTitle(segment) + mark.words),
            svg("rect", { class: "body", width: size.width, height, rx: bed ? 2 : 5 })),
        svg("g", { class: "words", "aria-hidden": "true" },
            bed && svg("rect", { class: "hatch", width: size.width, height, rx: 2, fill: "url(#hatch)" }),
            svg("text", { class: "number", x: 7, y: bed ? 16 : 19 }, String(segment)),
            name && lines.map((line, i) => svg("text", { class: "name", x: bed ? 33 : 7, y: bed ? 16 : 37 + 16 * i }, line)),
            drawMarks(mark)));
}

function drawLink({ link, strokes, heads, middle }) {
    const kind = link.exchange ? "exchange" : `field-${link.paths[0].field}`;
    const group = svg("g", { class: `link ${kind}${isBed(link.a) || isBed(link.b) ? " to-bed" : ""}`, "data-from": link.a, "data-to": link.b },
        svg("path", { class: "hit", d: strokes[0].d }),
        strokes.map(({ path, d, width }) => svg("path", { class: path.exchange ? "exchange" : `stroke field-${path.field}`, d,
            "stroke-width": width.toFixed(1), role: "img", "aria-label": describe(path),
            [path.exchange ? "data-exchange" : "data-path"]: `${path.field},${path.function},${path.number}` },
        svg("title", {}, describe(path)))),
        heads && svg("path", { class: "head", d: heads }));
    group.middle = middle;
    return group;
}

/** Draws all; `marks(segment)` says what stands at a segment. */
export function drawSvg(places, marks) {
    const shapes = linkShapes(links, places).map((shape) => [shape.link, drawLink(shape)]);
    const nodes = places.map((place, segment) => (segment === 0 ? null : drawSegment(segment, place, marks)));
    const world = svg("g", {}, svg("g", { class: "links" }, shapes.map(([, element]) => element)),
        svg("g", { class: "segments" }, nodes));
    const hatch = svg("pattern", { id: "hatch", width: 5, height: 5, patternUnits: "userSpaceOnUse", patternTransform: "rotate(45)" },
        svg("line", { x1: 0, y1: 0, x2: 0, y2: 5 }));
    const element = svg("svg", { class: "map", role: "group", "aria-label": "Map of the network" }, svg("defs", {}, hatch), world);
    const byLink = new Map(shapes);
    let lit = [];
    let current = 1;
    const buttons = nodes.map((node) => node?.firstChild);
    buttons[1].setAttribute("tabindex", 0);
    const frame = h("div", { class: "canvas" }, element);
    // of the frame: an element of a drawing that hears of the focus is a stop for the keyboard itself
    frame.addEventListener("focusin", (event) => {
        const segment = Number(event.target.dataset.segment ?? 0);
        if (segment) setCurrent(segment);
    });

    function setCurrent(segment) {
        buttons[current].setAttribute("tabindex", -1);
        current = segment;
        buttons[segment].setAttribute("tabindex", 0);
    }

    return {
        element: frame,
        surface: element,
        applyView({ k, x, y }) {
            if (onPaper()) element.setAttribute("viewBox", `0 0 ${sheet.width} ${sheet.map}`);
            else element.removeAttribute("viewBox");
            world.setAttribute("transform", `translate(${x} ${y}) scale(${k})`);
            element.classList.toggle("far", k < 0.5);
            element.classList.toggle("very-far", k < 0.22);
            element.classList.toggle("farthest", k < 0.17);
        },
        paint(colourOf) {
            for (let segment = 1; segment < nodes.length; ++segment) {
                const colour = colourOf?.(segment);
                const [rect] = nodes[segment].getElementsByClassName("body");
                if (colour) rect.style.setProperty("--tint", colour.fill);
                else rect.style.removeProperty("--tint");
                nodes[segment].classList.toggle("light-ink", colour?.ink === "#fff");
                nodes[segment].classList.toggle("dark-ink", colour?.ink === "#111");
            }
        },
        /** Lights up the chosen segment or link, and what lies up-stream and down-stream of it. */
        light({ segment, link, up, down }) {
            for (const one of lit) one.classList.remove("self", "up", "down", "way");
            lit = [];
            const mark = (one, name) => { one.classList.add(name); lit.push(one); };
            if (segment) mark(nodes[segment], "self");
            if (link && byLink.has(link)) mark(byLink.get(link), "self");
            for (const one of up ?? []) if (nodes[one]) mark(nodes[one], "up");
            for (const one of down ?? []) if (nodes[one]) mark(nodes[one], "down");
            const way = new Set([0, segment, ...up ?? [], ...down ?? []]);
            for (const [{ a, b }, element] of shapes) if (way.has(a) && way.has(b)) mark(element, "way");
            element.classList.toggle("lit", lit.length > 0);
            if (segment) setCurrent(segment);
        },
        showBed(on) { element.classList.toggle("no-bed", !on); },
        changed(segments) { for (const segment of segments) nodes[segment]?.classList.add("changed"); },
        focus(segment) {
            setCurrent(segment);
            buttons[segment].focus({ preventScroll: true });
        },
        current: () => current,
        segmentAt: (event) => Number(event.target.closest?.("[data-segment]")?.dataset.segment ?? 0),
        linkAt(event) {
            const group = event.target.closest?.(".link");
            return group && shapes.find(([, one]) => one === group)?.[0];
        },
    };
}
