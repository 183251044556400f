// What every view uses: the status line, tables, downloads, and settings that live in the page's link.

import { Window } from "../names.js";

export const element = (id) => document.getElementById(id);

export function tell(text, is_error = false) {
  element("status").textContent = text;
  element("status").classList.toggle("error", is_error);
}

/** What a field is called on the page, for sentences that name an option of the programs. */
const label_of = (option, name) => {
  const label = document.querySelector(`[name="${name}"]`)?.labels[0].firstChild.textContent.trim();
  return label ? `“${label}”` : option;
};

/** Runs what may fail; a failure becomes a sentence on the page. */
export async function attempt(body) {
  try {
    await body();
  } catch ({ message }) {
    tell(message.replace(/--([a-z][a-z-]*)( HZ)?/g, label_of), true);
  }
}

/** A value with its unit: 9.000 ms, 48 kHz. */
export function quantity(value, unit, digits) {
  const prefixes = ["n", "µ", "m", "", "k", "M", "G"];
  const k = Math.min(Math.max(Math.floor(Math.log10(value) / 3 + 1e-9), -3), unit === "s" ? 0 : 3);
  const scaled = value / 1000 ** k;
  return `${digits ? scaled.toPrecision(digits) : Number(scaled.toPrecision(6))} ${prefixes[k + 3]}${unit}`;
}

/** Rows of name, value, unit ... below the caption of the table of this name. */
export function fill(id, rows, head) {
  const table = element(id);
  const { caption } = table;
  const row = (cells, kind) => {
    const tr = document.createElement("tr");
    cells.forEach((text, i) => {
      const cell = document.createElement(i === 0 || kind === "th" ? "th" : "td");
      cell.textContent = text;
      if (cell.tagName === "TH") cell.scope = kind === "th" ? "col" : "row";
      if (i > 0 && /^[-−\d.]+$/.test(text)) cell.className = "number";
      tr.append(cell);
    });
    return tr;
  };
  table.replaceChildren(caption, ...(head ? [row(head, "th")] : []), ...rows.map((cells) => row(cells)));
}

export function download(name, blob) {
  const link = document.createElement("a");
  link.href = URL.createObjectURL(blob);
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}

const fields = (form) => [...form.elements].filter((e) => e.name);

function value_of(field) {
  if (field.type === "checkbox") return field.checked;
  return field.type === "number" && field.value !== "" ? Number(field.value) : field.value;
}

/** A view's form as an object; null while a field is out of its range. */
export function settings_of(view) {
  const form = element(view).querySelector("form");
  if (!form) return {};
  if (!form.reportValidity()) return null;
  return Object.fromEntries(fields(form).map((e) => [e.name, value_of(e)]));
}

/** Makes these the choices of a list, whose choice stays where it can; a link may have asked for one of them before. */
export function offer(list, choices) {
  const wanted = [list.value, list.wanted].find((value) => choices.some((choice) => choice.value === value));
  list.replaceChildren(...choices.map(({ text, value }) => new Option(text, value)));
  list.value = wanted ?? choices[0]?.value;
}

export function fill_window_lists() {
  for (const list of document.querySelectorAll("[data-windows]")) {
    const names = Object.keys(Window).filter((name, i, all) => all.findIndex((n) => Window[n] === Window[name]) === i);
    for (const name of names) {
      const chosen = name.toLowerCase() === list.dataset.windows;
      list.add(new Option(name.toLowerCase().replaceAll("_", " "), name.toLowerCase(), chosen, chosen));
    }
  }
}

/** The link that restores a view: #view?name=value&... of what is not as it was at first. */
export function write_link(view) {
  const form = element(view).querySelector("form");
  const changed = form ? fields(form).filter((e) => value_of(e) !== e.first) : [];
  const query = new URLSearchParams(changed.map((e) => [e.name, value_of(e)]));
  history.replaceState(null, "", `#${view}${changed.length ? `?${query}` : ""}`);
}

export function read_link() {
  for (const form of document.forms) for (const e of fields(form)) e.first ??= value_of(e);
  const [view, query] = location.hash.slice(1).split("?");
  const form = element(view)?.querySelector("form");
  for (const [name, value] of new URLSearchParams(query ?? "")) {
    const field = form?.elements.namedItem(name);
    if (!field) continue;
    if (field.type === "checkbox") field.checked = value === "true";
    else [field.value, field.wanted] = [value, value];
    if (!field.value || !field.checkValidity()) field.value = field.first; // is no value of the field
  }
  return element(view)?.matches("[role=tabpanel]") ? view : "spectrum";
}
