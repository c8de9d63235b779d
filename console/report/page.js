"use strict";

const data = JSON.parse(document.getElementById("data").textContent);
// How many are shown before somebody asks for all.
const kMostRows = 100;
const kMostOthers = 20;

/** An element with attributes and children; texts become text nodes, so nothing in them is markup. */
function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name === "onclick") element.addEventListener("click", value);
    else if (value === true) element.setAttribute(name, "");
    else if (value !== false) element.setAttribute(name, value);
  }
  element.append(...children);
  return element;
}
const byId = (id) => document.getElementById(id);
const counted = (count, what) => `${count} ${what}${count === 1 ? "" : "s"}`;
const badWord = (text) => make("span", { class: "bad-word" }, text);

/** A value as the card's own tables show it. */
function textOf(value, column) {
  if (value === null) return "none";
  if (Array.isArray(value)) return value.map(labelText).join(" ");
  if (column.hex) return `0x${value.toString(16)}`;
  return String(value);
}
function labelText(label) {
  return `${label.label} (EXP map ${label.qos_map}, EXP ${label.exp}, TTL ${label.ttl}, flags 0x${label.flags.toString(16)})`;
}

const collator = new Intl.Collator("en", { numeric: true });
const isMac = (text) => /^([0-9a-f]{2}:){5}[0-9a-f]{2}$/.test(text);
/** Numbers by value, texts with their numbers by value, but for MAC addresses; nothing last. */
function compare(a, b) {
  if (a === null || b === null) return (a === null) - (b === null);
  if (typeof a === "number" && typeof b === "number") return a - b;
  const text = (value) => (Array.isArray(value) ? value.map(labelText).join(" ") : String(value));
  if (isMac(text(a)) && isMac(text(b))) return text(a) < text(b) ? -1 : Number(text(a) > text(b));
  return collator.compare(text(a), text(b));
}

// What is searched, and whom each thing belongs to.

const users = new Map(); // by a row's name, "intf 2"
for (const table of data.report.tables) {
  const key = table.columns[0];
  for (const item of table.rows) {
    const name = `${table.row} ${textOf(item.row[key.name], key)}`;
    users.set(name, item.used_by);
    item.text = [name, ...table.columns.map((column) => `${column.name}=${textOf(item.row[column.name], column)}`)]
      .join(" ").toLowerCase();
  }
}
const findings = data.report.findings.map((finding) => ({
  ...finding,
  used_by: users.get(finding.object) ?? [],
  text: Object.values(finding).join(" ").toLowerCase(),
}));
const destinations = data.report.destinations.map((destination) => ({
  ...destination,
  used_by: [destination.id],
  findings: findings.filter((finding) => finding.object === `destination ${destination.id}`),
  text: [`destination ${destination.id} ${destination.kind}`, ...destination.chain, ...destination.packet]
    .join("\n").toLowerCase(),
}));

const fails = (result) => result !== undefined && result !== 0;
/** In words, what somebody has to care for after a refusal. */
function harmOf(refusal, unhindered) {
  const harm = [];
  if (refusal.findings.length > 0) harm.push("leaves something");
  if (refusal.again !== undefined && refusal.again !== unhindered.result) harm.push("fails again");
  if (fails(refusal.destroy) && !fails(unhindered.destroy)) harm.push("cannot be destroyed");
  if (refusal.crash !== undefined) harm.push(refusal.crash);
  return harm;
}
/** The lines that are not logged without the refusal, but for progress. */
function unusualLog(refusal, unhindered) {
  const usual = unhindered.log.map((line) => line.text);
  return refusal.log.filter((line) => {
    const known = usual.indexOf(line.text);
    if (known >= 0) usual.splice(known, 1);
    return known < 0 && line.log < 7;
  });
}
const requests = (data.sweep?.requests ?? []).map(({ swept, alike, last }) => ({
  swept, alike, last,
  refusals: swept.refusals.map((refusal) => ({
    ...refusal,
    harm: harmOf(refusal, swept.unhindered),
    log: unusualLog(refusal, swept.unhindered),
  })),
  text: JSON.stringify([swept.file, swept.line, swept.text, swept.refusals, last]).toLowerCase(),
}));

const filter = { words: [], destination: "" };
const fits = (item) =>
  filter.words.every((word) => item.text.includes(word)) &&
  (filter.destination === "" || item.used_by === undefined || item.used_by.includes(Number(filter.destination)));

