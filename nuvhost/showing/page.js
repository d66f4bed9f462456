"use strict";
(() => {
  const data = JSON.parse(document.getElementById("data").textContent);
  const byId = (id) => document.getElementById(id);
  const NAME = 0, STATE = 1, VALUES = 2, BAD = 3, ERRORS = 4;
  const ROWS_OF_A_PAGE = 50;

  function make(tag, text, attributes = {}) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) element.setAttribute(name, value);
    if (text !== undefined) element.textContent = text;
    return element;
  }
  const isNotGood = (part) => part[STATE] !== "good" && part[STATE] !== "ok";
  function shown(value, [, unit, decimals, isTruth], withUnit) {
    if (value === null) return "\u2013";
    if (isTruth) return value ? "yes" : "no";
    const number = typeof value === "number" && decimals !== null ? value.toFixed(decimals) : String(value);
    return withUnit && unit ? `${number}\u00a0${unit}` : number;
  }

  // The table of all parts, a page of it at a time.
  const table = byId("table");
  const body = make("tbody");
  const sort = { column: -1, down: false };
  let found = [];
  let first = 0;

  function cell(part, column) {
    if (column === 0) return part[NAME];
    if (column === 1) return part[STATE];
    return part[VALUES][column - 2];
  }
  function compare(a, b) {
    const empty = (value) => value === null || value === undefined;
    if (empty(a) || empty(b)) return empty(a) - empty(b);
    const numbers = [a, b].every((value) => !Number.isNaN(Number(value)));
    const order = numbers ? a - b : String(a) < String(b) ? -1 : String(a) > String(b) ? 1 : 0;
    return sort.down ? -order : order;
  }
  function find() {
    const state = byId("filter").value;
    const text = byId("find").value.toLowerCase();
    found = data.parts.filter((part) =>
      (state === "all" || (state === "not good" ? isNotGood(part) : part[STATE] === state)) &&
      part[NAME].toLowerCase().includes(text));
    if (sort.column >= 0) found.sort((a, b) => compare(cell(a, sort.column), cell(b, sort.column)));
    first = 0;
    show();
  }
  function show() {
    const last = Math.min(first + ROWS_OF_A_PAGE, found.length);
    body.replaceChildren(...found.slice(first, last).map((part) => {
      const row = make("tr");
      const name = make("th", undefined, { scope: "row" });
      name.append(make("bdi", part[NAME]));
      for (const error of part[ERRORS]) name.append(make("bdi", error, { class: "error" }));
      const state = make("td");
      state.append(make("span", part[STATE], { class: `badge ${part[STATE]}` }));
      row.append(name, state);
      data.rows.forEach((characteristic, i) => {
        const value = i < part[VALUES].length ? part[VALUES][i] : null;
        row.append(make("td", shown(value, characteristic, false), part[BAD].includes(i) ? { class: "out" } : {}));
      });
      return row;
    }));
    byId("range").textContent = found.length === 0 ? "none" : `${first + 1}\u2013${last} of ${found.length}`;
    byId("back").disabled = first === 0;
    byId("next").disabled = last >= found.length;
  }
  function turn(by) {
    first += by * ROWS_OF_A_PAGE;
    show();
  }
  function makeTable() {
    const head = make("tr");
    const titles = ["Part", "Result", ...data.rows.map(([label, unit]) => (unit ? `${label} (${unit})` : label))];
    titles.forEach((title, column) => {
      const button = make("button", title, { type: "button" });
      const th = make("th", undefined, { scope: "col" });
      th.append(button);
      button.addEventListener("click", () => {
        sort.down = sort.column === column && !sort.down;
        sort.column = column;
        for (const other of head.children) other.removeAttribute("aria-sort");
        th.setAttribute("aria-sort", sort.down ? "descending" : "ascending");
        find();
      });
      head.append(th);
    });
    const thead = make("thead");
    thead.append(head);
    table.append(thead, body);
    const states = [...new Set(data.parts.map((part) => part[STATE]))];
    const choices = ["all", ...(data.parts.some(isNotGood) ? ["not good"] : []), ...(states.length > 1 ? states : [])];
    byId("filter").append(...choices.map((choice) => make("option", choice)));
    byId("filter").addEventListener("change", find);
    byId("find").addEventListener("input", find);
    byId("back").addEventListener("click", () => turn(-1));
    byId("next").addEventListener("click", () => turn(1));
    document.querySelector(".tools").hidden = data.parts.length < 2;
    find();
  }

  // A chart tells the part under the pointer, or the one that the arrow keys lead to.
  function followChart(plot) {
    const run = plot.querySelector(".run");
    const cursor = plot.querySelector(".cursor");
    const readout = plot.nextElementSibling;
    const row = Number(plot.dataset.row);
    const note = readout.textContent;
    let at = -1;
    function tell(index) {
      at = Math.max(0, Math.min(data.parts.length - 1, index));
      const part = data.parts[at];
      cursor.hidden = false;
      cursor.style.left = `${((at + 0.5) / data.parts.length) * 100}%`;
      readout.textContent = `${part[NAME]}: ${shown(part[VALUES][row] ?? null, data.rows[row], true)}` +
        (part[BAD].includes(row) ? ", bad" : "");
    }
    function leave() {
      cursor.hidden = true;
      readout.textContent = note;
    }
    run.addEventListener("pointermove", (event) => {
      const box = run.getBoundingClientRect();
      tell(Math.floor(((event.clientX - box.left) / box.width) * data.parts.length));
    });
    run.addEventListener("pointerleave", leave);
    plot.addEventListener("blur", leave);
    plot.addEventListener("keydown", (event) => {
      const far = Math.max(1, Math.round(data.parts.length / 50));
      const to = { ArrowLeft: at - 1, ArrowRight: at + 1, PageUp: at - far, PageDown: at + far, Home: 0, End: data.parts.length - 1 }[event.key];
      if (to === undefined) return;
      event.preventDefault();
      tell(to);
    });
  }

  // A picture enlarged, and its pixels.
  function enlarge(button) {
    const dialog = byId("enlarged");
    const picture = button.querySelector("svg").cloneNode(true);
    const bar = make("div", undefined, { class: "bar" });
    const pane = make("div", undefined, { class: "pane", tabindex: "0" });
    let zoom = 1;
    const apply = (by) => {
      zoom = Math.max(1, Math.min(32, zoom * by));
      picture.style.width = `${zoom * 100}%`;
      picture.style.imageRendering = zoom > 1 ? "pixelated" : "auto";
    };
    const add = (label, name, act) => {
      const made = make("button", label, { type: "button", "aria-label": name });
      made.addEventListener("click", act);
      bar.append(made);
    };
    bar.append(make("span", button.closest("article").querySelector("h3 bdi").textContent));
    add("\u2212", "Smaller", () => apply(0.5));
    add("+", "Larger", () => apply(2));
    add("Close", "Close", () => dialog.close());
    pane.append(picture);
    dialog.replaceChildren(bar, pane);
    apply(1);
    dialog.showModal();
  }

  makeTable();
  document.querySelectorAll(".plot").forEach(followChart);
  document.querySelectorAll(".picture").forEach((button) => button.addEventListener("click", () => enlarge(button)));
  addEventListener("beforeprint", () => document.querySelectorAll("details").forEach((folded) => { folded.open = true; }));
})();
