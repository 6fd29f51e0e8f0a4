// The page: shows what its event stream tells. Texts from cells become text, never markup.
"use strict";

const $ = (id) => document.getElementById(id);
const make = (tag, className = "", text = "") => {
  const element = document.createElement(tag);
  element.className = className;
  element.textContent = text;
  return element;
};
// Writing what is there already would have the browser lay it out again.
const put = (element, text) => {
  if (element.textContent !== text) element.textContent = text;
};
const inOrder = new Intl.Collator("en", { numeric: true }).compare;

// What is shown

let cells = new Map(); // by name: what the stream tells of it, its age, and its elements
let shown = { cell: "", tag: "" };
let tags = []; // of the cell that is shown: name, unit, reading and elements
let tagIndex = new Map();
let pending = new Map(); // readings that wait for the next frame, by index
let told = false; // the cells have been told before

// Times

const dayOf = new Intl.DateTimeFormat("sv"); // 2026-11-22
const clock = new Intl.DateTimeFormat("en-GB", { timeStyle: "medium" });
let lastTime = { at: NaN, text: "" };
function timeText(at) {
  if (at <= 0) return "";
  if (lastTime.at !== at) {
    const date = new Date(at);
    const today = dayOf.format(date) === dayOf.format(new Date());
    lastTime = { at, text: today ? clock.format(date) : dayOf.format(date) };
  }
  return lastTime.text;
}

// A time of yesterday has a date.
let today = dayOf.format(new Date());
function noticeMidnight() {
  const now = dayOf.format(new Date());
  if (now === today) return;
  today = now;
  lastTime = { at: NaN, text: "" };
  for (const tag of tags) put(tag.since, timeText(tag.at));
}

function ageText(milliseconds) {
  const seconds = Math.floor(milliseconds / 1000);
  if (seconds < 120) return `${seconds} s`;
  if (seconds < 7200) return `${Math.floor(seconds / 60)} min`;
  return `${Math.floor(seconds / 3600)} h`;
}
const isOld = (cell) => cell.age !== null && cell.age !== undefined && cell.age > 10000;
function readText(cell) {
  if (cell.age === null || cell.age === undefined) return "not read yet";
  return isOld(cell) ? `read ${ageText(cell.age)} ago` : "read just now";
}

// The stream

let stream = null;
let retry = 0;
let heardAt = 0; // ages come each second, so silence tells that the link is gone
function connect() {
  clearTimeout(retry);
  stream?.close();
  const address = "events?cell=" + encodeURIComponent(shown.cell);
  stream = new EventSource(address);
  stream.onopen = () => {
    heardAt = performance.now();
    showLink("live", "live", "");
  };
  stream.onerror = () => {
    const refused = stream.readyState === EventSource.CLOSED;
    showLink("lost", "not connected", "No connection to the gateway. What is shown is old.");
    if (refused) askWhy(address);
  };
  const on = (name, take) => {
    const mine = stream;
    stream.addEventListener(name, (event) => {
      if (mine !== stream) return;
      heardAt = performance.now();
      take(JSON.parse(event.data));
    });
  };
  on("cells", takeCells);
  on("ages", takeAges);
  on("tags", takeTags);
  on("values", takeValues);
}

// A stream does not tell why it was refused.
async function askWhy(address) {
  const end = new AbortController();
  try {
    const answer = await fetch(address, { signal: end.signal });
    if (answer.status === 401) return location.reload();
    if (!answer.ok) showLink("lost", "not connected", (await answer.text()).trim());
  } catch {
    // The banner tells already that there is no connection.
  }
  end.abort();
  retry = setTimeout(connect, 5000);
}

function noticeSilence() {
  if (document.body.dataset.link !== "live" || performance.now() - heardAt < 4000) return;
  showLink("lost", "not connected", "Nothing comes from the gateway. What is shown is old.");
  connect();
}

function showLink(state, word, text) {
  document.body.dataset.link = state;
  put($("link"), word);
  put($("banner"), text);
  $("banner").hidden = text === "";
}

// All cells

