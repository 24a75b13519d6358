// The map of a network too large for elements: a picture of the whole, without names, with search and arrow keys.
import { segmentCount, segmentTitle } from "./data.js";
import { h } from "./dom.js";
import { heightOf, size } from "./layout.js";
import { isBed, links } from "./network.js";
import { onPaper, sheet } from "./print.js";

const nearEnough = 0.25; // to read a number

export function drawCanvas(places) {
    const canvas = h("canvas", { class: "map", tabindex: 0, role: "img" });
    const context = canvas.getContext("2d");
    const inner = links.filter((link) => link.b !== 0 && link.a !== link.b);
    let view = { k: 1, x: 0, y: 0 };
    let colours = null;
    let lit = {};
    let current = 1;
    let waiting = false;
    let withBed = true;
    let changed = new Set();

    function segmentColour(segment, style) {
        if (segment === lit.segment) return style.getPropertyValue("--accent");
        if (changed.has(segment) || lit.up?.has(segment) || lit.down?.has(segment)) return style.getPropertyValue("--lit");
        return colours?.(segment)?.fill ?? style.getPropertyValue((isBed(segment) ? "--bed" : "--water") + (view.k > nearEnough ? "" : "-rim"));
    }

    function drawLinks(style) {
        context.strokeStyle = style.getPropertyValue("--flow");
        context.lineWidth = Math.min(2, Math.max(0.5, 3 * view.k)) / view.k;
        context.beginPath();
        for (const { a, b } of inner) {
            if (!withBed && (isBed(a) || isBed(b))) continue;
            context.moveTo(places[a].x + size.width / 2, places[a].y + heightOf(a) / 2);
            context.lineTo(places[b].x + size.width / 2, places[b].y + heightOf(b) / 2);
        }
        context.stroke();
    }

    function draw() {
        waiting = false;
        const dots = window.devicePixelRatio || 1;
        const [width, height] = onPaper() ? [sheet.width, sheet.map] : [canvas.clientWidth, canvas.clientHeight];
        canvas.width = width * dots;
        canvas.height = height * dots;
        const style = getComputedStyle(canvas);
        context.setTransform(view.k * dots, 0, 0, view.k * dots, view.x * dots, view.y * dots);
        drawLinks(style);
        const [left, top] = [-view.x / view.k - size.width, -view.y / view.k - size.water];
        const [right, bottom] = [(width - view.x) / view.k, (height - view.y) / view.k];
        const least = 1.5 / view.k; // a dot that can be seen
        for (let segment = 1; segment <= segmentCount; ++segment) {
            const { x, y } = places[segment];
            if (x < left || y < top || x > right || y > bottom || (!withBed && isBed(segment))) continue;
            context.fillStyle = segmentColour(segment, style);
            const grown = segment === lit.segment || changed.has(segment) ? 4 : 1;
            context.fillRect(x, y, Math.max(size.width, least * grown), Math.max(heightOf(segment), least * grown));
            if (view.k > nearEnough) drawNumber(segment, x, y, style);
        }
    }

    function drawNumber(segment, x, y, style) {
        context.fillStyle = segment === lit.segment ? style.getPropertyValue("--paper") : (colours?.(segment)?.ink ?? style.getPropertyValue("--ink"));
        context.font = "600 14px system-ui, sans-serif";
        context.fillText(String(segment), x + 7, y + (isBed(segment) ? 13 : 24));
    }

    function later() {
        if (!waiting) requestAnimationFrame(draw);
        waiting = true;
    }
    const say = () => canvas.setAttribute("aria-label", `Map of the network, coarse; at ${segmentTitle(current)}. ` +
        "Arrow keys move, Enter opens.");
    say();
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", later);

    return {
        element: h("div", { class: "canvas" }, canvas),
        surface: canvas,
        applyView(next) {
            view = next;
            if (onPaper()) draw(); // there is no later
            else later();
        },
        paint(colourOf) { colours = colourOf; later(); },
        light(what) {
            lit = what;
            if (what.segment) current = what.segment;
            say();
            later();
        },
        showBed(on) { withBed = on; later(); },
        changed(segments) { changed = new Set(segments); later(); },
        focus(segment) {
            current = segment;
            lit = { ...lit, segment };
            say();
            canvas.focus({ preventScroll: true });
            later();
        },
        current: () => current,
        segmentAt(event) {
            const bounds = canvas.getBoundingClientRect();
            const x = (event.clientX - bounds.left - view.x) / view.k;
            const y = (event.clientY - bounds.top - view.y) / view.k;
            let [nearest, distance] = [0, 12 / view.k];
            for (let segment = 1; segment <= segmentCount; ++segment) {
                const { x: left, y: top } = places[segment];
                const dx = Math.max(left - x, 0, x - left - size.width);
                const dy = Math.max(top - y, 0, y - top - heightOf(segment));
                const away = Math.hypot(dx, dy);
                if (away < distance) [nearest, distance] = [segment, away];
            }
            return nearest;
        },
        linkAt: () => null,
    };
}
