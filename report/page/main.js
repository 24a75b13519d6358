import { startAgainst } from "./against.js";
import { numbers, page, segmentCount } from "./data.js";
import { startBalance } from "./balance.js";
import { startFindings } from "./findings.js";
import { startHead } from "./head.js";
import { startMap, choose } from "./map.js";
import { startNavigation } from "./navigate.js";
import { boundariesAt, findingsAt, loadsAt, worst } from "./places.js";
import { startPlot } from "./plot.js";
import { startPanel } from "./segment.js";
import { startPrint } from "./print.js";
import { startSeries } from "./series.js";
import { startTables } from "./tables.js";

function marks(segment) {
    const list = findingsAt(segment);
    const level = worst(list);
    const words = level && level !== "note" ? `, ${level}` : "";
    return { words, level: level === "note" ? null : level, boundary: boundariesAt(segment).length > 0, load: loadsAt(segment).length > 0 };
}

/** The segment through which most water flows: where a reader is likely to begin. */
function mostFlow() {
    const flows = page.balance?.segments ? numbers(page.balance.segments.out, segmentCount) : [];
    return flows.reduce((most, flow, i) => (flow > flows[most - 1] ? i + 1 : most), 1);
}

startHead();
startPanel();
startMap(marks);
startPlot();
startSeries();
startBalance();
startTables();
startFindings();
startAgainst();
startPrint();
choose(mostFlow(), { light: false });
startNavigation();
document.documentElement.dataset.ready = "true";