function takeCells(all) {
  put($("plant"), all.plant);
  document.title = all.plant + " · orif";
  const news = [];
  const now = new Map();
  for (const cell of all.cells) {
    const before = cells.get(cell.name);
    const same = before && before.state === cell.state && before.alarm === cell.alarm;
    if (told && !same) {
      news.push(`${cell.name} ${cell.state} ${cell.reason} ${cell.alarm}`.trim());
    }
    now.set(cell.name, { ...before, ...cell });
  }
  for (const [name, cell] of cells) if (!now.has(name)) cell.item?.remove();
  cells = now;
  told = true;
  if (news.length > 0 && news.length < 5) {
    $("news").append(...news.map((text) => make("p", "", text)));
    while ($("news").childElementCount > 10) $("news").firstChild.remove();
  }
  const names = [...cells.keys()].sort(inOrder);
  names.forEach((name, place) => {
    const cell = cells.get(name);
    cell.item ??= makeItem(name);
    if ($("cells").children[place] !== cell.item) {
      $("cells").insertBefore(cell.item, $("cells").children[place] ?? null);
    }
  });
  // A single cell needs no choice.
  if (cells.size === 1 && !shown.cell) go({ cell: names[0] });
  showCells();
}

function takeAges(ages) {
  // In the order in which the cells were told, as Map keeps it.
  let place = 0;
  for (const cell of cells.values()) cell.age = ages[place++];
  showCells();
}

function makeItem(name) {
  const item = make("li");
  const link = make("a");
  link.href = "#" + new URLSearchParams({ cell: name });
  link.append(make("span", "dot"), make("span", "name", name), make("span", "word"), make("span", "note"));
  item.append(link);
  return item;
}

function noteOf(cell) {
  const host = cell.host + ": "; // the reasons of some components begin with it
  if (cell.state !== "up") {
    return (cell.reason.startsWith(host) ? cell.reason.slice(host.length) : cell.reason) || readText(cell);
  }
  if (cell.alarms > 0) return (cell.alarms > 1 ? `${cell.alarms} alarms: ` : "") + cell.alarm;
  return isOld(cell) ? readText(cell) : `${cell.tags} values`;
}

function showCells() {
  const wanted = $("find-cell").value.trim().toLowerCase();
  const counts = {};
  const links = []; // that are visible
  let alarmed = 0;
  for (const cell of cells.values()) {
    counts[cell.state] = (counts[cell.state] ?? 0) + 1;
    if (cell.alarms > 0) ++alarmed;
    const [link] = cell.item.children;
    const old = cell.state === "up" && isOld(cell);
    const alarm = cell.state === "up" && cell.alarms > 0;
    const names = [cell.state, alarm ? "alarmed" : "", old ? "old" : ""].filter(Boolean).join(" ");
    if (link.className !== names) link.className = names;
    if (cell.name !== shown.cell) link.removeAttribute("aria-current");
    else if (!link.hasAttribute("aria-current")) link.setAttribute("aria-current", "page");
    put(link.children[2], cell.state);
    put(link.children[3], noteOf(cell));
    const trouble = cell.state !== "up" || alarm || old;
    cell.item.hidden =
      !cell.name.toLowerCase().includes(wanted) || ($("troubled").checked && !trouble);
    if (!cell.item.hidden) links.push(link);
  }
  const stop = links.find((link) => link === document.activeElement) ?? links.find((link) => link.ariaCurrent) ?? links[0];
  for (const link of links) if (link.tabIndex !== (link === stop ? 0 : -1)) link.tabIndex = link === stop ? 0 : -1;
  $("no-cells").hidden = links.length > 0 || cells.size === 0;
  document.body.toggleAttribute("data-single", isSingle());
  const down = Object.entries(counts).filter(([state]) => state !== "up");
  const parts = down.map(([state, count]) => make("span", state, `${count} ${state}`));
  if (alarmed > 0) parts.push(make("span", "alarm", `${alarmed} with alarms`));
  if (cells.size > 1) parts.unshift(make("span", "", `${counts.up ?? 0} of ${cells.size} cells up`));
  const said = parts.map((part) => part.textContent).join();
  if ($("summary").dataset.said !== said) {
    $("summary").dataset.said = said;
    $("summary").replaceChildren(...parts);
  }
  showHead();
}

// Then there is nothing to choose.
const isSingle = () => cells.size === 1 && (!shown.cell || cells.has(shown.cell));

