// Writes constants.js from dsp.h, and dsp.d.ts from declarations.ts and the rows of the modules in the directory.
// usage: node generate.js DSP_H DIRECTORY

import { readFileSync, writeFileSync } from "node:fs";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";

const [header, directory] = process.argv.slice(2);

const groups = {};
for (const [, group, name, value] of readFileSync(header, "utf8").matchAll(/^ +DSP_([A-Z0-9]+)_(\w+) = (\w+)/gm))
  (groups[group[0] + group.slice(1).toLowerCase()] ??= {})[name] = Number(value);
const constants = Object.entries(groups).map(([group, names]) => `export const ${group} = ${JSON.stringify(names)};\n`);
writeFileSync(`${directory}/constants.js`, constants.join(""));

const written = (name) => import(pathToFileURL(resolve(directory, name)));
const { forms, is_signal, parameters } = await written("calls.js");
const { rows } = await written("routines.js");
const { filters } = await written("streams.js");

const type_of = (type) => (is_signal(type) ? "Samples" : type in groups ? "Choice" : (plain[type] ?? type));
const plain = { integer: "number", count: "number" };
const options = { out: "Out", dx: "Spacing" };

/** The ways to call: parameters that may be left out go by place, or by name among the options. */
function calls_of(signature, taken) {
  const all = parameters(signature);
  const text = ({ name, type, is_optional }) => `${name}${is_optional ? "?" : ""}: ${type_of(type)}`;
  const named = all.filter((p) => p.is_optional).map(text);
  const object = [...(named.length ? [`{ ${named.join("; ")} }`] : []), ...taken.map((name) => options[name])];
  const last = object.length ? [`options?: ${object.join(" & ")}`] : [];
  const least = all.length - named.length;
  return [...named, ""].map((_, i) => [...all.slice(0, least + i).map(text), ...last].join(", "));
}

const declared = rows.flatMap(([form, names, signature = "x: Samples", { type = forms[form].type } = {}]) =>
  names
    .split(" ")
    .flatMap((name) =>
      calls_of(signature, forms[form].options).map((call) => `  ${name}(${call}): ${type ?? "Signal"};\n`),
    ),
);
const classes = filters.map(([name, signature]) => `  ${name}: new (${calls_of(signature, [])[0]}) => Filter;\n`);
const declarations = readFileSync(new URL("declarations.ts", import.meta.url), "utf8")
  .replace("  // The rows of routines.js.\n", () => declared.join(""))
  .replace("  // The filters of streams.js.\n", () => classes.join(""))
  .replace("// The constants of dsp.h.\n", () =>
    Object.keys(groups)
      .map((group) => `export const ${group}: Names;\n`)
      .join(""),
  );
writeFileSync(`${directory}/dsp.d.ts`, declarations);
