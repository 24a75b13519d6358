// Days of the run as dates. All in UTC: a model knows no time zone.
import { page } from "./data.js";
import { short } from "./format.js";

const start = page.run.start ? Date.parse(page.run.start) / 1000 : null;

export const hasDates = start !== null;
export const end = page.run.end;

/** Seconds since 1970, or days where the start is no date. */
export const axisTime = (day) => (hasDates ? start + day * 86400 : day);
export const dayOf = (time) => (hasDates ? (time - start) / 86400 : time);

/** "2023-01-01", with the time of day where there is one; empty without dates, and beyond those that there are. */
export function date(day) {
    const moment = hasDates ? new Date(Math.round((start + day * 86400) / 60) * 60000) : null;
    if (!moment || Number.isNaN(moment.getTime())) return "";
    const text = moment.toISOString();
    return text.slice(11, 16) === "00:00" ? text.slice(0, 10) : `${text.slice(0, 10)} ${text.slice(11, 16)}`;
}

/** "2023-02-09 (day 39)" or "day 39" */
export const dayInWords = (day) => (date(day) ? `${date(day)} (day ${short(day)})` : `day ${short(day)}`);
export function span(first, last) {
    const from = date(first) || `day ${short(first)}`;
    return first === last ? from : `${from} to ${date(last) || (hasDates ? `day ${short(last)}` : short(last))}`;
}