/** Shows a list up to a bound, with a button for the rest. */
function bounded(list, items, most, whatever, draw) {
  const shown = list.all ? items : items.slice(0, most);
  draw(shown);
  const showAll = () => {
    list.all = true;
    list.show(items);
  };
  const button = make("button", { type: "button", onclick: showAll }, `Show all ${items.length} ${whatever}`);
  list.more.replaceChildren(...(shown.length < items.length ? [button] : []));
}
const newList = () => ({ all: false, more: make("p", { class: "more" }) });

/** Something to open, filled when it is opened first. */
function folded(id, head, fill) {
  const element = make("details", id === "" ? {} : { id }, make("summary", {}, ...head));
  element.addEventListener("toggle", () => {
    if (element.open && element.childElementCount === 1) element.append(make("div", { class: "inside" }, ...fill()));
  });
  return element;
}

// Findings.

const findingList = newList();
function drawFinding(finding) {
  const entry = (name, text) => [make("dt", {}, name), make("dd", {}, text)];
  return make("article", { class: "finding" },
    make("h3", {}, badWord(`${finding.object}: ${finding.problem}`)),
    make("dl", {}, ...entry("Left by", finding.cause), ...entry("A packet", finding.packet),
      ...entry("Clean up", finding.remedy)));
}
findingList.show = (items) => bounded(findingList, items, kMostOthers, "findings", (shown) => {
  byId("finding-list").replaceChildren(...shown.map(drawFinding), findingList.more);
  if (findings.length === 0) byId("finding-list").append(make("p", {}, "None: the card is clean."));
  else if (items.length === 0) byId("finding-list").append(make("p", {}, "None of the findings fits."));
});

// Destinations.

const destinationList = newList();
function drawDestination(destination) {
  const { id, kind, chain, packet } = destination;
  // Behind the rows stands what becomes of every packet.
  const end = chain.filter((line) => /^(labels on the wire|out through|dropped|to the CPU)/.test(line)).join(", ");
  const story = (lines) => make("ol", { class: "story" }, ...lines.map((line) => make("li", {}, line)));
  const head = [make("strong", {}, `destination ${id}`), make("span", {}, kind), make("span", { class: "muted" }, end)];
  if (destination.findings.length > 0) head.push(badWord(counted(destination.findings.length, "finding")));
  const layers = packet.filter((line) => !chain.includes(line));
  return folded(`destination-${id}`, head, () => [
    make("h4", {}, "What every packet goes through"), story(chain),
    ...(layers.length === 0 ? [] : [make("h4", {}, "One packet, layer by layer"), story(layers)]),
    make("p", { class: "more" },
      make("button", { type: "button", onclick: () => showDestination(id) }, `Show the rows of destination ${id}`)),
  ]);
}
destinationList.show = (items) => bounded(destinationList, items, kMostOthers, "destinations", (shown) => {
  byId("destination-list").replaceChildren(...shown.map(drawDestination), destinationList.more);
  if (items.length === 0) byId("destination-list").append(make("p", {}, destinations.length === 0 ? "None is on the card." : "None of the destinations fits."));
});
function showDestination(id) {
  byId("destination").value = id;
  update();
  byId("tables").scrollIntoView();
  byId("tables-heading").firstElementChild.focus();
}

// Tables.

