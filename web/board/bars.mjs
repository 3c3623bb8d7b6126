// The evaluation as bars: eight groups, which open into their terms.

import { make, signed } from "./dom.mjs";
import { sideToMove } from "./fen.mjs";

// A term that is less than this, in pawns, is not shown.
const LEAST = 0.005;

/**
 * The groups of terms of what one evaluation has more than another, for the side to move.
 * @param root the evaluation of the position whose side to move and whose pawns are meant.
 */
export function changes(root, before, after) {
  const sign = sideToMove(root.fen) === "white" ? 1 : -1;
  const more = (one, other) => (sign * (other.units - one.units)) / root.pawn;
  return after.groups.map((group, index) => {
    const old = before.groups[index];
    const terms = group.terms.map((term, place) =>
      ({ ...term, value: more(old.terms[place], term) }));
    return { ...group, value: more(old, group), terms };
  });
}

function bar(name, value, reach, kinds, isTerm) {
  const track = make("div", { class: "track" });
  const width = Math.min(Math.abs(value) / reach, 1) * 50;
  const block = make("div", { class: value > 0 ? kinds[0] : kinds[1] });
  block.style.width = width + "%";
  block.style.left = (value > 0 ? 50 : 50 - width) + "%";
  track.append(block);
  return make("div", { class: isTerm ? "bar term" : "bar" },
    make("span", { class: "name" }, name), track,
    make("span", { class: "figure" }, signed(value)));
}

/**
 * Draws groups of terms, the largest first; those that are open stay so.
 * @param groups as the core gives them, in pawns.
 * @param kinds classes of what is above and below 0.
 */
export function drawBars(place, texts, groups, kinds) {
  const open = new Set([...place.querySelectorAll("details[open]")]
    .map((each) => each.dataset.group));
  const values = groups.flatMap(({ value, terms }) => [value, ...terms.map((term) => term.value)]);
  const reach = Math.max(0.5, ...values.map(Math.abs));
  const largest = (list) => [...list].sort((a, b) => Math.abs(b.value) - Math.abs(a.value));
  place.replaceChildren(...largest(groups).map((group) => {
    const heading = bar(texts.name("group", group), group.value, reach, kinds, false);
    const terms = largest(group.terms).filter(({ value }) => Math.abs(value) >= LEAST);
    if (!terms.length) {
      heading.classList.add("alone");
      return heading;
    }
    const details = make("details", { "data-group": group.id }, make("summary", {}, heading),
      ...terms.map((term) => bar(texts.name("term", term), term.value, reach, kinds, true)));
    details.open = open.has(group.id);
    return details;
  }));
}
