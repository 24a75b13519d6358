// What differs from another model: the lines of the comparison, changed segments and series as links.
import { page, visible } from "./data.js";
import { find, h, link, name } from "./dom.js";
import { count } from "./format.js";

export function startAgainst() {
    const { against } = page;
    if (!against) return;
    find("against-part").hidden = false;
    find("against").append(h("p", {}, "Compared with ", name(visible(against.file)), ". Changed segments stand out on the map."),
        against.differences.length === 0 ? h("p", { class: "quiet" }, "The two models are the same.")
            : h("ul", { class: "plain" }, against.differences.map((one) => h("li", { "data-difference": one.at },
                one.at ? link(one.at, "show") : "", one.at ? " " : "", name(visible(one.words))))),
    against.count > against.differences.length ? h("p", { class: "quiet" }, `and ${count(against.count - against.differences.length)} more; velm diff lists all`) : "");
}
