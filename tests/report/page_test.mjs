// The page of `velm report` in a real browser: what it shows is what the databases have, and nothing leaves it.
//
//     VELM=build/release/velm SCREENSHOTS=build/release/screenshots node --test tests/report/page_test.mjs
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { existsSync, mkdirSync, readFileSync, statSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));
const need = createRequire(join(here, "../../report/page/package.json"));
const { chromium } = need("playwright-core");
const axe = readFileSync(need.resolve("axe-core/axe.min.js"), "utf8");
const folder = process.env.SCREENSHOTS;
const program = ["/usr/bin/chromium", "/usr/bin/chromium-browser", "/usr/bin/google-chrome"].find(existsSync);
const quiet = ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync"];
let browser;
let expected;

before(async () => {
    mkdirSync(folder, { recursive: true });
    execFileSync("python3", [join(here, "models.py"), process.env.VELM, folder], { stdio: "inherit" });
    expected = JSON.parse(readFileSync(join(folder, "expected.json"), "utf8"));
    browser = await chromium.launch({ executablePath: program, args: quiet });
});
after(() => browser?.close());

/** Opens a page, has `look` look at it, and fails on any message, dialog or request. */
async function open(name, look, options = {}) {
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, ...options });
    const page = await context.newPage();
    const heard = [];
    page.on("console", (message) => heard.push(message.text()));
    page.on("pageerror", (error) => heard.push(String(error)));
    page.on("dialog", (dialog) => { heard.push(`dialog ${dialog.message()}`); dialog.dismiss(); });
    page.on("request", (request) => { if (!/^(file|blob):/.test(request.url())) heard.push(`request ${request.url()}`); });
    await page.goto(pathToFileURL(join(folder, `${name}.html`)).href);
    await page.waitForSelector("html[data-ready]", { timeout: 60000 });
    // what hears of its size draws itself once more
    await page.evaluate(() => new Promise((drawn) => { requestAnimationFrame(() => requestAnimationFrame(drawn)); }));
    await look(page);
    await context.close();
    assert.deepEqual(heard, [], `${name} is silent`);
}

const single = Math.fround;
const attributes = (page, name) => page.$$eval(`[${name}]`, (all, key) => all.map((one) => one.getAttribute(key)), name);
const keys = (rows) => rows.map((row) => row.join(","));
const shown = (page) => page.$eval("#panel-title", (title) => title.dataset.shown);

/** A datum that the panel shows, by its name. */
const datum = (page, name) => page.$$eval("#panel dt", (all, wanted) => all.filter((dt) => dt.textContent === wanted)
    .map((dt) => dt.nextElementSibling.querySelector("[data-value]").dataset.value)[0], name);

