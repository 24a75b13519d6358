// Bundles the page into one template and, as the C++ source that carries it, its bytes.
//
//     node build.mjs TEMPLATE.html SOURCE.cpp LICENCES.txt
//
// The template keeps the places {{title}}, {{data}} and {{numbers}} for the report. Script and style are named by their
// hashes in the page's content security policy, so nothing else can run.
import { createHash } from "node:crypto";
import { readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const file = (...names) => join(here, ...names);
const [, , templateFile, sourceFile, licencesFile] = process.argv;

async function bundle(entry) {
    const result = await build({ entryPoints: [file(entry)], bundle: true, minify: true, write: false, legalComments: "none",
        format: "iife", target: ["chrome100", "firefox100", "safari15"], charset: "utf8", metafile: true, absWorkingDir: here });
    return { text: result.outputFiles[0].text.trim(), inputs: Object.keys(result.metafile.inputs) };
}

const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

/** Name, version and licence of every package that is in the bundle, or in another that is. */
function licences(inputs) {
    const read = (name) => JSON.parse(readFileSync(file("node_modules", name, "package.json")));
    const names = new Set(inputs.map((input) => /node_modules\/((?:@[^/]+\/)?[^/]+)\//.exec(input)?.[1]).filter(Boolean));
    for (const name of names) Object.keys(read(name).dependencies ?? {}).forEach((other) => names.add(other));
    return [...names].sort().map((name) => {
        const { version, license } = read(name);
        return `${name} ${version} (${license})\n\n${readFileSync(file("node_modules", name, "LICENSE"), "utf8").trim()}\n`;
    }).join("\n");
}

const escaped = (text) => text.replace(/&/g, "&amp;").replace(/</g, "&lt;");

const script = await bundle("main.js");
const style = await bundle("style.css");
if (/<\/script|<!--/i.test(script.text)) throw new Error("the script would end itself");
const policy = `default-src 'none'; script-src ${hash(script.text)}; style-src ${hash(style.text)}; base-uri 'none'; form-action 'none'`;
const licenceText = licences([...script.inputs, ...style.inputs]);
writeFileSync(licencesFile, licenceText);
const parts = { policy, style: style.text, script: script.text, licences: escaped(licenceText) };
const template = readFileSync(file("page.html"), "utf8").replace(/\{\{(\w+)\}\}/g, (place, part) => parts[part] ?? place);
writeFileSync(templateFile, template);

// bytes, not a literal: compilers bound the length of a literal
const bytes = [...Buffer.from(template)].map((byte) => (byte < 128 ? byte : byte - 256));
writeFileSync(sourceFile, `#include <string_view>
namespace velm {
namespace {
constexpr char bytes[] = {${bytes.join(",")}};
}
extern const std::string_view report_page;
const std::string_view report_page{bytes, sizeof bytes};
} // namespace velm
`);
console.log(`script ${script.text.length} characters, style ${style.text.length}, template ${template.length}`);
