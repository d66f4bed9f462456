// Finds instructions as one types: in the head of every page, and on the page of all instructions.
"use strict";
(() => {
  const home = new URL(".", document.currentScript.src);
  const pages = new URL("../docs/instructions/", home);

  // What is looked through is loaded when it is first asked for. A script, since a page that is
  // opened from a file may load nothing else.
  let loading = null;
  const loaded = () => loading ??= new Promise((resolve) => {
    const script = document.createElement("script");
    script.src = new URL("instructions.js", home);
    script.onload = () => resolve(window.formulaInstructions.map((one) => ({
      ...one,
      places: [one.identifier + " " + one.help, one.parameters, one.category + " " + one.summary,
               one.text].map((text) => text.toLowerCase()),
      lowName: one.name.toLowerCase(),
    })));
    document.head.append(script);
  });

  // How well a word fits, as `nuvhost list WORD` ranks it; 0 where it does not occur.
  const rank = (one, word) => {
    const places = one.places.length;
    if (one.lowName === word) return places + 3;
    if (one.lowName.startsWith(word)) return places + 2;
    if (one.lowName.includes(word)) return places + 1;
    const place = one.places.findIndex((text) => text.includes(word));
    return place < 0 ? 0 : places - place;
  };

  const wordsOf = (text) => text.toLowerCase().split(/\s+/).filter(Boolean);

  const find = async (words) => {
    const found = [];
    for (const one of await loaded()) {
      const ranks = words.map((word) => rank(one, word));
      if (ranks.every((each) => each > 0)) {
        found.push({ one, sum: ranks.reduce((sum, each) => sum + each, 0) });
      }
    }
    return found.sort((a, b) => b.sum - a.sum).map(({ one }) => one);
  };

  const element = (name, properties, ...children) => {
    const made = Object.assign(document.createElement(name), properties);
    made.append(...children);
    return made;
  };

  // A text in which the words are marked.
  const marked = (text, words) => {
    const parts = [];
    let at = 0;
    while (at < text.length) {
      const rest = text.slice(at).toLowerCase();
      const next = words.map((word) => ({ word, from: rest.indexOf(word) }))
        .filter(({ from }) => from >= 0)
        .sort((a, b) => a.from - b.from || b.word.length - a.word.length)[0];
      if (!next) break;
      const from = at + next.from;
      parts.push(text.slice(at, from));
      at = from + next.word.length;
      parts.push(element("mark", {}, text.slice(from, at)));
    }
    parts.push(text.slice(at));
    return parts;
  };

  const row = (one, words) => element("a", { href: new URL(one.help + ".html", pages) },
    element("span", { className: "find-name" }, ...marked(one.name, words)),
    element("span", { className: "find-category" }, one.category),
    element("span", { className: "find-summary" }, ...marked(one.summary, words)));

  // An input and the list that it fills. The arrow keys go from one to the other.
  const finder = (holder, placeholder, most, shown) => {
    const input = element("input", {
      type: "search", placeholder, autocomplete: "off", spellcheck: false,
      ariaLabel: "Find an instruction",
    });
    const count = element("p", { className: "find-count", ariaLive: "polite" });
    const list = element("div", { className: "find-list" });
    let asked = 0;
    const update = async () => {
      const words = wordsOf(input.value);
      const number = ++asked;
      const found = words.length > 0 ? await find(words) : [];
      if (number !== asked) return;  // more was typed meanwhile
      list.replaceChildren(...found.slice(0, most).map((one) => row(one, words)));
      count.textContent = words.length === 0 ? "" :
        found.length === 0 ? "Nothing found" :
        found.length > most ? `${found.length} found, the best ${most}:` : `${found.length} found`;
      shown(words.length > 0);
    };
    input.addEventListener("input", update);
    input.addEventListener("focus", loaded, { once: true });
    holder.addEventListener("keydown", (event) => {
      const links = [...list.children];
      const at = links.indexOf(document.activeElement);
      if (event.key === "ArrowDown" && links[at + 1]) links[at + 1].focus();
      else if (event.key === "ArrowUp" && at >= 0) (links[at - 1] ?? input).focus();
      else if (event.key === "Enter" && at < 0 && links[0]) links[0].click();
      else if (event.key === "Escape") { input.value = ""; input.focus(); update(); }
      else return;
      event.preventDefault();
    });
    holder.append(input, count, list);
    return { input, update };
  };

  let first = null;  // that "/" goes to
  const all = document.getElementById("find-all");
  if (all) {
    const { input, update } = finder(all, "Find, such as: circle outliers", 300, (finding) =>
      document.body.classList.toggle("finding", finding));
    first = input;
    input.value = new URLSearchParams(location.search).get("q") ?? "";
    if (input.value) update();
    input.focus({ preventScroll: true });
  } else {
    const head = document.querySelector(".md-header__inner");
    const holder = element("div", { className: "find find-head" });
    const { input } = finder(holder, "Find an instruction  /", 12, (finding) =>
      holder.classList.toggle("open", finding));
    first = input;
    document.addEventListener("pointerdown", (event) => {
      holder.classList.toggle("open", holder.contains(event.target) && input.value !== "");
    });
    head.append(holder, element("a", {
      className: "find-link md-header__button", href: new URL("index.html", pages),
      ariaLabel: "Find an instruction", textContent: "Find",
    }));
  }
  document.addEventListener("keydown", (event) => {
    const typing = /^(input|textarea|select)$/i.test(event.target.tagName ?? "");
    if (event.key === "/" && !typing && !event.ctrlKey && !event.altKey && !event.metaKey) {
      event.preventDefault();
      first.focus();
    }
  });
})();