/** What axe-core finds on the page; `rules` when not all are asked for. */
async function barriers(page, rules) {
    const { violations } = await page.evaluate((runOnly) => globalThis.axe.run({ resultTypes: ["violations"], runOnly }), rules);
    return violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`);
}

async function mapIsWhole(page, { segments, paths, pairs }) {
    assert.deepEqual((await attributes(page, "data-segment")).map(Number).sort((a, b) => a - b), segments.map(([n]) => n));
    assert.deepEqual((await attributes(page, "data-path")).sort(), keys(paths).sort());
    assert.deepEqual((await attributes(page, "data-exchange")).sort(), keys(pairs).sort());
    const names = await page.$$eval("[data-path][role], [data-exchange][role]", (all) => all.map((one) => one.getAttribute("aria-label")));
    assert.equal(new Set(names).size, names.length);
    const covered = await page.$$eval(".segment .body", (all) => all.map((one) => one.getBoundingClientRect()).filter((a, i, boxes) =>
        boxes.some((b, k) => k > i && a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)).length);
    assert.equal(covered, 0);
    for (const [number, title, length, width] of [segments[0], segments.at(-1), segments[5]]) {
        await page.focus(`[data-segment="${number}"]`);
        await page.keyboard.press("Enter");
        assert.equal(await shown(page), String(number));
        assert.equal(single(await datum(page, "length")), single(length));
        assert.equal(single(await datum(page, "width")), single(width));
        const label = await page.getAttribute(`[data-segment="${number}"]`, "aria-label");
        const visible = title.replace(/[\u0000-\u001f]/g, (c) => String.fromCharCode(0x2400 + c.charCodeAt(0))).replace("\x7f", "\u2421");
        assert.ok(label.startsWith(visible ? `segment ${number}, ${visible}` : `segment ${number}`), label);
    }
    await page.click(`[data-segment="${segments[1][0]}"]`);
    assert.equal(await shown(page), String(segments[1][0]));
}

async function seriesAreTrue(page, { series, factor, last_flow: last }) {
    const [, , greatest] = series["flow_value,1,1"];
    const shownGreatest = () => page.$eval('[data-series="flow_value,1,1"] td:nth-child(7)', (cell) => Number(cell.dataset.value));
    assert.equal(single(await shownGreatest()), single(greatest * factor));
    if (await page.isVisible("#factors")) await page.uncheck("#factors");
    while (await page.isVisible("#series-more")) await page.click("#series-more");
    const list = await page.$$eval("[data-series]", (rows) => rows.map((row) => [row.dataset.series,
        row.children[2].textContent, ...[4, 6].map((i) => row.children[i].dataset.value)]));
    for (const [key, [count, least, most]] of Object.entries(series)) {
        const [, pairs, low, high] = list.find(([one]) => one === key);
        assert.equal(pairs.replace(/\D/g, ""), String(count), key);
        assert.deepEqual([low, high].map(Number).map(single), [least, most].map(single), key);
    }
    await page.focus("#plot");
    await page.keyboard.press("End");
    const legend = await page.textContent(".u-legend");
    const value = Number(/(-?[\d.]+(?:e-?\d+)?) (?:m3\/s|as stored)$/.exec(legend)?.[1] ?? NaN);
    assert.equal(single(value), single(last), legend);
}

async function keepsNobodyOut(page, name) {
    await page.$$eval("details", (all) => all.forEach((one) => { one.open = true; }));
    await page.evaluate(axe);
    assert.deepEqual(await barriers(page), []);
    await page.screenshot({ path: join(folder, `${name}-light.png`) });
    await page.emulateMedia({ colorScheme: "dark" });
    assert.deepEqual(await barriers(page, ["color-contrast"]), []);
    await page.screenshot({ path: join(folder, `${name}-dark.png`) });
    for (const [width, height] of [[360, 740], [640, 400]]) { // a telephone; a window at 200 %
        await page.setViewportSize({ width, height });
        await page.waitForFunction(() => document.documentElement.scrollWidth <= innerWidth);
        await page.screenshot({ path: join(folder, `${name}-${width}.png`), fullPage: true });
    }
}

for (const name of ["estuary", "lake", "hostile", "01022500", "01547700"]) {
    test(`${name}: the page shows what the database has, to everybody`, async (t) => {
        if (!expected[name]) return t.skip("its record is not here");
        await open(name, async (page) => {
            await mapIsWhole(page, expected[name]);
            await seriesAreTrue(page, expected[name]);
            if (name === "01022500") {
                assert.equal(await page.textContent('[data-series="flow_value,1,1"] td:nth-child(9)'), "1");
                assert.match(await page.textContent("#plot-note"), /1 gap, left open/);
            }
            await keepsNobodyOut(page, name);
        });
    });
}

test("solids have a flow, too; segments stand where the modeller puts them, and others in line with them", async () => {
    await open("lake", async (page) => {
        assert.match(await page.getAttribute('[data-path="3,1,1"]', "aria-label"), /segment 1 to segment 13, 3 m3\/s on average$/);
        const at = new Map(await page.$$eval(".segment", (all) => all.map((one) => [Number(one.firstChild.dataset.segment),
            /\((\S+) (\S+)\)/.exec(one.getAttribute("transform")).slice(1).map(Number)])));
        const { places } = expected.lake;
        for (const [p, px, py] of places) {
            for (const [q, qx, qy] of places) {
                const [dx, dy] = [0, 1].map((axis) => Math.sign(Math.round(at.get(p)[axis] - at.get(q)[axis])));
                assert.deepEqual([dx, dy], [Math.sign(px - qx), Math.sign(qy - py)], `${p} and ${q}`);
            }
        }
        for (const without of [11, 12]) assert.ok(at.get(without)[0] < at.get(without - 1)[0] - 112, String(without));
    });
});

test("each finding leads to its place", async () => {
    await open("hostile", async (page) => {
        for (const level of ["error", "warning", "note"]) {
            await page.click(`#levels a:has-text("${level}")`);
            assert.equal(await page.evaluate(() => document.activeElement.closest("details[open]").dataset.level), level);
        }
        const links = page.locator("[data-finding] a");
        const count = await links.count();
        const kinds = new Set();
        for (let i = 0; i < count; ++i) {
            const link = links.nth(i);
            if (!await link.isVisible()) await page.$$eval("details", (all) => all.forEach((one) => { one.open = true; }));
            const [table, a, b, c, day] = (await link.getAttribute("href")).slice(1).split(",");
            await link.click();
            kinds.add(table);
            const top = await page.evaluate(() => document.activeElement.getBoundingClientRect().top);
            assert.ok(top > -1 && top < 800, `${table} is out of sight at ${top}`);
            if (table === "segment") assert.equal(await shown(page), a);
            else if (table === "initial_condition") assert.equal(await shown(page), b);
            else if (table === "boundary") assert.equal(await shown(page), "1");
            else if (table === "flow_path" && !(b === "2" && c === "1")) {
                assert.equal(await page.locator(`#panel [data-shown-path="${a},${b},${c}"]`).count(), 1);
            } else if (table === "flow_value") {
                assert.equal(await page.isChecked(`[data-series="flow_value,${a},${b}"] input`), true);
                assert.equal(Number(day), expected.hostile.days[c - 1][0]);
                assert.match(await page.textContent("#plot-note"), new RegExp(`\\(day ${day}\\)`));
            } else assert.notEqual(await page.evaluate(() => document.activeElement.id), "", table);
        }
        for (const table of ["segment", "flow_path", "flow_value", "initial_condition"]) assert.ok(kinds.has(table), table);
    });
});

