// The words about the game beside the board: its moves, where in it the position stands, and the
// position as a text.

import { find, setText } from "./dom.mjs";
import { namesOf } from "./players.mjs";
import { positionWords } from "./speech.mjs";

/** "12..." before a move that Black has made, of the position behind it. */
function labelOf(fen) {
  const [, side, , , , number] = fen.split(" ");
  return side === "b" ? number + "." : Number(number) - 1 + "...";
}

function where(app) {
  const { position, texts, view } = app;
  const san = position.sans.at(-1);
  const words = [];
  if (app.mode === "play" && app.atEnd && !view.line.length) {
    words.push(app.modes.play.words());
  } else {
    if (san) {
      const move = labelOf(position.fen) + texts.san(san);
      words.push(texts.get(view.line.length ? "where.line" : "where.after", { move }));
    } else {
      words.push(texts.get("where.start"));
    }
    words.push(position.end ? texts.get("why." + position.end.kind) + "."
      : texts.get("tomove." + position.side));
  }
  if (position.check && !position.end) {
    words.push(texts.get("where.check"));
  }
  return words.join(" ");
}

/** Sets them all, and which of the ways through the game are open. */
export function drawCaptions(app) {
  const { position, view, last, first, base, whole, game, texts } = app;
  app.moves.draw(first.fen, last.sans, app.modes.review.marks, view.ply);
  const line = view.line.length ? whole.sans.slice(view.ply) : [];
  app.moves.drawLine(base.fen, line, view.step, () => app.go(view.ply));
  const { white, black } = namesOf(game, texts);
  app.moves.title(white || black ? `${white || "?"} – ${black || "?"}, ${game.result}` : "");
  setText(find("where"), where(app));
  const words = positionWords(texts, position.fen).flatMap((text) => [text, " "]);
  find("words").replaceChildren(...words);
  setText(find("fen"), position.fen);
  find("first").disabled = find("previous").disabled = view.ply === 0 && line.length === 0;
  find("last").disabled = find("next").disabled =
    line.length ? view.step >= line.length : app.atEnd;
}
