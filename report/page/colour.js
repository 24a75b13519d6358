// Colours of quantities: viridis, which is even in lightness and safe for the colour-blind.
import { numbers, page, segmentCount } from "./data.js";
import { isBed } from "./network.js";

const viridis = ["#440154", "#482878", "#3e4989", "#31688e", "#26828e", "#1f9e89", "#35b779", "#6ece58", "#b5de2b", "#fde725"]
    .map((text) => [1, 3, 5].map((at) => parseInt(text.slice(at, at + 2), 16)));

/** `part` from 0 to 1 as "rgb(…)", with the colour of a text that can be read on it. */
export function viridisAt(part) {
    const place = Math.min(Math.max(part, 0), 1) * (viridis.length - 1);
    const low = Math.min(Math.floor(place), viridis.length - 2);
    const rgb = viridis[low].map((from, i) => Math.round(from + (viridis[low + 1][i] - from) * (place - low)));
    return { fill: `rgb(${rgb.join(",")})`, ink: part > 0.52 ? "#111" : "#fff" };
}

/** Overlaid series: the colours of Okabe and Ito, those first that stand out from the paper. */
export const lines = (dark) => (dark ? ["#56b4e9", "#e69f00", "#2bbf95", "#cc79a7", "#f0e442", "#e0703a"]
    : ["#0072b2", "#d55e00", "#009e73", "#aa4c84", "#b37400", "#3a8fc2"]);

/** From values to 0 … 1, by powers of ten where they span more than three of them. */
export function scaleOf(values) {
    let [least, greatest] = [Infinity, -Infinity];
    for (const value of values) {
        if (!Number.isFinite(value)) continue;
        least = Math.min(least, value);
        greatest = Math.max(greatest, value);
    }
    const powers = least > 0 && greatest / least > 1000;
    const at = powers ? Math.log : (value) => value;
    const width = at(greatest) - at(least);
    return { least, greatest, powers, part: (value) => (width > 0 ? (at(value) - at(least)) / width : 0.5) };
}

/** What water does says little of the bed, which stays quiet. */
export const isColoured = (datum, segment) => !(datum.group === "water" && isBed(segment));

/** What the map can be coloured by; `varies` where that would show something. */
export const colourings = page.segments.data.map((datum) => {
    const values = numbers(datum.values, segmentCount);
    const shown = values.filter((_, i) => isColoured(datum, i + 1));
    return { ...datum, values, varies: shown.some((value) => value !== shown[0] && !(Math.abs(value - shown[0]) <= 1e-5 * Math.abs(value))) };
});
