// Elements of the page. Texts become text nodes and nothing else, whatever they contain.

const svgNames = "http://www.w3.org/2000/svg";

function fill(element, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (value === undefined || value === null || value === false) continue;
        if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
        else element.setAttribute(name, value === true ? "" : value);
    }
    element.append(...children.flat().filter((child) => child !== null && child !== undefined && child !== false));
    return element;
}

export const h = (tag, attributes = {}, ...children) => fill(document.createElement(tag), attributes, children);
export const svg = (tag, attributes = {}, ...children) => fill(document.createElementNS(svgNames, tag), attributes, children);
export const find = (id) => document.getElementById(id);
/** A name of the modeller's, kept apart from the direction and the spaces of the text around it. */
export const name = (text) => h("bdi", {}, text);
/** A link to an address such as "segment,9"; navigate.js follows it. */
export const link = (address, ...children) => h("a", { href: `#${address}` }, ...children);
