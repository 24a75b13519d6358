// Links lead to addresses: a table of a model database and the numbers of a row, "flow_path,1,2,3". Who shows a table
// says so; a link without a taker leads to the heading of the tables.

const takers = new Map();

/** `take(numbers, table)` shows a row and returns the element that deserves the focus, if any. */
export function shows(tables, take) {
    for (const table of tables) takers.set(table, take);
}

export function go(address) {
    const [table, ...rest] = address.split(",");
    const take = takers.get(table);
    if (!take) return false;
    const target = take(rest.map(Number), table);
    if (target) {
        target.focus({ preventScroll: true });
        queueMicrotask(() => target.scrollIntoView({ block: "nearest" })); // a plot has its height by then
    }
    return true;
}

export function startNavigation() {
    // the click, not the change of the address: a link may be followed twice
    document.addEventListener("click", (event) => {
        const anchor = event.target.closest?.('a[href^="#"]');
        if (anchor && go(anchor.getAttribute("href").slice(1))) {
            event.preventDefault();
            history.replaceState(null, "", anchor.getAttribute("href"));
        }
    });
    if (location.hash.length > 1) go(location.hash.slice(1));
}
