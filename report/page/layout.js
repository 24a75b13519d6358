// Places for the columns of the network: given by the modeller, or worked out so that water runs from left to right.
import dagre from "@dagrejs/dagre";
import { hierarchy, tree } from "d3-hierarchy";
import { numbers, page, segmentCount } from "./data.js";
import { columnSteps, columns, isBed } from "./network.js";

export const size = { width: 112, water: 58, bed: 22, layerGap: 26, across: 32, between: 46 };
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
    heights.forEach((height, c) => graph.setNode(c, { width: size.width, height }));
    for (const [from, to] of steps) graph.setEdge(from, to);
    dagre.layout(graph);
    return heights.map((height, c) => ({ x: graph.node(c).x - size.width / 2, y: graph.node(c).y - height / 2 }));
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
    const seen = new Uint8Array(heights.length);
    const children = heights.map(() => []);
    const roots = [];
    const grow = (root) => {
        if (seen[root]) return;
        seen[root] = 1;
        roots.push(root);
        const queue = [root];
        for (const at of queue) {
            for (const other of next[at]) {
                if (seen[other]) continue;
                seen[other] = 1;
                children[at].push(other);
                queue.push(other);
            }
        }
    };
    heights.forEach((_, c) => leaves[c] || grow(c));
    heights.forEach((_, c) => grow(c));
    const tallest = heights.reduce((most, height) => Math.max(most, height), 0);
    const root = hierarchy(-1, (c) => (c < 0 ? roots : children[c]));
    tree().nodeSize([tallest + size.between, size.width + size.across])(root);
    const places = [];
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
    if (rows >= 3) {
        const rowWidth = Math.ceil(width / rows / step) * step;
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

/** The modeller's coordinates, y upwards, scaled so that neighbours do not overlap. */
function givenPlaces() {
    const x = numbers(page.segments.places.x, segmentCount);
    const y = numbers(page.segments.places.y, segmentCount);
    const places = columns.map(([top]) => ({ x: x[top - 1], y: -y[top - 1] }));
    const { width, height } = extent(places);
    const room = Math.sqrt(columns.length) * (size.width + size.across);
    const scale = (room * 1.5) / Math.max(width, height, 1e-9);
    return places.map((place) => ({ x: place.x * scale, y: place.y * scale }));
}

/** Left upper corners of all segments, by number. */
export function segmentPlaces() {
    const heights = columns.map(columnHeight);
    let columnPlaces;
    if (page.segments.places) {
        columnPlaces = givenPlaces();
    } else {
        const steps = columnSteps();
        const many = columns.length > layered || (columns.length > fewColumns && converges(steps));
        columnPlaces = many ? treeOf(heights, steps) : layersOf(heights, steps);
        fitToView(columnPlaces, heights);
    }
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
