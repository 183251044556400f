// The page: views behind tabs, settings in the link.

import * as calibration from "./calibration_view.js";
import { ready } from "./client.js";
import * as filters from "./filters_view.js";
import { attempt, element, fill_window_lists, read_link, tell, write_link } from "./page.js";
import * as spectrum from "./spectrum_view.js";
import * as windows from "./windows_view.js";

const views = { spectrum, windows, filters, calibration };
const tabs = [...document.querySelectorAll("[role=tab]")];

function choose(view) {
  for (const tab of tabs) {
    const is_chosen = tab.id === `tab-${view}`;
    tab.setAttribute("aria-selected", is_chosen);
    tab.tabIndex = is_chosen ? 0 : -1;
    element(tab.id.slice(4)).hidden = !is_chosen;
  }
  write_link(view);
  return views[view].update();
}

/** A recording or sweeps, to the view that takes them. */
function take_drops() {
  const mark = (is_on) => document.body.classList.toggle("dropping", is_on);
  document.ondragover = (event) => (event.preventDefault(), mark(true));
  document.ondragleave = () => mark(false);
  document.ondrop = (event) => {
    event.preventDefault();
    mark(false);
    const view = element("calibration").hidden ? "spectrum" : "calibration";
    if (view === "spectrum" && element("spectrum").hidden) choose(view);
    if (event.dataTransfer.files[0]) views[view].open([...event.dataTransfer.files]);
  };
}

function along_tabs(event) {
  const by = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
  if (!by) return;
  const next = tabs[(tabs.indexOf(event.target) + by + tabs.length) % tabs.length];
  next.focus();
  next.click();
}

await attempt(async () => {
  fill_window_lists();
  const chosen = read_link();
  await ready;
  for (const tab of tabs) {
    tab.onclick = () => choose(tab.id.slice(4));
    tab.onkeydown = along_tabs;
  }
  for (const form of document.forms) {
    const view = form.closest("section").id;
    form.onsubmit = (event) => event.preventDefault();
    form.onchange = () => (write_link(view), views[view].update());
  }
  onhashchange = () => choose(read_link());
  for (const view of Object.values(views)) view.start?.();
  take_drops();
  tell("");
  await spectrum.open_example();
  await choose(chosen);
  document.body.dataset.ready = "yes";
});
