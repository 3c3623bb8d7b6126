// What the page shows until the core is there: the position that was shown last, which was kept as
// the core told it, or the start. Nothing can be done with it yet.

import { find, setText } from "./dom.mjs";
import { START } from "./fen.mjs";
import { emptyGame, isGame } from "./game.mjs";
import { drawNames } from "./players.mjs";

const isSquare = (name) => /^[a-h][1-8]$/.test(name);
const isFen = (fen) => typeof fen === "string" && /^[1-8pnbrqk/]{15,71} [wb] /i.test(fen);

/** The position that was kept, or null where there is none that can be shown. */
export function keptView({ game, shown }) {
  if (!isGame(game)) {
    return { ...emptyGame(), fen: START, flipped: false, last: [], check: null };
  }
  const { fen, flipped, last, check } = shown ?? {};
  if (!isFen(fen)) {
    return null;
  }
  return { ...game, fen, flipped: flipped === true,
    last: Array.isArray(last) ? last.filter(isSquare) : [], check: isSquare(check) ? check : null };
}

export function drawKept({ board, texts }, kept, mode) {
  document.body.dataset.mode = mode;
  setText(find("where"), texts.get("loading"));
  find("balance").hidden = mode === "play";
  const view = keptView(kept);
  if (view) {
    board.draw(view.fen, view);
    drawNames(view, texts, view.flipped, mode === "play" && !view.play);
  }
}