function showHead() {
  const cell = cells.get(shown.cell);
  put($("name"), shown.cell);
  put($("state"), cell ? cell.state : told ? "no such cell" : "");
  $("state").className = cell?.state ?? "";
  put($("about"), cell ? [cell.host, readText(cell)].filter((part) => part && part !== cell.name).join(" · ") : "");
  put($("reason"), cell && cell.state !== "up" ? cell.reason : "");
}

// One cell

function takeTags(all) {
  if (all.cell !== shown.cell) return;
  pending.clear();
  tags = (all.tags ?? []).map(([name, unit], index) => makeTag(name, unit, index));
  tagIndex = new Map(tags.map((tag, index) => [tag.name, index]));
  $("tags").replaceChildren(...tags.map((tag) => tag.row));
  const none = all.tags === null ? "The gateway has no such cell." : "Waiting for the first refresh.";
  put($("waiting"), tags.length > 0 ? "" : none);
  filterTags();
  showDetail();
}

// The layout of rows is none of a table, so their roles are said.
function makeTag(name, unit, index) {
  const row = make("tr");
  const head = make("th");
  const button = make("button", "", name);
  const [value, unitCell, quality, since] = ["value", "unit", "quality", "since"].map((each) => make("td", each));
  row.setAttribute("role", "row");
  head.setAttribute("role", "rowheader");
  for (const cell of [value, unitCell, quality, since]) cell.setAttribute("role", "cell");
  button.type = "button";
  button.tabIndex = index === 0 ? 0 : -1;
  unitCell.textContent = unit;
  head.append(button);
  row.append(head, value, unitCell, quality, since);
  return { name, unit, row, button, value, quality, since, text: "", kind: "none", state: "", reason: "", at: 0 };
}

function takeValues(all) {
  if (pending.size === 0) requestAnimationFrame(showValues);
  for (const value of all) pending.set(value[0], value);
}

function showValues() {
  let alarms = false;
  for (const [index, text, kind, state, at, reason] of pending.values()) {
    const tag = tags[index];
    if (!tag) continue;
    Object.assign(tag, { text, kind, state, at, reason });
    put(tag.value, text);
    put(tag.quality, state);
    put(tag.since, timeText(at));
    if (tag.row.title !== reason) tag.row.title = reason;
    const names = (state === "good" ? "" : state) + (tag.name === shown.tag ? " chosen" : "");
    if (tag.row.className !== names) tag.row.className = names;
    if (tag.name.startsWith("ALM[")) alarms = true;
    if (tag.name === shown.tag) showReading(tag);
  }
  pending.clear();
  if (alarms) showAlarms();
}

function filterTags() {
  const wanted = $("find-tag").value.trim().toLowerCase();
  let count = 0;
  let first = null;
  for (const tag of tags) {
    tag.row.hidden = !tag.name.toLowerCase().includes(wanted);
    tag.button.tabIndex = -1;
    if (!tag.row.hidden) {
      ++count;
      first ??= tag;
    }
  }
  if (first) first.button.tabIndex = 0;
  put($("found"), tags.length === 0 ? "" : wanted ? `${count} of ${tags.length} values` : `${tags.length} values`);
}

// Alarms

function showAlarms() {
  const entries = new Map();
  for (const tag of tags) {
    const parts = /^(ALM\[([EP]?)\d+\])\.?(.*)$/.exec(tag.name);
    if (!parts) continue;
    const entry = entries.get(parts[1]) ?? { list: parts[2], there: false };
    entry[parts[3]] = tag.kind === "none" || tag.state === "refused" ? "" : tag.text;
    if (tag.kind !== "none" && tag.state === "good") entry.there = true;
    entries.set(parts[1], entry);
  }
  const lists = { "": "active", E: "history", P: "password" };
  const there = [...entries.values()].filter((entry) => entry.there);
  const items = there.map((entry) => {
    const item = make("li", lists[entry.list]);
    const text = entry.message || `alarm ${entry.id ?? ""} ${entry.number ?? ""}`;
    const about = [entry.severity_text, entry.time, entry.list ? lists[entry.list] : ""];
    item.append(make("span", "text", text), make("span", "quiet", about.filter(Boolean).join(" · ")));
    if (entry.cause) item.append(make("span", "quiet text", entry.cause));
    return item;
  });
  const active = there.some((entry) => entry.list === "");
  $("alarms").hidden = entries.size === 0;
  $("alarms").classList.toggle("some", active);
  if (!active) items.unshift(make("li", "quiet", "No active alarm."));
  $("alarm-list").replaceChildren(...items);
}