function drawHead(list) {
  return list.table.columns.map((column, place) => {
    const direction = list.sort?.place === place ? (list.sort.down ? "descending" : "ascending") : false;
    const button = make("button", { type: "button", onclick: () => sortBy(list, place) }, column.name);
    return make("th", { scope: "col", class: list.numbers[place] ? "number" : false, "aria-sort": direction }, button);
  });
}
function sortBy(list, place) {
  list.sort = { place, down: list.sort?.place === place && !list.sort.down };
  list.show(list.table.rows.filter(fits));
  list.head.children[place].firstElementChild.focus();
  byId("shown").textContent =
    `${list.table.name} sorted by ${list.table.columns[place].name}, ${list.sort.down ? "descending" : "ascending"}`;
}
function drawRow(list, item) {
  return make("tr", {}, ...list.table.columns.map((column, place) => {
    const value = item.row[column.name];
    const content = Array.isArray(value)
      ? value.map((label) => make("div", {}, labelText(label))) : [textOf(value, column)];
    return make(place === 0 ? "th" : "td",
      { scope: place === 0 ? "row" : false, class: list.numbers[place] ? "number" : false }, ...content);
  }));
}
function tableList(table) {
  const size = table.size === null ? "" : ` of ${table.size}`;
  const list = { ...newList(), table, sort: null };
  list.numbers = table.columns.map((column) =>
    table.rows.every((item) => typeof item.row[column.name] === "number" && !column.hex));
  const heading = `table-${table.name}-heading`;
  list.head = make("tr");
  list.body = make("tbody");
  const count = make("span", { class: "muted" });
  const caption = make("caption", { class: "hidden" });
  list.section = make("section", { id: `table-${table.name}`, "aria-labelledby": heading },
    make("h3", { id: heading }, make("a", { href: `#table-${table.name}` }, table.name), " ", count),
    make("div", { class: "scroll", role: "region", tabindex: "0", "aria-labelledby": heading },
      make("table", {}, caption, make("thead", {}, list.head), list.body)),
    list.more);
  list.show = (rows) => {
    const sorted = [...rows];
    if (list.sort !== null) {
      const name = table.columns[list.sort.place].name;
      const sign = list.sort.down ? -1 : 1;
      sorted.sort((a, b) => sign * compare(a.row[name], b.row[name]));
    }
    count.textContent = rows.length === table.rows.length
      ? `${table.rows.length}${size} rows` : `${rows.length} of its ${table.rows.length} rows`;
    caption.textContent = `Table ${table.name}, ${count.textContent}`;
    list.section.hidden = rows.length === 0;
    list.head.replaceChildren(...drawHead(list));
    bounded(list, sorted, kMostRows, "rows", (shown) => list.body.replaceChildren(...shown.map((item) => drawRow(list, item))));
  };
  return list;
}
const lists = data.report.tables.filter((table) => table.rows.length > 0).map(tableList);

// Sweep.

function drawRefusal(refusal) {
  const value = (result) => (result === undefined ? "\u2013" : String(result));
  const lines = (texts) => texts.map((text) => make("div", {}, text));
  return make("tr", {},
    make("th", { scope: "row" }, ...lines(refusal.refused.map((call) =>
      `${call.number}. ${call.call} = ${call.result}${call.status ? ` (${call.status})` : ""}`))),
    make("td", { class: "number" }, value(refusal.crash ?? refusal.result)),
    make("td", { class: "number" }, value(refusal.again)),
    make("td", { class: "number" }, value(refusal.destroy)),
    make("td", {}, ...(refusal.harm.length > 0 ? [badWord(refusal.harm.join(", "))] : ["harmless"])),
    make("td", { class: "wide" }, ...lines(refusal.findings.map((finding) => `${finding.object}: ${finding.problem}`)),
      ...lines(refusal.log.map((line) => `log ${line.log}: ${line.text}`))));
}
function drawRequest({ swept, alike, last, refusals }) {
  const bad = refusals.filter((refusal) => refusal.harm.length > 0).length;
  const head = [
    make("span", { class: "muted" }, `${swept.file}:${swept.line}`),
    make("strong", {}, `${swept.text} \u21d2 ${swept.unhindered.crash ?? swept.unhindered.result}`),
    make("span", { class: "muted" }, counted(refusals.length, "refusal")),
  ];
  if (alike > 0) head.push(make("span", { class: "muted" }, `and ${counted(alike, "request")} alike, up to ${last}`));
  if (bad > 0) head.push(badWord(`${bad} to care for`));
  const columns = ["refused", "result", "again", "destroy", "outcome", "what is left, and the log"];
  return folded("", head, () => [refusals.length === 0
    ? make("p", {}, "It makes no call that could be refused.")
    : make("div", { class: "scroll", role: "region", tabindex: "0", "aria-label": `Refusals of ${swept.text}` },
      make("table", {},
        make("caption", { class: "hidden" }, `What becomes of ${swept.text} when a platform call is refused`),
        make("thead", {}, make("tr", {}, ...columns.map((name) => make("th", { scope: "col" }, name)))),
        make("tbody", {}, ...refusals.map(drawRefusal))))]);
}

// All together.

function update() {
  filter.words = byId("search").value.toLowerCase().split(/\s+/).filter((word) => word !== "");
  filter.destination = byId("destination").value;
  const of = (shown, all, what) => (all === 0 ? [] : [`${shown} of ${counted(all, what)}`]);
  const shownFindings = findings.filter(fits);
  const shownDestinations = destinations.filter(fits);
  const shownRequests = requests.filter(fits);
  let rows = 0, allRows = 0;
  for (const list of lists) {
    const shown = list.table.rows.filter(fits);
    rows += shown.length;
    allRows += list.table.rows.length;
    list.show(shown);
  }
  findingList.show(shownFindings);
  destinationList.show(shownDestinations);
  byId("sweep-list").replaceChildren(...shownRequests.map(drawRequest));
  byId("shown").textContent = [
    ...of(rows, allRows, "row"), ...of(shownFindings.length, findings.length, "finding"),
    ...of(shownDestinations.length, destinations.length, "destination"),
    ...of(shownRequests.length, requests.length, "request"),
  ].join(", ");
}

