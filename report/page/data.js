// The page's data: one JSON text and one run of packed numbers, both inert elements of the page.
// docs/report.md describes them.

function bytesOf(base64) {
    if (Uint8Array.fromBase64) return Uint8Array.fromBase64(base64);
    const characters = atob(base64);
    const bytes = new Uint8Array(characters.length);
    for (let i = 0; i < bytes.length; ++i) bytes[i] = characters.charCodeAt(i);
    return bytes;
}

const elementText = (id) => document.getElementById(id).textContent.trim();
const packed = new Float32Array(bytesOf(elementText("numbers")).buffer);

export const page = JSON.parse(elementText("data"));

const filled = new Map();

/** Single-precision numbers: `reference` is [begin, count] in the packed numbers, or one number that all `count` are. */
export function numbers(reference, count) {
    if (Array.isArray(reference)) return packed.subarray(reference[0], reference[0] + reference[1]);
    const key = `${reference}/${count}`;
    if (!filled.has(key)) filled.set(key, new Float32Array(count).fill(reference));
    return filled.get(key);
}

export const segmentCount = page.segments.count;
export const segmentNames = page.segments.names;

/** "segment 9, Upper estuary" */
export function segmentTitle(number) {
    const name = segmentNames[number - 1];
    return name ? `segment ${number}, ${visible(name)}` : `segment ${number}`;
}

/** Control characters by their pictures, so that a text shows all that it has. */
export function visible(text) {
    // eslint-disable-next-line no-control-regex
    return text.replace(/[\u0000-\u001f]/g, (c) => String.fromCharCode(0x2400 + c.charCodeAt(0))).replace(/\u007f/g, "\u2421");
}

/** Lists of things by segment: `pairs` gives [segment, thing]. */
export function bySegment(pairs) {
    const lists = new Map();
    for (const [segment, thing] of pairs) {
        if (!lists.has(segment)) lists.set(segment, []);
        lists.get(segment).push(thing);
    }
    return (segment) => lists.get(segment) ?? [];
}

/** All flow paths, then all exchange pairs, as plain objects; `flow` is the mean from first to second, m3/s; NaN where it comes from elsewhere. */
export const paths = [];
export const pairs = [];
page.flow_fields.forEach((field, f) => field.functions.forEach((fn, g) => {
    const { count } = fn.paths;
    const [first, second, fraction, flow, turns] =
        ["first", "second", "fraction", "flow", "turns"].map((name) => numbers(fn.paths[name], count));
    for (let i = 0; i < count; ++i) {
        paths.push({ field: f + 1, function: g + 1, number: i + 1, first: first[i], second: second[i],
            fraction: fraction[i], flow: page.balance ? flow[i] : NaN, turns: turns[i] > 0 });
    }
}));
page.exchange_fields.forEach((field, f) => field.functions.forEach((fn, g) => {
    const { count } = fn.pairs;
    const [first, second, area, length] = ["first", "second", "area", "length"].map((name) => numbers(fn.pairs[name], count));
    for (let i = 0; i < count; ++i) {
        pairs.push({ field: f + 1, function: g + 1, number: i + 1, first: first[i], second: second[i], area: area[i],
            length: length[i], exchange: true });
    }
}));

export const pathTitle = (p) => (p.exchange ? `exchange pair ${p.number} of exchange function ${p.function} of exchange field ${p.field}`
    : `flow path ${p.number} of flow function ${p.function} of flow field ${p.field}`);
export const endTitle = (segment) => (segment === 0 ? "outside" : `segment ${segment}`);
