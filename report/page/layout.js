// Places for the columns of the network: given by the modeller, or worked out so that water runs from left to right.
import dagre from "@dagrejs/dagre";
import { Node, tree } from "d3-hierarchy";
import { bySegment, numbers, page, segmentCount } from "./data.js";
import { columnSteps, columns, isBed } from "./network.js";

export const size = { width: 112, water: 76, bed: 22, layerGap: 26, across: 32, between: 46 };
export const mostNamed = 6000; // segments; of more the map is a picture of the whole
const layered = 1000; // columns; a layered layout of more takes seconds
const fewColumns = 100; // a layered layout of so few takes no time
const wide = 1.9; // the map's width by its height

export const heightOf = (segment) => (isBed(segment) ? size.bed : size.water);
const columnHeight = (column) => column.reduce((sum, s) => sum + heightOf(s) + size.layerGap, -size.layerGap);

/** Layers by their distance along the water, few crossings: for what is no tree too. */
function layersOf(heights, steps) {
    const graph = new dagre.graphlib.Graph();
    graph.setGraph({ rankdir: "LR", ranker: heights.length > 100 ? "tight-tree" : "network-simplex",
        nodesep: size.between, ranksep: size.across });
    graph.setDefaultEdgeLabel(() => ({}));
    for (const c of new Set(steps.flat())) graph.setNode(c, { width: size.width, height: heights[c] });
    for (const [from, to] of steps) graph.setEdge(from, to);
    dagre.layout(graph);
    return heights.map((height, c) => graph.node(c) && { x: graph.node(c).x - size.width / 2, y: graph.node(c).y - height / 2 });
}

/** A tree whose roots are the outlets, in a moment; what closes a ring is drawn across. */
function treeOf(heights, steps) {
    const next = heights.map(() => []);
    const leaves = new Uint8Array(heights.length);
    for (const [from, to] of steps) {
        next[from].push(to);
        next[to].push(from);
        leaves[from] = 1;
    }
    // the library's own way from data to nodes takes the square of a river's length
    const nodes = heights.map((_, c) => new Node(c));
    const root = new Node(-1);
    const attach = (node, parent) => {
        (parent.children ??= []).push(node);
        node.parent = parent;
        node.depth = parent.depth + 1;
    };
    const grow = (outlet) => {
        if (nodes[outlet].parent || next[outlet].length === 0) return;
        attach(nodes[outlet], root);
        const queue = [outlet];
        for (const at of queue) {
            for (const other of next[at]) {
                if (nodes[other].parent) continue;
                attach(nodes[other], nodes[at]);
                queue.push(other);
            }
        }
    };
    heights.forEach((_, c) => leaves[c] || grow(c));
    heights.forEach((_, c) => grow(c));
    const tallest = heights.reduce((most, height) => Math.max(most, height), 0);
    tree().nodeSize([tallest + size.between, size.width + size.across])(root);
    const places = new Array(heights.length);
    root.each((node) => { if (node.data >= 0) places[node.data] = { x: -node.y, y: node.x }; });
    return places;
}

function extent(places) {
    let [left, right, top, bottom] = [Infinity, -Infinity, Infinity, -Infinity];
    for (const { x, y } of places) {
        left = Math.min(left, x);
        right = Math.max(right, x);
        top = Math.min(top, y);
        bottom = Math.max(bottom, y);
    }
    return { left, top, width: right - left, height: bottom - top };
}

/** Every column has one way out: a river with its tributaries. */
function converges(steps) {
    const out = new Set(steps.map(([from]) => from));
    return out.size === steps.length;
}

/** A long thin network winds from row to row, as a river does; a high thin one is drawn out to the side. */
function fitToView(places, heights) {
    const { left, width, height } = extent(places);
    const tallest = heights.reduce((most, one) => Math.max(most, one), 0);
    const row = height + tallest + 2 * size.between;
    const rows = Math.round(Math.sqrt(width / (wide * row)));
    const step = size.width + size.across;
    if (rows >= 2 && width > 1000) {
        const rowWidth = Math.ceil((width / step + 1) / rows - 1e-6) * step;
        for (const place of places) {
            const at = Math.floor((place.x - left) / rowWidth + 1e-6);
            const along = place.x - left - at * rowWidth;
            place.x = left + (at % 2 ? rowWidth - step - along : along);
            place.y += at * row;
        }
    } else if (height > width) {
        const stretch = (height * wide) / Math.max(width, step);
        for (const place of places) place.x = left + (place.x - left) * stretch;
    }
}

/** Boxes that overlap move apart, each half of the way. */
function partOverlaps(places, heights) {
    const { width, height } = extent(places);
    const [along, aside] = width > height ? ["x", "y"] : ["y", "x"];
    const room = (a, b, axis) => (axis === "x" ? size.width + size.across / 2 : heights[places[a].y <= places[b].y ? a : b] + size.layerGap);
    const tallest = heights.reduce((most, one) => Math.max(most, one), 0);
    const reach = along === "x" ? room(0, 0, "x") : tallest + size.layerGap;
    const order = [...places.keys()];
    for (let round = 0, moved = true; moved && round < 40; ++round) {
        moved = false;
        order.sort((a, b) => places[a][along] - places[b][along]);
        order.forEach((a, i) => {
            for (let j = i + 1; j < order.length && places[order[j]][along] - places[a][along] < reach; ++j) {
                const b = order[j];
                const missing = (axis) => room(a, b, axis) - Math.abs(places[b][axis] - places[a][axis]);
                const axis = missing(along) < missing(aside) ? along : aside;
                if (Math.min(missing("x"), missing("y")) < 1) continue;
                const push = (places[b][axis] < places[a][axis] ? -1 : 1) * (missing(axis) / 2 + 0.1);
                places[b][axis] += push;
                places[a][axis] -= push;
                moved = true;
            }
        });
    }
}