function clearFilters() {
  byId("search").value = "";
  byId("destination").value = "";
  update();
}

/** The whole width of the picture, or its own size with a VRF, where all begins, in sight. */
function fitPicture(whether) {
  const drawing = byId("drawing");
  byId("fit").setAttribute("aria-pressed", drawing.classList.toggle("fit", whether));
  const vrf = [...drawing.querySelectorAll(".node")].find((node) => node.textContent.includes("VRF"));
  if (vrf === undefined) return;
  const middle = (drawing.clientHeight - vrf.getBoundingClientRect().height) / 2;
  drawing.scrollTop += vrf.getBoundingClientRect().top - drawing.getBoundingClientRect().top - middle;
}

/** A link to a destination opens its story. */
function followLink() {
  const id = decodeURIComponent(location.hash.slice(1));
  if (id.startsWith("destination-") && byId(id) === null && destinations.some((one) => `destination-${one.id}` === id)) {
    destinationList.all = true;
    clearFilters();
  }
  const target = byId(id);
  if (target === null) return;
  if (target.tagName === "DETAILS") target.open = true;
  target.scrollIntoView();
}

function begin() {
  const { scenario, until, version, report, sweep } = data;
  document.title = `${scenario} \u2013 report on a line card`;
  byId("title").textContent = scenario;
  byId("made").textContent = `${until > 0 ? `The card after line ${until}` : "The card at the scenario's end"}, ` +
    `made by softcard ${version}. Unit ${report.card.unit}, slot ${report.card.slot}, ` +
    `${counted(report.card.ports, "port")}, ${counted(report.card.lags, "LAG")}.`;
  const kinds = (kind) => destinations.filter((destination) => destination.kind === kind).length;
  const counts = [["Findings", findings.length], ["Destinations", destinations.length], ["VLANs", kinds("VLAN")],
    ["Hosts", kinds("host")], ["MPLS", kinds("MPLS")],
    ["Rows", lists.reduce((sum, list) => sum + list.table.rows.length, 0)]];
  if (sweep !== null) counts.push(["Refusals swept", sweep.tally.refusals]);
  byId("counts").append(...counts.map(([name, count]) =>
    make("div", { class: name === "Findings" && count > 0 ? "bad" : false },
      make("dt", {}, name), make("dd", {}, name === "Findings" && count > 0 ? badWord(String(count)) : String(count)))));
  byId("destination").append(...destinations.map(({ id, kind }) => make("option", { value: id }, `${id} ${kind}`)));
  byId("table-list").append(...lists.map((list) => list.section));
  const empty = report.tables.filter((table) => table.rows.length === 0).map((table) => table.name);
  if (empty.length > 0) byId("empty-tables").textContent = `Without a row: ${empty.join(", ")}.`;
  if (destinations.length === 0) byId("drawing").hidden = report.findings.length === 0;
  if (sweep === null) {
    byId("sweep-summary").textContent = "The report was made without a sweep.";
  } else {
    const { tally } = sweep;
    byId("sweep-summary").textContent =
      "Each request once for every platform call that it makes, with that call refused. Rounds of a loop with the same " +
      `outcome are shown once. ${counted(tally.requests, "request")}, ${counted(tally.refusals, "refusal")}: ` +
      `${tally.leave} leave something, ${tally.fail_again} fail again, ` +
      `${tally.cannot_be_destroyed} cannot be destroyed, ${tally.crash} crash.`;
  }
  byId("search").addEventListener("input", update);
  byId("destination").addEventListener("change", update);
  byId("filters").addEventListener("submit", (event) => event.preventDefault());
  byId("clear").addEventListener("click", clearFilters);
  byId("fit").addEventListener("click", () => fitPicture());
  fitPicture(matchMedia("(min-width: 40rem)").matches); // on less nobody could read it
  addEventListener("hashchange", followLink);
  addEventListener("beforeprint", () => {
    for (const list of [...lists, findingList, destinationList]) list.all = true;
    update();
  });
  update();
  followLink();
}

begin();
