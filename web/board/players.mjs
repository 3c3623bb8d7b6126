// Names and clocks beside the board.

import { clockText } from "./clock.mjs";
import { find, make, setText } from "./dom.mjs";

const PLACES = ["upper", "lower"];
// Milliseconds: a clock that has less is marked.
const SHORT = 20000;

/** The names of the sides, as far as there are any; the user's in the language that is chosen. */
export function namesOf({ tags, play }, texts) {
  const names = { white: tags.White ?? "", black: tags.Black ?? "" };
  return play ? { ...names, [play.side]: texts.get("you") } : names;
}

/**
 * Draws the names of the players, where the game has any.
 * @param expected whether a game of the user is to begin: who will sit where is named then without
 * the colour, and the board does not move when it begins.
 */
export function drawNames(game, texts, flipped, expected) {
  const names = namesOf(game, texts);
  const open = expected && !names.white && !names.black;
  for (const place of PLACES) {
    const side = (place === "upper") === flipped ? "white" : "black";
    const row = find(place);
    const name = open ? (place === "lower" ? texts.get("you") : "Orvelin") : names[side];
    row.hidden = !name;
    row.dataset.side = side;
    const dot = open ? [] : [make("span", { class: "dot-side " + side })];
    row.querySelector(".name").replaceChildren(...dot, name);
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
