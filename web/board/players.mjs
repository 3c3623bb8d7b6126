// Names and clocks beside the board.

import { clockText } from "./clock.mjs";
import { find, make, setText } from "./dom.mjs";

const PLACES = ["upper", "lower"];
// Milliseconds: a clock that has less is marked.
const SHORT = 20000;

/** Draws the names of the players, where the game has any. */
export function drawNames({ tags }, flipped) {
  for (const place of PLACES) {
    const side = (place === "upper") === flipped ? "white" : "black";
    const row = find(place);
    const name = tags[side === "white" ? "White" : "Black"] ?? "";
    row.hidden = !name;
    row.dataset.side = side;
    row.querySelector(".name").replaceChildren(make("span", { class: "dot-side " + side }), name);
  }
}

/**
 * Draws what both sides have left.
 * @param kept the times that were kept with the game; null without clocks.
 * @param clock the clock that runs, if there is one.
 */
export function drawClocks(kept, clock) {
  for (const place of PLACES) {
    const element = find(place).querySelector(".clock");
    const { side } = find(place).dataset;
    element.hidden = !kept;
    if (kept && side) {
      const left = clock ? clock.left(side, performance.now()) : kept[side];
      setText(element, clockText(left));
      element.classList.toggle("runs", clock?.side === side);
      element.classList.toggle("short", left < SHORT);
    }
  }
}
