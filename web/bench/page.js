// What every view uses: the status line, tables, downloads, and settings that live in the page's link.

import { Window } from "../names.js";

export const element = (id) => document.getElementById(id);

export function tell(text, is_error = false) {
  element("status").textContent = text;
  element("status").classList.toggle("error", is_error);
}

/** What an option of the programs is called on the page. */
function label_of(option, name) {
  const label = document.querySelector(`[name="${name}"]`)?.labels[0].firstChild.textContent.trim();
  return label ? `“${label}”` : option;
}

/** Runs what may fail; a failure becomes a sentence on the page. */
export async function attempt(body) {
  try {
    await body();
  } catch ({ message }) {
    tell(message.replace(/--([a-z][a-z-]*)( HZ)?/g, label_of), true);
  }
}

/** A value with its unit: 9.000 ms, 48 kHz. */
export function quantity(value, unit, digits = 6) {
  const prefixes = [[1e6, "M"], [1e3, "k"], [1, ""], [1e-3, "m"]]; // prettier-ignore
  const [scale, prefix] = prefixes.find(([least]) => value >= least) ?? [1e-6, "µ"];
  const text = (value / scale).toPrecision(digits);
  return `${digits === 6 ? Number(text) : text} ${prefix}${unit}`;
}

/** Rows of name, value, unit ... below the caption of the table of this name. */
export function fill(id, rows, head) {
  const row = (cells, scope) => {
    const tr = document.createElement("tr");
    cells.forEach((text, i) => {
      const is_head = text !== "" && (i === 0 || scope === "col");
      const cell = tr.appendChild(document.createElement(is_head ? "th" : "td"));
      cell.textContent = text;
      if (is_head) cell.scope = scope;
      if (/^[-−\d.]+$/.test(text)) cell.className = "number";
    });
    return tr;
  };
  const heads = head ? [row(head, "col")] : [];
  element(id).replaceChildren(element(id).caption, ...heads, ...rows.map((cells) => row(cells, "row")));
}

export function download(name, blob) {
  const link = Object.assign(document.createElement("a"), { href: URL.createObjectURL(blob), download: name });
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}

const form_of = (view) => element(view)?.querySelector("form");
const fields = (form) => [...form.elements].filter((field) => field.name);

function value_of(field) {
  if (field.type === "checkbox") return field.checked;
  return field.type === "number" && field.value !== "" ? Number(field.value) : field.value;
}

/** A view's form as an object; null while a field is out of its range. */
export function settings_of(view) {
  const form = form_of(view);
  return form.reportValidity() ? Object.fromEntries(fields(form).map((field) => [field.name, value_of(field)])) : null;
}

/** Makes these pairs of text and value the choices of a list; a choice made before, also by a link, stays if it can. */
export function offer(list, choices) {
  const wanted = [list.value, list.wanted].find((value) => choices.some((choice) => choice[1] === value));
  list.replaceChildren(...choices.map(([text, value]) => new Option(text, value)));
  list.value = wanted ?? choices[0]?.[1];
}

export function fill_window_lists() {
  const names = Object.keys(Window).filter((name, i, all) => all.findIndex((n) => Window[n] === Window[name]) === i);
  const choices = names.map((name) => [name.toLowerCase().replaceAll("_", " "), name.toLowerCase()]);
  for (const list of document.querySelectorAll("[data-windows]")) {
    list.wanted = list.dataset.windows;
    offer(list, choices);
  }
}

/** The link that restores a view: #view?name=value&... of what is not as it was at first. */
export function write_link(view) {
  const changed = fields(form_of(view)).filter((field) => value_of(field) !== field.first);
  const query = new URLSearchParams(changed.map((field) => [field.name, value_of(field)]));
  history.replaceState(null, "", `#${view}${changed.length ? `?${query}` : ""}`);
}

export function read_link() {
  for (const form of document.forms) for (const field of fields(form)) field.first ??= value_of(field);
  const [view, query] = location.hash.slice(1).split("?");
  const form = form_of(view);
  for (const [name, value] of new URLSearchParams(query ?? "")) {
    const field = form?.elements.namedItem(name);
    if (!field) continue;
    if (field.type === "checkbox") field.checked = value === "true";
    else [field.value, field.wanted] = [value, value];
    if (!field.value || !field.checkValidity()) field.value = field.first; // is no value of the field
  }
  return form ? view : "spectrum";
}
