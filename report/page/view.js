// Zoom and pan of the map: wheel, drag, keys and buttons change one view, which the drawing applies.
import { find } from "./dom.js";
import { heightOf, size } from "./layout.js";
import { sheet } from "./print.js";
import { on } from "./state.js";

const closest = 3;
const closestFit = 1.25;

export function makeView(drawing, places) {
    const view = { k: 1, x: 0, y: 0 };
    let least = 0.001;
    const { surface } = drawing;
    const apply = () => drawing.applyView({ ...view });

    function extent() {
        let [left, right, top, bottom] = [Infinity, -Infinity, Infinity, -Infinity];
        for (let segment = 1; segment < places.length; ++segment) {
            const { x, y } = places[segment];
            left = Math.min(left, x);
            right = Math.max(right, x + size.width);
            top = Math.min(top, y);
            bottom = Math.max(bottom, y + heightOf(segment));
        }
        return { left, top, width: right - left, height: bottom - top };
    }

    const marginOf = (w) => (w < 600 ? 18 : 32); // room for arrows to the outside
    function fitInto(all, w, h) {
        const margin = marginOf(w);
        view.k = Math.min((w - 2 * margin) / all.width, (h - 2 * margin) / all.height, closestFit);
        view.x = (w - all.width * view.k) / 2 - all.left * view.k;
        view.y = (h - all.height * view.k) / 2 - all.top * view.k;
        apply();
    }

    function fit() {
        const all = extent();
        const w = surface.clientWidth;
        // as high as the network needs at the map's width
        const margin = marginOf(w);
        const needed = Math.min((w - 2 * margin) / all.width, closestFit) * all.height + 2 * margin;
        find("overview").style.setProperty("--map-height", `${Math.round(Math.min(Math.max(needed, w < 600 ? 200 : 380), 440))}px`);
        fitInto(all, w, surface.clientHeight);
        least = view.k / 2;
    }

    function zoom(factor, at = { x: surface.clientWidth / 2, y: surface.clientHeight / 2 }) {
        const k = Math.min(Math.max(view.k * factor, least), closest);
        view.x = at.x - ((at.x - view.x) * k) / view.k;
        view.y = at.y - ((at.y - view.y) * k) / view.k;
        view.k = k;
        apply();
    }

    function pan(dx, dy) {
        view.x += dx;
        view.y += dy;
        apply();
    }

    /** Brings a segment into sight, as near as it takes to read it when `near`. */
    function show(segment, near) {
        const { clientWidth: w, clientHeight: h } = surface;
        const { x, y } = places[segment];
        if (near && view.k < 0.5) view.k = 0.8;
        const [left, top] = [x * view.k + view.x, y * view.k + view.y];
        const seen = left > 8 && top > 8 && left + size.width * view.k < w - 8 && top + size.water * view.k < h - 8;
        if (!seen) {
            view.x = w / 2 - (x + size.width / 2) * view.k;
            view.y = h / 2 - (y + size.water / 2) * view.k;
        }
        apply();
    }

    // the wheel belongs to the page until the map was clicked or focused
    surface.addEventListener("wheel", (event) => {
        if (!event.ctrlKey && !surface.parentElement.contains(document.activeElement)) return;
        event.preventDefault();
        const bounds = surface.getBoundingClientRect();
        zoom(Math.exp(-event.deltaY / 400), { x: event.clientX - bounds.left, y: event.clientY - bounds.top });
    }, { passive: false });

    let drag = null;
    surface.addEventListener("pointerdown", (event) => { drag = { x: event.clientX, y: event.clientY, moved: false }; });
    surface.addEventListener("pointermove", (event) => {
        if (!drag || !event.buttons) return;
        const [dx, dy] = [event.clientX - drag.x, event.clientY - drag.y];
        if (!drag.moved && Math.hypot(dx, dy) < 4) return;
        if (!drag.moved) surface.setPointerCapture(event.pointerId);
        drag = { x: event.clientX, y: event.clientY, moved: true };
        pan(dx, dy);
    });
    // a drag is no click
    surface.addEventListener("click", (event) => { if (drag?.moved) event.stopImmediatePropagation(); drag = null; });
    new ResizeObserver(() => { if (!fit.width || fit.width !== surface.clientWidth) { fit.width = surface.clientWidth; fit(); } }).observe(surface);
    let onScreen;
    on("paper", (paper) => {
        if (paper) onScreen = { ...view };
        if (paper) fitInto(extent(), sheet.width, sheet.map);
        else { Object.assign(view, onScreen); apply(); }
    });
    return { fit, zoom, pan, show };
}
