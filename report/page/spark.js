// Small pictures of series.
import { svg } from "./dom.js";
import { points } from "./series_data.js";

const gap = [Infinity, -Infinity];

/** A line through the least and the greatest value of each pixel. */
export function spark(one, width, height) {
    const { times, values } = points(one);
    const [first, last] = [one.first, one.last];
    const columns = Array.from({ length: width }, () => null);
    let [least, greatest] = [Infinity, -Infinity];
    values.forEach((value, i) => {
        const at = last > first ? Math.min(width - 1, Math.max(0, Math.floor(((times[i] - first) / (last - first)) * width))) : 0;
        if (Number.isNaN(value)) columns[at] ??= gap;
        if (!Number.isFinite(value)) return;
        least = Math.min(least, value);
        greatest = Math.max(greatest, value);
        const column = columns[at];
        columns[at] = column ? [Math.min(column[0], value), Math.max(column[1], value)] : [value, value];
    });
    const y = (value) => (height - 1.5 - (greatest > least ? (value - least) / (greatest - least) : 0.5) * (height - 3)).toFixed(1);
    const d = columns.flatMap((column, x) => (column === gap ? ["gap"] : column ? [`${x} ${y(column[0])}L${x} ${y(column[1])}`] : []))
        .join("L").replace(/L(gapL)+/g, "M");
    const line = greatest > least ? `M${d}` : `M0 ${height / 2}H${width}`;
    return svg("svg", { class: "spark", width, height, viewBox: `0 0 ${width} ${height}`, "aria-hidden": "true" },
        svg("path", { d: line }));
}
