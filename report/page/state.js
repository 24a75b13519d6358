// What is chosen: one segment or link of the map, and the series of the plot. Whoever shows it listens.

const listeners = new Map();

export const chosen = { segment: 0, series: new Set() };

export function on(event, listener) {
    listeners.set(event, [...(listeners.get(event) ?? []), listener]);
}
export const tell = (event, detail) => (listeners.get(event) ?? []).forEach((listener) => listener(detail));