test("the map zooms, pans, is searched and walked through", async () => {
    await open("estuary", async (page) => {
        const place = () => page.$eval("svg.map > g", (world) => world.getAttribute("transform"));
        const first = await place();
        const seen = () => page.$eval('[data-segment="30"]', (node) => getComputedStyle(node.parentElement).opacity);
        assert.equal(await seen(), "0"); // until asked for
        await page.click("#zoom-in");
        assert.notEqual(await place(), first);
        await page.click("#zoom-all");
        assert.equal(await place(), first);
        const box = await page.locator(".canvas").boundingBox();
        await page.mouse.move(box.x + 20, box.y + 20);
        await page.mouse.down();
        await page.mouse.move(box.x + 60, box.y + 50, { steps: 3 });
        await page.mouse.up();
        assert.notEqual(await place(), first);
        for (const [words, segment] of [["29", "29"], ["channel", "5"], ["channel", "6"], ["moor", "3"], ["segment 14", "14"]]) {
            await page.fill("#search", words);
            await page.press("#search", "Enter");
            assert.equal(await shown(page), segment);
        }
        await page.focus('[data-segment="1"]');
        for (const key of ["ArrowRight", "Enter"]) await page.keyboard.press(key);
        assert.equal(await shown(page), "2");
        await page.selectOption("#colour", { label: "volume" });
        assert.match(await page.textContent("#legend-scale"), /volume .*94\.5 million m3/);
        await page.uncheck("#bed");
        assert.equal(await seen(), "0");
        await page.focus('[data-segment="14"]');
        await page.keyboard.press("ArrowDown");
        assert.equal(await page.isChecked("#bed"), true);
        assert.notEqual(await seen(), "0");
    });
});

