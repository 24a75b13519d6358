// Title, file, run, counts, and the findings by level.
import { page, visible } from "./data.js";
import { end, hasDates, span } from "./dates.js";
import { find, h, name } from "./dom.js";
import { bytes, plural, short } from "./format.js";
import { countOf, levelMark } from "./findings.js";

export function startHead() {
    const { head, counts } = page;
    find("title").append(name(visible(head.title)));
    find("file").append(name(visible(head.file)), ` · ${head.kind} · ${bytes(head.bytes)}`);
    find("made").append(`${head.made} · ${head.program}`);
    const run = hasDates ? `${span(0, end)} (${short(end, 7)} days)` : `${short(end, 7)} days, from a start that is no date`;
    find("run").append([run, ...counts.map(([what, n]) => plural(n, what))].join(" · "));
    find("levels").append(...["error", "warning", "note"].map((level) =>
        h("a", { href: `#${level}`, class: "level-link" }, levelMark(level).firstChild, ` ${plural(countOf(level), level)}`)));
    if (page.against) find("levels").append(h("a", { href: "#against-title", class: "level-link" }, plural(page.against.count, "change")));
}
