// The network as it is drawn: segments in columns, water above its bed, and all paths between two segments as one link.
import { numbers, page, pairs, paths, segmentCount } from "./data.js";

export const types = numbers(page.segments.types, segmentCount);
export const below = numbers(page.segments.bottoms, segmentCount);
/** Codes of surface bed and bed below it. */
export const isBed = (segment) => types[segment - 1] === 3 || types[segment - 1] === 4;

/** Columns of segments from the top down. A segment that two others name as the one below stands under the first. */
function makeColumns() {
    const columns = [];
    const columnOf = new Int32Array(segmentCount + 1).fill(-1);
    const isBelow = new Uint8Array(segmentCount + 1);
    for (const bottom of below) isBelow[bottom] = 1;
    const descend = (top) => {
        const column = [];
        for (let segment = top; segment > 0 && columnOf[segment] < 0; segment = below[segment - 1]) {
            columnOf[segment] = columns.length;
            column.push(segment);
        }
        if (column.length > 0) columns.push(column);
    };
    for (let segment = 1; segment <= segmentCount; ++segment) if (!isBelow[segment]) descend(segment);
    for (let segment = 1; segment <= segmentCount; ++segment) descend(segment); // those of a circle
    return { columns, columnOf };
}

export const { columns, columnOf } = makeColumns();

const exists = (segment) => segment >= 0 && segment <= segmentCount;

/** Links hold the paths between `a` and `b`, or between `a` and the outside (0); what leads nowhere is listed apart. */
function makeLinks() {
    const links = new Map();
    const nowhere = [];
    for (const path of [...paths, ...pairs]) {
        const { first, second } = path;
        if (!exists(first) || !exists(second) || (first === 0 && second === 0)) {
            nowhere.push(path);
            continue;
        }
        const outside = first === 0 || second === 0;
        const a = outside ? first || second : Math.min(first, second);
        const b = outside ? 0 : Math.max(first, second);
        const inward = outside && (first === 0) === !(path.flow < 0);
        const key = `${path.exchange ? "x" : outside && inward ? "i" : "o"}${a},${b}`;
        if (!links.has(key)) links.set(key, { a, b, exchange: Boolean(path.exchange), inward, paths: [] });
        links.get(key).paths.push(path);
    }
    return { links: [...links.values()], nowhere };
}

const trickle = 1e-30;

/** Water per second from `a` to `b` of a link, less what comes back; where none flows, a trickle from first to second. */
export const netFlow = (link) => link.paths.reduce((sum, p) => sum + (p.first === link.a ? p.flow : -p.flow), 0) ||
    (link.paths[0].first === link.a ? trickle : -trickle);

export const { links, nowhere } = makeLinks();

/**
 * Steps from column to column, each pair once, in the direction in which most water goes. An exchange counts only where
 * no water flows: the rows of a lake that mix stay beside each other.
 */
export function columnSteps() {
    const steps = new Map();
    for (const link of links) {
        const [a, b] = [columnOf[link.a], columnOf[link.b]];
        if (link.b === 0 || a === b) continue;
        const key = a < b ? `${a},${b}` : `${b},${a}`;
        const net = link.exchange ? 0 : netFlow(link) * (a < b ? 1 : -1);
        if (!steps.has(key)) steps.set(key, { low: Math.min(a, b), high: Math.max(a, b), net: 0, mixes: true });
        const step = steps.get(key);
        step.net += net;
        step.mixes &&= link.exchange;
    }
    const list = [...steps.values()];
    const flowing = new Set(list.filter((step) => !step.mixes).flatMap(({ low, high }) => [low, high]));
    return list.filter(({ low, high, mixes }) => !mixes || !flowing.has(low) || !flowing.has(high))
        .map(({ low, high, net }) => (net < 0 ? [high, low] : [low, high]));
}

/** Segments that water reaches from `segment` when `forward`, or comes from; by the mean flows of the run. */
export function reach(segment, forward) {
    reach.next ??= [neighbours(1), neighbours(-1)];
    const next = reach.next[forward ? 0 : 1];
    const found = new Set([segment]);
    for (const at of found) for (const other of next.get(at) ?? []) found.add(other);
    found.delete(segment);
    return found;
}

const isOfSolids = ({ field }) => field >= 3 && field <= 5;

function neighbours(sign) {
    const next = new Map();
    for (const link of links) {
        if (link.exchange || link.b === 0) continue;
        for (const path of link.paths) {
            if (isOfSolids(path) || (path.flow === 0 && !path.turns)) continue;
            const forward = (path.flow < 0) === (sign < 0);
            const [from, to] = forward ? [path.first, path.second] : [path.second, path.first];
            if (!next.has(from)) next.set(from, new Set());
            next.get(from).add(to);
        }
    }
    return next;
}
