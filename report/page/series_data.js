// The time series of the model: their pairs, raw or after their factors, with gaps as gaps.
import { numbers, page, visible } from "./data.js";

export const kinds = { flow_value: "flow", exchange_value: "dispersion", boundary_value: "boundary", load_value: "load",
    time_function_value: "time function", volume: "volume" };

export const series = page.series.map((one, id) => ({ ...one, id, kind: kinds[one.table], words: wordsOf(one) }));

function wordsOf({ table, key: [a, b] }) {
    switch (table) {
    case "flow_value": return `flow function ${b} of flow field ${a}`;
    case "exchange_value": return `exchange function ${b} of exchange field ${a}`;
    case "boundary_value": return `boundary ${b} of system ${a}`;
    case "load_value": return `load ${b} of system ${a}`;
    case "time_function_value": return `time function ${b} of type ${a}`;
    default: return `volume of segment ${a}`;
    }
}

const byAddress = new Map(series.map((one) => [`${one.table},${one.key.join(",")}`, one]));
export const seriesOf = (table, key) => byAddress.get(`${table},${key.join(",")}`);
export const titleOf = (one) => (one.name ? visible(one.name) : one.words);

let applied = true;
export const applyFactors = (on) => { applied = on; };

const factorOf = (one) => (applied ? one.factor : 1);
export const unitOf = (one) => (applied || one.factor === 1 ? one.unit : "as stored");

/** Least, mean and greatest value of all pairs, also those that a thinned series leaves out. */
export function statistics(one) {
    const factor = factorOf(one);
    const [low, high] = [one.least * factor, one.greatest * factor];
    return { least: Math.min(low, high), mean: one.mean * factor, greatest: Math.max(low, high) };
}

/** Days and values; a value that is no number breaks the line at a gap. */
export function points(one, { old = false } = {}) {
    const from = old ? one.old : one;
    const times = numbers(from.times, from.kept);
    const values = numbers(from.values, from.kept);
    const factor = factorOf(from);
    // in double precision: a factor may lead beyond the other
    return { times, values: factor === 1 ? values : Float64Array.from(values, (value) => value * factor) };
}