test("series are laid over each other, zoomed, filtered, sorted and saved", async () => {
    await open("estuary", async (page) => {
        await page.check('[data-series="flow_value,1,2"] input');
        await page.check('[data-series="exchange_value,1,1"] input');
        await page.check('[data-series="exchange_value,1,3"] input');
        assert.equal(await page.locator(".u-series").count(), 5);
        await page.focus("#plot");
        for (const key of ["+", "+", "ArrowRight"]) await page.keyboard.press(key);
        assert.match(await page.textContent(".u-legend"), /2023-0[4-8]-.*≈ \d/s); // the middle of the year, between two months
        await page.click('#series-kinds button:has-text("load")');
        await page.click('.sort:has-text("greatest")');
        assert.match(await page.evaluate(() => document.activeElement.textContent), /greatest/);
        const greatest = await page.$$eval("[data-series] td:nth-child(7)", (all) => all.map((one) => Number(one.dataset.value)));
        assert.equal(greatest.length, 9);
        assert.deepEqual(greatest, [...greatest].sort((a, b) => a - b));
        const [download] = await Promise.all([page.waitForEvent("download"), page.click('[data-series="load_value,1,1"] button')]);
        const text = readFileSync(await download.path(), "utf8").split("\r\n");
        assert.equal(text.length, 1 + 366 + 1);
        assert.match(text[0], /^date,day,"Ammonia nitrogen, load into segment 6 \(kg\/day\)"$/);
        assert.match(text[365], /^2023-12-31,364,/);
    });
});

test("what changed is told, marked and drawn", async () => {
    await open("changed", async (page) => {
        assert.match(await page.textContent("#against"), /width/);
        assert.deepEqual(await page.$$eval(".segment.changed .node", (all) => all.map((one) => one.dataset.segment)), ["9"]);
        assert.match(await page.textContent(".u-legend"), /Alder River inflow \(m3\/s\) \(before\)/);
    });
    await open("same", async (page) => { // but for the digits that an input file has not
        assert.match(await page.textContent("#against"), /The two models are the same/);
    });
});

test("constants of the tables; a page from an input file; one file that names what may run", async () => {
    await open("estuary", async (page) => {
        const values = await page.$$eval('[id^="row-constant,"]', (all) => all.map((row) => row.querySelectorAll("[data-value]")[2].dataset.value));
        assert.deepEqual(values.map(Number).map(single), expected.estuary.constants.map(([value]) => single(value)));
        await page.pdf({ path: join(folder, "estuary.pdf"), format: "A4" });
        await page.setViewportSize({ width: 703, height: 1016 }); // such a sheet
        await page.emulateMedia({ media: "print" });
        await page.evaluate(() => dispatchEvent(new Event("beforeprint")));
        const cut = await page.$$eval(".segment", (all) => all.filter((one) => {
            const [box, map] = [one, one.closest("svg")].map((element) => element.getBoundingClientRect());
            return box.left < map.left || box.right > map.right || box.top < map.top || box.bottom > map.bottom;
        }).length);
        assert.equal(cut, 0);
        assert.ok((await page.locator("#plot").boundingBox()).y < (await page.locator("#panel").boundingBox()).y);
    });
    await open("input_file", async (page) => {
        assert.equal((await attributes(page, "data-path")).length, expected.estuary.paths.length);
    });
    await open("cut", async (page) => {
        assert.ok(await page.locator('[data-finding="V110"]').count() > 0);
    });
    const text = readFileSync(join(folder, "estuary.html"), "utf8");
    assert.match(text, /default-src 'none'; script-src 'sha256-[^']+'; style-src 'sha256-[^']+'/);
    assert.ok(statSync(join(folder, "estuary.html")).size <= 600_000);
    execFileSync(process.env.VELM, ["report", join(folder, "estuary.db"), join(folder, "again.html"), "--quiet"],
        { env: { ...process.env, SOURCE_DATE_EPOCH: "1700000000" } });
    assert.equal(readFileSync(join(folder, "again.html"), "utf8"), text);
});
