// What every view uses: the status line, tables, downloads, and settings that live in the page's link.

import { Window } from "../names.js";

export const element = (id) => document.getElementById(id);

export function tell(text, is_error = false) {
  element("status").textContent = text;
  element("status").classList.toggle("error", is_error);
}

/** Lets the page answer what has come in meanwhile. */
export const breath = () => new Promise((resolve) => setTimeout(resolve));

/** Runs what may fail; a failure becomes a sentence on the page. */
export async function attempt(subject, body) {
  try {
    await body();
  } catch (error) {
    tell(subject ? `${subject}: ${error.message}` : error.message, true);
  }
}

/** Rows of name, value, unit ... below a table's caption. */
export function fill(table, rows, head) {
  const { caption } = table;
  const row = (cells, kind) => {
    const tr = document.createElement("tr");
    cells.forEach((text, i) => {
      const cell = document.createElement(i === 0 || kind === "th" ? "th" : "td");
      cell.textContent = text;
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
const value_of = (e) => (e.type === "checkbox" ? e.checked : e.type === "number" || e.name === "channel" ? Number(e.value) : e.value);

/** A view's form as an object; null while a field is out of its range. */
export function settings_of(view) {
  const form = element(view).querySelector("form");
  if (!form) return {};
  if (!form.reportValidity()) return null;
  return Object.fromEntries(fields(form).map((e) => [e.name, value_of(e)]));
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
    if (field?.type === "checkbox") field.checked = value === "true";
    else if (field) field.value = value;
    if (field && (!field.value || !field.checkValidity())) field.value = field.first; // is no value of the field
  }
  return element(view)?.matches("[role=tabpanel]") ? view : "spectrum";
}
