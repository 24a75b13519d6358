// Which segment an address belongs to, and what findings, boundaries and loads stand at a segment.
import { bySegment, numbers, page, pairs, paths, segmentCount } from "./data.js";

const levels = ["error", "warning", "note"];

export function parseAddress(text) {
    const [table, ...rest] = text.split(",");
    return { table, numbers: rest.map(Number) };
}

/** The segment of a boundary, a load or their values; 0 for none. */
export function atSegment({ table, numbers: [system, number] }) {
    const set = (table.startsWith("boundary") ? page.boundaries : page.loads)[system - 1];
    return set ? (numbers(set.segments, set.count)[number - 1] ?? 0) : 0;
}

function pathIn(list, [field, fn, number]) {
    return list.find((p) => p.field === field && p.function === fn && p.number === number);
}

/** All segments that an address is about. */
function segmentsOf(address) {
    const { table, numbers: key } = address;
    if (table === "segment") return [key[0]];
    if (table === "initial_condition") return [key[1]];
    if (table === "parameter_value") return [key[2]];
    if (/^(boundary|load)(_value)?$/.test(table)) return [atSegment(address)];
    if (table === "flow_path" || table === "exchange_pair") {
        const path = pathIn(table === "flow_path" ? paths : pairs, key);
        return path ? [path.first, path.second] : [];
    }
    return [];
}

const allFindings = page.findings.codes.flatMap((code) => code.list.map((one) => ({ ...one, code })));

export const findingsAt = bySegment(allFindings.flatMap((one) =>
    segmentsOf(parseAddress(one.at)).filter((segment) => segment > 0).map((segment) => [segment, one])));

export const worst = (list) => levels.find((level) => list.some((one) => one.code.level === level));

function seriesAt(kind, sets) {
    return bySegment(sets.flatMap((set, s) => [...numbers(set.segments, set.count)].map((segment, i) =>
        [segment, { kind, system: s + 1, number: i + 1 }])));
}
export const boundariesAt = seriesAt("boundary", page.boundaries);
export const loadsAt = seriesAt("load", page.loads);

/** Steps along paths and pairs to the next segment with a warning or an error; nothing when there is none. */
export function distanceToFindings() {
    const distance = new Float32Array(segmentCount).fill(Infinity);
    const queue = [];
    for (let segment = 1; segment <= segmentCount; ++segment) {
        const level = worst(findingsAt(segment));
        if (level !== "error" && level !== "warning") continue;
        distance[segment - 1] = 0;
        queue.push(segment);
    }
    if (queue.length === 0) return null;
    const next = bySegment([...paths, ...pairs].flatMap((p) => [[p.first, p.second], [p.second, p.first]]));
    for (const segment of queue) {
        for (const other of next(segment)) {
            if (other < 1 || other > segmentCount || distance[other - 1] < Infinity) continue;
            distance[other - 1] = distance[segment - 1] + 1;
            queue.push(other);
        }
    }
    return distance;
}
