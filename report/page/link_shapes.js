// Where the links of the map run: from side to side of their segments, the paths of a link beside each other.
import { bySegment } from "./data.js";
import { heightOf, size } from "./layout.js";
import { columnOf, columns, netFlow } from "./network.js";

const stub = 20; // arrow from or to the outside: shorter than from column to column
const widest = 16; // of all paths of a link
const exchangeWidth = 1.5;
const bow = 28;

const box = (segment, places) => ({ ...places[segment], w: size.width, h: heightOf(segment), segment });

/** Whether a box of their columns lies between two that are above each other. */
function areParted(upper, lower) {
    const column = columns[columnOf[upper.segment]];
    const under = column[column.indexOf(upper.segment) + 1] ?? columns[columnOf[lower.segment]][0];
    return under !== lower.segment;
}

/** The sides of two boxes that face each other: left, right, top or bottom; past what lies between, where `room` is. */
function facing(a, b, room) {
    if (b.x >= a.x + a.w) return ["right", "left"];
    if (a.x >= b.x + b.w) return ["left", "right"];
    if (b.y > a.y ? areParted(a, b) : areParted(b, a)) return [room(), room()];
    return b.y > a.y ? ["bottom", "top"] : ["top", "bottom"];
}

/** The side of a segment to which fewer of its links lead. */
function roomBeside(segment, links, places) {
    const lean = links.reduce((sum, { a, b }) => sum + (a && b ? Math.sign(places[a].x + places[b].x - 2 * places[segment].x) : 0), 0);
    return lean > 0 ? "left" : "right";
}

/** Links that touch one side of a segment share it, in the order of what they lead to. */
function spreadOver(ends) {
    const sides = new Map();
    for (const end of ends) {
        const key = `${end.box.segment}${end.side}`;
        if (!sides.has(key)) sides.set(key, []);
        sides.get(key).push(end);
    }
    for (const list of sides.values()) {
        const upright = list[0].side === "left" || list[0].side === "right";
        list.sort((p, q) => (upright ? p.toward.y - q.toward.y : p.toward.x - q.toward.x));
        const { x, y, w, h } = list[0].box;
        const gap = Math.min(upright ? 12 : 22, (upright ? h - 6 : w - 16) / list.length);
        list.forEach((end, i) => {
            const shift = (i - (list.length - 1) / 2) * gap;
            end.x = upright ? (end.side === "left" ? x : x + w) : x + w / 2 + shift;
            end.y = upright ? y + h / 2 + shift : end.side === "top" ? y : y + h;
        });
    }
    return sides;
}

const away = { left: [-1, 0], right: [1, 0], top: [0, -1], bottom: [0, 1] };

/** Water comes in from outside at a free side, and leaves: beside the segment, below the lowest, else above. */
function outsideSide(link, taken) {
    // an exchange runs beside a flow
    const side = (link.inward ? ["left"] : ["right", "left"]).find((one) => (taken.get(`${link.a}${one}`) ?? []).length === 0 &&
        (link.exchange || !taken.has(`${link.a}${one}`)));
    if (side && !link.exchange) taken.set(`${link.a}${side}`, []);
    if (side) return side;
    const column = columns[columnOf[link.a]];
    return column.length > 1 && column.at(-1) === link.a ? "bottom" : "top";
}

const strength = (path) => Math.min(Math.abs(path.flow || 0), 3e38);

function widths(link, strongest) {
    if (link.exchange) return link.paths.map(() => exchangeWidth);
    const wanted = link.paths.map((p) => 1.2 + 6 * Math.sqrt(strength(p) / strongest));
    const sum = wanted.reduce((a, b) => a + b, 0);
    return wanted.map((w) => (sum > widest ? (w * widest) / sum : w));
}

