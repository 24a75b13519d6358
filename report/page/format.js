// Numbers and days as people read them.

const thin = "\u202f";

/** The shortest decimal text that single precision reads as `value`. */
export function exact(value) {
    if (!Number.isFinite(value)) return String(value);
    const single = Math.fround(value);
    const digits = [6, 7, 8].find((some) => Math.fround(Number(value.toPrecision(some))) === single) ?? 9;
    return String(Number(value.toPrecision(digits)));
}

function grouped(text) {
    const [whole, part] = text.split(".");
    const groups = whole.length > 4 + (whole[0] === "-") ? whole.replace(/\B(?=(\d{3})+$)/g, thin) : whole;
    return part === undefined ? groups : `${groups}.${part}`;
}

const superscripts = "⁰¹²³⁴⁵⁶⁷⁸⁹";

/** A number as it stands in running text, where three significant digits do, or in a table. */
export function short(value, digits = 3) {
    if (value === null || value === undefined || Number.isNaN(value)) return "–";
    if (!Number.isFinite(value)) return value > 0 ? "∞" : "−∞";
    const size = Math.abs(value);
    if ((size !== 0 && size < 9.99e-5) || size >= 1e15) {
        const [front, power] = value.toExponential(digits - 1).split("e");
        const raised = [...power.replace("+", "")].map((c) => (c === "-" ? "⁻" : superscripts[c])).join("");
        return `${Number(front)}${thin}×${thin}10${raised}`.replace("-", "−");
    }
    for (const [limit, word] of [[1e12, "trillion"], [1e9, "billion"], [1e6, "million"]]) {
        if (size >= limit) return `${short(value / limit, digits)} ${word}`;
    }
    const whole = size >= 99999.5 ? 6 : size >= 9999.5 ? 5 : size >= 1000 ? 4 : 1;
    return grouped(String(Number(value.toPrecision(Math.max(whole, digits))))).replace("-", "−");
}

export const withUnit = (value, unit) => (unit ? `${short(value)} ${unit}` : short(value));
export const count = (value) => grouped(String(value));
export const plural = (value, word) => `${count(value)} ${value === 1 ? word : `${word}s`.replace(/ys$/, "ies")}`;

export function bytes(size) {
    if (size < 1000) return `${size} bytes`;
    return size < 1e6 ? `${(size / 1e3).toPrecision(3)} kB` : `${Number((size / 1e6).toPrecision(3))} MB`;
}