// The last hour of a value

let chart = null;
let plotted = "";
let history = null;

function showDetail() {
  const tag = tags[tagIndex.get(shown.tag)];
  $("detail").hidden = !tag;
  for (const each of tags) each.row.classList.toggle("chosen", each === tag);
  if (!tag) {
    plotted = "";
    return;
  }
  put($("detail-name"), tag.name);
  showReading(tag);
  if (plotted !== shown.cell + "\n" + tag.name) {
    plotted = shown.cell + "\n" + tag.name;
    history = null;
    chart?.destroy();
    chart = null;
    put($("figures"), "");
    fetchHistory();
  }
}

function showReading(tag) {
  $("detail-value").replaceChildren(tag.text + " ", make("span", "unit", tag.unit));
  put($("detail-reason"), tag.reason);
  const plot = tag.kind === "number" || tag.kind === "bit" || tag.state !== "good";
  $("figure").hidden = $("figures").hidden = !plot;
}

async function fetchHistory() {
  const wanted = plotted;
  if (wanted === "") return;
  try {
    const answer = await fetch("history?" + new URLSearchParams(shown));
    if (!answer.ok || wanted !== plotted) return;
    history = await answer.json();
  } catch {
    return; // the stream's banner tells
  }
  if (wanted === plotted) showPlot();
}

const color = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();
const brief = (number) => Number(number.toPrecision(7)).toString();

function showPlot() {
  const tag = tags[tagIndex.get(shown.tag)];
  if (!tag || $("figure").hidden) return;
  const minutes = (place) => ((place - history.last.length + 1) * history.step) / 60;
  const points = (values) => values.map((y, place) => ({ x: minutes(place), y }));
  const number = (y) => y !== null;
  const least = history.least.filter(number);
  const alone = history.last.map((y, i, all) => (y !== null && all[i - 1] == null && all[i + 1] == null ? 2 : 0));
  const line = color("--accent");
  const bit = tag.kind === "bit";
  const options = plotOptions(bit);
  const data = {
    datasets: [
      { label: "last", data: points(history.last), borderColor: line, borderWidth: 2, pointRadius: alone, pointBackgroundColor: line, stepped: bit && "before" },
      { label: "greatest", data: points(history.greatest), borderWidth: 0, pointRadius: 0, backgroundColor: line + "38", fill: "+1" },
      { label: "least", data: points(history.least), borderWidth: 0, pointRadius: 0 },
    ],
  };
  for (const set of data.datasets) set.pointHitRadius = 0;
  if (!chart) {
    chart = new Chart($("chart"), { type: "line", data, options });
  } else {
    chart.data = data;
    chart.options = options;
    chart.update("none");
  }
  const last = history.last.filter(number);
  put(
    $("figures"),
    least.length === 0
      ? "Nothing was read in the last hour."
      : `Last hour: least ${brief(Math.min(...least))}, greatest ${brief(Math.max(...history.greatest.filter(number)))}, ` +
          `last ${brief(last.length ? last[last.length - 1] : NaN)}${tag.unit && " " + tag.unit}`,
  );
  $("chart").setAttribute("aria-label", `Plot of the last hour of ${tag.name}`);
}

