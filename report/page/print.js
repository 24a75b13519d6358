// A sheet is white and narrower than most windows: the whole map, the plot below it, and then the panel.
import { find } from "./dom.js";
import { tell } from "./state.js";

/** Pixels in which map and plot are drawn for a sheet, whose width they take. */
export const sheet = { width: 860, map: 340, plot: 260 };

export const onPaper = () => document.documentElement.classList.contains("paper");

function turn(on) {
    document.documentElement.classList.toggle("paper", on);
    if (on) find("plot-note").after(find("panel"));
    else find("overview").append(find("panel"));
    tell("paper", on);
}

export function startPrint() {
    addEventListener("beforeprint", () => turn(true));
    addEventListener("afterprint", () => turn(false));
}