/** Curve from one end to the other, moved aside by `shift` and shortened at ends that carry a head. */
function curve(from, to, shift, heads, length) {
    const [fx, fy] = away[from.side];
    const [tx, ty] = away[to.side];
    const upright = fx !== 0;
    const cut = heads.map((head) => (head ? length : 0));
    const x0 = from.x + fx * cut[0] + (upright ? 0 : shift);
    const y0 = from.y + fy * cut[0] + (upright ? shift : 0);
    const x1 = to.x + tx * cut[1] + (upright ? 0 : shift);
    const y1 = to.y + ty * cut[1] + (upright ? shift : 0);
    const reach = from.side === to.side ? bow : upright ? Math.abs(x1 - x0) / 2 : Math.abs(y1 - y0) / 2;
    const r = (value) => Math.round(value * 10) / 10;
    return `M${r(x0)} ${r(y0)}C${r(x0 + fx * reach)} ${r(y0 + fy * reach)} ${r(x1 + tx * reach)} ${r(y1 + ty * reach)} ${r(x1)} ${r(y1)}`;
}

function headAt(end, length, half) {
    const [dx, dy] = away[end.side];
    const [bx, by] = [end.x + dx * length, end.y + dy * length];
    return `M${end.x} ${end.y}L${bx + dy * half} ${by + dx * half}L${bx - dy * half} ${by - dx * half}Z`;
}

function loop(link, place) {
    const x = place.x + size.width - 26;
    const d = `M${x} ${place.y}C${x} ${place.y - 26} ${x + 20} ${place.y - 26} ${x + 20} ${place.y}`;
    return { link, middle: { x, y: place.y }, strokes: link.paths.map((path) => ({ path, d, width: 1.5 })), heads: "" };
}

/** For each link: its strokes, one a path, with their widths, and its heads. */
export function linkShapes(links, places) {
    const strongest = links.reduce((most, l) => l.paths.reduce((m, p) => Math.max(m, strength(p)), most), 1e-38);
    const ends = new Map();
    const linksOf = bySegment(links.flatMap((link) => [[link.a, link], [link.b, link]]));
    for (const link of links.filter(({ a, b }) => b !== 0 && a !== b)) {
        const [a, b] = [box(link.a, places), box(link.b, places)];
        const [sideA, sideB] = facing(a, b, () => roomBeside(link.a, linksOf(link.a), places));
        ends.set(link, [{ box: a, side: sideA, toward: b }, { box: b, side: sideB, toward: a }]);
    }
    const taken = spreadOver([...ends.values()].flat());
    for (const link of links.filter(({ b }) => b === 0)) {
        const a = box(link.a, places);
        const side = outsideSide(link, taken);
        const [dx, dy] = away[side];
        const slide = side === "top" || side === "bottom" ? (link.inward ? -1 : 1) * size.width * 0.3 : link.exchange ? 9 : 0;
        const x = a.x + a.w / 2 + (dx * a.w) / 2 + (dy ? slide : 0);
        const y = a.y + a.h / 2 + (dy * a.h) / 2 + (dx ? slide : 0);
        const opposite = { left: "right", right: "left", top: "bottom", bottom: "top" }[side];
        ends.set(link, [{ x, y, side }, { x: x + dx * stub, y: y + dy * stub, side: opposite }]);
    }
    return links.map((link) => {
        if (link.a === link.b) return loop(link, places[link.a]);
        const [from, to] = ends.get(link);
        const wide = widths(link, strongest);
        const total = wide.reduce((sum, w) => sum + w, 0);
        const net = link.exchange ? 0 : netFlow(link);
        const both = !link.exchange && link.paths.some((p) => p.turns || (p.flow * (p.first === link.a ? 1 : -1)) * net < 0);
        const heads = [!link.exchange && (both || net < 0), !link.exchange && (both || net >= 0)];
        const length = 5 + total * 0.55;
        let at = -total / 2;
        const strokes = link.paths.map((path, i) => {
            const shift = at + wide[i] / 2;
            at += wide[i];
            return { path, d: curve(from, to, shift, heads, length - 0.5), width: wide[i] };
        });
        const drawn = [heads[0] && headAt(from, length, total / 2 + 3), heads[1] && headAt(to, length, total / 2 + 3)];
        return { link, strokes, heads: drawn.filter(Boolean).join(""), middle: { x: (from.x + to.x) / 2, y: (from.y + to.y) / 2 } };
    });
}
