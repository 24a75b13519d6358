// What a check of the model says, by code, each line leading to its place.
import { page, visible } from "./data.js";
import { find, h, link, name } from "./dom.js";
import { count } from "./format.js";
import { shows } from "./navigate.js";

const shapes = { error: "●", warning: "▲", note: "○" };
const levels = Object.keys(shapes);
export const levelMark = (level) => h("span", { class: `level ${level}` }, h("span", { "aria-hidden": "true" }, shapes[level]), ` ${level}`);

export function findingLine(one, code) {
    return h("p", { class: "finding" }, levelMark(code.level), ` ${code.code} ${code.name}: `, name(visible(one.message)),
        one.at ? [" ", link(one.at, one.where)] : one.where ? ` (${one.where})` : "");
}

function group(code) {
    const hidden = code.count - code.list.length;
    return h("details", { class: "code", "data-level": code.level, open: code.level !== "note", id: `code-${code.code}` },
        h("summary", {}, levelMark(code.level), ` ${code.code} ${code.name}`, h("span", { class: "quiet" }, ` · ${count(code.count)}`)),
        h("p", { class: "remedy" }, "Remedy: ", code.remedy, "."),
        h("ul", { class: "plain" }, code.list.map((one) => h("li", { "data-finding": code.code }, one.at ? link(one.at, one.where) : one.where, one.where ? ": " : "",
            name(visible(one.message))))),
        hidden > 0 ? h("p", { class: "quiet" }, `and ${count(hidden)} more; velm check --most ${code.count} lists all`) : "");
}

export function countOf(level) {
    return page.findings.codes.filter((code) => code.level === level).reduce((sum, code) => sum + code.count, 0);
}

function filter() {
    return h("fieldset", { class: "chips" }, h("legend", { class: "unseen" }, "levels shown"), levels.map((level) => {
        const box = h("input", { type: "checkbox", checked: true, onchange: () => {
            for (const one of document.querySelectorAll(`.code[data-level="${level}"]`)) one.hidden = !box.checked;
        } });
        return h("label", {}, box, levelMark(level), ` ${count(countOf(level))}`);
    }));
}

export function startFindings() {
    const { codes } = page.findings;
    const place = find("findings");
    if (codes.length === 0) place.append(h("p", { class: "quiet" }, "Nothing was found."));
    else place.append(filter(), ...[...codes].sort((a, b) => levels.indexOf(a.level) - levels.indexOf(b.level)).map(group));
    shows(levels, (numbers, level) => {
        const box = place.querySelector(`.code[data-level="${level}"]:not([hidden])`);
        if (box) box.open = true;
        return box?.firstChild ?? find("findings-title");
    });
    place.append(...page.findings.remarks.map((remark) => h("p", { class: "quiet" }, visible(remark.slice(0, 1).toUpperCase() + remark.slice(1)), ".")));
}
