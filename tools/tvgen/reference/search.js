// The reference's search: any part of a name finds the interfaces, functions
// and enumerations that contain it, names that start with it first. Runs from
// disk (file:), with the index of search-index.js; nothing is fetched.
// Each name is documented at the anchor of its own name on its page.
(function () {
  "use strict";
  const SHOWN = 60;
  const input = document.getElementById("search");
  const list = document.getElementById("results");
  const entries = TVAPIC_INDEX.split("\n").map(function (line) {
    const [name, page] = line.split(" ");
    return [name, TVAPIC_PAGES[Number(page)] + "#" + name];
  });

  function item(content) {
    const li = document.createElement("li");
    li.append(content);
    list.append(li);
  }

  function show(query) {
    const q = query.trim().toLowerCase();
    list.replaceChildren();
    list.hidden = q === "";
    if (q === "") return;
    const hits = [];
    for (const [name, href] of entries) {
      const at = name.toLowerCase().indexOf(q);
      if (at < 0) continue;
      // Found at the start of a word (the name, the part after I, an operation) ranks first.
      const wordStart = at === 0 || name[at - 1] === "_" || (at === 1 && name[0] === "I");
      hits.push({ name: name, href: href, rank: wordStart ? 0 : 1 });
    }
    hits.sort(function (a, b) {
      return a.rank - b.rank || a.name.length - b.name.length || (a.name < b.name ? -1 : 1);
    });
    for (const hit of hits.slice(0, SHOWN)) {
      const a = document.createElement("a");
      a.href = hit.href;
      a.textContent = hit.name;
      item(a);
    }
    if (hits.length === 0) item("Nothing has this in its name.");
    if (hits.length > SHOWN) item(`${hits.length - SHOWN} more: type more of the name.`);
  }

  input.addEventListener("input", function () { show(input.value); });
  input.addEventListener("keydown", function (event) {
    if (event.key === "Enter") {
      const first = list.querySelector("a");
      if (first) window.location.href = first.href;
    } else if (event.key === "Escape") {
      input.value = "";
      show("");
    }
  });
  const asked = new URLSearchParams(window.location.search).get("q");
  if (asked) {
    input.value = asked;
    show(asked);
  }
})();