function plotOptions(bit) {
  const axis = { color: color("--quiet"), font: { size: 12 }, maxRotation: 0 };
  const grid = { color: color("--line"), drawBorder: false, drawTicks: false };
  return {
    animation: false,
    responsive: true,
    maintainAspectRatio: false,
    normalized: true,
    interaction: { mode: "index", intersect: false },
    plugins: {
      legend: { display: false },
      tooltip: {
        displayColors: false,
        callbacks: {
          title: ([item]) => (item.parsed.x === 0 ? "now" : `${-item.parsed.x} min ago`),
          label: (item) => `${item.dataset.label} ${brief(item.parsed.y)}`,
        },
      },
    },
    scales: {
      x: {
        type: "linear", min: -60, max: 0, grid: { ...grid, display: false },
        ticks: { ...axis, padding: 6, align: "inner", stepSize: 15, callback: (x) => (x === 0 ? "now" : `${-x} min`) },
      },
      y: bit
        ? { grid, min: 0, max: 1, ticks: { ...axis, padding: 6, stepSize: 1, callback: (y) => (y ? "on" : "off") } }
        : { grid, grace: "5%", ticks: { ...axis, padding: 6, maxTicksLimit: 5 } },
    },
  };
}

// Where the user is: "#cell=press1&tag=R%5B1%5D"

function go(to) {
  location.hash = new URLSearchParams(Object.entries(to).filter(([, value]) => value));
}

function arrive() {
  const where = new URLSearchParams(location.hash.slice(1));
  const next = { cell: where.get("cell") ?? "", tag: where.get("tag") ?? "" };
  const another = next.cell !== shown.cell;
  shown = next;
  if (another) {
    tags = [];
    tagIndex = new Map();
    $("tags").replaceChildren();
    $("alarms").hidden = true;
    $("find-tag").value = "";
    put($("waiting"), "Waiting for the first refresh.");
  }
  document.body.dataset.view = shown.cell ? "cell" : "cells";
  $("main").hidden = !shown.cell;
  showCells();
  showDetail();
  if (another) {
    connect();
    if (told) window.scrollTo(0, 0);
    if (told && shown.cell && matchMedia("(max-width: 799px)").matches) $("main").focus();
  }
}

// Users

$("find-cell").addEventListener("input", showCells);
$("troubled").addEventListener("input", showCells);
$("find-tag").addEventListener("input", filterTags);
$("close").addEventListener("click", closeDetail);
$("skip").addEventListener("click", (event) => {
  event.preventDefault(); // the address says what is shown
  (shown.cell ? $("main") : $("find-cell")).focus();
});
$("tags").addEventListener("click", (event) => {
  const row = event.target.closest("tr");
  const tag = tags.find((each) => each.row === row);
  if (tag) go({ cell: shown.cell, tag: tag.name === shown.tag ? "" : tag.name });
});

function closeDetail() {
  const tag = tags[tagIndex.get(shown.tag)];
  go({ cell: shown.cell });
  tag?.button.focus({ preventScroll: true });
}

// One stop of the tabulator for all values, or all cells; the arrows go from one to the next.
function moveIn(list, focused, key) {
  const step = { ArrowDown: 1, ArrowUp: -1, PageDown: 10, PageUp: -10, Home: -Infinity, End: Infinity }[key];
  if (!step || !list.length) return false;
  const to = Math.max(0, Math.min(list.length - 1, list.indexOf(focused) + step));
  focused.tabIndex = -1;
  list[to].tabIndex = 0;
  list[to].focus();
  return true;
}
document.addEventListener("keydown", (event) => {
  const at = document.activeElement;
  const typing = at instanceof HTMLInputElement && at.type === "search";
  let done = true;
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  if (event.key === "Escape" && typing && at.value) {
    return; // clears the field
  } else if (event.key === "Escape" && shown.tag) {
    closeDetail();
  } else if (event.key === "Escape" && shown.cell && !isSingle()) {
    const cell = cells.get(shown.cell);
    go({});
    cell?.item.firstChild.focus();
  } else if (event.key === "/" && !typing) {
    $(shown.cell ? "find-tag" : "find-cell").focus();
  } else if ($("tags").contains(at)) {
    done = moveIn(tags.filter((tag) => !tag.row.hidden).map((tag) => tag.button), at, event.key);
  } else if ($("cells").contains(at)) {
    done = moveIn([...$("cells").querySelectorAll("li:not([hidden]) a")], at, event.key);
  } else {
    done = false;
  }
  if (done) event.preventDefault();
});

window.addEventListener("hashchange", arrive);
matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => history && showPlot());
setInterval(fetchHistory, 5000);
setInterval(noticeSilence, 1000);
setInterval(noticeMidnight, 60000);
arrive();
if (!stream) connect();