/** Columns without a place stand between their neighbours, or in line behind the only one. */
function placeOthers(places, steps) {
    const step = size.width + size.across;
    const next = bySegment(steps.flatMap(([from, to]) => [[from, { at: to, dx: step }], [to, { at: from, dx: -step }]]));
    const mean = (list) => ["x", "y"].map((axis) => list.reduce((sum, { at }) => sum + places[at][axis], 0) / list.length);
    const settle = (c) => {
        const known = next(c).filter(({ at }) => places[at]);
        let [x, y] = mean(known);
        if (known.length === 1) {
            const before = next(known[0].at).filter(({ at }) => at !== c && places[at]);
            const [bx, by] = before.length ? mean(before) : [x, y];
            const length = Math.hypot(x - bx, y - by);
            [x, y] = length > 0 ? [x + ((x - bx) / length) * step, y + ((y - by) / length) * step] : [x - known[0].dx, y];
        }
        places[c] = { x, y };
    };
    const queue = [...places.keys()].filter((c) => places[c]);
    const given = queue.length;
    for (const c of queue) {
        for (const { at } of next(c)) {
            if (places[at]) continue;
            settle(at);
            queue.push(at);
        }
    }
    for (let round = 0; round < Math.min(100, 2e5 / queue.length); ++round) queue.slice(given).forEach(settle);
}

/** Columns that have no place by now stand in rows below the others. */
function placeLonely(places, heights) {
    const lonely = heights.map((_, c) => c).filter((c) => !places[c]);
    if (lonely.length === 0) return;
    const known = places.filter(Boolean);
    const tallest = heights.reduce((most, one) => Math.max(most, one), 0);
    const { left, top, width, height } = known.length ? extent(known) : { left: 0, top: -tallest - size.between, width: 0, height: 0 };
    const [across, down] = [size.width + size.across, tallest + size.between];
    const perRow = Math.max(Math.floor(width / across) + 1, Math.ceil(Math.sqrt((lonely.length * wide * down) / across)));
    lonely.forEach((c, i) => { places[c] = { x: left + (i % perRow) * across, y: top + height + down * (1 + Math.floor(i / perRow)) }; });
}

/** The modeller's coordinates, y upwards, scaled so that most neighbours have room. A column without stands between its neighbours. */
function givenPlaces(heights, steps) {
    const { count, segments, x, y } = page.segments.places;
    const [of, xs, ys] = [segments, x, y].map((reference) => numbers(reference, count));
    const given = new Map([...of].map((segment, i) => [segment, { x: xs[i], y: -ys[i] }]).filter(([, place]) => Number.isFinite(place.x + place.y)));
    const places = columns.map((column) => given.get(column.find((segment) => given.has(segment))));
    const known = places.filter(Boolean);
    const apart = steps.filter(([from, to]) => places[from] && places[to]).map(([from, to]) =>
        Math.max(Math.abs(places[from].x - places[to].x) / (size.width + size.across), Math.abs(places[from].y - places[to].y) / (heights[from] + size.across)))
        .filter((distance) => distance > 0).sort((a, b) => a - b);
    const { width, height } = extent(known);
    if (!(width + height > 0)) return null; // one point is no map
    // one that is far away does not push all others onto a dot
    const most = (1.5 * columns.length * (size.width + size.across)) / Math.max(width, height);
    const scale = Math.min(most, 1 / (apart[apart.length >> 2] ?? Math.max(width, height) / (Math.sqrt(columns.length) * 2 * size.width)));
    for (const place of known) {
        place.x *= scale;
        place.y *= scale;
    }
    placeOthers(places, steps);
    placeLonely(places, heights);
    if (segmentCount <= mostNamed) partOverlaps(places, heights);
    return places;
}

/** Left upper corners of all segments, by number. */
export function segmentPlaces() {
    const heights = columns.map(columnHeight);
    const steps = columnSteps();
    let columnPlaces = page.segments.places ? givenPlaces(heights, steps) : null;
    if (!columnPlaces) {
        const many = columns.length > layered || (columns.length > fewColumns && converges(steps));
        columnPlaces = many ? treeOf(heights, steps) : layersOf(heights, steps);
        fitToView(columnPlaces.filter(Boolean), heights);
    }
    placeLonely(columnPlaces, heights);
    const places = new Array(segmentCount + 1);
    columns.forEach((column, c) => {
        let { y } = columnPlaces[c];
        for (const segment of column) {
            places[segment] = { x: columnPlaces[c].x, y };
            y += heightOf(segment) + size.layerGap;
        }
    });
    return places;
}
